#include "app/analise.h"
#include "app/session.h"
#include "app/ui/dialogs.h"
#include "app/ui/windowregistry.h"
#include "charts/bands.h"
#include "charts/ui/chartview.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QAction>
#include <QApplication>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QClipboard>
#include <QGraphicsScene>
#include <QGraphicsSimpleTextItem>
#include <QImageReader>
#include <QListWidget>
#include <QPieSeries>
#include <QPieSlice>
#include <QPrinter>
#include <QSvgRenderer>
#include <QTableWidget>

using namespace lavra;
using namespace lavra::test;

namespace {

const QString kCoxilha2025 = QStringLiteral("Santa Rita/Coxilha/10/03/2025");
const QString kCoxilha2026 = QStringLiteral("Santa Rita/Coxilha/15/08/2026");
const QString kVarzea = QStringLiteral("Santa Rita/Várzea/15/08/2026");
const QString kMilho = QStringLiteral("Milho-Primeiro-15/10/2026");

QWidget* aberta(UiHarness& h, const QString& nome)
{
    QWidget* w = h.windows().window(nome);
    return w && w->isVisible() ? w : nullptr;
}

void aciona(QWidget* janela, const QString& menu)
{
    QAction* acao = janela ? janela->findChild<QAction*>(menu) : nullptr;
    QVERIFY2(acao, qPrintable(menu));
    QVERIFY2(acao->isEnabled(), qPrintable(menu));
    acao->trigger();
}

QChart* grafico(QWidget* janela, const QString& vista)
{
    auto* v = find<QChartView>(janela, vista);
    return v ? v->chart() : nullptr;
}

QStringList fatias(QChart* chart)
{
    QStringList rotulos;
    for (QPieSlice* fatia : static_cast<QPieSeries*>(chart->series().first())->slices())
        rotulos << fatia->label();
    return rotulos;
}

// A screenshot of a window for the docs, when asked for.
void captura(QWidget* janela, const QString& nome)
{
    const QString pasta = qEnvironmentVariable("LAVRA_CAPTURAS");
    if (!pasta.isEmpty() && janela)
        janela->window()->grab().save(pasta + QLatin1Char('/') + nome + QStringLiteral(".png"));
}

} // namespace

// The four charts through their windows: the frame and its selections, the ways between the
// charts, the links from the calculation, and the print, copy and save of a chart.
class ChartsWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<UiHarness> m_harness;
    UiHarness& h() { return *m_harness; }

    void cadastra(const QString& gleba, const QString& data, const QString& ph, const QString& p, const QString& k)
    {
        CamposAnalise c = analiseDeExemplo();
        c.gleba = gleba;
        c.data = data;
        c.pH = ph;
        c.p = p;
        c.k = k;
        cadastraAnalise(h(), c);
    }

    // The selection of the charts in a mode, through the frame's menu, with an analysis chosen.
    QWidget* escolhe(const QString& menu, const QString& analise)
    {
        QWidget* frame = h().open(QStringLiteral("frmGraficos"));
        aciona(frame, menu);
        QWidget* sel = aberta(h(), QStringLiteral("frmChamaGraf"));
        auto* lista = find<QListWidget>(sel, QStringLiteral("lstAna"));
        const auto itens = lista->findItems(analise, Qt::MatchExactly);
        if (!itens.isEmpty())
            lista->setCurrentItem(itens.first());
        click(sel, QStringLiteral("cmdContinua"));
        return sel;
    }

private Q_SLOTS:
    void init()
    {
        setMachineLocale(test::commaLocale());
        m_harness = std::make_unique<UiHarness>();
        h().exec(QStringLiteral("INSERT INTO Clientes VALUES ('Ana Prado', 'Linha Sete', 'Erechim', '', '')"));
        cadastra(QStringLiteral("Coxilha"), QStringLiteral("15/08/2026"), QStringLiteral("5,2"), QStringLiteral("8"), QStringLiteral("90"));
        cadastra(QStringLiteral("Coxilha"), QStringLiteral("10/03/2025"), QStringLiteral("4,8"), QStringLiteral("4"), QStringLiteral("60"));
        cadastra(QStringLiteral("Várzea"), QStringLiteral("15/08/2026"), QStringLiteral("6,1"), QStringLiteral("20"), QStringLiteral("150"));
    }

    void cleanup()
    {
        m_harness.reset();
        ui::setRespondedorImpressao({});
        ui::setRespondedorArquivo({});
        resetMachineLocale();
    }

    void fertigraphAndTheCecOfTheSameAnalysis()
    {
        // Going on without choosing is refused, and the selection stays.
        QWidget* sel = escolhe(QStringLiteral("ferti"), QString());
        QCOMPARE(h().texts(), QStringList{QStringLiteral("Selecione cliente e análise!")});
        QVERIFY(aberta(h(), QStringLiteral("frmChamaGraf")));

        find<QListWidget>(sel, QStringLiteral("lstAna"))->setCurrentRow(0);
        const QString escolhida = find<QListWidget>(sel, QStringLiteral("lstAna"))->currentItem()->text();
        click(sel, QStringLiteral("cmdContinua"));
        QWidget* chart = aberta(h(), QStringLiteral("frmChart"));
        QVERIFY(chart);
        QVERIFY(!aberta(h(), QStringLiteral("frmChamaGraf")));
        QCOMPARE(chart->windowTitle(), QStringLiteral("Fertigráfico"));
        QChart* barras = grafico(chart, QStringLiteral("chartFertig"));
        QCOMPARE(barras->title(), escolhida.toUpper());
        auto* serie = static_cast<QBarSeries*>(barras->series().first());
        QCOMPARE(serie->barSets().first()->count(), 9);
        QCOMPARE(serie->barSets().first()->color(), QColor(222, 105, 0));
        auto* tabela = find<QTableWidget>(chart, QStringLiteral("flxTab"));
        QCOMPARE(tabela->rowCount(), 10);
        QCOMPARE(tabela->item(1, 0)->text(), QStringLiteral("Ca (cmolc/dm³)"));
        QCOMPARE(tabela->item(1, 1)->text(), QStringLiteral("3,0"));
        // A calculation in progress keeps its analysis.
        QVERIFY(h().session().Analise.isEmpty());
        captura(chart, QStringLiteral("fertigrafico"));

        // The CEC of the same analysis; back to the Fertigraph only by closing it.
        aciona(chart, QStringLiteral("Análise"));
        QWidget* ctc = aberta(h(), QStringLiteral("frmOcupaCTC"));
        QVERIFY(ctc);
        QVERIFY(!ctc->findChild<QAction*>(QStringLiteral("outrasanalises"))->isEnabled());
        QCOMPARE(grafico(ctc, QStringLiteral("chartCTC"))->title(), escolhida.toUpper());
        QCOMPARE(fatias(grafico(ctc, QStringLiteral("chartCTC"))).first(), QStringLiteral("Cálcio 33,9 %"));
        captura(ctc, QStringLiteral("ocupacao-ctc"));
        ctc->close();
        QTRY_VERIFY(!h().windows().window(QStringLiteral("frmOcupaCTC")));
        QWidget* reaberto = aberta(h(), QStringLiteral("frmChart"));
        QVERIFY(reaberto);
        QCOMPARE(grafico(reaberto, QStringLiteral("chartFertig"))->title(), escolhida.toUpper());
        QVERIFY(!h().session().CTCDoFertigrafico);

        // Another analysis: the selection anew, in the Fertigraph's mode, and the chart goes.
        aciona(reaberto, QStringLiteral("outrasanalises"));
        QTRY_VERIFY(!h().windows().window(QStringLiteral("frmChart")));
        QVERIFY(aberta(h(), QStringLiteral("frmChamaGraf")));
        QCOMPARE(h().session().ModoEscolha, QStringLiteral("Fertigráfico"));

        // Closing the frame closes all that lives in it.
        h().windows().window(QStringLiteral("frmGraficos"))->close();
        QTRY_COMPARE(h().windows().openWindows(), QStringList{});
    }

    // The charts choose their mode as they open their selection; the selection of a calculation in
    // progress, hidden meanwhile, still goes on to the crop group.
    void aChartOpenedMeanwhileLeavesTheCalculationItsSelection()
    {
        QWidget* principal = h().app().mostraJanelaPrincipal();
        h().clearBoxes();
        click(principal, QStringLiteral("cmdCalc"));
        QWidget* cliAn = aberta(h(), QStringLiteral("frmCliAn"));
        QVERIFY(cliAn);
        cliAn->hide();
        escolhe(QStringLiteral("ferti"), kVarzea);
        QVERIFY(aberta(h(), QStringLiteral("frmChart")));

        h().windows().show(QStringLiteral("frmCliAn"));
        find<QListWidget>(cliAn, QStringLiteral("lstAna"))->setCurrentRow(0);
        click(cliAn, QStringLiteral("cmdContinua"));
        QVERIFY(aberta(h(), QStringLiteral("frmGrupCult")));
        QCOMPARE(h().session().Analise.value(0).toString(), kCoxilha2025);
    }

    void evolutionOfAFieldAndOfOneAlone()
    {
        // Alone in its field: told, and the selection stays for another choice.
        escolhe(QStringLiteral("evolferti"), kVarzea);
        QCOMPARE(h().texts(), QStringList{QStringLiteral("Não é possível exibir gráfico de evolução da fertilidade para uma única área!")});
        QVERIFY(!h().windows().window(QStringLiteral("frmEvolFert")));
        QWidget* sel = aberta(h(), QStringLiteral("frmChamaGraf"));
        QVERIFY(sel);

        auto* lista = find<QListWidget>(sel, QStringLiteral("lstAna"));
        lista->setCurrentItem(lista->findItems(kCoxilha2026, Qt::MatchExactly).first());
        click(sel, QStringLiteral("cmdContinua"));
        QWidget* evol = aberta(h(), QStringLiteral("frmEvolFert"));
        QVERIFY(evol);
        QChart* chart = grafico(evol, QStringLiteral("chartEvolf"));
        QCOMPARE(chart->title(), QStringLiteral("SANTA RITA/COXILHA") + QString(16, QLatin1Char(' ')));
        const auto conjuntos = static_cast<QBarSeries*>(chart->series().first())->barSets();
        QCOMPARE(conjuntos.size(), 9);
        QCOMPARE(conjuntos[8]->label(), QStringLiteral("K"));
        QCOMPARE(conjuntos[8]->color(), QColor(0, 128, 0));
        QCOMPARE(conjuntos[0]->count(), 2);
        // By date: the lower pH of 2025 comes first.
        QVERIFY(conjuntos[0]->at(0) < conjuntos[0]->at(1));
        captura(evol, QStringLiteral("evolucao"));

        // Closing it closes the hidden selection too.
        evol->close();
        QTRY_VERIFY(!h().windows().window(QStringLiteral("frmChamaGraf")));
    }

    void costShareOfASavedRecommendationAndOfTheCalculation()
    {
        h().exec(QStringLiteral("INSERT INTO RecoForm (CodAnalise, CodCultivo, CalcCustoTotal, BaseCustoTotal, CobCustoTotal, CustoTotal) "
                                "VALUES ('%1', '%2', 15840, 22106.7, 11422.95, 49369.65)")
                     .arg(kCoxilha2026, kMilho));
        QWidget* frame = h().open(QStringLiteral("frmGraficos"));
        aciona(frame, QStringLiteral("custofert"));
        QWidget* sel = aberta(h(), QStringLiteral("frmChamaGrafCusto"));
        QVERIFY(sel);
        click(sel, QStringLiteral("cmdContinua"));
        QCOMPARE(h().texts(), QStringList{QStringLiteral("Selecione cliente, análise e recomendação!")});
        auto* analises = find<QListWidget>(sel, QStringLiteral("lstAna"));
        analises->setCurrentItem(analises->findItems(kCoxilha2026, Qt::MatchExactly).first());
        click(sel, QStringLiteral("Option1"));
        find<QListWidget>(sel, QStringLiteral("lstReco"))->setCurrentRow(0);
        click(sel, QStringLiteral("cmdContinua"));
        QWidget* custo = aberta(h(), QStringLiteral("frmOcupaCusto"));
        QVERIFY(custo);
        QChart* chart = grafico(custo, QStringLiteral("chartCusto"));
        QCOMPARE(chart->title(), kMilho);
        // 32 % + 45 % + 23 %: each rounded on its own.
        QCOMPARE(fatias(chart), (QStringList{QStringLiteral("Calcário 32%"), QStringLiteral("Fórmula  45%"),
                                             QStringLiteral("Cobertura 23%")}));
        captura(custo, QStringLiteral("custo"));
        aciona(custo, QStringLiteral("outrasanalises"));
        QTRY_VERIFY(!h().windows().window(QStringLiteral("frmOcupaCusto")));
        sel = aberta(h(), QStringLiteral("frmChamaGrafCusto"));
        QVERIFY(sel);

        // A forest plan: thirteen shares from the grid rows, and the legend of the three dressings.
        h().exec(QStringLiteral("INSERT INTO RecoFlorest (CodAnalise, CodCultivo, CalcCustoTotal, Plantio1, Cob1, Cob2, CustoTotal) "
                                "VALUES ('%1', 'Eucalipto-0-02/03/2027', 0, '4-30-10#3547,5#188#666,93#1880#6669,3', "
                                "'20-5-20#3300#100#330#1000#3300', 'Ureia#3547,5#22#79#220#790', 10759.3)")
                     .arg(kCoxilha2026));
        analises = find<QListWidget>(sel, QStringLiteral("lstAna"));
        analises->setCurrentItem(analises->findItems(kCoxilha2026, Qt::MatchExactly).first());
        click(sel, QStringLiteral("Option3"));
        find<QListWidget>(sel, QStringLiteral("lstReco"))->setCurrentRow(0);
        click(sel, QStringLiteral("cmdContinua"));
        chart = grafico(aberta(h(), QStringLiteral("frmOcupaCusto")), QStringLiteral("chartCusto"));
        QCOMPARE(fatias(chart).size(), 13);
        QCOMPARE(fatias(chart)[1], QStringLiteral("Fórmula (P) 62%"));
        const auto notas = chart->childItems();
        QVERIFY(std::any_of(notas.begin(), notas.end(), [](QGraphicsItem* item) {
            auto* texto = dynamic_cast<QGraphicsSimpleTextItem*>(item);
            return texto && texto->text() == QStringLiteral("Legenda: P=Plantio, C=Cobertura, R=reposição");
        }));
        captura(chart->scene()->views().first(), QStringLiteral("custo-florestal"));

        // From the last step of a calculation, the session as it stands, before anything is saved.
        Session& s = h().session();
        CarregaAnalise(s, kVarzea);
        s.PlanoNum = 1;
        s.CustoCalcario = 100;
        s.CustoBase = 300;
        s.CustoN = 0;
        s.Dados[11] = 100.0;
        s.Dados[17] = 300.0;
        s.Dados[23] = 0.0;
        QWidget* final = h().open(QStringLiteral("frmFinalCalculo"));
        aciona(final, QStringLiteral("Análise"));
        QCOMPARE(fatias(grafico(aberta(h(), QStringLiteral("frmOcupaCusto")), QStringLiteral("chartCusto"))),
                 (QStringList{QStringLiteral("Calcário 25%"), QStringLiteral("Fórmula  75%"), QStringLiteral("Cobertura 0%")}));
        QCOMPARE(h().scalar(QStringLiteral("SELECT COUNT(*) FROM RecoForm")).toInt(), 1);
        aciona(final, QStringLiteral("fertig"));
        QCOMPARE(grafico(aberta(h(), QStringLiteral("frmChart")), QStringLiteral("chartFertig"))->title(), kVarzea.toUpper());
        QCOMPARE(s.GrafAvulso, 0);
    }

    void printCopyAndSave()
    {
        escolhe(QStringLiteral("ferti"), kCoxilha2026);
        QWidget* chart = aberta(h(), QStringLiteral("frmChart"));
        QVERIFY(chart);
        auto* vista = find<QChartView>(chart, QStringLiteral("chartFertig"));
        QTemporaryDir pasta;

        // Three copies are three documents; a cancelled dialog prints nothing and says nothing.
        const QString capturas = qEnvironmentVariable("LAVRA_CAPTURAS");
        const QString impresso = (capturas.isEmpty() ? pasta.path() : capturas) + QStringLiteral("/fertigrafico.pdf");
        QPrinter printer(QPrinter::HighResolution);
        printer.setPageSize(QPageSize(QPageSize::A4));
        printer.setOutputFileName(impresso);
        printer.setCopyCount(3);
        QCOMPARE(ui::imprimeGrafico(printer, ImpressaoFertigrafico(), vista), 3);
        QVERIFY(QFileInfo(impresso).size() > 0);
        int dialogos = 0;
        ui::setRespondedorImpressao([&dialogos](QPrinter&) { ++dialogos; return false; });
        aciona(chart, QStringLiteral("print"));
        QCOMPARE(dialogos, 1);
        QVERIFY(h().boxes.isEmpty());

        QApplication::clipboard()->clear();
        aciona(chart, QStringLiteral("copy"));
        QVERIFY(!QApplication::clipboard()->image().isNull());
        QCOMPARE(h().boxes.last().icone, ui::Icone::Nenhum);
        QVERIFY(h().boxes.last().texto.startsWith(QStringLiteral("Gráfico copiado.\n\nNo documento")));

        // The extension decides the format; a name without one takes the format of the filter.
        QString pedido;
        ui::setRespondedorArquivo([&pedido](const QString& titulo, const QString&) {
            return titulo == QStringLiteral("Salvar Gráfico") ? pedido : QString();
        });
        const struct {
            const char* nome;
            QByteArray formato;
        } casos[] = {{"g.png", "png"}, {"g.jpeg", "jpeg"}, {"g.jpg", "jpeg"}, {"g.bmp", "bmp"}, {"sem", "png"}};
        for (const auto& c : casos) {
            pedido = pasta.filePath(QString::fromLatin1(c.nome));
            aciona(chart, QStringLiteral("salvar"));
            const QString gravado = pedido.endsWith(QStringLiteral("sem")) ? pedido + QStringLiteral(".png") : pedido;
            QCOMPARE(QImageReader::imageFormat(gravado), c.formato);
        }
        pedido = pasta.filePath(QStringLiteral("g.svg"));
        aciona(chart, QStringLiteral("salvar"));
        QVERIFY(QSvgRenderer(pedido).isValid());
        pedido = pasta.filePath(QStringLiteral("g.pdf"));
        aciona(chart, QStringLiteral("salvar"));
        QFile pdf(pedido);
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        QVERIFY(pdf.read(5) == "%PDF-");

        // A folder that can't be written is told; a blank name does nothing.
        const int antes = static_cast<int>(h().boxes.size());
        pedido = QStringLiteral("/nao/existe/g.png");
        aciona(chart, QStringLiteral("salvar"));
        QCOMPARE(h().boxes.size(), antes + 1);
        QCOMPARE(h().boxes.last().icone, ui::Icone::Exclamacao);
        pedido = QStringLiteral("   ");
        aciona(chart, QStringLiteral("salvar"));
        QCOMPARE(h().boxes.size(), antes + 1);
    }
};

QTEST_MAIN(ChartsWindowTest)
#include "charts_window_test.moc"
