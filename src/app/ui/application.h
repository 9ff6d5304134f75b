#pragma once

#include "app/session.h"
#include "frmlavra.h"
#include "windowregistry.h"

#include <QApplication>
#include <QPointer>

#include <memory>

namespace lavra::ui {

// The running program: its session, its windows and the main window. Tests build one on a
// scratch database to drive the real windows.
class Aplicacao {
public:
    // Opens the database at path, creating it complete when missing or empty. Throws StoreError.
    explicit Aplicacao(const QString& databasePath);
    ~Aplicacao();
    Aplicacao(const Aplicacao&) = delete;
    Aplicacao& operator=(const Aplicacao&) = delete;

    Session& session() { return m_session; }
    WindowRegistry& windows() { return m_windows; }

    // Builds and shows the main window and runs its start; returns it.
    FrmLavra* mostraJanelaPrincipal();
    FrmLavra* janelaPrincipal() const { return m_main; }

private:
    void registraJanelas();

    Session m_session;
    WindowRegistry m_windows;
    // What a newer version of the manual's tables changed in the file, told once the main
    // window is up.
    QString m_atualizacaoDados;
    QPointer<FrmLavra> m_main;
};

// The program's event loop. A failure that a window let through is told, and the program goes
// on instead of ending in the middle of the user's work.
class AplicacaoQt final : public QApplication {
public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override;
};

// Opens the program on the database at path; when it cannot be worked on, tells why in one box
// and returns null.
std::unique_ptr<Aplicacao> abrePrograma(const QString& databasePath);

// The program: splash, then the main window on Lavra.db beside the executable.
int executa(int argc, char** argv);

} // namespace lavra::ui
