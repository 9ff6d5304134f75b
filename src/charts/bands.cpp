#include "bands.h"

#include "app/analise.h"
#include "app/session.h"
#include "base/numbers.h"
#include "calc/crops.h"
#include "registers/analysis.h"
#include "store/cursormodel.h"
#include "store/query.h"
#include "store/storeerror.h"

#include <cmath>

namespace lavra {

namespace {

struct Indicador {
    IndicadorGraf id;
    const char* rotulo;  // under the bar, and the series of the evolution
    int colunaValor;
    int colunaClasse;
    int classeDeTopo;  // 0 where the top class has an upper end
    Cor cor;  // of its series in the evolution
};

// In the order of the bars.
constexpr std::array<Indicador, 9> kIndicadores = { {
    { IndicadorGraf::pH, "pH", analise::kPH, analise::kClassePH, 4, { 222, 105, 0 } },
    { IndicadorGraf::Ca, "Ca", analise::kCa, analise::kClasseCa, 4, { 0, 255, 0 } },
    { IndicadorGraf::Mg, "Mg", analise::kMg, analise::kClasseMg, 4, { 0, 255, 255 } },
    { IndicadorGraf::SatAl, "Sat. Al", analise::kSatAl, analise::kClasseSatAl, 0, { 255, 0, 0 } },
    { IndicadorGraf::SatB, "Sat. B", analise::kSatBases, analise::kClasseSatBases, 0, { 96, 96, 96 } },
    { IndicadorGraf::CTC, "CTCpH7", analise::kCTC, analise::kClasseCTC, 4, { 0, 0, 255 } },
    { IndicadorGraf::MO, "MO", analise::kMO, analise::kClasseMO, 4, { 255, 0, 255 } },
    { IndicadorGraf::P, "P", analise::kP, analise::kClasseP, 5, { 128, 0, 0 } },
    { IndicadorGraf::K, "K", analise::kK, analise::kClasseK, 5, { 0, 128, 0 } },
} };

constexpr Cor kCorFertigrafico { 222, 105, 0 };

// The grid beside the Fertigraph: clay stands in it although it has no bar.
struct LinhaTabela {
    const char* texto;
    int coluna;
};
constexpr std::array<LinhaTabela, 10> kLinhasTabela = { {
    { "pH", analise::kPH },
    { "Ca (cmolc/dm³)", analise::kCa },
    { "Mg (cmolc/dm³)", analise::kMg },
    { "Sat.Al (%)", analise::kSatAl },
    { "Sat.B (%)", analise::kSatBases },
    { "CTC (cmolc/dm³)", analise::kCTC },
    { "MO (%)", analise::kMO },
    { "Argila (%)", analise::kArgila },
    { "P (mg/dm³)", analise::kP },
    { "K (mg/dm³)", analise::kK },
} };

const QString kTituloYFertigrafico = QStringLiteral("MB       B       M       A       MA");
const QString kTituloYEvolucao = QStringLiteral("MB        B        M        A        MA");

QStringList rotulosDosIndicadores()
{
    QStringList rotulos;
    for (const Indicador& i : kIndicadores)
        rotulos << QString::fromUtf8(i.rotulo);
    return rotulos;
}

float valorSimples(const QVariant& valor)
{
    return toSingle(toNumber(valor).value_or(0));
}

// The class columns are cut to whole numbers.
int classeDe(const QVariant& valor)
{
    return static_cast<int>(std::trunc(toNumber(valor).value_or(0)));
}

std::optional<double> posicao(const TabelaGraf& tabela, const Indicador& indicador, const QVector<QVariant>& analise)
{
    const auto faixa = tabela.faixa(chaveGraf(indicador.id, analise));
    if (!faixa)
        return std::nullopt;
    const bool topo = indicador.classeDeTopo != 0 && classeDe(analise.value(indicador.colunaClasse)) == indicador.classeDeTopo;
    const double p = PosicaoNaEscala(valorSimples(analise.value(indicador.colunaValor)), *faixa, topo);
    return indicador.id == IndicadorGraf::K ? static_cast<double>(toSingle(p)) : p;
}

QString textoDaColuna(const QVector<QVariant>& analise, int coluna)
{
    const auto valor = toNumber(analise.value(coluna));
    return valor ? formatFixed(toSingle(*valor), 1) : QString();
}

} // namespace

TabelaGraf TabelaGraf::le(const Store& db)
{
    TabelaGraf tabela;
    const Cursor rs = consulta::sql(db, QStringLiteral("SELECT Classe, BaseFaixa, LimInferior, LimSuperior FROM Graf ORDER BY rowid;"));
    for (int linha = 0; linha < rs.recordCount(); ++linha) {
        tabela.insere(rs.valueAt(linha, 0).toString(),
            { valorSimples(rs.valueAt(linha, 1)), valorSimples(rs.valueAt(linha, 2)), valorSimples(rs.valueAt(linha, 3)) });
    }
    return tabela;
}

void TabelaGraf::insere(const QString& chave, const FaixaGraf& faixa)
{
    if (!m_faixas.contains(chave))
        m_faixas.insert(chave, faixa);
}

std::optional<FaixaGraf> TabelaGraf::faixa(const QString& chave) const
{
    const auto achada = m_faixas.constFind(chave);
    if (achada == m_faixas.constEnd())
        return std::nullopt;
    return *achada;
}

double PosicaoNaEscala(float valor, const FaixaGraf& faixa, bool classeDeTopo)
{
    double superior = faixa.superior;
    if (classeDeTopo)
        superior += valor;
    return faixa.base + (static_cast<double>(valor) - faixa.inferior) * kAlturaClasse / (superior - faixa.inferior);
}

std::array<std::optional<double>, 9> PosicoesDaAnalise(const TabelaGraf& tabela, const QVector<QVariant>& analise)
{
    std::array<std::optional<double>, 9> posicoes;
    for (std::size_t i = 0; i < kIndicadores.size(); ++i)
        posicoes[i] = posicao(tabela, kIndicadores[i], analise);
    return posicoes;
}

Fertigrafico MontaFertigrafico(const TabelaGraf& tabela, const QVector<QVariant>& analise)
{
    Fertigrafico f;
    f.grafico.titulo = analise.value(analise::kCodigo).toString().toUpper();
    f.grafico.tituloX = QStringLiteral("Indicadores da fertilidade");
    f.grafico.tituloY = kTituloYFertigrafico;
    f.grafico.categorias = rotulosDosIndicadores();
    SerieBarras serie;
    serie.cor = kCorFertigrafico;
    const auto posicoes = PosicoesDaAnalise(tabela, analise);
    for (std::size_t i = 0; i < posicoes.size(); ++i) {
        // A K with no row stands at 0; any other indicator has an empty bar.
        const bool k = kIndicadores[i].id == IndicadorGraf::K;
        serie.valores << (posicoes[i] || !k ? posicoes[i] : std::optional<double>(0.0));
    }
    f.grafico.series << serie;

    f.tabela << QStringList { QStringLiteral("Indicador"), QStringLiteral("Valor") };
    for (const LinhaTabela& linha : kLinhasTabela)
        f.tabela << QStringList { QString::fromUtf8(linha.texto), textoDaColuna(analise, linha.coluna) };
    return f;
}

ImpressaoGrafico ImpressaoFertigrafico()
{
    return { { { kCabecalhoImpressao, 3900, 2000 }, { QStringLiteral("FERTIGRÁFICO"), 5500, 2300 } }, { 3000, 2600 }, std::nullopt };
}

Parada CarregaEvolucao(Session& session, const QString& codigo)
{
    const QVector<QVariant> escolhida = LeAnalise(session.db, codigo);
    const Cursor rs = consulta::sql(session.db,
        QStringLiteral("SELECT * FROM Analises WHERE Local_ LIKE ? AND Fazenda LIKE ? AND Gleba LIKE ? ORDER BY Data_, rowid;"),
        { escolhida.value(analise::kLocal).toString(), escolhida.value(analise::kFazenda).toString(),
            escolhida.value(analise::kGleba).toString() });
    if (rs.recordCount() < 2)
        return Desfecho::informacao(QStringLiteral("Não é possível exibir gráfico de evolução da fertilidade para uma única área!"));
    QList<QVector<QVariant>> analises;
    for (int linha = 0; linha < rs.recordCount(); ++linha) {
        QVector<QVariant> registro(rs.columnCount());
        for (int c = 0; c < rs.columnCount(); ++c)
            registro[c] = rs.valueAt(linha, c);
        analises << registro;
    }
    session.EvolAnalises = std::move(analises);
    session.NAnalisesEvol = static_cast<std::int16_t>(std::min<qsizetype>(session.EvolAnalises.size(), INT16_MAX));
    return std::nullopt;
}

GraficoBarras MontaEvolucao(const TabelaGraf& tabela, const QList<QVector<QVariant>>& analises)
{
    GraficoBarras g;
    g.tituloX = QStringLiteral("Datas das avaliações");
    g.tituloY = kTituloYEvolucao;
    g.legenda = true;
    if (!analises.isEmpty()) {
        const QVector<QVariant>& primeira = analises.first();
        g.titulo = (primeira.value(analise::kFazenda).toString() + QLatin1Char('/') + primeira.value(analise::kGleba).toString()).toUpper()
            + QString(16, QLatin1Char(' '));
    }
    for (const Indicador& i : kIndicadores)
        g.series << SerieBarras { QString::fromUtf8(i.rotulo), i.cor, {} };
    for (const QVector<QVariant>& analise : analises) {
        g.categorias << cellText(analise.value(analise::kData));
        const auto posicoes = PosicoesDaAnalise(tabela, analise);
        for (std::size_t i = 0; i < posicoes.size(); ++i)
            g.series[static_cast<qsizetype>(i)].valores << posicoes[i];
    }
    return g;
}

ImpressaoGrafico ImpressaoEvolucao()
{
    return { { { kCabecalhoImpressao, std::nullopt, 1000 }, { QStringLiteral("EVOLUÇÃO DA FERTILIDADE"), std::nullopt, 1400 } },
        { 2000, 1700 }, QSize(8000, 5200) };
}

} // namespace lavra
