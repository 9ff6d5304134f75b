#include "forages.h"

#include "app/analise.h"
#include "app/session.h"
#include "base/numbers.h"

#include <array>

namespace lavra {

namespace {

// FORRAGN: nitrogen at the base, and the class columns start at ordinal 4 for class 2.
constexpr int kColNBase = 3;
// The P and K tables put class 1 at ordinal 3; FORRAGN puts organic-matter class 2 at ordinal 4.
constexpr int kDeslocamentoClasse = 2;
// P and K after cut, hay or silage.
constexpr double kFatorUso = 1.5;

// The kinds of note on nitrogen.
enum TipoAviso { SemAviso, AvisoAlfafa, AvisoConsorcio, AvisoLeguminosa };

TipoAviso tipoAviso(int posicao)
{
    using namespace forrageiras;
    switch (posicao) {
    case Alfafa: return AvisoAlfafa;
    case ConsorciacaoFria:
    case ConsorciacaoQuente:
    case PastagensGramELeg:
        return AvisoConsorcio;
    // The grass introduction takes the legume note; that is how the program has it.
    case LeguminosasAnuaisFria:
    case LeguminosasAnuaisQuente:
    case LeguminosasPerenesFria:
    case LeguminosasPerenesQuente:
    case PastagensGramineas:
        return AvisoLeguminosa;
    default: return SemAviso;
    }
}

Parada verificaDefinicoes(const DefinicoesForrageiras& d)
{
    if (d.posicao < 0 || d.posicao >= culturasForrageiras().size())
        return Desfecho::aviso(kMsgSelecioneCultura, QStringLiteral("lstCulturas"));
    if (forragemPedeRendimento(d.posicao) && d.expectativa.isEmpty())
        return Desfecho::aviso(kMsgInformeExpectativa, QStringLiteral("txtExpect"));
    if (forragemPedeCombinacao(d.posicao) && d.combinacao < 1)
        return Desfecho::aviso(kMsgSelecioneCombinacao, QStringLiteral("cboComb"));
    if (forragemPedeCultivoAnterior(d.posicao) && d.cultivoAnterior < 1)
        return Desfecho::aviso(kMsgSelecioneCultivoAnterior, QStringLiteral("cboCtvoAnt"));
    if (forragemPedeUso(d.posicao) && d.usoAnterior < 1)
        return Desfecho::aviso(kMsgSelecioneUsoAnterior, QStringLiteral("cboUsoAnt"));
    return std::nullopt;
}

} // namespace

const QStringList& combinacoesForragem()
{
    static const QStringList lista = { QStringLiteral("Anual X Anual"), QStringLiteral("Anual X Perene"),
        QStringLiteral("Perene X Perene") };
    return lista;
}

const QStringList& usosAnterioresForragem()
{
    static const QStringList lista = { QStringLiteral("Corte"), QStringLiteral("Feno"), QStringLiteral("Pastejo"),
        QStringLiteral("Silagem") };
    return lista;
}

bool forragemPedeRendimento(int posicao)
{
    return posicao != forrageiras::PastagensNativas;
}

bool forragemPedeCombinacao(int posicao)
{
    return posicao == forrageiras::ConsorciacaoFria || posicao == forrageiras::ConsorciacaoQuente;
}

bool forragemPedeCultivoAnterior(int posicao)
{
    return posicao == forrageiras::MilhoSilagem || posicao == forrageiras::SorgoSilagem;
}

bool forragemPedeUso(int posicao)
{
    return posicao >= forrageiras::CapimElefante && posicao <= forrageiras::LeguminosasPerenesQuente;
}

double nitrogenioEquacao(RegraNForragem regra, double mo)
{
    if (mo > kLimiteMOForragem)
        return 0;
    switch (regra) {
    case RegraNForragem::EquacaoA: return 300 - 40 * mo;
    case RegraNForragem::EquacaoB: return 150 - 18 * mo - 0.8 * mo * mo;
    default: return 0;
    }
}

std::optional<double> referenciaMistura(int posicao, int combinacao)
{
    static constexpr std::array<double, 3> fria = { 5, 12.0 / 2, 7 };
    static constexpr std::array<double, 3> quente = { 7, 19.0 / 2, 12 };
    if (combinacao < 1 || combinacao > 3)
        return std::nullopt;
    const auto i = static_cast<std::size_t>(combinacao - 1);
    if (posicao == forrageiras::ConsorciacaoFria)
        return fria[i];
    if (posicao == forrageiras::ConsorciacaoQuente)
        return quente[i];
    return std::nullopt;
}

QString avisoForragem(int posicao)
{
    QString continuacao;
    switch (tipoAviso(posicao)) {
    case AvisoAlfafa:
        continuacao = QStringLiteral(" a inoculação das sementes com rizóbio específico. Pode ser aplicado")
            + QStringLiteral(" de 20 a 40 kg/ha de N após cada corte se for constatada ineficiência da inoculação.");
        break;
    case AvisoConsorcio:
        continuacao = QStringLiteral(" a inoculação das sementes de leguminosas com rizóbio específico. Se for constatada")
            + QStringLiteral(" ineficiência da inoculação, pode ser aplicado 20 kg/ha de N no")
            + QStringLiteral(" perfilhamento da gramínea e 20 kg/ha de N após cada duas utilizações da pastagem.");
        break;
    case AvisoLeguminosa:
        continuacao = QStringLiteral(" a inoculação das sementes de leguminosas com rizóbio específico. Se for constatada")
            + QStringLiteral(" ineficiência da inoculação, pode ser aplicado 20 kg/ha de N após cada duas utilizações da pastagem.");
        break;
    case SemAviso: return {};
    }
    return QStringLiteral("Não será aplicado N, porque para ") + culturasForrageiras().value(posicao)
        + QStringLiteral(" recomenda-se fazer") + continuacao;
}

CalculoCultura CalculaForrageiras(const Store& db, Session& session, const DefinicoesForrageiras& d)
{
    CalculoCultura r;
    if (auto recusa = verificaDefinicoes(d)) {
        r.desfecho = recusa;
        return r;
    }
    r.substituiResultado = true;
    double e = 0;
    if (forragemPedeRendimento(d.posicao)) {
        const auto numero = parseNumber(d.expectativa);
        if (!numero)
            return falhou(r, Desfecho::critico(kMsgExpectativaInvalida));
        e = *numero;
    }
    const ChavesCultura chaves = chavesForrageiras(d.posicao, d.cultivoAnterior, session.Cultivo);
    TextosNec& nec = r.nec;

    const RegraNForragem regra = regraNitrogenioForragem(d.posicao);
    if (regra == RegraNForragem::Nenhuma) {
        nec[0] = QStringLiteral("0");
        nec[3] = QStringLiteral("0");
    } else if (const auto linha = leLinha(db, chaves.n)) {
        double total = 0;
        if (regra == RegraNForragem::Tabela) {
            const int ordinal = classe(session.Analise, analise::kClasseMO) + kDeslocamentoClasse;
            const auto daClasse = celula(*linha, ordinal);
            if (!daClasse)
                return falhou(r, semValor(chaves.n, ordinal));
            total = *daClasse;
        } else {
            // The organic matter as it was typed, so that 6.4 stays within the equations.
            total = nitrogenioEquacao(regra, celula(session.Analise, analise::kMO).value_or(0));
        }
        const auto base = celula(*linha, kColNBase);
        if (!base)
            return falhou(r, semValor(chaves.n, kColNBase));
        const auto referencia = celula(*linha, kColRendimento);
        if (!referencia)
            return falhou(r, semValor(chaves.n, kColRendimento));
        if (e > *referencia) {
            const auto adicional = celula(*linha, kColAdicional);
            if (!adicional)
                return falhou(r, semValor(chaves.n, kColAdicional));
            nec[3] = textoNumero((e - *referencia) * *adicional + total - *base);
        } else {
            nec[3] = textoNumero(total - *base);
        }
        nec[0] = textoNumero(*base);
    }

    // Cut, hay and silage take more P and K from the soil than grazing, which returns them.
    const bool aumenta = forragemPedeUso(d.posicao) && d.usoAnterior != kUsoPastejo;
    const auto referencia = referenciaMistura(d.posicao, d.combinacao);
    const std::array<std::pair<const Consulta*, int>, 2> nutrientes = { {
        { &chaves.p, classe(session.Analise, analise::kClasseP) + kDeslocamentoClasse },
        { &chaves.k, classe(session.Analise, analise::kClasseK) + kDeslocamentoClasse },
    } };
    for (std::size_t n = 0; n < nutrientes.size(); ++n) {
        const auto& [consulta, ordinal] = nutrientes[n];
        const auto linha = leLinha(db, *consulta);
        if (!linha)
            continue; // the box stays empty, as the tables leave it
        const Leitura lida = necessidadeDaLinha(*linha, *consulta, ordinal, e, referencia);
        if (lida.falha)
            return falhou(r, *lida.falha);
        nec[1 + n] = textoNumero(aumenta ? *lida.valor * kFatorUso : *lida.valor);
    }

    session.CultivoTxt = chaves.cultivoTxt;
    NecessidadeRecalculada(session, false);
    if (const QString aviso = avisoForragem(d.posicao); !aviso.isEmpty())
        r.desfecho = Desfecho::informacao(aviso);
    return r;
}

Parada ProssegueForrageiras(
    Session& session, WindowHost& janelas, const DefinicoesForrageiras& d, const TextosNec& nec)
{
    std::optional<float> expectativa;
    if (forragemPedeRendimento(d.posicao)) {
        const auto e = parseNumber(d.expectativa);
        if (!e)
            return Desfecho::critico(kMsgExpectativaInvalida);
        expectativa = toSingle(*e);
    }
    return ProssegueCultura(session, janelas, culturasForrageiras().value(d.posicao), expectativa, nec);
}

} // namespace lavra
