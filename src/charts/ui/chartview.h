#pragma once

#include "charts/chart.h"

#include <QString>

class QChart;
class QChartView;
class QPrinter;
class QWidget;

namespace lavra::ui {

// The toolkit's charts from the charts the logic computes: colours, titles, axes and legends as
// the logic gives them. The band scale keeps its numbers out of sight.
QChart* criaGrafico(const GraficoBarras& grafico);
QChart* criaGrafico(const GraficoPizza& grafico);
QChartView* criaVista(QChart* grafico, QWidget* pai, const QString& nome);

// Prints the page of a chart once per copy asked in the printer, each copy a document of its own,
// and gives the number of documents; fewer when the printer refuses one.
int imprimeGrafico(QPrinter& printer, const ImpressaoGrafico& pagina, QChartView* vista);

// The formats a chart is saved in, for the save dialog; the extension of the name chosen decides.
QString filtroFormatos();
// Writes the chart to that file in the format of its extension (png, jpg or jpeg, bmp, svg, pdf);
// a name with another extension takes the one of the filter chosen. The path written, or empty
// when it could not be written.
QString salvaGrafico(QChartView* vista, const QString& caminho, const QString& filtroEscolhido = {});

} // namespace lavra::ui
