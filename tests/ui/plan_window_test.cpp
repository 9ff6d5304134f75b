#include "app/session.h"
#include "plan/formulas.h"
#include "plan/split.h"
#include "app/events.h"
#include "plan/ui/planstep.h"
#include "store/changenotifier.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
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

QString texto(QWidget* w, const QString& nome)
{
    return find<QLineEdit>(w, nome)->text();
}
QLabel* rotulo(QWidget* w, const QString& nome)
{
    return find<QLabel>(w, nome);
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

class PlanWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void formulaStepCalculatesTheChosenMode()
    {
        MachineLocale comma(commaLocale());
        UiHarness h;
        preparaSessao(h, 20, 40, 40, 90);
        QWidget* w = h.open(QStringLiteral("frmNPK"));
        QCOMPARE(find<QGroupBox>(w, QStringLiteral("fr1"))->title(),
            QStringLiteral(
                "Necessidade NPK na Base é de: 20 _ 40 _ 40. A Relação P/K da Necessidade é de: 1,00"));
        auto* grade = find<QTableWidget>(w, QStringLiteral("flxNPK"));
        QCOMPARE(grade->rowCount(), 1);
        QCOMPARE(grade->currentRow(), 0);
        for (int coluna : { 0, flx::kN, flx::kP, flx::kK, flx::kEficN })
            QVERIFY(grade->isColumnHidden(coluna));
        QCOMPARE(rotulo(w, QStringLiteral("lblAv_0"))->text(), kAcimaDoNormal);

        h.session().RefazPlano = 0;
        click(w, QStringLiteral("cmdCalcula"));
        QCOMPARE(h.texts(), QStringList { kMsgSemModo });
        QCOMPARE(h.boxes.last().icone, ui::Icone::Exclamacao);
        QCOMPARE(h.session().RefazPlano, std::int16_t(1));

        // With no row chosen nothing is calculated, not even with the row that was current.
        click(w, QStringLiteral("Opt_2"));
        grade->clearSelection();
        click(w, QStringLiteral("cmdCalcula"));
        QCOMPARE(h.texts().last(), kMsgSemFertilizante);
        QVERIFY(texto(w, QStringLiteral("txtFormula")).isEmpty());
        selecionaFormula(w, QStringLiteral("10-20-20"));
        click(w, QStringLiteral("cmdCalcula"));
        QCOMPARE(texto(w, QStringLiteral("txtFormula")), QStringLiteral("200"));
        QCOMPARE(texto(w, QStringLiteral("txtCusto")), QStringLiteral("600,00"));
        QCOMPARE(texto(w, QStringLiteral("txtForn_2")), QStringLiteral("40"));
        QCOMPARE(rotulo(w, QStringLiteral("lblAv_1"))->text(), kIdeal);

        // Another mode, or all the fertilisers, empties the results.
        click(w, QStringLiteral("Opt_0"));
        QVERIFY(texto(w, QStringLiteral("txtFormula")).isEmpty());
        QCOMPARE(rotulo(w, QStringLiteral("lblAv_1"))->text(), kAcimaDoNormal);
        click(w, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.texts().last(), kMsgSemCalculo);
        click(w, QStringLiteral("optTodos"));
        QCOMPARE(grade->rowCount(), 4);
    }

    void supplyOffTheNeedIsRedAndAsksBeforeSaving()
    {
        MachineLocale comma(commaLocale());
        UiHarness h;
        preparaSessao(h, 0, 40, 60, 90);
        QWidget* w = h.open(QStringLiteral("frmNPK"));
        click(w, QStringLiteral("optTodos"));
        selecionaFormula(w, QStringLiteral("10-20-20"));
        click(w, QStringLiteral("Opt_0"));
        click(w, QStringLiteral("cmdCalcula"));
        QCOMPARE(rotulo(w, QStringLiteral("lblAv_0"))->text(), kNaoRequer);
        QCOMPARE(
            rotulo(w, QStringLiteral("lblAv_0"))->palette().color(QPalette::WindowText), QColor(Qt::red));
        QVERIFY(
            rotulo(w, QStringLiteral("lblAv_1"))->palette().color(QPalette::WindowText) != QColor(Qt::red));

        h.answers << QMessageBox::No;
        click(w, QStringLiteral("cmdProssegue"));
        QVERIFY(
            h.texts().last().startsWith(QStringLiteral("A necessidade de N, P e K é de   0--40--60 kg/ha")));
        QVERIFY(w->isVisible());
        QCOMPARE(h.session().Dados[12], QVariant(0));

        click(w, QStringLiteral("cmdProssegue")); // Yes
        QCOMPARE(h.session().Dados[12], QVariant(QStringLiteral("10-20-20")));
        QVERIFY(!w->isVisible());
        QVERIFY(h.windows().window(QStringLiteral("frmParcelaN"))->isVisible());
    }

    void emptyIndicatedListSaysWhyInTheFrame()
    {
        // No formula of the register comes within 10 kg/ha of this need.
        UiHarness h;
        preparaSessao(h, 100, 0, 100, 90);
        QWidget* w = h.open(QStringLiteral("frmNPK"));
        QCOMPARE(find<QTableWidget>(w, QStringLiteral("flxNPK"))->rowCount(), 0);
        QVERIFY(rotulo(w, QStringLiteral("lblSemFormulas"))->isVisible());
        click(w, QStringLiteral("Opt_2"));
        click(w, QStringLiteral("cmdCalcula"));
        QCOMPARE(h.texts(), QStringList { kMsgSemIndicados });
        click(w, QStringLiteral("optTodos"));
        QVERIFY(!rotulo(w, QStringLiteral("lblSemFormulas"))->isVisible());
    }

    void splitChecksTheParcelsAndWritesTheBlock()
    {
        MachineLocale comma(commaLocale());
        UiHarness h;
        preparaSessao(h, 20, 40, 40, 90);
        QWidget* p = ateParcelamento(h);
        QVERIFY(p && p->isVisible());
        QCOMPARE(rotulo(p, QStringLiteral("lblNec"))->text(), QStringLiteral("Necessidade de N = 90 kg/ha"));
        QCOMPARE(find<QTableView>(p, QStringLiteral("dtGrid"))->model()->rowCount(), 1);
        QCOMPARE(texto(p, QStringLiteral("txtFnt")), QStringLiteral("200"));
        QCOMPARE(texto(p, QStringLiteral("txtCusto")), QStringLiteral("709,50"));
        QVERIFY(!find<QComboBox>(p, QStringLiteral("cboPorc_0"))->isEnabled());

        escolhe(p, QStringLiteral("cboN_Vezes"), 2);
        QVERIFY(find<QComboBox>(p, QStringLiteral("cboPorc_1"))->isEnabled());
        QVERIFY(!find<QLineEdit>(p, QStringLiteral("txtEpoca_2"))->isEnabled());
        escolhe(p, QStringLiteral("cboPorc_0"), 9); // 50 %
        escolhe(p, QStringLiteral("cboPorc_1"), 8); // 45 %
        QCOMPARE(texto(p, QStringLiteral("txtDose_1")), QStringLiteral("90"));
        type(p, QStringLiteral("txtEpoca_0"), QStringLiteral("Perfilhamento"));
        type(p, QStringLiteral("txtEpoca_1"), QStringLiteral("Emborrachamento"));
        // A refusal of the logic reaches the box and writes nothing.
        click(p, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.texts().last(), kMsgSomaMenor);
        QCOMPARE(h.session().Dados[18], QVariant(0));

        escolhe(p, QStringLiteral("cboPorc_1"), 9);
        click(p, QStringLiteral("cmdProssegue"));
        QVERIFY(!p->isVisible());
        QVERIFY(h.windows().window(QStringLiteral("frmFinalCalculo"))->isVisible());
        const Session& s = h.session();
        QCOMPARE(s.Dados[18], QVariant(QStringLiteral("Ureia")));
        QCOMPARE(s.Dados[27], QVariant(QStringLiteral("Emborrachamento")));
        QCOMPARE(s.JanelaAnterior, QStringLiteral("frmParcelaN"));
    }

    void sourcesOfTheSplit()
    {
        MachineLocale comma(commaLocale());
        UiHarness h;
        preparaSessao(h, 20, 40, 40, 90);
        h.session().PlanoNum = 1;
        QWidget* p = h.open(QStringLiteral("frmParcelaN"));
        // The step prices with the sources it opened with, as the rest of the session does; a price
        // changed in the register meanwhile counts from chkTodas or a new opening on.
        QCOMPARE(texto(p, QStringLiteral("txtCusto")), QStringLiteral("709,50"));
        h.exec(QStringLiteral("UPDATE NPK SET [R$/t] = 5000 WHERE Especificação = 'Ureia'"));
        ChangeNotifier::instance().notify(QStringLiteral("NPK"));
        QCOMPARE(texto(p, QStringLiteral("txtCusto")), QStringLiteral("709,50"));
        click(p, QStringLiteral("chkTodas"));
        QCOMPARE(find<QTableView>(p, QStringLiteral("dtGrid"))->model()->rowCount(), 4);
        selecionaFonte(p, QStringLiteral("Ureia"));
        QCOMPARE(texto(p, QStringLiteral("txtCusto")), QStringLiteral("1000,00"));

        // Another source wipes the parcels and its dose.
        escolhe(p, QStringLiteral("cboN_Vezes"), 1);
        escolhe(p, QStringLiteral("cboPorc_0"), 19);
        type(p, QStringLiteral("txtEpoca_0"), QStringLiteral("V4"));
        selecionaFonte(p, QStringLiteral("Cloreto de potássio"));
        QCOMPARE(find<QComboBox>(p, QStringLiteral("cboPorc_0"))->currentIndex(), -1);
        QVERIFY(texto(p, QStringLiteral("txtEpoca_0")).isEmpty());
        QCOMPARE(find<QComboBox>(p, QStringLiteral("cboN_Vezes"))->currentIndex(), 1);
        QVERIFY(texto(p, QStringLiteral("txtFnt")).isEmpty());
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
        QVERIFY(npk->isVisible() && !p->isVisible());
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

    void backAndCancel()
    {
        UiHarness h;
        preparaSessao(h, 20, 40, 40, 90);
        QWidget* w = h.open(QStringLiteral("frmNPK"));
        click(w, QStringLiteral("cmdRetorna"));
        QVERIFY(!w->isVisible());
        QVERIFY(h.windows().window(QStringLiteral("frmGraos"))->isVisible());

        // A crop window the program does not have yet: the step says so and stays.
        h.open(QStringLiteral("frmNPK"));
        h.session().NomeGrupo = QStringLiteral("Hortaliças");
        click(w, QStringLiteral("cmdRetorna"));
        QCOMPARE(h.texts().last(), ui::kMsgIndisponivel);
        QVERIFY(w->isVisible());

        click(w, QStringLiteral("cmdCancel"));
        QCOMPARE(h.texts().last(), QStringLiteral("Está certo que quer cancelar?"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmNPK")));
        QVERIFY(!h.windows().window(QStringLiteral("frmGraos")));
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

        QWidget* w = ateParcelamento(h);
        QVERIFY(!w);
        QCOMPARE(plano->etapa, 3);
        QCOMPARE(plano->linhas.value(1).value(0), QStringLiteral("10-20-20"));
        QCOMPARE(s.CustoEtapa3, 1500.0);
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmNPK")));

        // Its "Fechar" and its way back only close it, with no question.
        for (const char* botao : { "cmdCancel", "cmdRetorna" }) {
            QWidget* npk = h.open(QStringLiteral("frmNPK"));
            QCOMPARE(find<QAbstractButton>(npk, QStringLiteral("cmdCancel"))->text(), QStringLiteral("Fechar"));
            QVERIFY(!find<QAbstractButton>(npk, QStringLiteral("cmdFormular"))->isEnabled());
            click(npk, QString::fromLatin1(botao));
            QTRY_VERIFY(!h.windows().window(QStringLiteral("frmNPK")));
        }
        QVERIFY(h.windows().window(QStringLiteral("frmNPKFlorest")));
        QCOMPARE(h.boxes.size(), 0);
    }
};

QTEST_MAIN(PlanWindowTest)
#include "plan_window_test.moc"
