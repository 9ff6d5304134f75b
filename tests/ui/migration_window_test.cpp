#include "app/ui/dialogs.h"
#include "app/windownames.h"
#include "exchange/migration.h"
#include "oldworkbook.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>

using namespace lavra;
using namespace lavra::test;

namespace {

QString progresso(QWidget* w) { return find<QLabel>(w, QStringLiteral("lblProgres"))->text(); }

// A workbook of the earlier edition with a company, a client, an analysis and a formula the
// database already has.
PastaAnterior pasta()
{
    PastaAnterior p;
    p.poe(34, QStringLiteral("AG"), QStringLiteral("Agro Sul"));
    p.poe(100, QStringLiteral("V"), QStringLiteral("João da Silva"));
    p.poe(2, QStringLiteral("A"), QStringLiteral("BV-1-15/08/2005"));
    p.poe(2, QStringLiteral("T"), QStringLiteral("João da Silva"));
    p.poe(2, QStringLiteral("H"), QStringLiteral("5,4"));
    p.poe(2, QStringLiteral("S"), 120);
    p.poe(2, QStringLiteral("CT"), 5);
    p.poe(2, QStringLiteral("CU"), 20);
    p.poe(2, QStringLiteral("CV"), 20);
    return p;
}

} // namespace

class MigrationWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { ui::setRespondedorArquivo({}); }

    void aHurriedUserIsToldWhatIsMissing()
    {
        UiHarness h;
        QTemporaryDir dir;
        QWidget* w = h.open(janela::kAtualiza);
        QVERIFY(w);
        click(w, QStringLiteral("cmdTrasfBd"));
        QTRY_COMPARE(h.texts(), QStringList{kMsgSemArquivo});
        QCOMPARE(progresso(w), QStringLiteral("Erro na transferência."));

        // A workbook of another name is questioned; No stops, Yes goes on to the sheet's check.
        const QString outra = dir.filePath(QStringLiteral("velha.xls"));
        PastaAnterior semRotulos;
        semRotulos.poe(34, QStringLiteral("AF"), QStringLiteral("Firma"));
        QVERIFY(semRotulos.grava(outra));
        ui::setRespondedorArquivo([&outra](const QString&, const QString&) { return outra; });
        click(w, QStringLiteral("cmdAbrir"));
        QCOMPARE(text(w, QStringLiteral("txtCaminho")), outra);
        h.clearBoxes();
        h.answers = {QMessageBox::No};
        click(w, QStringLiteral("cmdTrasfBd"));
        QTRY_COMPARE(h.texts(), QStringList{perguntaNomeDiferente(QStringLiteral("velha.xls"))});
        QCOMPARE(h.boxes[0].icone, ui::Icone::Critico);
        QCOMPARE(progresso(w), QStringLiteral("Erro na transferência."));

        h.clearBoxes();
        h.answers = {QMessageBox::Yes};
        click(w, QStringLiteral("cmdTrasfBd"));
        QTRY_COMPARE(h.texts().size(), 2);
        QCOMPARE(h.texts()[1], kMsgEstrutura);
        QCOMPARE(progresso(w), QStringLiteral("Erro na transferência."));
        QVERIFY(find<QPushButton>(w, QStringLiteral("cmdTrasfBd"))->isEnabled());

        // A file that is no workbook is told as such, and nothing is written.
        QFile lixo(dir.filePath(kPastaAnterior));
        QVERIFY(lixo.open(QIODevice::WriteOnly) && lixo.write("não é uma planilha") > 0);
        lixo.close();
        type(w, QStringLiteral("txtCaminho"), lixo.fileName());
        h.clearBoxes();
        click(w, QStringLiteral("cmdTrasfBd"));
        QTRY_COMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Critico);
        QCOMPARE(progresso(w), QStringLiteral("Erro na transferência."));
    }

    void theWholeWorkbookComesOverInOneStep()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        QTemporaryDir dir;
        const QString caminho = dir.filePath(kPastaAnterior);
        QVERIFY(pasta().grava(caminho));
        QWidget* w = h.open(janela::kAtualiza);
        type(w, QStringLiteral("txtCaminho"), caminho);
        const int clientes = h.scalar(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toInt();

        h.answers = {QMessageBox::No};  // keep the database's 5-20-20
        click(w, QStringLiteral("cmdTrasfBd"));
        QTRY_COMPARE(progresso(w), QStringLiteral("Transferência concluída."));
        QCOMPARE(h.texts(), (QStringList{kMsgSubstituir, QStringLiteral("O banco de dados do frmAtualiza foi atualizado.")}));
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toInt(), clientes + 1);
        QCOMPARE(h.scalar(QStringLiteral("SELECT pH FROM Analises WHERE \"Código\" = 'BV-1-15/08/2005'")).toFloat(), 5.4f);
        QCOMPARE(h.scalar(QStringLiteral("SELECT Empresa FROM Empresa")).toString(), QStringLiteral("Agro Sul"));
        const QString resumo = find<QPlainTextEdit>(w, QStringLiteral("txtResumo"))->toPlainText();
        QVERIFY2(resumo.contains(QStringLiteral("Análises — transferidas: 1; já existentes: 0")), qPrintable(resumo));
        QVERIFY2(resumo.contains(QStringLiteral("Fertilizantes — transferidos: 0; já existentes: 1")), qPrintable(resumo));

        // Stopped midway, nothing of the second workbook is kept.
        PastaAnterior mais = pasta();
        for (int linha = 2; linha < 3000; ++linha)
            mais.poe(linha, QStringLiteral("A"), QStringLiteral("Nova %1").arg(linha));
        QVERIFY(mais.grava(caminho));
        auto* vigia = new QTimer(w);
        connect(vigia, &QTimer::timeout, w, [w] {
            if (progresso(w) == QStringLiteral("Transferindo análises..."))
                click(w, QStringLiteral("cmdCancelar"));
        });
        vigia->start(1);
        h.clearBoxes();
        click(w, QStringLiteral("cmdTrasfBd"));
        QTRY_COMPARE(progresso(w), QStringLiteral("Transferência interrompida: nada foi gravado."));
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM Analises")).toInt(), 1);
        QVERIFY(h.texts().isEmpty());
    }
};

QTEST_MAIN(MigrationWindowTest)
#include "migration_window_test.moc"
