#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

namespace lavra::test {

// Another program holding the database: a handle of its own, outside the store, inside a
// transaction. "BEGIN EXCLUSIVE" keeps every other handle out; "BEGIN IMMEDIATE" lets others
// read and keeps them from writing.
class HeldFile {
public:
    HeldFile(const QString& path, const char* begin = "BEGIN EXCLUSIVE")
        : m_name(QStringLiteral("outro-programa-%1").arg(++serial()))
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        db.setDatabaseName(path);
        m_held = db.open() && QSqlQuery(db).exec(QString::fromLatin1(begin));
    }
    ~HeldFile() { release(); }
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

    bool held() const { return m_held; }
    void release()
    {
        if (m_name.isEmpty())
            return;
        {
            QSqlDatabase db = QSqlDatabase::database(m_name, false);
            if (m_held)
                QSqlQuery(db).exec(QStringLiteral("ROLLBACK"));
            db.close();
        }
        QSqlDatabase::removeDatabase(m_name);
        m_name.clear();
        m_held = false;
    }

private:
    static int& serial()
    {
        static int n = 0;
        return n;
    }
    QString m_name;
    bool m_held = false;
};

} // namespace lavra::test
