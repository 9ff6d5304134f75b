#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/chainwindow.h"
#include "app/ui/fieldchecks.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "calc/cropgroups.h"
#include "plan/formulation.h"
#include "plan/ui/planstep.h"
#include "plan/ui/windows.h"
#include "store/cursormodel.h"
#include "store/storeerror.h"

#include <QComboBox>
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

const QString kNome = janela::kFormulacao;

// Columns of flxTab: the margin, then the table's ordinals 0 to 11 but 6. Only the names and
// the price show; the rest stays in the grid, as the step reads it.
namespace tab {
inline constexpr int kFormula = 1;
inline constexpr int kEspecificacao = 2;
inline constexpr int kPK = 6;
inline constexpr int kPreco = 7;
inline constexpr int kColunas = 12;
} // namespace tab

QString textoNecessidade(const NPKkg& nec)
{
    return QStringLiteral("A Necessidade NPK na Base é de: ") + numberText(nec.n) + QStringLiteral(" _ ")
        + numberText(nec.p) + QStringLiteral(" _ ") + numberText(nec.k) + QStringLiteral(" kg");
}

QTableWidget* criaGrade(QWidget* pai, const QString& nome, int linhas, int colunas)
{
    auto* grade = new QTableWidget(linhas, colunas, pai);
    grade->setObjectName(nome);
    grade->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grade->setSelectionBehavior(QAbstractItemView::SelectRows);
    grade->setSelectionMode(QAbstractItemView::SingleSelection);
    grade->verticalHeader()->hide();
    grade->verticalHeader()->setDefaultSectionSize(grade->fontMetrics().height() + 8);
    return grade;
}

// The mixture: a product in a stated quantity completed by single sources of P, K and N.
class FrmFormulacao final : public ChainWindow {
public:
    FrmFormulacao(Session& session, WindowRegistry& windows)
        : ChainWindow(session, windows)
        , m_nec(LeNecessidadeBase(session))
    {
        setWindowTitle(QStringLiteral("Fórmulas e Fontes para Adubação de Base"));
        auto* layout = new QVBoxLayout(this);
        layout->setMenuBar(criaMenusCalculo(this, m_session, m_windows));

        layout->addWidget(rotuloDestaque(textoNecessidade(m_nec), QStringLiteral("lblNecess"), this));

        auto* meio = new QHBoxLayout;
        meio->addWidget(criaTabela(), 1);
        meio->addWidget(criaEscolhas());
        layout->addLayout(meio, 1);
        layout->addWidget(criaResultado());

        const LinhaPasso botoes = adicionaBotoesPasso(layout, this,
            { {}, { QStringLiteral("cmdCancel"), QStringLiteral("Cancelar") },
                { QStringLiteral("cmdRetorna"), QStringLiteral("<< Retornar") },
                { QStringLiteral("cmdProssegue"), QStringLiteral("Prosseguir >>") } });
        // Enter calculates, as in the other steps; going on is a choice.
        botoes.prossegue->setDefault(false);
        m_cmdCalcula->setDefault(true);
        // The forest plan opens this step for one of its dressings and stays open below it.
        if (m_session.Grupo == grupo::Florestais)
            botoes.cancela->setText(QStringLiteral("Fechar"));

        QWidget* ordem[] = { m_cboFml, m_txtkgF2, m_cboFtN, m_cboFtP, m_cboFtK, m_cmdCalcula, botoes.prossegue,
            botoes.retorna, botoes.cancela, m_flxTab };
        for (std::size_t i = 1; i < std::size(ordem); ++i)
            setTabOrder(ordem[i - 1], ordem[i]);

        connect(botoes.prossegue, &QPushButton::clicked, this, &FrmFormulacao::prosseguir);
        connect(botoes.retorna, &QPushButton::clicked, this,
            [this]() { retornaDaBase(this, m_session, m_windows, kNome); });
        connect(botoes.cancela, &QPushButton::clicked, this,
            [this]() { cancelaDaBase(m_session, m_windows, kNome); });

        carrega();
        m_cboFml->setFocus();
        resize(sizeHint().width(), 640);
    }

private:
    QWidget* criaTabela()
    {
        auto* quadro = new QGroupBox(QStringLiteral("Fertilizantes cadastrados"), this);
        quadro->setObjectName(QStringLiteral("fraTab"));
        auto* layout = new QVBoxLayout(quadro);
        m_flxTab = criaGrade(quadro, QStringLiteral("flxTab"), 0, tab::kColunas);
        m_flxTab->setAlternatingRowColors(true);
        semEscolhaInicial(m_flxTab);
        for (int coluna = 0; coluna < tab::kColunas; ++coluna) {
            const bool visivel = coluna == tab::kFormula || coluna == tab::kEspecificacao || coluna == tab::kPreco;
            m_flxTab->setColumnHidden(coluna, !visivel);
            m_flxTab->setColumnWidth(coluna, twips(this, 2000));
        }
        m_flxTab->horizontalHeader()->setSectionResizeMode(tab::kEspecificacao, QHeaderView::Stretch);
        m_flxTab->setMinimumWidth(3 * twips(this, 2000) + 24);
        m_flxTab->setMinimumHeight(180);
        layout->addWidget(m_flxTab, 1);
        m_lblVazia = new QLabel(QStringLiteral("Não há fertilizantes cadastrados. Cadastre-os no menu Arquivo."), quadro);
        m_lblVazia->setObjectName(QStringLiteral("lblSemFertilizantes"));
        m_lblVazia->setWordWrap(true);
        m_lblVazia->hide();
        layout->addWidget(m_lblVazia);
        return quadro;
    }

    QComboBox* lista(QWidget* pai, const QString& nome)
    {
        auto* caixa = new QComboBox(pai);
        caixa->setObjectName(nome);
        caixa->setMinimumContentsLength(22);
        caixa->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        connect(caixa, &QComboBox::currentIndexChanged, this, &FrmFormulacao::limpaResultado);
        return caixa;
    }

    QWidget* criaEscolhas()
    {
        auto* quadro = new QGroupBox(QStringLiteral("Mistura"), this);
        quadro->setObjectName(QStringLiteral("fraMistura"));
        auto* grade = new QGridLayout(quadro);
        m_cboFml = lista(quadro, QStringLiteral("cboFml"));
        m_txtkgF2 = new QLineEdit(quadro);
        m_txtkgF2->setObjectName(QStringLiteral("txtkgF2"));
        m_txtkgF2->setMaxLength(12);
        m_txtkgF2->setAlignment(Qt::AlignRight);
        m_txtkgF2->setMaximumWidth(m_txtkgF2->fontMetrics().horizontalAdvance(QStringLiteral("0000000,00")) + 16);
        checaAoSair(m_txtkgF2, Grandeza::DoseFertilizante);
        connect(m_txtkgF2, &QLineEdit::textEdited, this, &FrmFormulacao::limpaResultado);
        m_cboFtN = lista(quadro, QStringLiteral("cboFtN"));
        m_cboFtP = lista(quadro, QStringLiteral("cboFtP"));
        m_cboFtK = lista(quadro, QStringLiteral("cboFtK"));

        grade->addWidget(rotulo(QStringLiteral("&Fórmula ou adubo orgânico"), m_cboFml, quadro), 0, 0);
        grade->addWidget(m_cboFml, 1, 0);
        grade->addWidget(rotulo(QStringLiteral("&Quantidade (kg)"), m_txtkgF2, quadro), 0, 1);
        grade->addWidget(m_txtkgF2, 1, 1);
        grade->setRowMinimumHeight(2, 8);
        grade->addWidget(rotulo(QStringLiteral("Fonte de &N"), m_cboFtN, quadro), 3, 0);
        grade->addWidget(m_cboFtN, 4, 0);
        grade->addWidget(rotulo(QStringLiteral("Fonte de &P"), m_cboFtP, quadro), 5, 0);
        grade->addWidget(m_cboFtP, 6, 0);
        grade->addWidget(rotulo(QStringLiteral("Fonte de &K"), m_cboFtK, quadro), 7, 0);
        grade->addWidget(m_cboFtK, 8, 0);

        m_cmdCalcula = new QPushButton(QStringLiteral("Calcular"), quadro);
        m_cmdCalcula->setObjectName(QStringLiteral("cmdCalcula"));
        grade->addWidget(m_cmdCalcula, 8, 1);
        grade->setRowStretch(9, 1);
        connect(m_cmdCalcula, &QPushButton::clicked, this, &FrmFormulacao::calcular);
        return quadro;
    }

    QWidget* criaResultado()
    {
        auto* quadro = new QGroupBox(QStringLiteral("Resultado do cálculo"), this);
        quadro->setObjectName(QStringLiteral("fraResultado"));
        auto* layout = new QVBoxLayout(quadro);
        m_flxgResult = criaGrade(quadro, QStringLiteral("flxgResult"), res::kLinhas, res::kColunas);
        m_flxgResult->setSelectionMode(QAbstractItemView::NoSelection);
        m_flxgResult->setFocusPolicy(Qt::NoFocus);
        QStringList cabecalhos;
        for (const QString& texto : cabecalhoResultado())
            cabecalhos << texto;
        m_flxgResult->setHorizontalHeaderLabels(cabecalhos);
        // No heading may be cut: a column is as wide as its heading asks, and never narrower.
        int largura = 0;
        for (int coluna = 0; coluna < res::kColunas; ++coluna) {
            const int larguraColuna = std::max(twips(this, 1500), m_flxgResult->horizontalHeader()->sectionSizeHint(coluna));
            m_flxgResult->setColumnWidth(coluna, larguraColuna);
            largura += larguraColuna;
        }
        m_flxgResult->horizontalHeader()->setSectionResizeMode(res::kFonte, QHeaderView::Stretch);
        m_flxgResult->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_flxgResult->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_flxgResult->setFixedHeight(m_flxgResult->horizontalHeader()->sizeHint().height()
            + res::kLinhas * m_flxgResult->verticalHeader()->defaultSectionSize() + 2 * m_flxgResult->frameWidth());
        m_flxgResult->setMinimumWidth(largura + 2 * m_flxgResult->frameWidth());
        layout->addWidget(m_flxgResult);
        mostraResultado({});
        return quadro;
    }

    void carrega()
    {
        try {
            m_tabela = LeTabelaFormulacao(m_session.db);
        } catch (const StoreError& error) {
            erroBanco(this, error);
        }
        QStringList cabecalhos(tab::kColunas);
        for (int coluna = 1; coluna < tab::kColunas; ++coluna)
            cabecalhos[coluna] = m_tabela.colunas.value(coluna - 1 + (coluna >= tab::kPreco ? 1 : 0));
        m_flxTab->setHorizontalHeaderLabels(cabecalhos);
        m_flxTab->setRowCount(static_cast<int>(m_tabela.linhas.size()));
        for (int linha = 0; linha < m_tabela.linhas.size(); ++linha) {
            const Insumo& f = m_tabela.linhas[linha];
            const QString celulas[tab::kColunas] = { {}, f.formula, f.especificacao, numberText(f.teor.n),
                numberText(f.teor.p), numberText(f.teor.k), FormataNumero(f.relacaoPK, 2), cellText(f.preco), f.ms,
                f.eficN, f.eficP, f.eficK };
            for (int coluna = 1; coluna < tab::kColunas; ++coluna) {
                auto* celula = new QTableWidgetItem(celulas[coluna]);
                if (coluna == tab::kPreco)
                    celula->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
                m_flxTab->setItem(linha, coluna, celula);
            }
        }
        m_lblVazia->setVisible(m_tabela.linhas.isEmpty());

        const ListasFormulacao listas = ListasDaTabela(m_tabela);
        const std::pair<QComboBox*, const QStringList*> preenche[] = { { m_cboFml, &listas.produtos },
            { m_cboFtN, &listas.fontesN }, { m_cboFtP, &listas.fontesP }, { m_cboFtK, &listas.fontesK } };
        for (const auto& [caixa, itens] : preenche) {
            const QSignalBlocker bloqueio(caixa);
            caixa->clear();
            caixa->addItems(QStringList { kSelecione, kNenhuma } + *itens);
            caixa->setCurrentIndex(0);
        }
    }

    static Escolha escolha(const QComboBox* caixa) { return Escolha::daLista(caixa->currentIndex(), caixa->currentText()); }

    void calcular()
    {
        EntradaFormulacao entrada;
        entrada.nec = m_nec;
        entrada.produto = escolha(m_cboFml);
        entrada.fonteN = escolha(m_cboFtN);
        entrada.fonteP = escolha(m_cboFtP);
        entrada.fonteK = escolha(m_cboFtK);
        entrada.quantidade = m_txtkgF2->text();

        const ResultadoFormulacao resultado = Calcula_Formulacao(m_tabela, entrada);
        if (resultado.quantidade != m_txtkgF2->text())
            m_txtkgF2->setText(resultado.quantidade);
        if (resultado.desfecho) {
            mostraResultado({});
            ui::mostra(this, *resultado.desfecho);
            return;
        }
        mostraResultado(resultado.grade);
        m_session.RefazPlano = 1;
    }

    void mostraResultado(const GradeResultado& grade)
    {
        m_grade = grade;
        QFont negrito = m_flxgResult->font();
        negrito.setBold(true);
        for (int linha = 0; linha < res::kLinhas; ++linha) {
            for (int coluna = 0; coluna < res::kColunas; ++coluna) {
                auto* celula = new QTableWidgetItem(grade[linha][coluna]);
                if (coluna != res::kFonte)
                    celula->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
                if (linha == res::kTotais)
                    celula->setFont(negrito);
                m_flxgResult->setItem(linha, coluna, celula);
            }
        }
    }

    // A figure on the screen always answers to the choices beside it: a change voids it.
    void limpaResultado()
    {
        if (!m_grade[res::kProduto][res::kFonte].isEmpty())
            mostraResultado({});
    }

    void prosseguir()
    {
        if (const Parada recusa = VerificaFormulacao(m_grade, m_nec); recusa && !ui::mostra(this, *recusa))
            return;
        segueDaBase(this, m_session, m_windows, kNome, GravaFormulacao(m_session, m_tabela, m_grade),
            [this]() { return LinhasFlorestFormulacao(m_session); });
    }

    NPKkg m_nec;
    TabelaFormulacao m_tabela;
    GradeResultado m_grade;
    QTableWidget* m_flxTab = nullptr;
    QLabel* m_lblVazia = nullptr;
    QComboBox* m_cboFml = nullptr;
    QLineEdit* m_txtkgF2 = nullptr;
    QComboBox* m_cboFtN = nullptr;
    QComboBox* m_cboFtP = nullptr;
    QComboBox* m_cboFtK = nullptr;
    QPushButton* m_cmdCalcula = nullptr;
    QTableWidget* m_flxgResult = nullptr;
};

} // namespace

QWidget* criaFrmFormulacao(Session& session, WindowRegistry& windows)
{
    return new FrmFormulacao(session, windows);
}

} // namespace lavra::ui
