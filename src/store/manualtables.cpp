#include "manualtables.h"

#include "base/numbers.h"
#include "changenotifier.h"
#include "database.h"
#include "databasefile.h"
#include "query.h"
#include "storeerror.h"

#include <QRegularExpression>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>

#include <cmath>

namespace lavra::manual {

namespace {

const QString kCalagem = QStringLiteral("Calagem");
const QString kSmp = QStringLiteral("SMP");
const QString kHistorico = QStringLiteral("HistoricoTabelas");
const QString kConferidas = QStringLiteral("LinhasConferidas");
const QString kVersao = QStringLiteral("VersaoDados");

// A value in the form the history keeps it, whatever the machine: numbers with a point.
QString textoGuardado(const QVariant& valor)
{
    if (valor.isNull())
        return {};
    switch (valor.typeId()) {
    case QMetaType::Float: return QString::number(widenShortest(valor.toFloat()), 'g', 15);
    case QMetaType::Double: return QString::number(valor.toDouble(), 'g', 15);
    default: return valor.toString();
    }
}

// The columns and values that find the rows of a key, as textoChave wrote it.
QList<Chave> chavesDe(const TableDef& def, const QString& chave)
{
    if (def.name == kCalagem) {
        static const QRegularExpression comGrupo(QStringLiteral("^(.*) \\(grupo (-?\\d+)\\)$"));
        const auto m = comGrupo.match(chave);
        if (!m.hasMatch())
            throw StoreError(QStringLiteral("A chave \"%1\" não indica o grupo da tabela Calagem.").arg(chave));
        return {{def.columns[1].name, m.captured(2).toInt()}, {def.columns[0].name, m.captured(1)}};
    }
    const ColumnDef& coluna = def.columns.first();
    if (coluna.type == ColumnType::Text)
        return {{coluna.name, chave}};
    bool ok = false;
    const float numero = chave.toFloat(&ok);
    if (!ok)
        throw StoreError(QStringLiteral("A chave \"%1\" da tabela %2 não é um número.").arg(chave, def.name));
    return {{coluna.name, widenShortest(numero)}};
}

void executa(QSqlQuery& q)
{
    if (!q.exec())
        throw engineError(q.lastError(), StoreError::Access::Write);
}

QSqlQuery prepara(Connection& cn, const QString& sql, const QVariantList& valores = {})
{
    QSqlQuery q(cn.database());
    q.setForwardOnly(true);
    if (!q.prepare(sql))
        throw engineError(q.lastError(), StoreError::Access::Read);
    for (const QVariant& v : valores)
        q.addBindValue(v);
    return q;
}

// The first row of a key, every column as the file keeps it; empty when there is none.
QVector<QVariant> linhaDaChave(Connection& cn, const TableDef& def, const QString& chave)
{
    QVariantList valores;
    const QString onde = consulta::condicao(chavesDe(def, chave), valores);
    QSqlQuery q = prepara(cn, QStringLiteral("SELECT * FROM %1%2 ORDER BY rowid LIMIT 1").arg(quoteIdentifier(def.name), onde),
        valores);
    if (!q.exec())
        throw engineError(q.lastError(), StoreError::Access::Read);
    QVector<QVariant> linha;
    if (q.next()) {
        for (int c = 0; c < def.columns.size(); ++c)
            linha << q.value(c);
    }
    return linha;
}

bool conferida(Connection& cn, const QString& tabela, const QString& chave)
{
    QVariantList valores;
    const QString onde = consulta::condicao({{QStringLiteral("Tabela"), tabela}, {QStringLiteral("Chave"), chave}}, valores);
    QSqlQuery q = prepara(cn, QStringLiteral("SELECT 1 FROM %1%2 LIMIT 1").arg(quoteIdentifier(kConferidas), onde), valores);
    if (!q.exec())
        throw engineError(q.lastError(), StoreError::Access::Read);
    return q.next();
}

void marca(Connection& cn, const QString& tabela, const QString& chave, bool marcada)
{
    QVariantList valores;
    const QString onde = consulta::condicao({{QStringLiteral("Tabela"), tabela}, {QStringLiteral("Chave"), chave}}, valores);
    QSqlQuery apaga = prepara(cn, QStringLiteral("DELETE FROM %1%2").arg(quoteIdentifier(kConferidas), onde), valores);
    executa(apaga);
    if (marcada) {
        QSqlQuery insere = prepara(cn, QStringLiteral("INSERT INTO %1 (Tabela, Chave) VALUES (?, ?)").arg(quoteIdentifier(kConferidas)),
            {tabela, chave});
        executa(insere);
    }
}

// Writes one value to every row of its key, and its line of history.
void grava(Connection& cn, const Correcao& c, const QString& motivo, const QDateTime& quando)
{
    const TableDef& def = definicaoDe(c.tabela);
    if (c.coluna < 0 || c.coluna >= def.columns.size() || colunasChave(def.name).contains(c.coluna))
        throw StoreError(QStringLiteral("A coluna %1 da tabela %2 não pode ser corrigida.").arg(c.coluna).arg(def.name));
    const ColumnDef& coluna = def.columns[c.coluna];
    QVariantList valores{toStorage(c.novo, coluna.type)};
    const QString onde = consulta::condicao(chavesDe(def, c.chave), valores);
    QSqlQuery q = prepara(cn,
        QStringLiteral("UPDATE %1 SET %2 = ?%3").arg(quoteIdentifier(def.name), quoteIdentifier(coluna.name), onde), valores);
    executa(q);
    QSqlQuery h = prepara(cn,
        QStringLiteral("INSERT INTO %1 (Tabela, Chave, Coluna, ValorAnterior, ValorNovo, Motivo, DataHora) "
                       "VALUES (?, ?, ?, ?, ?, ?, ?)")
            .arg(quoteIdentifier(kHistorico)),
        {def.name, c.chave, coluna.name, textoGuardado(c.anterior), textoGuardado(c.novo), motivo,
            quando.toString(Qt::ISODate)});
    executa(h);
}

// Checks that each row still holds what the user saw, so that two windows cannot overwrite each
// other unseen.
void confere(Connection& cn, const QList<Correcao>& correcoes)
{
    for (const Correcao& c : correcoes) {
        const TableDef& def = definicaoDe(c.tabela);
        const QVector<QVariant> linha = linhaDaChave(cn, def, c.chave);
        if (linha.isEmpty())
            throw StoreError(QStringLiteral("A tabela %1 não tem mais a linha \"%2\".").arg(def.name, c.chave));
        if (c.coluna >= 0 && c.coluna < linha.size() && !mesmoValor(linha[c.coluna], c.anterior, def.columns[c.coluna].type))
            throw StoreError(QStringLiteral("A linha \"%1\" da tabela %2 foi alterada depois de lida. Abra a tabela de novo "
                                            "e refaça a correção.")
                                 .arg(c.chave, def.name));
    }
}

QDateTime agora()
{
    QDateTime t = QDateTime::currentDateTime();
    return t.addMSecs(-t.time().msec());
}

void avisaMudancas(const QList<Correcao>& correcoes)
{
    QSet<QString> tabelas;
    for (const Correcao& c : correcoes)
        tabelas.insert(c.tabela);
    for (const QString& t : tabelas)
        ChangeNotifier::instance().notify(t);
    ChangeNotifier::instance().notify(kHistorico);
}

// The group, nutrient and crop of a name such as GRAOPC1: "GRAO", "P", "1".
QRegularExpressionMatch partesDoNome(const QString& tabela)
{
    static const QRegularExpression forma(QStringLiteral("^([A-Z]+?)(N|P|K)(?:C(\\d))?$"));
    return forma.match(tabela);
}

QString nutriente(const QString& tabela)
{
    const QString n = partesDoNome(tabela).captured(2);
    return n == QLatin1String("P") ? QStringLiteral("P₂O₅") : n == QLatin1String("K") ? QStringLiteral("K₂O") : QStringLiteral("N");
}

const QStringList kClasses = {QStringLiteral("muito baixo"), QStringLiteral("baixo"), QStringLiteral("médio"),
    QStringLiteral("alto"), QStringLiteral("muito alto")};
const QStringList kMO = {QStringLiteral("MO até 2,5 %"), QStringLiteral("MO de 2,6 a 5,0 %"), QStringLiteral("MO acima de 5,0 %")};

QString tituloFlorestal(const QString& coluna)
{
    static const QRegularExpression forma(QStringLiteral("^([NPK])(Plantio|Cobertura|Reposicao)(MO|C)(\\d)$"));
    const auto m = forma.match(coluna);
    if (!m.hasMatch())
        return {};
    static const QHash<QString, QString> etapas = {{QStringLiteral("Plantio"), QStringLiteral("no plantio")},
        {QStringLiteral("Cobertura"), QStringLiteral("em cobertura")},
        {QStringLiteral("Reposicao"), QStringLiteral("na reposição")}};
    const QString n = m.captured(1);
    const QString unidade = n == QLatin1String("N") ? QStringLiteral("N") : n == QLatin1String("P") ? QStringLiteral("P₂O₅") : QStringLiteral("K₂O");
    const int i = m.captured(4).toInt();
    const QString classe = m.captured(3) == QLatin1String("MO") ? kMO.value(i - 2) : QStringLiteral("classe %1, %2").arg(i).arg(kClasses.value(i - 1));
    return QStringLiteral("%1 %2, %3 (kg/ha de %1)").arg(unidade, etapas.value(m.captured(2)), classe);
}

} // namespace

// ---- Tables, keys and headings ----------------------------------------------------------------

const QStringList& tabelas()
{
    static const QStringList todas = {QStringLiteral("Calagem"), QStringLiteral("SMP"), QStringLiteral("GRAON"),
        QStringLiteral("GRAOPC1"), QStringLiteral("GRAOPC2"), QStringLiteral("GRAOKC1"), QStringLiteral("GRAOKC2"),
        QStringLiteral("HORTN"), QStringLiteral("HORTPC1"), QStringLiteral("HORTPC2"), QStringLiteral("HORTKC1"),
        QStringLiteral("HORTKC2"), QStringLiteral("FORRAGN"), QStringLiteral("FORRAGPC1"), QStringLiteral("FORRAGPC2"),
        QStringLiteral("FORRAGKC1"), QStringLiteral("FORRAGKC2"), QStringLiteral("FLOREST"), QStringLiteral("CONDMEDN"),
        QStringLiteral("CONDMEDP"), QStringLiteral("CONDMEDK"), QStringLiteral("Graf")};
    return todas;
}

bool ehTabelaDoManual(const QString& tabela)
{
    return tabelas().contains(tabela);
}

QString tabelaDe(const QString& nome)
{
    for (const ViewDef& view : schema::views()) {
        if (view.name.compare(nome, Qt::CaseInsensitive) == 0)
            return view.table;
    }
    for (const QString& t : tabelas()) {
        if (t.compare(nome, Qt::CaseInsensitive) == 0)
            return t;
    }
    return nome;
}

const TableDef& definicaoDe(const QString& tabela)
{
    const TableDef* def = ehTabelaDoManual(tabela) ? schema::findTable(tabela) : nullptr;
    if (!def)
        throw StoreError(QStringLiteral("A tabela %1 não é uma das tabelas do manual.").arg(tabela));
    return *def;
}

QList<int> colunasChave(const QString& tabela)
{
    return tabela == kCalagem ? QList<int>{0, 1} : QList<int>{0};
}

QString textoChave(const QString& tabela, const QVector<QVariant>& valores)
{
    const QString primeira = textoGuardado(valores.value(0));
    if (tabela == kCalagem)
        return QStringLiteral("%1 (grupo %2)").arg(primeira, textoGuardado(valores.value(1)));
    return primeira;
}

QString chaveExibida(const QString& tabela, const QString& chave)
{
    if (!ehTabelaDoManual(tabela) || definicaoDe(tabela).columns.first().type == ColumnType::Text)
        return chave;
    bool ok = false;
    const double numero = chave.toDouble(&ok);
    return ok ? numberText(numero) : chave;
}

QString tituloColuna(const QString& tabela, const QString& coluna)
{
    static const QHash<QString, QString> calagem = {
        {QStringLiteral("Texto"), QStringLiteral("Cultura ou sistema de cultivo")},
        {QStringLiteral("Grupo"), QStringLiteral("Grupo de culturas")},
        {QStringLiteral("Indice"), QStringLiteral("Método (1 a 3: SMP para pH 5,5, 6,0, 6,5; 0: saturação; 444: Ca e Mg)")},
        {QStringLiteral("Divisor"), QStringLiteral("Divisor da dose (2 = meia dose)")},
        {QStringLiteral("a"), QStringLiteral("Coeficiente a, Al + MO (t/ha)")},
        {QStringLiteral("b"), QStringLiteral("Coeficiente b, por % de MO")},
        {QStringLiteral("c"), QStringLiteral("Coeficiente c, por cmolc/dm³ de Al")},
        {QStringLiteral("VAlvo"), QStringLiteral("Saturação por bases desejada (%)")},
        {QStringLiteral("pHRef"), QStringLiteral("pH-limite")},
        {QStringLiteral("VRef"), QStringLiteral("V-limite (%)")},
        {QStringLiteral("DoisCriterios"), QStringLiteral("Decide por pH e V juntos (S/N)")},
        {QStringLiteral("Superficie"), QStringLiteral("Aplicação na superfície (S/N)")}};
    static const QHash<QString, QString> smp = {{QStringLiteral("Indice"), QStringLiteral("Índice SMP")},
        {QStringLiteral("pH55"), QStringLiteral("Calcário para pH 5,5 (t/ha, PRNT 100 %)")},
        {QStringLiteral("pH60"), QStringLiteral("Calcário para pH 6,0 (t/ha, PRNT 100 %)")},
        {QStringLiteral("pH65"), QStringLiteral("Calcário para pH 6,5 (t/ha, PRNT 100 %)")}};
    static const QHash<QString, QString> graf = {{QStringLiteral("Classe"), QStringLiteral("Indicador e classe")},
        {QStringLiteral("BaseFaixa"), QStringLiteral("Início da classe no gráfico")},
        {QStringLiteral("LimInferior"), QStringLiteral("Limite inferior da classe")},
        {QStringLiteral("LimSuperior"), QStringLiteral("Limite superior da classe")}};

    if (tabela == kCalagem)
        return calagem.value(coluna, coluna);
    if (tabela == kSmp)
        return smp.value(coluna, coluna);
    if (tabela == QLatin1String("Graf"))
        return graf.value(coluna, coluna);
    if (coluna == QLatin1String("Chave"))
        return tabela == QLatin1String("FLOREST") ? QStringLiteral("Espécie") : QStringLiteral("Cultura");
    if (tabela == QLatin1String("FLOREST")) {
        const QString t = tituloFlorestal(coluna);
        return t.isEmpty() ? coluna : t;
    }

    const QString n = nutriente(tabela);
    const QString kg = QStringLiteral("kg/ha de %1").arg(n);
    const bool forrageira = tabela.startsWith(QStringLiteral("FORRAG"));
    if (coluna == QLatin1String("RendRef"))
        return forrageira ? QStringLiteral("Rendimento de referência (t de MS/ha)") : QStringLiteral("Rendimento de referência (t/ha)");
    if (coluna == QLatin1String("NAdicional") || coluna == QLatin1String("Adicional"))
        return QStringLiteral("Adicional por tonelada acima da referência (%1)").arg(kg);
    if (coluna == QLatin1String("NBase"))
        return QStringLiteral("N na semeadura, N base (kg/ha de N)");
    if (coluna == QLatin1String("FracaoBase"))
        return QStringLiteral("Fração do N total aplicada na base");
    if (coluna.startsWith(QStringLiteral("NMO")))
        return QStringLiteral("N total, %1 (kg/ha de N)").arg(kMO.value(coluna.right(1).toInt() - 2));
    if (coluna.startsWith(QStringLiteral("Classe")) && coluna.size() == 7) {
        const int i = coluna.right(1).toInt();
        return QStringLiteral("Classe %1, %2 (%3)").arg(i).arg(kClasses.value(i - 1), kg);
    }
    if (coluna == QLatin1String("ClasseMB_B"))
        return QStringLiteral("Classes muito baixo e baixo (%1)").arg(kg);
    if (coluna == QLatin1String("ClasseM"))
        return QStringLiteral("Classe médio (%1)").arg(kg);
    if (coluna == QLatin1String("ClasseA_MA"))
        return QStringLiteral("Classes alto e muito alto (%1)").arg(kg);
    if (coluna == QLatin1String("Dose"))
        return QStringLiteral("Dose, qualquer classe (%1)").arg(kg);
    return coluna;
}

QString descricaoTabela(const QString& tabela)
{
    static const QHash<QString, QString> grupos = {{QStringLiteral("GRAO"), QStringLiteral("Grãos")},
        {QStringLiteral("HORT"), QStringLiteral("Hortaliças e cana-de-açúcar")},
        {QStringLiteral("FORRAG"), QStringLiteral("Forrageiras")},
        {QStringLiteral("CONDMED"), QStringLiteral("Medicinais, aromáticas e condimentares")}};
    if (tabela == kCalagem)
        return QStringLiteral("Critérios de calagem por cultura ou sistema");
    if (tabela == kSmp)
        return QStringLiteral("Calcário pelo índice SMP");
    if (tabela == QLatin1String("Graf"))
        return QStringLiteral("Classes do gráfico de fertilidade");
    if (tabela == QLatin1String("FLOREST"))
        return QStringLiteral("Espécies florestais — N, P₂O₅ e K₂O");
    const auto m = partesDoNome(tabela);
    if (!m.hasMatch() || !grupos.contains(m.captured(1)))
        return tabela;
    static const QHash<QString, QString> nutrientes = {{QStringLiteral("N"), QStringLiteral("nitrogênio")},
        {QStringLiteral("P"), QStringLiteral("fósforo")}, {QStringLiteral("K"), QStringLiteral("potássio")}};
    QString texto = QStringLiteral("%1 — %2").arg(grupos.value(m.captured(1)), nutrientes.value(m.captured(2)));
    if (!m.captured(3).isEmpty())
        texto += QStringLiteral(", %1º cultivo").arg(m.captured(3));
    return texto;
}

QString textoConfianca(Confianca confianca)
{
    switch (confianca) {
    case Confianca::Alta: return QStringLiteral("alta");
    case Confianca::Media: return QStringLiteral("média");
    case Confianca::Baixa: return QStringLiteral("baixa");
    case Confianca::ConferidaPeloUsuario: return QStringLiteral("conferida pelo usuário");
    case Confianca::SemNota: break;
    }
    return {};
}

// ---- What the program delivers -------------------------------------------------------------

const LinhaEntregue* DadosEntregues::linha(const QString& tabela, const QString& chave) const
{
    const auto it = tabelas.constFind(tabela);
    if (it == tabelas.constEnd())
        return nullptr;
    for (const LinhaEntregue& l : *it) {
        if (textoChave(tabela, l.valores) == chave)
            return &l;
    }
    return nullptr;
}

DadosEntregues leDadosEntregues(const QString& dir, int versao)
{
    DadosEntregues dados;
    dados.versao = versao;
    for (const QString& tabela : tabelas()) {
        QList<LinhaEntregue>& linhas = dados.tabelas[tabela];
        for (const database::StartingRow& row :
            database::readStartingRows(definicaoDe(tabela), QStringLiteral("%1/%2.csv").arg(dir, tabela)).rows)
            linhas << LinhaEntregue{row.values, row.source, row.confidence};
    }
    return dados;
}

const DadosEntregues& dadosDoPrograma()
{
    static const DadosEntregues dados = leDadosEntregues(QStringLiteral(":/data"), kVersaoDados);
    return dados;
}

// ---- Rows as the database holds them -------------------------------------------------------

QList<LinhaManual> leTabela(const Store& db, const QString& tabela, const DadosEntregues& dados)
{
    const TableDef& def = definicaoDe(tabela);
    Connection cn(db.strConn);
    cn.open();
    QSet<QString> marcadas;
    {
        QSqlQuery q = prepara(cn, QStringLiteral("SELECT Chave FROM %1 WHERE Tabela = ? COLLATE BINARY").arg(quoteIdentifier(kConferidas)),
            {tabela});
        if (!q.exec())
            throw engineError(q.lastError(), StoreError::Access::Read);
        while (q.next())
            marcadas.insert(q.value(0).toString());
    }
    QList<LinhaManual> linhas;
    QSqlQuery q = prepara(cn, QStringLiteral("SELECT rowid, * FROM %1 ORDER BY rowid").arg(quoteIdentifier(tabela)));
    if (!q.exec())
        throw engineError(q.lastError(), StoreError::Access::Read);
    while (q.next()) {
        LinhaManual linha;
        linha.id = q.value(0).toLongLong();
        for (int c = 0; c < def.columns.size(); ++c)
            linha.valores << q.value(c + 1);
        linha.chave = textoChave(tabela, linha.valores);
        linha.corrigida = marcadas.contains(linha.chave);
        if (const LinhaEntregue* entregue = dados.linha(tabela, linha.chave)) {
            linha.fonte = entregue->fonte;
            linha.confianca = entregue->confianca == QLatin1String("high") ? Confianca::Alta
                : entregue->confianca == QLatin1String("medium")             ? Confianca::Media
                                                                             : Confianca::Baixa;
        }
        if (linha.corrigida)
            linha.confianca = Confianca::ConferidaPeloUsuario;
        linhas << linha;
    }
    if (q.lastError().isValid())
        throw engineError(q.lastError(), StoreError::Access::Read);
    cn.close();
    return linhas;
}

QString textoValor(const QVariant& valor)
{
    if (valor.isNull())
        return {};
    switch (valor.typeId()) {
    case QMetaType::Float: return numberText(valor.toFloat());
    case QMetaType::Double: return numberText(valor.toDouble());
    default: return valor.toString();
    }
}

ValorLido leValor(const QString& tabela, int coluna, const QString& texto)
{
    const TableDef& def = definicaoDe(tabela);
    if (coluna < 0 || coluna >= def.columns.size())
        return {{}, QStringLiteral("A tabela %1 não tem essa coluna.").arg(tabela)};
    if (colunasChave(tabela).contains(coluna))
        return {{}, QStringLiteral("A chave de uma linha não pode ser alterada: é por ela que o programa encontra a linha.")};
    const ColumnDef& col = def.columns[coluna];
    const QString t = texto.trimmed();
    if (col.type == ColumnType::Text) {
        // The only texts outside the keys are the yes-or-no columns of the liming table.
        const QString sn = t.toUpper();
        if (sn != QLatin1String("S") && sn != QLatin1String("N"))
            return {{}, QStringLiteral("Digite S (sim) ou N (não).")};
        return {sn, {}};
    }
    if (t.isEmpty())
        return {{}, QStringLiteral("Digite um valor.")};
    const auto numero = parseNumber(t);
    if (!numero || !std::isfinite(toSingle(*numero)))
        return {{}, QStringLiteral("\"%1\" não é um número (use %2 como separador decimal).").arg(t, decimalSymbol())};
    if (col.type == ColumnType::SmallInt) {
        if (*numero != std::floor(*numero))
            return {{}, QStringLiteral("Digite um número inteiro.")};
        const int n = static_cast<int>(*numero);
        if (tabela == kCalagem && col.name == QLatin1String("Indice") && n != 0 && n != 1 && n != 2 && n != 3 && n != 444)
            return {{}, QStringLiteral("O método deve ser 1, 2 ou 3 (coluna SMP para pH 5,5, 6,0 ou 6,5), 0 (saturação por bases) "
                                       "ou 444 (regra de Ca e Mg).")};
        return {qlonglong(n), {}};
    }
    // Only the coefficients of the liming equation may be negative.
    const bool podeNegativo = tabela == kCalagem && (col.name == QLatin1String("a") || col.name == QLatin1String("b") || col.name == QLatin1String("c"));
    if (*numero < 0 && !podeNegativo)
        return {{}, QStringLiteral("O valor não pode ser negativo.")};
    if (tabela == kCalagem && col.name == QLatin1String("Divisor") && *numero == 0)
        return {{}, QStringLiteral("O divisor da dose não pode ser zero.")};
    return {widenShortest(toSingle(*numero)), {}};
}

bool mesmoValor(const QVariant& a, const QVariant& b, ColumnType tipo)
{
    if (a.isNull() || b.isNull())
        return a.isNull() == b.isNull();
    if (tipo == ColumnType::Text)
        return a.toString() == b.toString();
    const auto x = toNumber(a);
    const auto y = toNumber(b);
    if (!x || !y)
        return a.toString() == b.toString();
    if (tipo == ColumnType::Single)
        return toSingle(*x) == toSingle(*y);
    return *x == *y;
}

// ---- Corrections and their history ---------------------------------------------------------

QString textoCorrecao(const Correcao& c)
{
    const TableDef& def = definicaoDe(c.tabela);
    return QStringLiteral("%1, \"%2\", %3: %4 → %5")
        .arg(c.tabela, chaveExibida(c.tabela, c.chave), def.columns.value(c.coluna).name, textoValor(c.anterior),
            textoValor(c.novo));
}

void corrige(const Store& db, const QList<Correcao>& correcoes, const QString& motivo)
{
    if (correcoes.isEmpty())
        return;
    Connection cn(db.strConn);
    cn.open();
    Transaction t(cn);
    confere(cn, correcoes);
    const QDateTime quando = agora();
    for (const Correcao& c : correcoes) {
        grava(cn, c, motivo, quando);
        marca(cn, c.tabela, c.chave, true);
    }
    t.commit();
    cn.close();
    avisaMudancas(correcoes);
}

QList<Correcao> restauracao(const Store& db, const QString& tabela, const QString& chave, const DadosEntregues& dados)
{
    const TableDef& def = definicaoDe(tabela);
    const LinhaEntregue* entregue = dados.linha(tabela, chave);
    if (!entregue)
        throw StoreError(QStringLiteral("O programa não traz a linha \"%1\" da tabela %2, e não há valor original a restaurar.")
                             .arg(chave, tabela));
    Connection cn(db.strConn);
    cn.open();
    const QVector<QVariant> atual = linhaDaChave(cn, def, chave);
    cn.close();
    if (atual.isEmpty())
        throw StoreError(QStringLiteral("A tabela %1 não tem a linha \"%2\".").arg(tabela, chave));
    QList<Correcao> correcoes;
    for (int c = 0; c < def.columns.size(); ++c) {
        if (!colunasChave(tabela).contains(c) && !mesmoValor(atual[c], entregue->valores.value(c), def.columns[c].type))
            correcoes << Correcao{tabela, chave, c, atual[c], entregue->valores.value(c)};
    }
    return correcoes;
}

void restaura(const Store& db, const QString& tabela, const QString& chave, const QString& motivo, const DadosEntregues& dados)
{
    const QList<Correcao> correcoes = restauracao(db, tabela, chave, dados);
    Connection cn(db.strConn);
    cn.open();
    Transaction t(cn);
    confere(cn, correcoes);
    const QDateTime quando = agora();
    for (const Correcao& c : correcoes)
        grava(cn, c, motivo, quando);
    marca(cn, tabela, chave, false);
    t.commit();
    cn.close();
    avisaMudancas(correcoes);
    ChangeNotifier::instance().notify(tabela);
}

QList<RegistroHistorico> historico(const Store& db)
{
    Connection cn(db.strConn);
    cn.open();
    QSqlQuery q = prepara(cn, QStringLiteral("SELECT Tabela, Chave, Coluna, ValorAnterior, ValorNovo, Motivo, DataHora FROM %1 "
                                             "ORDER BY rowid DESC")
                                  .arg(quoteIdentifier(kHistorico)));
    if (!q.exec())
        throw engineError(q.lastError(), StoreError::Access::Read);
    QList<RegistroHistorico> registros;
    const auto local = [](const QString& guardado) {
        bool ok = false;
        const double numero = guardado.toDouble(&ok);
        return ok ? numberText(numero) : guardado;
    };
    while (q.next()) {
        registros << RegistroHistorico{q.value(0).toString(), chaveExibida(q.value(0).toString(), q.value(1).toString()),
            q.value(2).toString(),
            local(q.value(3).toString()), local(q.value(4).toString()), q.value(5).toString(),
            QDateTime::fromString(q.value(6).toString(), Qt::ISODate)};
    }
    if (q.lastError().isValid())
        throw engineError(q.lastError(), StoreError::Access::Read);
    cn.close();
    return registros;
}

// ---- The data of a newer version -----------------------------------------------------------

QString RelatorioAtualizacao::texto() const
{
    QStringList linhas;
    linhas << QStringLiteral("As tabelas do manual foram atualizadas para a versão %1 dos dados do programa.").arg(para);
    if (!alteradas.isEmpty()) {
        linhas << QString() << QStringLiteral("Valores alterados (%1):").arg(alteradas.size());
        for (const Correcao& c : alteradas)
            linhas << textoCorrecao(c);
    }
    if (!novas.isEmpty()) {
        linhas << QString() << QStringLiteral("Linhas incluídas (%1):").arg(novas.size());
        linhas << novas;
    }
    if (!preservadas.isEmpty()) {
        linhas << QString()
               << QStringLiteral("Mantidas as correções do usuário, onde a nova versão traz outro valor (%1):").arg(preservadas.size());
        for (const Correcao& c : preservadas)
            linhas << textoCorrecao(c);
    }
    return linhas.join(QLatin1Char('\n'));
}

int versaoDados(Connection& connection)
{
    QSqlQuery q = prepara(connection, QStringLiteral("SELECT MAX(Versao) FROM %1").arg(quoteIdentifier(kVersao)));
    if (!q.exec())
        throw engineError(q.lastError(), StoreError::Access::Read);
    return q.next() ? q.value(0).toInt() : 0;
}

void registraVersaoDados(Connection& connection, int versao)
{
    connection.execute(QStringLiteral("DELETE FROM %1").arg(quoteIdentifier(kVersao)));
    connection.execute(QStringLiteral("INSERT INTO %1 (Versao) VALUES (%2)").arg(quoteIdentifier(kVersao)).arg(versao));
}

RelatorioAtualizacao atualizaDados(Connection& connection, const DadosEntregues& dados)
{
    RelatorioAtualizacao r;
    r.de = versaoDados(connection);
    r.para = r.de;
    if (r.de >= dados.versao)
        return r;
    r.para = dados.versao;
    const QString motivo = QStringLiteral("Dados do programa, versão %1").arg(dados.versao);
    const QDateTime quando = agora();
    Transaction t(connection);
    for (const QString& tabela : tabelas()) {
        const TableDef& def = definicaoDe(tabela);
        for (const LinhaEntregue& entregue : dados.tabelas.value(tabela)) {
            const QString chave = textoChave(tabela, entregue.valores);
            const QVector<QVariant> atual = linhaDaChave(connection, def, chave);
            if (atual.isEmpty()) {
                QStringList nomes;
                QVariantList valores;
                for (int c = 0; c < def.columns.size(); ++c) {
                    nomes << quoteIdentifier(def.columns[c].name);
                    valores << entregue.valores.value(c);
                }
                QSqlQuery q = prepara(connection,
                    QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                        .arg(quoteIdentifier(tabela), nomes.join(QStringLiteral(", ")),
                            QStringList(nomes.size(), QStringLiteral("?")).join(QStringLiteral(", "))),
                    valores);
                executa(q);
                r.novas << QStringLiteral("%1, \"%2\"").arg(tabela, chave);
                continue;
            }
            const bool doUsuario = conferida(connection, tabela, chave);
            for (int c = 0; c < def.columns.size(); ++c) {
                if (colunasChave(tabela).contains(c) || mesmoValor(atual[c], entregue.valores.value(c), def.columns[c].type))
                    continue;
                const Correcao correcao{tabela, chave, c, atual[c], entregue.valores.value(c)};
                if (doUsuario) {
                    r.preservadas << correcao;
                } else {
                    grava(connection, correcao, motivo, quando);
                    r.alteradas << correcao;
                }
            }
        }
    }
    registraVersaoDados(connection, dados.versao);
    t.commit();
    return r;
}

// ---- The rows a calculation read -----------------------------------------------------------

namespace {
thread_local LeiturasDoCalculo* t_leituras = nullptr;
}

LeiturasDoCalculo::LeiturasDoCalculo() : m_anterior(t_leituras)
{
    t_leituras = this;
}

LeiturasDoCalculo::~LeiturasDoCalculo()
{
    t_leituras = m_anterior;
}

void anotaLeitura(const QString& tabela, const QVector<QVariant>& linha)
{
    if (!t_leituras)
        return;
    const QString nome = tabelaDe(tabela);
    if (!ehTabelaDoManual(nome))
        return;
    const LinhaUsada usada{nome, textoChave(nome, linha)};
    if (!t_leituras->m_linhas.contains(usada))
        t_leituras->m_linhas << usada;
}

} // namespace lavra::manual
