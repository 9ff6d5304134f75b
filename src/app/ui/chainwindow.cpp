#include "chainwindow.h"

#include "app/session.h"
#include "windowregistry.h"

#include <QCloseEvent>

namespace lavra::ui {

ChainWindow::ChainWindow(Session& session, WindowRegistry& windows, QWidget* parent)
    : QWidget(parent, Qt::Window), m_session(session), m_windows(windows)
{
}

void ChainWindow::closeEvent(QCloseEvent* event)
{
    if (m_session.BloqueiaFechar)
        event->ignore();
    else
        event->accept();
}

} // namespace lavra::ui
