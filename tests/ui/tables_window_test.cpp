#include "app/session.h"
#include "app/ui/chainwindow.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmlavra.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/crops.h"
#include "calc/grains.h"
#include "exchange/xlsxfile.h"
#include "store/manualtables.h"
#include "store/schema.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QBrush>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTableView>
#include <QTimer>

#include <functional>

using namespace lavra;
using namespace lavra::test;

namespace {

const QString kTabelas = janela::kTabelas;

QTableView* grade(QWidget* w) { return find<QTableView>(w, QStringLiteral("grdTabela")); }

void escolheTabela(QWidget* w, const QString& tabela)
{
    auto* combo = find<QComboBox>(w, QStringLiteral("cboTabela"));
    combo->setCurrentIndex(combo->findData(tabela));
}

// The grid row showing that key in its first column, or -1.
int linhaDaChave(QWidget* w, const QString& chave)
{
    QAbstractItemModel* m = grade(w)->model();
    for (int i = 0; i < m->rowCount(); ++i) {
        if (m->index(i, 0).data().toString() == chave)
            return i;
    }
    return -1;
}

int colunaDoTitulo(QWidget* w, const QString& titulo)
{
    QAbstractItemModel* m = grade(w)->model();
    for (int c = 0; c < m->columnCount(); ++c) {
        if (m->headerData(c, Qt::Horizontal).toString() == titulo)
            return c;
    }
    return -1;
}

QString celula(QWidget* w, const QString& chave, const QString& titulo)
{
    return grade(w)->model()->index(linhaDaChave(w, chave), colunaDoTitulo(w, titulo)).data().toString();
}

// The key in the first column of the row the grid has selected; empty when none is.
QString chaveEscolhida(QWidget* w)
{
    const QModelIndexList linhas = grade(w)->selectionModel()->selectedRows();
    return linhas.isEmpty() ? QString() : linhas.first().data().toString();
}

// A cell as the user edits it: chosen, F2, the text, Enter. The question of the reason comes
// once the editor has closed, so events are let through.
void edita(QWidget* w, const QString& chave, const QString& titulo, const QString& texto)
{
    QTableView* g = grade(w);
    const QModelIndex indice = g->model()->index(linhaDaChave(w, chave), colunaDoTitulo(w, titulo));
    QVERIFY(indice.isValid());
    g->setCurrentIndex(indice);
    QTest::keyClick(g, Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(g->indexWidget(indice));
    QVERIFY(editor);
    editor->setText(texto);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

// A dialog of the window is modal; what the user does in it is set before it opens.
void noDialogo(const QString& nome, std::function<void(QWidget*)> acao)
{
    auto* espera = new QTimer;
    espera->setInterval(5);
    QObject::connect(espera, &QTimer::timeout, [espera, nome, acao = std::move(acao)] {
        QWidget* dialogo = QApplication::activeModalWidget();
        if (!dialogo || dialogo->objectName() != nome)
            return;
        espera->stop();
        espera->deleteLater();
        acao(dialogo);
    });
    espera->start();
}

QString original(const QString& tabela, const QString& chave, int coluna)
{
    const manual::LinhaEntregue* linha = manual::dadosDoPrograma().linha(tabela, chave);
    return linha ? manual::textoValor(linha->valores.value(coluna)) : QString();
}

QList<manual::LinhaManual> linhas(UiHarness& h, const QString& tabela)
{
    return manual::leTabela(h.session().db, tabela);
}

const QString kRendRef = manual::tituloColuna(QStringLiteral("GRAON"), QStringLiteral("RendRef"));

} // namespace

class TablesWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        resetMachineLocale();
        ui::setRespondedorArquivo({});
    }

    void theMenuOpensTheTablesWithTheirNotes()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        find<QAction>(main, QStringLiteral("mnuTabelas"))->trigger();
        QWidget* w = h.windows().window(kTabelas);
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->windowTitle(), QStringLiteral("Tabelas do manual"));

        auto* combo = find<QComboBox>(w, QStringLiteral("cboTabela"));
        QCOMPARE(combo->count(), static_cast<int>(manual::tabelas().size()));
        escolheTabela(w, QStringLiteral("GRAON"));
        QCOMPARE(combo->currentText(),
                 QStringLiteral("GRAON — ") + manual::descricaoTabela(QStringLiteral("GRAON")));

        // The key first, the values by their headings in words, then the notes.
        QAbstractItemModel* m = grade(w)->model();
        const int colunas = m->columnCount();
        QCOMPARE(colunas, static_cast<int>(schema::findTable(QStringLiteral("GRAON"))->columns.size()) + 2);
        QCOMPARE(m->headerData(1, Qt::Horizontal).toString(), kRendRef);
        QCOMPARE(m->headerData(1, Qt::Horizontal, Qt::ToolTipRole).toString(), QStringLiteral("RendRef"));
        QCOMPARE(m->headerData(colunas - 2, Qt::Horizontal).toString(), QStringLiteral("Confiança"));
        QCOMPARE(m->headerData(colunas - 1, Qt::Horizontal).toString(), QStringLiteral("Fonte"));

        // Every row of the table, a low one marked on its whole width, and counted.
        const QList<manual::LinhaManual> tabela = linhas(h, QStringLiteral("GRAON"));
        QCOMPARE(m->rowCount(), static_cast<int>(tabela.size()));
        int baixas = 0;
        QString baixa;
        for (const manual::LinhaManual& l : tabela) {
            if (l.confianca == manual::Confianca::Baixa) {
                ++baixas;
                baixa = l.chave;
            }
        }
        QVERIFY(baixas > 0);
        const int linha = linhaDaChave(w, baixa);
        QCOMPARE(m->index(linha, colunas - 2).data().toString(), QStringLiteral("baixa"));
        const QVariant fundo = m->index(linha, 0).data(Qt::BackgroundRole);
        QVERIFY(fundo.isValid());
        QCOMPARE(m->index(linha, 1).data(Qt::BackgroundRole), fundo);
        QCOMPARE(find<QLabel>(w, QStringLiteral("lblContagem"))->text(),
                 QStringLiteral("%1 linhas, %2 de confiança baixa").arg(tabela.size()).arg(baixas));

        // The source of the chosen row, whole, under the grid; a number as the machine writes it.
        auto* fonte = find<QPlainTextEdit>(w, QStringLiteral("txtFonte"));
        QVERIFY(fonte->toPlainText().isEmpty());
        selectRow(w, QStringLiteral("grdTabela"), linha);
        QCOMPARE(fonte->toPlainText(), tabela[linha].fonte);
        QCOMPARE(celula(w, QStringLiteral("Feijão"), kRendRef), QStringLiteral("1,5"));
    }

    void theFiltersNarrowTheRows()
    {
        UiHarness h;
        QWidget* w = h.open(kTabelas);
        escolheTabela(w, QStringLiteral("GRAON"));
        QAbstractItemModel* m = grade(w)->model();
        auto* contagem = find<QLabel>(w, QStringLiteral("lblContagem"));

        // Any capitals, and no accents needed.
        type(w, QStringLiteral("txtFiltro"), QStringLiteral("TRIGO"));
        QCOMPARE(m->rowCount(), 2);
        for (int i = 0; i < m->rowCount(); ++i)
            QVERIFY(m->index(i, 0).data().toString().startsWith(QStringLiteral("Trigo")));
        QVERIFY(contagem->text().startsWith(QStringLiteral("2 linhas, ")));
        type(w, QStringLiteral("txtFiltro"), QStringLiteral("feijao"));
        QCOMPARE(m->rowCount(), 1);
        QCOMPARE(m->index(0, 0).data().toString(), QStringLiteral("Feijão"));

        type(w, QStringLiteral("txtFiltro"), QString());
        auto* confianca = find<QComboBox>(w, QStringLiteral("cboConfianca"));
        QCOMPARE(confianca->itemText(0), QStringLiteral("Todas"));
        confianca->setCurrentIndex(confianca->findText(QStringLiteral("baixa")));
        const int colunaConfianca = m->columnCount() - 2;
        QVERIFY(m->rowCount() > 0);
        for (int i = 0; i < m->rowCount(); ++i)
            QCOMPARE(m->index(i, colunaConfianca).data().toString(), QStringLiteral("baixa"));
        QCOMPARE(contagem->text(), QStringLiteral("%1 linhas, %1 de confiança baixa").arg(m->rowCount()));

        // A row checked by the user leaves the low ones for its own.
        confianca->setCurrentIndex(confianca->findText(QStringLiteral("conferida pelo usuário")));
        QCOMPARE(m->rowCount(), 0);
        QCOMPARE(contagem->text(), QStringLiteral("0 linhas, 0 de confiança baixa"));
    }

    void aCorrectionWithAReasonIsWrittenWithItsHistory_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("digitado");
        QTest::newRow("vírgula") << commaLocale() << QStringLiteral("3,5");
        QTest::newRow("ponto") << pointLocale() << QStringLiteral("3.5");
    }

    void aCorrectionWithAReasonIsWrittenWithItsHistory()
    {
        QFETCH(QLocale, locale);
        QFETCH(QString, digitado);
        UiHarness h;
        MachineLocale maquina(locale);
        QWidget* w = h.open(kTabelas);
        escolheTabela(w, QStringLiteral("GRAON"));

        h.inputs = QStringList{QStringLiteral("Conferido no manual de 2004")};
        edita(w, QStringLiteral("TrigoG"), kRendRef, digitado);
        QVERIFY2(h.boxes.isEmpty(), qPrintable(h.texts().join('|')));
        QCOMPARE(h.prompts.size(), 1);
        QVERIFY(h.prompts[0].contains(QStringLiteral("TrigoG")));
        QCOMPARE(h.scalar(QStringLiteral("SELECT RendRef FROM GRAON WHERE Chave = 'TrigoG'")).toDouble(), 3.5);
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM HistoricoTabelas")).toInt(), 1);
        QCOMPARE(h.scalar(QStringLiteral("SELECT Motivo FROM HistoricoTabelas")).toString(),
                 QStringLiteral("Conferido no manual de 2004"));

        // The grid shows the new figure on the same row, now the user's.
        QCOMPARE(celula(w, QStringLiteral("TrigoG"), kRendRef), digitado);
        QCOMPARE(celula(w, QStringLiteral("TrigoG"), QStringLiteral("Confiança")), QStringLiteral("conferida pelo usuário"));
        QCOMPARE(chaveEscolhida(w), QStringLiteral("TrigoG"));
    }

    void refusedUnchangedOrUnexplainedValuesWriteNothing_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("outraConvencao");
        QTest::newRow("vírgula") << commaLocale() << QStringLiteral("1.5");
        QTest::newRow("ponto") << pointLocale() << QStringLiteral("1,5");
    }

    void refusedUnchangedOrUnexplainedValuesWriteNothing()
    {
        QFETCH(QLocale, locale);
        QFETCH(QString, outraConvencao);
        UiHarness h;
        MachineLocale maquina(locale);
        QWidget* w = h.open(kTabelas);
        escolheTabela(w, QStringLiteral("GRAON"));
        const QString antes = celula(w, QStringLiteral("TrigoG"), kRendRef);
        const auto nadaGravado = [&h]() {
            return h.scalar(QStringLiteral("SELECT COUNT(*) FROM HistoricoTabelas")).toInt() == 0
                && h.scalar(QStringLiteral("SELECT COUNT(*) FROM LinhasConferidas")).toInt() == 0;
        };

        // A figure of the other decimal convention is refused, never read as another number.
        edita(w, QStringLiteral("TrigoG"), kRendRef, outraConvencao);
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Exclamacao);
        QVERIFY(h.prompts.isEmpty());
        QCOMPARE(celula(w, QStringLiteral("TrigoG"), kRendRef), antes);
        QVERIFY(nadaGravado());

        // The same figure again asks nothing.
        h.clearBoxes();
        edita(w, QStringLiteral("TrigoG"), kRendRef, antes);
        QVERIFY(h.boxes.isEmpty());
        QVERIFY(h.prompts.isEmpty());

        // No reason, no change.
        h.inputs = QStringList{QString()};
        edita(w, QStringLiteral("TrigoG"), kRendRef, QStringLiteral("7"));
        QCOMPARE(h.prompts.size(), 1);
        QCOMPARE(celula(w, QStringLiteral("TrigoG"), kRendRef), antes);
        QVERIFY(nadaGravado());
        QCOMPARE(h.scalar(QStringLiteral("SELECT RendRef FROM GRAON WHERE Chave = 'TrigoG'")).toString(),
                 original(QStringLiteral("GRAON"), QStringLiteral("TrigoG"), 1).replace(QLatin1Char(','), QLatin1Char('.')));

        // The key is not a value to correct.
        QVERIFY(!(grade(w)->model()->index(linhaDaChave(w, QStringLiteral("TrigoG")), 0).flags() & Qt::ItemIsEditable));
    }

    void aFailedWriteIsToldAndLeavesTheValue()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        h.exec(QStringLiteral("CREATE TRIGGER bloqueia BEFORE UPDATE ON GRAON BEGIN SELECT RAISE(ABORT, 'bloqueada'); END"));
        QWidget* w = h.open(kTabelas);
        escolheTabela(w, QStringLiteral("GRAON"));
        const QString antes = celula(w, QStringLiteral("TrigoG"), kRendRef);
        h.inputs = QStringList{QStringLiteral("Conferido")};
        edita(w, QStringLiteral("TrigoG"), kRendRef, QStringLiteral("9"));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Critico);
        QCOMPARE(celula(w, QStringLiteral("TrigoG"), kRendRef), antes);
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM HistoricoTabelas")).toInt(), 0);
        QVERIFY(w->isVisible());
    }

    void restoringPutsTheRowBackAsDelivered()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        QWidget* w = h.open(kTabelas);
        escolheTabela(w, QStringLiteral("GRAON"));

        // A hurried user: the grid has the focus, but no row was chosen.
        focusByTab(w, QStringLiteral("grdTabela"));
        click(w, QStringLiteral("cmdRestaurar"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Selecione uma linha da tabela.")});

        h.clearBoxes();
        selectRow(w, QStringLiteral("grdTabela"), linhaDaChave(w, QStringLiteral("TrigoG")));
        click(w, QStringLiteral("cmdRestaurar"));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("A linha já tem os valores originais do programa.")});

        const QString antes = celula(w, QStringLiteral("TrigoG"), kRendRef);
        h.inputs = QStringList{QStringLiteral("Teste")};
        edita(w, QStringLiteral("TrigoG"), kRendRef, QStringLiteral("8"));
        QCOMPARE(celula(w, QStringLiteral("TrigoG"), kRendRef), QStringLiteral("8"));

        // No keeps the correction; Yes puts the figure back, with its line in the history.
        h.clearBoxes();
        h.answers = {QMessageBox::No};
        click(w, QStringLiteral("cmdRestaurar"));
        QCOMPARE(h.boxes.size(), 1);
        QVERIFY(h.boxes[0].texto.contains(QStringLiteral("8 → ") + antes));
        QCOMPARE(celula(w, QStringLiteral("TrigoG"), kRendRef), QStringLiteral("8"));
        click(w, QStringLiteral("cmdRestaurar"));
        QCOMPARE(celula(w, QStringLiteral("TrigoG"), kRendRef), antes);
        QVERIFY(celula(w, QStringLiteral("TrigoG"), QStringLiteral("Confiança")) != QStringLiteral("conferida pelo usuário"));
        QCOMPARE(chaveEscolhida(w), QStringLiteral("TrigoG"));
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM HistoricoTabelas")).toInt(), 2);

        // The history, most recent first, and written to a workbook.
        QTemporaryDir pasta;
        ui::setRespondedorArquivo([&pasta](const QString&, const QString& filtro) {
            return filtro.contains(QStringLiteral("*.xlsx")) ? pasta.filePath(QStringLiteral("historico")) : QString();
        });
        QStringList vistos;
        noDialogo(QStringLiteral("frmHistoricoTabelas"), [&vistos](QWidget* d) {
            QAbstractItemModel* m = find<QTableView>(d, QStringLiteral("grdHistorico"))->model();
            for (int i = 0; i < m->rowCount(); ++i)
                vistos << m->index(i, 6).data().toString();
            click(d, QStringLiteral("cmdExportarHist"));
            click(d, QStringLiteral("cmdFechar"));
        });
        h.clearBoxes();
        click(w, QStringLiteral("cmdHistorico"));
        QCOMPARE(vistos, QStringList({QStringLiteral("Valor original do programa restaurado"), QStringLiteral("Teste")}));
        QVERIFY(QFile::exists(pasta.filePath(QStringLiteral("historico.xlsx"))));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
    }

    void aTableGoesToAWorkbookAndComesBack()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        QWidget* w = h.open(kTabelas);
        escolheTabela(w, QStringLiteral("GRAON"));
        QTemporaryDir pasta;
        QString caminho;
        ui::setRespondedorArquivo([&caminho](const QString&, const QString&) { return caminho; });

        // A folder that is not there is told, as the workbook said it.
        caminho = pasta.filePath(QStringLiteral("não existe/GRAON.xlsx"));
        click(w, QStringLiteral("cmdExportar"));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Critico);
        h.clearBoxes();
        caminho = pasta.filePath(QStringLiteral("GRAON.xlsx"));
        click(w, QStringLiteral("cmdExportar"));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Informacao);
        QVERIFY(QFile::exists(caminho));

        // A corrected workbook: one figure changed, one key the table does not hold.
        const TableDef* def = schema::findTable(QStringLiteral("GRAON"));
        QVector<QVector<QVariant>> celulas;
        QVector<QVariant> nomes;
        for (const ColumnDef& c : def->columns)
            nomes << c.name;
        celulas << nomes;
        for (const manual::LinhaManual& l : linhas(h, QStringLiteral("GRAON"))) {
            QVector<QVariant> valores = l.valores;
            if (l.chave == QLatin1String("TrigoG"))
                valores[1] = 4.5;
            celulas << valores;
        }
        QVector<QVariant> estranha = celulas.last();
        estranha[0] = QStringLiteral("Cultura que não existe");
        celulas << estranha;
        caminho = pasta.filePath(QStringLiteral("corrigida.xlsx"));
        lavra::gravaXlsx(caminho, {FolhaEscrita{QStringLiteral("GRAON"), celulas}});

        QString alteracoes;
        QString recusas;
        noDialogo(QStringLiteral("frmImportaTabela"), [&](QWidget* d) {
            alteracoes = find<QPlainTextEdit>(d, QStringLiteral("txtAlteracoes"))->toPlainText();
            recusas = find<QPlainTextEdit>(d, QStringLiteral("txtRecusas"))->toPlainText();
            click(d, QStringLiteral("cmdAplicar"));
        });
        h.clearBoxes();
        h.inputs = QStringList{QStringLiteral("Importação de corrigida.xlsx")};
        click(w, QStringLiteral("cmdImportar"));
        QVERIFY(alteracoes.contains(QStringLiteral("TrigoG")));
        QVERIFY(recusas.contains(QStringLiteral("Cultura que não existe")));
        QCOMPARE(h.scalar(QStringLiteral("SELECT RendRef FROM GRAON WHERE Chave = 'TrigoG'")).toDouble(), 4.5);
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM HistoricoTabelas")).toInt(), 1);
        QCOMPARE(h.scalar(QStringLiteral("SELECT Motivo FROM HistoricoTabelas")).toString(),
                 QStringLiteral("Importação de corrigida.xlsx"));
        QCoreApplication::processEvents();
        QCOMPARE(celula(w, QStringLiteral("TrigoG"), kRendRef), QStringLiteral("4,5"));

        // Once in, the same workbook changes nothing, and no preview is shown for nothing.
        h.clearBoxes();
        h.prompts.clear();
        click(w, QStringLiteral("cmdImportar"));
        QCOMPARE(h.boxes.size(), 1);
        QVERIFY(h.boxes[0].texto.contains(QStringLiteral("não muda nenhum valor")));
        QVERIFY(h.prompts.isEmpty());
        QCOMPARE(h.scalar(QStringLiteral("SELECT COUNT(*) FROM HistoricoTabelas")).toInt(), 1);
    }

    void theRowsOfTheLastCalculationAreShownWhereTheyAre()
    {
        UiHarness h;
        MachineLocale maquina(pointLocale());
        Session& s = h.session();
        s.limpaCalculo();
        s.Analise = QVector<QVariant>(36, QVariant(0));
        for (const auto& [campo, valor] : QList<std::pair<int, QVariant>>{
                 {15, 10.0f}, {18, 30.0f}, {19, 10.0f}, {30, 3}, {31, 2}, {32, 3}, {33, 3}})
            s.Analise[campo] = valor;
        s.Grupo = 1;
        s.Cultivo = 1;
        s.Dados[2] = QStringLiteral("Primeiro");
        QWidget* graos = h.open(janela::kGraos);

        auto* linhasUsadas = find<QAction>(graos, QStringLiteral("mnuLinhasUsadas"));
        linhasUsadas->trigger();
        QCOMPARE(h.boxes.size(), 1);
        QVERIFY(h.boxes[0].texto.startsWith(QStringLiteral("Faça o cálculo primeiro")));
        QVERIFY(!h.windows().window(kTabelas));

        choose(graos, QStringLiteral("lstCulturas"), graos::Trigo);
        choose(graos, QStringLiteral("lstCultAnt"), 0);
        type(graos, QStringLiteral("txtExpect"), QStringLiteral("4"));
        click(graos, QStringLiteral("cmdCalc"));
        h.clearBoxes();
        linhasUsadas->trigger();
        QVERIFY2(h.boxes.isEmpty(), qPrintable(h.texts().join(QLatin1Char('|'))));

        // The first row read, in its table, with the others listed to go to.
        const QList<manual::LinhaUsada> usadas = s.LinhasUsadas;
        QVERIFY(usadas.size() >= 3);
        QCOMPARE(usadas[0].tabela, QStringLiteral("GRAON"));
        QVERIFY(usadas[0].chave.startsWith(QStringLiteral("Trigo")));
        QVERIFY(usadas.contains(manual::LinhaUsada{QStringLiteral("GRAOPC1"), QStringLiteral("Trigo")}));
        QWidget* w = h.windows().window(kTabelas);
        QVERIFY(w && w->isVisible());
        auto* lista = find<QListWidget>(w, QStringLiteral("lstUsadas"));
        QVERIFY(lista->isVisible());
        QCOMPARE(lista->count(), static_cast<int>(usadas.size()));
        QCOMPARE(lista->item(0)->text(), QStringLiteral("GRAON — ") + usadas[0].chave);
        QCOMPARE(find<QComboBox>(w, QStringLiteral("cboTabela"))->currentData().toString(), QStringLiteral("GRAON"));
        QCOMPARE(chaveEscolhida(w), usadas[0].chave);

        // Another item goes to its row, whatever the filters were hiding.
        type(w, QStringLiteral("txtFiltro"), QStringLiteral("milho"));
        lista->setCurrentRow(static_cast<int>(
            usadas.indexOf(manual::LinhaUsada{QStringLiteral("GRAOPC1"), QStringLiteral("Trigo")})));
        QCOMPARE(find<QComboBox>(w, QStringLiteral("cboTabela"))->currentData().toString(), QStringLiteral("GRAOPC1"));
        QVERIFY(text(w, QStringLiteral("txtFiltro")).isEmpty());
        QCOMPARE(chaveEscolhida(w), QStringLiteral("Trigo"));

        // Opened from the main menu, the window is not about a calculation.
        w->close();
        QTRY_VERIFY(!h.windows().window(kTabelas));
        QVERIFY(!find<QListWidget>(h.open(kTabelas), QStringLiteral("lstUsadas"))->isVisible());

        // The ornamentals are worked out without the tables.
        QWidget* ornam = h.open(janela::kOrnam);
        choose(ornam, QStringLiteral("lstCulturas"), 0);
        click(ornam, QStringLiteral("cmdCalc"));
        h.clearBoxes();
        find<QAction>(ornam, QStringLiteral("mnuLinhasUsadas"))->trigger();
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Este cálculo não lê linhas das tabelas do manual.")});
    }

    void theKeyboardMovesInOrderAndEscapeCloses()
    {
        UiHarness h;
        QWidget* w = h.open(kTabelas);
        QStringList ordem;
        QWidget* atual = find<QWidget>(w, QStringLiteral("cboTabela"));
        do {
            if ((atual->focusPolicy() & Qt::TabFocus) && atual->isVisibleTo(w) && !atual->objectName().isEmpty()
                && !atual->objectName().startsWith(QStringLiteral("qt_")))
                ordem << atual->objectName();
            atual = atual->nextInFocusChain();
        } while (atual != find<QWidget>(w, QStringLiteral("cboTabela")) && ordem.size() < 20);
        QCOMPARE(ordem, QStringList({"cboTabela", "txtFiltro", "cboConfianca", "grdTabela", "cmdRestaurar",
                                     "cmdHistorico", "cmdExportar", "cmdImportar", "cmdFechar"}));

        auto* filtro = find<QLineEdit>(w, QStringLiteral("txtFiltro"));
        filtro->setText(QStringLiteral("milho"));
        QTest::keyClick(filtro, Qt::Key_Return);
        QVERIFY(w->isVisible());
        QVERIFY(h.boxes.isEmpty());
        QTest::keyClick(filtro, Qt::Key_Escape);
        QTRY_VERIFY(!h.windows().window(kTabelas));
    }
};

QTEST_MAIN(TablesWindowTest)
#include "tables_window_test.moc"
