#include "csv.h"

#include "storeerror.h"

namespace lavra {

QList<QStringList> parseCsv(const QString& text)
{
    QList<QStringList> records;
    QStringList record;
    QString field;
    bool quoted = false;
    bool fieldStarted = false;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted) {
            if (c == QLatin1Char('"')) {
                if (i + 1 < text.size() && text[i + 1] == QLatin1Char('"')) {
                    field += c;
                    ++i;
                } else {
                    quoted = false;
                }
            } else {
                field += c;
            }
        } else if (c == QLatin1Char('"')) {
            quoted = true;
            fieldStarted = true;
        } else if (c == QLatin1Char(',')) {
            record << field;
            field.clear();
            fieldStarted = true;
        } else if (c == QLatin1Char('\n') || c == QLatin1Char('\r')) {
            if (c == QLatin1Char('\r') && i + 1 < text.size() && text[i + 1] == QLatin1Char('\n'))
                ++i;
            if (fieldStarted || !field.isEmpty() || !record.isEmpty()) {
                record << field;
                records << record;
            }
            record.clear();
            field.clear();
            fieldStarted = false;
        } else {
            field += c;
            fieldStarted = true;
        }
    }
    if (quoted)
        throw StoreError(QStringLiteral("Aspas sem fechamento no arquivo de dados."));
    if (fieldStarted || !field.isEmpty() || !record.isEmpty()) {
        record << field;
        records << record;
    }
    return records;
}

} // namespace lavra
