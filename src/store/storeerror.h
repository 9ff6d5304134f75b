#pragma once

#include <QString>
#include <stdexcept>

namespace lavra {

// Every failure of the database reaches the windows as this one type. The store's own refusals
// carry their Portuguese text alone; a failure of the engine carries a plain Portuguese account
// of it, the engine's own words as a detail, and whether it stopped a write.
class StoreError : public std::runtime_error {
public:
    enum class Access { None, Read, Write };

    explicit StoreError(const QString& message)
        : std::runtime_error(message.toStdString()), m_message(message) {}
    StoreError(const QString& message, const QString& detail, Access access)
        : std::runtime_error((message + QStringLiteral(" (") + detail + QLatin1Char(')')).toStdString()),
          m_message(message), m_detail(detail), m_access(access) {}

    QString message() const { return m_message; }
    // The engine's own words; empty for the store's own refusals.
    QString detail() const { return m_detail; }
    // A write refused by the engine left nothing behind: each write is one statement or runs in
    // a transaction that is rolled back.
    bool stoppedWrite() const { return m_access == Access::Write; }

private:
    QString m_message;
    QString m_detail;
    Access m_access = Access::None;
};

} // namespace lavra
