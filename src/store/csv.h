#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace lavra {

// Comma-separated records with quoted fields ("" inside quotes is one quotation mark).
// Throws StoreError on an unterminated quote.
QList<QStringList> parseCsv(const QString& text);

} // namespace lavra
