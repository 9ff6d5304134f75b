#pragma once

#include <QWidget>

class QLineEdit;
class QTableWidget;

namespace lavra {
struct Session;
}

namespace lavra::ui {

// The small picker that fills the client of the analysis register.
class FrmCliente final : public QWidget {
    Q_OBJECT

public:
    explicit FrmCliente(Session& session, QWidget* parent = nullptr);

private:
    void continua();

    Session& m_session;
    QTableWidget* m_flxCli = nullptr;
    QLineEdit* m_txtCli = nullptr;
};

} // namespace lavra::ui
