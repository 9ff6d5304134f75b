#include "cursormodel.h"

#include "../app/numbers.h"
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

CursorModel::~CursorModel() = default;

void CursorModel::refresh()
{
    const qint64 current = m_cursor.rowIdAt(currentRow());
    const int formerRow = currentRow();
    Cursor fresh;
    fresh.open(m_statement, m_connection);

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
    endResetModel();
    Q_EMIT currentRowChanged(currentRow());
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
    if (!concerns(table, m_table))
        return;
    try {
        refresh();
    } catch (const StoreError& error) {
        Q_EMIT refreshFailed(error.message());
    }
}

} // namespace lavra
