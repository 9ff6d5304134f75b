#include "app/session.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmlavra.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/crops.h"
#include "exchange/xlsxfile.h"
#include "store/changenotifier.h"
#include "store/manualtables.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTableView>
#include <QTimer>

#include <algorithm>
#include <functional>

using namespace lavra;
using namespace lavra::test;

namespace {

const QString kGraon = QStringLiteral("GRAON");
const QString kTrigo = QStringLiteral("TrigoG");
const QString kRendRef = manual::tituloColuna(kGraon, QStringLiteral("RendRef"));

QTableView* grade(QWidget* w) { return find<QTableView>(w, QStringLiteral("grdTabela")); }

QWidget* abreTabela(UiHarness& h, const QString& tabela)
{
    QWidget* w = h.open(janela::kTabelas);
    auto* combo = find<QComboBox>(w, QStringLiteral("cboTabela"));
    combo->setCurrentIndex(combo->findData(tabela));
    return w;
}

QModelIndex indice(QWidget* w, const QString& chave, const QString& titulo = {})
{
    QAbstractItemModel* m = grade(w)->model();
    int coluna = 0;
    while (!titulo.isEmpty() && coluna < m->columnCount() && m->headerData(coluna, Qt::Horizontal).toString() != titulo)
        ++coluna;
    for (int i = 0; i < m->rowCount(); ++i) {
        if (m->index(i, 0).data().toString() == chave)
            return m->index(i, coluna);
    }
    return {};
}

QString celula(QWidget* w, const QString& chave, const QString& titulo) { return indice(w, chave, titulo).data().toString(); }

QString chaveEscolhida(QWidget* w)
{
    const QModelIndexList linhas = grade(w)->selectionModel()->selectedRows();
    return linhas.isEmpty() ? QString() : linhas.first().data().toString();
}

// As the user edits a cell: chosen, F2, the text, Enter. The grid commits the text once the
// editor has seen the key, and the window asks for the reason once the editor has closed: two
// rounds of events.
void edita(QWidget* w, const QString& chave, const QString& titulo, const QString& texto)
{
    const QModelIndex i = indice(w, chave, titulo);
    grade(w)->setCurrentIndex(i);
    QTest::keyClick(grade(w), Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(grade(w)->indexWidget(i));
    QVERIFY(editor);
    editor->setText(texto);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

// The dialogs are modal: what the user does in one is set before it opens.
void noDialogo(const QString& nome, std::function<void(QWidget*)> acao)
{
    auto* espera = new QTimer;
    espera->setInterval(5);
    QObject::connect(espera, &QTimer::timeout, [espera, nome, acao = std::move(acao)] {
        QWidget* dialogo = QApplication::activeModalWidget();
        if (dialogo && dialogo->objectName() == nome) {
            espera->stop();
            espera->deleteLater();
            acao(dialogo);
        }
    });
    espera->start();
}

int historico(UiHarness& h) { return h.scalar(QStringLiteral("SELECT COUNT(*) FROM HistoricoTabelas")).toInt(); }
double rendRefTrigo(UiHarness& h)
{
    return h.scalar(QStringLiteral("SELECT RendRef FROM GRAON WHERE Chave = 'TrigoG'")).toDouble();
}

} // namespace

class TablesWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { ui::setRespondedorArquivo({}); }

    void theMenuOpensATableWithItsNotesAndFilters()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        ui::FrmLavra* main = h.app().mostraJanelaPrincipal();
        find<QAction>(main, QStringLiteral("mnuTabelas"))->trigger();
        QWidget* w = abreTabela(h, kGraon);
        QVERIFY(w->isVisible());
        QCOMPARE(w->windowTitle(), QStringLiteral("Tabelas do manual"));
        QCOMPARE(find<QComboBox>(w, QStringLiteral("cboTabela"))->currentText(),
                 QStringLiteral("GRAON — ") + manual::descricaoTabela(kGraon));

        // The key, the values by their headings in words, then the notes; a low row marked across.
        QAbstractItemModel* m = grade(w)->model();
        QCOMPARE(m->headerData(1, Qt::Horizontal).toString(), kRendRef);
        QCOMPARE(m->headerData(1, Qt::Horizontal, Qt::ToolTipRole).toString(), QStringLiteral("RendRef"));
        QCOMPARE(m->headerData(m->columnCount() - 1, Qt::Horizontal).toString(), QStringLiteral("Fonte"));
        const QList<manual::LinhaManual> linhas = manual::leTabela(h.session().db, kGraon);
        QCOMPARE(m->rowCount(), static_cast<int>(linhas.size()));
        const auto baixa = std::find_if(linhas.begin(), linhas.end(),
                                        [](const auto& l) { return l.confianca == manual::Confianca::Baixa; });
        const qsizetype baixas = std::count_if(linhas.begin(), linhas.end(),
                                               [](const auto& l) { return l.confianca == manual::Confianca::Baixa; });
        QCOMPARE(celula(w, baixa->chave, QStringLiteral("Confiança")), QStringLiteral("baixa"));
        QVERIFY(indice(w, baixa->chave).data(Qt::BackgroundRole).isValid());
        QCOMPARE(indice(w, baixa->chave, kRendRef).data(Qt::BackgroundRole), indice(w, baixa->chave).data(Qt::BackgroundRole));
        auto* contagem = find<QLabel>(w, QStringLiteral("lblContagem"));
        QCOMPARE(contagem->text(), QStringLiteral("%1 linhas, %2 de confiança baixa").arg(linhas.size()).arg(baixas));
        QCOMPARE(celula(w, QStringLiteral("Feijão"), kRendRef), QStringLiteral("1,5"));

        // The whole source of the chosen row, and none before a choice.
        auto* fonte = find<QPlainTextEdit>(w, QStringLiteral("txtFonte"));
        QVERIFY(fonte->toPlainText().isEmpty());
        grade(w)->setCurrentIndex(indice(w, baixa->chave));
        QCOMPARE(fonte->toPlainText(), baixa->fonte);

        // By key, any capitals and no accents needed; by confidence.
        type(w, QStringLiteral("txtFiltro"), QStringLiteral("TRIGO"));
        QCOMPARE(m->rowCount(), 2);
        QVERIFY(contagem->text().startsWith(QStringLiteral("2 linhas, ")));
        type(w, QStringLiteral("txtFiltro"), QStringLiteral("feijao"));
        QCOMPARE(m->rowCount(), 1);
        type(w, QStringLiteral("txtFiltro"), QString());
        auto* confianca = find<QComboBox>(w, QStringLiteral("cboConfianca"));
        confianca->setCurrentIndex(confianca->findText(QStringLiteral("baixa")));
        QCOMPARE(contagem->text(), QStringLiteral("%1 linhas, %1 de confiança baixa").arg(baixas));
        confianca->setCurrentIndex(confianca->findText(QStringLiteral("conferida pelo usuário")));
        QCOMPARE(m->rowCount(), 0);
    }

    void aCorrectionNeedsANumberOfTheMachineAndAReason_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("numero");
        QTest::addColumn<QString>("outraConvencao");
        QTest::newRow("vírgula") << commaLocale() << QStringLiteral("3,5") << QStringLiteral("1.5");
        QTest::newRow("ponto") << pointLocale() << QStringLiteral("3.5") << QStringLiteral("1,5");
    }

    void aCorrectionNeedsANumberOfTheMachineAndAReason()
    {
        QFETCH(QLocale, locale);
        QFETCH(QString, numero);
        QFETCH(QString, outraConvencao);
        UiHarness h;
        MachineLocale maquina(locale);
        QWidget* w = abreTabela(h, kGraon);
        const QString antes = celula(w, kTrigo, kRendRef);
        const double original = rendRefTrigo(h);

        // The other decimal convention is refused, never read as another number; the same figure
        // and an empty reason change nothing.
        edita(w, kTrigo, kRendRef, outraConvencao);
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Exclamacao);
        edita(w, kTrigo, kRendRef, antes);
        QVERIFY(h.prompts.isEmpty());
        h.inputs = QStringList{QString()};
        edita(w, kTrigo, kRendRef, QStringLiteral("7"));
        QCOMPARE(h.prompts.size(), 1);
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(celula(w, kTrigo, kRendRef), antes);
        QCOMPARE(rendRefTrigo(h), original);
        QCOMPARE(historico(h), 0);
        QVERIFY(!(indice(w, kTrigo).flags() & Qt::ItemIsEditable));

        h.inputs = QStringList{QStringLiteral("Conferido no manual de 2004")};
        edita(w, kTrigo, kRendRef, numero);
        QVERIFY(h.prompts.last().contains(kTrigo));
        QCOMPARE(rendRefTrigo(h), 3.5);
        QCOMPARE(historico(h), 1);
        QCOMPARE(h.scalar(QStringLiteral("SELECT Motivo FROM HistoricoTabelas")).toString(),
                 QStringLiteral("Conferido no manual de 2004"));
        QCOMPARE(celula(w, kTrigo, kRendRef), numero);
        QCOMPARE(celula(w, kTrigo, QStringLiteral("Confiança")), QStringLiteral("conferida pelo usuário"));
        QCOMPARE(chaveEscolhida(w), kTrigo);
    }

    void aFailedWriteIsToldAndLeavesTheValue()
    {
        UiHarness h;
        h.exec(QStringLiteral("CREATE TRIGGER bloqueia BEFORE UPDATE ON GRAON BEGIN SELECT RAISE(ABORT, 'bloqueada'); END"));
        QWidget* w = abreTabela(h, kGraon);
        const QString antes = celula(w, kTrigo, kRendRef);
        h.inputs = QStringList{QStringLiteral("Conferido")};
        edita(w, kTrigo, kRendRef, QStringLiteral("9"));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Critico);
        QCOMPARE(celula(w, kTrigo, kRendRef), antes);
        QCOMPARE(historico(h), 0);
    }

    void restoringPutsTheRowBackWithItsHistory()
    {
        UiHarness h;
        QWidget* w = abreTabela(h, kGraon);
        // A hurried user: the grid has the focus, but no row was chosen.
        focusByTab(w, QStringLiteral("grdTabela"));
        click(w, QStringLiteral("cmdRestaurar"));
        grade(w)->setCurrentIndex(indice(w, kTrigo));
        click(w, QStringLiteral("cmdRestaurar"));
        QCOMPARE(h.texts(), QStringList({QStringLiteral("Selecione uma linha da tabela."),
                                         QStringLiteral("A linha já tem os valores originais do programa.")}));

        const QString antes = celula(w, kTrigo, kRendRef);
        h.inputs = QStringList{QStringLiteral("Teste")};
        edita(w, kTrigo, kRendRef, QStringLiteral("8"));
        // No keeps the correction; Yes puts the figure back.
        h.clearBoxes();
        h.answers = {QMessageBox::No};
        click(w, QStringLiteral("cmdRestaurar"));
        QVERIFY(h.boxes[0].texto.contains(QStringLiteral("8 → ") + antes));
        QCOMPARE(celula(w, kTrigo, kRendRef), QStringLiteral("8"));
        click(w, QStringLiteral("cmdRestaurar"));
        QCOMPARE(celula(w, kTrigo, kRendRef), antes);
        QVERIFY(celula(w, kTrigo, QStringLiteral("Confiança")) != QStringLiteral("conferida pelo usuário"));
        QCOMPARE(chaveEscolhida(w), kTrigo);

        // The history, most recent first, goes to a workbook.
        QTemporaryDir pasta;
        ui::setRespondedorArquivo([&pasta](const QString&, const QString&) { return pasta.filePath(QStringLiteral("h")); });
        QStringList motivos;
        noDialogo(QStringLiteral("frmHistoricoTabelas"), [&motivos](QWidget* d) {
            QAbstractItemModel* m = find<QTableView>(d, QStringLiteral("grdHistorico"))->model();
            for (int i = 0; i < m->rowCount(); ++i)
                motivos << m->index(i, 6).data().toString();
            click(d, QStringLiteral("cmdExportarHist"));
            click(d, QStringLiteral("cmdFechar"));
        });
        click(w, QStringLiteral("cmdHistorico"));
        QCOMPARE(motivos, QStringList({QStringLiteral("Valor original do programa restaurado"), QStringLiteral("Teste")}));
        QVERIFY(QFile::exists(pasta.filePath(QStringLiteral("h.xlsx"))));
    }

    void aTableGoesToAWorkbookAndComesBack()
    {
        UiHarness h;
        MachineLocale maquina(commaLocale());
        QWidget* w = abreTabela(h, kGraon);
        QTemporaryDir pasta;
        QString caminho = pasta.filePath(QStringLiteral("não existe/GRAON.xlsx"));
        ui::setRespondedorArquivo([&caminho](const QString&, const QString&) { return caminho; });
        click(w, QStringLiteral("cmdExportar"));
        caminho = pasta.filePath(QStringLiteral("GRAON.xlsx"));
        click(w, QStringLiteral("cmdExportar"));
        QCOMPARE(h.boxes.size(), 2);
        QCOMPARE(h.boxes[0].icone, ui::Icone::Critico);
        QCOMPARE(h.boxes[1].icone, ui::Icone::Informacao);
        QVERIFY(QFile::exists(caminho));

        // The user's workbook: one figure changed, one key the table does not hold.
        QVector<QVector<QVariant>> linhas{{}};
        for (const ColumnDef& c : manual::definicaoDe(kGraon).columns)
            linhas[0] << c.name;
        for (const manual::LinhaManual& l : manual::leTabela(h.session().db, kGraon))
            linhas << l.valores;
        linhas << linhas.last();
        linhas.last()[0] = QStringLiteral("Cultura que não existe");
        for (auto& l : linhas) {
            if (l[0] == kTrigo)
                l[1] = 4.5;
        }
        caminho = pasta.filePath(QStringLiteral("corrigida.xlsx"));
        gravaXlsx(caminho, {FolhaEscrita{kGraon, linhas}});

        QString previa;
        noDialogo(QStringLiteral("frmImportaTabela"), [&previa](QWidget* d) {
            previa = find<QPlainTextEdit>(d, QStringLiteral("txtAlteracoes"))->toPlainText() + QLatin1Char('|')
                   + find<QPlainTextEdit>(d, QStringLiteral("txtRecusas"))->toPlainText();
            click(d, QStringLiteral("cmdAplicar"));
        });
        h.inputs = QStringList{QStringLiteral("Importação de corrigida.xlsx")};
        click(w, QStringLiteral("cmdImportar"));
        QVERIFY(previa.section(QLatin1Char('|'), 0, 0).contains(kTrigo));
        QVERIFY(previa.section(QLatin1Char('|'), 1).contains(QStringLiteral("Cultura que não existe")));
        QCOMPARE(rendRefTrigo(h), 4.5);
        QCOMPARE(historico(h), 1);
        QCOMPARE(celula(w, kTrigo, kRendRef), QStringLiteral("4,5"));

        // Once in, the same workbook changes nothing, and no preview is shown for nothing.
        h.clearBoxes();
        click(w, QStringLiteral("cmdImportar"));
        QVERIFY(h.texts().join(QString()).contains(QStringLiteral("não muda nenhum valor")));
        QCOMPARE(historico(h), 1);
    }

    void theRowsOfTheLastCalculationAreShownWhereTheyAre()
    {
        // What earlier cases wrote is told now, not to the windows of this one.
        ChangeNotifier::instance().flush();
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
        QVERIFY(h.texts().value(0).startsWith(QStringLiteral("Faça o cálculo primeiro")));
        QVERIFY(!h.windows().window(janela::kTabelas));

        choose(graos, QStringLiteral("lstCulturas"), graos::Trigo);
        choose(graos, QStringLiteral("lstCultAnt"), 0);
        type(graos, QStringLiteral("txtExpect"), QStringLiteral("4"));
        click(graos, QStringLiteral("cmdCalc"));
        h.clearBoxes();
        linhasUsadas->trigger();
        QVERIFY(h.boxes.isEmpty());

        // The first row read, in its table; the others listed to go to, whatever the filters hid.
        const QList<manual::LinhaUsada> usadas = s.LinhasUsadas;
        QVERIFY(usadas.size() >= 3 && usadas[0].tabela == kGraon && usadas[0].chave.startsWith(QStringLiteral("Trigo")));
        QWidget* w = h.windows().window(janela::kTabelas);
        auto* lista = find<QListWidget>(w, QStringLiteral("lstUsadas"));
        QVERIFY(w->isVisible() && lista->isVisible());
        QCOMPARE(lista->item(0)->text(), QStringLiteral("GRAON — ") + usadas[0].chave);
        QCOMPARE(find<QComboBox>(w, QStringLiteral("cboTabela"))->currentData().toString(), kGraon);
        QCOMPARE(chaveEscolhida(w), usadas[0].chave);
        type(w, QStringLiteral("txtFiltro"), QStringLiteral("milho"));
        const manual::LinhaUsada fosforo{QStringLiteral("GRAOPC1"), QStringLiteral("Trigo")};
        QVERIFY(usadas.contains(fosforo));
        lista->setCurrentRow(static_cast<int>(usadas.indexOf(fosforo)));
        QCOMPARE(find<QComboBox>(w, QStringLiteral("cboTabela"))->currentData().toString(), fosforo.tabela);
        QCOMPARE(chaveEscolhida(w), fosforo.chave);

        // A correction of a table the figures came from makes them stale; one of another table
        // does not.
        const auto necN = [&]() { return find<QLineEdit>(graos, QStringLiteral("txtNec_0"))->text(); };
        QVERIFY(!necN().isEmpty());
        const auto corrigeEm = [&](const QString& tabela, const QString& chave) {
            const QList<manual::Correcao> volta{{tabela, chave, 1, h.scalar(QStringLiteral("SELECT RendRef FROM %1 WHERE Chave = '%2'").arg(tabela, chave)), 9.0}};
            manual::corrige(s.db, volta, QStringLiteral("teste"));
            ChangeNotifier::instance().flush();
        };
        corrigeEm(QStringLiteral("FORRAGN"), QStringLiteral("Sorgo silagem"));
        QVERIFY(!necN().isEmpty());
        corrigeEm(fosforo.tabela, fosforo.chave);
        QVERIFY(necN().isEmpty());

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
        QWidget* w = h.open(janela::kTabelas);
        QStringList ordem;
        for (QWidget* c = find<QWidget>(w, QStringLiteral("cboTabela")); ordem.size() < 9; c = c->nextInFocusChain()) {
            if ((c->focusPolicy() & Qt::TabFocus) && c->isVisibleTo(w) && !c->objectName().startsWith(QStringLiteral("qt_")))
                ordem << c->objectName();
        }
        QCOMPARE(ordem, QStringList({"cboTabela", "txtFiltro", "cboConfianca", "grdTabela", "cmdRestaurar",
                                     "cmdHistorico", "cmdExportar", "cmdImportar", "cmdFechar"}));
        auto* filtro = find<QLineEdit>(w, QStringLiteral("txtFiltro"));
        QTest::keyClick(filtro, Qt::Key_Return);
        QVERIFY(w->isVisible() && h.boxes.isEmpty());
        QTest::keyClick(filtro, Qt::Key_Escape);
        QTRY_VERIFY(!h.windows().window(janela::kTabelas));
    }
};

QTEST_MAIN(TablesWindowTest)
#include "tables_window_test.moc"
