#pragma once

#include <QList>
#include <QPoint>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace lavra {

// A chart as the logic computes it, before any drawing: the windows turn it into the toolkit's
// objects. Colours are plain RGB, since the logic knows nothing of painting.
struct Cor {
    int r = 0;
    int g = 0;
    int b = 0;
    bool operator==(const Cor&) const = default;
};

struct SerieBarras {
    QString nome;
    Cor cor;
    // One value per category; an empty one draws no bar.
    QList<std::optional<double>> valores;
};

// Bars on the band scale of the fertility charts.
struct GraficoBarras {
    QString titulo;
    QString tituloX;
    QString tituloY;
    QStringList categorias;
    QList<SerieBarras> series;
    bool legenda = false;
};

struct Fatia {
    QString rotulo;  // as the legend shows it, with the share
    double valor = 0;
    Cor cor;
};

// Shares of a whole.
struct GraficoPizza {
    QString titulo;
    QList<Fatia> fatias;
    QString nota;  // a line under the chart, or empty
};

// The printed page of a chart, in twips from the top left corner of the paper: the heading lines
// and where the chart's picture goes.
struct LinhaImpressa {
    QString texto;
    // Nothing for a line centred between 1000 and 9000 twips.
    std::optional<int> x;
    int y = 0;
};

struct ImpressaoGrafico {
    QList<LinhaImpressa> linhas;
    QPoint figura;
    // The picture at its own size when empty, else scaled to this size.
    std::optional<QSize> tamanho;
};

inline const QString kCabecalhoImpressao = QStringLiteral("Lavra 2.1 - Software Para Manejo da Fertilidade do Solo");

} // namespace lavra
