#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "calc/cropgroups.h"
#include "calc/ornamentals.h"
#include "plaincropwindow.h"
#include "windows.h"

namespace lavra::ui {

namespace {

// The crop window of group 5: cut chrysanthemum and rose, by doses written in the program. The
// topdressing is left to the manual, so the way on goes through "Ajustar".
class FrmOrnam final : public PlainCropWindow {
public:
    FrmOrnam(Session& session, WindowRegistry& windows)
        : PlainCropWindow(session, windows, kTituloOrnamentais, culturasOrnamentais())
    {
    }

protected:
    CalculoCultura calculo(int posicao) override { return CalculaOrnamentais(m_session, posicao); }

    Parada prossegue() override
    {
        return ProssegueOrnamentais(m_session, m_windows, posicaoCultura(), textosNec());
    }
};

} // namespace

QWidget* criaFrmOrnam(Session& session, WindowRegistry& windows)
{
    return new FrmOrnam(session, windows);
}

} // namespace lavra::ui
