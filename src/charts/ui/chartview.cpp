#include "chartview.h"

#include "app/ui/widgets.h"
#include "charts/bands.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QFileInfo>
#include <QGraphicsSimpleTextItem>
#include <QImageWriter>
#include <QLegendMarker>
#include <QPainter>
#include <QPdfWriter>
#include <QPieSeries>
#include <QPieSlice>
#include <QPrinter>
#include <QSvgGenerator>

#include <cmath>

namespace lavra::ui {

namespace {

QColor qcor(const Cor& cor) { return QColor(cor.r, cor.g, cor.b); }

// The paper is A4; a picture that would run off its right edge is made smaller to fit.
constexpr double kLarguraPapel = 11906;
constexpr double kMargemDireita = 500;

struct Formato {
    const char* extensao;
    const char* rotulo;
};
constexpr Formato kFormatos[] = {
    {"png", "PNG (*.png)"}, {"jpeg", "JPEG (*.jpeg *.jpg)"}, {"bmp", "BMP (*.bmp)"},
    {"svg", "SVG (*.svg)"}, {"pdf", "PDF (*.pdf)"},
};

QString extensaoDoFiltro(const QString& filtro)
{
    for (const Formato& f : kFormatos) {
        if (filtro == QLatin1String(f.rotulo))
            return QString::fromLatin1(f.extensao);
    }
    return QStringLiteral("png");
}

bool conhecida(const QString& extensao)
{
    if (extensao == QLatin1String("jpg"))
        return true;
    for (const Formato& f : kFormatos) {
        if (extensao == QLatin1String(f.extensao))
            return true;
    }
    return false;
}

// The title of the chart and a footnote under it, as the chart shows them on screen.
void poeNota(QChart* chart, const QString& nota)
{
    if (nota.isEmpty())
        return;
    auto* texto = new QGraphicsSimpleTextItem(nota, chart);
    QMargins margens = chart->margins();
    margens.setBottom(margens.bottom() + QFontMetrics(texto->font()).height() + 6);
    chart->setMargins(margens);
    const auto posiciona = [chart, texto]() {
        const QRectF area = chart->rect();
        texto->setPos(area.left() + 12, area.bottom() - texto->boundingRect().height() - 6);
    };
    QObject::connect(chart, &QGraphicsWidget::geometryChanged, chart, posiciona);
    posiciona();
}

QChart* novoGrafico(const QString& titulo)
{
    auto* chart = new QChart;
    chart->setTitle(titulo);
    QFont fonte = chart->titleFont();
    fonte.setBold(true);
    fonte.setPointSize(fonte.pointSize() + 2);
    chart->setTitleFont(fonte);
    return chart;
}

void desenhaVista(QPainter& painter, QChartView* vista, const QRectF& alvo)
{
    painter.setRenderHint(QPainter::Antialiasing);
    vista->render(&painter, alvo, vista->viewport()->rect());
}

} // namespace

QChart* criaGrafico(const GraficoBarras& grafico)
{
    QChart* chart = novoGrafico(grafico.titulo);
    auto* barras = new QBarSeries(chart);
    for (const SerieBarras& serie : grafico.series) {
        auto* conjunto = new QBarSet(serie.nome);
        conjunto->setColor(qcor(serie.cor));
        conjunto->setBorderColor(qcor(serie.cor).darker(130));
        // An empty value draws no bar.
        for (const std::optional<double>& valor : serie.valores)
            conjunto->append(valor.value_or(0));
        barras->append(conjunto);
    }
    chart->addSeries(barras);

    auto* eixoX = new QBarCategoryAxis(chart);
    eixoX->append(grafico.categorias);
    eixoX->setTitleText(grafico.tituloX);
    chart->addAxis(eixoX, Qt::AlignBottom);
    barras->attachAxis(eixoX);

    // Five bands on the scale; where a value stands in its band is what counts, not the number.
    // The letters of the axis title stand beside their bands instead of along one line, so that
    // they stay where they belong whatever the height of the chart.
    auto* eixoY = new QCategoryAxis(chart);
    eixoY->setRange(0, kTopoEscala);
    const QStringList faixas = grafico.tituloY.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int n = 0; n < faixas.size(); ++n)
        eixoY->append(faixas[n], kTopoEscala * (n + 1) / faixas.size());
    eixoY->setLabelsPosition(QCategoryAxis::AxisLabelsPositionCenter);
    eixoY->setMinorGridLineVisible(true);
    QFont fonteFaixas = eixoY->labelsFont();
    fonteFaixas.setBold(true);
    eixoY->setLabelsFont(fonteFaixas);
    chart->addAxis(eixoY, Qt::AlignLeft);
    barras->attachAxis(eixoY);

    chart->legend()->setVisible(grafico.legenda);
    chart->legend()->setAlignment(Qt::AlignRight);
    return chart;
}

QChart* criaGrafico(const GraficoPizza& grafico)
{
    QChart* chart = novoGrafico(grafico.titulo);
    auto* pizza = new QPieSeries(chart);
    for (const Fatia& fatia : grafico.fatias) {
        QPieSlice* parte = pizza->append(fatia.rotulo, fatia.valor);
        parte->setColor(qcor(fatia.cor));
        // A thin line around each share, so that the pale colours stand out from the paper.
        parte->setBorderColor(QColor(96, 96, 96));
        parte->setBorderWidth(1);
    }
    pizza->setPieSize(0.8);
    chart->addSeries(pizza);
    chart->legend()->setVisible(true);
    chart->legend()->setAlignment(Qt::AlignRight);
    poeNota(chart, grafico.nota);
    return chart;
}

QChartView* criaVista(QChart* grafico, QWidget* pai, const QString& nome)
{
    auto* vista = new QChartView(grafico, pai);
    vista->setObjectName(nome);
    vista->setRenderHint(QPainter::Antialiasing);
    vista->setMinimumSize(twips(pai, 10800), twips(pai, 5400));
    return vista;
}

int imprimeGrafico(QPrinter& printer, const ImpressaoGrafico& pagina, QChartView* vista)
{
    const int copias = std::max(1, printer.copyCount());
    // Each copy goes as a document of its own, so the printer is asked for one at a time.
    printer.setCopyCount(1);
    printer.setFullPage(true);
    int impressas = 0;
    for (int copia = 0; copia < copias; ++copia) {
        QPainter painter;
        if (!painter.begin(&printer))
            break;
        const double porTwip = printer.resolution() / 1440.0;
        painter.setFont(QFont(QStringLiteral("Liberation Sans"), 10));
        const QFontMetricsF metricas(painter.font(), &printer);
        for (const LinhaImpressa& linha : pagina.linhas) {
            const double largura = metricas.horizontalAdvance(linha.texto) / porTwip;
            const double x = linha.x ? *linha.x : 1000 + (8000 - largura) / 2;
            painter.drawText(QPointF(x * porTwip, linha.y * porTwip + metricas.ascent()), linha.texto);
        }
        QSizeF tamanho;
        if (pagina.tamanho) {
            tamanho = QSizeF(*pagina.tamanho);
        } else {
            // Its own size: the pixels on screen as twips.
            const double twipsPorPixel = 1440.0 / vista->logicalDpiX();
            tamanho = QSizeF(vista->width(), vista->height()) * twipsPorPixel;
            const double livre = kLarguraPapel - kMargemDireita - pagina.figura.x();
            if (tamanho.width() > livre)
                tamanho *= livre / tamanho.width();
        }
        desenhaVista(painter, vista,
                     QRectF(pagina.figura.x() * porTwip, pagina.figura.y() * porTwip, tamanho.width() * porTwip,
                            tamanho.height() * porTwip));
        painter.end();
        ++impressas;
    }
    return impressas;
}

QString filtroFormatos()
{
    QStringList filtros;
    for (const Formato& f : kFormatos)
        filtros << QString::fromLatin1(f.rotulo);
    return filtros.join(QStringLiteral(";;"));
}

QString salvaGrafico(QChartView* vista, const QString& caminho, const QString& filtroEscolhido)
{
    QString destino = caminho.trimmed();
    QString extensao = QFileInfo(destino).suffix().toLower();
    if (!conhecida(extensao)) {
        extensao = extensaoDoFiltro(filtroEscolhido);
        destino += QLatin1Char('.') + extensao;
    }
    const QSize tamanho = vista->size();
    if (extensao == QLatin1String("svg")) {
        QSvgGenerator svg;
        svg.setFileName(destino);
        svg.setSize(tamanho);
        svg.setViewBox(QRect(QPoint(0, 0), tamanho));
        svg.setTitle(vista->chart()->title());
        QPainter painter;
        if (!painter.begin(&svg))
            return {};
        desenhaVista(painter, vista, QRectF(QPointF(0, 0), tamanho));
        painter.end();
        return QFileInfo(destino).size() > 0 ? destino : QString();
    }
    if (extensao == QLatin1String("pdf")) {
        QPdfWriter pdf(destino);
        // A page the size of the chart, the pixels at 96 to the inch.
        pdf.setPageSize(QPageSize(QSizeF(tamanho) * 72.0 / 96.0, QPageSize::Point));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        pdf.setTitle(vista->chart()->title());
        QPainter painter;
        if (!painter.begin(&pdf))
            return {};
        desenhaVista(painter, vista, QRectF(QPointF(0, 0), QSizeF(pdf.width(), pdf.height())));
        painter.end();
        return QFileInfo(destino).size() > 0 ? destino : QString();
    }
    const QByteArray formato = extensao == QLatin1String("jpg") ? QByteArray("jpeg") : extensao.toLatin1();
    QImage imagem = vista->grab().toImage();
    if (formato != "png")
        imagem = imagem.convertToFormat(QImage::Format_RGB32);
    QImageWriter escritor(destino, formato);
    return escritor.write(imagem) ? destino : QString();
}

} // namespace lavra::ui
