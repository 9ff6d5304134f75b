#pragma once

#include "cropwindow.h"

namespace lavra::ui {

// A crop window whose only input is the crop: the list, the result frame and the buttons. The
// ornamental and the medicinal windows are of this kind.
class PlainCropWindow : public CropWindow {
    Q_OBJECT

public:
    PlainCropWindow(Session& session, WindowRegistry& windows, const QString& titulo,
        const QStringList& culturas, QWidget* parent = nullptr);

protected:
    // cmdCalc for the crop chosen, -1 when none is.
    virtual CalculoCultura calculo(int posicao) = 0;

private:
    void calcula() override;
};

} // namespace lavra::ui
