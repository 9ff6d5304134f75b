#include "base/numbers.h"
#include "app/session.h"
#include "base/validation.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

using namespace lavra;
using namespace lavra::test;

// The simple registers driven through their windows, by control name, on a scratch database.
class RegistersWindowTest : public QObject {
    Q_OBJECT

private:
    static void fill(QWidget* window, const QList<std::pair<QString, QString>>& fields)
    {
        for (const auto& [name, text] : fields)
            type(window, name, text);
    }

private Q_SLOTS:
    void clientsKeepTheirNamesUnique()
    {
        UiHarness h;
        QWidget* w = h.open(QStringLiteral("frmCadCli"));
        QCOMPARE(w->windowTitle(), QStringLiteral("Clientes"));
        QVERIFY(find<QLineEdit>(w, QStringLiteral("txtNome"))->isReadOnly());

        click(w, QStringLiteral("cmdNovo"));
        fill(w, {{"txtNome", "Ana Prado"}, {"txtRua", "Linha Santo Antônio"}, {"txtCidade", "Erechim"},
                 {"txtFone", "(54) 3321-0000"}, {"txtEmail", "ana@exemplo.com.br"}});
        click(w, QStringLiteral("cmdConfirma"));
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(h.scalar(QStringLiteral("SELECT \"Rua/Localidade\" FROM Clientes WHERE Nome = 'Ana Prado'")).toString(),
                 QStringLiteral("Linha Santo Antônio"));
        QVERIFY(find<QLineEdit>(w, QStringLiteral("txtNome"))->isReadOnly());

        // The same name in other letters is the same client; what was typed stays.
        click(w, QStringLiteral("cmdNovo"));
        fill(w, {{"txtNome", "ANA PRADO"}, {"txtRua", "-"}, {"txtCidade", "-"}, {"txtFone", "-"}, {"txtEmail", "-"}});
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Critico);
        QCOMPARE(h.boxes[0].texto, QStringLiteral("Não é permitido cadastrar dois clientes com exatamente o mesmo nome"));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtNome"))->text(), QStringLiteral("ANA PRADO"));
        QVERIFY(!find<QPushButton>(w, QStringLiteral("cmdNovo"))->isEnabled());
        click(w, QStringLiteral("cmdCancela"));
        QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtNome"))->text(), QStringLiteral("Ana Prado"));

        // An edit of the town alone.
        click(w, QStringLiteral("cmdEdita"));
        type(w, QStringLiteral("txtCidade"), QStringLiteral("Getúlio Vargas"));
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.scalar(QStringLiteral("SELECT Cidade FROM Clientes")).toString(), QStringLiteral("Getúlio Vargas"));
        QCOMPARE(h.session().Operacao, QString());
    }

    void deletionChecksTheFieldsAndKeepsItsOperation()
    {
        UiHarness h;
        h.exec(QStringLiteral("INSERT INTO Clientes VALUES ('Ana', 'Rua A', 'Ijuí', '', 'a@b'), ('Bruno', 'Rua B', 'Ijuí', '1', 'b@c'), ('Carla', 'Rua C', 'Ijuí', '2', 'c@d')"));
        QWidget* w = h.open(QStringLiteral("frmCadCli"));
        click(w, QStringLiteral("cmdExclui"));
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Há campos vazios.")});

        h.clearBoxes();
        selectRow(w, QStringLiteral("dtGridCli"), 1);
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Bruno será excluído, confirma?")});
        QCOMPARE(h.scalar(QStringLiteral("SELECT group_concat(Nome) FROM Clientes")).toString(), QStringLiteral("Ana,Carla"));
        QCOMPARE(h.session().Operacao, QStringLiteral("Exclusão"));
        QVERIFY(find<QPushButton>(w, QStringLiteral("cmdNovo"))->isEnabled());

        // Executar again deletes the row now current, after asking.
        h.clearBoxes();
        h.answers << QMessageBox::No;
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Carla será excluído, confirma?")});
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toInt(), 2);
    }

    void limingMaterialsStandAtTheFixedRate()
    {
        UiHarness h;
        QWidget* w = h.open(QStringLiteral("frmCadCalc"));
        QVERIFY(find<QTableView>(w, QStringLiteral("dtGrid"))->isColumnHidden(3));
        click(w, QStringLiteral("cmdNovo"));
        fill(w, {{"txtEspec", "Calcário teste"}, {"txtPRNT", "85"}, {"txtCusto", "100"}});
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
        QCOMPARE(h.boxes.last().texto, QStringLiteral("Selecione um tipo de fertilizante"));
        QCOMPARE(h.boxes.last().icone, ui::Icone::Nenhum);
        click(kind, QStringLiteral("cmdCancel"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmTipoAdubo")));
        QVERIFY(find<QPushButton>(w, QStringLiteral("cmdNovo"))->isEnabled());
        QCOMPARE(h.session().OperacaoInsumo, QString());

        click(w, QStringLiteral("cmdNovo"));
        kind = h.windows().window(QStringLiteral("frmTipoAdubo"));
        find<QComboBox>(kind, QStringLiteral("cboTipo"))->setCurrentIndex(0);
        click(kind, QStringLiteral("cmpAplica"));
        auto* ms = find<QLineEdit>(w, QStringLiteral("txtMS"));
        QCOMPARE(ms->text(), QStringLiteral("---"));
        QVERIFY(ms->isReadOnly());
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblId"))->text(), QStringLiteral("1"));
        fill(w, {{"txtEspec", "Fórmula"}, {"txtN", "5"}, {"txtP", "20"}, {"txtK", "10"}, {"txtCusto", "400"}});
        h.clearBoxes();
        click(w, QStringLiteral("cmdConfirma"));
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(h.scalar(QStringLiteral("SELECT \"Fórmula\" || '|' || \"P/K\" || '|' || \"R$/t\" || '|' || EFICK FROM NPK")).toString(),
                 QStringLiteral("5-20-10|2|2200|---"));
    }

    // A number refused as it was typed, or one that cannot exist, never reaches the table on either
    // kind of machine: Executar refuses it again, and the field keeps it and takes the focus.
    void refusedNumbersAreNeverSaved_data()
    {
        QTest::addColumn<bool>("comma");
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");
        const QString simbolo = kMsgSimboloDecimal;
        QTest::newRow("N 1.5, comma") << true << "frmFertiliz" << "txtN" << "1.5" << simbolo;
        QTest::newRow("N 80,5, point") << false << "frmFertiliz" << "txtN" << "80,5" << simbolo;
        QTest::newRow("K above 100") << true << "frmFertiliz" << "txtK" << "100,5"
                                     << "O teor de K₂O deve estar entre 0 e 100 %.";
        QTest::newRow("price 1.5, comma") << true << "frmFertiliz" << "txtCusto" << "1.5" << simbolo;
        QTest::newRow("price -40, point") << false << "frmFertiliz" << "txtCusto" << "-40" << simbolo;
        QTest::newRow("price huge") << true << "frmFertiliz" << "txtCusto" << "999999999999"
                                    << "O preço deve estar entre 0 e 100000 US$/t.";
        QTest::newRow("PRNT 1.5, comma") << true << "frmCadCalc" << "txtPRNT" << "1.5" << simbolo;
        QTest::newRow("PRNT 80,5, point") << false << "frmCadCalc" << "txtPRNT" << "80,5" << simbolo;
        QTest::newRow("PRNT above any lime") << false << "frmCadCalc" << "txtPRNT" << "300"
                                             << "O PRNT deve estar entre 0 e 250 %.";
        QTest::newRow("lime price 1.5, comma") << true << "frmCadCalc" << "txtCusto" << "1.5" << simbolo;
    }

    void refusedNumbersAreNeverSaved()
    {
        QFETCH(bool, comma);
        QFETCH(QString, window);
        QFETCH(QString, field);
        QFETCH(QString, text);
        QFETCH(QString, message);
        MachineLocale locale(comma ? commaLocale() : pointLocale());
        UiHarness h;
        h.exec(QStringLiteral("DELETE FROM NPK"));
        h.exec(QStringLiteral("DELETE FROM Calcario"));
        QWidget* w = h.open(window);
        click(w, QStringLiteral("cmdNovo"));
        if (window == QLatin1String("frmFertiliz")) {
            QWidget* kind = h.windows().window(QStringLiteral("frmTipoAdubo"));
            find<QComboBox>(kind, QStringLiteral("cboTipo"))->setCurrentIndex(0);
            click(kind, QStringLiteral("cmpAplica"));
            fill(w, {{"txtEspec", "Fórmula"}, {"txtN", "5"}, {"txtP", "20"}, {"txtK", "10"}, {"txtCusto", "400"}});
        } else {
            fill(w, {{"txtEspec", "Calcário"}, {"txtPRNT", "85"}, {"txtCusto", "100"}});
        }
        QVERIFY(h.boxes.isEmpty());
        type(w, field, text);
        QCOMPARE(h.texts().value(0), message);  // told as the field is left

        h.clearBoxes();
        click(w, QStringLiteral("cmdConfirma"));
        QCOMPARE(h.texts(), QStringList{message});
        QCOMPARE(h.scalar(QStringLiteral("SELECT (SELECT COUNT(*) FROM NPK) + (SELECT COUNT(*) FROM Calcario)")).toInt(), 0);
        auto* edit = find<QLineEdit>(w, field);
        QCOMPARE(edit->text(), text);
        QCOMPARE(w->focusWidget(), edit);
    }

    // Blanks are taken off every text; a field of them is empty, and the first empty field is
    // where the focus goes.
    void blanksAreTrimmedAndAnEmptyFieldTakesTheFocus()
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

    void quotationRepricesBothLists()
    {
        UiHarness h;
        h.exec(QStringLiteral("DELETE FROM Calcario"));
        h.exec(QStringLiteral("INSERT INTO Calcario VALUES ('Filler', 95, 70, 109.9)"));
        QWidget* w = h.open(QStringLiteral("frmCotac"));
        QCOMPARE(find<QLabel>(w, QStringLiteral("lbl1"))->text(), QStringLiteral("Cotação atual: 1 dolar = %1 reais").arg(numberText(5.5f)));
        click(w, QStringLiteral("cmdAtualiza"));  // empty: nothing happens
        QCOMPARE(h.scalar(QStringLiteral("SELECT \"R$/t\" FROM Calcario")).toDouble(), 109.9);
        type(w, QStringLiteral("txtCota"), QStringLiteral("6"));
        click(w, QStringLiteral("cmdAtualiza"));
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(h.scalar(QStringLiteral("SELECT \"R$/t\" FROM Calcario")).toDouble(), 420.0);
        QVERIFY(find<QLabel>(w, QStringLiteral("lbl1"))->text().contains(QStringLiteral("= 6 reais")));
    }

    void companyHasOneRow()
    {
        UiHarness h;
        QWidget* w = h.open(QStringLiteral("frmEmpresa"));
        click(w, QStringLiteral("cmdSalva"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Há campos vazios!")});
        for (const char* name : {"txtEmp", "txtRua", "txtNum", "txtCEP", "txtCid", "txtBair", "txtEst", "txtTelef",
                                 "txtEmail", "txtSite"})
            type(w, QString::fromLatin1(name), QStringLiteral("x"));
        type(w, QStringLiteral("txtCEP"), QStringLiteral("  "));
        click(w, QStringLiteral("cmdSalva"));
        QCOMPARE(w->focusWidget(), find<QLineEdit>(w, QStringLiteral("txtCEP")));
        type(w, QStringLiteral("txtCEP"), QStringLiteral("x"));
        click(w, QStringLiteral("cmdSalva"));
        QCOMPARE(h.boxes.last().texto, QStringLiteral("Cadastro efetuado com sucesso!"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmEmpresa")));

        w = h.open(QStringLiteral("frmEmpresa"));
        type(w, QStringLiteral("txtEmp"), QStringLiteral("Agro Planalto"));
        click(w, QStringLiteral("cmdSalva"));
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) || Empresa FROM Empresa")).toString(), QStringLiteral("1Agro Planalto"));
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
        QCOMPARE(h.scalar(QStringLiteral("SELECT Assina FROM TecResp")).toInt(), 0);

        combo->setCurrentIndex(0);
        click(w, QStringLiteral("cmdOK"));
        QCOMPARE(h.boxes.last().texto, QStringLiteral("Técnico: Ana Souza seleciondado"));
        QCOMPARE(h.boxes.last().icone, ui::Icone::Informacao);
        QCOMPARE(h.session().NomeTec, QStringLiteral("Ana Souza"));
        QCOMPARE(h.scalar(QStringLiteral("SELECT Assina FROM TecResp")).toInt(), 1);
    }
};

QTEST_MAIN(RegistersWindowTest)
#include "registers_window_test.moc"
