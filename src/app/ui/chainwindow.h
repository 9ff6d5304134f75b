#pragma once

#include <QWidget>

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// A window of the calculation chain. While the session's lock is on, its close box does
// nothing: the chain is left only through its buttons, which use the closing routines.
class ChainWindow : public QWidget {
    Q_OBJECT

public:
    ChainWindow(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

protected:
    void closeEvent(QCloseEvent* event) override;

    Session& m_session;
    WindowRegistry& m_windows;
};

} // namespace lavra::ui
