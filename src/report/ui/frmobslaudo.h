#pragma once

#include <QWidget>

class QLabel;
class QPlainTextEdit;

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// The technician's orientations for the report on screen, kept above it so that it stays in reach.
class FrmObsLaudo final : public QWidget {
    Q_OBJECT

public:
    static constexpr int kMaxInfo = 255;

    FrmObsLaudo(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

public Q_SLOTS:
    // Writes the box into the open report's row and builds that report afresh, which also brings
    // in the technician who signs now. frmTecResp calls it by name after a change of technician.
    void RecarregaLaudo();

private:
    void textoMudou();
    void insere();

    Session& m_session;
    WindowRegistry& m_windows;
    QPlainTextEdit* m_txtInfo = nullptr;
    QLabel* m_lblDigit = nullptr;
};

} // namespace lavra::ui
