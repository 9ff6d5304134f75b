#pragma once

#include <QObject>
#include <QSet>
#include <QString>

namespace lavra {

// Says which table a write changed, so that every open view re-reads it. Several writes in a row
// are told once, when control returns to the event loop.
class ChangeNotifier final : public QObject {
    Q_OBJECT

public:
    static ChangeNotifier& instance();

    // An empty name stands for every table (a rolled-back transaction).
    void notify(const QString& table);
    // Tells what is pending now, without waiting for the event loop.
    void flush();

Q_SIGNALS:
    void tableChanged(const QString& table);

private:
    ChangeNotifier() = default;
    QSet<QString> m_pending;
    bool m_scheduled = false;
};

// Whether a change to `changed` concerns a view that reads `table`.
bool concerns(const QString& changed, const QString& table);

} // namespace lavra
