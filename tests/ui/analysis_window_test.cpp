#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "registers/analysis.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QDate>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

using namespace lavra;
using namespace lavra::test;

// The analysis register and its pickers, comma machine. The register's rules themselves are
// tests/registers/analysis_test.cpp's; here they only have to reach the window and back.
class AnalysisWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<UiHarness> m_harness;
    UiHarness& h() { return *m_harness; }

    static const QString kCodigo;

    void addClient(const QString& nome)
    {
        h().exec(QStringLiteral("INSERT INTO Clientes VALUES ('%1', 'Rua A', 'Passo Fundo', '54 3333', 'a@b.c')").arg(nome));
    }

    // The fields of one analysis, typed as a user would, Ca to K leaving the CTC worked out.
    static void fillAnalysis(QWidget* w)
    {
        fill(w, {{"txtLocal", "Passo Fundo"}, {"txtFazenda", "Santa Rita"}, {"txtGleba", "Talhão 3"},
                 {"txtÁrea", "12,5"}, {"txtAnálise", "L-123"}, {"txtpH", "5,2"}, {"txtCa", "4,1"},
                 {"txtMg", "1,6"}, {"txtAl", "0,4"}, {"txtH_Al", "5,5"}, {"txtSMP", "5,8"}, {"txtMO", "3,2"},
                 {"txtArgila", "45"}, {"txtP", "8,4"}, {"txtK", "96"}});
        find<QLineEdit>(w, QStringLiteral("mskData"))->setText(QStringLiteral("15/03/2021"));
        find<QRadioButton>(w, QStringLiteral("Opt_0"))->setChecked(true);
    }

    static bool idle(QWidget* w)
    {
        return !find<QLineEdit>(w, QStringLiteral("txtFazenda"))->isEnabled() && text(w, QStringLiteral("txtFazenda")).isEmpty()
            && find<QPushButton>(w, QStringLiteral("cmdNovo"))->isEnabled();
    }

private Q_SLOTS:
    void init()
    {
        setMachineLocale(commaLocale());
        m_harness = std::make_unique<UiHarness>();
    }

    void cleanup()
    {
        m_harness.reset();
        resetMachineLocale();
    }

    // Enter in a field moves on to the next one, as Tab does.
    void enterMovesToTheNextField()
    {
        QWidget* w = h().open(QStringLiteral("frmCadAnalise"));
        click(w, QStringLiteral("cmdNovo"));
        QVERIFY(QTest::qWaitForWindowActive(w));
        auto* local = find<QLineEdit>(w, QStringLiteral("txtLocal"));
        local->setFocus();
        QTest::keyClick(local, Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("txtFazenda"));
    }

    // Register with the client from the picker, then edit through frmCliAn.
    void registerAndEditThroughThePickers()
    {
        addClient(QStringLiteral("Ana Souza"));
        addClient(QStringLiteral("Bruno Lima"));
        QWidget* w = h().open(QStringLiteral("frmCadAnalise"));
        click(w, QStringLiteral("cmdNovo"));
        click(w, QStringLiteral("cmdBusca"));
        QWidget* picker = h().windows().window(QStringLiteral("frmCliente"));
        QVERIFY(picker && picker->isVisible());
        QCOMPARE(find<QTableWidget>(picker, QStringLiteral("flxCli"))->rowCount(), 2);
        type(picker, QStringLiteral("txtCli"), QStringLiteral("ana"));
        click(picker, QStringLiteral("cmdContinua"));
        QCOMPARE(text(w, QStringLiteral("txtCliente")), QStringLiteral("Ana Souza"));
        fillAnalysis(w);
        QCOMPARE(text(w, QStringLiteral("txtCTC")), QStringLiteral("11,44"));
        click(w, QStringLiteral("cmdCadastra"));
        QCOMPARE(h().texts(), QStringList{perguntaArroz(false)});
        QCOMPARE(h().boxes[0].icone, ui::Icone::Exclamacao);
        QVERIFY(idle(w));
        QCOMPARE(h().session().CodAnalise, kCodigo);

        CarregaAnalise(h().session(), kCodigo);
        const QVector<QVariant> row = h().session().Analise;
        QCOMPARE(row.value(1).toString(), QStringLiteral("Ana Souza"));
        QCOMPARE(row.value(4).toString(), QStringLiteral("Talhão 3"));
        QCOMPARE(row.value(5).toDate(), QDate(2021, 3, 15));
        QCOMPARE(row.value(6).toFloat(), 12.5f);
        QCOMPARE(row.value(20).toFloat(), 96.0f);

        click(w, QStringLiteral("cmdEdita"));
        QWidget* cliAn = h().windows().window(QStringLiteral("frmCliAn"));
        QVERIFY(cliAn && cliAn->isVisible());
        type(cliAn, QStringLiteral("txtCli"), QStringLiteral("ana"));
        choose(cliAn, QStringLiteral("lstAna"), 0);
        click(cliAn, QStringLiteral("cmdContinua"));
        QTRY_VERIFY(!h().windows().window(QStringLiteral("frmCliAn")));
        QCOMPARE(texts(w, {"txtFazenda", "mskData", "txtpH"}), (QStringList{"Santa Rita", "15/03/2021", "5,2"}));
        type(w, QStringLiteral("txtpH"), QStringLiteral("6,1"));
        click(w, QStringLiteral("cmdCadastra"));
        QVERIFY(idle(w));
        QCOMPARE(h().scalar(QStringLiteral("SELECT pH FROM Analises")).toFloat(), 6.1f);
    }

    // The field refused takes the focus; the client and any figure can also come from the other
    // windows, through the session's events.
    void refusalTakesTheFocusAndOtherWindowsFillTheFields()
    {
        addClient(QStringLiteral("Ana Souza"));
        QWidget* w = h().open(QStringLiteral("frmCadAnalise"));
        click(w, QStringLiteral("cmdNovo"));
        type(w, QStringLiteral("txtCliente"), QStringLiteral("Ana Sousa"));
        fillAnalysis(w);
        type(w, QStringLiteral("txtGleba"), QStringLiteral("   "));
        click(w, QStringLiteral("cmdCadastra"));
        QCOMPARE(h().texts(), QStringList{kMsgCamposVazios});
        QCOMPARE(w->focusWidget(), find<QWidget>(w, QStringLiteral("txtGleba")));

        type(w, QStringLiteral("txtGleba"), QStringLiteral("Talhão 3"));
        h().clearBoxes();
        click(w, QStringLiteral("cmdCadastra"));
        QCOMPARE(h().texts(), QStringList{kMsgClienteNaoCadastrado});
        QCOMPARE(w->focusWidget(), find<QWidget>(w, QStringLiteral("txtCliente")));

        emit h().session().eventos.clienteEscolhido(QStringLiteral(" Ana Souza "));
        QCOMPARE(text(w, QStringLiteral("txtCliente")), QStringLiteral(" Ana Souza "));
        emit h().session().eventos.valorParaAnalise(QStringLiteral("txtpH"), QStringLiteral("5,5"));
        QCOMPARE(text(w, QStringLiteral("txtpH")), QStringLiteral("5,5"));
        click(w, QStringLiteral("cmdCadastra"));
        QVERIFY(idle(w));
        QCOMPARE(h().scalar(QStringLiteral("SELECT Cliente FROM Analises")).toString(), QStringLiteral("Ana Souza"));
    }

    void calculationModeLoadsTheAnalysisAndClosesWhatFollowsAChange()
    {
        addClient(QStringLiteral("Ana Souza"));
        h().exec(QStringLiteral("INSERT INTO Analises (Código, Cliente, Fazenda, Gleba) VALUES "
                                "('F/G/01/01/2020', 'Ana Souza', 'F', 'G'), ('F/G/02/01/2020', 'Ana Souza', 'F', 'G')"));
        auto& windows = h().windows();
        windows.registerWindow(QStringLiteral("frmGrupCult"), []() { return new QWidget; });
        windows.registerWindow(QStringLiteral("frmCalagem"), []() { return new QWidget; });
        h().session().ModoEscolha = QStringLiteral("Calcular");

        QWidget* picker = h().open(QStringLiteral("frmCliAn"));
        h().open(QStringLiteral("frmCalagem"));
        choose(picker, QStringLiteral("lstAna"), 1);
        click(picker, QStringLiteral("cmdContinua"));
        QCOMPARE(h().session().CodAnalise, QStringLiteral("F/G/02/01/2020"));
        QCOMPARE(h().session().Analise.value(3).toString(), QStringLiteral("F"));
        QVERIFY(!picker->isVisible());
        QVERIFY(windows.window(QStringLiteral("frmGrupCult"))->isVisible());
        QVERIFY(!windows.openWindows().contains(QStringLiteral("frmCalagem")));

        // Back to the picker and on again with the same choice: the later steps stay.
        h().open(QStringLiteral("frmCalagem"));
        h().open(QStringLiteral("frmCliAn"));
        click(picker, QStringLiteral("cmdContinua"));
        QVERIFY(windows.openWindows().contains(QStringLiteral("frmCalagem")));
    }
};

const QString AnalysisWindowTest::kCodigo = QStringLiteral("Santa Rita/Talhão 3/15/03/2021");

QTEST_MAIN(AnalysisWindowTest)
#include "analysis_window_test.moc"
