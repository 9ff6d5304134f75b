#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "calc/cropgroups.h"
#include "calc/medicinal.h"
#include "plaincropwindow.h"
#include "windows.h"

namespace lavra::ui {

namespace {

// The crop window of group 6: medicinal, aromatic and condiment plants, by the classes of the
// analysis alone.
class FrmCondMedic final : public PlainCropWindow {
public:
    FrmCondMedic(Session& session, WindowRegistry& windows)
        : PlainCropWindow(session, windows, kTituloCondimentares, culturasCondimentares())
    {
    }

protected:
    CalculoCultura calculo(int posicao) override
    {
        return CalculaCondimentares(m_session.db, m_session, posicao);
    }

    Parada prossegue() override
    {
        return ProssegueCondimentares(m_session, m_windows, posicaoCultura(), textosNec());
    }
};

} // namespace

QWidget* criaFrmCondMedic(Session& session, WindowRegistry& windows)
{
    return new FrmCondMedic(session, windows);
}

} // namespace lavra::ui
