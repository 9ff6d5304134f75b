#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "calc/cane.h"
#include "calc/crops.h"
#include "windows.h"
#include "yieldclasswindow.h"

namespace lavra::ui {

namespace {

// The crop window of group 7: plant and ratoon cane, by a yield class and the yield typed for it.
class FrmCana final : public YieldClassWindow {
public:
    FrmCana(Session& session, WindowRegistry& windows)
        : YieldClassWindow(session, windows, kTituloCana, culturasCana())
    {
    }

protected:
    QStringList faixas(int posicao) const override { return expectativasCana(posicao); }
    bool pedeRendimento(int) const override { return true; }

    CalculoCultura calculo(int posicao, int posicaoExpectativa) override
    {
        return CalculaCana(m_session.db, m_session, posicao, posicaoExpectativa);
    }

    Parada prossegue() override { return ProssegueCana(m_session, m_windows, posicaoCultura(), textosNec()); }
};

} // namespace

QWidget* criaFrmCana(Session& session, WindowRegistry& windows)
{
    return new FrmCana(session, windows);
}

} // namespace lavra::ui
