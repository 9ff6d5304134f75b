#include "app/ui/desktop.h"
#include "app/ui/dialogs.h"
#include "app/windownames.h"
#include "exchange/importanalysis.h"
#include "exchange/workbook.h"
#include "exchange/xlsxfile.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QTableView>
#include <QTimer>

using namespace lavra;
using namespace lavra::test;

namespace {

void mapeiaNaOrdem(QWidget* janela)
{
    for (int k = 0; k < kCaixas; ++k)
        find<QComboBox>(janela, QStringLiteral("cboCad_%1").arg(k))->setCurrentIndex(k + 1);
}

// The report is a dialog of its own; what the user does in it is set before the transfer, and
// done once it shows (the transfer itself lets events through as it goes).
void noRelatorio(std::function<void(QWidget*)> acao)
{
    auto* espera = new QTimer;
    espera->setInterval(5);
    QObject::connect(espera, &QTimer::timeout, [espera, acao = std::move(acao)] {
        QWidget* relatorio = QApplication::activeModalWidget();
        if (!relatorio || relatorio->objectName() != QLatin1String("frmResultadoImportacao"))
            return;
        espera->stop();
        espera->deleteLater();
        acao(relatorio);
        click(relatorio, QStringLiteral("cmdFechar"));
    });
    espera->start();
}

} // namespace

class ImportWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        ui::setRespondedorArquivo({});
        ui::setAbridorDeArquivos({});
    }

    void theExampleSheetGoesInAsAUserWouldTakeIt()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        QTemporaryDir dir;
        const QString exemplo = dir.filePath(QStringLiteral("exemplo"));
        QStringList dialogos;
        ui::setRespondedorArquivo([&](const QString& titulo, const QString&) {
            dialogos << titulo;
            return titulo == QLatin1String("Salvar planilha exemplo") ? exemplo : exemplo + QStringLiteral(".xlsx");
        });
        QStringList abertos;
        ui::setAbridorDeArquivos([&abertos](const QString& caminho) {
            abertos << caminho;
            return true;
        });
        QWidget* w = h.open(janela::kImportaAnalise);
        QVERIFY(w);

        // Nothing open yet: the boxes have no column, and the transfer says so.
        click(w, QStringLiteral("cmdTrasfBd"));
        QCOMPARE(h.texts(), QStringList{kMsgCaixasSemColuna});
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblProgres"))->text(), QStringLiteral("Erro na transferência."));

        h.answers = {QMessageBox::No};
        click(w, QStringLiteral("cmdInstrução"));
        QVERIFY(dialogos.isEmpty());
        h.answers = {QMessageBox::Yes};
        click(w, QStringLiteral("cmdInstrução"));
        QCOMPARE(abertos, QStringList{exemplo + QStringLiteral(".xlsx")});

        h.clearBoxes();
        h.answers = {QMessageBox::Yes};
        click(w, QStringLiteral("cmdAbrir"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("A planilha contendo os dados é Plan1 ?")});
        QCOMPARE(text(w, QStringLiteral("txtPlanilha")), QStringLiteral("Plan1"));
        auto* cliente = find<QComboBox>(w, QStringLiteral("cboCad_0"));
        // "Selecione" and forty columns, the empty headings past the nineteenth included.
        QCOMPARE(cliente->count(), 1 + kColunasEscolhiveis);
        QCOMPARE(cliente->itemText(19), QStringLiteral("Extração_P"));
        QCOMPARE(cliente->itemText(40), QString());
        QCOMPARE(cliente->currentIndex(), 0);

        mapeiaNaOrdem(w);
        h.clearBoxes();
        QString resumo;
        noRelatorio([&resumo](QWidget* r) { resumo = find<QLabel>(r, QStringLiteral("lblResumo"))->text(); });
        click(w, QStringLiteral("cmdTrasfBd"));
        QCOMPARE(h.texts(), QStringList{msgTransferidas(QStringLiteral("exemplo.xlsx"))});
        QVERIFY2(resumo.contains(QStringLiteral("Análises adicionadas: 1<br>")), qPrintable(resumo));
        QVERIFY(!w->isVisible());
        QCOMPARE(h.scalar(QStringLiteral("SELECT Cliente || ' ' || \"Código\" FROM Analises")).toString(),
                 QStringLiteral("Ana Pereira Faz. Vale V./Coxilha/22/06/2011"));
    }

    void theReportListsWhatDidNotComeInAndIsSaved()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        QTemporaryDir dir;
        QVector<QVector<QVariant>> linhas = {{}};
        for (const QString& c : cabecalhosExemplo())
            linhas[0] << c;
        linhas << QVector<QVariant>{QStringLiteral("Bia"), QStringLiteral("Vale"), QStringLiteral("Faz"),
                                    QStringLiteral("Gleba"), 10, QStringLiteral("220611"), 1, 5.2, 2.4, 1.3,
                                    0.1, 5.2, 5.5, 2.6, 46, 6.7, 45, 1, 2};
        linhas << linhas[1];
        linhas[2][7] = QStringLiteral("5.2");  // a point on a comma machine
        const QString pasta = dir.filePath(QStringLiteral("lab.xlsx"));
        gravaXlsx(pasta, {FolhaEscrita{QStringLiteral("Resumo"), {{QStringLiteral("nada")}}},
                          FolhaEscrita{QStringLiteral("Análises"), linhas}});
        const QString relatorio = dir.filePath(QStringLiteral("relatório.txt"));
        QString escolhido = dir.filePath(QStringLiteral("danificada.xlsx"));
        QFile danificada(escolhido);
        QVERIFY(danificada.open(QIODevice::WriteOnly));
        danificada.write("PK\x03\x04 not a workbook");
        danificada.close();
        ui::setRespondedorArquivo([&](const QString& titulo, const QString&) {
            return titulo.startsWith(QLatin1String("Salvar")) ? relatorio : escolhido;
        });

        QWidget* w = h.open(janela::kImportaAnalise);
        click(w, QStringLiteral("cmdAbrir"));
        QCOMPARE(h.texts(), QStringList{erroPastaIlegivel(escolhido)});
        QCOMPARE(find<QComboBox>(w, QStringLiteral("cboCad_0"))->count(), 0);

        escolhido = pasta;
        h.clearBoxes();
        h.answers = {QMessageBox::No, QMessageBox::Yes};
        click(w, QStringLiteral("cmdAbrir"));
        QCOMPARE(text(w, QStringLiteral("txtPlanilha")), QStringLiteral("Análises"));
        mapeiaNaOrdem(w);
        int mostradas = -1;
        noRelatorio([&mostradas](QWidget* r) {
            // It opens on the refusals, the rows the user has to act on.
            QCOMPARE(find<QComboBox>(r, QStringLiteral("cboMostrar"))->currentIndex(), 1);
            mostradas = find<QTableView>(r, QStringLiteral("grdLinhas"))->model()->rowCount();
            click(r, QStringLiteral("cmdSalvar"));
        });
        click(w, QStringLiteral("cmdTrasfBd"));
        QCOMPARE(mostradas, 1);
        QFile salvo(relatorio);
        QVERIFY(salvo.open(QIODevice::ReadOnly));
        const QString conteudo = QString::fromUtf8(salvo.readAll());
        QVERIFY(conteudo.contains(QStringLiteral("Linhas recusadas: 1")));
        QVERIFY2(conteudo.contains(QStringLiteral("Linha 3: Faz/Gleba/220611 (Bia) - pH (água): '5.2'")),
                 qPrintable(conteudo));
        QCOMPARE(h.scalar(QStringLiteral("SELECT Data_ FROM Analises")).toString(), QStringLiteral("2011-06-22"));
    }
};

QTEST_MAIN(ImportWindowTest)
#include "import_window_test.moc"
