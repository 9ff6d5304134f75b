#pragma once

#include "app/navigation.h"
#include "base/numbers.h"

#include <QLocale>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>
#include <QVector>

#include <ostream>

namespace lavra {
// Test failures show a text as it stands.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}
} // namespace lavra

namespace lavra::test {

// A new database, complete with its starting rows, in a directory of its own.
class ScratchDatabase {
public:
    ScratchDatabase();
    QString path() const { return m_path; }
    QString dir() const { return m_dir.path(); }
    // Runs statements straight on the file, around the store.
    void exec(const QString& sql) const;
    QVariant scalar(const QString& sql) const;
    // One cell of a table of the manual, by its column name and its key.
    double cell(const QString& table, const QString& column, const QString& key) const;

private:
    QTemporaryDir m_dir;
    QString m_path;
};

// Sets the machine's regional setting for one test.
class MachineLocale {
public:
    explicit MachineLocale(const QLocale& locale) { setMachineLocale(locale); }
    ~MachineLocale() { resetMachineLocale(); }
};

// An analysis row with nothing in it but the classes of organic matter, P and K.
QVector<QVariant> analiseComClasses(float mo, float p, float k);

// The windows of a chain, as far as the closing routines see them.
class FakeHost : public WindowHost {
public:
    QStringList open;
    QStringList closed;
    QStringList shown;
    bool answer = true;  // to "cancel?"
    int questions = 0;

    QStringList openWindows() const override { return open; }
    void closeWindow(const QString& name) override
    {
        open.removeAll(name);
        closed << name;
    }
    void showWindow(const QString& name) override
    {
        if (!open.contains(name))
            open << name;
        shown << name;
    }
    bool confirmCancel() override
    {
        ++questions;
        return answer;
    }
};

inline QLocale commaLocale() { return QLocale(QLocale::Portuguese, QLocale::Brazil); }
inline QLocale pointLocale() { return QLocale(QLocale::English, QLocale::UnitedStates); }

} // namespace lavra::test
