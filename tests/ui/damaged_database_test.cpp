#include "heldfile.h"
#include "store/databasefile.h"
#include "store/storeerror.h"
#include "uitestsupport.h"

#include <QDir>
#include <QFile>
#include <QPushButton>

using namespace lavra;
using namespace lavra::test;

namespace {

// How long another program's hold is waited for here: short, so that the tests stay quick.
constexpr int kEspera = 300;

} // namespace

// The database failing under the windows: held by another program on reading and on writing,
// and a file that is no database at all. The program tells it once, in plain words, and goes on.
// The wording of each failure is tests/store/errortext_test.cpp's.
class DamagedDatabaseTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { DatabaseFile::setBusyTimeout(kEspera); }

    void aHeldFileOnReadingIsToldOnceAndTheRegisterStaysOpen()
    {
        UiHarness h;
        HeldFile other(h.databasePath());
        QVERIFY(other.held());
        QWidget* w = h.open(QStringLiteral("frmCadCli"));
        QVERIFY(w);
        QTest::qWait(20);  // whatever the opening left for the event loop

        QCOMPARE(h.boxes.size(), 1);
        const ui::Mensagem& box = h.boxes.first();
        QCOMPARE(box.icone, ui::Icone::Critico);
        QVERIFY2(box.texto.startsWith(QStringLiteral("Erro no banco de dados:\n")), qPrintable(box.texto));
        QVERIFY2(box.texto.contains(QStringLiteral("em uso por outro programa")), qPrintable(box.texto));
        // A reading saves nothing and says nothing about saving.
        QVERIFY(!box.texto.contains(QStringLiteral("Nada foi gravado")));
        QCOMPARE(h.windows().window(QStringLiteral("frmCadCli")), w);
        for (const char* botao : {"cmdNovo", "cmdEdita", "cmdExclui", "cmdConfirma", "cmdCancela"})
            QVERIFY(!find<QPushButton>(w, QString::fromLatin1(botao))->isEnabled());
        QVERIFY(find<QPushButton>(w, QStringLiteral("cmdSai"))->isEnabled());
    }

    void aHeldFileOnWritingKeepsTheEditUntilCancelled()
    {
        UiHarness h;
        h.exec(QStringLiteral("INSERT INTO Clientes VALUES ('Ana', 'Linha 7', 'Erechim', '-', '-'), "
                              "('Bruno', 'Linha 9', 'Ijuí', '-', '-')"));
        QWidget* w = h.open(QStringLiteral("frmCadCli"));
        QTest::qWait(20);  // what making the database told the views
        QCOMPARE(text(w, QStringLiteral("txtNome")), QStringLiteral("Ana"));
        click(w, QStringLiteral("cmdEdita"));
        type(w, QStringLiteral("txtCidade"), QStringLiteral("Passo Fundo"));
        {
            HeldFile other(h.databasePath());
            QVERIFY(other.held());
            click(w, QStringLiteral("cmdConfirma"));
            QTest::qWait(50);  // the notices of the failed write, if any
            QCOMPARE(h.boxes.size(), 1);
            QVERIFY(h.texts().first().contains(QStringLiteral("em uso por outro programa")));
            QVERIFY(h.texts().first().contains(QStringLiteral("\nNada foi gravado.")));
            QVERIFY(h.texts().first().endsWith(QStringLiteral("Detalhe: database is locked")));
            QCOMPARE(text(w, QStringLiteral("txtCidade")), QStringLiteral("Passo Fundo"));

            click(w, QStringLiteral("cmdCancela"));
            QTest::qWait(20);
            QCOMPARE(h.boxes.size(), 1);
            QCOMPARE(text(w, QStringLiteral("txtCidade")), QStringLiteral("Erechim"));
        }
        QCOMPARE(h.scalar(QStringLiteral("SELECT Cidade FROM Clientes WHERE Nome = 'Ana'")).toString(),
                 QStringLiteral("Erechim"));
    }

    void aForeignFileIsRefusedAtStartWithOneMessage()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("Lavra.db"));
        {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray("PK\x03\x04 planilha").repeated(300));
        }
        QList<ui::Mensagem> boxes;
        ui::setResponder([&boxes](const ui::Mensagem& m) {
            boxes << m;
            return QMessageBox::Ok;
        });
        const auto programa = ui::abrePrograma(path);
        ui::setResponder({});
        QVERIFY(!programa);
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes[0].icone, ui::Icone::Critico);
        // What to do about it is the store's wording (tests/store/database_test.cpp); the window adds
        // where the file is and that the program ends.
        for (const QString& parte : {QDir::toNativeSeparators(path), QStringLiteral("O programa será encerrado.")})
            QVERIFY2(boxes[0].texto.contains(parte), qPrintable(boxes[0].texto));
    }

    void aFailureLetThroughIsToldAndTheProgramGoesOn()
    {
        QList<ui::Mensagem> boxes;
        ui::setResponder([&boxes](const ui::Mensagem& m) {
            boxes << m;
            return QMessageBox::Ok;
        });
        QPushButton botao;
        int vezes = 0;
        QObject::connect(&botao, &QPushButton::clicked, [&vezes]() {
            if (++vezes == 1)
                throw StoreError(QStringLiteral("O arquivo de banco de dados 'Lavra.db' não foi encontrado."));
            throw std::runtime_error("falha imprevista");
        });
        botao.show();
        QTest::mouseClick(&botao, Qt::LeftButton);
        QTest::mouseClick(&botao, Qt::LeftButton);
        ui::setResponder({});
        QCOMPARE(vezes, 2);
        QCOMPARE(boxes.size(), 2);
        QCOMPARE(boxes[0].texto, QStringLiteral("Erro no banco de dados:\nO arquivo de banco de dados 'Lavra.db' não foi encontrado."));
        QVERIFY(boxes[1].texto.startsWith(QStringLiteral("Ocorreu um erro inesperado:\nfalha imprevista")));
        QVERIFY(boxes[1].texto.contains(QStringLiteral("o programa continua")));
    }
};

// The program's own event loop, with its last guard, runs these tests.
int main(int argc, char** argv)
{
    lavra::ui::AplicacaoQt app(argc, argv);
    DamagedDatabaseTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "damaged_database_test.moc"
