#pragma once

#include "app/ui/chainwindow.h"
#include "plan/formulas.h"

#include <QList>
#include <QStringList>

#include <array>

class QBoxLayout;
class QButtonGroup;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableWidget;

namespace lavra::ui {

// What the forest plan offers the steps that plan one of its three dressings: they hand it the
// rows of their result for the grid of that dressing.
class PlanoFlorestal {
public:
    virtual ~PlanoFlorestal() = default;
    virtual void preencheEtapa(int etapa, const QList<QStringList>& linhas) = 0;
};

inline const QString kMsgIndisponivel = QStringLiteral("Esta parte do programa ainda não está disponível.");

// Shows a window of the chain by name; when the program has no such window yet, says so and
// returns null, so that the caller stays where it is.
QWidget* mostraJanela(QWidget* parent, WindowRegistry& windows, const QString& nome);


// Asks, when the supply strays more than 10 kg/ha from the need, whether to go on with it.
// True when the plan may go on.
bool ConfirmaFornecimento(QWidget* parent, const NPKkg& nec, const NPKkg& forn);

// The base dressing by one commercial formula.
class FrmNPK final : public ChainWindow {
    Q_OBJECT

public:
    FrmNPK(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

    void Insere_Indicados(bool somente);
    void LimpaCampos();

private:
    QWidget* criaGrade();
    QWidget* criaCalculo();
    QWidget* criaResultado();
    void calcular();
    void atualizaAvisos();
    void prosseguir();
    void formular();
    void retornar();
    void cancelar();
    LinhaFlx linhaSelecionada() const;
    std::array<QString, 3> fornecimentoNasCaixas() const;

    NPKkg m_nec;
    NPKkg m_forn; // unrounded supply of the last calculation
    QRadioButton* m_optIndicados = nullptr;
    QRadioButton* m_optTodos = nullptr;
    QTableWidget* m_flxNPK = nullptr;
    QLabel* m_lblVazia = nullptr;
    QButtonGroup* m_opt = nullptr;
    QPushButton* m_cmdCalcula = nullptr;
    QLineEdit* m_txtFormula = nullptr;
    QLineEdit* m_txtCusto = nullptr;
    std::array<QLineEdit*, 3> m_txtForn {};
    std::array<QLabel*, 3> m_lblAv {};
    QPushButton* m_cmdFormular = nullptr;
    QPushButton* m_cmdCancel = nullptr;
};

} // namespace lavra::ui
