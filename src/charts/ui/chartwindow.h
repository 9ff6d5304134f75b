#pragma once

#include "charts/chart.h"

#include <QWidget>

class QAction;
class QChart;
class QChartView;
class QMenuBar;
class QVBoxLayout;

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// A chart window: the chart, and the menus that print, copy and save it. Each chart is worked
// out once, as its window opens; another analysis means another window.
class JanelaGrafico : public QWidget {
    Q_OBJECT

public:
    JanelaGrafico(Session& session, WindowRegistry& windows, const QString& titulo, QWidget* parent = nullptr);

    QChartView* vista() const { return m_vista; }

    // The menu actions, as the menus run them.
    void imprime();
    void copia();
    void salva();

protected:
    // The chart and its printed page; the view goes into the window's layout.
    QChartView* poeGrafico(QChart* grafico, const QString& nome, ImpressaoGrafico impressao);
    QAction* adicionaMenu(const QString& nome, const QString& legenda);
    QAction* adicionaImprimir(const QString& nome);
    void adicionaCopiarESalvar();

    Session& m_session;
    WindowRegistry& m_windows;
    QVBoxLayout* m_layout = nullptr;

private:
    QMenuBar* m_menus = nullptr;
    QChartView* m_vista = nullptr;
    ImpressaoGrafico m_impressao;
};

} // namespace lavra::ui
