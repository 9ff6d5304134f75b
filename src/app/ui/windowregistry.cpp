#include "windowregistry.h"

#include "messages.h"

#include <QGuiApplication>
#include <QScreen>

namespace lavra::ui {

void centraliza(QWidget* window)
{
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        QRect frame = window->frameGeometry();
        frame.moveCenter(screen->availableGeometry().center());
        window->move(frame.topLeft());
    }
}

void WindowRegistry::registerWindow(const QString& name, Factory factory, Modo modo)
{
    m_factories.insert(name, {std::move(factory), modo, {}});
}

void WindowRegistry::registerInside(const QString& name, const QString& frame, Factory factory)
{
    m_factories.insert(name, {std::move(factory), Modo::NaoModal, frame});
}

void WindowRegistry::track(QWidget* window)
{
    if (!window || m_open.contains(window))
        return;
    m_open.append(window);
    connect(window, &QObject::destroyed, this, [this]() {
        m_open.removeIf([](const QPointer<QWidget>& w) { return w.isNull(); });
    });
}

QWidget* WindowRegistry::window(const QString& name) const
{
    for (const QPointer<QWidget>& w : m_open) {
        if (w && w->objectName() == name)
            return w;
    }
    return nullptr;
}

QWidget* WindowRegistry::show(const QString& name, std::optional<Modo> modo)
{
    QWidget* w = window(name);
    const auto entry = m_factories.constFind(name);
    bool nova = false;
    if (!w) {
        if (entry == m_factories.constEnd())
            return nullptr;
        // A window that can't be built has said why; its frame is not opened for nothing.
        w = entry->factory();
        if (!w)
            return nullptr;
        nova = true;
        w->setObjectName(name);
        // Closing a window loses what it held.
        w->setAttribute(Qt::WA_DeleteOnClose);
        track(w);
    }
    if (entry != m_factories.constEnd() && !entry->moldura.isEmpty()) {
        auto* moldura = dynamic_cast<Moldura*>(show(entry->moldura));
        if (!moldura) {
            delete w;
            return nullptr;
        }
        if (nova)
            moldura->acolhe(w);
        moldura->ativa(w);
        return w;
    }
    if (nova)
        centraliza(w);
    if (!modo && entry != m_factories.constEnd())
        modo = entry->modo;
    const Qt::WindowModality modality = modo == Modo::Modal ? Qt::ApplicationModal : Qt::NonModal;
    if (w->windowModality() != modality) {
        // The way of showing can change only while the window is hidden.
        w->hide();
        w->setWindowModality(modality);
    }
    w->show();
    w->raise();
    w->activateWindow();
    return w;
}

void WindowRegistry::hide(const QString& name)
{
    if (QWidget* w = window(name))
        w->hide();
}

QStringList WindowRegistry::openWindows() const
{
    QStringList names;
    for (const QPointer<QWidget>& w : m_open) {
        if (w)
            names << w->objectName();
    }
    return names;
}

void WindowRegistry::closeWindow(const QString& name)
{
    if (QWidget* w = window(name)) {
        // A window that refused to close stays tracked; one that closed is deleted later.
        if (w->close())
            m_open.removeAll(w);
    }
}

bool WindowRegistry::confirmCancel()
{
    return pergunta(nullptr, QStringLiteral("Está certo que quer cancelar?"));
}

} // namespace lavra::ui
