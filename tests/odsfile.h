#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <QVector>

namespace lavra::test {

// One sheet of an OpenDocument workbook: its name and its rows from the first; each cell a
// QVariant: invalid (no cell), QString (text), int/double (number), QDate (a date cell), bool.
struct PlanilhaOds {
    QString nome;
    QVector<QVector<QVariant>> linhas;
};

// Writes an .ods workbook as LibreOffice Calc lays one out. False when it cannot be written.
bool gravaOds(const QString& caminho, const QList<PlanilhaOds>& planilhas);

} // namespace lavra::test
