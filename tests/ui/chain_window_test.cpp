#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "uitestsupport.h"

#include <QListWidget>
#include <QRadioButton>

using namespace lavra;
using namespace lavra::test;

// The steps of the chain that frame the crop calculation: the crop group and the final save.
// The groups and their windows are tests/calc/cropgroups_test.cpp's, the saved row
// tests/plan/finish_test.cpp's.
class ChainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Tabbing into a list makes its first row current in Qt; the steps must not take that for
    // the user's choice.
    void focusAloneChoosesNeitherGroupNorAnalysis()
    {
        UiHarness h;
        h.session().limpaCalculo();
        QWidget* grupos = h.open(QStringLiteral("frmGrupCult"));
        find<QRadioButton>(grupos, QStringLiteral("Option1_0"))->setChecked(true);
        focusByTab(grupos, QStringLiteral("lstGrupo"));
        QCOMPARE(find<QListWidget>(grupos, QStringLiteral("lstGrupo"))->currentRow(), -1);
        click(grupos, QStringLiteral("cmdVai"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Selecione o grupo de culturas!")});
        QVERIFY(grupos->isVisible());
        grupos->close();

        h.clearBoxes();
        h.exec(QStringLiteral("INSERT INTO Clientes VALUES ('Ana Prado', '', 'Erechim', '', '')"));
        h.exec(QStringLiteral("INSERT INTO Analises (Código, Cliente) VALUES ('Sede/1/15/08/2026', 'Ana Prado')"));
        h.session().ModoEscolha = QStringLiteral("Calcular");
        QWidget* escolha = h.open(QStringLiteral("frmCliAn"));
        QCOMPARE(find<QListWidget>(escolha, QStringLiteral("lstAna"))->count(), 1);
        focusByTab(escolha, QStringLiteral("lstAna"));
        // Enter in the list presses "Prosseguir >>", as a keyboard user expects.
        QTest::keyClick(find<QListWidget>(escolha, QStringLiteral("lstAna")), Qt::Key_Return);
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Selecione cliente e análise!")});
        QVERIFY(h.session().Analise.isEmpty() || h.session().CodAnalise.isEmpty());
    }

    void chosenGroupReachesTheSessionAndAChangeClosesTheLaterSteps()
    {
        UiHarness h;
        h.session().limpaCalculo();
        QWidget* w = h.open(QStringLiteral("frmGrupCult"));
        choose(w, QStringLiteral("lstGrupo"), 0);
        click(w, QStringLiteral("cmdVai"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Selecione o cultivo!")});
        find<QRadioButton>(w, QStringLiteral("Option1_1"))->setChecked(true);
        click(w, QStringLiteral("cmdVai"));
        QCOMPARE(h.session().Grupo, 1);
        QCOMPARE(h.session().Cultivo, 2);
        QCOMPARE(h.session().Dados[2].toString(), QStringLiteral("Segundo"));
        QVERIFY(!w->isVisible());

        // Back again with the later steps open: no change keeps them, a new group closes them.
        openStandIn(h, QStringLiteral("frmGraos"));
        h.windows().show(QStringLiteral("frmGrupCult"));
        click(w, QStringLiteral("cmdVai"));
        QVERIFY(h.windows().window(QStringLiteral("frmGraos")));
        h.windows().show(QStringLiteral("frmGrupCult"));
        choose(w, QStringLiteral("lstGrupo"), 4);
        click(w, QStringLiteral("cmdVai"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmGraos")));
    }

    void finalStepSavesOnceAndClosesTheChain()
    {
        UiHarness h;
        Session& s = h.session();
        s.limpaCalculo();
        s.Analise = QVector<QVariant>(36);
        s.Analise[0] = QStringLiteral("Faz/G1/01/08/2021");
        s.Grupo = 1;
        s.PlanoNum = 1;
        s.Dados[1] = QStringLiteral("Milho");
        s.Dados[2] = QStringLiteral("Primeiro");
        openStandIn(h, QStringLiteral("frmGraos"))->hide();
        QWidget* w = h.open(QStringLiteral("frmFinalCalculo"));

        type(w, QStringLiteral("MaskEdBox1"), QStringLiteral("01/10/2021"));
        h.answers << QMessageBox::No;
        click(w, QStringLiteral("cmdSalva"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Exibir o laudo?")});
        QCOMPARE(h.scalar(QStringLiteral("SELECT CodCultivo FROM RecoForm")).toString(),
                 QStringLiteral("Milho-Primeiro-01/10/2021"));
        QTRY_COMPARE(h.windows().openWindows(), QStringList());

        // The same key again is refused, and the step stays with what was typed.
        w = h.open(QStringLiteral("frmFinalCalculo"));
        type(w, QStringLiteral("MaskEdBox1"), QStringLiteral("01/10/2021"));
        h.clearBoxes();
        click(w, QStringLiteral("cmdSalva"));
        QCOMPARE(h.boxes.size(), 1);
        QVERIFY(h.boxes[0].texto.startsWith(QStringLiteral("Já existe no banco de dados uma recomendação [Milho")));
        QVERIFY(w->isVisible());
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM RecoForm")).toInt(), 1);
    }
};

QTEST_MAIN(ChainWindowTest)
#include "chain_window_test.moc"
