#include "app/navigation.h"
#include "app/session.h"
#include "base/validation.h"
#include "app/ui/chainwindow.h"
#include "app/ui/windowregistry.h"
#include "calc/crops.h"
#include "calc/grains.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>

using namespace lavra;
using namespace lavra::test;

// The grain step driven as the user does: crop, yield, calculation, adjustment and on to the plan.
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
        s.Analise[15] = 10.0f;
        s.Analise[18] = 30.0f;
        s.Analise[19] = 10.0f;
        s.Analise[30] = 3;
        s.Analise[31] = 2;
        s.Analise[32] = 3;
        s.Analise[33] = 3;
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

    static QStringList nec(QWidget* w)
    {
        QStringList textos;
        for (int i = 0; i < 4; ++i)
            textos << find<QLineEdit>(w, QStringLiteral("txtNec_%1").arg(i))->text();
        return textos;
    }

    static QStringList correcao(QWidget* w)
    {
        QStringList textos;
        for (const char* nome :
            { "txtPcor", "txtFracP", "txtParcPcor", "txtKcor", "txtFracK", "txtParcKcor" })
            textos << find<QLineEdit>(w, QString::fromLatin1(nome))->text();
        return textos;
    }

    static void escolhe(QWidget* w, const QString& lista, int posicao)
    {
        find<QListWidget>(w, lista)->setCurrentRow(posicao);
    }

private Q_SLOTS:
    void init() { setMachineLocale(pointLocale()); }
    void cleanup() { resetMachineLocale(); }

    // Focus moves into the lists as the user tabs through; only a selection is a choice, or
    // wheat would be computed after grasses (N 80) when nothing was said of the previous crop.
    void focusAloneChoosesNeitherCropNorPreviousCrop()
    {
        UiHarness h;
        QWidget* w = abre(h);
        focusByTab(w, QStringLiteral("lstCulturas"));
        type(w, QStringLiteral("txtExpect"), QStringLiteral("3"));
        // Enter in a field presses "Calcular".
        QTest::keyClick(find<QLineEdit>(w, QStringLiteral("txtExpect")), Qt::Key_Return);
        QCOMPARE(h.texts(), QStringList { QStringLiteral("Selecione uma cultura!") });

        h.clearBoxes();
        escolhe(w, QStringLiteral("lstCulturas"), culturasGraos().indexOf(QStringLiteral("Trigo")));
        type(w, QStringLiteral("txtExpect"), QStringLiteral("3"));
        focusByTab(w, QStringLiteral("lstCultAnt"));
        QCOMPARE(find<QListWidget>(w, QStringLiteral("lstCultAnt"))->currentRow(), -1);
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList { QStringLiteral("Selecione o cultivo anterior!") });
        QVERIFY(nec(w).join(QString()).isEmpty());
    }

    void calculateAdjustAndProceed()
    {
        UiHarness h;
        QWidget* w = abre(h);
        QCOMPARE(w->windowTitle(), QStringLiteral("Grupo: Culturas Produtoras de Grãos"));
        QCOMPARE(find<QListWidget>(w, QStringLiteral("lstCulturas"))->count(), culturasGraos().size());
        QVERIFY(!find<QListWidget>(w, QStringLiteral("lstCultAnt"))->isEnabled());

        // Wheat asks for the previous crop, and for nothing else.
        escolhe(w, QStringLiteral("lstCulturas"), graos::Trigo);
        QCOMPARE(find<QListWidget>(w, QStringLiteral("lstCultAnt"))->count(), 2);
        QVERIFY(!find<QLineEdit>(w, QStringLiteral("txtMS"))->isEnabled());
        type(w, QStringLiteral("txtExpect"), QStringLiteral("4"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList { QStringLiteral("Selecione o cultivo anterior!") });
        escolhe(w, QStringLiteral("lstCultAnt"), 0);
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "20", "100", "70", "70" }));
        QCOMPARE(correcao(w), QStringList({ "60", "2/3", "40", "30", "todo", "30" }));
        QCOMPARE(h.session().RefazPlano, 1);

        // The adjustment: empty first, then a text, then No, then Yes.
        click(w, QStringLiteral("cmdAjusta"));
        QWidget* a = h.windows().window(QStringLiteral("frmAjusta"));
        QVERIFY(a && a->isVisible());
        QCOMPARE(a->windowTitle(), QStringLiteral("Interpretação de MO, P e K no Solo"));
        QCOMPARE(find<QLineEdit>(a, QStringLiteral("txtPB"))->text(), QStringLiteral("100"));
        QCOMPARE(find<QLineEdit>(a, QStringLiteral("txtNC"))->text(), QStringLiteral("70"));
        h.clearBoxes();
        type(a, QStringLiteral("txtNB2"), QStringLiteral("25"));
        type(a, QStringLiteral("txtPB2"), QStringLiteral("x"));
        click(a, QStringLiteral("cmdAplica"));
        type(a, QStringLiteral("txtKB2"), QStringLiteral("0"));
        type(a, QStringLiteral("txtNC2"), QStringLiteral("60"));
        click(a, QStringLiteral("cmdAplica"));
        QCOMPARE(h.texts(), QStringList({ "Há campos vazios!", "Há campos não numéricos!" }));
        type(a, QStringLiteral("txtPB2"), QStringLiteral("2500"));
        click(a, QStringLiteral("cmdAplica"));
        QCOMPARE(h.texts().last(), QStringLiteral("O P base deve estar entre 0 e 2000 kg/ha."));
        QCOMPARE(a->focusWidget(), find<QLineEdit>(a, QStringLiteral("txtPB2")));
        type(a, QStringLiteral("txtPB2"), QStringLiteral("90"));
        h.answers << QMessageBox::No;
        click(a, QStringLiteral("cmdAplica"));
        QVERIFY(h.session().ObsAjuste.isEmpty());
        QCOMPARE(nec(w), QStringList({ "20", "100", "70", "70" }));
        h.session().RefazPlano = 0;
        click(a, QStringLiteral("cmdAplica"));
        QCOMPARE(h.boxes.last().icone, ui::Icone::Exclamacao);
        QVERIFY(h.boxes.last().texto.contains(QStringLiteral("'Esta recomendação foi ajustada")));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmAjusta")));
        QCOMPARE(nec(w), QStringList({ "25", "90", "0", "60" }));
        QCOMPARE(h.session().RefazPlano, 1);
        QVERIFY(h.session().ObsAjuste.startsWith(QStringLiteral("Esta recomendação foi ajustada")));

        // A plan already open is stale now and closes as the step goes on.
        QWidget* plano = h.open(QStringLiteral("frmNPK"));
        plano->hide();
        h.windows().show(QStringLiteral("frmGraos"));
        click(w, QStringLiteral("cmdProssegue"));
        QVERIFY(!w->isVisible());
        QCOMPARE(h.session().Dados[1].toString(), QStringLiteral("Trigo"));
        QCOMPARE(h.session().Dados[4], QVariant(4.0f));
        QCOMPARE(h.session().Nec[1], QVariant(90.0f));
        QCOMPARE(h.session().Nec[2], QVariant(0.0f));
        QCOMPARE(h.session().RefazPlano, 0);
        QWidget* novo = h.windows().window(QStringLiteral("frmNPK"));
        QVERIFY(novo && novo->isVisible());
        QVERIFY(novo != plano);

        // Back again: the step is as it was left, and a new calculation keeps the note.
        novo->hide();
        h.windows().show(QStringLiteral("frmGraos"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "20", "100", "70", "70" }));
        QVERIFY(!h.session().ObsAjuste.isEmpty());
    }

    void irrigatedRiceHasItsOwnRules()
    {
        UiHarness h;
        QWidget* w = abre(h);
        auto* sistema = find<QComboBox>(w, QStringLiteral("cboSitArz"));
        QVERIFY(!sistema->isEnabled());

        // A yield typed before the RS rice is chosen is refused as an increment.
        type(w, QStringLiteral("txtExpect"), QStringLiteral("2.5"));
        escolhe(w, QStringLiteral("lstCulturas"), graos::ArrozIrrigadoRS);
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
        QVERIFY(find<QLineEdit>(w, QStringLiteral("txtExpect"))->text().isEmpty());
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblExpect"))->text(),
            QStringLiteral("Incremento de rendimento (t/ha)"));
        QVERIFY(find<QLabel>(w, QStringLiteral("lblAv"))->text().contains(QStringLiteral("SOSBAI, 2007")));
        QVERIFY(sistema->isEnabled());

        h.clearBoxes();
        type(w, QStringLiteral("txtExpect"), QStringLiteral("3"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList { QStringLiteral("Selecione o sistema de semeadura") });
        sistema->setCurrentIndex(2);
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "0", "50", "55", "80" }));
        QCOMPARE(correcao(w), QStringList({ "", "", "", "", "", "" }));

        // The correction does not apply, and the results stay.
        h.clearBoxes();
        find<QRadioButton>(w, QStringLiteral("optAjgrad"))->click();
        QCOMPARE(h.texts(),
            QStringList { QStringLiteral("Para arroz irrigado não se aplica adubação de correção.") });
        QCOMPARE(nec(w), QStringList({ "0", "50", "55", "80" }));

        click(w, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.session().Dados[1].toString(), QStringLiteral("Arroz irrigado (RS) - Pré-germinado"));
        QCOMPARE(h.session().Dados[4], QVariant(3.0f));
    }

    void everyChangeEmptiesTheResults()
    {
        UiHarness h;
        QWidget* w = abre(h);
        escolhe(w, QStringLiteral("lstCulturas"), graos::Milho);
        QCOMPARE(find<QListWidget>(w, QStringLiteral("lstCultAnt"))->count(), 3);
        escolhe(w, QStringLiteral("lstCultAnt"), 2);
        type(w, QStringLiteral("txtExpect"), QStringLiteral("4"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(),
            QStringList { QStringLiteral("Informe a produção de massa seca do cultivo anterior!") });
        type(w, QStringLiteral("txtMS"), QStringLiteral("4.1"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "30", "85", "60", "50" }));

        // A yield in kilograms is warned of as it is typed.
        h.clearBoxes();
        type(w, QStringLiteral("txtMS"), QStringLiteral("4100"));
        QCOMPARE(h.texts().value(0),
            QStringLiteral("Valor elevado detectado! Este valor deve ser em toneladas por hectare."));
        QCOMPARE(nec(w), QStringList({ "", "", "", "" }));
        h.clearBoxes();
        click(w, QStringLiteral("cmdProssegue"));
        click(w, QStringLiteral("cmdAjusta"));
        QCOMPARE(h.texts(),
            QStringList({ "A adubação não foi calculada ainda!", "A adubação não foi calculada ainda!" }));

        // The gradual option shows its doses and asks for a new calculation.
        type(w, QStringLiteral("txtMS"), QStringLiteral("1"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "20", "85", "60", "40" }));
        find<QRadioButton>(w, QStringLiteral("optAjgrad"))->click();
        QCOMPARE(correcao(w), QStringList({ "33", "todo", "33", "0", "sem", "0" }));
        QCOMPARE(nec(w), QStringList({ "", "", "", "" }));
        click(w, QStringLiteral("cmdCalc"));
        // P: 85 - 40 + 33; K: 60 - 30 + 0.
        QCOMPARE(nec(w), QStringList({ "20", "78", "30", "40" }));
        find<QListWidget>(w, QStringLiteral("lstCultAnt"))->setCurrentRow(0);
        QCOMPARE(nec(w), QStringList({ "", "", "", "" }));
    }

    // A yield refused as it was typed, or one no crop gives, is never calculated with, on either
    // kind of machine: "1.5" is not fifteen on a comma machine, nor "80,5" 805 on a point one.
    void refusedYieldIsNeverUsed()
    {
        const QString acima = QStringLiteral("A expectativa de rendimento deve estar entre 0 e 1000 t/ha.");
        const std::tuple<QLocale, QString, QString> casos[] = {
            { commaLocale(), QStringLiteral("1.5"), kMsgSimboloDecimal },
            { pointLocale(), QStringLiteral("80,5"), kMsgSimboloDecimal },
            { commaLocale(), QStringLiteral("1001"), acima },
        };
        for (const auto& [locale, texto, mensagem] : casos) {
            setMachineLocale(locale);
            UiHarness h;
            QWidget* w = abre(h);
            escolhe(w, QStringLiteral("lstCulturas"), graos::Sorgo);
            type(w, QStringLiteral("txtExpect"), texto);
            QCOMPARE(h.texts().last(), mensagem);
            h.clearBoxes();
            click(w, QStringLiteral("cmdCalc"));
            click(w, QStringLiteral("cmdProssegue"));
            QCOMPARE(h.texts(), QStringList({ mensagem, kMsgNaoCalculada }));
            QCOMPARE(nec(w), QStringList({ "", "", "", "" }));
            QCOMPARE(find<QLineEdit>(w, QStringLiteral("txtExpect"))->text(), texto);
            QCOMPARE(h.session().Dados[4], QVariant(0));
        }
    }

    void leavingTheStep()
    {
        UiHarness h;
        QWidget* w = abre(h);
        // The close box does nothing while the chain is open.
        QVERIFY(!w->close());
        QVERIFY(w->isVisible());

        // A plan kind of a later version keeps the step where it is.
        escolhe(w, QStringLiteral("lstCulturas"), graos::Soja);
        type(w, QStringLiteral("txtExpect"), QStringLiteral("3"));
        click(w, QStringLiteral("cmdCalc"));
        h.session().TipoPlano = QStringLiteral("Formulação");
        h.clearBoxes();
        click(w, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
        QVERIFY(w->isVisible());
        QCOMPARE(h.session().Dados[1], QVariant(0));

        click(w, QStringLiteral("cmdRetorna"));
        QVERIFY(!w->isVisible());
        h.windows().show(QStringLiteral("frmGraos"));
        QCOMPARE(nec(w), QStringList({ "0", "85", "100", "0" }));

        h.answers << QMessageBox::No;
        click(w, QStringLiteral("cmdCancela"));
        QVERIFY(h.windows().window(QStringLiteral("frmGraos")));
        click(w, QStringLiteral("cmdCancela"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmGraos")));
    }
};

QTEST_MAIN(GrainsWindowTest)
#include "grains_window_test.moc"
