#include "store/changenotifier.h"
#include "store/cursormodel.h"
#include "store/database.h"
#include "store/databasefile.h"
#include "store/store.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <QDate>
#include <gtest/gtest.h>

using namespace lavra;

namespace {

class StoreTest : public ::testing::Test {
protected:
    test::ScratchDatabase scratch;
    Store db{scratch.path()};

    void addClient(const QString& nome, const QVariant& cidade = QStringLiteral("Passo Fundo"))
    {
        db.AbreTabela(QStringLiteral("SELECT * FROM Clientes;"));
        db.rs.addNew();
        db.rs.setValue(0, nome);
        db.rs.setValue(2, cidade);
        db.rs.update();
        db.fecha();
    }
};

TEST_F(StoreTest, CursorWalksEveryRowAndStandsOnTheNextAfterADelete)
{
    db.AbreTabela(QStringLiteral("SELECT * FROM Clientes;"));
    EXPECT_EQ(db.rs.recordCount(), 0);
    EXPECT_TRUE(db.rs.atEnd() && db.rs.atBeginning());
    EXPECT_THROW(db.rs.value(0), StoreError);
    EXPECT_THROW(db.rs.moveNext(), StoreError);

    addClient(QStringLiteral("Ana"));
    addClient(QStringLiteral("Bruno"));
    db.AbreTabela(QStringLiteral("SELECT * FROM Clientes ORDER BY Nome"));
    ASSERT_EQ(db.rs.recordCount(), 2);
    EXPECT_FALSE(db.rs.atBeginning());
    EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("Ana"));
    db.rs.moveNext();
    db.rs.moveNext();
    EXPECT_TRUE(db.rs.atEnd());
    db.rs.moveLast();
    EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("Bruno"));
    db.rs.moveFirst();
    db.rs.movePrevious();
    EXPECT_TRUE(db.rs.atBeginning());

    db.rs.moveFirst();
    db.rs.deleteCurrent();  // written at once
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toInt(), 1);
    EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("Bruno"));
    db.rs.deleteCurrent();
    EXPECT_TRUE(db.rs.atEnd() && db.rs.atBeginning());
    // Opening again without closing is harmless; closing twice is not.
    db.AbreTabela(QStringLiteral("SELECT * FROM Clientes;"));
    db.fecha();
    EXPECT_FALSE(db.cn.isOpen());
    EXPECT_THROW(db.cn.close(), StoreError);
}

TEST_F(StoreTest, MovingOffAnEditedRowSavesIt)
{
    addClient(QStringLiteral("Ana"));
    addClient(QStringLiteral("Bruno"));
    db.AbreTabela(QStringLiteral("SELECT * FROM Clientes ORDER BY Nome"));
    db.rs.setValue(2, QStringLiteral("Erechim"));
    db.rs.moveNext();
    db.rs.setValue(2, QStringLiteral("Vacaria"));
    db.rs.moveNext();
    db.fecha();
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT group_concat(Cidade, ' ') FROM Clientes ORDER BY Nome")).toString(),
              QStringLiteral("Erechim Vacaria"));
}

TEST_F(StoreTest, TextsSortAndCompareWithoutRegardToCase)
{
    for (const char* name : {"bruna", "Carlos", "ana"})
        addClient(QString::fromLatin1(name));
    db.AbreTabela(QStringLiteral("SELECT * FROM Clientes ORDER BY Nome"));
    QStringList order;
    for (; !db.rs.atEnd(); db.rs.moveNext())
        order << db.rs.value(0).toString();
    EXPECT_EQ(order, (QStringList{"ana", "bruna", "Carlos"}));
    db.AbreTabela(QStringLiteral("SELECT * FROM Clientes WHERE Nome = 'CARLOS'"));
    EXPECT_EQ(db.rs.recordCount(), 1);
    db.fecha();
}

// ExisteValor compares exactly, finds a repeated value, never matches a null cell and leaves the shared
// cursor where it stood.
TEST_F(StoreTest, ExisteValorComparesExactlyAndLeavesTheSharedCursorAlone)
{
    EXPECT_FALSE(db.ExisteValor(QStringLiteral("Clientes"), QStringLiteral("Ana"), 0));
    addClient(QStringLiteral("Aline"), QVariant());
    addClient(QStringLiteral("Ana"));
    addClient(QStringLiteral("Ana"));
    addClient(QStringLiteral("Bruno"));
    db.AbreTabela(QStringLiteral("SELECT * FROM Clientes ORDER BY Nome"));
    EXPECT_TRUE(db.rs.value(2).isNull());
    EXPECT_TRUE(db.rs.value(3).isNull());
    db.rs.moveLast();
    EXPECT_TRUE(db.ExisteValor(QStringLiteral("Clientes"), QStringLiteral("Ana"), 0));
    EXPECT_FALSE(db.ExisteValor(QStringLiteral("Clientes"), QStringLiteral("ana"), 0));
    EXPECT_FALSE(db.ExisteValor(QStringLiteral("Clientes"), QString(), 2));
    EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("Bruno"));
    db.fecha();
}

TEST_F(StoreTest, QuotationMarkInAUserTextKeepsTheStatementWhole)
{
    const QString name = QStringLiteral("Fazenda D'Ávila");
    addClient(name);
    db.AbreTabela(QStringLiteral("SELECT * FROM Clientes WHERE Nome LIKE ") + sqlText(name) + QStringLiteral(";"));
    ASSERT_EQ(db.rs.recordCount(), 1);
    EXPECT_EQ(db.rs.value(0).toString(), name);
    db.fecha();
}

TEST_F(StoreTest, StatementFormsOfTheProgram)
{
    scratch.exec(QStringLiteral("DELETE FROM NPK"));
    scratch.exec(QStringLiteral("INSERT INTO NPK (\"Fórmula\", N, P, K, \"P/K\") VALUES ('05-20-20', 5, 20, 20, 1), "
                                "('Ureia', 45, 0, 0, 0), ('00-18-00', 0, 18, 0, 0), ('02-20-10', 2, 20, 10, 2)"));

    db.AbreTabela(QStringLiteral("SELECT * FROM NPK ORDER BY [P/K];"));
    db.rs.moveLast();
    EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("02-20-10"));
    db.AbreTabela(QStringLiteral("SELECT * FROM NPK Where P LIKE 0 AND K LIKE 0"));
    ASSERT_EQ(db.rs.recordCount(), 1);
    EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("Ureia"));
    db.AbreTabela(QStringLiteral("SELECT * FROM NPK ORDER BY N, P, K;"));
    EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("00-18-00"));
    db.fecha();
}

TEST_F(StoreTest, ColumnTypesAreThoseTheQueryToolGroupsBy)
{
    db.AbreTabela(QStringLiteral("SELECT * FROM Analises;"));
    EXPECT_EQ(db.rs.columnName(0), QStringLiteral("Código"));
    EXPECT_EQ(db.rs.columnName(2), QStringLiteral("Local_"));
    EXPECT_EQ(db.rs.columnType(0), ColumnType::Text);
    EXPECT_EQ(db.rs.columnType(5), ColumnType::Date);
    EXPECT_EQ(db.rs.columnType(6), ColumnType::Single);
    EXPECT_EQ(db.rs.columnType(21), ColumnType::SmallInt);
    db.AbreTabela(QStringLiteral("SELECT [R$/t] FROM Calcario;"));
    EXPECT_EQ(static_cast<int>(db.rs.columnType(0)), 5);
    db.fecha();
}

TEST_F(StoreTest, ValuesTakeTheTypeOfTheirColumn)
{
    test::MachineLocale comma(test::commaLocale());
    db.AbreTabela(QStringLiteral("SELECT * FROM Analises;"));
    db.rs.addNew();
    db.rs.setValue(0, QStringLiteral("F/G/28/02/2010"));
    db.rs.setValue(5, QStringLiteral("28/02/2010"));
    db.rs.setValue(6, QStringLiteral("10,1"));
    db.rs.setValue(21, 1.5);  // half to even
    db.rs.setValue(22, 2.5);
    db.rs.update();
    EXPECT_EQ(db.rs.value(5).toDate(), QDate(2010, 2, 28));
    EXPECT_EQ(db.rs.value(6).typeId(), QMetaType::Float);
    EXPECT_EQ(db.rs.value(6).toFloat(), 10.1f);
    EXPECT_EQ(db.rs.value(21).toInt(), 2);
    EXPECT_EQ(db.rs.value(22).toInt(), 2);
    EXPECT_THROW(db.rs.setValue(5, QStringLiteral("31/02/2010")), StoreError);
    EXPECT_THROW(db.rs.setValue(6, QStringLiteral("dez")), StoreError);
    EXPECT_THROW(db.rs.setValue(21, 40000), StoreError);
    db.fecha();
    // The file keeps the figure as typed, not the float's binary tail.
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT Area FROM Analises")).toDouble(), 10.1);
}

TEST_F(StoreTest, NewRowTakesTheTableDefaults)
{
    db.AbreTabela(QStringLiteral("SELECT * FROM TecResp"));
    db.rs.addNew();
    db.rs.setValue(0, QStringLiteral("Maria"));
    db.rs.update();
    EXPECT_EQ(db.rs.value(3).toInt(), 0);
    db.fecha();
}

TEST_F(StoreTest, ViewsReadTheirTableAgainAfterAChangeByAnotherPath)
{
    addClient(QStringLiteral("Bruno"));
    ChangeNotifier::instance().flush();  // what making the database told
    CursorModel clients(scratch.path(), QStringLiteral("SELECT * FROM Clientes ORDER BY Nome"));
    CursorModel materials(scratch.path(), QStringLiteral("SELECT * FROM Calcario"));
    clients.setCurrentRow(0);
    int materialResets = 0;
    QObject::connect(&materials, &QAbstractItemModel::modelReset, [&materialResets]() { ++materialResets; });

    addClient(QStringLiteral("Ana"));
    EXPECT_EQ(clients.rowCount(), 1);  // not before the change is told
    ChangeNotifier::instance().flush();
    ASSERT_EQ(clients.rowCount(), 2);
    EXPECT_EQ(clients.value(0, 0).toString(), QStringLiteral("Ana"));
    // The current row follows its row, not its place.
    EXPECT_EQ(clients.currentRow(), 1);
    EXPECT_EQ(materialResets, 0);
}

TEST_F(StoreTest, CancelledChangesAreNeverWritten)
{
    addClient(QStringLiteral("Ana"));
    addClient(QStringLiteral("Bruno"));
    const struct {
        const char* what;
        bool added;
        int currentAfter;  // the row current once the change is dropped
    } cases[] = {{"an edited row reads as it was read", false, 0}, {"an added row goes", true, 0}};
    for (const auto& c : cases) {
        db.AbreTabela(QStringLiteral("SELECT * FROM Clientes ORDER BY Nome"));
        if (c.added)
            db.rs.addNew();
        db.rs.setValue(0, QStringLiteral("Carla"));
        db.rs.cancelUpdate();
        EXPECT_FALSE(db.rs.isEditing()) << c.what;
        EXPECT_EQ(db.rs.recordCount(), 2) << c.what;
        EXPECT_EQ(db.rs.position(), c.currentAfter) << c.what;
        EXPECT_EQ(db.rs.value(0).toString(), QStringLiteral("Ana")) << c.what;
        db.rs.moveLast();  // moving off the row writes nothing now
        db.fecha();
        EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM Clientes WHERE Nome = 'Carla'")).toInt(), 0)
            << c.what;
    }
}

TEST_F(StoreTest, OnlyARollbackThatUndidRowsMakesViewsReadAgain)
{
    ChangeNotifier::instance().flush();
    QStringList told;
    const auto connection = QObject::connect(&ChangeNotifier::instance(), &ChangeNotifier::tableChanged,
                                             [&told](const QString& table) { told << table; });
    scratch.exec(QStringLiteral(
        "CREATE TRIGGER recusa BEFORE INSERT ON Clientes WHEN NEW.Nome = 'X' BEGIN SELECT RAISE(ABORT, 'recusado'); END"));
    ChangeNotifier::instance().flush();
    told.clear();

    for (const char* nome : {"X", "Ana"}) {
        db.AbreConexao();
        Transaction transaction(db.cn);
        db.rs.open(QStringLiteral("SELECT * FROM Clientes"), db.cn);
        db.rs.addNew();
        db.rs.setValue(0, QString::fromLatin1(nome));
        try {
            db.rs.update();
        } catch (const StoreError& error) {
            EXPECT_TRUE(error.stoppedWrite());
            db.rs.cancelUpdate();
        }
        // Left without commit: rolled back here.
    }
    db.fecha();
    ChangeNotifier::instance().flush();
    QObject::disconnect(connection);
    // Nothing is left of a transaction never committed. The refused row undid nothing; the written one
    // was undone, and the views are told so.
    EXPECT_EQ(told.count(QString()), 1);
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toInt(), 0);
}

} // namespace
