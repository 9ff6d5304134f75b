#include "base/numbers.h"
#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "registers/analysis.h"
#include "ui/uitestsupport.h"

#include <QAction>
#include <QCheckBox>
#include <QDate>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QtTest>

using namespace lavra;
using namespace lavra::test;

// Drives the analysis register and its two pickers on a scratch database, comma machine.
class AnalysisWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<UiHarness> m_harness;
    UiHarness& h() { return *m_harness; }

    static const QString kCodigo;

    QWidget* cadastro() { return h().windows().window(QStringLiteral("frmCadAnalise")); }
    QWidget* cliAn() { return h().windows().window(QStringLiteral("frmCliAn")); }
    int rows() { return h().scalar(QStringLiteral("SELECT COUNT(*) FROM Analises")).toInt(); }

    void addClient(const QString& nome)
    {
        h().exec(QStringLiteral("INSERT INTO Clientes VALUES ('%1', 'Rua A', 'Passo Fundo', '54 3333', 'a@b.c')").arg(nome));
    }

    // A client registered as the user would, in the clients' register.
    void registerClient(const QString& nome)
    {
        QWidget* clientes = h().open(QStringLiteral("frmCadCli"));
        click(clientes, QStringLiteral("cmdNovo"));
        for (const auto& [field, text] : {std::pair{QStringLiteral("txtNome"), nome},
                                          std::pair{QStringLiteral("txtRua"), QStringLiteral("Rua A")},
                                          std::pair{QStringLiteral("txtCidade"), QStringLiteral("Passo Fundo")},
                                          std::pair{QStringLiteral("txtFone"), QStringLiteral("54 3333")},
                                          std::pair{QStringLiteral("txtEmail"), QStringLiteral("a@b.c")}})
            type(clientes, field, text);
        click(clientes, QStringLiteral("cmdConfirma"));
        click(clientes, QStringLiteral("cmdSai"));
    }

    // The fields of one analysis, typed as a user would, Ca to K leaving the CTC worked out.
    void fill(QWidget* w)
    {
        const std::pair<const char*, const char*> fields[] = {
            {"txtLocal", "Passo Fundo"}, {"txtFazenda", "Santa Rita"}, {"txtGleba", "Talhão 3"},
            {"txtÁrea", "12,5"},         {"txtAnálise", "L-123"},      {"txtpH", "5,2"},
            {"txtCa", "4,1"},            {"txtMg", "1,6"},             {"txtAl", "0,4"},
            {"txtH_Al", "5,5"},          {"txtSMP", "5,8"},            {"txtMO", "3,2"},
            {"txtArgila", "45"},         {"txtP", "8,4"},              {"txtK", "96"}};
        for (const auto& [name, text] : fields)
            type(w, QString::fromUtf8(name), QString::fromUtf8(text));
        find<QLineEdit>(w, QStringLiteral("mskData"))->setText(QStringLiteral("15/03/2021"));
        find<QRadioButton>(w, QStringLiteral("Opt_0"))->setChecked(true);
    }

    // Picks the client and his first analysis in frmCliAn and goes on.
    void choose(const QString& initials)
    {
        QWidget* picker = cliAn();
        QVERIFY(picker && picker->isVisible());
        type(picker, QStringLiteral("txtCli"), initials);
        auto* list = find<QListWidget>(picker, QStringLiteral("lstAna"));
        QVERIFY(list->count() > 0);
        list->setCurrentRow(0);
        click(picker, QStringLiteral("cmdContinua"));
    }

    bool idle(QWidget* w)
    {
        return !find<QLineEdit>(w, QStringLiteral("txtFazenda"))->isEnabled()
            && find<QLineEdit>(w, QStringLiteral("txtFazenda"))->text().isEmpty()
            && find<QPushButton>(w, QStringLiteral("cmdNovo"))->isEnabled()
            && find<QPushButton>(w, QStringLiteral("cmdExclui"))->isEnabled();
    }

private Q_SLOTS:
    void init()
    {
        setMachineLocale(QLocale(QLocale::Portuguese, QLocale::Brazil));
        m_harness = std::make_unique<UiHarness>();
    }

    void cleanup()
    {
        m_harness.reset();
        resetMachineLocale();
    }

    void opensIdleWithTheMissingWindowsGreyed()
    {
        QWidget* w = h().open(QStringLiteral("frmCadAnalise"));
        QVERIFY(find<QAction>(w, QStringLiteral("calc"))->isEnabled());
        QVERIFY(!find<QAction>(w, QStringLiteral("convert"))->isEnabled());
        QVERIFY(!find<QAction>(w, QStringLiteral("Importa"))->isEnabled());

        QVERIFY(idle(w));
        QVERIFY(find<QLineEdit>(w, QStringLiteral("mskData"))->inputMask().isEmpty());
        click(w, QStringLiteral("cmdBusca"));
        QCOMPARE(h().boxes.size(), 1);
        QCOMPARE(h().boxes[0].icone, ui::Icone::Informacao);
        QCOMPARE(h().boxes[0].texto, QStringLiteral("Clique em Cadastrar Novo"));
    }

    void tabAndEnterFollowTheForm()
    {
        QWidget* w = h().open(QStringLiteral("frmCadAnalise"));
        click(w, QStringLiteral("cmdNovo"));
        QStringList order;
        QWidget* start = find<QWidget>(w, QStringLiteral("txtCliente"));
        for (QWidget* next = start; order.size() < 25; next = next->nextInFocusChain()) {
            if (next->focusPolicy() & Qt::TabFocus && next->isEnabled() && next->window() == w)
                order << next->objectName();
            if (next->nextInFocusChain() == start)
                break;
        }
        const QStringList expected = {"txtCliente", "cmdBusca", "txtLocal", "txtFazenda", "txtGleba", "txtÁrea",
                                      "txtAnálise", "mskData", "txtpH", "txtCa", "txtMg", "txtAl", "txtH_Al",
                                      "txtSMP", "txtMO", "txtArgila", "txtP", "txtK", "Opt_0", "Opt_1", "chk"};
        QCOMPARE(order.mid(0, expected.size()), expected);

        QVERIFY(QTest::qWaitForWindowActive(w));
        auto* local = find<QLineEdit>(w, QStringLiteral("txtLocal"));
        local->setFocus();
        QTest::keyClick(local, Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("txtFazenda"));
    }

    void registerEditRefuseDuplicateAndDelete()
    {
        registerClient(QStringLiteral("Ana Souza"));
        registerClient(QStringLiteral("Bruno Lima"));
        QCOMPARE(h().scalar(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toInt(), 2);
        QWidget* w = h().open(QStringLiteral("frmCadAnalise"));

        // Register, the client taken from the picker.
        click(w, QStringLiteral("cmdNovo"));
        QVERIFY(!find<QPushButton>(w, QStringLiteral("cmdEdita"))->isEnabled());
        click(w, QStringLiteral("cmdBusca"));
        QWidget* picker = h().windows().window(QStringLiteral("frmCliente"));
        QVERIFY(picker && picker->isVisible());
        QCOMPARE(picker->windowTitle(), QStringLiteral("Clientes Cadastrados"));
        QCOMPARE(find<QTableWidget>(picker, QStringLiteral("flxCli"))->rowCount(), 2);
        type(picker, QStringLiteral("txtCli"), QStringLiteral("ana"));
        click(picker, QStringLiteral("cmdContinua"));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtCliente"))->text(), QStringLiteral("Ana Souza"));
        fill(w);
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtCTC"))->text(), QStringLiteral("11,44"));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtBases"))->text(), QStringLiteral("51,93"));
        h().clearBoxes();
        click(w, QStringLiteral("cmdCadastra"));
        QCOMPARE(h().texts(), QStringList{perguntaArroz(false)});
        QCOMPARE(h().boxes[0].icone, ui::Icone::Exclamacao);
        QVERIFY(idle(w));
        QCOMPARE(h().session().CodAnalise, kCodigo);
        QVERIFY(h().session().Operacao.isEmpty());

        CarregaAnalise(h().session(), kCodigo);
        const QVector<QVariant> row = h().session().Analise;
        const QVariantList expected = {
            kCodigo, "Ana Souza", "Passo Fundo", "Santa Rita", "Talhão 3", QDate(2021, 3, 15), 12.5f, "L-123",
            5.2f, 4.1f, 1.6f, 0.4f, 5.5f, 100.0f * 0.4f / (96.0f / 399.0f + 4.1f + 1.6f + 0.4f), 51.93f, 11.44f,
            5.8f, 3.2f, 45.0f, 8.4f, 96.0f, 1, 1, 0, 0, 0, 0, 2, 4, 4, 3, 3, 4, 3, 2, 2};
        QCOMPARE(row.size(), 36);
        for (int i = 0; i < 36; ++i) {
            const bool same = expected[i].typeId() == QMetaType::Float ? row[i].toFloat() == expected[i].toFloat()
                                                                         : row[i].toString() == expected[i].toString();
            QVERIFY2(same, qPrintable(QStringLiteral("ordinal %1: %2").arg(i).arg(row[i].toString())));
        }

        // Edit: choose it in frmCliAn, change the pH.
        click(w, QStringLiteral("cmdEdita"));
        QCOMPARE(h().session().ModoEscolha, QStringLiteral("Analise"));
        choose(QStringLiteral("ana"));
        QTRY_VERIFY(!cliAn());
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtFazenda"))->text(), QStringLiteral("Santa Rita"));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("mskData"))->text(), QStringLiteral("15/03/2021"));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtpH"))->text(), QStringLiteral("5,2"));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtCTC"))->text(), QStringLiteral("11,44"));
        QVERIFY(find<QRadioButton>(w, QStringLiteral("Opt_0"))->isChecked());
        type(w, QStringLiteral("txtpH"), QStringLiteral("6,1"));
        click(w, QStringLiteral("cmdCadastra"));
        QVERIFY(idle(w));
        QCOMPARE(h().scalar(QStringLiteral("SELECT pH FROM Analises")).toFloat(), 6.1f);
        QCOMPARE(h().scalar(QStringLiteral("SELECT ClassePH FROM Analises")).toInt(), 4);

        // The same farm, field and date for another client is refused; the entries stay.
        click(w, QStringLiteral("cmdNovo"));
        type(w, QStringLiteral("txtCliente"), QStringLiteral("Bruno Lima"));
        fill(w);
        h().clearBoxes();
        click(w, QStringLiteral("cmdCadastra"));
        QCOMPARE(h().texts().last(), kMsgDuplicacao);
        QCOMPARE(rows(), 1);
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtFazenda"))->text(), QStringLiteral("Santa Rita"));
        click(w, QStringLiteral("cmdLimpa"));
        QVERIFY(idle(w));

        // Delete: the chosen analysis is shown locked, then confirmed.
        click(w, QStringLiteral("cmdExclui"));
        choose(QStringLiteral("A"));
        QTRY_VERIFY(!cliAn());
        auto* fazenda = find<QLineEdit>(w, QStringLiteral("txtFazenda"));
        QCOMPARE(fazenda->text(), QStringLiteral("Santa Rita"));
        QVERIFY(!fazenda->isEnabled());
        h().clearBoxes();
        click(w, QStringLiteral("cmdCadastra"));
        QCOMPARE(h().texts(), QStringList{kCodigo + QStringLiteral(" será excluída, confirma?")});
        QCOMPARE(rows(), 0);
        QVERIFY(idle(w));
    }

    void pickerSearchesAndCancelGivesTheButtonsBack()
    {
        for (const char* nome : {"Ana Souza", "Bruno Lima", "Bruna Reis", "Carlos Dias"})
            addClient(QString::fromUtf8(nome));
        QWidget* w = h().open(QStringLiteral("frmCadAnalise"));
        click(w, QStringLiteral("cmdEdita"));
        QWidget* picker = cliAn();
        QVERIFY(picker);
        auto* grid = find<QTableWidget>(picker, QStringLiteral("flxCli"));

        // Rows: Ana Souza, Bruna Reis, Bruno Lima, Carlos Dias.
        const std::pair<const char*, int> searches[] = {{"bruno", 2}, {"B", 1}, {"zz", 1}, {"c", 3}, {"", 0}};
        for (const auto& [text, row] : searches) {
            type(picker, QStringLiteral("txtCli"), QString::fromLatin1(text));
            QCOMPARE(grid->currentRow(), row);
        }

        // A client without analyses gives an empty list and the warning.
        h().clearBoxes();
        click(picker, QStringLiteral("cmdContinua"));
        QCOMPARE(h().texts(), QStringList{QStringLiteral("Selecione cliente e análise!")});
        QVERIFY(picker->isVisible());

        click(picker, QStringLiteral("cmdCancela"));
        QTRY_VERIFY(!cliAn());
        QVERIFY(idle(w));
        QCOMPARE(h().session().Operacao, kEdicao);
    }

    // The client comes from the register, and the field refused takes the focus; a field of blanks
    // is empty.
    void clientFromTheRegisterAndTheFocusOnWhatIsRefused()
    {
        addClient(QStringLiteral("Ana Souza"));
        QWidget* w = h().open(QStringLiteral("frmCadAnalise"));
        click(w, QStringLiteral("cmdNovo"));
        type(w, QStringLiteral("txtCliente"), QStringLiteral("Ana Sousa"));
        fill(w);
        type(w, QStringLiteral("txtGleba"), QStringLiteral("   "));
        h().clearBoxes();
        click(w, QStringLiteral("cmdCadastra"));
        QCOMPARE(h().texts(), QStringList{kMsgCamposVazios});
        QCOMPARE(w->focusWidget(), find<QWidget>(w, QStringLiteral("txtGleba")));

        type(w, QStringLiteral("txtGleba"), QStringLiteral("Talhão 3"));
        h().clearBoxes();
        click(w, QStringLiteral("cmdCadastra"));
        QCOMPARE(h().texts(), QStringList{kMsgClienteNaoCadastrado});
        QCOMPARE(w->focusWidget(), find<QWidget>(w, QStringLiteral("txtCliente")));
        QCOMPARE(rows(), 0);

        // The client and any figure can also come from the other windows, through the session.
        emit h().session().eventos.clienteEscolhido(QStringLiteral(" Ana Souza "));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtCliente"))->text(), QStringLiteral(" Ana Souza "));
        emit h().session().eventos.valorParaAnalise(QStringLiteral("txtpH"), QStringLiteral("5,5"));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtpH"))->text(), QStringLiteral("5,5"));
        click(w, QStringLiteral("cmdCadastra"));
        QVERIFY(idle(w));
        QCOMPARE(h().scalar(QStringLiteral("SELECT Cliente FROM Analises")).toString(), QStringLiteral("Ana Souza"));
    }

    void databaseFailureIsToldAndKeepsTheEntries()
    {
        addClient(QStringLiteral("Ana Souza"));
        h().exec(QStringLiteral("CREATE TRIGGER falha BEFORE INSERT ON Analises BEGIN SELECT RAISE(ABORT, 'disco cheio'); END"));
        QWidget* w = h().open(QStringLiteral("frmCadAnalise"));
        click(w, QStringLiteral("cmdNovo"));
        type(w, QStringLiteral("txtCliente"), QStringLiteral("Ana Souza"));
        fill(w);
        h().clearBoxes();
        click(w, QStringLiteral("cmdCadastra"));
        QCOMPARE(h().boxes.last().icone, ui::Icone::Critico);
        QVERIFY(h().texts().last().startsWith(QStringLiteral("Erro no banco de dados:")));
        QCOMPARE(rows(), 0);
        QVERIFY(find<QLineEdit>(w, QStringLiteral("txtFazenda"))->isEnabled());
        QVERIFY(!find<QPushButton>(w, QStringLiteral("cmdNovo"))->isEnabled());
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
        find<QListWidget>(picker, QStringLiteral("lstAna"))->setCurrentRow(1);
        click(picker, QStringLiteral("cmdContinua"));
        QCOMPARE(h().session().CodAnalise, QStringLiteral("F/G/02/01/2020"));
        QCOMPARE(h().session().Analise.size(), 36);
        QCOMPARE(h().session().Analise[3].toString(), QStringLiteral("F"));
        QVERIFY(!picker->isVisible());
        QVERIFY(windows.window(QStringLiteral("frmGrupCult"))->isVisible());
        QVERIFY(!windows.openWindows().contains(QStringLiteral("frmCalagem")));

        // Back to the picker and on again with the same choice: the later steps stay.
        h().open(QStringLiteral("frmCalagem"));
        h().open(QStringLiteral("frmCliAn"));
        click(picker, QStringLiteral("cmdContinua"));
        QVERIFY(windows.openWindows().contains(QStringLiteral("frmCalagem")));

        // Cancelling here asks and, on Yes, closes the chain.
        h().open(QStringLiteral("frmCliAn"));
        click(picker, QStringLiteral("cmdCancela"));
        QCOMPARE(h().boxes.last().texto, QStringLiteral("Está certo que quer cancelar?"));
        QTRY_VERIFY(!cliAn());
    }
};

const QString AnalysisWindowTest::kCodigo = QStringLiteral("Santa Rita/Talhão 3/15/03/2021");

QTEST_MAIN(AnalysisWindowTest)
#include "analysis_window_test.moc"
