#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "calc/liming.h"
#include "store/changenotifier.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QTableView>

#include <functional>

using namespace lavra;
using namespace lavra::test;

// The liming step driven as the user does: system, method, material, and on to the crop.
class LimingWindowTest : public QObject {
    Q_OBJECT

private:
    // An acid soil of 10 ha that needs lime under every system of the grain group.
    static QWidget* abre(UiHarness& h, int grupo = 1, const QString& nomeGrupo = QStringLiteral("Produtoras de grãos"))
    {
        Session& s = h.session();
        s.limpaCalculo();
        s.Analise = QVector<QVariant>(36);
        s.Analise[0] = QStringLiteral("Faz/G1/01/08/2021");
        s.Analise[6] = 10.0f;
        const QList<std::pair<int, float>> elementos = {{8, 5.2f},  {9, 3.0f},  {10, 1.0f}, {11, 1.0f}, {13, 15.0f},
                                                        {14, 45.0f}, {15, 10.0f}, {16, 5.0f}, {17, 2.0f}};
        for (const auto& [elemento, valor] : elementos)
            s.Analise[elemento] = valor;
        s.Analise[31] = 3;
        s.Grupo = static_cast<std::int16_t>(grupo);
        s.NomeGrupo = nomeGrupo;
        s.BloqueiaFechar = true;
        return h.open(QStringLiteral("frmCalagem"));
    }

    static void escolheSistema(QWidget* w, const QString& texto)
    {
        auto* sistemas = find<QComboBox>(w, QStringLiteral("cboSistemas"));
        sistemas->setCurrentIndex(sistemas->findText(texto));
        QVERIFY(sistemas->currentIndex() > 0);
    }

    static void escolheMaterial(QWidget* w, const QString& nome)
    {
        auto* grade = find<QTableView>(w, QStringLiteral("dtgCalc"));
        for (int row = 0; row < grade->model()->rowCount(); ++row) {
            const QModelIndex index = grade->model()->index(row, 0);
            if (index.data().toString() == nome) {
                QTest::mouseClick(grade->viewport(), Qt::LeftButton, {}, grade->visualRect(index).center());
                return;
            }
        }
        QFAIL("material not in the grid");
    }

    static QString resultado(QWidget* w) { return find<QLabel>(w, QStringLiteral("lblResultado"))->text(); }
    static QString custo(QWidget* w) { return find<QLabel>(w, QStringLiteral("lblCust"))->text(); }

    // A crop window that stands in for the one of the group, whatever state that window is in.
    static void cropWindow(UiHarness& h, const QString& name, bool available)
    {
        h.windows().registerWindow(name, [available]() { return available ? new QWidget : nullptr; });
    }

private Q_SLOTS:
    void refusalsThenAFreshDoseSaved()
    {
        MachineLocale machine(commaLocale());
        UiHarness h;
        cropWindow(h, QStringLiteral("frmGraos"), true);
        QWidget* w = abre(h);
        auto* sistemas = find<QComboBox>(w, QStringLiteral("cboSistemas"));
        QCOMPARE(sistemas->count(), 7);
        QCOMPARE(sistemas->currentText(), QStringLiteral("Selecione"));
        QCOMPARE(find<QTableView>(w, QStringLiteral("dtgCalc"))->currentIndex().row(), 0);
        click(w, QStringLiteral("cmdCalc"));
        click(w, QStringLiteral("Check1"));
        click(w, QStringLiteral("cmdCalc"));
        click(w, QStringLiteral("Check1"));
        click(w, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.texts(), (QStringList{kMsgSelecioneSistema, kMsgNaoCalcularMarcada, kMsgCalcarioNaoCalculado}));
        QCOMPARE(h.boxes[0].icone, ui::Icone::Exclamacao);
        h.clearBoxes();

        escolheSistema(w, QStringLiteral("Sistema convencional"));
        click(w, QStringLiteral("optSMP"));
        escolheMaterial(w, QStringLiteral("Calcário dolomítico"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(resultado(w), QStringLiteral("13,2"));
        QCOMPARE(custo(w), QStringLiteral("2904,00"));

        // Each of the three choices makes the figures stale.
        const QList<std::function<void()>> mudancas = {
            [w]() { escolheMaterial(w, QStringLiteral("Calcário filler")); },
            [w]() { click(w, QStringLiteral("optAL_MO")); },
            [w]() { escolheSistema(w, QStringLiteral("Plantio direto consolidado")); },
        };
        for (const auto& muda : mudancas) {
            click(w, QStringLiteral("cmdCalc"));
            QVERIFY(!resultado(w).isEmpty());
            muda();
            QVERIFY(resultado(w).isEmpty());
            QVERIFY(custo(w).isEmpty());
        }
        click(w, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.texts(), QStringList{kMsgCalcarioNaoCalculado});

        // No till at pH 5.2 and V 45: (-0.516 + 0.805 x 2 + 2.435 x 1) / 0.95 / 2 = 1.857 t/ha.
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(resultado(w), QStringLiteral("1,9"));
        QCOMPARE(custo(w), QStringLiteral("715,09"));
        h.session().CustoEtapa2 = 8;
        click(w, QStringLiteral("cmdProssegue"));
        QVERIFY(!w->isVisible());
        QVERIFY(h.windows().window(QStringLiteral("frmGraos"))->isVisible());
        QCOMPARE(h.session().Dados[5].toString(), QStringLiteral("Calcário filler"));
        QCOMPARE(h.session().Dados[8].toFloat(), 1.9f);
        QCOMPARE(h.session().CustoCalcario, static_cast<double>(10.0f * (1.9f * 385.0f)));
        QCOMPARE(h.session().CustoEtapa2, 0.0);
    }

    void forcedMethodAndRegisterEdit()
    {
        MachineLocale machine(pointLocale());
        UiHarness h;
        h.exec(QStringLiteral("INSERT INTO Calagem VALUES ('Só saturação', 1, 0, 1, 0, 0, 0, 70, 0, 0, 'N', 'N')"));
        QWidget* w = abre(h);
        // A crop limed by base saturation alone turns that method on, and says so.
        escolheSistema(w, QStringLiteral("Só saturação"));
        click(w, QStringLiteral("optMédia"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList{kMsgApenasSaturacao});
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
        QVERIFY(find<QRadioButton>(w, QStringLiteral("optSatB"))->isChecked());
        QCOMPARE(resultado(w), QStringLiteral("3.3"));

        // Another table written, or this one re-read unchanged: the figures stand.
        const auto avisa = [](const QString& tabela) {
            ChangeNotifier::instance().notify(tabela);
            ChangeNotifier::instance().flush();
        };
        avisa(QString());
        QVERIFY(!custo(w).isEmpty());
        // The material's price edited in its register: the dose shown is stale.
        h.exec(QStringLiteral("UPDATE Calcario SET \"R$/t\" = 300 WHERE Nome = 'Calcário dolomítico'"));
        avisa(QStringLiteral("Calcario"));
        QVERIFY(resultado(w).isEmpty());
        QVERIFY(custo(w).isEmpty());
        QCOMPARE(find<QTableView>(w, QStringLiteral("dtgCalc"))->currentIndex().row(), 0);
    }

    void noLimingZeroesTheSlotsAndGoesOn()
    {
        UiHarness h;
        cropWindow(h, QStringLiteral("frmFlorest"), true);
        QWidget* w = abre(h, 4, QStringLiteral("Essências Florestais"));
        escolheSistema(w, QStringLiteral("Eucalipto"));
        h.clearBoxes();
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(resultado(w), QStringLiteral("0"));
        h.session().Dados[8] = 3.0f;
        h.session().CustoEtapa1 = 4;
        click(w, QStringLiteral("Check1"));
        QVERIFY(resultado(w).isEmpty());
        for (int slot = 5; slot <= 11; ++slot)
            QCOMPARE(h.session().Dados[slot], QVariant(0));
        h.session().CustoCalcario = 50;
        click(w, QStringLiteral("cmdProssegue"));
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(h.session().CustoCalcario, 0.0);
        // The forest plan keeps the costs of its dressings.
        QCOMPARE(h.session().CustoEtapa1, 4.0);
        QVERIFY(h.windows().window(QStringLiteral("frmFlorest")));
    }

    void faultsAndMissingWindowsKeepTheStep()
    {
        UiHarness h;
        h.exec(QStringLiteral("UPDATE Calcario SET PRNT = 0 WHERE Nome = 'Calcário filler'"));
        cropWindow(h, QStringLiteral("frmHort"), false);
        QWidget* w = abre(h, 2, QStringLiteral("Hortaliças"));
        escolheSistema(w, QStringLiteral("Hortaliças em geral"));
        click(w, QStringLiteral("optSatB"));
        escolheMaterial(w, QStringLiteral("Calcário filler"));
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Critico);
        QVERIFY(resultado(w).isEmpty());

        escolheMaterial(w, QStringLiteral("Calcário dolomítico"));
        click(w, QStringLiteral("cmdCalc"));
        h.clearBoxes();
        click(w, QStringLiteral("cmdProssegue"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("O cálculo das culturas do grupo \"Hortaliças\" ainda não está "
                                                       "disponível nesta versão do programa.")});
        QVERIFY(w->isVisible());
        QVERIFY(!resultado(w).isEmpty());
    }

    void backKeepsTheStepAndCancelAsks()
    {
        UiHarness h;
        h.open(QStringLiteral("frmGrupCult"))->hide();
        QWidget* w = abre(h);
        escolheSistema(w, QStringLiteral("Sistema convencional"));
        click(w, QStringLiteral("cmdRetorna"));
        QVERIFY(!w->isVisible());
        QVERIFY(h.windows().window(QStringLiteral("frmGrupCult"))->isVisible());
        QCOMPARE(h.windows().show(QStringLiteral("frmCalagem")), w);
        QCOMPARE(find<QComboBox>(w, QStringLiteral("cboSistemas"))->currentText(), QStringLiteral("Sistema convencional"));

        click(w, QStringLiteral("cmdCancela"));
        QCOMPARE(h.texts().last(), QStringLiteral("Está certo que quer cancelar?"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmCalagem")));
    }
};

QTEST_MAIN(LimingWindowTest)
#include "liming_window_test.moc"
