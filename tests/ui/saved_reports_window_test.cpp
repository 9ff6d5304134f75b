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
#include <QTableWidget>

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
// reports themselves are stand-ins that only note how they were built.
class SavedReportsWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<UiHarness> m_harness;
    QList<Relatorio> m_feitos;
    UiHarness& h() { return *m_harness; }

    QString info(const QString& tabela, const QString& analise, const QString& cultivo)
    {
        return h().scalar(QStringLiteral("SELECT Info FROM %1 WHERE CodAnalise = '%2' AND CodCultivo = '%3'")
                              .arg(tabela, analise, cultivo))
            .toString();
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

    void aNewSigningTechnicianRebuildsTheOpenReportOnly()
    {
        const report::DefinicaoLaudo& d = report::definicoes().front();
        QVERIFY(abreRelatorio(d, kCoxilha, kMilho));
        QVERIFY(obs()->isVisible());
        const int feitos = static_cast<int>(m_feitos.size());
        emit h().session().eventos.tecnicoAssinanteMudou();
        QCOMPARE(m_feitos.size(), feitos + 1);

        // With the observations closed there is no report to take the new signature.
        obs()->hide();
        emit h().session().eventos.tecnicoAssinanteMudou();
        QCOMPARE(m_feitos.size(), feitos + 1);
    }

    void insertedOrientationsReplaceTheStoredOnesAndAnEmptyBoxKeepsThem()
    {
        const QString chaves[] = {kMilho, kMilho, kEucalipto};
        for (const report::DefinicaoLaudo& d : report::definicoes()) {
            const QString& chave = chaves[static_cast<int>(d.tipo)];
            QPointer<QWidget> relatorio = abreRelatorio(d, kCoxilha, chave);
            QVERIFY(relatorio);
            QVERIFY(obs()->isVisible());
            QCOMPARE(obs()->windowTitle(), QStringLiteral("Observações"));
            QVERIFY(obs()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
            // Empty at opening though the row holds orientations.
            txtInfo()->clear();
            const int feitos = static_cast<int>(m_feitos.size());

            click(obs(), QStringLiteral("cmdInsere"));
            QCOMPARE(info(d.tabela, kCoxilha, chave), QStringLiteral("antes"));
            QCOMPARE(m_feitos.size(), feitos);

            for (const QString& texto : {QStringLiteral("Aplicar o calcário a lanço"), QStringLiteral("Incorporar")}) {
                txtInfo()->clear();
                txtInfo()->insertPlainText(texto);
                click(obs(), QStringLiteral("cmdInsere"));
                QCOMPARE(info(d.tabela, kCoxilha, chave), texto);
            }
            QCOMPARE(m_feitos.size(), feitos + 2);
            QCOMPARE(m_feitos.last().janela, d.janela);
            QCOMPARE(m_feitos.last().cultivo, chave);
            // Rebuilt, not merely raised: the first one is gone.
            QTRY_VERIFY(relatorio.isNull());
            QVERIFY(h().windows().window(d.janela)->isVisible());
        }
    }

    void counterFollowsTheBoxUpToItsLimit()
    {
        abreRelatorio(report::definicoes()[0], kCoxilha, kMilho);
        auto* digit = find<QLabel>(obs(), QStringLiteral("lblDigit"));
        QCOMPARE(digit->text(), QStringLiteral("Digitados:"));
        QTest::keyClicks(txtInfo(), QStringLiteral("Adubar"));
        QCOMPARE(digit->text(), QStringLiteral("Digitados: 6"));
        // What goes past 255 characters is not taken, and what came before stays.
        txtInfo()->insertPlainText(QString(300, QLatin1Char('x')));
        QCOMPARE(txtInfo()->toPlainText().size(), 255);
        QVERIFY(txtInfo()->toPlainText().startsWith(QStringLiteral("Adubarxx")));
        QCOMPARE(digit->text(), QStringLiteral("Digitados: 255"));
        QTest::keyClicks(txtInfo(), QStringLiteral("yz"));
        QCOMPARE(txtInfo()->toPlainText().size(), 255);
        QTest::keyClick(txtInfo(), Qt::Key_Backspace);
        QCOMPARE(digit->text(), QStringLiteral("Digitados: 254"));
    }

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
        QCOMPARE(h().session().NomeTec, QStringLiteral("Carlos Reis"));
        QTRY_VERIFY(relatorio.isNull());
        QTRY_VERIFY(!h().windows().window(QStringLiteral("frmTecResp")));
        // The rebuild writes the box as it stands, so an empty one blanks the stored orientations.
        QCOMPARE(info(QStringLiteral("RecoForm"), kCoxilha, kMilho), QString());
    }

    void aChangeOfClientOrAnalysisSwitchesTheOptionsOff()
    {
        QWidget* w = h().open(QStringLiteral("frmAbreLaudo"));
        QCOMPARE(w->windowTitle(), QStringLiteral("Recomendações cadastradas"));
        QCOMPARE(find<QTableWidget>(w, QStringLiteral("flxCli"))->rowCount(), 2);
        QCOMPARE(itens(w, QStringLiteral("lstAna")), (QStringList{kCoxilha, kVarzea}));

        // With no analysis chosen an option lists nothing.
        click(w, QStringLiteral("Option1"));
        QCOMPARE(marcadas(w), 1);
        QCOMPARE(itens(w, QStringLiteral("lstReco")), QStringList());

        find<QListWidget>(w, QStringLiteral("lstAna"))->setCurrentRow(0);
        QCOMPARE(marcadas(w), 0);
        click(w, QStringLiteral("Option1"));
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
        type(w, QStringLiteral("txtCli"), QString());
        QCOMPARE(itens(w, QStringLiteral("lstAna")), (QStringList{kCoxilha, kVarzea}));
    }

    void deletingAsksFirstAndKeepsTheOptionOn()
    {
        QWidget* w = escolhe(QStringLiteral("Option1"));
        auto* reco = find<QListWidget>(w, QStringLiteral("lstReco"));
        click(w, QStringLiteral("cmdDeleta"));
        QCOMPARE(h().texts(), QStringList{QStringLiteral("Selecione cliente, análise e recomendação!")});
        QCOMPARE(h().boxes.last().icone, ui::Icone::Exclamacao);

        struct Passo {
            QMessageBox::StandardButton resposta;
            QStringList lista;
        };
        const Passo passos[] = {{QMessageBox::No, {kTrigo, kMilho}}, {QMessageBox::Yes, {kTrigo}}};
        for (const Passo& p : passos) {
            h().clearBoxes();
            h().answers << p.resposta;
            reco->setCurrentRow(1);
            click(w, QStringLiteral("cmdDeleta"));
            QCOMPARE(h().texts(), QStringList{QStringLiteral("A recomendação Milho-Primeiro-10/10/2021 será excluída! Confirma?")});
            QCOMPARE(h().boxes.last().icone, ui::Icone::Exclamacao);
            QCOMPARE(h().boxes.last().botoes, QMessageBox::Yes | QMessageBox::No);
            QCOMPARE(itens(w, QStringLiteral("lstReco")), p.lista);
            QVERIFY(find<QRadioButton>(w, QStringLiteral("Option1"))->isChecked());
        }
        QCOMPARE(h().session().TabelaReco, QStringLiteral("RecoForm"));
        QCOMPARE(h().scalar(QStringLiteral("SELECT COUNT(*) FROM RecoForm")).toInt(), 2);
        // The same key of the other kind stays.
        QCOMPARE(h().scalar(QStringLiteral("SELECT CodCultivo FROM RecoFormulac")).toString(), kMilho);
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
            h().clearBoxes();
            click(w, QStringLiteral("cmdContinua"));
            QCOMPARE(h().texts(), QStringList{QStringLiteral("Selecione cliente, análise e recomendação!")});
            QVERIFY(w->isVisible());

            find<QListWidget>(w, QStringLiteral("lstReco"))->setCurrentRow(itens(w, QStringLiteral("lstReco")).indexOf(c.chave));
            click(w, QStringLiteral("cmdContinua"));
            QCOMPARE(m_feitos.last().janela, d.janela);
            QCOMPARE(m_feitos.last().analise, kCoxilha);
            QCOMPARE(m_feitos.last().cultivo, c.chave);
            QCOMPARE(h().session().Analise.value(0).toString(), kCoxilha);
            QCOMPARE(h().session().TipoLaudo, d.texto);
            QTRY_VERIFY(!h().windows().window(QStringLiteral("frmAbreLaudo")));
        }
        QCOMPARE(m_feitos.size(), 4);
    }

    void databaseFailuresAreShownAndChangeNothing()
    {
        h().exec(QStringLiteral("CREATE TRIGGER falhaU BEFORE UPDATE ON RecoForm BEGIN SELECT RAISE(ABORT, 'disco cheio'); END"));
        h().exec(QStringLiteral("CREATE TRIGGER falhaD BEFORE DELETE ON RecoForm BEGIN SELECT RAISE(ABORT, 'disco cheio'); END"));
        abreRelatorio(report::definicoes()[0], kCoxilha, kMilho);
        QTest::keyClicks(txtInfo(), QStringLiteral("Parcelar a cobertura"));
        h().clearBoxes();
        click(obs(), QStringLiteral("cmdInsere"));

        QWidget* w = escolhe(QStringLiteral("Option1"));
        find<QListWidget>(w, QStringLiteral("lstReco"))->setCurrentRow(1);
        click(w, QStringLiteral("cmdDeleta"));

        QCOMPARE(h().boxes.size(), 3);  // the write's failure, the question, the deletion's failure
        for (int n : {0, 2}) {
            QCOMPARE(h().boxes[n].icone, ui::Icone::Critico);
            QVERIFY(h().boxes[n].texto.startsWith(QStringLiteral("Erro no banco de dados:\n")));
            QVERIFY(h().boxes[n].texto.contains(QStringLiteral("disco cheio")));
        }
        QCOMPARE(m_feitos.size(), 1);
        QCOMPARE(info(QStringLiteral("RecoForm"), kCoxilha, kMilho), QStringLiteral("antes"));
        QCOMPARE(itens(w, QStringLiteral("lstReco")), (QStringList{kTrigo, kMilho}));
    }
};

QTEST_MAIN(SavedReportsWindowTest)
#include "saved_reports_window_test.moc"
