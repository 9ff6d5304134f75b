#pragma once

#include "app/ui/chainwindow.h"
#include "plan/split.h"

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QTableView;

namespace lavra {
class CursorModel;
}

namespace lavra::ui {

// The nitrogen in topdressing: a source from NPK, its dose, and the split into parcels.
class FrmParcelaN final : public ChainWindow {
    Q_OBJECT

public:
    FrmParcelaN(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

    // The sources of nitrogen, or with todas every fertiliser, as the rows of the grid.
    void AbreTabelaN(bool todas);

private:
    QWidget* criaFontes();
    QWidget* criaParcelas();
    void aoMudarFonte();
    void calculaFonte();
    void limpaParcelas();
    void defineParcelas(int numero);
    void escolhePorcentagem(int parcela);
    void ajustaColunas();
    void prosseguir();
    void retornar();
    void cancelar();

    float m_necNCob = 0;
    CursorModel* m_fontes = nullptr;
    qint64 m_linhaFonte = -1; // rowid of the source the parcels were entered for
    QLabel* m_lblNec = nullptr;
    QTableView* m_dtGrid = nullptr;
    QCheckBox* m_chkTodas = nullptr;
    QLineEdit* m_txtCalcula = nullptr;
    QLineEdit* m_txtFnt = nullptr;
    QLineEdit* m_txtCusto = nullptr;
    QComboBox* m_cboNVezes = nullptr;
    std::array<QComboBox*, kMaxParcelas> m_cboPorc {};
    std::array<QLineEdit*, kMaxParcelas> m_txtDose {};
    std::array<QLineEdit*, kMaxParcelas> m_txtEpoca {};
};

} // namespace lavra::ui
