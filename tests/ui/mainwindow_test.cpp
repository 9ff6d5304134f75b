#include "app/ui/desktop.h"
#include "app/ui/frmabertura.h"
#include "app/ui/frmlavra.h"
#include "app/ui/translations.h"
#include "uitestsupport.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QLabel>
#include <QPushButton>

using namespace lavra;
using namespace lavra::test;

// The real main window on a scratch database. Which technician signs, and when an empty table is
// told, is tests/app/startup_test.cpp's; starting a calculation, tests/app/navigation_test.cpp's.
class MainWindowTest : public QObject {
    Q_OBJECT

private:
    static QStringList labels(QWidget* main)
    {
        QStringList list;
        for (const char* name : {"lblNomeProf", "lblProf", "lblCrea"})
            list << find<QLabel>(main, QString::fromLatin1(name))->text();
        return list;
    }

private Q_SLOTS:
    void standardDialogsSpeakPortuguese()
    {
        QVERIFY(ui::carregaTraducoes());
        QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), QStringLiteral("Cancelar"));
    }

    void noTechnicianIsToldOnce()
    {
        UiHarness h;
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
        QCOMPARE(labels(main), (QStringList{"", "", "CREA: "}));
    }

    void signingTechnicianReachesTheLabels()
    {
        UiHarness h;
        h.exec(QStringLiteral("INSERT INTO TecResp VALUES ('Ana Souza', 'Engenheira Agrônoma', '12345-D', 1)"));
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(labels(main), (QStringList{"Ana Souza", "Engenheira Agrônoma", "CREA: 12345-D"}));
        // Another window changes the technician; the main window shows it when active again.
        h.session().NomeTec = QStringLiteral("Bruno Lima");
        main->atualizaTecnico();
        QCOMPARE(labels(main).first(), QStringLiteral("Bruno Lima"));
    }

    void newerDataOfTheManualIsToldOnceTheMainWindowIsUp()
    {
        UiHarness h;
        h.exec(QStringLiteral("INSERT INTO TecResp VALUES ('Ana Souza', 'Engenheira Agrônoma', '12345-D', 1)"));
        h.exec(QStringLiteral("UPDATE VersaoDados SET Versao = 0"));
        h.exec(QStringLiteral("UPDATE GRAOPC1 SET Classe2 = 60 WHERE Chave = 'Soja'"));
        {
            ui::Aplicacao outra(h.databasePath());
            QVERIFY(h.boxes.isEmpty());
            outra.mostraJanelaPrincipal();
            QCOMPARE(h.boxes.size(), 1);
            QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
            QVERIFY(h.boxes[0].texto.contains(QStringLiteral("GRAOPC1, \"Soja\", Classe2: 60 → 70")));
        }
        // Told once: the next start has nothing to say.
        h.clearBoxes();
        ui::Aplicacao terceira(h.databasePath());
        terceira.mostraJanelaPrincipal();
        QVERIFY(h.boxes.isEmpty());
    }

    void menuOpensItsWindowAndItsButtonClosesIt()
    {
        UiHarness h;
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        find<QAction>(main, QStringLiteral("mnuSob"))->trigger();
        QWidget* sobre = h.windows().window(QStringLiteral("frmSobre"));
        QVERIFY(sobre && sobre->isVisible());
        click(sobre, QStringLiteral("Command1"));
        QTRY_VERIFY(!h.windows().window(QStringLiteral("frmSobre")));
    }

    // "Sobre" says which file the program works on: a portable and an installed copy differ.
    void aboutShowsTheDatabaseInUse()
    {
        UiHarness h;
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        find<QAction>(main, QStringLiteral("mnuSob"))->trigger();
        const QString texto = find<QLabel>(h.windows().window(QStringLiteral("frmSobre")), QStringLiteral("lblBanco"))->text();
        QVERIFY2(texto.contains(QDir::toNativeSeparators(h.databasePath())), qPrintable(texto));
    }

    // The guide opens from the menu; a missing document, a desktop without a PDF viewer and one
    // without a browser are each told, with where the document or the page is.
    void helpAndWebPagesThatCannotOpenSaySo()
    {
        UiHarness h;
        h.exec(QStringLiteral("INSERT INTO TecResp VALUES ('Ana Souza', 'Engenheira Agrônoma', '12345-D', 1)"));
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        QStringList abertos;
        bool abre = true;
        ui::setAbridorDeArquivos([&](const QString& caminho) {
            abertos << caminho;
            return abre;
        });
        const QDir pasta(QCoreApplication::applicationDirPath());

        // The build writes the guide beside the program.
        find<QAction>(main, QStringLiteral("mnuAjud"))->trigger();
        QCOMPARE(abertos, QStringList{pasta.filePath(QStringLiteral("Tutorial Lavra.pdf"))});
        QVERIFY(h.boxes.isEmpty());

        abertos.clear();
        ui::abreDocumento(main, QStringLiteral("Documento que não existe.pdf"));
        QVERIFY(abertos.isEmpty());
        QCOMPARE(h.boxes.size(), 1);
        QVERIFY(h.boxes[0].texto.contains(QStringLiteral("não está instalado")));
        QVERIFY(h.boxes[0].texto.contains(QDir::toNativeSeparators(pasta.path())));

        abre = false;
        h.clearBoxes();
        find<QAction>(main, QStringLiteral("mnuAjud"))->trigger();
        QCOMPARE(h.boxes.size(), 1);
        QVERIFY(h.boxes[0].texto.contains(QStringLiteral("não há um programa para exibir arquivos PDF")));
        QVERIFY(h.boxes[0].texto.contains(QDir::toNativeSeparators(abertos.last())));

        abertos.clear();
        h.clearBoxes();
        click(main, QStringLiteral("cmdFertig"));
        QCOMPARE(abertos.size(), 1);
        QVERIFY(abertos[0].startsWith(QStringLiteral("https://")));
        QCOMPARE(h.boxes.size(), 1);
        QVERIFY(h.boxes[0].texto.contains(abertos[0]));

        ui::setAbridorDeArquivos({});
    }

    // The desktop's opener starts, then finds no program: its exit status is what tells.
    void aDesktopOpenerThatGivesUpIsTold()
    {
        UiHarness h;
        h.exec(QStringLiteral("INSERT INTO TecResp VALUES ('Ana Souza', 'Engenheira Agrônoma', '12345-D', 1)"));
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        QTemporaryDir pasta;
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", pasta.path().toLocal8Bit() + ':' + path);
        const auto opener = [&pasta](int codigo) {
            QFile script(pasta.filePath(QStringLiteral("xdg-open")));
            QVERIFY(script.open(QIODevice::WriteOnly));
            script.write(QStringLiteral("#!/bin/sh\nexit %1\n").arg(codigo).toLatin1());
            script.close();
            script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        };

        opener(3);
        ui::abreExterno(main, QStringLiteral("https://www.lavra.agr.br"));
        QTRY_COMPARE(h.boxes.size(), 1);
        QVERIFY(h.boxes[0].texto.contains(QStringLiteral("https://www.lavra.agr.br")));

        opener(0);
        h.clearBoxes();
        ui::abreExterno(main, QStringLiteral("https://www.lavra.agr.br"));
        QTest::qWait(300);
        QVERIFY(h.boxes.isEmpty());
        qputenv("PATH", path);
    }

    void calcularClosesTheOpenChainAndClosingClosesEverything()
    {
        UiHarness h;
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        h.clearBoxes();
        openStandIn(h, QStringLiteral("frmCalagem"));
        h.session().BloqueiaFechar = true;
        h.session().Dados[8] = 2.5f;

        click(main, QStringLiteral("cmdCalc"));
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(h.windows().openWindows(), (QStringList{"frmLavra", "frmCliAn"}));
        QVERIFY(h.windows().window(QStringLiteral("frmCliAn"))->isVisible());
        QCOMPARE(h.session().Dados[8].toInt(), 0);

        // Closing the main window closes every other window without asking.
        main->close();
        QVERIFY(h.boxes.isEmpty());
        QTRY_VERIFY(h.windows().openWindows().isEmpty());
    }

    void splashHandsOverAfterFiveSeconds()
    {
        auto* splash = new ui::FrmAbertura;
        QPointer<ui::FrmAbertura> alive(splash);
        QCOMPARE(splash->timer()->interval(), 5000);
        QSignalSpy done(splash, &ui::FrmAbertura::terminou);
        splash->show();
        splash->timer()->setInterval(10);
        splash->timer()->start();
        QTRY_COMPARE(done.count(), 1);
        QTRY_VERIFY(alive.isNull());
    }
};

QTEST_MAIN(MainWindowTest)
#include "mainwindow_test.moc"
