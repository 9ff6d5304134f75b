#include "app/navigation.h"
#include "app/session.h"
#include "app/slots.h"
#include "app/ui/buttons.h"
#include "app/ui/chainwindow.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/cropgroups.h"
#include "windows.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// Only the groups whose tables tell first and second crop apart ask for it.
bool pedeCultivo(int posicao)
{
    const GrupoCultura* grupo = grupoCultura(posicao + 1);
    return grupo && grupo->pedeCultivo;
}

// The second step: the crop group, and for grains, vegetables and forages whether this is the
// first or the second crop after the analysis.
class FrmGrupCult final : public ChainWindow {
public:
    FrmGrupCult(Session& session, WindowRegistry& windows) : ChainWindow(session, windows)
    {
        setWindowTitle(QStringLiteral("Grupos de Culturas"));
        auto* layout = new QVBoxLayout(this);
        auto* lists = new QHBoxLayout;

        auto* groupFrame = new QGroupBox(QStringLiteral("Grupos de culturas"), this);
        auto* groupLayout = new QVBoxLayout(groupFrame);
        m_grupo = new QListWidget(groupFrame);
        m_grupo->setObjectName(QStringLiteral("lstGrupo"));
        m_grupo->addItems(nomesGrupos());
        groupLayout->addWidget(m_grupo);
        lists->addWidget(groupFrame, 1);

        auto* cropFrame = new QGroupBox(QStringLiteral("Culturas do grupo (apenas para visualização)"), this);
        auto* cropLayout = new QVBoxLayout(cropFrame);
        m_culturas = new QListWidget(cropFrame);
        m_culturas->setObjectName(QStringLiteral("lstCulturas"));
        cropLayout->addWidget(m_culturas);
        lists->addWidget(cropFrame, 1);
        layout->addLayout(lists, 1);

        auto* cultivoFrame = new QGroupBox(QStringLiteral("Qual o cultivo após ter feito a análise do solo?"), this);
        auto* cultivoLayout = new QHBoxLayout(cultivoFrame);
        m_primeiro = new QRadioButton(QStringLiteral("Primeiro"), cultivoFrame);
        m_primeiro->setObjectName(QStringLiteral("Option1_0"));
        m_segundo = new QRadioButton(QStringLiteral("Segundo"), cultivoFrame);
        m_segundo->setObjectName(QStringLiteral("Option1_1"));
        cultivoLayout->addWidget(m_primeiro);
        cultivoLayout->addWidget(m_segundo);
        cultivoLayout->addStretch();
        layout->addWidget(cultivoFrame);

        const LinhaPasso buttons = adicionaBotoesPasso(layout, this,
            {{}, {}, {QStringLiteral("cmdVolta"), QStringLiteral("<< Retornar")},
             {QStringLiteral("cmdVai"), QStringLiteral("Prosseguir >>>")}});
        connect(buttons.prossegue, &QPushButton::clicked, this, &FrmGrupCult::vai);
        connect(buttons.retorna, &QPushButton::clicked, this, &FrmGrupCult::volta);

        semEscolhaInicial(m_grupo);
        semEscolhaInicial(m_culturas);
        connect(m_grupo, &QListWidget::itemSelectionChanged, this, [this]() { mostraGrupo(linhaEscolhida(m_grupo)); });
        // The crops are there to be looked at, not chosen.
        connect(m_culturas, &QListWidget::itemSelectionChanged, this, [this]() {
            if (linhaEscolhida(m_culturas) >= 0)
                semEscolhaInicial(m_culturas);
        });
        connect(m_grupo, &QListWidget::itemDoubleClicked, this, &FrmGrupCult::vai);
        resize(620, 440);
    }

protected:
    // The mark is taken as the window comes to the front, so that a change made on it is seen
    // at the next "Prosseguir" and closes what follows.
    void showEvent(QShowEvent* event) override
    {
        m_marca = marca();
        ChainWindow::showEvent(event);
    }

private:
    QString marca() const
    {
        return QString::number(linhaEscolhida(m_grupo)) + (m_primeiro->isChecked() ? QStringLiteral("True") : QStringLiteral("False"))
            + (m_segundo->isChecked() ? QStringLiteral("True") : QStringLiteral("False"));
    }

    void mostraGrupo(int position)
    {
        const bool asksOrder = pedeCultivo(position);
        m_primeiro->setEnabled(asksOrder);
        m_segundo->setEnabled(asksOrder);
        m_culturas->clear();
        m_culturas->addItems(culturasDoGrupo(position + 1));
        semEscolhaInicial(m_culturas);
    }

    void vai()
    {
        const int position = linhaEscolhida(m_grupo);
        if (pedeCultivo(position) && !m_primeiro->isChecked() && !m_segundo->isChecked()) {
            aviso(this, QStringLiteral("Selecione o cultivo!"));
            return;
        }
        if (position < 0) {
            aviso(this, QStringLiteral("Selecione o grupo de culturas!"));
            return;
        }
        // An option left on in a group that does not ask for it still counts.
        if (m_primeiro->isChecked()) {
            m_session.Cultivo = 1;
            m_session.Dados[slot::kCultivoOrdem] = QStringLiteral("Primeiro");
        } else if (m_segundo->isChecked()) {
            m_session.Cultivo = 2;
            m_session.Dados[slot::kCultivoOrdem] = QStringLiteral("Segundo");
        }
        if (marca() != m_marca)
            FechaAposEscolha(m_session, m_windows);
        m_marca = marca();
        hide();
        m_session.Grupo = static_cast<std::int16_t>(position + 1);
        m_session.NomeGrupo = m_grupo->item(position)->text();
        m_windows.show(janela::kCalagem);
    }

    void volta()
    {
        hide();
        m_windows.show(janela::kCliAn);
    }

    QListWidget* m_grupo = nullptr;
    QListWidget* m_culturas = nullptr;
    QRadioButton* m_primeiro = nullptr;
    QRadioButton* m_segundo = nullptr;
    QString m_marca;
};

} // namespace

QWidget* criaFrmGrupCult(Session& session, WindowRegistry& windows) { return new FrmGrupCult(session, windows); }

} // namespace lavra::ui
