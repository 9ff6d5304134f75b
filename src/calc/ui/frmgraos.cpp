#include "app/session.h"
#include "app/ui/desktop.h"
#include "app/ui/fieldchecks.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "calc/crops.h"
#include "calc/grains.h"
#include "cropwindow.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <array>

namespace lavra::ui {

namespace {

// The crop window of group 1: need of N, P and K of a grain crop by its yield expectation, and
// the correction of P and K by the official or the gradual rule.
class FrmGraos final : public CropWindow {
public:
    FrmGraos(Session& session, WindowRegistry& windows)
        : CropWindow(session, windows, culturasGraos())
    {
        setWindowTitle(kTituloGraos);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(criaEntradas(), 1);

        auto* resultados = new QGroupBox(QStringLiteral("Resultados do cálculo"), this);
        auto* linha = new QHBoxLayout(resultados);
        linha->addWidget(criaCorrecao());
        linha->addWidget(criaResultadoFinal(), 1);
        layout->addWidget(resultados);
        criaComandos(layout);

        // The table is taken once: a change of analysis or crop order closes this window.
        CarregaCorrecaoOficial(m_session);
        CarregaCorrecaoGradual(m_session);
        m_optRofic->setChecked(true);
        connect(m_optRofic, &QRadioButton::toggled, this, &FrmGraos::opcaoCorrecao);
        connect(m_optAjgrad, &QRadioButton::toggled, this, &FrmGraos::opcaoCorrecao);
        culturaEscolhida(-1);
    }

protected:
    void culturaEscolhida(int posicao) override
    {
        LimpaCorrecao();
        m_lblExpect->setText(kRotuloExpectativa);
        m_lblAv->clear();
        m_cboSitArz->setCurrentIndex(0);
        m_cboSitArz->setEnabled(false);
        m_txtMS->clear();
        m_lstCultAnt->clear();

        const QStringList anteriores = cultivosAnterioresGraos(posicao);
        m_lstCultAnt->addItems(anteriores);
        semEscolhaInicial(m_lstCultAnt);
        m_lstCultAnt->setEnabled(!anteriores.isEmpty());
        m_txtMS->setEnabled(posicao == graos::Milho);

        if (arrozIrrigado(posicao)) {
            m_lblAv->setText(kAvisoSosbai);
            m_cboSitArz->setEnabled(true);
        }
        if (posicao == graos::ArrozIrrigadoRS) {
            m_lblExpect->setText(kRotuloIncremento);
            if (recusaIncrementoArroz(posicao, m_txtExpect->text())) {
                informacao(this, mensagemIncrementoArroz(m_lstCulturas->item(posicao)->text()));
                m_txtExpect->clear();
            }
        }
    }

    void entradaMudou() override
    {
        LimpaCalculo();
        LimpaCorrecao();
    }

    void calcula() override
    {
        // A number refused as its box was left may still stand there; it is never read.
        if (recusaCampos({ m_txtExpect, m_txtMS }))
            return;
        const auto r = executa<CalculoGraos>([this]() { return CalculaGraos(m_session.db, m_session, definicoes()); });
        if (!r)
            return;
        mostraCalculo(*r);
        if (r->desfecho) {
            if (r->limpaExpectativa)
                m_txtExpect->clear();
            return;
        }
        if (r->comCorrecao) {
            ControlaCorrecao(1);
            mostraCorrecao();
        } else {
            LimpaCorrecao();
            ControlaCorrecao(0);
        }
    }

    Parada prossegue() override
    {
        return ProssegueGraos(m_session, m_windows, definicoes(), textosNec());
    }

private:
    QGroupBox* criaEntradas()
    {
        // The whole list in view, which also leaves room beside it for the rice note.
        QGridLayout* grade = nullptr;
        QGroupBox* frame = criaDefinicoes(grade, 9);

        const int larguraNumero = fontMetrics().horizontalAdvance(QStringLiteral("00000,00")) + 16;
        m_txtExpect = new QLineEdit(frame);
        m_txtExpect->setObjectName(QStringLiteral("txtExpect"));
        m_txtExpect->setMaximumWidth(larguraNumero);
        m_lblExpect = rotulo(kRotuloExpectativa, m_txtExpect, frame);
        m_lblExpect->setObjectName(QStringLiteral("lblExpect"));
        grade->addWidget(m_lblExpect, 0, 1);
        grade->addWidget(m_txtExpect, 1, 1);
        ligaCampoNumerico(m_txtExpect);
        defineGrandeza(m_txtExpect, Grandeza::Expectativa);

        m_cboSitArz = new QComboBox(frame);
        m_cboSitArz->setObjectName(QStringLiteral("cboSitArz"));
        m_cboSitArz->addItems(sistemasSemeadura());
        m_cboSitArz->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        grade->addWidget(rotulo(QStringLiteral("Sistema de semeadura"), m_cboSitArz, frame), 2, 1);
        grade->addWidget(m_cboSitArz, 3, 1, Qt::AlignLeft);
        connect(m_cboSitArz, &QComboBox::currentIndexChanged, this, &FrmGraos::entradaMudou);

        m_lstCultAnt = new QListWidget(frame);
        m_lstCultAnt->setObjectName(QStringLiteral("lstCultAnt"));
        // Room for its three items at most, without a scroll bar.
        m_lstCultAnt->setFixedHeight(
            3 * m_lstCultAnt->fontMetrics().height() + 3 * 4 + 2 * m_lstCultAnt->frameWidth());
        m_lstCultAnt->setMaximumWidth(
            fontMetrics().horizontalAdvance(QStringLiteral("Consórcio ou pousio")) + 40);
        grade->addWidget(rotulo(QStringLiteral("Cultivo anterior"), m_lstCultAnt, frame), 4, 1);
        grade->addWidget(m_lstCultAnt, 5, 1);
        semEscolhaInicial(m_lstCultAnt);
        connect(m_lstCultAnt, &QListWidget::itemSelectionChanged, this, &FrmGraos::entradaMudou);

        m_txtMS = new QLineEdit(frame);
        m_txtMS->setObjectName(QStringLiteral("txtMS"));
        m_txtMS->setMaximumWidth(larguraNumero);
        grade->addWidget(
            rotulo(QStringLiteral("Produção de massa seca do cultivo anterior (t/ha)"), m_txtMS, frame), 6,
            1);
        grade->addWidget(m_txtMS, 7, 1);
        ligaCampoNumerico(m_txtMS);
        defineGrandeza(m_txtMS, Grandeza::MassaSeca);

        m_lblAv = new QLabel(frame);
        m_lblAv->setObjectName(QStringLiteral("lblAv"));
        m_lblAv->setWordWrap(true);
        m_lblAv->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        m_lblAv->setMinimumWidth(fontMetrics().horizontalAdvance(
            QStringLiteral("Produção de massa seca do cultivo anterior (t/ha)")));
        grade->addWidget(m_lblAv, 8, 1);
        grade->setRowStretch(8, 1);
        grade->setColumnStretch(1, 1);
        return frame;
    }

    QGroupBox* criaCorrecao()
    {
        auto* frame = new QGroupBox(QStringLiteral("Necessidade de correção (kg/ha)"), this);
        auto* grade = new QGridLayout(frame);
        const std::array<const char*, 6> nomes
            = { "txtPcor", "txtFracP", "txtParcPcor", "txtKcor", "txtFracK", "txtParcKcor" };
        for (std::size_t i = 0; i < nomes.size(); ++i) {
            auto* caixa = caixaSomenteLeitura(frame, QString::fromLatin1(nomes[i]), QStringLiteral("0000"));
            caixa->setAlignment(Qt::AlignCenter);
            m_correcao[i] = caixa;
        }
        const std::array<QString, 2> nutrientes = { QStringLiteral("P₂O₅"), QStringLiteral("K₂O") };
        for (int n = 0; n < 2; ++n) {
            const std::size_t base = static_cast<std::size_t>(3 * n);
            grade->addWidget(new QLabel(nutrientes[static_cast<std::size_t>(n)], frame), n, 0);
            grade->addWidget(m_correcao[base], n, 1);
            grade->addWidget(m_correcao[base + 1], n, 2);
            grade->addWidget(new QLabel(QStringLiteral("Aplicado"), frame), n, 3);
            grade->addWidget(m_correcao[base + 2], n, 4);
        }

        m_optRofic = new QRadioButton(QStringLiteral("Rolas oficial"), frame);
        m_optRofic->setObjectName(QStringLiteral("optRofic"));
        m_optAjgrad = new QRadioButton(QStringLiteral("Ajuste gradual"), frame);
        m_optAjgrad->setObjectName(QStringLiteral("optAjgrad"));
        auto* cmdinfo = new QToolButton(frame);
        cmdinfo->setObjectName(QStringLiteral("cmdinfo"));
        cmdinfo->setIcon(style()->standardIcon(QStyle::SP_MessageBoxInformation));
        cmdinfo->setAutoRaise(true);
        cmdinfo->setToolTip(QStringLiteral("Clique para obter informações"));
        connect(cmdinfo, &QToolButton::clicked, this, [this]() { abreDocumento(this, kArquivoCorrecao); });
        auto* opcoes = new QHBoxLayout;
        opcoes->addWidget(m_optRofic);
        opcoes->addWidget(m_optAjgrad);
        opcoes->addStretch();
        opcoes->addWidget(cmdinfo);
        grade->addLayout(opcoes, 2, 0, 1, 5);
        return frame;
    }

    DefinicoesGraos definicoes() const
    {
        DefinicoesGraos d;
        d.posicao = posicaoCultura();
        d.expectativa = m_txtExpect->text();
        d.sistemaSemeadura = m_cboSitArz->currentIndex();
        d.textoSistema = m_cboSitArz->currentText();
        d.cultivoAnterior = textoEscolhido(m_lstCultAnt);
        d.massaSeca = m_txtMS->text();
        d.ajusteGradual = m_optAjgrad->isChecked();
        return d;
    }

    void LimpaCorrecao()
    {
        for (QLineEdit* caixa : m_correcao)
            caixa->clear();
    }

    // 0 paints the correction boxes as a button face, for a crop without correction; 1 as the
    // background of a window.
    void ControlaCorrecao(int modo)
    {
        if (modo != 0 && modo != 1)
            return;
        const QPalette padrao = QApplication::palette();
        for (QLineEdit* caixa : m_correcao) {
            QPalette cores = caixa->palette();
            cores.setColor(QPalette::Base, padrao.color(modo == 0 ? QPalette::Button : QPalette::Base));
            caixa->setPalette(cores);
        }
    }

    void mostraCorrecao()
    {
        const auto textos = AplicaCorrecao(m_session.TabCorrecao, m_optAjgrad->isChecked());
        for (std::size_t i = 0; i < textos.size(); ++i)
            m_correcao[i]->setText(textos[i]);
    }

    void opcaoCorrecao(bool ligada)
    {
        // Each change toggles both options; one answer is enough.
        if (!ligada)
            return;
        if (arrozIrrigado(posicaoCultura())) {
            informacao(this, kMsgArrozSemCorrecao);
            return;
        }
        mostraCorrecao();
        LimpaCalculo();
    }

    QLabel* m_lblExpect = nullptr;
    QLineEdit* m_txtExpect = nullptr;
    QComboBox* m_cboSitArz = nullptr;
    QListWidget* m_lstCultAnt = nullptr;
    QLineEdit* m_txtMS = nullptr;
    QLabel* m_lblAv = nullptr;
    std::array<QLineEdit*, 6> m_correcao {};
    QRadioButton* m_optRofic = nullptr;
    QRadioButton* m_optAjgrad = nullptr;
};

} // namespace

QWidget* criaFrmGraos(Session& session, WindowRegistry& windows)
{
    return new FrmGraos(session, windows);
}

} // namespace lavra::ui
