#pragma once

#include <QTimer>
#include <QWidget>

namespace lavra::ui {

// The splash: five seconds, then the main window.
class FrmAbertura final : public QWidget {
    Q_OBJECT

public:
    explicit FrmAbertura(QWidget* parent = nullptr);
    QTimer* timer() { return &m_timer; }

Q_SIGNALS:
    void terminou();

private:
    QTimer m_timer;
};

} // namespace lavra::ui
