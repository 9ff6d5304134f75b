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

// A window in which other windows live, such as the frame of the charts.
class Moldura {
public:
    virtual ~Moldura() = default;
    // Takes a new window in; it goes with its window once closed.
    virtual void acolhe(QWidget* janela) = 0;
    // Brings a window that lives here to the front.
    virtual void ativa(QWidget* janela) = 0;
};

// The windows of the program by name. A window is built the first time it is shown, stays with
// all it holds while hidden, and is gone once closed, so that the next show starts afresh.
class WindowRegistry final : public QObject, public WindowHost {
    Q_OBJECT

public:
    using Factory = std::function<QWidget*()>;

    void registerWindow(const QString& name, Factory factory, Modo modo = Modo::NaoModal);
    // A window that lives inside the frame of that name, which is shown first.
    void registerInside(const QString& name, const QString& frame, Factory factory);
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
        QString moldura;
    };
    QHash<QString, Entry> m_factories;
    QList<QPointer<QWidget>> m_open;
};

} // namespace lavra::ui
