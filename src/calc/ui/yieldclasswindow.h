#pragma once

#include "cropwindow.h"

class QComboBox;

namespace lavra::ui {

// A crop window whose only input beside the crop is a yield class in cboExpect, refilled for
// each crop, after which some crops ask for the yield itself in an input box that cannot be
// left without a number. The vegetable and the cane windows are of this kind.
class YieldClassWindow : public CropWindow {
    Q_OBJECT

public:
    YieldClassWindow(Session& session, WindowRegistry& windows, const QString& titulo,
        const QStringList& culturas, QWidget* parent = nullptr);

protected:
    // The classes of the crop after "Selecione"; none leaves the list disabled.
    virtual QStringList faixas(int posicao) const = 0;
    // Whether a class of the crop is followed by the question for the yield.
    virtual bool pedeRendimento(int posicao) const = 0;
    // cmdCalc on the window's inputs.
    virtual CalculoCultura calculo(int posicao, int posicaoExpectativa) = 0;

    int posicaoExpectativa() const;

private:
    void culturaEscolhida(int posicao) override;
    void calcula() override;
    void faixaEscolhida(int indice);

    QComboBox* m_cboExpect = nullptr;
};

} // namespace lavra::ui
