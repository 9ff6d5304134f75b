#include "frmcadanalise.h"

#include "app/session.h"
#include "app/ui/desktop.h"
#include "app/ui/fieldchecks.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "base/outcome.h"
#include "base/validation.h"
#include "registers/analysis.h"
#include "registers/ui/windows.h"
#include "store/storeerror.h"

#include <QAction>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

const QString kMascaraData = QStringLiteral("99/99/9999;_");

} // namespace

FrmCadAnalise::FrmCadAnalise(Session& session, WindowRegistry& windows, QWidget* parent)
    : QWidget(parent, Qt::Window), m_session(session), m_windows(windows)
{
    setObjectName(janela::kCadAnalise);
    setWindowTitle(QStringLiteral("Análises"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 6, 10, 10);
    criaMenus();
    layout->addWidget(criaCadastrais());
    layout->addWidget(criaAnalise());

    auto* nota = new QLabel(QStringLiteral("Os dados da análise devem ser fornecidos nas unidades requeridas pelo "
                                           "programa.  Caso precisar, acesse o conversor de unidades no topo."),
                            this);
    nota->setObjectName(QStringLiteral("lblNota"));
    nota->setWordWrap(true);
    QFont italico = nota->font();
    italico.setItalic(true);
    nota->setFont(italico);
    layout->addWidget(nota);
    layout->addWidget(criaBotoes());

    // The pickers and the unit converter tell this window what was chosen; it does not know them.
    Eventos& eventos = m_session.eventos;
    connect(&eventos, &Eventos::clienteEscolhido, this, [this](const QString& nome) { m_txtCliente->setText(nome); });
    connect(&eventos, &Eventos::analiseEscolhida, this, &FrmCadAnalise::Carrega);
    connect(&eventos, &Eventos::escolhaDeAnaliseCancelada, this, &FrmCadAnalise::escolhaCancelada);
    connect(&eventos, &Eventos::valorParaAnalise, this, [this](const QString& campo, const QString& valor) {
        // The converter's button does nothing while the form is not on the screen.
        if (!isVisible())
            return;
        if (auto* caixa = findChild<QLineEdit*>(campo))
            caixa->setText(valor);
    });

    const std::pair<QLineEdit*, Grandeza> numericos[] = {
        {m_txtAl, Grandeza::Al},         {m_txtArea, Grandeza::Area}, {m_txtArgila, Grandeza::Argila},
        {m_txtCa, Grandeza::Ca},         {m_txtH_Al, Grandeza::HAl},  {m_txtK, Grandeza::Potassio},
        {m_txtMg, Grandeza::Mg},         {m_txtMO, Grandeza::MO},     {m_txtP, Grandeza::Fosforo},
        {m_txtpH, Grandeza::PH}};
    for (const auto& [numerico, grandeza] : numericos)
        checaAoSair(numerico, grandeza);
    checaAoMudar(m_txtSMP);
    for (const auto& entrada : {std::pair{m_txtCa, Grandeza::Ca}, std::pair{m_txtMg, Grandeza::Mg},
                                std::pair{m_txtH_Al, Grandeza::HAl}, std::pair{m_txtK, Grandeza::Potassio}}) {
        // Only a value that would be saved is worked into the CTC.
        connect(entrada.first, &QLineEdit::editingFinished, this, [this, entrada]() {
            if (entrada.first->isEnabled() && !lavra::RecusaNumero(entrada.first->text(), entrada.second))
                CalculaCTC();
        });
    }

    // Enter moves on as Tab does, wherever the focus stands.
    for (QWidget* filho : findChildren<QWidget*>())
        filho->installEventFilter(this);

    BloqueiaTextos();
    botoesOcupados(false);
    resize(sizeHint());
}

QLineEdit* FrmCadAnalise::campo(const QString& nome, QWidget* parent, int caracteres)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(nome);
    if (caracteres > 0) {
        const QFontMetrics metrics(edit->font());
        edit->setFixedWidth(metrics.horizontalAdvance(QString(caracteres, QLatin1Char('0'))) + 16);
    }
    // A locked field takes the colour of a button face, an open one the window's.
    QPalette palette = edit->palette();
    palette.setColor(QPalette::Disabled, QPalette::Base, palette.color(QPalette::Active, QPalette::Button));
    edit->setPalette(palette);
    if (nome != QLatin1String("mskData"))
        m_textos << edit;
    return edit;
}

QGroupBox* FrmCadAnalise::criaCadastrais()
{
    auto* box = new QGroupBox(QStringLiteral("Dados cadastrais"), this);
    box->setObjectName(QStringLiteral("fraCadastrais"));
    auto* grid = new QGridLayout(box);

    m_txtCliente = campo(QStringLiteral("txtCliente"), box);
    auto* cmdBusca = new QPushButton(QStringLiteral("..."), box);
    cmdBusca->setObjectName(QStringLiteral("cmdBusca"));
    cmdBusca->setToolTip(QStringLiteral("Buscar entre os clientes cadastrados"));
    cmdBusca->setFixedWidth(cmdBusca->fontMetrics().horizontalAdvance(QStringLiteral("...")) + 24);
    connect(cmdBusca, &QPushButton::clicked, this, &FrmCadAnalise::busca);
    m_txtLocal = campo(QStringLiteral("txtLocal"), box);
    m_txtFazenda = campo(QStringLiteral("txtFazenda"), box);
    m_txtGleba = campo(QStringLiteral("txtGleba"), box);
    m_txtArea = campo(QStringLiteral("txtÁrea"), box, 8);
    m_txtArea->setAlignment(Qt::AlignRight);
    m_txtAnalise = campo(QStringLiteral("txtAnálise"), box, 10);
    m_mskData = campo(QStringLiteral("mskData"), box, 10);
    mascaraDoInicio(m_mskData);

    auto* cliente = new QHBoxLayout;
    cliente->addWidget(m_txtCliente, 1);
    cliente->addWidget(cmdBusca);
    grid->addWidget(rotulo(QStringLiteral("Cliente"), m_txtCliente, box), 0, 0);
    grid->addLayout(cliente, 0, 1, 1, 3);
    grid->addWidget(rotulo(QStringLiteral("Local/Cidade"), m_txtLocal, box), 1, 0);
    grid->addWidget(m_txtLocal, 1, 1);
    grid->addWidget(rotulo(QStringLiteral("Fazenda/Propriedade"), m_txtFazenda, box), 1, 2);
    grid->addWidget(m_txtFazenda, 1, 3);
    grid->addWidget(rotulo(QStringLiteral("Gleba/Lavoura"), m_txtGleba, box), 2, 0);
    grid->addWidget(m_txtGleba, 2, 1);
    grid->addWidget(rotulo(QStringLiteral("Área (ha)"), m_txtArea, box), 2, 2);
    grid->addWidget(m_txtArea, 2, 3, Qt::AlignLeft);
    grid->addWidget(rotulo(QStringLiteral("N°da Análise"), m_txtAnalise, box), 3, 0);
    grid->addWidget(m_txtAnalise, 3, 1, Qt::AlignLeft);
    grid->addWidget(rotulo(QStringLiteral("Data (dd/mm/aaaa)"), m_mskData, box), 3, 2);
    grid->addWidget(m_mskData, 3, 3, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    grid->setColumnMinimumWidth(1, 200);
    grid->setColumnMinimumWidth(3, 200);
    return box;
}

QGroupBox* FrmCadAnalise::criaAnalise()
{
    auto* box = new QGroupBox(QStringLiteral("Dados da análise de solo"), this);
    box->setObjectName(QStringLiteral("fraAnalise"));
    auto* row = new QHBoxLayout(box);

    auto* inseridos = new QGroupBox(QStringLiteral("Inseridos"), box);
    inseridos->setObjectName(QStringLiteral("fraInseridos"));
    auto* grid = new QGridLayout(inseridos);
    struct Entrada {
        QLineEdit** campo;
        const char* nome;
        const char* rotulo;
    };
    const Entrada entradas[] = {
        {&m_txtpH, "txtpH", "pH (água)"},          {&m_txtCa, "txtCa", "Ca (cmolc/dm³)"},
        {&m_txtMg, "txtMg", "Mg (cmolc/dm³)"},      {&m_txtAl, "txtAl", "Al (cmolc/dm³)"},
        {&m_txtH_Al, "txtH_Al", "H+Al (cmol/dm³)"}, {&m_txtSMP, "txtSMP", "Índice SMP"},
        {&m_txtMO, "txtMO", "MO (% m/v)"},          {&m_txtArgila, "txtArgila", "Argila (% m/v)"},
        {&m_txtP, "txtP", "P (mg/dm³)"},            {&m_txtK, "txtK", "K (mg/dm³)"},
    };
    // Two columns of five, read down the first and then the second.
    int index = 0;
    for (const Entrada& entrada : entradas) {
        *entrada.campo = campo(QString::fromUtf8(entrada.nome), inseridos, 8);
        (*entrada.campo)->setAlignment(Qt::AlignRight);
        const int linha = index % 5;
        const int coluna = index < 5 ? 0 : 3;
        grid->addWidget(rotulo(QString::fromUtf8(entrada.rotulo), *entrada.campo, inseridos), linha, coluna);
        grid->addWidget(*entrada.campo, linha, coluna + 1);
        ++index;
    }
    grid->setColumnMinimumWidth(2, 18);
    grid->setColumnStretch(2, 1);
    row->addWidget(inseridos, 1);

    auto* direita = new QVBoxLayout;
    auto* calculados = new QGroupBox(QStringLiteral("Calculados"), box);
    calculados->setObjectName(QStringLiteral("fraCalculados"));
    auto* form = new QGridLayout(calculados);
    m_txtCTC = campo(QStringLiteral("txtCTC"), calculados, 8);
    m_txtBases = campo(QStringLiteral("txtBases"), calculados, 8);
    // Worked out from Ca, Mg, H+Al and K as they are left.
    for (QLineEdit* calculado : {m_txtCTC, m_txtBases}) {
        calculado->setReadOnly(true);
        calculado->setFocusPolicy(Qt::ClickFocus);
        calculado->setAlignment(Qt::AlignRight);
        QPalette palette = calculado->palette();
        palette.setColor(QPalette::Base, palette.color(QPalette::Window));
        calculado->setPalette(palette);
    }
    form->addWidget(rotulo(QStringLiteral("CTCpH7 (cmolc/dm³)"), m_txtCTC, calculados), 0, 0);
    form->addWidget(m_txtCTC, 0, 1);
    form->addWidget(rotulo(QStringLiteral("Saturação por bases (%)"), m_txtBases, calculados), 1, 0);
    form->addWidget(m_txtBases, 1, 1);
    form->setColumnStretch(0, 1);
    direita->addWidget(calculados);
    direita->addWidget(criaOpcoes());
    direita->addStretch();
    row->addLayout(direita);
    return box;
}

QGroupBox* FrmCadAnalise::criaOpcoes()
{
    m_opcoes = new QGroupBox(QStringLiteral("Método de extração de fósforo e condição de área"), this);
    m_opcoes->setObjectName(QStringLiteral("fraMetodo"));
    auto* layout = new QVBoxLayout(m_opcoes);
    m_opt0 = new QRadioButton(QStringLiteral("Extração por Mehlich"), m_opcoes);
    m_opt0->setObjectName(QStringLiteral("Opt_0"));
    m_opt1 = new QRadioButton(QStringLiteral("Extração por resina"), m_opcoes);
    m_opt1->setObjectName(QStringLiteral("Opt_1"));
    m_chk = new QCheckBox(QStringLiteral("Esta área será utilizada para arroz irrigado"), m_opcoes);
    m_chk->setObjectName(QStringLiteral("chk"));
    layout->addWidget(m_opt0);
    layout->addWidget(m_opt1);
    layout->addWidget(m_chk);
    return m_opcoes;
}

QWidget* FrmCadAnalise::criaBotoes()
{
    auto* barra = new QWidget(this);
    auto* layout = new QHBoxLayout(barra);
    layout->setContentsMargins(0, 4, 0, 0);
    const auto botao = [this, barra, layout](const char* nome, const QString& legenda, void (FrmCadAnalise::*acao)()) {
        auto* b = new QPushButton(legenda, barra);
        b->setObjectName(QString::fromLatin1(nome));
        b->setMinimumWidth(qMax(96, b->sizeHint().width()));
        connect(b, &QPushButton::clicked, this, acao);
        layout->addWidget(b);
        return b;
    };
    m_cmdNovo = botao("cmdNovo", QStringLiteral("Cadastrar Novo"), &FrmCadAnalise::novo);
    m_cmdEdita = botao("cmdEdita", QStringLiteral("Editar"), &FrmCadAnalise::edita);
    m_cmdExclui = botao("cmdExclui", QStringLiteral("Excluir"), &FrmCadAnalise::exclui);
    layout->addStretch();
    botao("cmdCadastra", QStringLiteral("Executar"), &FrmCadAnalise::cadastra);
    botao("cmdLimpa", QStringLiteral("Cancelar"), &FrmCadAnalise::limpa);
    auto* sair = new QPushButton(QStringLiteral("Sair"), barra);
    sair->setObjectName(QStringLiteral("cmdSai"));
    sair->setMinimumWidth(96);
    connect(sair, &QPushButton::clicked, this, &QWidget::close);
    layout->addWidget(sair);
    return barra;
}

void FrmCadAnalise::criaMenus()
{
    auto* barra = new QMenuBar(this);
    static_cast<QVBoxLayout*>(layout())->setMenuBar(barra);
    const auto acao = [this, barra](const char* nome, const QString& texto) {
        QAction* action = barra->addAction(texto);
        action->setObjectName(QString::fromLatin1(nome));
        return action;
    };
    connect(acao("calc", QStringLiteral("Calculadora")), &QAction::triggered, this, []() { abreCalculadora(); });
    // The converter and the import are offered once their windows exist.
    struct Janela {
        const char* acao;
        QString texto;
        QString janela;
    };
    for (const Janela& item : {Janela{"convert", QStringLiteral("Conversor de unidades"), janela::kConvert},
                               Janela{"Importa", QStringLiteral("Importar análises"), janela::kImportaAnalise}}) {
        QAction* action = acao(item.acao, item.texto);
        action->setEnabled(m_windows.isRegistered(item.janela));
        connect(action, &QAction::triggered, this, [this, janela = item.janela]() { m_windows.show(janela, Modo::Modal); });
    }
}

bool FrmCadAnalise::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            focusNextChild();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FrmCadAnalise::LiberaTextos()
{
    for (QLineEdit* texto : m_textos)
        texto->setEnabled(true);
    m_mskData->setInputMask(kMascaraData);
    m_mskData->setEnabled(true);
    m_opcoes->setEnabled(true);
}

void FrmCadAnalise::BloqueiaTextos()
{
    for (QLineEdit* texto : m_textos) {
        texto->clear();
        texto->setEnabled(false);
    }
    m_mskData->clear();
    m_mskData->setInputMask(QString());
    m_mskData->setEnabled(false);
    // The options keep their state, shown but locked, as a deletion displays the analysis.
    m_opcoes->setEnabled(false);
}

void FrmCadAnalise::CalculaCTC()
{
    const auto calculada = lavra::CalculaCTC(m_txtCa->text(), m_txtMg->text(), m_txtH_Al->text(), m_txtK->text());
    if (!calculada)
        return;
    m_txtCTC->setText(calculada->ctc);
    m_txtBases->setText(calculada->bases);
}

void FrmCadAnalise::botoesOcupados(bool ocupados)
{
    for (QPushButton* botao : {m_cmdNovo, m_cmdEdita, m_cmdExclui})
        botao->setEnabled(!ocupados);
}

void FrmCadAnalise::limpaOpcoes()
{
    // Radio buttons of one group uncheck together only with their exclusivity lifted.
    for (QRadioButton* opcao : {m_opt0, m_opt1}) {
        opcao->setAutoExclusive(false);
        opcao->setChecked(false);
        opcao->setAutoExclusive(true);
    }
    m_chk->setChecked(false);
}

void FrmCadAnalise::novo()
{
    m_session.Operacao = kCadastro;
    LiberaTextos();
    botoesOcupados(true);
    limpaOpcoes();
    m_txtCliente->setFocus();
}

void FrmCadAnalise::edita()
{
    m_session.Operacao = kEdicao;
    LiberaTextos();
    botoesOcupados(true);
    m_session.ModoEscolha = QStringLiteral("Analise");
    m_windows.show(janela::kCliAn, Modo::Modal);
}

void FrmCadAnalise::exclui()
{
    m_session.Operacao = kExclusao;
    botoesOcupados(true);
    m_session.ModoEscolha = QStringLiteral("Analise");
    m_windows.show(janela::kCliAn, Modo::Modal);
}

void FrmCadAnalise::limpa()
{
    // The pending operation stays: Executar after Cancelar still knows what was asked.
    BloqueiaTextos();
    botoesOcupados(false);
}

void FrmCadAnalise::escolhaCancelada()
{
    BloqueiaTextos();
    botoesOcupados(false);
}

void FrmCadAnalise::busca()
{
    if (!m_txtCliente->isEnabled()) {
        mostra(this, Desfecho::informacao(QStringLiteral("Clique em Cadastrar Novo")));
        return;
    }
    m_windows.show(janela::kCliente, Modo::Modal);
}

void FrmCadAnalise::Carrega()
{
    CamposAnalise c;
    try {
        c = LeAnalise(m_session.db, m_session.CodAnalise, m_session.NomeCliente);
    } catch (const StoreError& error) {
        erroBanco(this, error);
        return;
    }
    const std::pair<QLineEdit*, const QString*> valores[] = {
        {m_txtCliente, &c.cliente}, {m_txtLocal, &c.local}, {m_txtFazenda, &c.fazenda}, {m_txtGleba, &c.gleba},
        {m_txtArea, &c.area},       {m_txtAnalise, &c.numAnalise}, {m_mskData, &c.data}, {m_txtpH, &c.pH},
        {m_txtCa, &c.ca},           {m_txtMg, &c.mg},           {m_txtAl, &c.al},           {m_txtH_Al, &c.hAl},
        {m_txtSMP, &c.smp},         {m_txtMO, &c.mo},           {m_txtArgila, &c.argila},   {m_txtP, &c.p},
        {m_txtK, &c.k}};
    for (const auto& [caixa, texto] : valores)
        caixa->setText(*texto);
    if (c.mehlich)
        m_opt0->setChecked(true);
    else if (c.resina)
        m_opt1->setChecked(true);
    m_chk->setChecked(c.arroz);
    // Worked out afresh rather than read, so that the window shows what a save would store.
    CalculaCTC();
}

CamposAnalise FrmCadAnalise::campos() const
{
    CamposAnalise c;
    c.cliente = m_txtCliente->text();
    c.local = m_txtLocal->text();
    c.fazenda = m_txtFazenda->text();
    c.gleba = m_txtGleba->text();
    c.area = m_txtArea->text();
    c.numAnalise = m_txtAnalise->text();
    c.data = m_mskData->text();
    c.pH = m_txtpH->text();
    c.ca = m_txtCa->text();
    c.mg = m_txtMg->text();
    c.al = m_txtAl->text();
    c.hAl = m_txtH_Al->text();
    c.smp = m_txtSMP->text();
    c.mo = m_txtMO->text();
    c.argila = m_txtArgila->text();
    c.p = m_txtP->text();
    c.k = m_txtK->text();
    c.ctc = m_txtCTC->text();
    c.bases = m_txtBases->text();
    c.mehlich = m_opt0->isChecked();
    c.resina = m_opt1->isChecked();
    c.arroz = m_chk->isChecked();
    return c;
}

void FrmCadAnalise::cadastra()
{
    EntradaCadastro entrada{campos(), m_session.Operacao, m_session.CodAnalise};
    try {
        for (;;) {
            const ResultadoCadastro r = CadastraAnalise(m_session.db, entrada);
            m_session.CodAnalise = r.codAnalise;
            const bool sim = r.desfecho && mostra(this, *r.desfecho);
            if (r.desfecho && r.desfecho->tipo == TipoDesfecho::Pergunta) {
                entrada.resposta = sim ? Resposta::Sim : Resposta::Nao;
                continue;
            }
            if (r.seguimento == Seguimento::Concluida) {
                BloqueiaTextos();
                m_session.Operacao.clear();
                botoesOcupados(false);
            } else if (r.seguimento == Seguimento::NaoExcluida) {
                // The three buttons stay off until Cancelar.
                BloqueiaTextos();
            }
            return;
        }
    } catch (const StoreError& error) {
        erroBanco(this, error);
    }
}

QWidget* criaFrmCadAnalise(Session& session, WindowRegistry& windows)
{
    return new FrmCadAnalise(session, windows);
}

} // namespace lavra::ui
