#pragma once

#include <QWidget>

#include <optional>

class QLineEdit;
class QListWidget;
class QTableWidget;

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// Chooses a client and one of his analyses, for the calculation, the analysis register or a
// chart, as the session's ModoEscolha says. It is not part of the closing lock of the chain.
// The charts' own selection is the same window with its mode fixed as it opens, so that another
// window changing ModoEscolha meanwhile does not turn it to another use.
class FrmCliAn final : public QWidget {
    Q_OBJECT

public:
    FrmCliAn(Session& session, WindowRegistry& windows, std::optional<QString> modoFixo = std::nullopt,
             QWidget* parent = nullptr);

    // The current client row, counted from 1 under the heading, followed by the list position.
    QString marcaEscolha() const;

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void preencheAnalises();
    void busca(const QString& texto);
    void continua();
    void cancela();
    QString modo() const;
    // Hides the window and loads the chosen analysis; on a failure says so and stays.
    bool carregaEscolhida();

    Session& m_session;
    WindowRegistry& m_windows;
    QLineEdit* m_txtCli = nullptr;
    QTableWidget* m_flxCli = nullptr;
    QListWidget* m_lstAna = nullptr;
    // The choice as it stood when the window last came to the front.
    QString m_marca;
    bool m_entregue = false;
    std::optional<QString> m_modoFixo;
    // The calculation or the register, as the session said when the window last came up.
    std::optional<QString> m_modoAoMostrar;
};

} // namespace lavra::ui
