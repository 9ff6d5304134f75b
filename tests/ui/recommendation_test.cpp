#include "app/session.h"
#include "app/ui/frmlavra.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "calc/crops.h"
#include "registers/analysis.h"
#include "store/cursormodel.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QTableView>
#include <QTableWidget>

using namespace lavra;
using namespace lavra::test;

// Whole recommendations, from "Calcular Recomendação" to the saved row, through the windows by
// name, on a database with the shipped manual tables.
class RecommendationTest : public QObject {
    Q_OBJECT

private:
    // Registers a client and an analysis as the analysis register would.
    static void cadastraAnalise(UiHarness& h)
    {
        h.exec(QStringLiteral("INSERT INTO Clientes VALUES ('Ana Prado', 'Linha Sete', 'Erechim', '5433210000', 'ana@exemplo.com')"));
        CamposAnalise c;
        c.cliente = QStringLiteral("Ana Prado");
        c.local = QStringLiteral("Erechim");
        c.fazenda = QStringLiteral("Santa Rita");
        c.gleba = QStringLiteral("Coxilha");
        c.data = QStringLiteral("15/08/2026");
        c.area = QStringLiteral("10");
        c.numAnalise = QStringLiteral("1234");
        c.pH = QStringLiteral("5,2");
        c.ca = QStringLiteral("3");
        c.mg = QStringLiteral("1,2");
        c.al = QStringLiteral("0,4");
        c.hAl = QStringLiteral("4,5");
        c.smp = QStringLiteral("5,6");
        c.mo = QStringLiteral("3");
        c.argila = QStringLiteral("45");
        c.p = QStringLiteral("8");
        c.k = QStringLiteral("90");
        const auto ctc = CalculaCTC(c.ca, c.mg, c.hAl, c.k);
        c.ctc = ctc->ctc;
        c.bases = ctc->bases;
        c.mehlich = true;
        EntradaCadastro entrada{c, kCadastro, {}};
        ResultadoCadastro r = CadastraAnalise(h.session().db, entrada);
        while (r.desfecho && r.desfecho->tipo == TipoDesfecho::Pergunta) {
            entrada.resposta = Resposta::Sim;
            r = CadastraAnalise(h.session().db, entrada);
        }
        QVERIFY(!r.desfecho);
    }

    static QWidget* visible(UiHarness& h, const QString& name)
    {
        QWidget* w = h.windows().window(name);
        if (!w || !w->isVisible())
            qWarning() << "not on screen:" << name;
        return w;
    }

    static void combo(QWidget* w, const QString& name, const QString& text)
    {
        auto* box = find<QComboBox>(w, name);
        const int index = box->findText(text);
        QVERIFY2(index >= 0, qPrintable(text));
        box->setCurrentIndex(index);
        Q_EMIT box->activated(index);
    }

    static void combo(QWidget* w, const QString& name, int index)
    {
        auto* box = find<QComboBox>(w, name);
        box->setCurrentIndex(index);
        Q_EMIT box->activated(index);
    }

    static void gridRow(QWidget* w, const QString& grid, int column, const QString& text)
    {
        auto* view = find<QTableView>(w, grid);
        for (int r = 0; r < view->model()->rowCount(); ++r) {
            const QModelIndex index = view->model()->index(r, column);
            if (index.data().toString() == text) {
                view->setCurrentIndex(index);
                QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(index).center());
                return;
            }
        }
        QFAIL(qPrintable(QStringLiteral("no row %1 in %2").arg(text, grid)));
    }

    static QStringList nec(QWidget* w)
    {
        QStringList texts;
        for (int i = 0; i < 4; ++i)
            texts << find<QLineEdit>(w, QStringLiteral("txtNec_%1").arg(i))->text();
        return texts;
    }

    // From the main window to the grain window, with lime by SMP on conventional tillage.
    static QWidget* ateGraos(UiHarness& h)
    {
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        click(main, QStringLiteral("cmdCalc"));
        QWidget* cliAn = visible(h, QStringLiteral("frmCliAn"));
        find<QTableWidget>(cliAn, QStringLiteral("flxCli"))->setCurrentCell(0, 0);
        find<QListWidget>(cliAn, QStringLiteral("lstAna"))->setCurrentRow(0);
        click(cliAn, QStringLiteral("cmdContinua"));

        QWidget* grupo = visible(h, QStringLiteral("frmGrupCult"));
        find<QListWidget>(grupo, QStringLiteral("lstGrupo"))->setCurrentRow(0);
        find<QRadioButton>(grupo, QStringLiteral("Option1_0"))->setChecked(true);
        click(grupo, QStringLiteral("cmdVai"));

        QWidget* calagem = visible(h, QStringLiteral("frmCalagem"));
        combo(calagem, QStringLiteral("cboSistemas"), QStringLiteral("Sistema convencional"));
        click(calagem, QStringLiteral("optSMP"));
        gridRow(calagem, QStringLiteral("dtgCalc"), 0, QStringLiteral("Calcário dolomítico"));
        click(calagem, QStringLiteral("cmdCalc"));
        click(calagem, QStringLiteral("cmdProssegue"));
        return visible(h, QStringLiteral("frmGraos"));
    }

    // Formula by equal differences, one to eight parcels of urea, and the date.
    static void plano(UiHarness& h, bool topdressing, const QString& date, bool showReport = false)
    {
        QWidget* npk = visible(h, QStringLiteral("frmNPK"));
        click(npk, QStringLiteral("Opt_2"));
        click(npk, QStringLiteral("cmdCalcula"));
        click(npk, QStringLiteral("cmdProssegue"));
        QWidget* split = visible(h, QStringLiteral("frmParcelaN"));
        if (topdressing) {
            gridRow(split, QStringLiteral("dtGrid"), 1, QStringLiteral("Ureia"));
            combo(split, QStringLiteral("cboN_Vezes"), 2);
            combo(split, QStringLiteral("cboPorc_0"), QStringLiteral("50 %"));
            combo(split, QStringLiteral("cboPorc_1"), QStringLiteral("50 %"));
            type(split, QStringLiteral("txtEpoca_0"), QStringLiteral("V4"));
            type(split, QStringLiteral("txtEpoca_1"), QStringLiteral("V8"));
        }
        click(split, QStringLiteral("cmdProssegue"));
        QWidget* final = visible(h, QStringLiteral("frmFinalCalculo"));
        type(final, QStringLiteral("MaskEdBox1"), date);
        h.answers << (showReport ? QMessageBox::Yes : QMessageBox::No);
        click(final, QStringLiteral("cmdSalva"));
    }

    static QStringList savedRow(UiHarness& h)
    {
        Store db(h.databasePath());
        db.AbreTabela(QStringLiteral("SELECT * FROM RecoForm;"));
        db.rs.moveLast();
        QStringList cells;
        for (int c = 0; c < db.rs.columnCount(); ++c)
            cells << db.rs.columnName(c) + QLatin1Char('=') + cellText(db.rs.value(c));
        db.fecha();
        return cells;
    }

private Q_SLOTS:
    void init() { setMachineLocale(commaLocale()); }
    void cleanup() { resetMachineLocale(); }

    void maizeWithAStepBackAndARecalculation()
    {
        UiHarness h;
        cadastraAnalise(h);
        QWidget* graos = ateGraos(h);
        find<QListWidget>(graos, QStringLiteral("lstCulturas"))->setCurrentRow(graos::Milho);
        find<QListWidget>(graos, QStringLiteral("lstCultAnt"))->setCurrentRow(0);
        type(graos, QStringLiteral("txtExpect"), QStringLiteral("8"));
        type(graos, QStringLiteral("txtMS"), QStringLiteral("3"));
        click(graos, QStringLiteral("cmdCalc"));
        const QStringList first = nec(graos);
        QVERIFY(!first[0].isEmpty());

        // Back to the liming and forward again: the grain window is as it was.
        click(graos, QStringLiteral("cmdRetorna"));
        QWidget* calagem = visible(h, QStringLiteral("frmCalagem"));
        click(calagem, QStringLiteral("cmdProssegue"));
        QCOMPARE(visible(h, QStringLiteral("frmGraos")), graos);
        QCOMPARE(nec(graos), first);

        click(graos, QStringLiteral("cmdProssegue"));
        QVERIFY(visible(h, QStringLiteral("frmNPK")));
        // A higher yield is recalculated; the plan opened before is stale and starts afresh.
        QWidget* staleNpk = h.windows().window(QStringLiteral("frmNPK"));
        staleNpk->hide();
        h.windows().show(QStringLiteral("frmGraos"));
        type(graos, QStringLiteral("txtExpect"), QStringLiteral("10"));
        click(graos, QStringLiteral("cmdCalc"));
        QVERIFY(nec(graos) != first);
        qInfo().noquote() << "Maize need (N base, P2O5, K2O, N topdressing):" << nec(graos).join(QStringLiteral(" | "));
        click(graos, QStringLiteral("cmdProssegue"));
        QTRY_VERIFY(h.windows().window(QStringLiteral("frmNPK")) != staleNpk);

        plano(h, true, QStringLiteral("15/10/2026"));
        const QStringList row = savedRow(h);
        qInfo().noquote() << "Maize recommendation:" << row.join(QStringLiteral(" | "));
        QCOMPARE(row[1], QStringLiteral("CodCultivo=Milho-Primeiro-15/10/2026"));
        QCOMPARE(row[2], QStringLiteral("Cultura=Milho"));
        QCOMPARE(row[5], QStringLiteral("Expectativa=10"));
        QCOMPARE(row[6], QStringLiteral("CalcFonte=Calcário dolomítico"));
        QCOMPARE(row[18], QStringLiteral("BaseCustoTotal=22106,7"));
        QCOMPARE(row[19], QStringLiteral("CobFonte=Ureia"));
        QCOMPARE(row[26], QStringLiteral("Parc1Epoca=V4"));
        QVERIFY(row[43] == QStringLiteral("Info="));
        // The total is the sum of the three costs, kept to the cent.
        const Session& s = h.session();
        QCOMPARE(row[41], QStringLiteral("CustoTotal=") + numberText(parseNumber(FormataNumero(s.CustoBase + s.CustoCalcario + s.CustoN, 2)).value()));
        QCOMPARE(h.windows().openWindows(), QStringList{QStringLiteral("frmLavra")});
    }

    void soybeanWithoutTopdressing()
    {
        UiHarness h;
        cadastraAnalise(h);
        QWidget* graos = ateGraos(h);
        find<QListWidget>(graos, QStringLiteral("lstCulturas"))->setCurrentRow(graos::Soja);
        type(graos, QStringLiteral("txtExpect"), QStringLiteral("4"));
        click(graos, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(graos)[0], QStringLiteral("0"));
        QCOMPARE(nec(graos)[3], QStringLiteral("0"));
        click(graos, QStringLiteral("cmdProssegue"));
        h.exec(QStringLiteral("INSERT INTO Empresa VALUES ('AgroSul', 'Rua A', '1', '99700-000', 'Erechim', 'Centro', 'RS', '5433', 'a@b', 'agrosul.com')"));
        plano(h, false, QStringLiteral("20/11/2026"), true);
        // "Exibir o laudo?" answered Yes: the report of the saved row, with its observations window.
        QWidget* report = visible(h, QStringLiteral("rptLdForml"));
        QVERIFY(report);
        QVERIFY(visible(h, QStringLiteral("frmObsLaudo")));
        QCOMPARE(h.session().LaudoCultivo, QStringLiteral("Soja-Primeiro-20/11/2026"));
        const QStringList row = savedRow(h);
        qInfo().noquote() << "Soybean recommendation:" << row.join(QStringLiteral(" | "));
        QCOMPARE(row[1], QStringLiteral("CodCultivo=Soja-Primeiro-20/11/2026"));
        QCOMPARE(row[19], QStringLiteral("CobFonte=0"));
        QCOMPARE(row[24], QStringLiteral("CobCustoTotal=0"));
    }
};

QTEST_MAIN(RecommendationTest)
#include "recommendation_test.moc"
