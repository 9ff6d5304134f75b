#pragma once

#include <QWidget>

class QAbstractButton;
class QCheckBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace lavra {
struct Session;
struct CamposAnalise;
}

namespace lavra::ui {

class WindowRegistry;

// The soil-analysis register: idle with its fields cleared and locked until Cadastrar Novo,
// Editar or Excluir starts an operation, which Executar carries out.
class FrmCadAnalise final : public QWidget {
    Q_OBJECT

public:
    FrmCadAnalise(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

    // Shows the analysis of the session's CodAnalise and NomeCliente, chosen in frmCliAn.
    void Carrega();
    // The choice of an analysis to edit or delete was given up: back to idle.
    void escolhaCancelada();

    void LiberaTextos();
    void BloqueiaTextos();
    void CalculaCTC();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QGroupBox* criaCadastrais();
    QGroupBox* criaAnalise();
    QGroupBox* criaOpcoes();
    QWidget* criaBotoes();
    void criaMenus();
    QLineEdit* campo(const QString& nome, QWidget* parent, int caracteres = 0);

    void novo();
    void edita();
    void exclui();
    void cadastra();
    void limpa();
    void busca();
    void botoesOcupados(bool ocupados);
    void limpaOpcoes();
    CamposAnalise campos() const;

    Session& m_session;
    WindowRegistry& m_windows;
    QList<QLineEdit*> m_textos;  // every text field but the date, in the order of the window
    QLineEdit* m_txtCliente = nullptr;
    QLineEdit* m_txtLocal = nullptr;
    QLineEdit* m_txtFazenda = nullptr;
    QLineEdit* m_txtGleba = nullptr;
    QLineEdit* m_txtArea = nullptr;
    QLineEdit* m_txtAnalise = nullptr;
    QLineEdit* m_mskData = nullptr;
    QLineEdit* m_txtpH = nullptr;
    QLineEdit* m_txtCa = nullptr;
    QLineEdit* m_txtMg = nullptr;
    QLineEdit* m_txtAl = nullptr;
    QLineEdit* m_txtH_Al = nullptr;
    QLineEdit* m_txtSMP = nullptr;
    QLineEdit* m_txtMO = nullptr;
    QLineEdit* m_txtArgila = nullptr;
    QLineEdit* m_txtP = nullptr;
    QLineEdit* m_txtK = nullptr;
    QLineEdit* m_txtCTC = nullptr;
    QLineEdit* m_txtBases = nullptr;
    QGroupBox* m_opcoes = nullptr;
    QRadioButton* m_opt0 = nullptr;
    QRadioButton* m_opt1 = nullptr;
    QCheckBox* m_chk = nullptr;
    QPushButton* m_cmdNovo = nullptr;
    QPushButton* m_cmdEdita = nullptr;
    QPushButton* m_cmdExclui = nullptr;
};

} // namespace lavra::ui
