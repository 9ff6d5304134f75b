#include "app/events.h"
#include "app/session.h"
#include "plan/formulas.h"
#include "plan/split.h"
#include "store/changenotifier.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QComboBox>
#include <QLabel>
#include <QPointer>
#include <QTableView>
#include <QTableWidget>

using namespace lavra;
using namespace lavra::test;

namespace {

// The forest plan as far as this step sees it: it receives the rows of a dressing.
class PlanoFlorestalFalso : public QWidget {
public:
    explicit PlanoFlorestalFalso(Eventos& eventos)
    {
        connect(&eventos, &Eventos::etapaPreenchida, this, [this](int e, const QList<QStringList>& l) {
            etapa = e;
            linhas = l;
        });
    }
    int etapa = 0;
    QList<QStringList> linhas;
};

// Four fertilisers: a formula, a nitrogen source, an organic one and a potassium source.
void preparaSessao(UiHarness& h, float n, float p, float k, float nCob)
{
    h.exec(QStringLiteral("DELETE FROM NPK"));
    h.exec(QStringLiteral(
        "INSERT INTO NPK VALUES ('10-20-20', 'Formulado', 10, 20, 20, 1, 545, 3000, '---', '---', '---', "
        "'---'),"
        " ('45-0-0', 'Ureia', 45, 0, 0, 0, 645, 3547.5, '---', '---', '---', '---'),"
        " ('3,2-3,5-2,5', 'Cama de frango', 3.2, 3.5, 2.5, 1.4, 50, 275, '75', '0,5', '0,8', '1'),"
        " ('0-0-60', 'Cloreto de potássio', 0, 0, 60, 0, 540, 2970, '---', '---', '---', '---')"));
    Session& s = h.session();
    s.limpaCalculo();
    s.Nec = { QVariant(n), QVariant(p), QVariant(k), QVariant(nCob) };
    s.Analise = QVector<QVariant>(36);
    s.Analise[0] = QStringLiteral("Fazenda Boa Vista-Gleba 3-10/08/2025");
    s.Analise[6] = 2.5f;
    s.Grupo = 1;
    s.NomeGrupo = QStringLiteral("Produtoras de grãos");
    s.TipoPlano = QStringLiteral("Fórmulas");
    s.BloqueiaFechar = true;
    for (const char* nome : { "frmGraos", "frmFinalCalculo" })
        h.windows().registerWindow(QString::fromLatin1(nome), []() { return new QWidget; });
}

void escolhe(QWidget* w, const QString& nome, int indice)
{
    auto* lista = find<QComboBox>(w, nome);
    lista->setCurrentIndex(indice);
    Q_EMIT lista->activated(indice);
}

void selecionaFormula(QWidget* w, const QString& formula)
{
    auto* grade = find<QTableWidget>(w, QStringLiteral("flxNPK"));
    for (int r = 0; r < grade->rowCount(); ++r) {
        if (grade->item(r, flx::kFormula)->text() == formula)
            grade->setCurrentCell(r, flx::kFormula);
    }
}

void selecionaFonte(QWidget* w, const QString& nome)
{
    auto* grade = find<QTableView>(w, QStringLiteral("dtGrid"));
    for (int r = 0; r < grade->model()->rowCount(); ++r) {
        const QModelIndex indice = grade->model()->index(r, fonte::kNome);
        if (indice.data().toString() == nome)
            grade->setCurrentIndex(indice);
    }
}

// frmNPK calculated by equal differences and taken on to the split.
QWidget* ateParcelamento(UiHarness& h)
{
    QWidget* npk = h.open(QStringLiteral("frmNPK"));
    click(npk, QStringLiteral("Opt_2"));
    click(npk, QStringLiteral("cmdCalcula"));
    click(npk, QStringLiteral("cmdProssegue"));
    return h.windows().window(QStringLiteral("frmParcelaN"));
}

} // namespace

// The formula step and the split of its nitrogen. Modes, doses, status labels and the slots are
// tests/plan/formulas_test.cpp's, parcels and sources tests/plan/split_test.cpp's.
class PlanWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void formulaStepCalculatesTheChosenRowAndMode()
    {
        MachineLocale comma(commaLocale());
        UiHarness h;
        preparaSessao(h, 20, 40, 40, 90);
        QWidget* w = h.open(QStringLiteral("frmNPK"));
        auto* grade = find<QTableWidget>(w, QStringLiteral("flxNPK"));
        QCOMPARE(grade->rowCount(), 1);
        click(w, QStringLiteral("cmdCalcula"));
        QCOMPARE(h.texts(), QStringList { kMsgSemModo });
        QCOMPARE(h.boxes.last().icone, ui::Icone::Exclamacao);

        // With no row chosen nothing is calculated, not even with the row that was current.
        click(w, QStringLiteral("Opt_2"));
        grade->clearSelection();
        click(w, QStringLiteral("cmdCalcula"));
        QCOMPARE(h.texts().last(), kMsgSemFertilizante);
        QVERIFY(text(w, QStringLiteral("txtFormula")).isEmpty());
        selecionaFormula(w, QStringLiteral("10-20-20"));
        click(w, QStringLiteral("cmdCalcula"));
        QCOMPARE(texts(w, { "txtFormula", "txtCusto", "txtForn_2" }), QStringList({ "200", "600,00", "40" }));
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblAv_1"))->text(), kIdeal);

        // Another mode empties the results.
        click(w, QStringLiteral("Opt_0"));
        QVERIFY(text(w, QStringLiteral("txtFormula")).isEmpty());
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblAv_1"))->text(), kAcimaDoNormal);
        click(w, QStringLiteral("optTodos"));
        QCOMPARE(grade->rowCount(), 4);
    }

    void supplyOffTheNeedIsRedAndAsksBeforeGoingOn()
    {
        MachineLocale comma(commaLocale());
        UiHarness h;
        preparaSessao(h, 0, 40, 60, 90);
        QWidget* w = h.open(QStringLiteral("frmNPK"));
        click(w, QStringLiteral("optTodos"));
        selecionaFormula(w, QStringLiteral("10-20-20"));
        click(w, QStringLiteral("Opt_0"));
        click(w, QStringLiteral("cmdCalcula"));
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblAv_0"))->text(), kNaoRequer);
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblAv_0"))->palette().color(QPalette::WindowText), QColor(Qt::red));
        QVERIFY(find<QLabel>(w, QStringLiteral("lblAv_1"))->palette().color(QPalette::WindowText) != QColor(Qt::red));

        click(w, QStringLiteral("cmdProssegue"));  // Yes
        QVERIFY(h.texts().last().startsWith(QStringLiteral("A necessidade de N, P e K é de   0--40--60 kg/ha")));
        QCOMPARE(h.session().Dados[12], QVariant(QStringLiteral("10-20-20")));
        QVERIFY(!w->isVisible());
        QVERIFY(h.windows().window(QStringLiteral("frmParcelaN"))->isVisible());
    }

    void splitRefusesAndItsSourcesWipeTheParcels()
    {
        MachineLocale comma(commaLocale());
        UiHarness h;
        preparaSessao(h, 20, 40, 40, 90);
        QWidget* p = ateParcelamento(h);
        QVERIFY(p && p->isVisible());
        QCOMPARE(texts(p, { "txtFnt", "txtCusto" }), QStringList({ "200", "709,50" }));
        escolhe(p, QStringLiteral("cboN_Vezes"), 2);
        escolhe(p, QStringLiteral("cboPorc_0"), 9); // 50 %
        escolhe(p, QStringLiteral("cboPorc_1"), 8); // 45 %
        QCOMPARE(text(p, QStringLiteral("txtDose_1")), QStringLiteral("90"));
        fill(p, { { "txtEpoca_0", "Perfilhamento" }, { "txtEpoca_1", "Emborrachamento" } });
        click(p, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.texts().last(), kMsgSomaMenor);
        QCOMPARE(h.session().Dados[18], QVariant(0));
        QVERIFY(p->isVisible());

        // The step prices with the sources it opened with, as the rest of the session does; a price
        // changed in the register meanwhile counts from chkTodas or a new opening on.
        h.exec(QStringLiteral("UPDATE NPK SET [R$/t] = 5000 WHERE Especificação = 'Ureia'"));
        ChangeNotifier::instance().notify(QStringLiteral("NPK"));
        QCOMPARE(text(p, QStringLiteral("txtCusto")), QStringLiteral("709,50"));
        click(p, QStringLiteral("chkTodas"));
        QCOMPARE(find<QTableView>(p, QStringLiteral("dtGrid"))->model()->rowCount(), 4);
        selecionaFonte(p, QStringLiteral("Ureia"));
        QCOMPARE(text(p, QStringLiteral("txtCusto")), QStringLiteral("1000,00"));

        // Another source wipes the parcels and its dose.
        escolhe(p, QStringLiteral("cboN_Vezes"), 1);
        escolhe(p, QStringLiteral("cboPorc_0"), 19);
        type(p, QStringLiteral("txtEpoca_0"), QStringLiteral("V4"));
        selecionaFonte(p, QStringLiteral("Cloreto de potássio"));
        QCOMPARE(find<QComboBox>(p, QStringLiteral("cboPorc_0"))->currentIndex(), -1);
        QVERIFY(text(p, QStringLiteral("txtEpoca_0")).isEmpty());
        QVERIFY(text(p, QStringLiteral("txtFnt")).isEmpty());
    }

    void recalculatedFormulaReloadsTheSplit()
    {
        UiHarness h;
        preparaSessao(h, 20, 40, 40, 90);
        QPointer<QWidget> p = ateParcelamento(h);
        escolhe(p, QStringLiteral("cboN_Vezes"), 2);

        // Back and on again without a new calculation: the split keeps what it holds.
        click(p, QStringLiteral("cmdRetorna"));
        QWidget* npk = h.windows().window(QStringLiteral("frmNPK"));
        click(npk, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.windows().window(QStringLiteral("frmParcelaN")), p.data());
        QCOMPARE(find<QComboBox>(p, QStringLiteral("cboN_Vezes"))->currentIndex(), 2);

        click(p, QStringLiteral("cmdRetorna"));
        click(npk, QStringLiteral("cmdCalcula"));
        click(npk, QStringLiteral("cmdProssegue"));
        QTRY_VERIFY(p.isNull());
        QWidget* novo = h.windows().window(QStringLiteral("frmParcelaN"));
        QVERIFY(novo && novo->isVisible());
        QCOMPARE(find<QComboBox>(novo, QStringLiteral("cboN_Vezes"))->currentIndex(), 0);
    }

    void forestDressingHandsItsRowsToThePlan()
    {
        MachineLocale comma(commaLocale());
        UiHarness h;
        preparaSessao(h, 20, 40, 40, 0);
        Session& s = h.session();
        s.Grupo = 4;
        s.NomeGrupo = QStringLiteral("Essências Florestais");
        s.EtapaFlorest = 3;
        h.windows().registerWindow(QStringLiteral("frmNPKFlorest"), [&s]() { return new PlanoFlorestalFalso(s.eventos); });
        auto* plano = dynamic_cast<PlanoFlorestalFalso*>(h.open(QStringLiteral("frmNPKFlorest")));

        QVERIFY(!ateParcelamento(h));
        QCOMPARE(plano->etapa, 3);
        QCOMPARE(plano->linhas.value(1).value(0), QStringLiteral("10-20-20"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmNPK")));

        // Its "Fechar" only closes it, with no question.
        click(h.open(QStringLiteral("frmNPK")), QStringLiteral("cmdCancel"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmNPK")));
        QVERIFY(h.windows().window(QStringLiteral("frmNPKFlorest")));
        QCOMPARE(h.boxes.size(), 0);
    }
};

QTEST_MAIN(PlanWindowTest)
#include "plan_window_test.moc"
