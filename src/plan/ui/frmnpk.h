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
    // Opened by the forest plan for one of its dressings: "Fechar" and the way back close this
    // step alone, and the formulation is not offered.
    bool m_daFloresta = false;
};

} // namespace lavra::ui
