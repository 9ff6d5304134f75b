#include "reportview.h"

#include "app/session.h"
#include "app/ui/dialogs.h"
#include "app/ui/messages.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "base/outcome.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QAction>
#include <QDir>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLabel>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <cmath>

namespace lavra::ui {

using report::Alinhamento;
using report::Pagina;
using report::TextoPosto;

namespace {

constexpr double kTwipsPorPonto = 20;
constexpr double kTwipsPorPolegada = 1440;
// A text too long for its box is first set smaller, down to this share of its size, then cut.
constexpr double kMenorReducao = 0.75;
// Room between a frame and the text inside it.
constexpr double kFolgaMoldura = 60;

constexpr std::array<double, 7> kZooms = {0.5, 0.75, 1.0, 1.25, 1.5, 2.0, 3.0};

Qt::Alignment horizontal(Alinhamento a)
{
    switch (a) {
    case Alinhamento::Centro: return Qt::AlignHCenter;
    case Alinhamento::Direita: return Qt::AlignRight;
    case Alinhamento::Esquerda: break;
    }
    return Qt::AlignLeft;
}

// The page asks for Arial; the free metric twin stands in where Arial is not installed.
QFont fonteDe(const QString& familia, const report::Fonte& f, double pixels)
{
    static const bool substituida = [] {
        QFont::insertSubstitution(QStringLiteral("Arial"), QStringLiteral("Liberation Sans"));
        return true;
    }();
    Q_UNUSED(substituida);
    QFont fonte(familia);
    // Sizes in twips: the painter's unit. No hinting, so that the text sets the same on every device.
    fonte.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
    fonte.setBold(f.negrito);
    fonte.setItalic(f.italico);
    fonte.setHintingPreference(QFont::PreferNoHinting);
    return fonte;
}

void desenhaTexto(QPainter& painter, const QString& familia, const TextoPosto& t)
{
    QRectF caixa(t.caixa);
    if (t.moldura) {
        painter.setPen(QPen(Qt::black, 0.5 * kTwipsPorPonto));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(caixa);
        caixa.adjust(kFolgaMoldura, kFolgaMoldura / 2, -kFolgaMoldura, -kFolgaMoldura / 2);
    }
    if (t.texto.isEmpty())
        return;
    painter.setPen(Qt::black);
    const double tamanho = t.fonte.pontos * kTwipsPorPonto;
    QFont fonte = fonteDe(familia, t.fonte, tamanho);
    const Qt::Alignment alinhamento = horizontal(t.alinhamento);
    if (t.quebraLinhas) {
        painter.setFont(fonte);
        painter.drawText(caixa, alinhamento | Qt::AlignTop | Qt::TextWordWrap, t.texto);
        return;
    }
    const double largura = QFontMetricsF(fonte).horizontalAdvance(t.texto);
    if (largura > caixa.width())
        fonte = fonteDe(familia, t.fonte, tamanho * std::max(kMenorReducao, caixa.width() / largura));
    const QString texto = QFontMetricsF(fonte).elidedText(t.texto, Qt::ElideRight, caixa.width());
    painter.setFont(fonte);
    painter.drawText(caixa, alinhamento | Qt::AlignVCenter | Qt::TextSingleLine, texto);
}

} // namespace

void desenhaPagina(QPainter& painter, const Pagina& pagina, double unidadesPorTwip)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(unidadesPorTwip, unidadesPorTwip);
    painter.translate(pagina.origem);
    for (const report::Traco& r : pagina.tracos) {
        QPen pen(Qt::black, r.espessura * kTwipsPorPonto);
        pen.setCapStyle(Qt::FlatCap);
        painter.setPen(pen);
        painter.drawLine(QPointF(r.esquerda, r.topo), QPointF(r.esquerda + r.largura, r.topo));
    }
    for (const TextoPosto& t : pagina.textos)
        desenhaTexto(painter, pagina.familia, t);
    painter.restore();
}

bool salvaPdf(const Pagina& pagina, const QString& caminho)
{
    QPdfWriter writer(caminho);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageOrientation(QPageLayout::Portrait);
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setResolution(static_cast<int>(kTwipsPorPolegada));
    writer.setTitle(pagina.titulo);
    writer.setCreator(kTitulo);
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    desenhaPagina(painter, pagina, writer.logicalDpiX() / kTwipsPorPolegada);
    return painter.end();
}

void imprimePagina(const Pagina& pagina, QPrinter& printer)
{
    printer.setFullPage(true);
    QPainter painter;
    if (!painter.begin(&printer))
        return;
    desenhaPagina(painter, pagina, printer.logicalDpiX() / kTwipsPorPolegada);
    painter.end();
}

// ---------------------------------------------------------------------------------------------

namespace {
constexpr int kBorda = 24;  // grey around the paper, in pixels
}

VistaPagina::VistaPagina(const Pagina& pagina, QWidget* parent) : QWidget(parent), m_pagina(pagina)
{
    setZoom(1.0);
}

void VistaPagina::setPagina(const Pagina& pagina)
{
    m_pagina = pagina;
    setZoom(m_zoom);
    update();
}

double VistaPagina::pixelsPorTwip() const { return m_zoom * logicalDpiX() / kTwipsPorPolegada; }

void VistaPagina::setZoom(double zoom)
{
    m_zoom = zoom;
    setMinimumSize(sizeHint());
    updateGeometry();
    update();
}

QSize VistaPagina::sizeHint() const
{
    const double s = pixelsPorTwip();
    return {static_cast<int>(std::ceil(m_pagina.larguraPapel * s)) + 2 * kBorda,
            static_cast<int>(std::ceil(m_pagina.alturaPapel * s)) + 2 * kBorda};
}

void VistaPagina::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0x52, 0x56, 0x59));
    const double s = pixelsPorTwip();
    const QSizeF papel(m_pagina.larguraPapel * s, m_pagina.alturaPapel * s);
    const QPointF canto(std::max<double>(kBorda, (width() - papel.width()) / 2), kBorda);
    const QRectF folha(canto, papel);
    painter.fillRect(folha.translated(3, 3), QColor(0, 0, 0, 90));
    painter.fillRect(folha, Qt::white);
    painter.translate(canto);
    desenhaPagina(painter, m_pagina, s);
}

// ---------------------------------------------------------------------------------------------

JanelaLaudo::JanelaLaudo(Session& session, WindowRegistry& windows, Pagina pagina, QWidget* parent)
    : QWidget(parent, Qt::Window), m_session(session), m_windows(windows), m_pagina(std::move(pagina))
{
    setWindowTitle(m_pagina.titulo);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* barra = new QToolBar(this);
    barra->setObjectName(QStringLiteral("barLaudo"));
    const auto acao = [this, barra](const char* nome, const QString& texto, QKeySequence::StandardKey tecla,
                                    void (JanelaLaudo::*metodo)()) {
        QAction* a = barra->addAction(texto);
        a->setObjectName(QString::fromLatin1(nome));
        a->setShortcut(tecla);
        connect(a, &QAction::triggered, this, metodo);
        return a;
    };
    acao("cmdImprime", QStringLiteral("Imprimir..."), QKeySequence::Print, &JanelaLaudo::imprime);
    acao("cmdSalvaPdf", QStringLiteral("Salvar como PDF..."), QKeySequence::Save, &JanelaLaudo::salvaComoPdf);
    barra->addSeparator();
    acao("cmdReduz", QStringLiteral("Reduzir"), QKeySequence::ZoomOut, &JanelaLaudo::reduz);
    acao("cmdAmplia", QStringLiteral("Ampliar"), QKeySequence::ZoomIn, &JanelaLaudo::amplia);
    barra->addSeparator();
    QAction* fecha = barra->addAction(QStringLiteral("Fechar"));
    fecha->setObjectName(QStringLiteral("cmdFecha"));
    connect(fecha, &QAction::triggered, this, &QWidget::close);
    layout->addWidget(barra);

    auto* area = new QScrollArea(this);
    area->setObjectName(QStringLiteral("scrLaudo"));
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    m_vista = new VistaPagina(m_pagina, area);
    m_vista->setObjectName(QStringLiteral("pagLaudo"));
    area->setWidget(m_vista);
    layout->addWidget(area, 1);

    // The report closes the chain's way out as the chain's own steps do.
    m_session.BloqueiaFechar = true;

    QSize tamanho = m_vista->sizeHint() + QSize(area->verticalScrollBar()->sizeHint().width() + 4,
                                                barra->sizeHint().height());
    if (const QScreen* tela = QGuiApplication::primaryScreen())
        tamanho = tamanho.boundedTo(tela->availableGeometry().size() - QSize(40, 80));
    resize(tamanho);
    centraliza(this);
}

bool JanelaLaudo::recarrega()
{
    report::Laudo laudo;
    try {
        laudo = report::MontaLaudo(m_session, m_pagina.tipo, m_session.LaudoAnalise, m_session.LaudoCultivo);
    } catch (const StoreError& error) {
        erroBanco(this, error);
        return false;
    }
    if (!laudo.pagina) {
        mostra(this, *laudo.recusa);
        return false;
    }
    m_pagina = std::move(*laudo.pagina);
    m_vista->setPagina(m_pagina);
    return true;
}

void JanelaLaudo::imprime()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(QPageLayout::Portrait);
    printer.setDocName(m_pagina.titulo);
    if (escolheImpressora(this, printer))
        imprimePagina(m_pagina, printer);
}

void JanelaLaudo::salvaComoPdf()
{
    const QString inicial =
        QDir(pastaInicial(false)).filePath(nomeDeArquivo(QStringLiteral("Laudo ") + m_session.LaudoCultivo) + QStringLiteral(".pdf"));
    QString caminho = arquivoParaSalvar(this, QStringLiteral("Salvar laudo em PDF"), inicial, QStringLiteral("Documento PDF (*.pdf)"));
    if (caminho.isEmpty())
        return;
    if (!caminho.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive))
        caminho += QStringLiteral(".pdf");
    if (!salvaPdf(m_pagina, caminho))
        mostra(this, Desfecho::aviso(QStringLiteral("Não foi possível gravar o arquivo ") + QDir::toNativeSeparators(caminho) + QLatin1Char('.')));
}

void JanelaLaudo::amplia()
{
    const auto proximo = std::upper_bound(kZooms.begin(), kZooms.end(), m_vista->zoom() + 1e-9);
    if (proximo != kZooms.end())
        m_vista->setZoom(*proximo);
}

void JanelaLaudo::reduz()
{
    const auto menor = std::lower_bound(kZooms.begin(), kZooms.end(), m_vista->zoom() - 1e-9);
    if (menor != kZooms.begin())
        m_vista->setZoom(*std::prev(menor));
}

void JanelaLaudo::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!m_mostrada) {
        m_mostrada = true;
        // The orientations are written beside the report; the window is not there in every build.
        m_windows.show(janela::kObsLaudo);
    }
}

// ---------------------------------------------------------------------------------------------

namespace {

QWidget* criaRelatorio(Session& session, WindowRegistry& windows, report::TipoLaudo tipo)
{
    report::Laudo laudo;
    try {
        laudo = report::MontaLaudo(session, tipo, session.LaudoAnalise, session.LaudoCultivo);
    } catch (const StoreError& error) {
        erroBanco(nullptr, error);
        return nullptr;
    }
    if (!laudo.pagina) {
        mostra(nullptr, *laudo.recusa);
        return nullptr;
    }
    return new JanelaLaudo(session, windows, std::move(*laudo.pagina));
}

} // namespace

QWidget* criaRptLdForml(Session& session, WindowRegistry& windows)
{
    return criaRelatorio(session, windows, report::TipoLaudo::Formulas);
}

QWidget* criaRptLdFormlacao(Session& session, WindowRegistry& windows)
{
    return criaRelatorio(session, windows, report::TipoLaudo::Formulacao);
}

QWidget* criaRptLdFlorest(Session& session, WindowRegistry& windows)
{
    return criaRelatorio(session, windows, report::TipoLaudo::Florestais);
}

} // namespace lavra::ui
