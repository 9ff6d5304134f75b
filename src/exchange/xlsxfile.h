#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <QVector>

namespace lavra {

// One sheet to write: its name and its rows from the first. A text is written as text, a number
// as a number, a date as a date shown dd/mm/yyyy, a null as no cell. The first row is in bold.
struct FolhaEscrita {
    QString nome;
    QVector<QVector<QVariant>> linhas;
};

// Writes an .xlsx workbook with those sheets, each column as wide as its longest entry. Throws
// ErroPasta, with a message for the user, when the file cannot be written.
void gravaXlsx(const QString& caminho, const QList<FolhaEscrita>& folhas);

} // namespace lavra
