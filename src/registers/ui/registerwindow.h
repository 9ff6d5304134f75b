#pragma once

#include <QString>
#include <QVariantList>
#include <QWidget>

class QGridLayout;
class QLineEdit;
class QPushButton;
class QTableView;
class QVBoxLayout;

namespace lavra {
class CursorModel;
class StoreError;
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// The shape every simple register shares: a grid on a view of the table, text fields bound to
// the columns of the current row, and the six buttons. A register adds its own checks, the
// values it writes and whatever else it shows.
class RegisterWindow : public QWidget {
    Q_OBJECT

public:
    struct Config {
        QString title;
        QString statement;
        QString gridName;               // "dtGridCli", "dtGrid"
        QString Session::* operacao;    // Operacao or OperacaoInsumo
        QList<int> hiddenColumns;
    };

    RegisterWindow(Session& session, WindowRegistry& windows, const Config& config);

    // The routines of the pattern.
    void LiberaTextos();
    void BloqueiaTextos();
    bool VerificaTextos() const;
    void VinculaTextos();
    void DesvinculaTextos();
    void LimpaTextos();

    CursorModel* view() const { return m_view; }
    QString operacao() const;

protected:
    // A field bound to a column of the view; -1 for a field that no column shows.
    QLineEdit* addField(const QString& name, int ordinal, int maxLength = 0);
    // Where a register lays out its fields, under the grid.
    QWidget* formArea() const { return m_form; }
    QVBoxLayout* mainLayout() const { return m_layout; }

    // The register's own checks: shows its boxes and returns false to stop.
    virtual bool verificacoes() { return true; }
    // The columns written for "Cadastro" and "Edição", in ordinal order from 0.
    virtual QVariantList valores() = 0;
    // The text before " será excluído, confirma?".
    virtual QString textoExclusao() const;
    virtual void aoNovo() {}
    virtual void aoEditar() {}
    virtual void aposConfirmar() {}

    void setOperacao(const QString& value);
    void habilitaBotoes(bool enabled);
    void showError(const StoreError& error);

    Session& m_session;
    WindowRegistry& m_windows;

private:
    void novo();
    void edita();
    void exclui();
    void cancela();
    void executa();
    void sai() { close(); }
    void grava();
    void mostraLinha();
    void ajustaColunas();

    Config m_config;
    CursorModel* m_view = nullptr;
    QTableView* m_grid = nullptr;
    QWidget* m_form = nullptr;
    QVBoxLayout* m_layout = nullptr;
    QList<std::pair<QLineEdit*, int>> m_fields;
    QPushButton* m_novo = nullptr;
    QPushButton* m_edita = nullptr;
    QPushButton* m_exclui = nullptr;
    bool m_bound = false;
};

} // namespace lavra::ui
