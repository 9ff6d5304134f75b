#include "app/session.h"
#include "registers/analysis.h"
#include "report/ui/reportview.h"
#include "testsupport.h"
#include "uitestsupport.h"

#include <QAction>
#include <QProcess>

using namespace lavra;
using namespace lavra::test;

namespace {

const QString kAnalise = QStringLiteral("Santa Rita/Coxilha/15/08/2026");
const QString kCultivo = QStringLiteral("Milho-Primeiro-15/10/2026");

// A maize recommendation as the chain saves it, on a field of 10 ha, with its company and signer.
void preparaLaudo(UiHarness& h, bool comEmpresa = true)
{
    if (comEmpresa)
        h.exec(QStringLiteral(
            "INSERT INTO Empresa VALUES ('AgroSul Consultoria Agronômica Ltda.', 'Rua Sete de Setembro', '1250', "
            "'99700-000', 'Erechim', 'Centro', 'RS', '(54) 3321-4567', 'contato@agrosul.com.br', "
            "'www.agrosul.com.br')"));
    h.exec(QStringLiteral(
        "INSERT INTO Analises VALUES ('%1', 'Ana Prado', 'Erechim', 'Santa Rita', 'Coxilha', '2026-08-15', 10, "
        "'1234', 5.2, 3, 1.2, 0.4, 4.5, 8.3, 49.6, 8.93, 5.6, 3, 45, 8, 90, 1, 1, 0, 0, 0, 0, "
        "2, 3, 4, 3, 2, 4, 3, 2, 2)")
               .arg(kAnalise));
    h.exec(QStringLiteral(
        "INSERT INTO RecoForm VALUES ('%1', '%2', 'Milho', 'Primeiro', '2026-10-15', 10, "
        "'Calcário dolomítico', 85, 180.5, 3.4, 613.7, 34, 6137, "
        "'5-20-20', 2150, 350, 752.5, 3500, 7525, 'Ureia', 2600, 300, 780, 3000, 7800, "
        "150, 'V4', 150, 'V8', 0, '0', 0, '0', 0, '0', 0, '0', 0, '0', 0, '0', "
        "21462, '', 'Aplicar o calcário a lanço pelo menos três meses antes da semeadura. Parcelar a ureia "
        "com o solo úmido, evitando dias de chuva forte logo após a aplicação.')")
               .arg(kAnalise, kCultivo));
    Session& s = h.session();
    s.NomeTec = QStringLiteral("Marina Costa Ribeiro");
    s.ProfTec = QStringLiteral("Engenheira Agrônoma");
    s.CreaTec = QStringLiteral("RS-123456");
    s.LaudoAnalise = kAnalise;
    s.LaudoCultivo = kCultivo;
    CarregaAnalise(s, kAnalise);
}

QString roda(const QString& programa, const QStringList& argumentos)
{
    QProcess processo;
    processo.start(programa, argumentos);
    if (!processo.waitForFinished(30000) || processo.exitCode() != 0)
        return {};
    return QString::fromUtf8(processo.readAllStandardOutput());
}

} // namespace

class ReportWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { setMachineLocale(commaLocale()); }
    void cleanup() { resetMachineLocale(); }

    void theWindowOpensWithTheLockSetAndItsTitle()
    {
        UiHarness h;
        preparaLaudo(h);
        h.session().BloqueiaFechar = false;
        auto* janela = qobject_cast<ui::JanelaLaudo*>(h.open(QStringLiteral("rptLdForml")));
        QVERIFY(janela);
        QVERIFY(janela->isVisible());
        QVERIFY(h.session().BloqueiaFechar);
        QCOMPARE(janela->windowTitle(), QStringLiteral("Recomendações calculadas usando fórmulas comérciais"));
        QCOMPARE(h.session().TipoLaudo, QStringLiteral("Fórmulas"));
        QVERIFY(h.boxes.isEmpty());
        // Printing and saving are at hand.
        QVERIFY(janela->findChild<QAction*>(QStringLiteral("cmdImprime")));
        QVERIFY(janela->findChild<QAction*>(QStringLiteral("cmdSalvaPdf")));
    }

    void aMissingCompanyIsToldAndNoWindowOpens()
    {
        UiHarness h;
        preparaLaudo(h, false);
        h.session().BloqueiaFechar = false;
        QVERIFY(!h.windows().show(QStringLiteral("rptLdForml")));
        QCOMPARE(h.texts(), QStringList{QStringLiteral("Não há empresa cadastrada responsável pelo laudo! Acesse o "
                                                       "menu arquivo para fazer o cadastro.")});
        QCOMPARE(h.boxes.first().icone, ui::Icone::Exclamacao);
        QVERIFY(!h.session().BloqueiaFechar);
    }

    void theOrientationsWindowComesWithTheReport()
    {
        UiHarness h;
        preparaLaudo(h);
        h.windows().registerWindow(QStringLiteral("frmObsLaudo"), []() { return new QWidget; });
        QVERIFY(h.open(QStringLiteral("rptLdForml")));
        QWidget* obs = h.windows().window(QStringLiteral("frmObsLaudo"));
        QVERIFY(obs && obs->isVisible());
    }

    // Both ways of printing new orientations: the window rebuilds itself, or it is closed and shown again.
    void rebuildingPrintsTheNewOrientations()
    {
        UiHarness h;
        preparaLaudo(h);
        auto* janela = qobject_cast<ui::JanelaLaudo*>(h.open(QStringLiteral("rptLdForml")));
        QVERIFY(janela);
        h.exec(QStringLiteral("UPDATE RecoForm SET Info = 'Nova orientação'"));
        QVERIFY(janela->recarrega());
        QCOMPARE(janela->pagina().texto(QStringLiteral("lblInfo"))->texto, QStringLiteral("Nova orientação"));

        h.exec(QStringLiteral("UPDATE RecoForm SET Info = 'Outra orientação'"));
        h.windows().closeWindow(QStringLiteral("rptLdForml"));
        janela = qobject_cast<ui::JanelaLaudo*>(h.open(QStringLiteral("rptLdForml")));
        QVERIFY(janela);
        QCOMPARE(janela->pagina().texto(QStringLiteral("lblInfo"))->texto, QStringLiteral("Outra orientação"));
    }

    void zoomStaysWithinItsSteps()
    {
        UiHarness h;
        preparaLaudo(h);
        auto* janela = qobject_cast<ui::JanelaLaudo*>(h.open(QStringLiteral("rptLdForml")));
        QVERIFY(janela);
        auto* vista = janela->findChild<ui::VistaPagina*>(QStringLiteral("pagLaudo"));
        QVERIFY(vista);
        const QSize normal = vista->sizeHint();
        for (int k = 0; k < 10; ++k)
            janela->reduz();
        QCOMPARE(vista->zoom(), 0.5);
        QVERIFY(vista->sizeHint().width() < normal.width());
        for (int k = 0; k < 10; ++k)
            janela->amplia();
        QCOMPARE(vista->zoom(), 3.0);
    }

    void thePdfIsOneA4PageWithTheReportOnIt()
    {
        UiHarness h;
        preparaLaudo(h);
        auto* janela = qobject_cast<ui::JanelaLaudo*>(h.open(QStringLiteral("rptLdForml")));
        QVERIFY(janela);
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("laudo.pdf"));
        QVERIFY(ui::salvaPdf(janela->pagina(), pdf));

        const QString info = roda(QStringLiteral("pdfinfo"), {pdf});
        QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Pages:\\s+1\\n"))), qPrintable(info));
        QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Page size:\\s+595(\\.\\d+)? x 84[12](\\.\\d+)? pts \\(A4\\)"))),
                 qPrintable(info));

        const QString texto = roda(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
        for (const QString& esperado : {QStringLiteral("AgroSul Consultoria Agronômica Ltda."),
                                        QStringLiteral("Ana Prado"), QStringLiteral("Milho"),
                                        QStringLiteral("Custo total da gleba (R$)"), QStringLiteral("21462,00"),
                                        QStringLiteral("Marina Costa Ribeiro/Engenheira Agrônoma")})
            QVERIFY2(texto.contains(esperado), qPrintable(esperado + QStringLiteral(" not in:\n") + texto));
    }

    void aWriteThatCannotHappenIsRefused()
    {
        UiHarness h;
        preparaLaudo(h);
        auto* janela = qobject_cast<ui::JanelaLaudo*>(h.open(QStringLiteral("rptLdForml")));
        QVERIFY(janela);
        QVERIFY(!ui::salvaPdf(janela->pagina(), QStringLiteral("/nonexistent/dir/laudo.pdf")));
    }
};

QTEST_MAIN(ReportWindowTest)
#include "report_window_test.moc"
