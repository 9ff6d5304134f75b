#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/liming.h"
#include "store/changenotifier.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QTableView>

#include <functional>

using namespace lavra;
using namespace lavra::test;

// The liming step driven as the user does: system, method, material, and on to the crop. Doses,
// refusals and the session's slots are tests/calc/liming_test.cpp's.
class LimingWindowTest : public QObject {
    Q_OBJECT

private:
    // An acid soil of 10 ha that needs lime under every system of the grain group.
    static QWidget* abre(UiHarness& h)
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
        s.Grupo = 1;
        s.NomeGrupo = QStringLiteral("Produtoras de grãos");
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

private Q_SLOTS:
    void refusalThenADoseThatEveryChoiceMakesStale()
    {
        MachineLocale machine(commaLocale());
        UiHarness h;
        QWidget* w = abre(h);
        click(w, QStringLiteral("cmdCalc"));
        QCOMPARE(h.texts(), QStringList{kMsgSelecioneSistema});
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
        // Going on with the dose is the whole chain's (recommendation_test).
    }

    void anEditedPriceMakesTheDoseStale()
    {
        UiHarness h;
        QWidget* w = abre(h);
        escolheSistema(w, QStringLiteral("Sistema convencional"));
        click(w, QStringLiteral("optSMP"));
        click(w, QStringLiteral("cmdCalc"));
        QVERIFY(!resultado(w).isEmpty());

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
    }

    // The rows the dose came from open in the window of the tables, at the system's row.
    void theRowsOfTheDoseAreShownInTheTables()
    {
        UiHarness h;
        QWidget* w = abre(h);
        escolheSistema(w, QStringLiteral("Sistema convencional"));
        click(w, QStringLiteral("optSMP"));
        click(w, QStringLiteral("cmdCalc"));
        find<QAction>(w, QStringLiteral("mnuLinhasUsadas"))->trigger();
        const QList<manual::LinhaUsada>& usadas = h.session().LinhasUsadas;
        QCOMPARE(usadas.size(), 2);
        QCOMPARE(usadas[0], (manual::LinhaUsada{QStringLiteral("Calagem"), QStringLiteral("Sistema convencional (grupo 1)")}));
        QCOMPARE(usadas[1].tabela, QStringLiteral("SMP"));
        QWidget* tabelas = h.windows().window(janela::kTabelas);
        QVERIFY(tabelas && tabelas->isVisible());
        QCOMPARE(find<QComboBox>(tabelas, QStringLiteral("cboTabela"))->currentData().toString(), QStringLiteral("Calagem"));
    }
};

QTEST_MAIN(LimingWindowTest)
#include "liming_window_test.moc"
