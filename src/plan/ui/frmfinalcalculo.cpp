#include "app/analise.h"
#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/chainwindow.h"
#include "app/ui/desktop.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "plan/finish.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// The report window of each plan: formulas, formulation, forest.
const char* const kRelatorios[] = {"rptLdForml", "rptLdFormlacao", "rptLdFlorest"};

// The last step of the chain: the date of sowing, the total, and the saved recommendation.
class FrmFinalCalculo final : public ChainWindow {
public:
    FrmFinalCalculo(Session& session, WindowRegistry& windows) : ChainWindow(session, windows)
    {
        setWindowTitle(QStringLiteral("Final do Processo de Cálculo"));
        auto* layout = new QVBoxLayout(this);

        auto* menus = new QMenuBar(this);
        QAction* custo = menus->addAction(QStringLiteral("  Custo dos fertilizantes"));
        custo->setObjectName(QStringLiteral("Análise"));
        connect(custo, &QAction::triggered, this, &FrmFinalCalculo::custos);
        QAction* fertig = menus->addAction(QStringLiteral("Fertigráfico"));
        fertig->setObjectName(QStringLiteral("fertig"));
        connect(fertig, &QAction::triggered, this, [this]() { abreFertigrafico(m_session, m_windows); });
        QAction* calc = menus->addAction(QStringLiteral("Calculadora"));
        calc->setObjectName(QStringLiteral("calc"));
        connect(calc, &QAction::triggered, this, []() { abreCalculadora(); });
        layout->setMenuBar(menus);

        auto* intro = new QLabel(QStringLiteral("Informe a data prevista para a semeadura ou o plantio e salve "
                                                "os cálculos da recomendação."),
                                 this);
        intro->setWordWrap(true);
        layout->addWidget(intro);

        m_data = new QLineEdit(this);
        m_data->setObjectName(QStringLiteral("MaskEdBox1"));
        m_data->setInputMask(QStringLiteral("99/99/9999;_"));
        mascaraDoInicio(m_data);
        m_data->setMaximumWidth(m_data->fontMetrics().horizontalAdvance(QStringLiteral("00/00/00000")) + 16);
        auto* form = new QFormLayout;
        form->addRow(QStringLiteral("Provável data de semeadura ou plantio"), m_data);
        layout->addLayout(form);
        layout->addStretch();

        const LinhaPasso buttons = adicionaBotoesPasso(layout, this,
            {{}, {QStringLiteral("cmdCancela"), QStringLiteral("Cancelar")},
             {QStringLiteral("Command1"), QStringLiteral("<< Retornar")},
             {QStringLiteral("cmdSalva"), QStringLiteral("Salvar Cálculos")}});
        connect(buttons.prossegue, &QPushButton::clicked, this, &FrmFinalCalculo::salva);
        connect(buttons.retorna, &QPushButton::clicked, this, &FrmFinalCalculo::retorna);
        connect(buttons.cancela, &QPushButton::clicked, this,
                [this]() { FechaJanelas(m_session, m_windows, true); });
        setMinimumWidth(460);
    }

private:
    void salva()
    {
        Parada recusa;
        try {
            recusa = SalvaRecomendacao(m_session, m_data->text());
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return;
        }
        if (recusa) {
            // The date is what the user changes to save it.
            recusa->campo = m_data->objectName();
            ui::mostra(this, *recusa);
            return;
        }

        const QString codAnalise = m_session.Analise.value(analise::kCodigo).toString();
        const QString codCultivo = m_session.CodCultivo;
        const int plano = m_session.PlanoNum;
        // The chain is done with, this step included; what follows needs no window of it.
        FechaJanelas(m_session, m_windows, false);
        if (confirma(nullptr, QStringLiteral("Exibir o laudo?")) && plano >= 1 && plano <= 3) {
            m_session.LaudoAnalise = codAnalise;
            m_session.LaudoCultivo = codCultivo;
            m_windows.show(QString::fromLatin1(kRelatorios[plano - 1]));
        }
    }

    void retorna()
    {
        hide();
        m_windows.show(m_session.JanelaAnterior);
    }

    void custos()
    {
        try {
            Tabela_e_CalcCustTot(m_session, m_session.PlanoNum);
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return;
        }
        m_session.GrafAvulso = 0;
        ReabreJanela(m_session, m_windows, janela::kOcupaCusto, QStringLiteral("reabre"));
    }

    QLineEdit* m_data = nullptr;
};

} // namespace

QWidget* criaFrmFinalCalculo(Session& session, WindowRegistry& windows) { return new FrmFinalCalculo(session, windows); }

} // namespace lavra::ui
