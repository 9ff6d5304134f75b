#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "report/kinds.h"
#include "uitestsupport.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QRadioButton>

using namespace lavra;
using namespace lavra::test;

namespace {

const QString kCoxilha = QStringLiteral("Santa Rita/Coxilha/15/08/2021");
const QString kVarzea = QStringLiteral("Santa Rita/Várzea/15/08/2021");
const QString kBomRetiro = QStringLiteral("Bom Retiro/G1/02/02/2022");
const QString kTrigo = QStringLiteral("Trigo-Primeiro-01/06/2022");
const QString kMilho = QStringLiteral("Milho-Primeiro-10/10/2021");
const QString kEucalipto = QStringLiteral("Eucalipto-0-01/09/2021");
const QString kArroz = QStringLiteral("Arroz irrigado (RS)-Primeiro-20/10/2021");

// One build of a report window, with what it would have printed from the session.
struct Relatorio {
    QString janela, analise, cultivo, tecnico;
};

} // namespace

// The orientations window over an open report, and the window of saved recommendations. The
// reports themselves are stand-ins that only note how they were built; what is written and deleted
// in each table is tests/report/saved_test.cpp's.
class SavedReportsWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<UiHarness> m_harness;
    QList<Relatorio> m_feitos;
    UiHarness& h() { return *m_harness; }

    QString info()
    {
        return h().scalar(QStringLiteral("SELECT Info FROM RecoForm WHERE CodCultivo = '%1'").arg(kMilho)).toString();
    }
    QStringList itens(QWidget* w, const QString& lista)
    {
        QStringList textos;
        auto* l = find<QListWidget>(w, lista);
        for (int n = 0; n < l->count(); ++n)
            textos << l->item(n)->text();
        return textos;
    }
    QWidget* obs() { return h().windows().window(QStringLiteral("frmObsLaudo")); }
    QPlainTextEdit* txtInfo() { return find<QPlainTextEdit>(obs(), QStringLiteral("txtInfo")); }
    int marcadas(QWidget* w)
    {
        int n = 0;
        for (const char* nome : {"Option1", "Option2", "Option3"})
            n += find<QRadioButton>(w, QString::fromLatin1(nome))->isChecked() ? 1 : 0;
        return n;
    }
    // The report of the session's keys, as the end of a calculation would show it.
    QWidget* abreRelatorio(const report::DefinicaoLaudo& d, const QString& analise, const QString& cultivo)
    {
        h().session().LaudoAnalise = analise;
        h().session().LaudoCultivo = cultivo;
        return h().open(d.janela);
    }
    // frmAbreLaudo with the first client's first analysis and an option chosen.
    QWidget* escolhe(const QString& opcao)
    {
        QWidget* w = h().open(QStringLiteral("frmAbreLaudo"));
        find<QListWidget>(w, QStringLiteral("lstAna"))->setCurrentRow(0);
        click(w, opcao);
        return w;
    }

private Q_SLOTS:
    void init()
    {
        m_harness = std::make_unique<UiHarness>();
        m_feitos.clear();
        for (const report::DefinicaoLaudo& d : report::definicoes()) {
            h().windows().registerWindow(d.janela, [this, d]() -> QWidget* {
                Session& s = h().session();
                s.TipoLaudo = d.texto;
                m_feitos << Relatorio{d.janela, s.LaudoAnalise, s.LaudoCultivo, s.NomeTec};
                s.BloqueiaFechar = true;
                h().windows().show(QStringLiteral("frmObsLaudo"));
                return new QWidget;
            });
        }
        h().exec(QStringLiteral("INSERT INTO Clientes VALUES ('Bruno Lima', 'Linha Dez', 'Ijuí', '', ''), "
                                "('Ana Prado', 'Linha Sete', 'Erechim', '', '')"));
        h().exec(QStringLiteral("INSERT INTO Analises (Código, Cliente) VALUES ('%1', 'Ana Prado'), "
                                "('%2', 'Ana Prado'), ('%3', 'Bruno Lima')")
                     .arg(kCoxilha, kVarzea, kBomRetiro));
        // Table order, not alphabetical order, is the order of the list.
        const QString reco = QStringLiteral("INSERT INTO %1 (CodAnalise, CodCultivo, Info) VALUES ('%2', '%3', 'antes')");
        h().exec(reco.arg(QStringLiteral("RecoForm"), kCoxilha, kTrigo));
        h().exec(reco.arg(QStringLiteral("RecoForm"), kCoxilha, kMilho));
        h().exec(reco.arg(QStringLiteral("RecoForm"), kVarzea, kArroz));
        h().exec(reco.arg(QStringLiteral("RecoFormulac"), kCoxilha, kMilho));
        h().exec(reco.arg(QStringLiteral("RecoFlorest"), kCoxilha, kEucalipto));
    }

    void cleanup() { m_harness.reset(); }

    // What goes past 255 characters is not taken, and what came before stays; an empty box keeps
    // the stored orientations.
    void insertedOrientationsReplaceTheStoredOnesUpToTheLimit()
    {
        QPointer<QWidget> relatorio = abreRelatorio(report::definicoes()[0], kCoxilha, kMilho);
        QVERIFY(relatorio);
        QVERIFY(obs()->isVisible());
        click(obs(), QStringLiteral("cmdInsere"));
        QCOMPARE(info(), QStringLiteral("antes"));
        QCOMPARE(m_feitos.size(), 1);

        auto* digit = find<QLabel>(obs(), QStringLiteral("lblDigit"));
        QTest::keyClicks(txtInfo(), QStringLiteral("Adubar"));
        QCOMPARE(digit->text(), QStringLiteral("Digitados: 6"));
        txtInfo()->insertPlainText(QString(300, QLatin1Char('x')));
        QTest::keyClicks(txtInfo(), QStringLiteral("yz"));
        QCOMPARE(digit->text(), QStringLiteral("Digitados: 255"));
        const QString texto = QStringLiteral("Adubar") + QString(249, QLatin1Char('x'));
        QCOMPARE(txtInfo()->toPlainText(), texto);

        click(obs(), QStringLiteral("cmdInsere"));
        QCOMPARE(info(), texto);
        QCOMPARE(m_feitos.size(), 2);
        QCOMPARE(m_feitos.last().cultivo, kMilho);
        // Rebuilt, not merely raised: the first one is gone.
        QTRY_VERIFY(relatorio.isNull());
        QVERIFY(h().windows().window(report::definicoes()[0].janela)->isVisible());
    }

    // frmTecResp shown from the orientations window; its choice rebuilds the open report, and only
    // while the orientations window is up.
    void aChangeOfTechnicianRebuildsTheReportWithTheNewName()
    {
        h().exec(QStringLiteral("INSERT INTO TecResp VALUES ('Ana Souza', 'Engenheira Agrônoma', 'RS-1', 1), "
                                "('Carlos Reis', 'Técnico Agrícola', 'RS-2', 0)"));
        h().session().NomeTec = QStringLiteral("Ana Souza");
        QPointer<QWidget> relatorio = abreRelatorio(report::definicoes()[0], kCoxilha, kMilho);
        QCOMPARE(m_feitos.last().tecnico, QStringLiteral("Ana Souza"));

        click(obs(), QStringLiteral("cmdMudaTec"));
        QWidget* tec = h().windows().window(QStringLiteral("frmTecResp"));
        QVERIFY(tec && tec->isVisible());
        find<QComboBox>(tec, QStringLiteral("cboTecAssina"))->setCurrentText(QStringLiteral("Carlos Reis"));
        click(tec, QStringLiteral("cmdOK"));
        QCOMPARE(m_feitos.size(), 2);
        QCOMPARE(m_feitos.last().tecnico, QStringLiteral("Carlos Reis"));
        QTRY_VERIFY(relatorio.isNull());
        QTRY_VERIFY(!h().windows().window(QStringLiteral("frmTecResp")));

        obs()->hide();
        emit h().session().eventos.tecnicoAssinanteMudou();
        QCOMPARE(m_feitos.size(), 2);
    }

    void aChangeOfClientOrAnalysisSwitchesTheOptionsOff()
    {
        QWidget* w = escolhe(QStringLiteral("Option1"));
        QCOMPARE(itens(w, QStringLiteral("lstReco")), (QStringList{kTrigo, kMilho}));
        click(w, QStringLiteral("Option3"));
        QCOMPARE(itens(w, QStringLiteral("lstReco")), QStringList{kEucalipto});
        find<QListWidget>(w, QStringLiteral("lstAna"))->setCurrentRow(1);
        QCOMPARE(marcadas(w), 0);
        QCOMPARE(itens(w, QStringLiteral("lstReco")), QStringList());

        click(w, QStringLiteral("Option1"));
        type(w, QStringLiteral("txtCli"), QStringLiteral("br"));
        QCOMPARE(marcadas(w), 0);
        QCOMPARE(itens(w, QStringLiteral("lstReco")), QStringList());
        QCOMPARE(itens(w, QStringLiteral("lstAna")), QStringList{kBomRetiro});
    }

    void deletingAsksFirstAndKeepsTheOptionOn()
    {
        QWidget* w = escolhe(QStringLiteral("Option1"));
        click(w, QStringLiteral("cmdDeleta"));
        QCOMPARE(h().texts(), QStringList{QStringLiteral("Selecione cliente, análise e recomendação!")});
        QCOMPARE(h().boxes.last().icone, ui::Icone::Exclamacao);

        h().clearBoxes();
        find<QListWidget>(w, QStringLiteral("lstReco"))->setCurrentRow(1);
        click(w, QStringLiteral("cmdDeleta"));
        QCOMPARE(h().texts(), QStringList{QStringLiteral("A recomendação Milho-Primeiro-10/10/2021 será excluída! Confirma?")});
        QCOMPARE(itens(w, QStringLiteral("lstReco")), QStringList{kTrigo});
        QVERIFY(find<QRadioButton>(w, QStringLiteral("Option1"))->isChecked());
        QCOMPARE(h().scalar(QStringLiteral("SELECT COUNT(*) FROM RecoForm")).toInt(), 2);
    }

    void openingLoadsTheAnalysisAndShowsTheReportOfTheOption()
    {
        struct Caso {
            const char* opcao;
            int tipo;
            QString chave;
        };
        const Caso casos[] = {{"Option1", 0, kMilho}, {"Option2", 1, kMilho}, {"Option3", 2, kEucalipto}};
        // A report of the same layout left open is built again for the new keys.
        abreRelatorio(report::definicoes()[0], kVarzea, kArroz);
        for (const Caso& c : casos) {
            const report::DefinicaoLaudo& d = report::definicoes()[c.tipo];
            h().session().Analise.clear();
            QWidget* w = escolhe(QString::fromLatin1(c.opcao));
            find<QListWidget>(w, QStringLiteral("lstReco"))->setCurrentRow(itens(w, QStringLiteral("lstReco")).indexOf(c.chave));
            click(w, QStringLiteral("cmdContinua"));
            QCOMPARE(m_feitos.last().janela, d.janela);
            QCOMPARE(m_feitos.last().analise, kCoxilha);
            QCOMPARE(m_feitos.last().cultivo, c.chave);
            QCOMPARE(h().session().Analise.value(0).toString(), kCoxilha);
            QTRY_VERIFY(!h().windows().window(QStringLiteral("frmAbreLaudo")));
        }
        QCOMPARE(m_feitos.size(), 4);
    }
};

QTEST_MAIN(SavedReportsWindowTest)
#include "saved_reports_window_test.moc"
