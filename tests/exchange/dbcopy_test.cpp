#include "exchange/dbcopy.h"
#include "heldfile.h"
#include "store/databasefile.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lavra {
namespace {

// Another program's connection to a file, around the store.
class OutraConexao {
public:
    explicit OutraConexao(const QString& caminho)
    {
        m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("outra"));
        m_db.setDatabaseName(caminho);
        m_db.open();
    }
    ~OutraConexao()
    {
        m_db.close();
        m_db = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("outra"));
    }
    void exec(const QString& sql) { ASSERT_TRUE(QSqlQuery(m_db).exec(sql)) << sql.toStdString(); }

private:
    QSqlDatabase m_db;
};

int contaClientes(const QString& caminho)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("leitura"));
    db.setDatabaseName(caminho);
    int n = -1;
    if (db.open()) {
        QSqlQuery q(db);
        if (q.exec(QStringLiteral("SELECT count(*) FROM Clientes")) && q.next())
            n = q.value(0).toInt();
        db.close();
    }
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("leitura"));
    return n;
}

class DbCopyTest : public ::testing::Test {
protected:
    QString alvo(const QString& nome) const { return CaminhoDaCopia(dir.path(), NomeDaCopia(nome)); }
    void escreve(const QString& caminho, const QByteArray& conteudo) const
    {
        QFile f(caminho);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(conteudo);
    }
    QByteArray le(const QString& caminho) const
    {
        QFile f(caminho);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    test::ScratchDatabase scratch;
    QTemporaryDir dir;
};

TEST_F(DbCopyTest, NamesAndPaths)
{
    EXPECT_EQ(NomeDaCopia("CopiaBdLavra"), "CopiaBdLavra.db");
    EXPECT_EQ(NomeDaCopia("copia.db"), "copia.db.db") << "the extension is always added";
    EXPECT_EQ(CaminhoDaCopia("/", "x.db"), "/x.db");
    EXPECT_EQ(CaminhoDaCopia("/media/pen/", "x.db"), "/media/pen/x.db");

    const QStringList listados = {"COPIA.db", "copia.db.db", "outra.txt"};
    EXPECT_EQ(ArquivoDeMesmoNome(listados, "copia.db"), "COPIA.db") << "case is ignored";
    EXPECT_EQ(ArquivoDeMesmoNome({"copia.DB", "copia.db"}, "copia.db"), "copia.db") << "the very same name first";
    EXPECT_EQ(ArquivoDeMesmoNome(listados, "nova.db"), "");

    escreve(dir.filePath("b.db"), "x");
    escreve(dir.filePath("A.db"), "x");
    escreve(dir.filePath(".oculto"), "x");
    EXPECT_EQ(ArquivosDaPasta(dir.path()), (QStringList{"A.db", "b.db"}));
}

TEST_F(DbCopyTest, TheCopyIsASoundDatabaseAndLeavesNoPartialFile)
{
    scratch.exec("INSERT INTO Clientes (Nome) VALUES ('Ana Prado')");
    int passos = 0;
    ASSERT_TRUE(CopiaBanco(scratch.path(), alvo("copia"), {}, [&passos](int copiadas, int total) {
        ++passos;
        EXPECT_LE(copiadas, total);
        return true;
    }));
    EXPECT_GT(passos, 0);
    EXPECT_EQ(contaClientes(alvo("copia")), 1);
    EXPECT_TRUE(verificaIntegridade(alvo("copia")).isEmpty());
    EXPECT_EQ(ArquivosDaPasta(dir.path()), QStringList{"copia.db"});
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"copia.db"});
}

TEST_F(DbCopyTest, ACopyTakenWhileAnotherProgramWritesIsConsistent)
{
    // Enough pages for several steps of the copy.
    scratch.exec("CREATE TABLE Lastro (x BLOB)");
    scratch.exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 800) "
                 "INSERT INTO Lastro SELECT randomblob(8000) FROM n");
    OutraConexao outra(scratch.path());

    // A write not yet committed is not in the copy.
    outra.exec("BEGIN");
    outra.exec("INSERT INTO Clientes (Nome) VALUES ('Em curso')");
    ASSERT_TRUE(CopiaBanco(scratch.path(), alvo("durante"), {}));
    outra.exec("COMMIT");
    EXPECT_EQ(contaClientes(alvo("durante")), 0);

    // Rows committed between two steps of the copy start it over: the copy has them all.
    int passos = 0;
    ASSERT_TRUE(CopiaBanco(scratch.path(), alvo("entre"), {}, [&](int, int) {
        if (++passos <= 3)
            outra.exec(QStringLiteral("INSERT INTO Clientes (Nome) VALUES ('Passo %1')").arg(passos));
        return true;
    }));
    EXPECT_GT(passos, 3);
    EXPECT_EQ(contaClientes(alvo("entre")), 4);
    EXPECT_TRUE(verificaIntegridade(alvo("entre")).isEmpty());
}

TEST_F(DbCopyTest, ReplacingAFileOfTheSameNameInOtherCapitals)
{
    escreve(dir.filePath("COPIA.db"), "cópia antiga");
    ASSERT_TRUE(CopiaBanco(scratch.path(), alvo("copia"), dir.filePath("COPIA.db")));
    EXPECT_EQ(ArquivosDaPasta(dir.path()), QStringList{"copia.db"});
    EXPECT_EQ(contaClientes(alvo("copia")), 0);
}

TEST_F(DbCopyTest, AFailedOrStoppedCopyLeavesTheOldFile)
{
    escreve(alvo("copia"), "cópia antiga");

    // A source that is no database.
    const QString estragado = dir.filePath("estragado.db");
    escreve(estragado, QByteArray(8192, 'x'));
    EXPECT_THROW(CopiaBanco(estragado, alvo("copia"), alvo("copia")), StoreError);
    EXPECT_EQ(le(alvo("copia")), "cópia antiga");

    // A database another program is writing to: told after the usual wait.
    const int espera = DatabaseFile::busyTimeout();
    DatabaseFile::setBusyTimeout(50);
    {
        test::HeldFile outro(scratch.path());
        ASSERT_TRUE(outro.held());
        try {
            CopiaBanco(scratch.path(), alvo("copia"), alvo("copia"));
            ADD_FAILURE() << "copied a held file";
        } catch (const StoreError& erro) {
            EXPECT_TRUE(erro.message().contains(QStringLiteral("em uso por outro programa"))) << erro.what();
        }
    }
    DatabaseFile::setBusyTimeout(espera);

    EXPECT_FALSE(CopiaBanco(scratch.path(), alvo("copia"), alvo("copia"), [](int, int) { return false; }));
    EXPECT_EQ(le(alvo("copia")), "cópia antiga");
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"copia.db", "estragado.db"}));

    // Never in place of the database itself.
    const QFileInfo banco(scratch.path());
    EXPECT_THROW(CopiaBanco(scratch.path(), banco.absoluteFilePath(), banco.absoluteFilePath()), StoreError);
    EXPECT_THROW(CopiaBanco(scratch.path(), banco.absolutePath() + "/LAVRA.db", banco.absoluteFilePath()), StoreError);
    EXPECT_GT(QFileInfo(scratch.path()).size(), 0);
}

} // namespace
} // namespace lavra
