#include "app/session.h"
#include "app/ui/frmlavra.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "calc/crops.h"
#include "calc/cropstep.h"
#include "calc/ornamentals.h"
#include "plan/formulation.h"
#include "registers/analysis.h"
#include "report/laudo.h"
#include "report/ui/reportview.h"
#include "store/cursormodel.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
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
    // Registers a client and the analysis of the end-to-end runs.
    static void cadastraAnalise(UiHarness& h)
    {
        h.exec(QStringLiteral("INSERT INTO Clientes VALUES ('Ana Prado', 'Linha Sete', 'Erechim', '5433210000', 'ana@exemplo.com')"));
        test::cadastraAnalise(h, analiseDeExemplo());
    }

    // The company the report is signed for.
    static void cadastraEmpresa(UiHarness& h)
    {
        h.exec(QStringLiteral("INSERT INTO Empresa VALUES ('AgroSul', 'Rua A', '1', '99700-000', 'Erechim', 'Centro', 'RS', '5433', 'a@b', 'agrosul.com')"));
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

    // From the main window to the crop window of the group at that row of lstGrupo, first
    // crop, with lime by SMP on the system given.
    static QWidget* ateCultura(UiHarness& h, int grupo, const QString& sistema, const QString& janela)
    {
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        click(main, QStringLiteral("cmdCalc"));
        QWidget* cliAn = visible(h, QStringLiteral("frmCliAn"));
        find<QTableWidget>(cliAn, QStringLiteral("flxCli"))->setCurrentCell(0, 0);
        find<QListWidget>(cliAn, QStringLiteral("lstAna"))->setCurrentRow(0);
        click(cliAn, QStringLiteral("cmdContinua"));

        QWidget* grupos = visible(h, QStringLiteral("frmGrupCult"));
        find<QListWidget>(grupos, QStringLiteral("lstGrupo"))->setCurrentRow(grupo);
        // Only the first three groups ask for the crop order.
        if (grupo <= 2)
            find<QRadioButton>(grupos, QStringLiteral("Option1_0"))->setChecked(true);
        click(grupos, QStringLiteral("cmdVai"));

        QWidget* calagem = visible(h, QStringLiteral("frmCalagem"));
        combo(calagem, QStringLiteral("cboSistemas"), sistema);
        click(calagem, QStringLiteral("optSMP"));
        gridRow(calagem, QStringLiteral("dtgCalc"), 0, QStringLiteral("Calcário dolomítico"));
        click(calagem, QStringLiteral("cmdCalc"));
        click(calagem, QStringLiteral("cmdProssegue"));
        return visible(h, janela);
    }

    static QWidget* ateGraos(UiHarness& h)
    {
        return ateCultura(h, 0, QStringLiteral("Sistema convencional"), QStringLiteral("frmGraos"));
    }

    // frmAjusta from the crop window, every box filled, the note agreed to.
    static void ajusta(UiHarness& h, QWidget* cultura, const QStringList& valores)
    {
        click(cultura, QStringLiteral("cmdAjusta"));
        QWidget* ajuste = visible(h, QStringLiteral("frmAjusta"));
        fill(ajuste, { { "txtNB2", valores[0] }, { "txtPB2", valores[1] }, { "txtKB2", valores[2] },
                         { "txtNC2", valores[3] } });
        h.answers << QMessageBox::Yes;
        click(ajuste, QStringLiteral("cmdAplica"));
        QVERIFY(!ajuste->isVisible());
    }

    // The page of the report on screen, as text.
    static QString laudo(UiHarness& h, const QString& janela = QStringLiteral("rptLdForml"))
    {
        auto* report = qobject_cast<ui::JanelaLaudo*>(visible(h, janela));
        return report ? report::textoPagina(report->pagina()) : QString();
    }

    // Formula by equal differences, one to eight parcels of urea, and the date.
    static void plano(UiHarness& h, bool topdressing, const QString& date, bool showReport = false)
    {
        QWidget* npk = visible(h, QStringLiteral("frmNPK"));
        click(npk, QStringLiteral("Opt_2"));
        click(npk, QStringLiteral("cmdCalcula"));
        click(npk, QStringLiteral("cmdProssegue"));
        parcelamento(h, topdressing, date, showReport);
    }

    // From the split on: two parcels of urea or none, the date, the save.
    static void parcelamento(UiHarness& h, bool topdressing, const QString& date, bool showReport)
    {
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
        salva(h, date, showReport);
    }

    // The nine boxes of a forest need, or of its adjustment.
    static QStringList nove(QWidget* w, const QString& prefixo = QStringLiteral("txtNec_"))
    {
        QStringList texts;
        for (int i = 0; i < 9; ++i)
            texts << find<QLineEdit>(w, prefixo + QString::number(i))->text();
        return texts;
    }

    // The headings of a forest grid after its first.
    inline static const QString kCabecalho
        = QStringLiteral("#Preço (R$/t)#Dosagem (kg/ha)#Custo (R$/ha)#Quantidade (kg)#Custo total (R$)");

    // A grid of the forest plan, a row per line, cells joined with "#" as they are saved.
    static QStringList gradeFlorestal(QWidget* plano, int etapa)
    {
        auto* grid = find<QTableWidget>(plano, QStringLiteral("flxG%1").arg(etapa));
        QStringList rows;
        for (int r = 0; r < grid->rowCount(); ++r) {
            QStringList cells;
            for (int c = 0; c < grid->columnCount(); ++c)
                cells << grid->item(r, c)->text();
            rows << cells.join(QLatin1Char('#'));
        }
        return rows;
    }

    // The date and the save of the final step.
    static void salva(UiHarness& h, const QString& date, bool showReport)
    {
        QWidget* final = visible(h, QStringLiteral("frmFinalCalculo"));
        type(final, QStringLiteral("MaskEdBox1"), date);
        h.answers << (showReport ? QMessageBox::Yes : QMessageBox::No);
        click(final, QStringLiteral("cmdSalva"));
    }

    static QStringList savedRow(UiHarness& h, const QString& tabela = QStringLiteral("RecoForm"))
    {
        Store db(h.databasePath());
        db.AbreTabela(QStringLiteral("SELECT * FROM %1;").arg(tabela));
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
        // The grain window takes the adjusted figures as well; here the user only confirms them.
        const QStringList calculada = nec(graos);
        ajusta(h, graos, calculada);
        QCOMPARE(nec(graos), calculada);
        click(graos, QStringLiteral("cmdProssegue"));
        cadastraEmpresa(h);
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
        QCOMPARE(row[42], QStringLiteral("Aviso=") + kObsAjuste);
        QVERIFY(laudo(h).contains(kObsAjuste));
    }

    void vegetablesWithAYieldClass()
    {
        UiHarness h;
        cadastraAnalise(h);
        cadastraEmpresa(h);
        QWidget* hort = ateCultura(h, 1, QStringLiteral("Hortaliças em geral"), QStringLiteral("frmHort"));
        QCOMPARE(hort->windowTitle(), QStringLiteral("Grupo: Hortaliças"));
        auto* cboExpect = find<QComboBox>(hort, QStringLiteral("cboExpect"));
        QVERIFY(!cboExpect->isEnabled());

        // Potato: a class asks for the yield until a number comes; a closed box is an empty answer.
        choose(hort, QStringLiteral("lstCulturas"), 6);
        QCOMPARE(cboExpect->currentIndex(), 0);
        QCOMPARE(cboExpect->itemText(2), QStringLiteral(" > 20"));
        h.clearBoxes();
        h.inputs = QStringList { QString(), QStringLiteral("1.5"), QStringLiteral("25") };
        combo(hort, QStringLiteral("cboExpect"), 2);
        QCOMPARE(h.prompts.size(), 3);
        QCOMPARE(h.prompts[0], QStringLiteral("Entrada de dados: Digite um valor de expectativa de rendimento para a classe  > 20 t/ha"));
        QCOMPARE(h.texts(), QStringList({ QStringLiteral("Forneça a expectativa de rendimento!"), QStringLiteral("Forneça um valor numérico!") }));
        QCOMPARE(h.session().ExpectHort, 25.0f);
        click(hort, QStringLiteral("cmdCalc"));
        // Analysis classes: MO 3, P 3, K 4. Batata2 140 less 10 at planting.
        QCOMPARE(nec(hort), QStringList({ "10", "160", "120", "130" }));

        // A crop without classes leaves the list disabled; tomato asks nothing and carries the
        // potato yield on.
        choose(hort, QStringLiteral("lstCulturas"), 2);
        QVERIFY(!cboExpect->isEnabled());
        QCOMPARE(cboExpect->currentIndex(), -1);
        choose(hort, QStringLiteral("lstCulturas"), 25);
        h.clearBoxes();
        click(hort, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList { QStringLiteral("Informe a expectativa de rendimento!") });
        combo(hort, QStringLiteral("cboExpect"), QStringLiteral("75"));
        QCOMPARE(h.prompts.size(), 3);
        click(hort, QStringLiteral("cmdCalc"));
        qInfo().noquote() << "Tomato need (N base, P2O5, K2O, N topdressing):" << nec(hort).join(QStringLiteral(" | "));
        QCOMPARE(nec(hort), QStringList({ "67", "300", "120", "33" }));

        // The adjustment reaches the vegetable window's boxes and goes on with them.
        ajusta(h, hort, { "50", "300", "150", "40" });
        QCOMPARE(nec(hort), QStringList({ "50", "300", "150", "40" }));
        click(hort, QStringLiteral("cmdProssegue"));
        plano(h, true, QStringLiteral("10/09/2026"), true);
        const QStringList row = savedRow(h);
        qInfo().noquote() << "Tomato recommendation:" << row.join(QStringLiteral(" | "));
        QCOMPARE(row[1], QStringLiteral("CodCultivo=Tomateiro-Primeiro-10/09/2026"));
        QCOMPARE(row[5], QStringLiteral("Expectativa=25"));
        QCOMPARE(row[42], QStringLiteral("Aviso=") + kObsAjuste);
        const QString pagina = laudo(h);
        QVERIFY(pagina.contains(QStringLiteral("Tomateiro")));
        QVERIFY(pagina.contains(kObsAjuste));
    }

    void caneWithTheAdjustmentNoteOnly()
    {
        UiHarness h;
        cadastraAnalise(h);
        cadastraEmpresa(h);
        QWidget* cana = ateCultura(h, 6, QStringLiteral("Cana-de-açúcar"), QStringLiteral("frmCana"));
        choose(cana, QStringLiteral("lstCulturas"), 1);
        QCOMPARE(find<QComboBox>(cana, QStringLiteral("cboExpect"))->itemText(2), QStringLiteral("50 a 80"));
        h.inputs = QStringList { QStringLiteral("72") };
        combo(cana, QStringLiteral("cboExpect"), 2);
        click(cana, QStringLiteral("cmdCalc"));
        qInfo().noquote() << "Ratoon cane need (N base, P2O5, K2O, N topdressing):" << nec(cana).join(QStringLiteral(" | "));
        QCOMPARE(nec(cana), QStringList({ "0", "30", "30", "70" }));

        // Cane keeps its figures: only the note is set.
        ajusta(h, cana, { "10", "40", "60", "80" });
        QCOMPARE(nec(cana), QStringList({ "0", "30", "30", "70" }));
        click(cana, QStringLiteral("cmdProssegue"));
        plano(h, true, QStringLiteral("01/10/2026"), true);
        const QStringList row = savedRow(h);
        qInfo().noquote() << "Ratoon cane recommendation:" << row.join(QStringLiteral(" | "));
        QCOMPARE(row[1], QStringLiteral("CodCultivo=Cana-soca-0-01/10/2026"));
        QCOMPARE(row[5], QStringLiteral("Expectativa=72"));
        QCOMPARE(row[42], QStringLiteral("Aviso=") + kObsAjuste);
        QVERIFY(laudo(h).contains(QStringLiteral("Cana-soca")));
    }

    void foragesWithTheMixtureRules()
    {
        UiHarness h;
        cadastraAnalise(h);
        cadastraEmpresa(h);
        QWidget* forragem = ateCultura(h, 2, QStringLiteral("Forrageiras - implantação com preparo do solo"), QStringLiteral("frmForrage"));
        QCOMPARE(forragem->windowTitle(), QStringLiteral("Grupo: Culturas Produtoras de Grãos"));
        auto* uso = find<QComboBox>(forragem, QStringLiteral("cboUsoAnt"));
        auto* expect = find<QLineEdit>(forragem, QStringLiteral("txtExpect"));

        // Native pasture needs no yield; a mixture asks the use of the area once its combination
        // is chosen, Anual X Anual included.
        choose(forragem, QStringLiteral("lstCulturas"), 16);
        QCOMPARE(expect->text(), QStringLiteral("Não requer"));
        QVERIFY(!expect->isEnabled());
        click(forragem, QStringLiteral("cmdCalc"));
        QCOMPARE(nec(forragem), QStringList({ "0", "70", "50", "0" }));
        choose(forragem, QStringLiteral("lstCulturas"), 3);
        QVERIFY(expect->isEnabled() && expect->text().isEmpty());
        QVERIFY(!uso->isEnabled());
        combo(forragem, QStringLiteral("cboComb"), 1);
        QVERIFY(uso->isEnabled());

        // Warm annual grasses after a cut, 10 t of dry mass: equation A at 3 % gives 180, 2 t above
        // 8 at 30, less 20 at the base; P 80 + 20 and K 60 + 40, both x 1.5.
        choose(forragem, QStringLiteral("lstCulturas"), 5);
        type(forragem, QStringLiteral("txtExpect"), QStringLiteral("10"));
        combo(forragem, QStringLiteral("cboUsoAnt"), QStringLiteral("Corte"));
        click(forragem, QStringLiteral("cmdCalc"));
        qInfo().noquote() << "Forage need (N base, P2O5, K2O, N topdressing):" << nec(forragem).join(QStringLiteral(" | "));
        QCOMPARE(nec(forragem), QStringList({ "20", "150", "150", "220" }));
        ajusta(h, forragem, { "20", "160", "160", "200" });
        QCOMPARE(nec(forragem), QStringList({ "20", "160", "160", "200" }));

        click(forragem, QStringLiteral("cmdProssegue"));
        plano(h, true, QStringLiteral("05/10/2026"), true);
        const QStringList row = savedRow(h);
        qInfo().noquote() << "Forage recommendation:" << row.join(QStringLiteral(" | "));
        QCOMPARE(row[1], QStringLiteral("CodCultivo=Gramíneas anuais de estação quente-Primeiro-05/10/2026"));
        QCOMPARE(row[5], QStringLiteral("Expectativa=10"));
        QCOMPARE(row[42], QStringLiteral("Aviso=") + kObsAjuste);
        const QString pagina = laudo(h);
        QVERIFY(pagina.contains(QStringLiteral("Gramíneas anuais de estação quente")));
        QVERIFY(pagina.contains(kObsAjuste));
    }

    void ornamentalsThroughTheAdjustment()
    {
        UiHarness h;
        cadastraAnalise(h);
        cadastraEmpresa(h);
        QWidget* ornam = ateCultura(h, 4, QStringLiteral("Roseira de corte"), QStringLiteral("frmOrnam"));
        QCOMPARE(ornam->windowTitle(), QStringLiteral("Grupo: Plantas Ornamentais"));
        choose(ornam, QStringLiteral("lstCulturas"), 1);
        click(ornam, QStringLiteral("cmdCalc"));
        // Organic-matter class 3 reads the second row; P class 3, K class 4.
        QCOMPARE(nec(ornam), QStringList({ "80", "280", "80", "Consultar MAC" }));

        // The topdressing is the manual's: the way on is through Ajustar, and the window says so.
        h.clearBoxes();
        click(ornam, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.texts(), QStringList { kMsgCoberturaOrnamentais });
        QVERIFY(ornam->isVisible());

        click(ornam, QStringLiteral("cmdAjusta"));
        QWidget* ajuste = visible(h, QStringLiteral("frmAjusta"));
        QCOMPARE(find<QLineEdit>(ajuste, QStringLiteral("txtNC"))->text(), QStringLiteral("Consultar MAC"));
        click(ajuste, QStringLiteral("cmdCancela"));
        ajusta(h, ornam, { "40", "200", "200", "30" });
        QCOMPARE(nec(ornam), QStringList({ "40", "200", "200", "30" }));
        click(ornam, QStringLiteral("cmdProssegue"));
        plano(h, true, QStringLiteral("12/10/2026"), true);
        const QStringList row = savedRow(h);
        qInfo().noquote() << "Rose recommendation:" << row.join(QStringLiteral(" | "));
        QCOMPARE(row[1], QStringLiteral("CodCultivo=Roseira de corte-0-12/10/2026"));
        QCOMPARE(row[42], QStringLiteral("Aviso=") + kObsAjuste);
        const QString pagina = laudo(h);
        QVERIFY(pagina.contains(QStringLiteral("Roseira de corte")));
        QVERIFY(pagina.contains(kObsAjuste));
    }

    void medicinalPlantsWithTheNoteOnly()
    {
        UiHarness h;
        cadastraAnalise(h);
        cadastraEmpresa(h);
        QWidget* medic = ateCultura(h, 5, QStringLiteral("Capim-limão"), QStringLiteral("frmCondMedic"));
        QCOMPARE(medic->windowTitle(), QStringLiteral("Grupo: Culturas Produtoras de Grãos"));
        h.clearBoxes();
        click(medic, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList { kMsgSelecioneCultura });
        choose(medic, QStringLiteral("lstCulturas"), 3);
        click(medic, QStringLiteral("cmdCalc"));
        // MO class 3: 0.33 of 90 at the base; P class 3 the middle column, K class 4 the last.
        qInfo().noquote() << "Lemongrass need (N base, P2O5, K2O, N topdressing):" << nec(medic).join(QStringLiteral(" | "));
        QCOMPARE(nec(medic), QStringList({ "29,7", "80", "50", "60,3" }));

        // Medicinal plants keep their figures: only the note is set.
        ajusta(h, medic, { "30", "90", "60", "60" });
        QCOMPARE(nec(medic), QStringList({ "29,7", "80", "50", "60,3" }));
        click(medic, QStringLiteral("cmdProssegue"));
        plano(h, true, QStringLiteral("20/10/2026"), true);
        const QStringList row = savedRow(h);
        qInfo().noquote() << "Lemongrass recommendation:" << row.join(QStringLiteral(" | "));
        QCOMPARE(row[1], QStringLiteral("CodCultivo=Capim-limão-0-20/10/2026"));
        QCOMPARE(row[5], QStringLiteral("Expectativa=0"));
        QCOMPARE(row[42], QStringLiteral("Aviso=") + kObsAjuste);
        const QString pagina = laudo(h);
        QVERIFY(pagina.contains(QStringLiteral("Capim-limão")));
        QVERIFY(pagina.contains(kObsAjuste));
    }

    void medicinalPlantsFromRawMaterials()
    {
        UiHarness h;
        cadastraAnalise(h);
        cadastraEmpresa(h);
        QWidget* medic = ateCultura(h, 5, QStringLiteral("Capim-limão"), QStringLiteral("frmCondMedic"));
        choose(medic, QStringLiteral("lstCulturas"), 3);
        click(medic, QStringLiteral("cmdCalc"));
        click(medic, QStringLiteral("cmdProssegue"));
        QWidget* npk = visible(h, QStringLiteral("frmNPK"));
        click(npk, QStringLiteral("cmdFormular"));
        QWidget* form = visible(h, QStringLiteral("frmFormulação"));
        QVERIFY(!npk->isVisible());
        QCOMPARE(find<QLabel>(form, QStringLiteral("lblNecess"))->text(),
            QStringLiteral("A Necessidade NPK na Base é de: 29,7 _ 80 _ 50 kg"));

        // Pressed before any choice: refused, and nothing to go on with.
        h.clearBoxes();
        click(form, QStringLiteral("cmdCalcula"));
        click(form, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.texts(), QStringList({ kMsgEscolhaTodas, kMsgSemCalculo }));

        combo(form, QStringLiteral("cboFml"), QStringLiteral("Cama frango 3-4 lt"));
        type(form, QStringLiteral("txtkgF2"), QStringLiteral("1000"));
        combo(form, QStringLiteral("cboFtN"), QStringLiteral("Ureia"));
        combo(form, QStringLiteral("cboFtP"), QStringLiteral("Fosfato monoamônico"));
        combo(form, QStringLiteral("cboFtK"), QStringLiteral("Cloreto de potássio"));
        click(form, QStringLiteral("cmdCalcula"));
        auto* grid = find<QTableWidget>(form, QStringLiteral("flxgResult"));
        QStringList shown;
        for (int r = 0; r < grid->rowCount(); ++r) {
            QStringList cells;
            for (int c = 0; c < grid->columnCount(); ++c)
                cells << grid->item(r, c)->text();
            shown << cells.join(QLatin1Char('/'));
        }
        qInfo().noquote() << "Lemongrass formulation:" << shown.join(QStringLiteral(" | "));
        // Litter: 1000 kg x 75 % dry matter; N 3.2 % x 0.5, P 3.5 % x 0.8, K 2.5 % x 1.
        QCOMPARE(shown,
            QStringList({ "Cama frango 3-4 lt/1000/12/21/19/275", "Ureia/12/5/0/0/41",
                "Fosfato monoamônico/113/12/59/0/571", "Cloreto de potássio/52/0/0/31/155",
                "Totais/1177/30/80/50/1042" }));

        // Within 10 kg/ha of the need: no question. The split goes back here, as the plan says.
        click(form, QStringLiteral("cmdProssegue"));
        click(visible(h, QStringLiteral("frmParcelaN")), QStringLiteral("cmdRetorna"));
        QCOMPARE(visible(h, QStringLiteral("frmFormulação")), form);
        click(form, QStringLiteral("cmdProssegue"));
        parcelamento(h, true, QStringLiteral("21/10/2026"), true);

        const QStringList row = savedRow(h, QStringLiteral("RecoFormulac"));
        qInfo().noquote() << "Lemongrass recommendation from raw materials:" << row.join(QStringLiteral(" | "));
        QCOMPARE(row.size(), 62);
        QCOMPARE(row.mid(13, 24),
            QStringList({ "MistFonte=Cama frango 3-4 lt", "MistPreco=275", "MistDose=1000", "MistCusto=275",
                "MistQuant=10000", "MistCustoTotal=2750", "FontNFonte=Ureia", "FontNPreco=3547,5", "FontNDose=12",
                "FontNCusto=41", "FontNQuant=120", "FontNCustoTotal=410", "FontPFonte=Fosfato monoamônico",
                "FontPPreco=5032,5", "FontPDose=113", "FontPCusto=571", "FontPQuant=1130", "FontPCustoTotal=5710",
                "FontKFonte=Cloreto de potássio", "FontKPreco=2970", "FontKDose=52", "FontKCusto=155",
                "FontKQuant=520", "FontKCustoTotal=1550" }));
        QCOMPARE(row[37], QStringLiteral("CobFonte=Ureia"));
        const Session& s = h.session();
        QCOMPARE(s.CustoBase, 10420.0);
        QCOMPARE(row[59], QStringLiteral("CustoTotal=") + numberText(parseNumber(FormataNumero(s.CustoBase + s.CustoCalcario + s.CustoN, 2)).value()));
        const QString pagina = laudo(h, QStringLiteral("rptLdFormlacao"));
        QVERIFY(pagina.contains(QStringLiteral("Fosfato monoamônico")));
        QVERIFY(pagina.contains(QStringLiteral("Recomendações calculadas usando matérias-prima")));
    }

    // Eucalyptus: a formula at planting, a mixture in topdressing, nothing at replacement.
    void forestPlanOfThreeDressings()
    {
        UiHarness h;
        cadastraAnalise(h);
        cadastraEmpresa(h);
        QWidget* flo = ateCultura(h, 3, QStringLiteral("Eucalipto"), QStringLiteral("frmFlorest"));
        choose(flo, QStringLiteral("lstCulturas"), 4);
        QCOMPARE(find<QLineEdit>(flo, QStringLiteral("txtExpect"))->text(), QStringLiteral("Não requer"));
        click(flo, QStringLiteral("cmdCalc"));
        // Organic matter class 3, P class 3, K class 4.
        QCOMPARE(nove(flo), QStringList({ "15", "60", "15", "30", "0", "20", "20", "30", "20" }));
        click(flo, QStringLiteral("cmdProssegue"));

        QWidget* plano = visible(h, QStringLiteral("frmNPKFlorest"));
        QCOMPARE(nove(plano), nove(flo));
        QCOMPARE(find<QPushButton>(plano, QStringLiteral("cmd4"))->text(), QStringLiteral("Formulação"));
        click(plano, QStringLiteral("cmd1"));
        QWidget* npk = visible(h, QStringLiteral("frmNPK"));
        QVERIFY(!find<QPushButton>(npk, QStringLiteral("cmdFormular"))->isEnabled());
        QCOMPARE(find<QPushButton>(npk, QStringLiteral("cmdCancel"))->text(), QStringLiteral("Fechar"));
        // The P/K order puts the poultry litter first; the formula is the third row.
        QCOMPARE(find<QTableWidget>(npk, QStringLiteral("flxNPK"))->item(2, 1)->text(), QStringLiteral("4-30-10"));
        selectRow(npk, QStringLiteral("flxNPK"), 2);
        click(npk, QStringLiteral("Opt_2"));
        click(npk, QStringLiteral("cmdCalcula"));
        click(npk, QStringLiteral("cmdProssegue"));
        QVERIFY(!h.windows().window(QStringLiteral("frmNPK")));
        // 4-30-10 by equal differences: 75 / 0,4 = 187,5 kg/ha, rounded to even.
        QCOMPARE(gradeFlorestal(plano, 1),
            QStringList({ "Fórmula" + kCabecalho, "4-30-10#3547,5#188#666,93#1880#6669,3" }));

        click(plano, QStringLiteral("cmd4"));
        QWidget* form = visible(h, QStringLiteral("frmFormulação"));
        QCOMPARE(find<QLabel>(form, QStringLiteral("lblNecess"))->text(),
            QStringLiteral("A Necessidade NPK na Base é de: 30 _ 0 _ 20 kg"));
        combo(form, QStringLiteral("cboFml"), QStringLiteral("20-5-20"));
        type(form, QStringLiteral("txtkgF2"), QStringLiteral("100"));
        combo(form, QStringLiteral("cboFtN"), QStringLiteral("Ureia"));
        combo(form, QStringLiteral("cboFtP"), QStringLiteral("Nenhuma"));
        combo(form, QStringLiteral("cboFtK"), QStringLiteral("Nenhuma"));
        click(form, QStringLiteral("cmdCalcula"));
        click(form, QStringLiteral("cmdProssegue"));
        QVERIFY(!h.windows().window(QStringLiteral("frmFormulação")));
        // The urea covers the 10 kg of N the formula leaves: 22,2 kg/ha.
        QCOMPARE(gradeFlorestal(plano, 2),
            QStringList({ "Fontes" + kCabecalho, "20-5-20#3300#100#330#1000#3300", "Ureia#3547,5#22#79#220#790",
                "Nenhuma#0#0#0#0#0", "Nenhuma#0#0#0#0#0" }));
        QCOMPARE(gradeFlorestal(plano, 3), QStringList());

        click(plano, QStringLiteral("cmdProssegue"));
        salva(h, QStringLiteral("02/03/2027"), true);
        const QStringList row = savedRow(h, QStringLiteral("RecoFlorest"));
        qInfo().noquote() << "Eucalyptus recommendation:" << row.join(QStringLiteral(" | "));
        QCOMPARE(row.size(), 31);
        QCOMPARE(row.mid(1, 5),
            QStringList({ "CodCultivo=Eucalipto-0-02/03/2027", "Cultura=Eucalipto", "CultivoOrdem=0",
                "DataPlantio=02/03/2027", "Expectativa=0" }));
        QCOMPARE(row.mid(13),
            QStringList({ "Plantio0=Fórmula" + kCabecalho, "Plantio1=4-30-10#3547,5#188#666,93#1880#6669,3", "Plantio2=0",
                "Plantio3=0", "Plantio4=0", "Cob0=Fontes" + kCabecalho, "Cob1=20-5-20#3300#100#330#1000#3300",
                "Cob2=Ureia#3547,5#22#79#220#790", "Cob3=Nenhuma#0#0#0#0#0", "Cob4=Nenhuma#0#0#0#0#0",
                "Repos0=Fontes" + kCabecalho, "Repos1=---#---#---#---#---#---", "Repos2=0", "Repos3=0", "Repos4=0",
                "CustoTotal=10759,3", "Aviso=", "Info=" }));

        // Each dressing under its own heading, every number with one decimal, the empty one dashed.
        auto* report = qobject_cast<ui::JanelaLaudo*>(visible(h, QStringLiteral("rptLdFlorest")));
        QVERIFY(report);
        const report::Pagina& pagina = report->pagina();
        QCOMPARE(pagina.texto(QStringLiteral("lblFlo1"))->texto,
            QStringLiteral("Fórmula\n4-30-10\nFontes\n20-5-20\nUreia\nNenhuma\nNenhuma\nFontes\n---\n"));
        QCOMPARE(pagina.texto(QStringLiteral("lblFlo6"))->texto,
            QStringLiteral("Custo total (R$)\n6669,3\nCusto total (R$)\n3300,0\n790,0\n0,0\n0,0\nCusto total (R$)\n---\n"));
        QCOMPARE(pagina.texto(QStringLiteral("lblCustoTot"))->texto, QStringLiteral("10759,30"));
    }

    // Erva-mate by its yield band, adjusted to nitrogen alone in topdressing and nothing at
    // replacement; the step back from the final step rebuilds the slots.
    void forestAdjustedToNitrogenAlone()
    {
        UiHarness h;
        cadastraAnalise(h);
        cadastraEmpresa(h);
        QWidget* flo = ateCultura(h, 3, QStringLiteral("Erva-mate"), QStringLiteral("frmFlorest"));
        choose(flo, QStringLiteral("lstCulturas"), 3);
        h.clearBoxes();
        click(flo, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList({ kMsgInformeExpectativa }));
        type(flo, QStringLiteral("txtExpect"), QStringLiteral("6"));
        click(flo, QStringLiteral("cmdCalc"));
        // "Erva-Mate2": from 6 to 12 t/ha.
        const QStringList indicado({ "10", "20", "10", "60", "0", "40", "100", "30", "60" });
        QCOMPARE(nove(flo), indicado);

        click(flo, QStringLiteral("cmdAjusta"));
        QWidget* ajuste = visible(h, QStringLiteral("frmAjustaFlorest"));
        QCOMPARE(nove(ajuste), indicado);
        const QStringList ajustado({ "10", "20", "10", "60", "0", "0", "0", "0", "0" });
        for (int i = 0; i < 9; ++i)
            type(ajuste, QStringLiteral("txtAjust_%1").arg(i), ajustado[i]);
        h.answers << QMessageBox::Yes;
        click(ajuste, QStringLiteral("cmdAplica"));
        QCOMPARE(nove(flo), ajustado);
        click(flo, QStringLiteral("cmdProssegue"));

        QWidget* plano = visible(h, QStringLiteral("frmNPKFlorest"));
        QCOMPARE(find<QPushButton>(plano, QStringLiteral("cmd4"))->text(), QStringLiteral("Fontes de N"));
        QVERIFY(!find<QPushButton>(plano, QStringLiteral("cmd5"))->isEnabled());
        QVERIFY(!find<QPushButton>(plano, QStringLiteral("cmd6"))->isEnabled());
        click(plano, QStringLiteral("cmd4"));
        QWidget* fonte = visible(h, QStringLiteral("frmParcNitroFlo"));
        QCOMPARE(find<QLabel>(fonte, QStringLiteral("lblNec"))->text(), QStringLiteral("Necessidade de N = 60 kg/ha"));
        gridRow(fonte, QStringLiteral("dtGrid"), 1, QStringLiteral("Ureia"));
        QCOMPARE(text(fonte, QStringLiteral("txtFnt")), QStringLiteral("133"));
        click(fonte, QStringLiteral("cmdProssegue"));
        QVERIFY(!h.windows().window(QStringLiteral("frmParcNitroFlo")));
        QCOMPARE(gradeFlorestal(plano, 2),
            QStringList({ "Fonte" + kCabecalho, "Ureia#3547,5#133#471,8175#1330#4718,175" }));

        click(plano, QStringLiteral("cmdProssegue"));
        click(visible(h, QStringLiteral("frmFinalCalculo")), QStringLiteral("Command1"));
        QCOMPARE(visible(h, QStringLiteral("frmNPKFlorest")), plano);
        click(plano, QStringLiteral("cmdProssegue"));
        salva(h, QStringLiteral("10/04/2027"), false);

        const QStringList row = savedRow(h, QStringLiteral("RecoFlorest"));
        QCOMPARE(row[5], QStringLiteral("Expectativa=6"));
        QCOMPARE(row.mid(13),
            QStringList({ "Plantio0=Fontes" + kCabecalho, "Plantio1=---#---#---#---#---#---", "Plantio2=0",
                "Plantio3=0", "Plantio4=0", "Cob0=Fonte" + kCabecalho, "Cob1=Ureia#3547,5#133#471,8175#1330#4718,175",
                "Cob2=0", "Cob3=0", "Cob4=0", "Repos0=Fontes" + kCabecalho, "Repos1=---#---#---#---#---#---",
                "Repos2=0", "Repos3=0", "Repos4=0", "CustoTotal=4718,18", "Aviso=" + kObsAjuste, "Info=" }));

        // Opened later among the saved recommendations, with the note of the adjustment.
        click(h.app().mostraJanelaPrincipal(), QStringLiteral("cmdLaudo"));
        QWidget* abre = visible(h, QStringLiteral("frmAbreLaudo"));
        find<QTableWidget>(abre, QStringLiteral("flxCli"))->setCurrentCell(0, 0);
        find<QListWidget>(abre, QStringLiteral("lstAna"))->setCurrentRow(0);
        click(abre, QStringLiteral("Option3"));
        auto* lstReco = find<QListWidget>(abre, QStringLiteral("lstReco"));
        QCOMPARE(lstReco->count(), 1);
        lstReco->setCurrentRow(0);
        click(abre, QStringLiteral("cmdContinua"));
        const QString pagina = laudo(h, QStringLiteral("rptLdFlorest"));
        QVERIFY(pagina.contains(QStringLiteral("lblFlo3|3754|6328|1582|3281|Dosagem (kg/ha)\\n---\\nDosagem (kg/ha)\\n133,0\\n")));
        QVERIFY(pagina.contains(QStringLiteral("lblAvAjust|550|10304|9785|226|") + kObsAjuste));
    }
};

QTEST_MAIN(RecommendationTest)
#include "recommendation_test.moc"
