#include "planstep.h"

#include "app/ui/messages.h"
#include "app/ui/windowregistry.h"

namespace lavra::ui {

QWidget* mostraJanela(QWidget* parent, WindowRegistry& windows, const QString& nome)
{
    QWidget* janela = windows.show(nome);
    if (!janela)
        informacao(parent, kMsgIndisponivel);
    return janela;
}

} // namespace lavra::ui
