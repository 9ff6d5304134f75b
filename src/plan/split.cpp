#include "split.h"

#include "app/analise.h"
#include "app/session.h"
#include "app/slots.h"
#include "app/windownames.h"
#include "base/numbers.h"
#include "calc/cropstep.h"
#include "formulas.h"

#include <algorithm>
#include <cmath>

namespace lavra {

QString ConsultaFontes(bool todas)
{
    return todas ? kConsultaTodas : kConsultaFontesN;
}

float LeNecessidadeCobertura(const Session& session)
{
    return toSingle(toNumber(session.Nec[3]).value_or(0));
}

QString TextoNecessidadeN(float necNCob)
{
    return QStringLiteral("Necessidade de N = ") + numberText(necNCob) + QStringLiteral(" kg/ha");
}

QStringList NumerosDeParcelas()
{
    QStringList itens { QStringLiteral("Selecione") };
    for (int n = 1; n <= kMaxParcelas; ++n)
        itens << QString::number(n);
    return itens;
}

QStringList PercentuaisDeParcela()
{
    QStringList itens;
    for (int p = 5; p <= 100; p += 5)
        itens << QString::number(p) + QStringLiteral(" %");
    return itens;
}

int PercentualDe(const QString& porcentagem)
{
    // The list's text less its last two characters, the blank and the sign.
    return porcentagem.size() > 2 ? porcentagem.left(porcentagem.size() - 2).toInt() : 0;
}

DoseFonte CalculaDoseFonte(float necNCob, const QVariant& percentualN, const QVariant& preco)
{
    DoseFonte dose;
    const std::optional<double> percentual = toNumber(percentualN);
    if (!percentual || !(toSingle(*percentual) > 0.0f))
        return dose;
    const float exata = necNCob / (toSingle(*percentual) / 100.0f);
    if (!std::isfinite(exata))
        return dose;
    const std::int64_t arredondada = roundHalfEven(exata);
    dose.txtFnt = QString::number(arredondada);
    if (const std::optional<double> valor = toNumber(preco))
        dose.txtCusto = formatFixed(static_cast<float>(arredondada) / 1000.0f * toSingle(*valor), 2);
    return dose;
}

QString DoseParcela(const QString& porcentagem, const QString& txtFnt)
{
    const std::optional<double> fonte = parseNumber(txtFnt);
    if (porcentagem.isEmpty() || !fonte)
        return {};
    return textoNumero(PercentualDe(porcentagem) / 100.0 * *fonte);
}

Parada Verifica(int n, const Parcelas& parcelas)
{
    n = std::clamp(n, 0, kMaxParcelas);
    for (int i = 0; i < n; ++i) {
        if (parcelas[i].porcentagem.isEmpty())
            return Desfecho::aviso(kMsgParcelas);
    }
    for (int i = 0; i < n; ++i) {
        if (parcelas[i].epoca.isEmpty())
            return Desfecho::aviso(kMsgEpocas);
    }
    int soma = 0;
    for (int i = 0; i < n; ++i)
        soma += PercentualDe(parcelas[i].porcentagem);
    if (soma > 100)
        return Desfecho::aviso(kMsgSomaMaior);
    if (soma < 100)
        return Desfecho::aviso(kMsgSomaMenor);
    return std::nullopt;
}

Parada ProssegueParcelamento(Session& session, const EntradaParcelamento& entrada)
{
    if (LeNecessidadeCobertura(session) != 0.0f) {
        if (Parada falha = Verifica(entrada.numero, entrada.parcelas))
            return falha;
        const std::optional<double> fonte = parseNumber(entrada.txtFnt);
        if (!fonte)
            return Desfecho::aviso(kMsgSemDoseFonte);

        using namespace slot::produto;
        const int b = session.PlanoNum == 2 ? slot::kCobFormulacao : slot::kCobFormulas;
        const float preco = toSingle(toNumber(entrada.preco).value_or(0));
        const float dose = toSingle(*fonte);
        // The dose enters the products as the text of its box, which makes them doubles.
        const QVariant quantidade = ProdutoVariant(session.Analise.value(analise::kArea), entrada.txtFnt);
        const QVariant custoTotal = ProdutoVariant(quantidade, preco);

        QVector<QVariant>& dados = session.Dados;
        dados[b + kFonte] = entrada.fonte;
        dados[b + kPreco] = preco;
        dados[b + kDose] = dose;
        dados[b + kCusto] = toSingle(*fonte * preco / 1000.0);
        dados[b + kQuant] = quantidade;
        dados[b + kCustoTotal] = custoTotal.isValid() ? QVariant(custoTotal.toDouble() / 1000.0) : QVariant();
        const int n = std::clamp(entrada.numero, 0, kMaxParcelas);
        for (int i = 0; i < n; ++i) {
            dados[b + slot::kParcelas + 2 * i] = toSingle(parseNumber(entrada.parcelas[i].dose).value_or(0));
            dados[b + slot::kParcelas + 2 * i + 1] = entrada.parcelas[i].epoca;
        }
        session.CustoN = toNumber(dados[b + kCustoTotal]).value_or(0);
    }
    session.JanelaAnterior = janela::kParcelaN;
    return std::nullopt;
}

} // namespace lavra
