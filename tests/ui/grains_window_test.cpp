#include "app/session.h"
#include "app/ui/chainwindow.h"
#include "app/ui/windowregistry.h"
#include "calc/grains.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>

#include <functional>

using namespace lavra;
using namespace lavra::test;

// The grain step driven as the user does. The figures and refusals themselves are the logic's
// (tests/calc/grains_test.cpp); here they only have to reach the window and back.
class GrainsWindowTest : public QObject {
    Q_OBJECT

private:
    // An analysis of MO class 3, P class 2, K class 3 and CTC class 3, first crop; the plan step
    // is a stand-in, so that only this step is under test.
    static QWidget* abre(UiHarness& h)
    {
        Session& s = h.session();
        s.limpaCalculo();
        s.Analise = QVector<QVariant>(36, QVariant(0));
        const QList<std::pair<int, QVariant>> campos
            = { { 15, 10.0f }, { 18, 30.0f }, { 19, 10.0f }, { 30, 3 }, { 31, 2 }, { 32, 3 }, { 33, 3 } };
        for (const auto& [campo, valor] : campos)
            s.Analise[campo] = valor;
        s.Grupo = 1;
        s.NomeGrupo = QStringLiteral("Produtoras de grãos");
        s.Cultivo = 1;
        s.Dados[2] = QStringLiteral("Primeiro");
        s.TipoPlano = QStringLiteral("Fórmulas");
        s.BloqueiaFechar = true;
        h.windows().registerWindow(
            QStringLiteral("frmNPK"), [&h]() { return new ui::ChainWindow(h.session(), h.windows()); });
        return h.open(QStringLiteral("frmGraos"));
    }

    static QStringList nec(QWidget* w) { return texts(w, { "txtNec_0", "txtNec_1", "txtNec_2", "txtNec_3" }); }
    static const inline QStringList vazias = { "", "", "", "" };

private Q_SLOTS:
    void init() { setMachineLocale(pointLocale()); }
    void cleanup() { resetMachineLocale(); }

    void calculateAndAdjust()
    {
        UiHarness h;
        QWidget* w = abre(h);
        // Focus moves into the lists as the user tabs through; only a selection is a choice, or
        // wheat would be computed after grasses (N 80) when nothing was said of the previous crop.
        focusByTab(w, QStringLiteral("lstCulturas"));
        type(w, QStringLiteral("txtExpect"), QStringLiteral("4"));
        // Enter in a field presses "Calcular".
        QTest::keyClick(find<QLineEdit>(w, QStringLiteral("txtExpect")), Qt::Key_Return);
        QCOMPARE(h.texts(), QStringList { kMsgSelecioneCultura });
        QCOMPARE(h.boxes[0].icone, ui::Icone::Exclamacao);
        choose(w, QStringLiteral("lstCulturas"), graos::Trigo);
        focusByTab(w, QStringLiteral("lstCultAnt"));
        h.clearBoxes();
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList { kMsgSelecioneCultivoAnterior });
        QCOMPARE(nec(w), vazias);
        choose(w, QStringLiteral("lstCultAnt"), 0);
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "20", "100", "70", "70" }));
        QCOMPARE(texts(w, { "txtPcor", "txtFracP", "txtParcPcor" }), QStringList({ "60", "2/3", "40" }));

        // The adjustment window: a refusal takes the focus back, then Yes applies it.
        click(w, QStringLiteral("cmdAjusta"));
        QWidget* a = h.windows().window(QStringLiteral("frmAjusta"));
        QVERIFY(a && a->isVisible());
        QCOMPARE(text(a, QStringLiteral("txtPB")), QStringLiteral("100"));
        h.clearBoxes();
        fill(a, { { "txtNB2", "25" }, { "txtPB2", "2500" }, { "txtKB2", "0" }, { "txtNC2", "60" } });
        click(a, QStringLiteral("cmdAplica"));
        QCOMPARE(h.texts(), QStringList { QStringLiteral("O P base deve estar entre 0 e 2000 kg/ha.") });
        QCOMPARE(a->focusWidget(), find<QLineEdit>(a, QStringLiteral("txtPB2")));
        type(a, QStringLiteral("txtPB2"), QStringLiteral("90"));
        click(a, QStringLiteral("cmdAplica"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmAjusta")));
        QCOMPARE(nec(w), QStringList({ "25", "90", "0", "60" }));
        QVERIFY(h.session().ObsAjuste.startsWith(QStringLiteral("Esta recomendação foi ajustada")));
    }

    // Choosing the RS rice turns the yield into an increment; the correction does not apply to it.
    void irrigatedRiceChangesTheWindow()
    {
        UiHarness h;
        QWidget* w = abre(h);
        auto* sistema = find<QComboBox>(w, QStringLiteral("cboSitArz"));
        QVERIFY(!sistema->isEnabled());
        type(w, QStringLiteral("txtExpect"), QStringLiteral("2.5"));
        choose(w, QStringLiteral("lstCulturas"), graos::ArrozIrrigadoRS);
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
        QVERIFY(text(w, QStringLiteral("txtExpect")).isEmpty());
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblExpect"))->text(), kRotuloIncremento);
        QVERIFY(sistema->isEnabled());
        type(w, QStringLiteral("txtExpect"), QStringLiteral("3"));
        sistema->setCurrentIndex(2);
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "0", "50", "55", "80" }));
        h.clearBoxes();
        find<QRadioButton>(w, QStringLiteral("optAjgrad"))->click();
        QCOMPARE(h.texts(), QStringList { kMsgArrozSemCorrecao });
        QCOMPARE(nec(w), QStringList({ "0", "50", "55", "80" }));
    }

    // Every change to an input empties the results, so that none is carried on stale.
    void everyChangeEmptiesTheResults()
    {
        UiHarness h;
        QWidget* w = abre(h);
        choose(w, QStringLiteral("lstCulturas"), graos::Milho);
        const std::function<void()> mudancas[] = {
            [w]() { choose(w, QStringLiteral("lstCultAnt"), 0); },
            [w]() { type(w, QStringLiteral("txtMS"), QStringLiteral("2")); },
            [w]() { type(w, QStringLiteral("txtExpect"), QStringLiteral("5")); },
            [w]() { find<QRadioButton>(w, QStringLiteral("optAjgrad"))->click(); },
        };
        choose(w, QStringLiteral("lstCultAnt"), 2);
        fill(w, { { "txtExpect", "4" }, { "txtMS", "1" } });
        for (const auto& muda : mudancas) {
            click(w, QStringLiteral("cmdCalc"));
            QVERIFY(!text(w, QStringLiteral("txtNec_1")).isEmpty());
            muda();
            QCOMPARE(nec(w), vazias);
        }
        h.clearBoxes();
        click(w, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.texts(), QStringList { kMsgNaoCalculada });
    }

    // The close box does nothing while the chain is open.
    void closeBoxIsRefusedWhileLocked()
    {
        UiHarness h;
        QWidget* w = abre(h);
        QVERIFY(!w->close());
        QVERIFY(w->isVisible());
    }
};

QTEST_MAIN(GrainsWindowTest)
#include "grains_window_test.moc"
