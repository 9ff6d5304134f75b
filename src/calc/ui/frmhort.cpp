#include "app/session.h"
#include "app/ui/windowregistry.h"
#include "calc/crops.h"
#include "calc/vegetables.h"
#include "windows.h"
#include "yieldclasswindow.h"

namespace lavra::ui {

namespace {

// The crop window of group 2: the need of a vegetable by its organic-matter, P and K classes;
// garlic, potato and tomato also by a yield class, cassava by its clay.
class FrmHort final : public YieldClassWindow {
public:
    FrmHort(Session& session, WindowRegistry& windows)
        : YieldClassWindow(session, windows, kTituloHortalicas, culturasHortalicas())
    {
    }

protected:
    QStringList faixas(int posicao) const override { return expectativasHortalicas(posicao); }
    bool pedeRendimento(int posicao) const override { return hortalicaPedeRendimento(posicao); }

    CalculoCultura calculo(int posicao, int posicaoExpectativa) override
    {
        return CalculaHortalicas(m_session.db, m_session, { posicao, posicaoExpectativa });
    }

    Parada prossegue() override
    {
        return ProssegueHortalicas(m_session, m_windows, posicaoCultura(), textosNec());
    }
};

} // namespace

QWidget* criaFrmHort(Session& session, WindowRegistry& windows)
{
    return new FrmHort(session, windows);
}

} // namespace lavra::ui
