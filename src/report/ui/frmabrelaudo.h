#pragma once

#include "recochoice.h"

namespace lavra::ui {

// The saved recommendations: client, analysis, kind and key, then the report or the deletion.
class FrmAbreLaudo final : public EscolhaRecomendacao {
    Q_OBJECT

public:
    FrmAbreLaudo(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

private:
    void abre();
    void exclui();
};

} // namespace lavra::ui
