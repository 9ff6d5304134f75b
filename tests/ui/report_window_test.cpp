#include "app/session.h"
#include "registers/analysis.h"
#include "report/ui/reportview.h"
#include "testsupport.h"
#include "uitestsupport.h"

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

// The report window over a saved row. The page itself, field by field, is
// tests/report/laudo_test.cpp's against its golden files.
class ReportWindowTest : public QObject {
    Q_OBJECT

private:
    static ui::JanelaLaudo* abre(UiHarness& h)
    {
        return qobject_cast<ui::JanelaLaudo*>(h.open(QStringLiteral("rptLdForml")));
    }

private Q_SLOTS:
    void init() { setMachineLocale(commaLocale()); }
    void cleanup() { resetMachineLocale(); }

    void opensLockedAndRebuildsWithNewOrientations()
    {
        UiHarness h;
        preparaLaudo(h);
        h.session().BloqueiaFechar = false;
        auto* janela = abre(h);
        QVERIFY(janela && janela->isVisible());
        QVERIFY(h.session().BloqueiaFechar);
        QCOMPARE(h.session().TipoLaudo, QStringLiteral("Fórmulas"));
        QVERIFY(h.boxes.isEmpty());

        h.exec(QStringLiteral("UPDATE RecoForm SET Info = 'Nova orientação'"));
        QVERIFY(janela->recarrega());
        QCOMPARE(janela->pagina().texto(QStringLiteral("lblInfo"))->texto, QStringLiteral("Nova orientação"));
    }

    void aMissingCompanyIsToldAndNoWindowOpens()
    {
        UiHarness h;
        preparaLaudo(h, false);
        h.session().BloqueiaFechar = false;
        QVERIFY(!h.windows().show(QStringLiteral("rptLdForml")));
        QCOMPARE(h.boxes.size(), 1);
        QCOMPARE(h.boxes.first().icone, ui::Icone::Exclamacao);
        QVERIFY(!h.session().BloqueiaFechar);
    }

    void thePdfIsOneA4PageWithTheReportOnIt()
    {
        UiHarness h;
        preparaLaudo(h);
        auto* janela = abre(h);
        QVERIFY(janela);
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("laudo.pdf"));
        QVERIFY(ui::salvaPdf(janela->pagina(), pdf));
        QVERIFY(!ui::salvaPdf(janela->pagina(), QStringLiteral("/nonexistent/dir/laudo.pdf")));

        const QString info = roda(QStringLiteral("pdfinfo"), {pdf});
        QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Pages:\\s+1\\n"))), qPrintable(info));
        QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Page size:\\s+595(\\.\\d+)? x 84[12](\\.\\d+)? pts \\(A4\\)"))),
                 qPrintable(info));
        const QString texto = roda(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
        for (const QString& esperado : {QStringLiteral("AgroSul Consultoria Agronômica Ltda."), QStringLiteral("21462,00"),
                                        QStringLiteral("Marina Costa Ribeiro/Engenheira Agrônoma")})
            QVERIFY2(texto.contains(esperado), qPrintable(esperado + QStringLiteral(" not in:\n") + texto));
    }
};

QTEST_MAIN(ReportWindowTest)
#include "report_window_test.moc"
