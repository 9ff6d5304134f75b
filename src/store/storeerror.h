#pragma once

#include <QString>
#include <stdexcept>

namespace lavra {

// Every failure of the database reaches the windows as this one type, carrying the engine's words.
class StoreError : public std::runtime_error {
public:
    explicit StoreError(const QString& message)
        : std::runtime_error(message.toStdString()), m_message(message) {}
    QString message() const { return m_message; }

private:
    QString m_message;
};

} // namespace lavra
