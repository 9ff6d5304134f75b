#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/chainwindow.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "plan/forest.h"
#include "plan/split.h"
#include "plan/ui/nsources.h"
#include "plan/ui/windows.h"

#include <QCheckBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// A dressing of the forest plan that needs nitrogen alone: one source and its dose, without
// parcels. The plan gets the two rows of its grid and this step closes.
class FrmParcNitroFlo final : public ChainWindow {
public:
    FrmParcNitroFlo(Session& session, WindowRegistry& windows)
        : ChainWindow(session, windows)
    {
        setWindowTitle(QStringLiteral("Cálculo e Parcelamento da Adubação Nitrogenada em Cobertura"));
        auto* layout = new QVBoxLayout(this);
        layout->setMenuBar(criaMenusCalculo(this, m_session, m_windows));

        const float necessidade = LeNecessidadeNFlorestal(session);
        layout->addWidget(rotuloDestaque(TextoNecessidadeN(necessidade), QStringLiteral("lblNec"), this));
        m_fontes = new EscolhaFonteN(
            m_session, necessidade, QStringLiteral("Selecione uma fonte de N dentre os fertilizantes abaixo"), this);
        layout->addWidget(m_fontes, 1);

        const LinhaPasso botoes = adicionaBotoesPasso(layout, this,
            { {}, { QStringLiteral("cmdCancela"), QStringLiteral("Fechar") }, {},
                { QStringLiteral("cmdProssegue"), QStringLiteral("Prosseguir >>") } });
        setTabOrder(m_fontes->grade(), m_fontes->chkTodas());
        setTabOrder(m_fontes->chkTodas(), botoes.prossegue);
        setTabOrder(botoes.prossegue, botoes.cancela);
        connect(botoes.prossegue, &QPushButton::clicked, this, &FrmParcNitroFlo::prosseguir);
        connect(botoes.cancela, &QPushButton::clicked, this,
            [this]() { FechaJanela(m_session, m_windows, janela::kParcNitroFlo); });

        m_fontes->AbreTabelaN(false);
        resize(sizeHint().width(), 460);
    }

private:
    void prosseguir()
    {
        const FonteNFlorestal r
            = GravaFonteNFlorestal(m_session, m_fontes->fonte(), m_fontes->preco(), m_fontes->txtFnt());
        if (r.recusa) {
            ui::mostra(this, *r.recusa);
            return;
        }
        emit m_session.eventos.etapaPreenchida(m_session.EtapaFlorest, r.linhas);
        FechaJanela(m_session, m_windows, janela::kParcNitroFlo);
    }

    EscolhaFonteN* m_fontes = nullptr;
};

} // namespace

QWidget* criaFrmParcNitroFlo(Session& session, WindowRegistry& windows)
{
    return new FrmParcNitroFlo(session, windows);
}

} // namespace lavra::ui
