#pragma once

#include "app/ui/chainwindow.h"
#include "plan/split.h"
#include "plan/ui/nsources.h"

#include <array>

class QComboBox;
class QLabel;
class QLineEdit;

namespace lavra::ui {

// The nitrogen in topdressing: a source from NPK, its dose, and the split into parcels.
class FrmParcelaN final : public ChainWindow {
    Q_OBJECT

public:
    FrmParcelaN(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

private:
    QWidget* criaParcelas();
    void aoMudarFonte(bool outra);
    void limpaParcelas();
    void defineParcelas(int numero);
    void escolhePorcentagem(int parcela);
    void prosseguir();
    void retornar();
    void cancelar();

    float m_necNCob = 0;
    EscolhaFonteN* m_fontes = nullptr;
    QLabel* m_lblNec = nullptr;
    QComboBox* m_cboNVezes = nullptr;
    std::array<QComboBox*, kMaxParcelas> m_cboPorc {};
    std::array<QLineEdit*, kMaxParcelas> m_txtDose {};
    std::array<QLineEdit*, kMaxParcelas> m_txtEpoca {};
};

} // namespace lavra::ui
