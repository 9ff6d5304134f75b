#pragma once

#include "xlsfile.h"

#include <QList>
#include <QString>

namespace lavra::test {

// The same sheets as an .xls is written from: a name and rows of QVariant cells.
using PlanilhaOds = PlanilhaXls;

// Writes an .ods workbook as LibreOffice Calc lays one out. False when it cannot be written.
bool gravaOds(const QString& caminho, const QList<PlanilhaOds>& planilhas);

} // namespace lavra::test
