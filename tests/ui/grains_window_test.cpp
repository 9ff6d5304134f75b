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

    static QStringList caixas(QWidget* w, const QStringList& nomes)
    {
        QStringList textos;
        for (const QString& nome : nomes)
            textos << find<QLineEdit>(w, nome)->text();
        return textos;
    }
    static QStringList nec(QWidget* w) { return caixas(w, { "txtNec_0", "txtNec_1", "txtNec_2", "txtNec_3" }); }
    static QStringList correcao(QWidget* w)
    {
        return caixas(w, { "txtPcor", "txtFracP", "txtParcPcor", "txtKcor", "txtFracK", "txtParcKcor" });
    }
    static void escolhe(QWidget* w, const QString& lista, int posicao)
    {
        find<QListWidget>(w, lista)->setCurrentRow(posicao);
    }
    static const inline QStringList vazias = { "", "", "", "" };

private Q_SLOTS:
    void init() { setMachineLocale(pointLocale()); }
    void cleanup() { resetMachineLocale(); }

    void calculateAdjustAndProceed()
    {
        UiHarness h;
        QWidget* w = abre(h);
        QCOMPARE(find<QListWidget>(w, QStringLiteral("lstCulturas"))->count(), culturasGraos().size());
        // Focus moves into the lists as the user tabs through; only a selection is a choice, or
        // wheat would be computed after grasses (N 80) when nothing was said of the previous crop.
        focusByTab(w, QStringLiteral("lstCulturas"));
        type(w, QStringLiteral("txtExpect"), QStringLiteral("4"));
        // Enter in a field presses "Calcular".
        QTest::keyClick(find<QLineEdit>(w, QStringLiteral("txtExpect")), Qt::Key_Return);
        QCOMPARE(h.texts(), QStringList { kMsgSelecioneCultura });
        QCOMPARE(h.boxes[0].icone, ui::Icone::Exclamacao);
        escolhe(w, QStringLiteral("lstCulturas"), graos::Trigo);
        QVERIFY(!find<QLineEdit>(w, QStringLiteral("txtMS"))->isEnabled());
        type(w, QStringLiteral("txtExpect"), QStringLiteral("4"));
        focusByTab(w, QStringLiteral("lstCultAnt"));
        h.clearBoxes();
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList { kMsgSelecioneCultivoAnterior });
        QCOMPARE(nec(w), vazias);
        escolhe(w, QStringLiteral("lstCultAnt"), 0);
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "20", "100", "70", "70" }));
        QCOMPARE(correcao(w), QStringList({ "60", "2/3", "40", "30", "todo", "30" }));

        // The adjustment window: its range check, then No, then Yes.
        click(w, QStringLiteral("cmdAjusta"));
        QWidget* a = h.windows().window(QStringLiteral("frmAjusta"));
        QVERIFY(a && a->isVisible());
        QCOMPARE(find<QLineEdit>(a, QStringLiteral("txtPB"))->text(), QStringLiteral("100"));
        h.clearBoxes();
        const std::pair<const char*, const char*> ajuste[]
            = { { "txtNB2", "25" }, { "txtPB2", "2500" }, { "txtKB2", "0" }, { "txtNC2", "60" } };
        for (const auto& [campo, valor] : ajuste)
            type(a, QString::fromLatin1(campo), QString::fromLatin1(valor));
        click(a, QStringLiteral("cmdAplica"));
        QCOMPARE(h.texts(), QStringList { QStringLiteral("O P base deve estar entre 0 e 2000 kg/ha.") });
        QCOMPARE(a->focusWidget(), find<QLineEdit>(a, QStringLiteral("txtPB2")));
        type(a, QStringLiteral("txtPB2"), QStringLiteral("90"));
        h.answers << QMessageBox::No;
        click(a, QStringLiteral("cmdAplica"));
        QVERIFY(h.session().ObsAjuste.isEmpty());
        QCOMPARE(nec(w), QStringList({ "20", "100", "70", "70" }));
        click(a, QStringLiteral("cmdAplica"));
        QVERIFY(h.boxes.last().texto.contains(QStringLiteral("'Esta recomendação foi ajustada")));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmAjusta")));
        QCOMPARE(nec(w), QStringList({ "25", "90", "0", "60" }));
        QVERIFY(h.session().ObsAjuste.startsWith(QStringLiteral("Esta recomendação foi ajustada")));

        // A plan already open is stale now: a new one opens as the step goes on.
        QWidget* plano = h.open(QStringLiteral("frmNPK"));
        plano->hide();
        h.windows().show(QStringLiteral("frmGraos"));
        click(w, QStringLiteral("cmdProssegue"));
        QVERIFY(!w->isVisible());
        QCOMPARE(h.session().Dados[1].toString(), QStringLiteral("Trigo"));
        QCOMPARE(h.session().Nec[1], QVariant(90.0f));
        QWidget* novo = h.windows().window(QStringLiteral("frmNPK"));
        QVERIFY(novo && novo->isVisible() && novo != plano);
    }

    void irrigatedRiceHasItsOwnRules()
    {
        UiHarness h;
        QWidget* w = abre(h);
        auto* sistema = find<QComboBox>(w, QStringLiteral("cboSitArz"));
        QVERIFY(!sistema->isEnabled());
        // A yield typed before the RS rice is chosen is refused as an increment as it is chosen.
        type(w, QStringLiteral("txtExpect"), QStringLiteral("2.5"));
        escolhe(w, QStringLiteral("lstCulturas"), graos::ArrozIrrigadoRS);
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
        QVERIFY(find<QLineEdit>(w, QStringLiteral("txtExpect"))->text().isEmpty());
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblExpect"))->text(),
            QStringLiteral("Incremento de rendimento (t/ha)"));
        QVERIFY(sistema->isEnabled());
        type(w, QStringLiteral("txtExpect"), QStringLiteral("3"));
        sistema->setCurrentIndex(2);
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "0", "50", "55", "80" }));
        // The correction does not apply to rice, and the results stay.
        h.clearBoxes();
        find<QRadioButton>(w, QStringLiteral("optAjgrad"))->click();
        QCOMPARE(h.texts(), QStringList { kMsgArrozSemCorrecao });
        QCOMPARE(nec(w), QStringList({ "0", "50", "55", "80" }));
        click(w, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.session().Dados[1].toString(), QStringLiteral("Arroz irrigado (RS) - Pré-germinado"));

    }

    // Every change to an input empties the results, so that none is carried on stale.
    void everyChangeEmptiesTheResults()
    {
        UiHarness h;
        QWidget* w = abre(h);
        escolhe(w, QStringLiteral("lstCulturas"), graos::Milho);
        escolhe(w, QStringLiteral("lstCultAnt"), 2);
        type(w, QStringLiteral("txtExpect"), QStringLiteral("4"));
        type(w, QStringLiteral("txtMS"), QStringLiteral("1"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "20", "85", "60", "40" }));
        h.clearBoxes();
        type(w, QStringLiteral("txtMS"), QStringLiteral("4100"));
        QCOMPARE(h.texts().value(0), kMsgValorElevado);
        QCOMPARE(nec(w), vazias);
        h.clearBoxes();
        click(w, QStringLiteral("cmdProssegue"));
        click(w, QStringLiteral("cmdAjusta"));
        QCOMPARE(h.texts(), QStringList({ kMsgNaoCalculada, kMsgNaoCalculada }));
        type(w, QStringLiteral("txtMS"), QStringLiteral("1"));
        click(w, QStringLiteral("cmdCalc"));
        find<QRadioButton>(w, QStringLiteral("optAjgrad"))->click();
        QCOMPARE(correcao(w), QStringList({ "33", "todo", "33", "0", "sem", "0" }));
        QCOMPARE(nec(w), vazias);
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(w), QStringList({ "20", "78", "30", "40" }));
        escolhe(w, QStringLiteral("lstCultAnt"), 0);
        QCOMPARE(nec(w), vazias);
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
            QCOMPARE(nec(w), vazias);
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
        // A plan kind of a later version keeps the step where it is, with nothing written.
        escolhe(w, QStringLiteral("lstCulturas"), graos::Soja);
        type(w, QStringLiteral("txtExpect"), QStringLiteral("3"));
        click(w, QStringLiteral("cmdCalc"));
        h.session().TipoPlano = QStringLiteral("Formulação");
        click(w, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
        QVERIFY(w->isVisible());
        QCOMPARE(h.session().Dados[1], QVariant(0));

        click(w, QStringLiteral("cmdRetorna"));
        QVERIFY(!w->isVisible());
        h.windows().show(QStringLiteral("frmGraos"));
        QCOMPARE(nec(w), QStringList({ "0", "85", "100", "0" }));
        // Cancel asks first (the No answer is the closing routine's: navigation_test).
        click(w, QStringLiteral("cmdCancela"));
        QCOMPARE(h.texts().last(), QStringLiteral("Está certo que quer cancelar?"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmGraos")));
    }
};

QTEST_MAIN(GrainsWindowTest)
#include "grains_window_test.moc"
