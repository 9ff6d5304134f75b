#include "frmnpk.h"

#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/desktop.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "calc/cropgroups.h"
#include "plan/ui/planstep.h"
#include "plan/ui/windows.h"
#include "store/storeerror.h"

#include <QAction>
#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <iterator>

namespace lavra::ui {

namespace {

const QString kNome = janela::kNPK;

// Results of the calculation: the user reads them, the step alone writes them.
QLineEdit* caixaResultado(QWidget* parent, const QString& nome)
{
    return caixaSomenteLeitura(parent, nome, QStringLiteral("0000000,00"));
}

void pintaAviso(QLabel* rotulo, const SituacaoNutriente& situacao)
{
    rotulo->setText(situacao.texto);
    QPalette paleta = rotulo->parentWidget() ? rotulo->parentWidget()->palette() : QPalette();
    if (situacao.vermelho)
        paleta.setColor(QPalette::WindowText, Qt::red);
    rotulo->setPalette(paleta);
}

} // namespace

FrmNPK::FrmNPK(Session& session, WindowRegistry& windows, QWidget* parent)
    : ChainWindow(session, windows, parent)
    , m_nec(LeNecessidadeBase(session))
    , m_daFloresta(session.Grupo == grupo::Florestais)
{
    setWindowTitle(QStringLiteral("Fórmulas para Adubação de Base"));
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(criaMenusCalculo(this, m_session, m_windows));

    layout->addWidget(criaGrade(), 1);
    auto* meio = new QHBoxLayout;
    meio->addWidget(criaCalculo());
    meio->addWidget(criaResultado(), 1);
    layout->addLayout(meio);

    const LinhaPasso botoes = adicionaBotoesPasso(layout, this,
        { { { QStringLiteral("cmdFormular"), QStringLiteral("Formular ou adubos orgânicos") } },
            { QStringLiteral("cmdCancel"), QStringLiteral("Cancelar") },
            { QStringLiteral("cmdRetorna"), QStringLiteral("<< Retornar") },
            { QStringLiteral("cmdProssegue"), QStringLiteral("Prosseguir >>") } });
    m_cmdFormular = botoes.acoes[0];
    m_cmdCancel = botoes.cancela;
    QPushButton* cmdRetorna = botoes.retorna;
    QPushButton* cmdProssegue = botoes.prossegue;
    // Enter calculates, as in the other steps; leaving for the formulation is a choice.
    m_cmdFormular->setDefault(false);
    m_cmdCalcula->setDefault(true);
    if (m_daFloresta) {
        m_cmdFormular->setEnabled(false);
        m_cmdCancel->setText(QStringLiteral("Fechar"));
    }

    QWidget* ordem[] = { m_optIndicados, m_optTodos, m_flxNPK, m_opt->button(0), m_opt->button(1),
        m_opt->button(2), m_cmdCalcula, cmdProssegue, cmdRetorna, m_cmdCancel, m_cmdFormular };
    for (std::size_t i = 1; i < std::size(ordem); ++i)
        setTabOrder(ordem[i - 1], ordem[i]);

    connect(m_cmdFormular, &QPushButton::clicked, this, &FrmNPK::formular);
    connect(m_cmdCancel, &QPushButton::clicked, this, &FrmNPK::cancelar);
    connect(cmdRetorna, &QPushButton::clicked, this, &FrmNPK::retornar);
    connect(cmdProssegue, &QPushButton::clicked, this, &FrmNPK::prosseguir);

    Insere_Indicados(true);
    atualizaAvisos();
    resize(sizeHint().width(), 560);
}

QWidget* FrmNPK::criaGrade()
{
    auto* fr1 = new QGroupBox(TextoNecessidade(m_nec), this);
    fr1->setObjectName(QStringLiteral("fr1"));
    // The title is the need itself: it must never be cut.
    fr1->setMinimumWidth(fr1->fontMetrics().horizontalAdvance(fr1->title()) + 40);
    auto* layout = new QVBoxLayout(fr1);

    auto* opcoes = new QHBoxLayout;
    m_optIndicados = new QRadioButton(QStringLiteral("Mostrar fertilizantes mais indicados"), fr1);
    m_optIndicados->setObjectName(QStringLiteral("optIndicados"));
    m_optIndicados->setChecked(true);
    m_optTodos = new QRadioButton(QStringLiteral("Mostrar todos os fertilizantes"), fr1);
    m_optTodos->setObjectName(QStringLiteral("optTodos"));
    opcoes->addWidget(m_optIndicados);
    opcoes->addSpacing(24);
    opcoes->addWidget(m_optTodos);
    opcoes->addStretch();
    layout->addLayout(opcoes);

    m_flxNPK = new QTableWidget(0, flx::kColunas, fr1);
    m_flxNPK->setObjectName(QStringLiteral("flxNPK"));
    m_flxNPK->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_flxNPK->setSelectionMode(QAbstractItemView::SingleSelection);
    m_flxNPK->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_flxNPK->setAlternatingRowColors(true);
    m_flxNPK->verticalHeader()->hide();
    m_flxNPK->verticalHeader()->setDefaultSectionSize(m_flxNPK->fontMetrics().height() + 8);
    for (int coluna : { 0, flx::kN, flx::kP, flx::kK, flx::kEficN })
        m_flxNPK->setColumnHidden(coluna, true);
    for (int coluna : { flx::kFormula, flx::kEspecificacao, flx::kPK, flx::kPreco })
        m_flxNPK->setColumnWidth(coluna, twips(this, 2000));
    // The names are the longest texts: their column takes whatever room the window gives.
    m_flxNPK->horizontalHeader()->setSectionResizeMode(flx::kEspecificacao, QHeaderView::Stretch);
    m_flxNPK->setMinimumHeight(200);
    m_flxNPK->setMinimumWidth(4 * twips(this, 2000) + 24);
    layout->addWidget(m_flxNPK, 1);
    // Said in the frame, where the user looks for a formula, when the grid has none to offer.
    m_lblVazia = new QLabel(fr1);
    m_lblVazia->setObjectName(QStringLiteral("lblSemFormulas"));
    m_lblVazia->setWordWrap(true);
    m_lblVazia->hide();
    layout->addWidget(m_lblVazia);

    connect(m_optIndicados, &QRadioButton::clicked, this, [this]() {
        Insere_Indicados(true);
        LimpaCampos();
    });
    connect(m_optTodos, &QRadioButton::clicked, this, [this]() {
        Insere_Indicados(false);
        LimpaCampos();
    });
    connect(m_flxNPK, &QTableWidget::itemSelectionChanged, this, &FrmNPK::LimpaCampos);
    return fr1;
}

QWidget* FrmNPK::criaCalculo()
{
    auto* quadro = new QGroupBox(QStringLiteral("Cálculo da fórmula"), this);
    quadro->setObjectName(QStringLiteral("fraCalculo"));
    auto* layout = new QVBoxLayout(quadro);
    m_opt = new QButtonGroup(this);
    const QString legendas[] = { QStringLiteral("Integralizar P"), QStringLiteral("Integralizar K"),
        QStringLiteral("Diferenças iguais de P e K") };
    for (int i = 0; i < 3; ++i) {
        auto* opcao = new QRadioButton(legendas[i], quadro);
        opcao->setObjectName(QStringLiteral("Opt_%1").arg(i));
        m_opt->addButton(opcao, i);
        layout->addWidget(opcao);
        connect(opcao, &QRadioButton::clicked, this, &FrmNPK::LimpaCampos);
    }
    m_cmdCalcula = new QPushButton(QStringLiteral("Calcular"), quadro);
    m_cmdCalcula->setObjectName(QStringLiteral("cmdCalcula"));
    layout->addSpacing(6);
    layout->addWidget(m_cmdCalcula);
    connect(m_cmdCalcula, &QPushButton::clicked, this, &FrmNPK::calcular);
    return quadro;
}

QWidget* FrmNPK::criaResultado()
{
    auto* quadro = new QGroupBox(this);
    quadro->setObjectName(QStringLiteral("fraResultado"));
    auto* grade = new QGridLayout(quadro);
    grade->setHorizontalSpacing(14);

    m_txtFormula = caixaResultado(quadro, QStringLiteral("txtFormula"));
    m_txtCusto = caixaResultado(quadro, QStringLiteral("txtCusto"));
    auto* lblFormula = new QLabel(QStringLiteral("Fórmula (kg/ha)"), quadro);
    auto* lblCusto = new QLabel(QStringLiteral("Custo (R$/ha)"), quadro);
    lblFormula->setBuddy(m_txtFormula);
    lblCusto->setBuddy(m_txtCusto);
    grade->addWidget(lblFormula, 1, 0);
    grade->addWidget(m_txtFormula, 2, 0);
    grade->addWidget(lblCusto, 1, 1);
    grade->addWidget(m_txtCusto, 2, 1);

    auto* lblForn = new QLabel(QStringLiteral("Fornecimento (kg/ha)"), quadro);
    lblForn->setAlignment(Qt::AlignCenter);
    grade->addWidget(lblForn, 0, 3, 1, 3);
    const QString nutrientes[] = { QStringLiteral("N"), QStringLiteral("P"), QStringLiteral("K") };
    // Wide enough for the longest status, so that no label is cut.
    const int largura = fontMetrics().horizontalAdvance(QStringLiteral("100 kg a menos")) + 12;
    for (int i = 0; i < 3; ++i) {
        auto* cabecalho = new QLabel(nutrientes[i], quadro);
        cabecalho->setAlignment(Qt::AlignCenter);
        m_txtForn[i] = caixaResultado(quadro, QStringLiteral("txtForn_%1").arg(i));
        m_txtForn[i]->setFixedWidth(largura);
        m_lblAv[i] = new QLabel(kAcimaDoNormal, quadro);
        m_lblAv[i]->setObjectName(QStringLiteral("lblAv_%1").arg(i));
        m_lblAv[i]->setAlignment(Qt::AlignCenter);
        m_lblAv[i]->setMinimumWidth(largura);
        grade->addWidget(cabecalho, 1, 3 + i);
        grade->addWidget(m_txtForn[i], 2, 3 + i);
        grade->addWidget(m_lblAv[i], 3, 3 + i);
        connect(m_txtForn[i], &QLineEdit::textChanged, this, &FrmNPK::atualizaAvisos);
    }
    grade->setColumnMinimumWidth(2, 12);
    grade->setColumnStretch(6, 1);
    grade->setRowStretch(4, 1);
    return quadro;
}

void FrmNPK::Insere_Indicados(bool somente)
{
    GradeFormulas grade;
    try {
        grade = lavra::Insere_Indicados(LeTabelaNPK(m_session.db), m_nec, somente);
    } catch (const StoreError& error) {
        erroBanco(this, error);
    }
    const QSignalBlocker bloqueio(m_flxNPK);
    m_flxNPK->clearContents();
    m_flxNPK->setRowCount(static_cast<int>(grade.linhas.size()));
    QStringList cabecalhos;
    for (const QString& texto : grade.cabecalho)
        cabecalhos << texto;
    m_flxNPK->setHorizontalHeaderLabels(cabecalhos);
    for (int linha = 0; linha < grade.linhas.size(); ++linha) {
        for (int coluna = 1; coluna < flx::kColunas; ++coluna) {
            auto* celula = new QTableWidgetItem(grade.linhas[linha][coluna]);
            if (coluna == flx::kPK || coluna == flx::kPreco)
                celula->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            m_flxNPK->setItem(linha, coluna, celula);
        }
    }
    if (m_flxNPK->rowCount() > 0)
        m_flxNPK->setCurrentCell(0, flx::kFormula);
    m_lblVazia->setText(somente ? kMsgSemIndicados : kMsgSemFertilizantes);
    m_lblVazia->setVisible(m_flxNPK->rowCount() == 0);
}

void FrmNPK::LimpaCampos()
{
    for (QLineEdit* caixa : { m_txtFormula, m_txtCusto, m_txtForn[0], m_txtForn[1], m_txtForn[2] })
        caixa->clear();
}

LinhaFlx FrmNPK::linhaSelecionada() const
{
    LinhaFlx linha;
    const int atual = linhaEscolhida(m_flxNPK);
    if (atual < 0)
        return linha;
    for (int coluna = 1; coluna < flx::kColunas; ++coluna) {
        if (const QTableWidgetItem* celula = m_flxNPK->item(atual, coluna))
            linha[coluna] = celula->text();
    }
    return linha;
}

std::array<QString, 3> FrmNPK::fornecimentoNasCaixas() const
{
    return { m_txtForn[0]->text(), m_txtForn[1]->text(), m_txtForn[2]->text() };
}

void FrmNPK::calcular()
{
    EntradaCalculo entrada;
    entrada.nec = m_nec;
    if (m_opt->checkedId() >= 0)
        entrada.modo = static_cast<ModoCalculo>(m_opt->checkedId());
    entrada.linha = linhaSelecionada();
    // Any press of Calcular makes a split already made stale.
    m_session.RefazPlano = 1;

    const ResultadoCalculo resultado = Calcula(entrada);
    if (Parada desfecho = resultado.desfecho) {
        // An empty grid has its reason written in the frame already.
        if (desfecho->texto == kMsgSemFertilizante && m_flxNPK->rowCount() == 0)
            desfecho->texto = m_lblVazia->text();
        ui::mostra(this, *desfecho);
        return;
    }
    m_forn = resultado.forn;
    m_txtFormula->setText(resultado.txtFormula);
    m_txtCusto->setText(resultado.txtCusto);
    for (int i = 0; i < 3; ++i)
        m_txtForn[i]->setText(resultado.txtForn[i]);
    atualizaAvisos();
}

void FrmNPK::atualizaAvisos()
{
    const auto situacoes = SituacaoFornecimento(fornecimentoNasCaixas(), m_nec, m_forn);
    for (int i = 0; i < 3; ++i)
        pintaAviso(m_lblAv[i], situacoes[i]);
}

void FrmNPK::prosseguir()
{
    if (m_txtFormula->text().isEmpty()) {
        aviso(this, kMsgSemCalculo);
        return;
    }
    if (const Parada pergunta = PerguntaFornecimento(m_nec, FornecimentoDasCaixas(fornecimentoNasCaixas()));
        pergunta && !ui::mostra(this, *pergunta))
        return;

    const LinhaFlx linha = linhaSelecionada();
    segueDaBase(this, m_session, m_windows, kNome,
        GravaFormula(m_session, { linha[flx::kFormula], linha[flx::kPreco], m_txtFormula->text() }),
        [this]() { return LinhasFlorestFormula(m_session); });
}

void FrmNPK::formular()
{
    if (mostraJanela(this, m_windows, janela::kFormulacao))
        hide();
}

void FrmNPK::retornar()
{
    retornaDaBase(this, m_session, m_windows, kNome);
}

void FrmNPK::cancelar()
{
    cancelaDaBase(m_session, m_windows, kNome);
}

QWidget* criaFrmNPK(Session& session, WindowRegistry& windows)
{
    return new FrmNPK(session, windows);
}

} // namespace lavra::ui
