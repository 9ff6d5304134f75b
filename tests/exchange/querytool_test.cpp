#include "exchange/querytool.h"
#include "exchange/workbook.h"
#include "store/store.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lavra {
namespace {

constexpr int kAnalises = 0;
constexpr int kClientes = 1;
constexpr int kCorretivos = 2;

class QueryToolTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (const char* nome : {"JOSÉ DA SILVA", "josé de souza", "Maria O'Hara", "50% Agro_Ltda", "Ana", "Álvaro",
                                 "Bruno", "5 Irmãos"})
            scratch.exec(QStringLiteral("INSERT INTO Clientes (Nome, Cidade) VALUES ('%1', 'Ijuí')")
                             .arg(QString::fromUtf8(nome).replace(QLatin1Char('\''), QStringLiteral("''"))));
        // Code, area, date, pH class.
        const char* analises[][4] = {{"A1", "1.5", "'2011-06-22'", "1"},
                                     {"A2", "2.25", "'2011-06-23'", "2"},
                                     {"A3", "10", "'2012-01-05'", "3"},
                                     {"A4", "0.1", "NULL", "5"}};
        for (const auto& a : analises)
            scratch.exec(QStringLiteral("INSERT INTO Analises (\"Código\", Cliente, Area, Data_, ClassePH) VALUES "
                                        "('%1', 'Ana', %2, %3, %4)")
                             .arg(QString::fromLatin1(a[0]), QString::fromLatin1(a[1]), QString::fromLatin1(a[2]),
                                  QString::fromLatin1(a[3])));
    }

    PedidoConsulta pedido(int origem, const QString& campo, const QString& criterio, const QString& informacao) const
    {
        PedidoConsulta p;
        p.origem = origem;
        p.campos = CamposDaOrigem(db, origensConsulta()[origem].tabela);
        for (int i = 0; i < p.campos.size(); ++i)
            if (p.campos[i].nome == campo)
                p.campo = i;
        p.criterio = static_cast<int>(criteriosConsulta().indexOf(criterio));
        p.informacao = informacao;
        return p;
    }

    // The text file of the query, line by line; empty when nothing was found.
    QStringList texto(const PedidoConsulta& p) const
    {
        const QString caminho = dir.filePath(QStringLiteral("Temp.txt"));
        QFile::remove(caminho);
        EXPECT_EQ(ChecaConsulta(p), std::nullopt);
        GeraConsulta(db, p, SaidaConsulta::Texto, caminho);
        QFile arquivo(caminho);
        if (!arquivo.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(arquivo.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    // The values found in one column, in the order of the result.
    QStringList coluna(int origem, const QString& campo, const QString& criterio, const QString& informacao,
                       const QString& mostrada = {}) const
    {
        const QStringList linhas = texto(pedido(origem, campo, criterio, informacao));
        if (linhas.size() < 2)
            return {};
        const int indice = static_cast<int>(linhas[1].split(QLatin1Char(';')).indexOf(mostrada.isEmpty() ? campo : mostrada));
        QStringList valores;
        for (int i = 2; i < linhas.size(); ++i)
            valores << linhas[i].split(QLatin1Char(';')).value(indice);
        return valores;
    }

    test::ScratchDatabase scratch;
    Store db{scratch.path()};
    QTemporaryDir dir;
};

TEST_F(QueryToolTest, TextCriteriaIgnoreCaseAndAccentsAndTakeTheUsersTextLiterally)
{
    const auto nomes = [this](const QString& criterio, const QString& v) { return coluna(kClientes, "Nome", criterio, v); };
    EXPECT_EQ(nomes("igual a", "josé da silva"), QStringList{"JOSÉ DA SILVA"});
    EXPECT_EQ(nomes("contém", "JOSÉ"), (QStringList{"JOSÉ DA SILVA", "josé de souza"}));
    EXPECT_EQ(nomes("começa com", "mar"), QStringList{"Maria O'Hara"});
    EXPECT_EQ(nomes("termina com", "SILVA"), QStringList{"JOSÉ DA SILVA"});
    EXPECT_EQ(nomes("contém", "o'hara"), QStringList{"Maria O'Hara"});
    // '%' and '_' are letters here, not wildcards.
    EXPECT_EQ(nomes("contém", "50%"), QStringList{"50% Agro_Ltda"});
    EXPECT_EQ(nomes("contém", "_"), QStringList{"50% Agro_Ltda"});
    EXPECT_EQ(nomes("igual a", "%"), QStringList{});
    // Order and comparison follow the alphabet, accented letters in their place.
    EXPECT_EQ(nomes("menor que", "B"), (QStringList{"5 Irmãos", "50% Agro_Ltda", "Álvaro", "Ana"}));
    EXPECT_EQ(nomes("maior que", "maria"), (QStringList{"Maria O'Hara"}));
}

TEST_F(QueryToolTest, NumberCriteriaReadEitherDecimalSymbol)
{
    for (const QLocale& locale : {test::commaLocale(), test::pointLocale()}) {
        test::MachineLocale machine(locale);
        const QString um5 = locale.toString(1.5);
        const auto areas = [this](const QString& criterio, const QString& v) {
            return coluna(kAnalises, "Area", criterio, v, "Código").join(QLatin1Char(' '));
        };
        EXPECT_EQ(areas("igual a", "1,5"), "A1");
        EXPECT_EQ(areas("igual a", "1.5"), "A1");
        EXPECT_EQ(areas("igual a", "0,1"), "A4") << "a single is found by the number typed";
        EXPECT_EQ(areas("menor que", "2"), "A4 A1");
        EXPECT_EQ(areas("maior que", "2,25"), "A3");
        EXPECT_EQ(areas("começa com", "2,2"), "A2");
        EXPECT_EQ(areas("contém", "0"), "A4 A3");
        EXPECT_EQ(areas("termina com", "5"), "A1 A2");
        // The text file shows the number on the machine's setting.
        EXPECT_EQ(coluna(kAnalises, "Area", "igual a", "1,5"), QStringList{um5});
        EXPECT_EQ(coluna(kAnalises, "ClassePH", "maior que", "2", "Código"), (QStringList{"A3", "A4"}));
    }
}

TEST_F(QueryToolTest, DateCriteria)
{
    for (const QLocale& locale : {test::commaLocale(), test::pointLocale()}) {
        test::MachineLocale machine(locale);
        const QString junho22 = locale.toString(QDate(2011, 6, 22), QLocale::ShortFormat);
        const auto codigos = [this](const QString& criterio, const QString& v) {
            return coluna(kAnalises, "Data_", criterio, v, "Código").join(QLatin1Char(' '));
        };
        EXPECT_EQ(codigos("igual a", junho22), "A1");
        EXPECT_EQ(codigos("maior que", junho22), "A2 A3");
        EXPECT_EQ(codigos("menor que", locale.toString(QDate(2012, 1, 1), QLocale::ShortFormat)), "A1 A2");
        EXPECT_EQ(codigos("contém", "06/2011"), "A1 A2");
        EXPECT_EQ(codigos("termina com", "2012"), "A3");
        EXPECT_EQ(codigos("começa com", "23/"), "A2");
        EXPECT_EQ(coluna(kAnalises, "Data_", "igual a", junho22), QStringList{junho22});
    }
}

TEST_F(QueryToolTest, AFieldOfNoGroupIsFilteredByItselfAlone)
{
    // Whole numbers of 32 bits and doubles get no comparison: the rows where the field is set
    // and not zero, whatever was typed.
    scratch.exec("DELETE FROM Calcario");
    scratch.exec("INSERT INTO Calcario (Nome, \"R$/t\") VALUES ('Com preço', 120), ('Sem preço', 0), ('Nulo', NULL)");
    const PedidoConsulta p = pedido(kCorretivos, "R$/t", "igual a", "999");
    EXPECT_TRUE(MontaConsulta(p).sql.contains(QStringLiteral("WHERE \"R$/t\" ORDER BY")));
    EXPECT_TRUE(MontaConsulta(p).valores.isEmpty());
    EXPECT_EQ(coluna(kCorretivos, "R$/t", "igual a", "999", "Nome"), QStringList{"Com preço"});
}

TEST_F(QueryToolTest, TheChoicesAreCheckedInOrder)
{
    PedidoConsulta p;
    EXPECT_EQ(ChecaConsulta(p)->texto, "Selecione a origem dos dados!");
    p = pedido(kClientes, "Nome", "contém", "");
    p.campo = -1;
    EXPECT_EQ(ChecaConsulta(p)->texto, "Selecione o campo para filtrar os dados!");
    p = pedido(kClientes, "Nome", "", "x");
    EXPECT_EQ(ChecaConsulta(p)->texto, "Escolha o critério de filtragem!");
    p = pedido(kClientes, "Nome", "contém", "");
    EXPECT_EQ(ChecaConsulta(p)->texto, "Defina a informação para  o critério de filltragem!");
    EXPECT_EQ(ChecaConsulta(p)->campo, "txtInfoCrit");

    // A value that cannot stand for the field is refused before anything is run.
    EXPECT_EQ(ChecaConsulta(pedido(kAnalises, "Area", "menor que", "abc"))->campo, "txtInfoCrit");
    EXPECT_EQ(ChecaConsulta(pedido(kAnalises, "Data_", "igual a", "31/02/2011"))->campo, "txtInfoCrit");
    EXPECT_EQ(ChecaConsulta(pedido(kAnalises, "Area", "contém", "abc")), std::nullopt);
    EXPECT_EQ(ChecaConsulta(pedido(kAnalises, "Data_", "termina com", "2011")), std::nullopt);
}

TEST_F(QueryToolTest, TheTextFileHoldsTheRequestTheNamesAndTheRows)
{
    test::MachineLocale machine(test::commaLocale());
    const QString caminho = dir.filePath(QStringLiteral("Temp.txt"));
    GeraConsulta(db, pedido(kAnalises, "Código", "igual a", "a4"), SaidaConsulta::Texto, caminho);
    QFile arquivo(caminho);
    ASSERT_TRUE(arquivo.open(QIODevice::ReadOnly));
    const QStringList linhas = QString::fromUtf8(arquivo.readAll()).split(QLatin1Char('\n'));
    ASSERT_EQ(linhas.size(), 6);
    EXPECT_EQ(linhas[0], "");
    EXPECT_EQ(linhas[1], " Análises;Código;igual a;a4");
    EXPECT_EQ(linhas[2], "");
    EXPECT_TRUE(linhas[3].startsWith(";Código;Cliente;Local_;Fazenda;Gleba;Data_;Area;"));
    // A null leaves only its ";".
    EXPECT_TRUE(linhas[4].startsWith(";A4;Ana;;;;;0,1;")) << linhas[4].toStdString();
    EXPECT_EQ(linhas[5], "");
}

TEST_F(QueryToolTest, NothingFoundWritesNothingAndACancelKeepsTheOldFile)
{
    const QString caminho = dir.filePath(QStringLiteral("Temp.txt"));
    const ResultadoConsulta nada = GeraConsulta(db, pedido(kClientes, "Nome", "igual a", "ninguém"), SaidaConsulta::Texto, caminho);
    EXPECT_EQ(nada.linhas, 0);
    EXPECT_FALSE(QFile::exists(caminho));

    QFile antigo(caminho);
    ASSERT_TRUE(antigo.open(QIODevice::WriteOnly));
    antigo.write("antigo");
    antigo.close();
    const ProgressoConsulta para{[](qint64 feitas, qint64) { return feitas < 2; }, {}};
    EXPECT_TRUE(GeraConsulta(db, pedido(kClientes, "Cidade", "igual a", "ijuí"), SaidaConsulta::Texto, caminho, para).cancelada);
    ASSERT_TRUE(antigo.open(QIODevice::ReadOnly));
    EXPECT_EQ(antigo.readAll(), "antigo");

    const QString planilha = dir.filePath(QStringLiteral("c.xlsx"));
    EXPECT_TRUE(GeraConsulta(db, pedido(kClientes, "Cidade", "igual a", "ijuí"), SaidaConsulta::Planilha, planilha, para).cancelada);
    EXPECT_FALSE(QFile::exists(planilha));
}

TEST_F(QueryToolTest, TheWorkbookReadsBackWithTheNamesAndTypedCells)
{
    const QString caminho = dir.filePath(QStringLiteral("c.xlsx"));
    const ResultadoConsulta r = GeraConsulta(db, pedido(kAnalises, "Area", "maior que", "1"), SaidaConsulta::Planilha, caminho);
    EXPECT_EQ(r.linhas, 3);
    const Pasta pasta = abrePasta(caminho);
    const Planilha& folha = *pasta.planilhas.front();
    EXPECT_EQ(folha.nome(), "Plan1");
    EXPECT_EQ(folha.linhasUsadas(), 4);
    EXPECT_EQ(folha.celula(1, 1).texto, "Código");
    EXPECT_EQ(folha.celula(1, 7).texto, "Area");
    EXPECT_EQ(folha.celula(2, 1).texto, "A1");
    EXPECT_EQ(folha.celula(2, 2).texto, "Ana");
    EXPECT_EQ(folha.celula(2, 6).tipo, Celula::Tipo::Data);
    EXPECT_EQ(folha.celula(2, 6).data(), QDate(2011, 6, 22));
    EXPECT_EQ(folha.celula(3, 7).numero, 2.25);
    EXPECT_EQ(folha.celula(4, 7).numero, 10.0);
    EXPECT_TRUE(folha.celula(2, 3).vazia()) << "a null is no cell";
}

} // namespace
} // namespace lavra
