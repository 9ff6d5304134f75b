#pragma once

#include "app/navigation.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>

namespace lavra::ui {

enum class Modo { NaoModal, Modal };

// Puts a window in the middle of the screen, where a new window is looked for.
void centraliza(QWidget* window);

// The windows of the program by name. A window is built the first time it is shown, stays with
// all it holds while hidden, and is gone once closed, so that the next show starts afresh.
class WindowRegistry final : public QObject, public WindowHost {
    Q_OBJECT

public:
    using Factory = std::function<QWidget*()>;

    void registerWindow(const QString& name, Factory factory, Modo modo = Modo::NaoModal);
    bool isRegistered(const QString& name) const { return m_factories.contains(name); }

    // Keeps track of a window built elsewhere, such as the main window.
    void track(QWidget* window);
    QWidget* window(const QString& name) const;

    // Builds the window if needed and shows it in its registered way, or in the way given;
    // null if the name is unknown.
    QWidget* show(const QString& name, std::optional<Modo> modo = std::nullopt);
    // Hides a window of the chain; it keeps its entries.
    void hide(const QString& name);

    QStringList openWindows() const override;
    void closeWindow(const QString& name) override;
    void showWindow(const QString& name) override { show(name); }
    bool confirmCancel() override;

private:
    struct Entry {
        Factory factory;
        Modo modo = Modo::NaoModal;
    };
    QHash<QString, Entry> m_factories;
    QList<QPointer<QWidget>> m_open;
};

} // namespace lavra::ui
