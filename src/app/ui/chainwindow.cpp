#include "chainwindow.h"

#include "widgets.h"

#include "app/session.h"
#include "app/windownames.h"
#include "desktop.h"
#include "windowregistry.h"

#include <QAction>
#include <QCloseEvent>
#include <QMenuBar>

namespace lavra::ui {

ChainWindow::ChainWindow(Session& session, WindowRegistry& windows, QWidget* parent)
    : QWidget(parent, Qt::Window), m_session(session), m_windows(windows)
{
    enterAcionaPadrao(this);
}

void ChainWindow::closeEvent(QCloseEvent* event)
{
    if (m_session.BloqueiaFechar)
        event->ignore();
    else
        event->accept();
}

QMenuBar* criaMenusCalculo(QWidget* janela, Session& session, WindowRegistry& windows)
{
    auto* menus = new QMenuBar(janela);
    QAction* fert = menus->addAction(QStringLiteral("Fertigráfico"));
    fert->setObjectName(QStringLiteral("mnuFert"));
    fert->setEnabled(windows.isRegistered(janela::kChart));
    QObject::connect(fert, &QAction::triggered, janela, [&session, &windows]() {
        session.GrafAvulso = 0;
        windows.show(janela::kChart);
    });
    QAction* calc = menus->addAction(QStringLiteral("Calculadora"));
    calc->setObjectName(QStringLiteral("mnuCalc"));
    QObject::connect(calc, &QAction::triggered, janela, []() { abreCalculadora(); });
    return menus;
}

} // namespace lavra::ui
