#pragma once

#include "app/ui/windowregistry.h"

#include <QMainWindow>

class QMdiArea;
class QMdiSubWindow;

namespace lavra {
struct Session;
}

namespace lavra::ui {

// "Análise Gráfica": the frame in which the chart windows and their selections live, with the
// menus that choose a chart. It takes the size of the window brought to the front.
class FrmGraficos final : public QMainWindow, public Moldura {
    Q_OBJECT

public:
    FrmGraficos(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

    void acolhe(QWidget* janela) override;
    void ativa(QWidget* janela) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* objeto, QEvent* evento) override;

private:
    QMdiSubWindow* subjanela(QWidget* janela) const;

    Session& m_session;
    WindowRegistry& m_windows;
    QMdiArea* m_area = nullptr;
    bool m_posta = false;
};

} // namespace lavra::ui
