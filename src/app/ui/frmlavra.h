#pragma once

#include <QMainWindow>

class QLabel;
class QFrame;

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// The hub: shows who signs the reports and opens every register, tool and the calculation.
class FrmLavra final : public QMainWindow {
    Q_OBJECT

public:
    FrmLavra(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

    // The start of the main window: the signing technician, and the upgrade of an old fertiliser
    // table. A failure of the database is told and start goes on.
    void iniciar();
    // Puts the session's technician on the three labels.
    void atualizaTecnico();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* criaComandos();
    QWidget* criaResponsavel();
    QWidget* criaInformacoes();
    void criaMenus();
    void abre(const QString& janela);
    void calcular();
    void destacaCadastro(bool destacado);

    Session& m_session;
    WindowRegistry& m_windows;
    QLabel* m_lblNomeProf = nullptr;
    QLabel* m_lblProf = nullptr;
    QLabel* m_lblCrea = nullptr;
    QLabel* m_lblCad = nullptr;
    QFrame* m_frame2 = nullptr;
};

} // namespace lavra::ui
