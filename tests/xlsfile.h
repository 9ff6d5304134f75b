#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <QVector>

namespace lavra::test {

// One sheet: its name and its rows from the first; each cell a QVariant:
// invalid (no cell), QString (text), int/double (number), QDate (a date cell), bool (boolean),
// FormulaXls (a formula cell with the result Excel saved for it).
// An empty text is written as a blank cell, an invalid QDate as no cell, any other type as its
// toString() text. Dates count in Excel's 1900 system, so they hold from 1900-03-01 on.
// A formula as Excel saves it: the formula itself (a constant here, no reader evaluates it) and
// the result of its last calculation, a number, a text or a boolean.
struct FormulaXls {
    QVariant resultado;
};

struct PlanilhaXls {
    QString nome;
    QVector<QVector<QVariant>> linhas;
};

// Writes a BIFF8 workbook (.xls) with those sheets in order. False when the file cannot be written.
// Also false when Excel 97 could not hold the workbook: no sheet, a sheet name empty or over 31
// characters, over 65 536 rows or 256 columns in a sheet, or a text over 32 767 characters.
// freexl 1.0.6 reads a shared text from two records at most: keep texts under 4 100 characters.
bool gravaXls(const QString& caminho, const QList<PlanilhaXls>& planilhas);

} // namespace lavra::test

Q_DECLARE_METATYPE(lavra::test::FormulaXls)
