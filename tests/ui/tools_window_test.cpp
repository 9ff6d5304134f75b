#include "app/ui/desktop.h"
#include "app/ui/frmlavra.h"
#include "app/windownames.h"
#include "exchange/dbcopy.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QFileSystemModel>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>

using namespace lavra;
using namespace lavra::test;

namespace {

QString leTexto(const QString& caminho)
{
    QFile f(caminho);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

void escolhePasta(QWidget* janela, const QString& pasta)
{
    auto* arvore = find<QTreeView>(janela, QStringLiteral("Dir1"));
    auto* modelo = qobject_cast<QFileSystemModel*>(arvore->model());
    arvore->selectionModel()->setCurrentIndex(modelo->index(pasta), QItemSelectionModel::ClearAndSelect);
}

QStringList listados(QWidget* janela)
{
    QStringList nomes;
    auto* lista = find<QListWidget>(janela, QStringLiteral("File1"));
    for (int i = 0; i < lista->count(); ++i)
        nomes << lista->item(i)->text();
    return nomes;
}

} // namespace

class ToolsWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { ui::setAbridorDeArquivos({}); }

    void everyCommandOfTheMainWindowOpensItsWindow()
    {
        UiHarness h;
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        for (QAction* acao : main->findChildren<QAction*>()) {
            if (!acao->objectName().isEmpty())
                QVERIFY2(acao->isEnabled(), qPrintable(acao->objectName()));
        }
        for (QPushButton* botao : main->findChildren<QPushButton*>())
            QVERIFY2(botao->isEnabled(), qPrintable(botao->objectName()));

        const std::pair<const char*, QString> comandos[] = {
            {"convert", janela::kConvert}, {"mnuCopyBb", janela::kCopiaBd}, {"mnuImport", janela::kAtualiza}};
        for (const auto& [acao, janela] : comandos) {
            find<QAction>(main, QString::fromLatin1(acao))->trigger();
            QWidget* w = h.windows().window(janela);
            QVERIFY2(w && w->isVisible(), acao);
            w->close();
        }
        click(main, QStringLiteral("Command4"));
        QWidget* relat = h.windows().window(janela::kRelat);
        QVERIFY(relat && relat->isVisible());
        QCOMPARE(relat->windowTitle(), QStringLiteral("Consultas"));
    }

    void aQueryAsAHurriedUserRunsIt()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        h.exec(QStringLiteral("INSERT INTO Clientes (Nome, Cidade) VALUES ('JOSÉ DA SILVA', 'Ijuí'), ('Ana Prado', 'Ijuí')"));
        QWidget* w = h.open(janela::kRelat);

        // Tabbing into the list chooses nothing.
        focusByTab(w, QStringLiteral("lstTabs"));
        click(w, QStringLiteral("cmdGera"));
        QCOMPARE(h.texts(), QStringList{"Selecione a origem dos dados!"});
        QVERIFY(w->focusWidget());
        QCOMPARE(w->focusWidget()->objectName(), QStringLiteral("lstTabs"));

        choose(w, QStringLiteral("lstTabs"), 1);
        QCOMPARE(h.session().TabelaConsulta, QStringLiteral("Clientes"));
        QCOMPARE(find<QListWidget>(w, QStringLiteral("lstCampos"))->count(), 5);
        h.clearBoxes();
        click(w, QStringLiteral("cmdGera"));
        QCOMPARE(h.texts(), QStringList{"Selecione o campo para filtrar os dados!"});

        choose(w, QStringLiteral("lstCampos"), 0);
        find<QComboBox>(w, QStringLiteral("cboCrit"))->setCurrentIndex(4);
        type(w, QStringLiteral("txtInfoCrit"), QStringLiteral("josé"));
        find<QRadioButton>(w, QStringLiteral("optBloco"))->setChecked(true);
        QString aberto;
        ui::setAbridorDeArquivos([&aberto](const QString& caminho) {
            aberto = caminho;
            return true;
        });
        h.clearBoxes();
        click(w, QStringLiteral("cmdGera"));
        QVERIFY(h.boxes.isEmpty());
        QCOMPARE(aberto, QFileInfo(h.databasePath()).absoluteDir().filePath(QStringLiteral("Temp.txt")));
        QCOMPARE(leTexto(aberto), QStringLiteral("\n Clientes;Nome;contém;josé\n\n;Nome;Rua/Localidade;Cidade;Telefone;E-mail\n"
                                                 ";JOSÉ DA SILVA;;Ijuí;;\n"));

        // The workbook goes to a file of its own and is opened.
        find<QRadioButton>(w, QStringLiteral("optExcel"))->setChecked(true);
        click(w, QStringLiteral("cmdGera"));
        QVERIFY(aberto.endsWith(QStringLiteral(".xlsx")));
        QVERIFY(QFile::exists(aberto));
        QFile::remove(aberto);

        aberto.clear();
        type(w, QStringLiteral("txtInfoCrit"), QStringLiteral("ninguém"));
        click(w, QStringLiteral("cmdGera"));
        QCOMPARE(h.texts(), QStringList{"Nenhuma informação encontrada para esta definição de consulta."});
        QVERIFY(aberto.isEmpty());
    }

    void theCopyAsksBeforeReplacingAndTellsWhenDone()
    {
        UiHarness h;
        QTemporaryDir destino;
        QFile antigo(destino.filePath(QStringLiteral("copia.db")));
        QVERIFY(antigo.open(QIODevice::WriteOnly));
        antigo.write("antiga");
        antigo.close();

        QWidget* w = h.open(janela::kCopiaBd);
        QCOMPARE(text(w, QStringLiteral("txtNome")), QStringLiteral("CopiaBdLavra"));
        escolhePasta(w, destino.path());
        QCOMPARE(listados(w), QStringList{"copia.db"});

        type(w, QStringLiteral("txtNome"), QString());
        click(w, QStringLiteral("Command1"));
        QCOMPARE(h.texts(), QStringList{"Informe um nome para o arquivo!"});

        // The name meets the listed file whatever its capitals; No leaves it alone.
        type(w, QStringLiteral("txtNome"), QStringLiteral("COPIA"));
        h.clearBoxes();
        h.answers = {QMessageBox::No};
        click(w, QStringLiteral("Command1"));
        QCOMPARE(h.texts(), QStringList{"O arquivo COPIA.db já existe!\n\nSubstituir o arquivo existente?"});
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
        QCOMPARE(leTexto(antigo.fileName()), QStringLiteral("antiga"));

        h.clearBoxes();
        h.answers = {QMessageBox::Yes};
        click(w, QStringLiteral("Command1"));
        QCOMPARE(h.texts().last(), QStringLiteral("COPIA.db Copiado com sucesso"));
        QCOMPARE(listados(w), QStringList{"COPIA.db"});
        QVERIFY(verificaIntegridade(destino.filePath(QStringLiteral("COPIA.db"))).isEmpty());
        QVERIFY(w->isVisible());
    }

    void theConverterHandsItsResultToTheAnalysisForm()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        QWidget* analise = h.open(janela::kCadAnalise);
        QWidget* w = h.open(janela::kConvert);
        QCOMPARE(find<QListWidget>(w, QStringLiteral("lstElem"))->selectedItems().size(), 1);
        QCOMPARE(find<QListWidget>(w, QStringLiteral("lstUnid"))->count(), 5);

        choose(w, QStringLiteral("lstElem"), 7);
        QCOMPARE(find<QComboBox>(w, QStringLiteral("cboPara"))->currentIndex(), 7);
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblUnid"))->text(), QStringLiteral("mg/dm³"));
        choose(w, QStringLiteral("lstUnid"), 0);
        type(w, QStringLiteral("txtval"), QStringLiteral("0,2"));
        QCOMPARE(text(w, QStringLiteral("txtResult")), QStringLiteral("78,200"));
        click(w, QStringLiteral("cmdInclui"));
        QCOMPARE(text(analise, QStringLiteral("txtK")), QStringLiteral("78,200"));

        // A new element chooses no unit: the old result stays until one is clicked.
        choose(w, QStringLiteral("lstElem"), 0);
        QCOMPARE(text(w, QStringLiteral("txtResult")), QStringLiteral("78,200"));
        type(w, QStringLiteral("txtval"), QStringLiteral("200"));
        QCOMPARE(text(w, QStringLiteral("txtResult")), QStringLiteral("78,200"));
        choose(w, QStringLiteral("lstUnid"), 0);
        QCOMPARE(text(w, QStringLiteral("txtResult")), QStringLiteral("0,998"));

        // H has no field in the form; nor does a form that is not on the screen take anything.
        choose(w, QStringLiteral("lstElem"), 3);
        click(w, QStringLiteral("cmdInclui"));
        analise->hide();
        choose(w, QStringLiteral("lstElem"), 0);
        click(w, QStringLiteral("cmdInclui"));
        QCOMPARE(text(analise, QStringLiteral("txtCa")), QString());
        QCOMPARE(text(analise, QStringLiteral("txtK")), QStringLiteral("78,200"));

        // A point on a comma machine is refused and never read.
        h.clearBoxes();
        type(w, QStringLiteral("txtval"), QStringLiteral("1.5"));
        QVERIFY(!h.boxes.isEmpty());
        QCOMPARE(text(w, QStringLiteral("txtResult")), QStringLiteral("0,998"));
    }
};

QTEST_MAIN(ToolsWindowTest)
#include "tools_window_test.moc"
