#include "changenotifier.h"

#include <QMetaObject>

namespace lavra {

ChangeNotifier& ChangeNotifier::instance()
{
    static ChangeNotifier notifier;
    return notifier;
}

void ChangeNotifier::notify(const QString& table)
{
    m_pending.insert(table);
    if (!m_scheduled) {
        m_scheduled = true;
        QMetaObject::invokeMethod(this, &ChangeNotifier::flush, Qt::QueuedConnection);
    }
}

void ChangeNotifier::flush()
{
    m_scheduled = false;
    const QSet<QString> pending = std::exchange(m_pending, {});
    for (const QString& table : pending)
        Q_EMIT tableChanged(table);
}

bool concerns(const QString& changed, const QString& table)
{
    return changed.isEmpty() || changed.compare(table, Qt::CaseInsensitive) == 0;
}

} // namespace lavra
