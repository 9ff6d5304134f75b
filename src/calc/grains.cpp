#include "grains.h"

#include "app/analise.h"
#include "app/session.h"
#include "base/numbers.h"
#include "calc/crops.h"
#include "registers/interpretation.h"

#include <cmath>

namespace lavra {

namespace {


// Column of the base N of GRAON; a class column is the class plus this offset.
constexpr int kColNBase = 3;
constexpr int kDeslocamentoClasse = 2;

// Elements of TabCorrecao: total, fraction and dose now, P of the official rule first.
constexpr int kTotal = 0;
constexpr int kFracao = 4;
constexpr int kAgora = 8;
constexpr int kGradual = 2;
constexpr int kDoK = 1;

// The dry mass of the previous crop moves both nitrogen figures of maize.
constexpr double kMassaMinima = 2;
constexpr double kMassaGramineas = 4;
constexpr double kMassaLeguminosas = 3;
constexpr double kAjusteMenor = 5;
constexpr double kAjusteMaior = 10;
// Pre-germinated rice takes all its nitrogen in topdressing, and this much beyond it.
constexpr double kAcrescimoPreGerminado = 10;

const QString kGramineas = QStringLiteral("Gramíneas");
const QString kLeguminosas = QStringLiteral("Leguminosas");
const QString kConsorcioPousio = QStringLiteral("Consórcio ou pousio");

int classe(const Session& session, int ordinal)
{
    return lavra::classe(session.Analise, ordinal);
}

// The change of both nitrogen figures of maize by the dry mass of the previous crop.
double ajusteMassaSeca(const QString& anterior, double massa)
{
    if (massa < kMassaMinima)
        return 0;
    if (anterior == kGramineas || anterior == kConsorcioPousio)
        return massa <= kMassaGramineas ? kAjusteMenor : kAjusteMaior;
    if (anterior == kLeguminosas)
        return massa <= kMassaLeguminosas ? -kAjusteMenor : -kAjusteMaior;
    return 0;
}

Parada verificaDefinicoes(const DefinicoesGraos& d, bool& limpaExpectativa)
{
    if (d.expectativa.isEmpty())
        return Desfecho::aviso(kMsgInformeExpectativa);
    if (recusaIncrementoArroz(d.posicao, d.expectativa)) {
        limpaExpectativa = true;
        return Desfecho::informacao(mensagemIncrementoArroz(culturasGraos().value(d.posicao)));
    }
    if (d.posicao < 0 || d.posicao >= culturasGraos().size())
        return Desfecho::aviso(kMsgSelecioneCultura);
    if (arrozIrrigado(d.posicao) && d.sistemaSemeadura == 0)
        return Desfecho::aviso(kMsgSelecioneSemeadura);
    if (!cultivosAnterioresGraos(d.posicao).isEmpty() && d.cultivoAnterior.isEmpty())
        return Desfecho::aviso(kMsgSelecioneCultivoAnterior);
    if (d.posicao == graos::Milho && d.massaSeca.isEmpty())
        return Desfecho::aviso(kMsgInformeMassaSeca);
    return std::nullopt;
}

// Three fields of a correction text; a text with fewer gives empty fields.
QStringList campos(const QString& correcao)
{
    QStringList partes = correcao.split(QLatin1Char('#'));
    while (partes.size() < 3)
        partes << QString();
    return partes;
}

// The gradual doses go into the table as whole numbers.
QVariant semDecimais(const QString& texto)
{
    const auto numero = parseNumber(texto);
    return numero ? QVariant(std::trunc(*numero)) : QVariant(QString());
}

QString textoElemento(const QVariant& elemento)
{
    if (elemento.typeId() == QMetaType::Double)
        return textoNumero(elemento.toDouble());
    return elemento.toString();
}

} // namespace

// ---- Grain crops ----------------------------------------------------------------------------

const QStringList& sistemasSemeadura()
{
    static const QStringList lista
        = { QStringLiteral("Selecione"), QStringLiteral("Solo seco"), QStringLiteral("Pré-germinado") };
    return lista;
}

QString mensagemIncrementoArroz(const QString& cultura)
{
    return QStringLiteral(" Na cultura ") + cultura
        + QStringLiteral(" são permitidos incrementos de rendimento de 2, 3 ou 4 t/ha. Ajuste o valor.");
}

bool recusaIncrementoArroz(int posicao, const QString& expectativa)
{
    if (posicao != graos::ArrozIrrigadoRS || expectativa.isEmpty())
        return false;
    const auto incremento = parseNumber(expectativa);
    return !incremento || !incrementoArrozRSValido(*incremento);
}

CalculoGraos CalculaGraos(const Store& db, Session& session, const DefinicoesGraos& d)
{
    CalculoGraos r;
    if (auto recusa = verificaDefinicoes(d, r.limpaExpectativa)) {
        r.desfecho = recusa;
        return r;
    }
    // From here on the boxes hold this calculation or nothing.
    r.substituiResultado = true;
    const auto e = parseNumber(d.expectativa);
    if (!e)
        return falhou(r, Desfecho::critico(kMsgExpectativaInvalida));

    EntradaGraos entrada;
    entrada.posicao = d.posicao;
    entrada.expectativa = d.expectativa;
    entrada.cultivoAnterior = d.cultivoAnterior;
    entrada.classeCtc = classe(session, analise::kClasseCTC);
    entrada.cultivo = session.Cultivo;
    const ChavesCultura chaves = chavesGraos(entrada);
    TextosNec& nec = r.nec;

    // Nitrogen. The legumes get 0 at once; GRAON holds no row for them.
    if (nitrogenioZeroGraos(d.posicao)) {
        nec[0] = QStringLiteral("0");
        nec[3] = QStringLiteral("0");
    }
    if (const auto linha = leLinha(db, chaves.n)) {
        const int ordinal = classe(session, analise::kClasseMO) + kDeslocamentoClasse;
        const auto base = celula(*linha, kColNBase);
        if (!base)
            return falhou(r, semValor(chaves.n, kColNBase));
        const Leitura total = necessidadeDaLinha(*linha, chaves.n, ordinal, *e);
        if (total.falha)
            return falhou(r, *total.falha);
        nec[3] = textoNumero(*total.valor - *base);
        nec[0] = textoNumero(*base);
    }

    // The sums below read the box as text, so a row that was not found stops them.
    const auto soma = [&nec](std::size_t caixa, double parcela) -> bool {
        const auto atual = parseNumber(nec[caixa]);
        if (!atual)
            return false;
        nec[caixa] = textoNumero(*atual + parcela);
        return true;
    };

    if (arrozIrrigado(d.posicao) && d.sistemaSemeadura == kPreGerminado) {
        if (!soma(3, kAcrescimoPreGerminado))
            return falhou(r, semLinha(chaves.n));
        nec[0] = QStringLiteral("0");
    }

    if (d.posicao == graos::Milho) {
        const auto massa = parseNumber(d.massaSeca);
        if (!massa)
            return falhou(r, Desfecho::critico(QStringLiteral("A produção de massa seca não é um número válido!")));
        const double ajuste = ajusteMassaSeca(d.cultivoAnterior, *massa);
        if (ajuste != 0 && !(soma(0, ajuste) && soma(3, ajuste)))
            return falhou(r, semLinha(chaves.n));
    }

    // Phosphorus and potassium, by the tables of the crop order.
    const std::array<std::pair<const Consulta*, int>, 2> nutrientes
        = { { { &chaves.p, classe(session, analise::kClasseP) }, { &chaves.k, classe(session, analise::kClasseK) } } };
    for (std::size_t n = 0; n < nutrientes.size(); ++n) {
        const Consulta& consulta = *nutrientes[n].first;
        if (const auto linha = leLinha(db, consulta)) {
            const Leitura lida
                = necessidadeDaLinha(*linha, consulta, nutrientes[n].second + kDeslocamentoClasse, *e);
            if (lida.falha)
                return falhou(r, *lida.falha);
            nec[1 + n] = textoNumero(*lida.valor);
        }
    }

    // The table figures hold the official correction; the gradual rule swaps its dose in.
    r.comCorrecao = !arrozIrrigado(d.posicao);
    if (r.comCorrecao && d.ajusteGradual) {
        const auto& tab = session.TabCorrecao;
        for (std::size_t n = 0; n < 2; ++n) {
            const auto oficial = toNumber(tab[kAgora + n]);
            const auto gradual = toNumber(tab[kAgora + kGradual + n]);
            if (!oficial || !gradual)
                return falhou(r, 
                    Desfecho::critico(QStringLiteral("A correção gradual não pôde ser aplicada: verifique a análise.")));
            if (!soma(1 + n, *gradual - *oficial))
                return falhou(r, semLinha(n == 0 ? chaves.p : chaves.k));
        }
    }

    session.CultivoTxt = chaves.cultivoTxt;
    NecessidadeRecalculada(session, true);
    return r;
}

void CarregaCorrecaoOficial(Session& session)
{
    auto& tab = session.TabCorrecao;
    for (int n = 0; n < 2; ++n) {
        const int ordinal = n == 0 ? analise::kClasseP : analise::kClasseK;
        const QStringList partes = campos(CorrecaoPorClasse(session.Cultivo, classe(session, ordinal)));
        tab[kTotal + n] = partes[2];
        tab[kFracao + n] = partes[0];
        tab[kAgora + n] = partes[1];
    }
}

void CarregaCorrecaoGradual(Session& session)
{
    const float dP = DoseCorrecao(
        analiseSingle(session.Analise, analise::kArgila), analiseSingle(session.Analise, analise::kP), QStringLiteral("P"));
    // Lower case on purpose: the potassium dose of this rule is always 0, and must stay so.
    const float dK
        = DoseCorrecao(analiseSingle(session.Analise, analise::kCTC), analiseSingle(session.Analise, analise::kK), QStringLiteral("k"));
    auto& tab = session.TabCorrecao;
    const std::array<float, 2> doses = { dP, dK };
    for (std::size_t n = 0; n < doses.size(); ++n) {
        const QStringList partes = campos(CorrecaoPorDose(session.Cultivo, doses[n]));
        tab[kTotal + kGradual + n] = semDecimais(partes[2]);
        tab[kFracao + kGradual + n] = partes[0];
        tab[kAgora + kGradual + n] = semDecimais(partes[1]);
    }
}

std::array<QString, 6> AplicaCorrecao(const std::array<QVariant, 12>& tab, bool gradual)
{
    const int k = gradual ? kGradual : 0;
    return { textoElemento(tab[kTotal + k]), textoElemento(tab[kFracao + k]), textoElemento(tab[kAgora + k]),
        textoElemento(tab[kTotal + k + kDoK]), textoElemento(tab[kFracao + k + kDoK]),
        textoElemento(tab[kAgora + k + kDoK]) };
}

QString nomeCulturaGraos(const DefinicoesGraos& d)
{
    const QString cultura = culturasGraos().value(d.posicao);
    if (arrozIrrigado(d.posicao))
        return cultura + QStringLiteral(" - ") + d.textoSistema;
    return cultura;
}

Parada ProssegueGraos(
    Session& session, WindowHost& janelas, const DefinicoesGraos& d, const TextosNec& nec)
{
    if (nec[0].isEmpty())
        return Desfecho::aviso(kMsgNaoCalculada);
    const auto e = parseNumber(d.expectativa);
    if (!e)
        return Desfecho::critico(kMsgExpectativaInvalida);
    return ProssegueCultura(session, janelas, nomeCulturaGraos(d), toSingle(*e), nec);
}

} // namespace lavra
