#include "heldfile.h"
#include "store/databasefile.h"
#include "store/schema.h"
#include "store/storeerror.h"
#include "uitestsupport.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QTableView>

#include <memory>

using namespace lavra;
using namespace lavra::test;

// What befalls the file while the program runs.
enum class Dano { EmUso, Vazio, Lixo, SemTabelas };
Q_DECLARE_METATYPE(Dano)

namespace {

// How long another program's hold is waited for here: short, so that the tests stay quick, and
// long enough to tell one wait from two.
constexpr int kEspera = 300;

// Damages the file; the returned hold lasts as long as it is kept.
std::unique_ptr<HeldFile> estraga(UiHarness& h, Dano dano)
{
    const QString path = h.databasePath();
    switch (dano) {
    case Dano::EmUso: {
        auto held = std::make_unique<HeldFile>(path);
        if (!held->held())
            qWarning() << "the file could not be held";
        return held;
    }
    case Dano::Vazio: QFile::resize(path, 0); break;
    case Dano::Lixo: {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            file.write(QByteArray("Planilha de clientes, não um banco de dados.\n").repeated(200));
        break;
    }
    case Dano::SemTabelas:
        for (const ViewDef& view : schema::views())
            h.exec(QStringLiteral("DROP VIEW %1").arg(quoteIdentifier(view.name)));
        for (const TableDef& table : schema::tables())
            h.exec(QStringLiteral("DROP TABLE %1").arg(quoteIdentifier(table.name)));
        break;
    }
    return nullptr;
}

} // namespace

// The database failing under the windows: held by another program, emptied, overwritten or
// stripped of its tables. The program tells it once, in plain words, and goes on.
class DamagedDatabaseTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { DatabaseFile::setBusyTimeout(kEspera); }

    void everyWindowTellsOnceAndStaysOpen_data()
    {
        QTest::addColumn<QString>("janela");
        QTest::addColumn<QString>("acao");  // the first command that reads, for a window that reads nothing on opening
        QTest::addColumn<bool>("cadastro");  // a grid register: left with Sair alone
        QTest::addColumn<Dano>("dano");
        QTest::addColumn<QString>("dito");

        const struct {
            const char* janela;
            const char* acao;
            bool cadastro;
        } janelas[] = {{"frmCadCli", "", true},   {"frmFertiliz", "", true},   {"frmCadCalc", "", true},
                       {"frmTecResp", "", true},  {"frmEmpresa", "", false},   {"frmCotac", "", false},
                       {"frmCadAnalise", "cmdEdita", false}, {"frmCliAn", "", false}, {"frmAbreLaudo", "", false}};
        const struct {
            Dano dano;
            const char* nome;
            const char* dito;
        } danos[] = {{Dano::EmUso, "em uso", "em uso por outro programa. Feche o outro programa e tente de novo."},
                     {Dano::Vazio, "vazio", "não existe no banco de dados"},
                     {Dano::Lixo, "lixo", "está danificado. Restaure uma cópia de segurança do Lavra.db."},
                     {Dano::SemTabelas, "sem tabelas", "não existe no banco de dados"}};
        for (const auto& j : janelas) {
            for (const auto& d : danos) {
                QTest::addRow("%s, %s", j.janela, d.nome)
                    << QString::fromLatin1(j.janela) << QString::fromLatin1(j.acao) << j.cadastro << d.dano
                    << QString::fromUtf8(d.dito);
            }
        }
    }

    void everyWindowTellsOnceAndStaysOpen()
    {
        QFETCH(QString, janela);
        QFETCH(QString, acao);
        QFETCH(bool, cadastro);
        QFETCH(Dano, dano);
        QFETCH(QString, dito);

        UiHarness h;
        const auto held = estraga(h, dano);
        QWidget* w = h.open(janela);
        QVERIFY(w);
        if (!acao.isEmpty())
            click(w, acao);
        QTest::qWait(20);  // whatever the opening left for the event loop

        QCOMPARE(h.boxes.size(), 1);
        const ui::Mensagem& box = h.boxes.first();
        QCOMPARE(box.icone, ui::Icone::Critico);
        QVERIFY2(box.texto.startsWith(QStringLiteral("Erro no banco de dados:\n")), qPrintable(box.texto));
        QVERIFY2(box.texto.contains(dito), qPrintable(box.texto));
        QVERIFY2(box.texto.contains(QStringLiteral("\n\nDetalhe: ")), qPrintable(box.texto));
        // A reading saves nothing and says nothing about saving.
        QVERIFY(!box.texto.contains(QStringLiteral("Nada foi gravado")));
        QCOMPARE(h.windows().window(janela), w);
        if (cadastro) {
            for (const char* botao : {"cmdNovo", "cmdEdita", "cmdExclui", "cmdConfirma", "cmdCancela"})
                QVERIFY(!find<QPushButton>(w, QString::fromLatin1(botao))->isEnabled());
            QVERIFY(find<QPushButton>(w, QStringLiteral("cmdSai"))->isEnabled());
        }
    }

    void cancelledEditIsNeverWritten()
    {
        UiHarness h;
        h.exec(QStringLiteral("INSERT INTO Clientes VALUES ('Ana', 'Linha 7', 'Erechim', '-', '-'), "
                              "('Bruno', 'Linha 9', 'Ijuí', '-', '-')"));
        QWidget* w = h.open(QStringLiteral("frmCadCli"));
        QTest::qWait(20);  // what making the database told the views
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtNome"))->text(), QStringLiteral("Ana"));
        click(w, QStringLiteral("cmdEdita"));
        type(w, QStringLiteral("txtCidade"), QStringLiteral("Passo Fundo"));
        {
            HeldFile other(h.databasePath());
            QVERIFY(other.held());
            QElapsedTimer waited;
            waited.start();
            click(w, QStringLiteral("cmdConfirma"));
            QVERIFY2(waited.elapsed() < 2 * kEspera - 50, "the file was waited for more than once");
            QTest::qWait(50);  // the notices of the failed write, if any
            QCOMPARE(h.boxes.size(), 1);
            QVERIFY(h.texts().first().contains(QStringLiteral("em uso por outro programa")));
            QVERIFY(h.texts().first().contains(QStringLiteral("\nNada foi gravado.")));
            QVERIFY(h.texts().first().endsWith(QStringLiteral("Detalhe: database is locked")));
            QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtCidade"))->text(), QStringLiteral("Passo Fundo"));

            click(w, QStringLiteral("cmdCancela"));
            QTest::qWait(20);
            QCOMPARE(h.boxes.size(), 1);
            QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtCidade"))->text(), QStringLiteral("Erechim"));
        }
        // The other program let go: moving to another row and back writes nothing of the edit.
        selectRow(w, QStringLiteral("dtGridCli"), 1);
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtNome"))->text(), QStringLiteral("Bruno"));
        selectRow(w, QStringLiteral("dtGridCli"), 0);
        QTest::qWait(20);
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.scalar(QStringLiteral("SELECT Cidade FROM Clientes WHERE Nome = 'Ana'")).toString(),
                 QStringLiteral("Erechim"));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtCidade"))->text(), QStringLiteral("Erechim"));
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
        for (const QString& parte : {QDir::toNativeSeparators(path), QStringLiteral("não é um banco de dados do Lavra"),
                                     QStringLiteral("Restaure uma cópia de segurança do Lavra.db"),
                                     QStringLiteral("mova este arquivo para outra pasta"),
                                     QStringLiteral("O programa será encerrado.")})
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
