#include "shares.h"

#include "app/analise.h"
#include "app/slots.h"
#include "base/numbers.h"

#include <array>
#include <span>

namespace lavra {

namespace {

// K in mg/dm3 to cmolc/dm3, as this chart has always done it.
constexpr double kDivisorK = 390;

double numero(const QVariant& valor)
{
    return widenShortest(toSingle(toNumber(valor).value_or(0)));
}

struct ColunaCusto {
    const char* rotulo;
    int slot;
};

constexpr std::array<ColunaCusto, 3> kColunasFormulas = { {
    { "Calcário ", 11 }, { "Fórmula  ", 17 }, { "Cobertura ", 23 } } };
constexpr std::array<ColunaCusto, 6> kColunasFormulacao = { {
    { "Calcário ", 11 }, { "Fórmula ou orgânico ", 17 }, { "FonteN Base ", 23 }, { "FonteP Base ", 29 },
    { "FonteK Base ", 35 }, { "FonteN Cob ", 41 } } };
constexpr std::array<ColunaCusto, 13> kColunasFloresta = { {
    { "Calcário ", 11 }, { "Fórmula (P) ", 13 }, { "FonteN (P) ", 14 }, { "FonteP (P) ", 15 }, { "FonteK (P) ", 16 },
    { "Fórmula (C) ", 18 }, { "FonteN (C) ", 19 }, { "FonteP (C) ", 20 }, { "FonteK (C) ", 21 },
    { "Fórmula (R) ", 23 }, { "FonteN (R) ", 24 }, { "FonteP (R) ", 25 }, { "FonteK (R) ", 26 } } };

constexpr std::array<Cor, 13> kCoresCusto = { {
    { 176, 176, 176 }, { 255, 128, 0 }, { 255, 255, 192 }, { 0, 0, 255 }, { 255, 0, 255 }, { 0, 255, 255 },
    { 0, 255, 0 }, { 128, 0, 0 }, { 0, 192, 0 }, { 0, 0, 128 }, { 128, 128, 0 }, { 128, 0, 128 }, { 0, 128, 128 } } };

struct Plano {
    const char* texto;
    std::span<const ColunaCusto> colunas;
    int total;
};

const std::array<Plano, 3> kPlanos = { {
    { "formulas", kColunasFormulas, slot::kTotalFormulas },
    { "formulacao", kColunasFormulacao, slot::kTotalFormulacao },
    { "floresta", kColunasFloresta, slot::kTotalFlorest },
} };

} // namespace

Pizza OcupacaoCTC(const QVector<QVariant>& analise)
{
    const double ctc = numero(analise.value(analise::kCTC));
    if (ctc == 0)
        return { std::nullopt, Desfecho::critico(QStringLiteral("A análise %1 tem CTC igual a zero: não há ocupação da CTC a "
                                                                "mostrar. Confira a análise no cadastro.")
                                                     .arg(analise.value(analise::kCodigo).toString())) };
    const double ca = numero(analise.value(analise::kCa));
    const double mg = numero(analise.value(analise::kMg));
    const double al = numero(analise.value(analise::kAl));
    const double hAl = numero(analise.value(analise::kHAl));
    const double k = numero(analise.value(analise::kK));
    const struct {
        const char* nome;
        double parte;
        Cor cor;
    } elementos[] = {
        { "Cálcio ", 100 * ca / ctc, { 176, 176, 176 } },
        { "Magnésio ", 100 * mg / ctc, { 138, 255, 138 } },
        { "Potássio ", 100 * (k / kDivisorK) / ctc, { 255, 160, 160 } },
        { "Hidrogênio ", 100 * (hAl - al) / ctc, { 255, 255, 192 } },
        { "Alumínio ", 100 * al / ctc, { 255, 0, 0 } },
    };
    GraficoPizza g;
    g.titulo = analise.value(analise::kCodigo).toString().toUpper();
    for (const auto& e : elementos)
        g.fatias << Fatia { QString::fromUtf8(e.nome) + formatFixed(e.parte, 1) + QStringLiteral(" %"), e.parte, e.cor };
    return { g, std::nullopt };
}

ImpressaoGrafico ImpressaoOcupacaoCTC()
{
    return { { { kCabecalhoImpressao, 3900, 2000 }, { kTituloOcupaCTC, 4500, 2300 } }, { 3000, 2600 }, std::nullopt };
}

std::optional<double> CustoDoSlot(const QVariant& slot, bool floresta)
{
    if (slot.isNull() || (slot.typeId() == QMetaType::QString && slot.toString().isEmpty()))
        return std::nullopt;
    if (slot.typeId() != QMetaType::QString)
        return toNumber(slot);
    if (!floresta)
        return parseNumber(slot.toString());
    const auto valor = parseNumber(slot.toString().split(QLatin1Char('#')).constLast());
    return valor ? widenShortest(toSingle(*valor)) : 0.0;
}

QString CalcPerc(std::optional<double> custo, double total)
{
    if (!custo)
        return {};
    return QString::number(roundHalfEven(100 * *custo / total)) + QLatin1Char('%');
}

Pizza ParticipacaoCusto(const QVector<QVariant>& dados, const QString& planoTexto, const QString& codCultivo)
{
    const auto plano = std::find_if(kPlanos.begin(), kPlanos.end(),
        [&planoTexto](const Plano& p) { return planoTexto == QLatin1String(p.texto); });
    if (plano == kPlanos.end())
        return { std::nullopt, Desfecho::critico(QStringLiteral("Não há recomendação calculada para mostrar no gráfico.")) };
    const double total = toNumber(dados.value(plano->total)).value_or(0);
    if (total == 0)
        return { std::nullopt, Desfecho::critico(QStringLiteral("O custo total da recomendação %1 é zero: não há participação "
                                                                "dos fertilizantes a mostrar.")
                                                     .arg(codCultivo)) };
    const bool floresta = plano == kPlanos.end() - 1;
    GraficoPizza g;
    g.titulo = codCultivo;
    if (floresta)
        g.nota = QStringLiteral("Legenda: P=Plantio, C=Cobertura, R=reposição");
    for (std::size_t i = 0; i < plano->colunas.size(); ++i) {
        const ColunaCusto& coluna = plano->colunas[i];
        const auto custo = CustoDoSlot(dados.value(coluna.slot), floresta);
        g.fatias << Fatia { QString::fromUtf8(coluna.rotulo) + CalcPerc(custo, total), std::max(0.0, custo.value_or(0)), kCoresCusto[i] };
    }
    return { g, std::nullopt };
}

ImpressaoGrafico ImpressaoParticipacaoCusto()
{
    return { { { kCabecalhoImpressao, 2900, 1000 }, { kTituloOcupaCusto, 3500, 1300 } }, { 2000, 1600 }, std::nullopt };
}

} // namespace lavra
