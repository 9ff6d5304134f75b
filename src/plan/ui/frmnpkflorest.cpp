#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/chainwindow.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/forest.h"
#include "calc/ui/forestneed.h"
#include "plan/forest.h"
#include "plan/ui/planstep.h"
#include "plan/ui/windows.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace lavra::ui {

namespace {

constexpr int kColunasGrade = 6;
constexpr int kLinhasGrade = 5;

// The steps that plan one dressing. One left open for another dressing would plan it with that
// dressing's need, so each opens afresh.
const QStringList& passosDaEtapa()
{
    static const QStringList passos = { janela::kNPK, janela::kFormulacao, janela::kParcNitroFlo };
    return passos;
}

// The forest plan: the need of the three dressings, two ways to plan each, and the three grids
// that the steps fill and that go to the final step row by row.
class FrmNPKFlorest final : public ChainWindow {
public:
    FrmNPKFlorest(Session& session, WindowRegistry& windows)
        : ChainWindow(session, windows)
    {
        AbrePlanoFlorestal(m_session);
        setWindowTitle(QStringLiteral("Adubação para Essências Florestais"));
        auto* layout = new QVBoxLayout(this);
        layout->setMenuBar(criaMenusCalculo(this, m_session, m_windows));

        auto* geral = new QGroupBox(QStringLiteral("Necessidade de e opções de fertilizantes "), this);
        auto* linhaGeral = new QHBoxLayout(geral);
        linhaGeral->addWidget(criaNecessidade());
        linhaGeral->addWidget(criaOpcoes());
        linhaGeral->addStretch();
        layout->addWidget(geral);
        const QStringList etapas = legendasEtapasFlorestais();
        for (int e = 0; e < kEtapasFlorestais; ++e) {
            m_grades[e] = criaGrade(QStringLiteral("flxG%1").arg(e + 1));
            layout->addWidget(rotulo(etapas[e], m_grades[e], this));
            layout->addWidget(m_grades[e]);
        }

        const LinhaPasso botoes = adicionaBotoesPasso(layout, this,
            { {}, { QStringLiteral("cmdCancel"), QStringLiteral("Cancelar") },
                { QStringLiteral("cmdRetorna"), QStringLiteral("<< Retornar") },
                { QStringLiteral("cmdProssegue"), QStringLiteral("Prosseguir >>") } });
        connect(botoes.prossegue, &QPushButton::clicked, this, &FrmNPKFlorest::prosseguir);
        connect(botoes.retorna, &QPushButton::clicked, this, [this]() {
            m_session.RefazPlano = 0;
            if (mostraJanela(this, m_windows, janela::kFlorest))
                hide();
        });
        connect(botoes.cancela, &QPushButton::clicked, this, [this]() { FechaJanelas(m_session, m_windows, true); });
        connect(&m_session.eventos, &Eventos::etapaPreenchida, this, &FrmNPKFlorest::preencheGrade);
    }

private:
    QGroupBox* criaNecessidade()
    {
        QGroupBox* frame = criaNecessidadeFlorestal(this, QStringLiteral("Necessidade (kg/ha)"), m_txtNec);
        const auto textos = TextosNecessidadeFlorestal(m_session);
        for (int i = 0; i < m_txtNec.size(); ++i)
            m_txtNec[i]->setText(textos[static_cast<std::size_t>(i)]);
        return frame;
    }

    // Two buttons beside each dressing's row of need.
    QGroupBox* criaOpcoes()
    {
        auto* frame = new QGroupBox(QStringLiteral("Opções de fertilizantes"), this);
        auto* grade = new QGridLayout(frame);
        // An empty row keeps the buttons level with the boxes under their headings.
        grade->addWidget(new QLabel(frame), 0, 0);
        for (int e = 1; e <= kEtapasFlorestais; ++e) {
            const OpcoesEtapa opcoes = opcoesDaEtapa(m_session, e);
            auto* formulas = new QPushButton(kLegendaFormulas, frame);
            formulas->setObjectName(QStringLiteral("cmd%1").arg(2 * e - 1));
            auto* segundo
                = new QPushButton(opcoes.fontesDeN ? kLegendaFontesN : kLegendaFormulacao, frame);
            segundo->setObjectName(QStringLiteral("cmd%1").arg(2 * e));
            formulas->setEnabled(opcoes.habilitada);
            segundo->setEnabled(opcoes.habilitada);
            grade->addWidget(formulas, e, 0);
            grade->addWidget(segundo, e, 1);
            connect(formulas, &QPushButton::clicked, this, [this, e]() { planeja(e, janela::kNPK); });
            connect(segundo, &QPushButton::clicked, this, [this, e, segundo]() {
                planeja(e, segundo->text() == kLegendaFontesN ? janela::kParcNitroFlo : janela::kFormulacao);
            });
        }
        return frame;
    }

    QTableWidget* criaGrade(const QString& nome)
    {
        auto* grade = new QTableWidget(0, kColunasGrade, this);
        grade->setObjectName(nome);
        grade->setEditTriggers(QAbstractItemView::NoEditTriggers);
        grade->setSelectionMode(QAbstractItemView::NoSelection);
        grade->setFocusPolicy(Qt::NoFocus);
        grade->horizontalHeader()->hide();
        grade->verticalHeader()->hide();
        grade->verticalHeader()->setDefaultSectionSize(grade->fontMetrics().height() + 8);
        // The headings come as the first row, in bold; none of them may be cut.
        QFont negrito = grade->font();
        negrito.setBold(true);
        const QFontMetrics medidas(negrito);
        const QStringList cabecalho = CabecalhoFlorestal(QStringLiteral("Fontes"));
        int largura = 2 * grade->frameWidth();
        for (int c = 0; c < kColunasGrade; ++c) {
            grade->setColumnWidth(c, std::max(twips(this, 1700), medidas.horizontalAdvance(cabecalho[c]) + 16));
            largura += grade->columnWidth(c);
        }
        grade->horizontalHeader()->setStretchLastSection(true);
        grade->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        grade->setFixedHeight(kLinhasGrade * grade->verticalHeader()->defaultSectionSize() + 2 * grade->frameWidth());
        grade->setMinimumWidth(largura);
        return grade;
    }

    void planeja(int etapa, const QString& passo)
    {
        const int primeiro = (etapa - 1) * 3;
        PreparaEtapa(m_session, etapa,
            { m_txtNec[primeiro]->text(), m_txtNec[primeiro + 1]->text(), m_txtNec[primeiro + 2]->text() });
        for (const QString& nome : passosDaEtapa())
            FechaJanela(m_session, m_windows, nome);
        mostraJanela(this, m_windows, passo);
    }

    // Planning a dressing anew replaces its whole grid.
    void preencheGrade(int etapa, const QList<QStringList>& linhas)
    {
        if (etapa < 1 || etapa > kEtapasFlorestais)
            return;
        QTableWidget* grade = m_grades[static_cast<std::size_t>(etapa - 1)];
        grade->clearContents();
        grade->setRowCount(static_cast<int>(linhas.size()));
        QFont negrito = grade->font();
        negrito.setBold(true);
        for (int r = 0; r < linhas.size(); ++r) {
            for (int c = 0; c < kColunasGrade; ++c) {
                auto* celula = new QTableWidgetItem(linhas[r].value(c));
                if (r == 0)
                    celula->setFont(negrito);
                else if (c > 0)
                    celula->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
                grade->setItem(r, c, celula);
            }
        }
        // A long product name widens its column rather than being cut.
        int nomes = grade->columnWidth(0);
        for (int r = 0; r < grade->rowCount(); ++r)
            nomes = std::max(nomes, QFontMetrics(grade->item(r, 0)->font()).horizontalAdvance(grade->item(r, 0)->text()) + 16);
        grade->setColumnWidth(0, nomes);
    }

    void prosseguir()
    {
        std::array<GradeFlorestal, kEtapasFlorestais> grades;
        for (std::size_t e = 0; e < grades.size(); ++e) {
            const QTableWidget* grade = m_grades[e];
            for (int r = 0; r < grade->rowCount(); ++r) {
                QStringList celulas;
                for (int c = 0; c < kColunasGrade; ++c)
                    celulas << (grade->item(r, c) ? grade->item(r, c)->text() : QString());
                grades[e] << celulas;
            }
        }
        GravaPlanoFlorestal(m_session, grades);
        // A dressing still being planned would fill a grid that is already saved.
        for (const QString& nome : passosDaEtapa())
            FechaJanela(m_session, m_windows, nome);
        if (mostraJanela(this, m_windows, janela::kFinalCalculo))
            hide();
    }

    QList<QLineEdit*> m_txtNec;
    std::array<QTableWidget*, kEtapasFlorestais> m_grades {};
};

} // namespace

QWidget* criaFrmNPKFlorest(Session& session, WindowRegistry& windows)
{
    return new FrmNPKFlorest(session, windows);
}

} // namespace lavra::ui
