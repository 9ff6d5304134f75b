#include "app/session.h"
#include "base/numbers.h"
#include "base/outcome.h"
#include "base/validation.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QComboBox>
#include <QLabel>

using namespace lavra;
using namespace lavra::test;

// The simple registers driven through their windows, by control name, on a scratch database. Their
// rules are tests/registers' (clients, inputs, company); here they only have to reach the window.
class RegistersWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Blanks are taken off every text; a field of them is empty, and the first empty field is
    // where the focus goes.
    void clientIsSavedTrimmedAndAnEmptyFieldTakesTheFocus()
    {
        UiHarness h;
        QWidget* w = h.open(QStringLiteral("frmCadCli"));
        click(w, QStringLiteral("cmdNovo"));
        fill(w, {{"txtNome", "  Bia Nunes "}, {"txtRua", "   "}, {"txtCidade", "Ijuí"}, {"txtFone", ""},
                 {"txtEmail", "b@c"}});
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Há campos vazios.")});
        QCOMPARE(w->focusWidget(), find<QLineEdit>(w, QStringLiteral("txtRua")));
        fill(w, {{"txtRua", "Rua B"}, {"txtFone", "1"}});
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.scalar(QStringLiteral("SELECT Nome || '|' || Cidade FROM Clientes")).toString(),
                 QStringLiteral("Bia Nunes|Ijuí"));
    }

    // Executar goes on deleting the row then current, each after asking.
    void deletionKeepsItsOperation()
    {
        UiHarness h;
        h.exec(QStringLiteral("INSERT INTO Clientes VALUES ('Ana', 'Rua A', 'Ijuí', '', 'a@b'), ('Bruno', 'Rua B', 'Ijuí', '1', 'b@c'), ('Carla', 'Rua C', 'Ijuí', '2', 'c@d')"));
        QWidget* w = h.open(QStringLiteral("frmCadCli"));
        click(w, QStringLiteral("cmdExclui"));
        selectRow(w, QStringLiteral("dtGridCli"), 1);
        click(w, QStringLiteral("cmdConfirma"));
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.texts(), (QStringList{QStringLiteral("Bruno será excluído, confirma?"),
                                         QStringLiteral("Carla será excluído, confirma?")}));
        QCOMPARE(h.scalar(QStringLiteral("SELECT group_concat(Nome) FROM Clientes")).toString(), QStringLiteral("Ana"));
        QCOMPARE(h.session().Operacao, QStringLiteral("Exclusão"));
    }

    // A number typed with the other machine's decimal symbol is told as the field is left, refused
    // again by Executar with the focus back on it, and never saved; the number's reading itself
    // is tests/base/validation_test.cpp's.
    void refusedNumberIsNeverSaved_data()
    {
        QTest::addColumn<bool>("comma");
        QTest::addColumn<QString>("text");
        QTest::newRow("1.5, comma") << true << "1.5";
        QTest::newRow("80,5, point") << false << "80,5";
    }

    void refusedNumberIsNeverSaved()
    {
        QFETCH(bool, comma);
        QFETCH(QString, text);
        MachineLocale locale(comma ? commaLocale() : pointLocale());
        UiHarness h;
        h.exec(QStringLiteral("DELETE FROM Calcario"));
        QWidget* w = h.open(QStringLiteral("frmCadCalc"));
        click(w, QStringLiteral("cmdNovo"));
        fill(w, {{"txtEspec", "Calcário teste"}, {"txtPRNT", text}, {"txtCusto", "100"}});
        QCOMPARE(h.texts(), QStringList{kMsgSimboloDecimal});

        h.clearBoxes();
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.texts(), QStringList{kMsgSimboloDecimal});
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM Calcario")).toInt(), 0);
        QCOMPARE(w->focusWidget(), find<QLineEdit>(w, QStringLiteral("txtPRNT")));

        // Priced at the fixed rate of the dollar.
        type(w, QStringLiteral("txtPRNT"), QStringLiteral("85"));
        h.clearBoxes();
        click(w, QStringLiteral("cmdConfirma"));
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(h.scalar(QStringLiteral("SELECT \"R$/t\" FROM Calcario WHERE Nome = 'Calcário teste'")).toDouble(), 157.0);
    }

    void fertiliserKindDecidesWhichFieldsApply()
    {
        UiHarness h;
        h.exec(QStringLiteral("DELETE FROM NPK"));
        QWidget* w = h.open(QStringLiteral("frmFertiliz"));
        click(w, QStringLiteral("cmdNovo"));
        QWidget* kind = h.windows().window(QStringLiteral("frmTipoAdubo"));
        QVERIFY(kind && kind->isVisible());
        QVERIFY(!kind->close());  // only its buttons close it
        click(kind, QStringLiteral("cmpAplica"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Selecione um tipo de fertilizante")});
        QCOMPARE(h.boxes.last().icone, ui::Icone::Nenhum);

        find<QComboBox>(kind, QStringLiteral("cboTipo"))->setCurrentIndex(0);
        click(kind, QStringLiteral("cmpAplica"));
        auto* ms = find<QLineEdit>(w, QStringLiteral("txtMS"));
        QCOMPARE(ms->text(), QStringLiteral("---"));
        QVERIFY(ms->isReadOnly());
        fill(w, {{"txtEspec", "Fórmula"}, {"txtN", "5"}, {"txtP", "20"}, {"txtK", "10"}, {"txtCusto", "400"}});
        h.clearBoxes();
        click(w, QStringLiteral("cmdConfirma"));
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(h.scalar(QStringLiteral("SELECT \"Fórmula\" || '|' || \"R$/t\" || '|' || EFICK FROM NPK")).toString(),
                 QStringLiteral("5-20-10|2200|---"));
    }

    void quotationRepricesTheLists()
    {
        UiHarness h;
        h.exec(QStringLiteral("DELETE FROM Calcario"));
        h.exec(QStringLiteral("INSERT INTO Calcario VALUES ('Filler', 95, 70, 109.9)"));
        QWidget* w = h.open(QStringLiteral("frmCotac"));
        QCOMPARE(find<QLabel>(w, QStringLiteral("lbl1"))->text(), QStringLiteral("Cotação atual: 1 dolar = %1 reais").arg(numberText(5.5f)));
        type(w, QStringLiteral("txtCota"), QStringLiteral("6"));
        click(w, QStringLiteral("cmdAtualiza"));
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(h.scalar(QStringLiteral("SELECT \"R$/t\" FROM Calcario")).toDouble(), 420.0);
        QVERIFY(find<QLabel>(w, QStringLiteral("lbl1"))->text().contains(QStringLiteral("= 6 reais")));
    }

    void companyRefusesABlankFieldWithTheFocusOnIt()
    {
        UiHarness h;
        QWidget* w = h.open(QStringLiteral("frmEmpresa"));
        for (const char* name : {"txtEmp", "txtRua", "txtNum", "txtCEP", "txtCid", "txtBair", "txtEst", "txtTelef",
                                 "txtEmail", "txtSite"})
            type(w, QString::fromLatin1(name), QStringLiteral("x"));
        type(w, QStringLiteral("txtCEP"), QStringLiteral("  "));
        click(w, QStringLiteral("cmdSalva"));
        QCOMPARE(h.texts(), QStringList{kMsgCamposVazios});
        QCOMPARE(w->focusWidget(), find<QLineEdit>(w, QStringLiteral("txtCEP")));
        type(w, QStringLiteral("txtCEP"), QStringLiteral("99700-000"));
        click(w, QStringLiteral("cmdSalva"));
        QCOMPARE(h.boxes.last().texto, QStringLiteral("Cadastro efetuado com sucesso!"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmEmpresa")));
        QCOMPARE(h.scalar(QStringLiteral("SELECT CEP FROM Empresa")).toString(), QStringLiteral("99700-000"));
    }

    void chosenTechnicianSignsFromNowOn()
    {
        UiHarness h;
        QWidget* w = h.open(QStringLiteral("frmTecResp"));
        click(w, QStringLiteral("cmdNovo"));
        fill(w, {{"txtNome", "Ana Souza"}, {"txtProf", "Engenheira Agrônoma"}, {"txtCREA", "RS-1234"}});
        click(w, QStringLiteral("cmdConfirma"));
        auto* combo = find<QComboBox>(w, QStringLiteral("cboTecAssina"));
        QCOMPARE(combo->count(), 1);
        QCOMPARE(combo->currentIndex(), -1);  // a new technician does not sign until chosen
        combo->setCurrentIndex(0);
        click(w, QStringLiteral("cmdOK"));
        QCOMPARE(h.boxes.last().icone, ui::Icone::Informacao);
        QCOMPARE(h.session().NomeTec, QStringLiteral("Ana Souza"));
        QCOMPARE(h.scalar(QStringLiteral("SELECT Assina FROM TecResp")).toInt(), 1);
    }
};

QTEST_MAIN(RegistersWindowTest)
#include "registers_window_test.moc"
