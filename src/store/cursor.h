#pragma once

#include "schema.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

namespace lavra {

class Connection;
class DatabaseFile;

// The result of one statement, entirely in memory. Positions run from "before the first row"
// to "past the last"; an edited row is written when the cursor moves off it.
class Cursor {
public:
    Cursor() = default;
    Cursor(Cursor&&) noexcept = default;
    Cursor& operator=(Cursor&&) noexcept = default;
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;
    ~Cursor() = default;

    void open(const QString& sql, const Connection& connection);
    // The same with values bound to the statement's '?' in order.
    void open(const QString& sql, const QVariantList& values, const Connection& connection);
    void close();
    bool isOpen() const { return m_file != nullptr; }

    int recordCount() const { return static_cast<int>(m_rows.size()); }
    bool atEnd() const { return m_rows.isEmpty() || m_position >= recordCount(); }
    bool atBeginning() const { return m_position < 0 || m_rows.isEmpty(); }
    int position() const { return m_position; }

    // Makes the row at that index current, writing an edited row first; -1 or recordCount() for the ends.
    void moveTo(int position);
    void moveFirst();
    void moveNext();
    void movePrevious();
    void moveLast();

    int columnCount() const { return static_cast<int>(m_columns.size()); }
    QString columnName(int ordinal) const;
    ColumnType columnType(int ordinal) const;
    int columnIndex(const QString& name) const;

    // Read and write a cell of the current row by ordinal; null stays null.
    QVariant value(int ordinal) const;
    void setValue(int ordinal, const QVariant& value);
    // Any row by index, for views that show them all.
    QVariant valueAt(int row, int ordinal) const;
    qint64 rowIdAt(int row) const;
    QString table() const { return m_table; }

    // Starts an empty row at the end and makes it current; update() writes it.
    void addNew();
    void update();
    // Drops what the current row holds unwritten, so that nothing of it is written later: an
    // added row goes and the row current before it is current again; an edited row reads as it
    // was read. Nothing happens when the row holds no change.
    void cancelUpdate() noexcept;
    // Deletes the current row at once; the cursor then stands on the row that followed it.
    void deleteCurrent();
    bool isEditing() const;

private:
    struct Column {
        QString name;
        ColumnType type = ColumnType::Text;
    };
    struct Row {
        qint64 rowid = -1;
        QVector<QVariant> values;
        QVector<bool> changed;
        QVector<QVariant> original;  // the values as read, while the row is being edited
        bool isNew = false;
    };

    void requireOpen() const;
    void requireCurrent() const;
    void requireUpdatable() const;
    void saveIfEditing();

    std::shared_ptr<DatabaseFile> m_file;
    QString m_table;
    bool m_updatable = false;
    QVector<Column> m_columns;
    QVector<Row> m_rows;
    int m_position = -1;
    int m_positionBeforeNew = -1;
};

} // namespace lavra
