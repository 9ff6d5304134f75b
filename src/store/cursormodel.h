#pragma once

#include "connection.h"
#include "storeerror.h"

#include <QAbstractTableModel>

namespace lavra {

// A view of one statement for a grid: it keeps its own connection and cursor, has a current
// row, and re-reads its statement when another path changes its table.
class CursorModel : public QAbstractTableModel {
    Q_OBJECT

public:
    // Opens the view on its statement. Throws StoreError.
    CursorModel(const QString& databasePath, const QString& statement, QObject* parent = nullptr);
    // A view with no rows that reads nothing: what a window keeps when its statement could not be read.
    explicit CursorModel(QObject* parent = nullptr);
    ~CursorModel() override;

    // Runs the statement again, keeping the current row where it still exists. Throws StoreError.
    void refresh();
    // Runs the statement again if the file lets it, and never throws: a view that cannot read
    // keeps the rows it last read. Returns whether it read.
    bool tryRefresh() noexcept;
    // Drops the unwritten changes of the current row, so that leaving the row writes nothing,
    // and reads the statement again if the file lets it. Never throws; returns whether it read.
    bool discardEdits() noexcept;
    QString table() const { return m_table; }

    Cursor& cursor() { return m_cursor; }
    // The view's own connection, for the transactions of writes made through it.
    Connection& connection() { return m_connection; }
    const Cursor& cursor() const { return m_cursor; }
    // -1 when there is no current row.
    int currentRow() const;
    void setCurrentRow(int row);
    QVariant value(int row, int ordinal) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // A view that shows what a step opened with stops re-reading on changes by other paths.
    void setFollowsChanges(bool follows) { m_followsChanges = follows; }

    // Tells other views that this one wrote its table.
    void announceChange();

Q_SIGNALS:
    void currentRowChanged(int row);
    // A refresh after a change by another path failed; the view keeps its former rows. Told
    // once: a view that already failed to read stays quiet until it reads again.
    void refreshFailed(const lavra::StoreError& error);

private:
    void onTableChanged(const QString& table);

    Connection m_connection;
    Cursor m_cursor;
    QString m_statement;
    QString m_table;
    bool m_followsChanges = true;
    bool m_stale = false;  // the last reading failed
};

// A cell as a grid shows it: numbers with the machine's symbol, dates as dd/mm/yyyy.
QString cellText(const QVariant& value);

} // namespace lavra
