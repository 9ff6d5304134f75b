#include "cursormodel.h"

#include "base/numbers.h"
#include "changenotifier.h"
#include "storeerror.h"

#include <QDate>

namespace lavra {

QString cellText(const QVariant& value)
{
    if (value.isNull())
        return {};
    if (value.typeId() == QMetaType::QDate)
        return value.toDate().toString(QStringLiteral("dd/MM/yyyy"));
    return variantNumberText(value);
}

CursorModel::CursorModel(const QString& databasePath, const QString& statement, QObject* parent)
    : QAbstractTableModel(parent), m_connection(databasePath), m_statement(statement)
{
    m_connection.open();
    m_cursor.open(m_statement, m_connection);
    m_table = m_cursor.table();
    connect(&ChangeNotifier::instance(), &ChangeNotifier::tableChanged, this, &CursorModel::onTableChanged);
}

CursorModel::CursorModel(QObject* parent) : QAbstractTableModel(parent) {}

CursorModel::~CursorModel() = default;

void CursorModel::refresh()
{
    const qint64 current = m_cursor.rowIdAt(currentRow());
    const int formerRow = currentRow();
    Cursor fresh;
    try {
        fresh.open(m_statement, m_connection);
    } catch (...) {
        m_stale = true;
        throw;
    }

    beginResetModel();
    m_cursor = std::move(fresh);
    int row = -1;
    for (int r = 0; r < m_cursor.recordCount() && current >= 0; ++r) {
        if (m_cursor.rowIdAt(r) == current) {
            row = r;
            break;
        }
    }
    if (row < 0 && m_cursor.recordCount() > 0)
        row = std::clamp(formerRow, 0, m_cursor.recordCount() - 1);
    m_cursor.moveTo(row);
    m_stale = false;
    endResetModel();
    Q_EMIT currentRowChanged(currentRow());
}

bool CursorModel::tryRefresh() noexcept
{
    if (!m_connection.isOpen())
        return false;
    try {
        refresh();
        return true;
    } catch (...) {
        m_stale = true;
        return false;
    }
}

bool CursorModel::discardEdits() noexcept
{
    const int row = currentRow();
    if (m_cursor.isEditing()) {
        // An added row leaves the grid; an edited one shows its old values.
        beginResetModel();
        m_cursor.cancelUpdate();
        endResetModel();
    }
    if (tryRefresh())
        return true;
    if (currentRow() != row)
        Q_EMIT currentRowChanged(currentRow());
    return false;
}

int CursorModel::currentRow() const
{
    if (!m_cursor.isOpen() || m_cursor.atEnd() || m_cursor.atBeginning())
        return -1;
    return m_cursor.position();
}

void CursorModel::setCurrentRow(int row)
{
    if (row == currentRow())
        return;
    m_cursor.moveTo(row);
    Q_EMIT currentRowChanged(currentRow());
}

QVariant CursorModel::value(int row, int ordinal) const
{
    return m_cursor.valueAt(row, ordinal);
}

int CursorModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !m_cursor.isOpen() ? 0 : m_cursor.recordCount();
}

int CursorModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() || !m_cursor.isOpen() ? 0 : m_cursor.columnCount();
}

QVariant CursorModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const QVariant cell = m_cursor.valueAt(index.row(), index.column());
    if (role == Qt::DisplayRole)
        return cellText(cell);
    if (role == Qt::TextAlignmentRole && m_cursor.columnType(index.column()) != ColumnType::Text)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant CursorModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::DisplayRole && orientation == Qt::Horizontal && section < columnCount())
        return m_cursor.columnName(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

void CursorModel::announceChange()
{
    ChangeNotifier::instance().notify(m_table);
}

void CursorModel::onTableChanged(const QString& table)
{
    if (!m_followsChanges || !concerns(table, m_table))
        return;
    const bool wasStale = m_stale;
    try {
        refresh();
    } catch (const StoreError& error) {
        // A view that already failed to read was told about then, or failed while its window
        // told of the failure that caused it; it stays quiet until it reads again.
        if (!wasStale)
            Q_EMIT refreshFailed(error);
    }
}

} // namespace lavra
