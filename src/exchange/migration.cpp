#include "migration.h"

#include "base/numbers.h"
#include "importanalysis.h"
#include "registers/analysis.h"
#include "store/connection.h"
#include "store/databasefile.h"
#include "store/insertion.h"
#include "store/store.h"
#include "store/storeerror.h"
#include "workbook.h"

#include <QHash>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <optional>

namespace lavra {

namespace {

// A column of the sheet from its letters, as the spreadsheet names it: A is 1, AA is 27.
constexpr int col(const char* letras)
{
    int n = 0;
    for (; *letras; ++letras)
        n = n * 26 + (*letras - 'A' + 1);
    return n;
}

const QString kTraco = QStringLiteral("---");

QString texto(const Celula& c) { return c.comoTexto().trimmed(); }

// A figure of the sheet: empty counts as 0, a text must read as a number.
std::optional<float> figura(const Celula& c)
{
    switch (c.tipo) {
    case Celula::Tipo::Vazia: return 0.0f;
    case Celula::Tipo::Texto:
        if (c.vazia())
            return 0.0f;
        if (const auto n = parseNumber(c.texto.trimmed()))
            return toSingle(*n);
        return std::nullopt;
    default: return toSingle(c.numero);
    }
}

QDate dataDe(const Celula& c)
{
    return c.tipo == Celula::Tipo::Data ? c.data() : ControlaDada(texto(c));
}

bool numerico(const QString& t) { return parseNumber(t.trimmed()).has_value(); }

// The first row of each range the passes read, their last, and the bar of the fertilisers.
constexpr int kPrimeiroCliente = 100, kUltimoCliente = 5100;
constexpr int kPrimeiraAnalise = 2, kUltimaAnalise = 30000;
constexpr int kPrimeiroFertilizante = 2, kUltimaFormula = 200, kUltimaFonte = 50, kBarraFertilizantes = 350;
constexpr int kPrimeiraRecomendacao = 4, kUltimaRecomendacao = 65535;

const QString kArrozIrrigado = QStringLiteral("Arroz irrigado");
const QString kArrozPreGerminado = QStringLiteral("Arroz pré-germinado");

// The search of an analysis among the recommendations of one range, as the spreadsheet's Find
// does it: any cell that holds the code counts, capitals or not, and the range is gone through
// from its second cell, its first coming last. What matters is whether the first cell found
// is that of a rice crop. Each cell is indexed by the runs of three characters it holds, so a code
// is looked for only among the cells that hold its rarest run.
class BuscaArroz {
public:
    BuscaArroz(const Planilha& p, int colunaChave, int colunaCultura)
    {
        const auto poe = [&](int linha) {
            const QString chave = texto(p.celula(linha, colunaChave));
            if (chave.isEmpty())
                return;
            const QString cultura = texto(p.celula(linha, colunaCultura));
            m_arroz.push_back(cultura == kArrozIrrigado || cultura == kArrozPreGerminado);
            m_celulas.push_back(chave.toUpper());
        };
        for (int linha = kPrimeiraRecomendacao + 1; linha <= std::min(p.linhasUsadas(), kUltimaRecomendacao); ++linha)
            poe(linha);
        poe(kPrimeiraRecomendacao);
        // The views point into the cells, which are not touched again.
        for (int i = 0; i < static_cast<int>(m_celulas.size()); ++i) {
            const QStringView celula = m_celulas[static_cast<std::size_t>(i)];
            for (qsizetype k = 0; k + kRun <= celula.size(); ++k) {
                std::vector<int>& lista = m_runs[celula.mid(k, kRun)];
                if (lista.empty() || lista.back() != i)
                    lista.push_back(i);
            }
        }
    }

    bool primeiraEhArroz(const QString& codigoMaiusculo) const
    {
        const std::vector<int>* candidatas = nullptr;
        const QStringView codigo = codigoMaiusculo;
        for (qsizetype k = 0; k + kRun <= codigo.size(); ++k) {
            const auto lista = m_runs.constFind(codigo.mid(k, kRun));
            if (lista == m_runs.cend())
                return false;
            if (!candidatas || lista->size() < candidatas->size())
                candidatas = &*lista;
        }
        const auto achou = [&](int i) { return m_celulas[static_cast<std::size_t>(i)].contains(codigoMaiusculo); };
        if (candidatas) {
            for (const int i : *candidatas) {
                if (achou(i))
                    return m_arroz[static_cast<std::size_t>(i)];
            }
            return false;
        }
        for (int i = 0; i < static_cast<int>(m_celulas.size()); ++i) {
            if (achou(i))
                return m_arroz[static_cast<std::size_t>(i)];
        }
        return false;
    }

private:
    static constexpr qsizetype kRun = 3;
    std::vector<QString> m_celulas;  // in the order of the search, in capitals
    std::vector<bool> m_arroz;       // whether each is of a rice crop
    QHash<QStringView, std::vector<int>> m_runs;  // the cells, in order, that hold each run
};

QSqlQuery consultaSql(const Connection& cn, const QString& sql)
{
    QSqlQuery q(cn.database());
    q.setForwardOnly(true);
    if (!q.exec(sql))
        throw engineError(q.lastError(), StoreError::Access::Read);
    return q;
}

// The keys of a table in capitals, as the spreadsheet edition compared them.
QSet<QString> chaves(const Connection& cn, const QString& sql)
{
    QSqlQuery q = consultaSql(cn, sql);
    QSet<QString> r;
    while (q.next()) {
        QString chave = q.value(0).toString().toUpper();
        for (int i = 1; i < q.record().count(); ++i)
            chave += QChar(0) + q.value(i).toString().toUpper();
        r.insert(chave);
    }
    return r;
}

class Migracao {
public:
    Migracao(Connection& cn, const Planilha& p, const ProgressoMigracao& progresso, RelatorioMigracao& r)
        : m_cn(cn), m_p(p), m_progresso(progresso), m_r(r)
    {
    }

    Celula c(int linha, int coluna) const { return m_p.celula(linha, coluna); }
    QString t(int linha, int coluna) const { return texto(c(linha, coluna)); }

    void etapa(const QString& nome, int maximo) const
    {
        if (m_progresso.etapa)
            m_progresso.etapa(nome, maximo);
    }
    bool segue(int valor) const { return !m_progresso.passo || m_progresso.passo(valor); }

    ContagemMigracao& contagem(const QString& tabela)
    {
        m_r.tabelas.push_back({tabela});
        return m_r.tabelas.back();
    }
    void recusa(ContagemMigracao& conta, const QString& motivo)
    {
        ++conta.recusadas;
        m_r.recusas << motivo;
    }

    void empresa()
    {
        etapa(QStringLiteral("Transferindo dados da empresa..."), 1);
        constexpr int kLinhas[] = {34, 35, 36, 38, 39, 37, 40, 43};
        if (c(kLinhas[0], col("AG")).vazia())
            return;
        QVector<QVariant> linha;
        for (const int l : kLinhas)
            linha << SemVazio(c(l, col("AG")));
        linha << QStringLiteral("???") << QStringLiteral("???");
        QSqlQuery q = consultaSql(m_cn, QStringLiteral("SELECT rowid FROM Empresa LIMIT 1"));
        if (q.next())
            Substituicao(m_cn, QStringLiteral("Empresa")).substitui(q.value(0).toLongLong(), linha);
        else
            Insercao(m_cn, QStringLiteral("Empresa")).insere(linha);
        m_r.empresa = true;
    }

    bool clientes()
    {
        etapa(QStringLiteral("Transferindo clientes..."), kUltimoCliente);
        ContagemMigracao& conta = contagem(QStringLiteral("Clientes"));
        QSet<QString> existentes = chaves(m_cn, QStringLiteral("SELECT Nome FROM Clientes"));
        Insercao novo(m_cn, QStringLiteral("Clientes"));
        const QString x = QStringLiteral("???");
        for (int i = kPrimeiroCliente; i <= kUltimoCliente; ++i) {
            const QString nome = t(i, col("V"));
            if (!nome.isEmpty()) {
                if (existentes.contains(nome.toUpper())) {
                    ++conta.existentes;
                } else {
                    novo.insere({nome, x, x, x, x});
                    existentes.insert(nome.toUpper());
                    ++conta.adicionadas;
                }
            }
            if (!segue(i))
                return false;
        }
        return true;
    }

    bool analises()
    {
        etapa(QStringLiteral("Transferindo análises..."), kUltimaAnalise);
        ContagemMigracao& conta = contagem(QStringLiteral("Analises"));
        QSet<QString> existentes = chaves(m_cn, QStringLiteral("SELECT \"Código\" FROM Analises"));
        const BuscaArroz porFormulas(m_p, col("FC"), col("FE"));
        const BuscaArroz porFormulacao(m_p, col("GR"), col("GT"));
        Insercao nova(m_cn, QStringLiteral("Analises"));
        for (int i = kPrimeiraAnalise; i <= kUltimaAnalise; ++i) {
            const QString codigo = t(i, col("A"));
            if (!codigo.isEmpty()) {
                const QString chave = codigo.toUpper();
                if (existentes.contains(chave)) {
                    ++conta.existentes;
                } else if (const auto linha = analise(i, codigo, porFormulas, porFormulacao); !linha) {
                    recusa(conta, m_motivo);
                } else {
                    nova.insere(*linha);
                    existentes.insert(chave);
                    ++conta.adicionadas;
                }
            }
            if (!segue(i))
                return false;
        }
        return true;
    }

    std::optional<QVector<QVariant>> analise(int i, const QString& codigo, const BuscaArroz& porFormulas,
                                              const BuscaArroz& porFormulacao)
    {
        // The figures in their columns; the CTC and the saturation by bases as the sheet worked them out.
        static constexpr std::pair<const char*, float MedidasAnalise::*> kFiguras[] = {
            {"F", &MedidasAnalise::area}, {"H", &MedidasAnalise::pH},    {"I", &MedidasAnalise::ca},
            {"J", &MedidasAnalise::mg},   {"K", &MedidasAnalise::al},    {"L", &MedidasAnalise::hAl},
            {"M", &MedidasAnalise::bases}, {"N", &MedidasAnalise::ctc},  {"O", &MedidasAnalise::smp},
            {"P", &MedidasAnalise::mo},   {"Q", &MedidasAnalise::argila}, {"R", &MedidasAnalise::p},
            {"S", &MedidasAnalise::k}};
        MedidasAnalise m;
        for (const auto& [letras, campo] : kFiguras) {
            const Celula celula = c(i, col(letras));
            const auto n = figura(celula);
            if (!n) {
                const QString nome = QString::fromLatin1(letras) + QString::number(i);
                m_motivo = QStringLiteral("Linha %1, análise %2: a célula %3 ('%4') não é um número (o símbolo "
                                          "decimal deste computador é '%5').")
                               .arg(QString::number(i), codigo, nome, texto(celula), decimalSymbol());
                return std::nullopt;
            }
            m.*campo = *n;
        }
        // The spreadsheet knew only Mehlich's extraction; rice shows in the crops recommended.
        m.metodoP = 1;
        const QString chave = codigo.toUpper();
        m.condicao = porFormulas.primeiraEhArroz(chave) || porFormulacao.primeiraEhArroz(chave) ? 2 : 1;
        QVector<QVariant> linha = LinhaAnalise(
            {codigo, t(i, col("T")), t(i, col("B")), t(i, col("C")), t(i, col("D")), dataDe(c(i, col("E"))),
             t(i, col("G"))},
            m);
        // This column is reserved; the register writes 0 in it, the spreadsheet's transfer 1.
        linha[23] = 1;
        return linha;
    }

    static void primeiro(QHash<QString, qint64>& indice, const QString& nome, qint64 rowid)
    {
        const QString chave = nome.toUpper();
        if (!indice.contains(chave))
            indice.insert(chave, rowid);
    }

    // The four passes of the fertilisers share one bar and the one question.
    struct Fertilizantes {
        Insercao novo;
        Substituicao troca;
        QHash<QString, qint64> porFormula, porNome;  // rowid of the first row of each, in capitals
        bool perguntado = false;
        bool substitui = true;
        int barra = 0;
    };

    bool fertilizantes()
    {
        etapa(QStringLiteral("Transferindo fertilizantes..."), kBarraFertilizantes);
        ContagemMigracao& conta = contagem(QStringLiteral("NPK"));
        Fertilizantes f{Insercao(m_cn, QStringLiteral("NPK")), Substituicao(m_cn, QStringLiteral("NPK")), {}, {}};
        // Of equal names, the first row is the one found.
        QSqlQuery q = consultaSql(m_cn, QStringLiteral("SELECT rowid, \"Fórmula\", \"Especificação\" FROM NPK ORDER BY rowid"));
        while (q.next()) {
            primeiro(f.porFormula, q.value(1).toString(), q.value(0).toLongLong());
            primeiro(f.porNome, q.value(2).toString(), q.value(0).toLongLong());
        }

        for (int i = kPrimeiroFertilizante; i <= kUltimaFormula; ++i) {
            if (!c(i, col("CT")).vazia()) {
                const auto n = figura(c(i, col("CT"))), p = figura(c(i, col("CU"))), k = figura(c(i, col("CV")));
                if (!n || !p || !k) {
                    recusa(conta, QStringLiteral("Linha %1, fórmula %2-%3-%4: as garantias devem ser números.")
                                      .arg(i)
                                      .arg(t(i, col("CT")), t(i, col("CU")), t(i, col("CV"))));
                } else {
                    const QString nome = t(i, col("CW")) == QLatin1String("Para exemplo") ? QStringLiteral("Fórmula")
                                                                                         : t(i, col("CW"));
                    const QString formula = t(i, col("CT")) + QLatin1Char('-') + t(i, col("CU")) + QLatin1Char('-')
                        + t(i, col("CV"));
                    grava(f, conta, true, {formula, nome, *n, *p, *k, *k == 0 ? 0.0f : *p / *k});
                }
            }
            if (!segue(++f.barra))
                return false;
        }
        struct Fonte {
            const char *nome, *n, *p, *k;  // columns; null for a nutrient the source does not give
        };
        for (const Fonte& fonte : {Fonte{"DH", "DI", nullptr, nullptr}, Fonte{"DJ", "DL", "DK", nullptr},
                                   Fonte{"DM", "DO", nullptr, "DN"}}) {
            for (int i = kPrimeiroFertilizante; i <= kUltimaFonte; ++i) {
                if (!c(i, col(fonte.nome)).vazia()) {
                    const auto garantia = [&](const char* coluna) -> std::optional<float> {
                        return coluna ? figura(c(i, col(coluna))) : 0.0f;
                    };
                    const auto comoTexto = [&](const char* coluna) {
                        return coluna ? t(i, col(coluna)) : QStringLiteral("0");
                    };
                    const auto n = garantia(fonte.n), p = garantia(fonte.p), k = garantia(fonte.k);
                    const QString formula = comoTexto(fonte.n) + QLatin1Char('-') + comoTexto(fonte.p)
                        + QLatin1Char('-') + comoTexto(fonte.k);
                    if (!n || !p || !k) {
                        recusa(conta, QStringLiteral("Linha %1, fertilizante %2 (%3): as garantias devem ser números.")
                                          .arg(i)
                                          .arg(t(i, col(fonte.nome)), formula));
                    } else {
                        grava(f, conta, false, {formula, t(i, col(fonte.nome)), *n, *p, *k, 0});
                    }
                }
                if (!segue(++f.barra))
                    return false;
            }
        }
        return true;
    }

    // A formula is found by its grades, a source by its name. One the database has is
    // overwritten or left as the user answers, asked at the first formula found; a source found
    // before any question is overwritten.
    void grava(Fertilizantes& f, ContagemMigracao& conta, bool formula, QVector<QVariant> linha)
    {
        linha.resize(12);
        for (int o = 6; o < 12; ++o)
            linha[o] = 0;
        const QString procurado = linha[formula ? 0 : 1].toString().toUpper();
        QHash<QString, qint64>& indice = formula ? f.porFormula : f.porNome;
        const auto achado = indice.constFind(procurado);
        if (achado == indice.cend()) {
            const qint64 rowid = f.novo.insere(linha);
            primeiro(f.porFormula, linha[0].toString(), rowid);
            primeiro(f.porNome, linha[1].toString(), rowid);
            ++conta.adicionadas;
            return;
        }
        if (formula && !f.perguntado) {
            f.perguntado = true;
            f.substitui = m_progresso.substituiFertilizantes && m_progresso.substituiFertilizantes();
        }
        if (!f.substitui) {
            ++conta.existentes;
            return;
        }
        f.troca.substitui(achado.value(), linha);
        ++conta.substituidas;
    }

    bool recomendacoes(const QString& tabela, const QString& etapaTexto, int colunaChave,
                       const std::function<QVector<QVariant>(int)>& linhaDe)
    {
        etapa(etapaTexto, kUltimaRecomendacao);
        ContagemMigracao& conta = contagem(tabela);
        QSet<QString> existentes = chaves(m_cn, QStringLiteral("SELECT CodAnalise, CodCultivo FROM ") + tabela);
        Insercao nova(m_cn, tabela);
        for (int i = kPrimeiraRecomendacao; i <= kUltimaRecomendacao; ++i) {
            const QString analise = t(i, colunaChave);
            if (!analise.isEmpty()) {
                const QString cultivo = t(i, colunaChave + 2) + QLatin1Char('-') + t(i, colunaChave + 3)
                    + QLatin1Char('-') + t(i, colunaChave + 4);
                const QString chave = analise.toUpper() + QChar(0) + cultivo.toUpper();
                if (existentes.contains(chave)) {
                    ++conta.existentes;
                } else {
                    QVector<QVariant> linha = linhaDe(i);
                    linha[0] = analise;
                    linha[1] = cultivo;
                    nova.insere(linha);
                    existentes.insert(chave);
                    ++conta.adicionadas;
                }
            }
            if (!segue(i))
                return false;
        }
        return true;
    }

    // The converters of the recommendation columns: s, d, t and the cell as it is.
    enum class Conv { S, D, T, Texto };
    void poe(QVector<QVariant>& linha, int ordinal, int linhaPlanilha, const char* letras, Conv conv) const
    {
        const Celula celula = c(linhaPlanilha, col(letras));
        switch (conv) {
        case Conv::S: linha[ordinal] = IfTxtThenValSing(celula); break;
        case Conv::D: linha[ordinal] = IfTxtThenValDobl(celula); break;
        case Conv::T: linha[ordinal] = SeVazioThenTraço(celula); break;
        case Conv::Texto: linha[ordinal] = texto(celula); break;
        }
    }
    struct Coluna {
        int ordinal;
        const char* letras;
        Conv conv;
    };
    void poe(QVector<QVariant>& linha, int i, std::initializer_list<Coluna> colunas) const
    {
        for (const Coluna& k : colunas)
            poe(linha, k.ordinal, i, k.letras, k.conv);
    }

    QVector<QVariant> recoForm(int i) const
    {
        QVector<QVariant> l(44);
        using enum Conv;
        poe(l, i, {{2, "FE", Texto}, {3, "FF", Texto}, {5, "FH", S}, {7, "FI", S}, {8, "FJ", S}, {9, "FK", S},
                   {10, "FL", S}, {11, "FM", D}, {12, "FN", D}, {13, "FO", T}, {14, "FP", S}, {15, "FQ", S},
                   {16, "FR", S}, {17, "FS", D}, {18, "FT", D}, {19, "FU", T}, {20, "FV", S}, {21, "FW", S},
                   {22, "FX", S}, {23, "FY", D}, {24, "FZ", D}, {25, "GC", S}, {26, "GB", T}, {27, "GE", S},
                   {28, "GD", T}, {29, "GG", S}, {30, "GF", T}, {31, "GI", S}, {32, "GH", T}, {33, "GK", S},
                   {34, "GJ", T}, {35, "GM", S}, {36, "GL", T}, {37, "GO", S}, {38, "GN", T}, {39, "GQ", S},
                   {40, "GP", T}, {41, "GA", D}});
        l[4] = dataDe(c(i, col("FG")));
        l[6] = l[42] = l[43] = kTraco;
        return l;
    }

    QVector<QVariant> recoFormulac(int i) const
    {
        QVector<QVariant> l(62);
        using enum Conv;
        poe(l, i, {{2, "GT", Texto}, {3, "GU", Texto}, {5, "GW", S}, {7, "GX", S}, {8, "GY", S}, {9, "GZ", S},
                   {10, "HA", S}, {11, "HB", D}, {12, "HC", D}});
        l[4] = dataDe(c(i, col("GV")));
        l[6] = kTraco;
        // The base dressing is a formula or a nitrogen source, and goes to the columns of its kind.
        const bool formula = TestaFormulaOuFonteN(t(i, col("HD"))) == QLatin1String("Formula");
        const int usado = formula ? 13 : 19, vazio = formula ? 19 : 13;
        poe(l, i, {{usado, "HD", formula ? Texto : T}, {usado + 1, "HE", S}, {usado + 2, "HF", S},
                   {usado + 3, "HG", S}, {usado + 4, "HH", D}, {usado + 5, "HI", D}});
        l[vazio] = kTraco;
        for (int o = vazio + 1; o < vazio + 6; ++o)
            l[o] = 0;
        poe(l, i, {{25, "HJ", T}, {26, "HK", S}, {27, "HL", S}, {28, "HM", S}, {29, "HN", D}, {30, "HO", D},
                   {31, "HP", T}, {32, "HQ", S}, {33, "HR", S}, {34, "HS", S}, {35, "HT", D}, {36, "HU", D},
                   {37, "HV", T}, {38, "HW", S}, {39, "HX", S}, {40, "HY", S}, {41, "HZ", D}, {42, "IA", D},
                   {43, "ID", S}, {44, "IC", T}, {45, "IF", S}, {46, "IE", T}, {47, "IH", S}, {48, "IG", T},
                   {49, "IJ", S}, {50, "II", T}, {51, "IL", S}, {52, "IK", T}, {53, "IN", S}, {54, "IM", T},
                   {55, "IP", S}, {56, "IO", T}, {57, "IR", S}, {58, "IQ", T}, {59, "IB", D}});
        l[60] = l[61] = kTraco;
        return l;
    }

    bool transfere()
    {
        empresa();
        return clientes() && analises() && fertilizantes()
            && recomendacoes(QStringLiteral("RecoForm"), QStringLiteral("Transferindo recomendações por fórmulas..."),
                             col("FC"), [this](int i) { return recoForm(i); })
            && recomendacoes(QStringLiteral("RecoFormulac"),
                             QStringLiteral("Transferindo recomendações por formulação..."), col("GR"),
                             [this](int i) { return recoFormulac(i); });
    }

private:
    Connection& m_cn;
    const Planilha& m_p;
    const ProgressoMigracao& m_progresso;
    RelatorioMigracao& m_r;
    QString m_motivo;
};

// How the report names each table, and whether its rows are said in the feminine.
struct NomeDaTabela {
    QString nome;
    bool feminino;
};
const QHash<QString, NomeDaTabela>& nomesDasTabelas()
{
    static const QHash<QString, NomeDaTabela> nomes = {
        {QStringLiteral("Clientes"), {QStringLiteral("Clientes"), false}},
        {QStringLiteral("Analises"), {QStringLiteral("Análises"), true}},
        {QStringLiteral("NPK"), {QStringLiteral("Fertilizantes"), false}},
        {QStringLiteral("RecoForm"), {QStringLiteral("Recomendações por fórmulas"), true}},
        {QStringLiteral("RecoFormulac"), {QStringLiteral("Recomendações por formulação"), true}}};
    return nomes;
}

} // namespace

QString SemVazio(const Celula& c) { return c.vazia() ? QStringLiteral("???") : texto(c); }

QString SeVazioThenTraço(const Celula& c) { return c.vazia() ? kTraco : texto(c); }

double IfTxtThenValDobl(const Celula& c)
{
    if (c.tipo == Celula::Tipo::Texto)
        return parseNumber(c.texto.trimmed()).value_or(0.0);
    return c.tipo == Celula::Tipo::Vazia ? 0.0 : c.numero;
}

float IfTxtThenValSing(const Celula& c) { return toSingle(IfTxtThenValDobl(c)); }

QString TestaFormulaOuFonteN(const QString& texto)
{
    const QStringList partes = texto.split(QLatin1Char('-'));
    const QString kFormula = QStringLiteral("Formula"), kFonteN = QStringLiteral("FontN");
    if (partes.size() != 3)
        return kFonteN;
    const auto valor = [&](int i) { return parseNumber(partes[i].trimmed()).value_or(0.0); };
    if (numerico(partes[0]) && numerico(partes[1]) && numerico(partes[2])) {
        const bool soNitrogenio = valor(1) == 0 && valor(2) == 0;
        const bool semFosforo = valor(0) > 0 && valor(1) == 0 && valor(2) > 0;
        return soNitrogenio || semFosforo ? kFonteN : kFormula;
    }
    // A formula with a letter after its potassium, as 5-20-20S.
    const QString terceira = partes[2].trimmed();
    const bool comLetra = numerico(partes[0]) && numerico(partes[1]) && valor(1) > 0 && !terceira.isEmpty()
        && terceira[0] >= QLatin1Char('1') && terceira[0] <= QLatin1Char('9');
    return comLetra ? kFormula : kFonteN;
}

bool TestaPlanilha(const Planilha& planilha)
{
    return planilha.celula(34, col("AF")).comoTexto() == QLatin1String("Empresa")
        && planilha.celula(35, col("AF")).comoTexto() == QLatin1String("Rua")
        && planilha.celula(36, col("AF")).comoTexto() == QStringLiteral("Número");
}

QString perguntaNomeDiferente(const QString& nome)
{
    return QStringLiteral("A planilha ") + nome
        + QStringLiteral(" possui nome diferente de 1.0 Lavra QRT.xls. Está certo que selecionou o arquivo correto?");
}

QString msgAtualizado(const QString& formulario)
{
    return QStringLiteral("O banco de dados do ") + formulario + QStringLiteral(" foi atualizado.");
}

const ContagemMigracao& RelatorioMigracao::contagem(const QString& tabela) const
{
    static const ContagemMigracao nenhuma;
    for (const ContagemMigracao& c : tabelas) {
        if (c.tabela == tabela)
            return c;
    }
    return nenhuma;
}

QString RelatorioMigracao::texto() const
{
    QStringList t;
    if (cancelada)
        return QStringLiteral("A transferência foi interrompida: nada foi gravado.");
    t << (empresa ? QStringLiteral("Empresa: dados gravados.")
                  : QStringLiteral("Empresa: a planilha não tem o nome da empresa; os dados da empresa não foram "
                                   "alterados."));
    for (const ContagemMigracao& c : tabelas) {
        const NomeDaTabela nome = nomesDasTabelas().value(c.tabela, {c.tabela, false});
        const QString o = nome.feminino ? QStringLiteral("a") : QStringLiteral("o");
        QStringList partes{QStringLiteral("transferid%1s: %2").arg(o).arg(c.adicionadas),
                           QStringLiteral("já existentes: %1").arg(c.existentes)};
        if (c.substituidas)
            partes << QStringLiteral("substituíd%1s: %2").arg(o).arg(c.substituidas);
        if (c.recusadas)
            partes << QStringLiteral("recusad%1s: %2").arg(o).arg(c.recusadas);
        t << nome.nome + QStringLiteral(" — ") + partes.join(QStringLiteral("; "));
    }
    if (!recusas.isEmpty())
        t << QString() << QStringLiteral("Linhas não transferidas:") << recusas;
    return t.join(QLatin1Char('\n'));
}

RelatorioMigracao TransfereDados(Store& db, const Planilha& planilha, const ProgressoMigracao& progresso)
{
    RelatorioMigracao r;
    Connection cn(db.strConn);
    cn.open();
    Transaction transacao(cn);
    if (!Migracao(cn, planilha, progresso, r).transfere()) {
        RelatorioMigracao interrompida;
        interrompida.cancelada = true;
        return interrompida;
    }
    transacao.commit();
    return r;
}

} // namespace lavra
