#include "app/navigation.h"
#include "app/ui/application.h"
#include "app/ui/chainwindow.h"
#include "app/ui/frmabertura.h"
#include "app/ui/frmlavra.h"
#include "app/ui/messages.h"
#include "app/ui/translations.h"
#include "store/databasefile.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace lavra;
using namespace lavra::ui;

// Drives the real main window on a scratch database; message boxes are answered here.
class MainWindowTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QList<Mensagem> m_boxes;
    QMessageBox::StandardButton m_answer = QMessageBox::Yes;

    QString freshPath()
    {
        static int n = 0;
        return m_dir.filePath(QStringLiteral("Lavra%1.db").arg(++n));
    }

    template <typename T>
    static T* child(QWidget* window, const QString& name)
    {
        T* found = window->findChild<T*>(name);
        if (!found)
            qWarning() << "missing" << name;
        return found;
    }

    // A window of the chain as the later steps will open it.
    static ChainWindow* openChainWindow(Aplicacao& app, const QString& name)
    {
        auto* window = new ChainWindow(app.session(), app.windows());
        window->setObjectName(name);
        window->setAttribute(Qt::WA_DeleteOnClose);
        app.windows().track(window);
        window->show();
        return window;
    }

private Q_SLOTS:
    void standardDialogsSpeakPortuguese()
    {
        QVERIFY(ui::carregaTraducoes());
        QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), QStringLiteral("Cancelar"));
    }

    void init()
    {
        m_boxes.clear();
        m_answer = QMessageBox::Yes;
        setResponder([this](const Mensagem& m) {
            m_boxes << m;
            return m.botoes.testFlag(QMessageBox::Yes) ? m_answer : QMessageBox::Ok;
        });
    }

    void cleanup() { setResponder({}); }

    void missingDatabaseIsCreatedAndEmptyTecRespIsToldOnce()
    {
        const QString path = freshPath();
        QVERIFY(!QFileInfo::exists(path));
        Aplicacao app(path);
        QVERIFY(QFileInfo::exists(path));
        FrmLavra* main = app.mostraJanelaPrincipal();
        QCOMPARE(main->objectName(), QStringLiteral("frmLavra"));
        QCOMPARE(main->windowTitle(), QStringLiteral("LAVRA - Calagem e Adubação"));

        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes[0].icone, Icone::Informacao);
        QVERIFY(m_boxes[0].texto.contains(QStringLiteral("importar os dados da vesão anterior!")));
        QCOMPARE(child<QLabel>(main, QStringLiteral("lblNomeProf"))->text(), QString());
        QCOMPARE(child<QLabel>(main, QStringLiteral("lblProf"))->text(), QString());
        QCOMPARE(child<QLabel>(main, QStringLiteral("lblCrea"))->text(), QStringLiteral("CREA: "));
    }

    void signingTechnicianReachesTheLabels()
    {
        const QString path = freshPath();
        Aplicacao app(path);
        DatabaseFile::acquire(path)->run(QStringLiteral(
            "INSERT INTO TecResp VALUES ('Ana Souza', 'Engenheira Agrônoma', '12345-D', 1)"));
        FrmLavra* main = app.mostraJanelaPrincipal();
        QVERIFY(m_boxes.isEmpty());
        QCOMPARE(child<QLabel>(main, QStringLiteral("lblNomeProf"))->text(), QStringLiteral("Ana Souza"));
        QCOMPARE(child<QLabel>(main, QStringLiteral("lblProf"))->text(), QStringLiteral("Engenheira Agrônoma"));
        QCOMPARE(child<QLabel>(main, QStringLiteral("lblCrea"))->text(), QStringLiteral("CREA: 12345-D"));

        // Another window changes the technician; the main window shows it when active again.
        app.session().NomeTec = QStringLiteral("Bruno Lima");
        main->atualizaTecnico();
        QCOMPARE(child<QLabel>(main, QStringLiteral("lblNomeProf"))->text(), QStringLiteral("Bruno Lima"));
    }

    void menuOpensItsWindowAndItsButtonClosesIt()
    {
        Aplicacao app(freshPath());
        FrmLavra* main = app.mostraJanelaPrincipal();
        child<QAction>(main, QStringLiteral("mnuSob"))->trigger();
        QWidget* sobre = app.windows().window(QStringLiteral("frmSobre"));
        QVERIFY(sobre && sobre->isVisible());
        child<QPushButton>(sobre, QStringLiteral("Command1"))->click();
        QTRY_VERIFY(!app.windows().window(QStringLiteral("frmSobre")));
    }

    void calcularClosesTheOpenChainAndStartsAFreshSession()
    {
        Aplicacao app(freshPath());
        for (const char* step : {"frmCliAn", "frmGrupCult"})
            app.windows().registerWindow(QString::fromLatin1(step), [&app]() {
                return new ChainWindow(app.session(), app.windows());
            });
        FrmLavra* main = app.mostraJanelaPrincipal();
        m_boxes.clear();

        openChainWindow(app, QStringLiteral("frmCalagem"));
        app.session().BloqueiaFechar = true;
        app.session().Dados[8] = 2.5f;
        app.session().CustoCalcario = 300;

        auto* calc = child<QPushButton>(main, QStringLiteral("cmdCalc"));
        QVERIFY(calc->isEnabled());
        calc->click();
        QVERIFY(m_boxes.isEmpty());
        QCOMPARE(app.windows().openWindows(), (QStringList{"frmLavra", "frmCliAn"}));
        QVERIFY(app.windows().window(QStringLiteral("frmCliAn"))->isVisible());
        QCOMPARE(app.session().Dados[8].toInt(), 0);
        QCOMPARE(app.session().CustoCalcario, 0.0);
        QCOMPARE(app.session().ModoEscolha, QStringLiteral("Calcular"));

        // Closing the main window closes every other window without asking.
        main->close();
        QVERIFY(m_boxes.isEmpty());
        QTRY_VERIFY(app.windows().openWindows().isEmpty());
    }

    void splashHandsOverAfterFiveSeconds()
    {
        auto* splash = new FrmAbertura;
        QPointer<FrmAbertura> alive(splash);
        QCOMPARE(splash->timer()->objectName(), QStringLiteral("Timer1"));
        QCOMPARE(splash->timer()->interval(), 5000);
        QSignalSpy done(splash, &FrmAbertura::terminou);
        splash->show();
        splash->timer()->setInterval(10);
        splash->timer()->start();
        QTRY_COMPARE(done.count(), 1);
        QTRY_VERIFY(alive.isNull());
    }

    void lockRefusesTheCloseBoxUntilAClosingRoutineRuns()
    {
        Aplicacao app(freshPath());
        app.mostraJanelaPrincipal();
        ChainWindow* chain = openChainWindow(app, QStringLiteral("frmGrupCult"));

        app.session().BloqueiaFechar = true;
        QVERIFY(!chain->close());
        QVERIFY(chain->isVisible());

        // A hidden window keeps its place until a routine closes it.
        chain->hide();
        QVERIFY(app.windows().openWindows().contains(QStringLiteral("frmGrupCult")));

        m_answer = QMessageBox::No;
        QVERIFY(!FechaJanelas(app.session(), app.windows(), true));
        QVERIFY(app.windows().window(QStringLiteral("frmGrupCult")));
        QCOMPARE(m_boxes.last().icone, Icone::Pergunta);
        QCOMPARE(m_boxes.last().texto, QStringLiteral("Está certo que quer cancelar?"));

        m_answer = QMessageBox::Yes;
        QVERIFY(FechaJanelas(app.session(), app.windows(), true));
        QCOMPARE(app.windows().openWindows(), QStringList{QStringLiteral("frmLavra")});
        QVERIFY(app.session().BloqueiaFechar);
    }
};

QTEST_MAIN(MainWindowTest)
#include "mainwindow_test.moc"
