#include "schema.h"

#include <QRegularExpression>

namespace lavra {

namespace {

ColumnDef text(const QString& name, int width = 255) { return {name, ColumnType::Text, width}; }
ColumnDef memo(const QString& name) { return {name, ColumnType::Text, 0}; }
ColumnDef single(const QString& name) { return {name, ColumnType::Single}; }
ColumnDef dbl(const QString& name) { return {name, ColumnType::Double}; }
ColumnDef smallint(const QString& name) { return {name, ColumnType::SmallInt}; }
ColumnDef date(const QString& name) { return {name, ColumnType::Date}; }

QList<ColumnDef> singles(const QStringList& names)
{
    QList<ColumnDef> columns;
    for (const QString& name : names)
        columns << single(name);
    return columns;
}

// Key column followed by numeric columns: the shape of every table of the manual.
TableDef keyed(const QString& table, const QStringList& numbers)
{
    return {table, QList<ColumnDef>{text(QStringLiteral("Chave"))} + singles(numbers)};
}

// Head of the three tables of saved recommendations: analysis, key, crop and liming.
QList<ColumnDef> recommendationHead()
{
    return {text("CodAnalise"), text("CodCultivo"), text("Cultura"), text("CultivoOrdem"),
            date("DataPlantio"), single("Expectativa"), text("CalcFonte"), single("CalcPRNT"),
            single("CalcPreco"), single("CalcDose"), single("CalcCusto"), dbl("CalcQuant"),
            dbl("CalcCustoTotal")};
}

// Source, price, dose, cost per hectare, quantity and cost in the area of one product.
QList<ColumnDef> productBlock(const QString& prefix)
{
    return {text(prefix + "Fonte"), single(prefix + "Preco"), single(prefix + "Dose"),
            single(prefix + "Custo"), dbl(prefix + "Quant"), dbl(prefix + "CustoTotal")};
}

QList<ColumnDef> parcels()
{
    QList<ColumnDef> columns;
    for (int n = 1; n <= 8; ++n)
        columns << single(QStringLiteral("Parc%1Dose").arg(n)) << text(QStringLiteral("Parc%1Epoca").arg(n));
    return columns;
}

QList<ColumnDef> recommendationTail()
{
    return {dbl("CustoTotal"), text("Aviso"), memo("Info")};
}

QList<TableDef> buildTables()
{
    // Built here, not at namespace scope: the tables may be asked for while other files are
    // still being initialised.
    const QStringList kClassColumns = {"Classe1", "Classe2", "Classe3", "Classe4", "Classe5"};
    QList<TableDef> all;

    all << TableDef{"Clientes",
                    {text("Nome"), text("Rua/Localidade"), text("Cidade"), text("Telefone"), text("E-mail")}};

    QList<ColumnDef> analises = {text("Código"), text("Cliente"), text("Local_"), text("Fazenda"),
                                 text("Gleba"), date("Data_"), single("Area"), text("NumAnalise")};
    analises += singles({"pH", "Ca", "Mg", "Al", "H_Al", "SatAl", "SatBases", "CTC", "SMP", "MO",
                         "Argila", "P", "K"});
    for (const char* name : {"MetodoP", "ArrozIrrig", "Reserva1", "Reserva2", "Reserva3", "Reserva4",
                             "ClassePH", "ClasseCa", "ClasseMg", "ClasseMO", "ClasseP", "ClasseK",
                             "ClasseCTC", "ClasseSatAl", "ClasseSatBases"})
        analises << smallint(QString::fromLatin1(name));
    all << TableDef{"Analises", analises};

    all << TableDef{"NPK",
                    {text("Fórmula"), text("Especificação"), single("N"), single("P"), single("K"),
                     single("P/K"), single("US$/t"), single("R$/t"), text("MS", 40), text("EFICN", 40),
                     text("EFICP", 40), text("EFICK", 40)}};
    all << TableDef{"Calcario", {text("Nome"), single("PRNT"), single("US$/t"), dbl("R$/t")}};
    all << TableDef{"CotDolar", {single("Cotacao")}};
    all << TableDef{"Empresa",
                    {text("Empresa"), text("Rua"), text("Numero"), text("CEP"), text("Cidade"),
                     text("Bairro"), text("Estado"), text("Telefone"), text("Email"), text("Site")}};
    all << TableDef{"TecResp",
                    {text("Nome"), text("Profissão"), text("CREA"),
                     ColumnDef{"Assina", ColumnType::SmallInt, 0, "0"}}};

    all << TableDef{"Calagem",
                    {text("Texto"), smallint("Grupo"), smallint("Indice"), single("Divisor"), single("a"),
                     single("b"), single("c"), single("VAlvo"), single("pHRef"), single("VRef"),
                     text("DoisCriterios", 1), text("Superficie", 1)}};
    all << TableDef{"SMP", singles({"Indice", "pH55", "pH60", "pH65"})};

    const QStringList nByYield = {"RendRef", "NAdicional", "NBase", "NMO2", "NMO3", "NMO4"};
    const QStringList byYieldAndClass = QStringList{"RendRef", "Adicional"} + kClassColumns;
    const QStringList nShare = {"FracaoBase", "NMO2", "NMO3", "NMO4"};

    all << keyed("GRAON", nByYield);
    for (const char* name : {"GRAOPC1", "GRAOPC2", "GRAOKC1", "GRAOKC2"})
        all << keyed(QString::fromLatin1(name), byYieldAndClass);

    all << keyed("HORTN", nShare);
    all << keyed("HORTPC1", kClassColumns) << keyed("HORTPC2", {"Dose"});
    all << keyed("HORTKC1", kClassColumns) << keyed("HORTKC2", {"Dose"});

    all << keyed("FORRAGN", nByYield);
    for (const char* name : {"FORRAGPC1", "FORRAGPC2", "FORRAGKC1", "FORRAGKC2"})
        all << keyed(QString::fromLatin1(name), byYieldAndClass);

    QStringList forest;
    for (const char* block : {"NPlantio", "NCobertura", "NReposicao"})
        for (int mo = 2; mo <= 4; ++mo)
            forest << QStringLiteral("%1MO%2").arg(QString::fromLatin1(block)).arg(mo);
    for (const char* block : {"PPlantio", "PReposicao", "KPlantio", "KCobertura", "KReposicao"})
        for (int c = 1; c <= 5; ++c)
            forest << QStringLiteral("%1C%2").arg(QString::fromLatin1(block)).arg(c);
    all << keyed("FLOREST", forest);

    all << keyed("CONDMEDN", nShare);
    all << keyed("CONDMEDP", {"ClasseMB_B", "ClasseM", "ClasseA_MA"});
    all << keyed("CONDMEDK", {"ClasseMB_B", "ClasseM", "ClasseA_MA"});

    all << TableDef{"RecoForm", recommendationHead() + productBlock("Base") + productBlock("Cob") + parcels()
                                    + recommendationTail()};
    all << TableDef{"RecoFormulac", recommendationHead() + productBlock("Mist") + productBlock("FontN")
                                        + productBlock("FontP") + productBlock("FontK") + productBlock("Cob")
                                        + parcels() + recommendationTail()};
    QList<ColumnDef> florest = recommendationHead();
    for (const char* block : {"Plantio", "Cob", "Repos"})
        for (int r = 0; r < 5; ++r)
            florest << text(QStringLiteral("%1%2").arg(QString::fromLatin1(block)).arg(r));
    all << TableDef{"RecoFlorest", florest + recommendationTail()};

    all << TableDef{"Graf", {text("Classe"), single("BaseFaixa"), single("LimInferior"), single("LimSuperior")}};

    // The user's corrections of the manual's tables: every change with its reason, the rows
    // checked by the user, which a newer version of the data leaves alone, and the version of
    // the data the file holds.
    all << TableDef{"HistoricoTabelas",
                    {text("Tabela", 40), text("Chave"), text("Coluna", 40), text("ValorAnterior"), text("ValorNovo"),
                     memo("Motivo"), date("DataHora")},
                    3};
    all << TableDef{"LinhasConferidas", {text("Tabela", 40), text("Chave")}, 3};
    all << TableDef{"VersaoDados", {smallint("Versao")}, 3};
    return all;
}

QList<IndexDef> buildIndexes()
{
    QList<IndexDef> all = {{"Clientes", {"Nome"}},
                           {"Analises", {"Código"}},
                           {"Analises", {"Cliente"}},
                           {"RecoForm", {"CodAnalise", "CodCultivo"}},
                           {"RecoFormulac", {"CodAnalise", "CodCultivo"}},
                           {"RecoFlorest", {"CodAnalise", "CodCultivo"}},
                           {"Calagem", {"Grupo", "Texto"}},
                           {"SMP", {"Indice"}},
                           {"Graf", {"Classe"}},
                           {"LinhasConferidas", {"Tabela", "Chave"}}};
    // The manual's tables are read one row at a time, by key.
    for (const TableDef& table : schema::tables()) {
        if (!table.columns.isEmpty() && table.columns.first().name == QLatin1String("Chave"))
            all << IndexDef{table.name, {table.columns.first().name}};
    }
    return all;
}

} // namespace

namespace schema {

const QList<TableDef>& tables()
{
    static const QList<TableDef> all = buildTables();
    return all;
}

const QList<ViewDef>& views()
{
    // The medicinal-plant tables are read with the crop suffix, which may be empty, "1" or "2";
    // the manual has one table for both crops.
    static const QList<ViewDef> all = {{"CONDMEDP1", "CONDMEDP"}, {"CONDMEDP2", "CONDMEDP"},
                                       {"CONDMEDK1", "CONDMEDK"}, {"CONDMEDK2", "CONDMEDK"}};
    return all;
}

const TableDef* findTable(const QString& name)
{
    for (const TableDef& table : tables()) {
        if (table.name.compare(name, Qt::CaseInsensitive) == 0)
            return &table;
    }
    return nullptr;
}

QString declaredType(const ColumnDef& column)
{
    switch (column.type) {
    case ColumnType::SmallInt: return QStringLiteral("SMALLINT");
    case ColumnType::Long: return QStringLiteral("INTEGER");
    case ColumnType::Single: return QStringLiteral("SINGLE");
    case ColumnType::Double: return QStringLiteral("DOUBLE");
    case ColumnType::Currency: return QStringLiteral("CURRENCY");
    case ColumnType::Date: return QStringLiteral("DATETIME");
    case ColumnType::Text:
        return column.width > 0 ? QStringLiteral("TEXT(%1)").arg(column.width) : QStringLiteral("TEXT");
    }
    return QStringLiteral("TEXT");
}

ColumnType typeFromDeclared(const QString& declared)
{
    const QString base = declared.section(QLatin1Char('('), 0, 0).trimmed().toUpper();
    if (base == QLatin1String("SMALLINT") || base == QLatin1String("SHORT"))
        return ColumnType::SmallInt;
    if (base == QLatin1String("INTEGER") || base == QLatin1String("LONG") || base == QLatin1String("INT"))
        return ColumnType::Long;
    if (base == QLatin1String("SINGLE") || base == QLatin1String("FLOAT4") || base == QLatin1String("REAL"))
        return ColumnType::Single;
    if (base == QLatin1String("DOUBLE") || base == QLatin1String("FLOAT") || base == QLatin1String("NUMBER"))
        return ColumnType::Double;
    if (base == QLatin1String("CURRENCY") || base == QLatin1String("MONEY"))
        return ColumnType::Currency;
    if (base == QLatin1String("DATETIME") || base == QLatin1String("DATE"))
        return ColumnType::Date;
    return ColumnType::Text;
}

QString createStatement(const TableDef& table)
{
    QStringList columns;
    for (const ColumnDef& column : table.columns) {
        QString line = quoteIdentifier(column.name) + QLatin1Char(' ') + declaredType(column);
        // Texts compare and sort without regard to case, as names and codes are typed by hand.
        if (column.type == ColumnType::Text)
            line += QStringLiteral(" COLLATE NOCASE");
        if (!column.defaultValue.isEmpty())
            line += QStringLiteral(" DEFAULT ") + column.defaultValue;
        columns << line;
    }
    return QStringLiteral("CREATE TABLE %1 (%2)").arg(quoteIdentifier(table.name), columns.join(QStringLiteral(", ")));
}

} // namespace schema

const QList<IndexDef>& schema::indexes()
{
    static const QList<IndexDef> all = buildIndexes();
    return all;
}

QString schema::createIndexStatement(const IndexDef& index)
{
    // Each column keeps its own collation, so that one index serves the lookups that ignore case
    // and, narrowed by it, those that compare byte by byte.
    QStringList columns;
    for (const QString& column : index.columns)
        columns << quoteIdentifier(column);
    const QString name = QStringLiteral("ix_%1_%2").arg(index.table, index.columns.join(QLatin1Char('_')));
    return QStringLiteral("CREATE INDEX IF NOT EXISTS %1 ON %2 (%3)")
        .arg(quoteIdentifier(name), quoteIdentifier(index.table), columns.join(QStringLiteral(", ")));
}

QStringList schema::upgradeStatements(int toVersion)
{
    QStringList statements;
    if (toVersion == 2 || toVersion == 3) {
        for (const TableDef& table : tables()) {
            if (table.since == toVersion)
                statements << createStatement(table).replace(QStringLiteral("CREATE TABLE "),
                                                             QStringLiteral("CREATE TABLE IF NOT EXISTS "));
        }
        for (const IndexDef& index : indexes()) {
            const TableDef* table = findTable(index.table);
            if (table && table->since <= toVersion)
                statements << createIndexStatement(index);
        }
    }
    return statements;
}

QString quoteIdentifier(const QString& name)
{
    QString inner = name;
    inner.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + inner + QLatin1Char('"');
}

QString unquoteIdentifier(const QString& identifier)
{
    if (identifier.size() >= 2
        && ((identifier.front() == QLatin1Char('[') && identifier.back() == QLatin1Char(']'))
            || (identifier.front() == QLatin1Char('"') && identifier.back() == QLatin1Char('"'))))
        return identifier.mid(1, identifier.size() - 2);
    return identifier;
}

QString sqlText(const QString& text)
{
    QString inner = text;
    inner.replace(QLatin1Char('\''), QStringLiteral("''"));
    return QLatin1Char('\'') + inner + QLatin1Char('\'');
}

} // namespace lavra
