#include "frmlavra.h"

#include "app/navigation.h"
#include "app/startup.h"
#include "app/windownames.h"
#include "base/outcome.h"
#include "desktop.h"
#include "links.h"
#include "messages.h"
#include "store/storeerror.h"
#include "windowregistry.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QSvgRenderer>
#include <QSvgWidget>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

struct Comando {
    const char* nome;
    const char* legenda;
    const QString& janela;
};

// The commands of the main window and the window each opens.
const Comando kComandos[] = {
    {"Análise", "Análises", janela::kCadAnalise},
    {"cmdCliente", "Clientes", janela::kCadCli},
    {"cmdFert", "Fertilizantes", janela::kFertiliz},
    {"cadCalcario", "Corretivos", janela::kCadCalc},
    {"Command3", "Cotação do dolar", janela::kCotac},
    {"cmdLaudo", "Laudo", janela::kAbreLaudo},
    {"Command4", "Consultas", janela::kRelat},
    {"Command5", "Análise gráfica", janela::kGraficos},
};

QString tr8(const char* text) { return QString::fromUtf8(text); }

QGroupBox* moldura(const QString& titulo, QWidget* parent)
{
    auto* box = new QGroupBox(titulo, parent);
    QFont font = box->font();
    font.setBold(true);
    box->setFont(font);
    return box;
}

// Children of a bold frame keep the ordinary weight.
void textoNormal(QWidget* widget)
{
    QFont font = widget->font();
    font.setBold(false);
    widget->setFont(font);
}

} // namespace

FrmLavra::FrmLavra(Session& session, WindowRegistry& windows, QWidget* parent)
    : QMainWindow(parent), m_session(session), m_windows(windows)
{
    setObjectName(janela::kLavra);
    setWindowTitle(QStringLiteral("LAVRA - Calagem e Adubação"));
    setWindowIcon(QIcon(QStringLiteral(":/art/lavra-icon.svg")));

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(10, 6, 10, 10);

    auto* banner = new QSvgWidget(QStringLiteral(":/art/lavra.svg"), central);
    banner->setObjectName(QStringLiteral("Picture1"));
    // The landscape without most of its sky, at its own proportions.
    banner->renderer()->setViewBox(QRectF(0, 75, 640, 140));
    banner->setFixedSize(800, 175);
    layout->addWidget(banner, 0, Qt::AlignHCenter);

    auto* middle = new QHBoxLayout;
    middle->addWidget(criaComandos(), 3);
    auto* right = new QVBoxLayout;
    right->addWidget(criaResponsavel());
    right->addWidget(criaInformacoes());
    right->addStretch();
    middle->addLayout(right, 2);
    layout->addLayout(middle);

    auto* metodologia = moldura(QStringLiteral("Informações sobre a metodologia de cálculo usada pelo programa"), central);
    metodologia->setObjectName(QStringLiteral("Frame3"));
    auto* metodoLayout = new QVBoxLayout(metodologia);
    for (const QString& texto :
         {QStringLiteral("O Lavra segue de maneira mais fiel possível as indicações do Manual de Adubação e "
                         "Calagem para os Estados do Rio Grande do Sul e Santa Catarina."),
          QStringLiteral("O uso do LAVRA em outros Estados pode gerar resultados não correspondentes aos "
                         "indicados pelos critérios agronômicos de recomendação locais.")}) {
        auto* label = new QLabel(texto, metodologia);
        label->setWordWrap(true);
        textoNormal(label);
        metodoLayout->addWidget(label);
    }
    layout->addWidget(metodologia);

    m_frame2 = new QFrame(central);
    m_frame2->setObjectName(QStringLiteral("Frame2"));
    m_frame2->setMouseTracking(true);
    auto* frame2Layout = new QHBoxLayout(m_frame2);
    frame2Layout->setContentsMargins(12, 10, 12, 10);
    m_lblCad = new QLabel(QStringLiteral("Seja um usuário cadastrado e aproveite outros serviços gratuitos"), m_frame2);
    m_lblCad->setObjectName(QStringLiteral("lblCad"));
    m_lblCad->setMouseTracking(true);
    frame2Layout->addWidget(m_lblCad, 0, Qt::AlignCenter);
    m_lblCad->installEventFilter(this);
    m_frame2->installEventFilter(this);
    destacaCadastro(false);
    layout->addWidget(m_frame2);

    setCentralWidget(central);
    criaMenus();
    atualizaTecnico();
    resize(820, 700);
}

QWidget* FrmLavra::criaComandos()
{
    auto* box = moldura(QStringLiteral("Comandos"), this);
    box->setObjectName(QStringLiteral("Frame1"));
    auto* grid = new QGridLayout(box);
    grid->setSpacing(8);

    auto* calc = new QPushButton(QStringLiteral("Calcular Recomendação"), box);
    calc->setObjectName(QStringLiteral("cmdCalc"));
    calc->setMinimumHeight(44);
    calc->setStyleSheet(QStringLiteral("QPushButton { font-weight: bold; font-size: 11pt; }"));
    // The chain is offered once its steps are all there.
    calc->setEnabled(m_windows.isRegistered(janela::kCliAn)
                     && m_windows.isRegistered(janela::kGrupCult));
    connect(calc, &QPushButton::clicked, this, &FrmLavra::calcular);
    grid->addWidget(calc, 0, 0, 1, 2);

    int index = 0;
    for (const Comando& comando : kComandos) {
        auto* button = new QPushButton(tr8(comando.legenda), box);
        button->setObjectName(tr8(comando.nome));
        textoNormal(button);
        button->setMinimumHeight(32);
        const QString janela = comando.janela;
        button->setEnabled(m_windows.isRegistered(janela));
        connect(button, &QPushButton::clicked, this, [this, janela]() { abre(janela); });
        grid->addWidget(button, 1 + index / 2, index % 2);
        ++index;
    }
    auto* update = new QPushButton(QStringLiteral("Atualização"), box);
    update->setObjectName(QStringLiteral("cmdFertig"));
    textoNormal(update);
    update->setMinimumHeight(32);
    connect(update, &QPushButton::clicked, this, [this]() { abreExterno(this, kPaginaAtualizacao); });
    grid->addWidget(update, 1 + index / 2, index % 2);
    return box;
}

QWidget* FrmLavra::criaResponsavel()
{
    auto* box = moldura(QStringLiteral("Profissional Responsável"), this);
    box->setObjectName(QStringLiteral("fraResponsavel"));
    auto* layout = new QVBoxLayout(box);
    m_lblNomeProf = new QLabel(QStringLiteral("Nononono Nononono Nononono"), box);
    m_lblNomeProf->setObjectName(QStringLiteral("lblNomeProf"));
    m_lblProf = new QLabel(QStringLiteral("Engenheiro Agrônomo"), box);
    m_lblProf->setObjectName(QStringLiteral("lblProf"));
    m_lblCrea = new QLabel(QStringLiteral("CREA: "), box);
    m_lblCrea->setObjectName(QStringLiteral("lblCrea"));
    for (QLabel* label : {m_lblNomeProf, m_lblProf, m_lblCrea}) {
        textoNormal(label);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        layout->addWidget(label);
    }
    QFont nome = m_lblNomeProf->font();
    nome.setPointSizeF(nome.pointSizeF() * 1.15);
    nome.setBold(true);
    m_lblNomeProf->setFont(nome);

    auto* trocar = new QPushButton(QStringLiteral("Alterar"), box);
    trocar->setObjectName(QStringLiteral("cmdTroca"));
    textoNormal(trocar);
    trocar->setEnabled(m_windows.isRegistered(janela::kTecResp));
    connect(trocar, &QPushButton::clicked, this, [this]() { abre(janela::kTecResp); });
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(trocar);
    layout->addLayout(row);
    return box;
}

QWidget* FrmLavra::criaInformacoes()
{
    auto* box = moldura(QStringLiteral("Informações sobre o programa"), this);
    box->setObjectName(QStringLiteral("fraPrograma"));
    auto* layout = new QVBoxLayout(box);
    auto* titulo = new QLabel(QStringLiteral("LAVRA 2.1"), box);
    titulo->setObjectName(QStringLiteral("lblVersao"));
    QFont font = titulo->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    font.setBold(true);
    titulo->setFont(font);
    titulo->setStyleSheet(QStringLiteral("color: #2f6420;"));
    layout->addWidget(titulo);
    for (const QString& texto : {QStringLiteral("Calagem e adubação de culturas"),
                                 QStringLiteral("Para agrônomos e técnicos do RS e SC")}) {
        auto* label = new QLabel(texto, box);
        label->setWordWrap(true);
        textoNormal(label);
        layout->addWidget(label);
    }
    return box;
}

void FrmLavra::criaMenus()
{
    auto addAction = [this](QMenu* menu, const QString& name, const QString& text, auto slot, bool enabled = true) {
        QAction* action = menu->addAction(text);
        action->setObjectName(name);
        action->setEnabled(enabled);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    auto opens = [this](const QString& janela) { return [this, janela]() { abre(janela); }; };
    auto registered = [this](const QString& janela) { return m_windows.isRegistered(janela); };

    QMenu* arquivo = menuBar()->addMenu(QStringLiteral("&Arquivo"));
    arquivo->setObjectName(QStringLiteral("mnuArq"));
    addAction(arquivo, QStringLiteral("mnuCadEmp"), QStringLiteral("Cadastro da empresa"),
              opens(janela::kEmpresa), registered(janela::kEmpresa));
    addAction(arquivo, QStringLiteral("mnuRespTec"), QStringLiteral("Responsáveis técnicos"),
              opens(janela::kTecResp), registered(janela::kTecResp));
    addAction(arquivo, QStringLiteral("Importa"), QStringLiteral("Importar análises de solo"),
              opens(janela::kImportaAnalise), registered(janela::kImportaAnalise));
    addAction(arquivo, QStringLiteral("mnuImport"), QStringLiteral("Importar dados do Lavra QRT"),
              opens(janela::kAtualiza), registered(janela::kAtualiza));
    arquivo->addSeparator();
    // Every register writes as the user confirms, so there is nothing to save on the way out.
    addAction(arquivo, QStringLiteral("mnusai"), QStringLiteral("Sair"), []() { QCoreApplication::exit(0); });

    QMenu* ferramentas = menuBar()->addMenu(QStringLiteral("&Ferramentas"));
    ferramentas->setObjectName(QStringLiteral("mnuFerram"));
    addAction(ferramentas, QStringLiteral("mnuCalc"), QStringLiteral("Calculadora"), []() { abreCalculadora(); });
    addAction(ferramentas, QStringLiteral("convert"), QStringLiteral("Conversor de unidades"),
              opens(janela::kConvert), registered(janela::kConvert));
    addAction(ferramentas, QStringLiteral("mnuCopyBb"), QStringLiteral("Fazer cópia do banco de dados"),
              opens(janela::kCopiaBd), registered(janela::kCopiaBd));
    addAction(ferramentas, QStringLiteral("mnuTabelas"), QStringLiteral("Tabelas do manual"),
              opens(janela::kTabelas), registered(janela::kTabelas));

    QMenu* ajuda = menuBar()->addMenu(QStringLiteral("A&juda"));
    ajuda->setObjectName(QStringLiteral("mnuAjd"));
    addAction(ajuda, QStringLiteral("mnuAjud"), QStringLiteral("Ajuda do Lavra"), [this]() {
        abreDocumento(this, kTutorial);
    });
    addAction(ajuda, QStringLiteral("artigoQRT"), QStringLiteral("Artigo do Lavra QRT"), [this]() { abreExterno(this, kArtigoQRT); });
    addAction(ajuda, QStringLiteral("artigo2_0"), QStringLiteral("Artigo do Lavra 2.0"), [this]() { abreExterno(this, kArtigo20); });
    ajuda->addSeparator();
    addAction(ajuda, QStringLiteral("mnuSob"), QStringLiteral("Sobre o Lavra"), opens(janela::kSobre));
    addAction(ajuda, QStringLiteral("mnuContato"), QStringLiteral("Contatos"), opens(janela::kContatos));
}

void FrmLavra::abre(const QString& janela)
{
    m_windows.show(janela);
}

void FrmLavra::calcular()
{
    IniciaCalculo(m_session, m_windows);
    m_windows.show(janela::kCliAn);
}

void FrmLavra::iniciar()
{
    try {
        if (CarregaTecnico(m_session))
            mostra(this, Desfecho::informacao(kMsgSemTecnico));
    } catch (const StoreError& error) {
        erroBanco(this, error);
    }
    atualizaTecnico();
    try {
        AtualizaNPK(m_session.db);
    } catch (const StoreError& error) {
        erroBanco(this, error);
    }
}

void FrmLavra::atualizaTecnico()
{
    m_lblProf->setText(m_session.ProfTec);
    m_lblNomeProf->setText(m_session.NomeTec);
    m_lblCrea->setText(QStringLiteral("CREA: ") + m_session.CreaTec);
}

void FrmLavra::changeEvent(QEvent* event)
{
    // A technician chosen in another window reaches the labels when this one is active again.
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        atualizaTecnico();
    QMainWindow::changeEvent(event);
}

void FrmLavra::closeEvent(QCloseEvent* event)
{
    FechaJanelas(m_session, m_windows, false);
    event->accept();
}

bool FrmLavra::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::MouseMove) {
        if (watched == m_lblCad)
            destacaCadastro(true);
        else if (watched == m_frame2)
            destacaCadastro(false);
    } else if (event->type() == QEvent::MouseButtonRelease && watched == m_lblCad) {
        abreExterno(this, kPaginaCadastro);
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void FrmLavra::destacaCadastro(bool destacado)
{
    QFont font = m_lblCad->font();
    font.setUnderline(destacado);
    m_lblCad->setFont(font);
    const QColor colour = destacado ? QColor(0, 128, 0) : QColor(192, 64, 0);
    m_lblCad->setStyleSheet(QStringLiteral("color: %1;").arg(colour.name()));
    if (destacado)
        m_lblCad->setCursor(Qt::WhatsThisCursor);
}

} // namespace lavra::ui
