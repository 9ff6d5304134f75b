#include "provenance.h"

#include "csv.h"
#include "storeerror.h"

#include <QFile>
#include <QHash>

namespace lavra {

namespace {

using Notes = QHash<QString, Procedencia>;

Notes readNotes(const QString& tabela)
{
    Notes notes;
    QFile file(QStringLiteral(":/data/%1.csv").arg(tabela));
    if (!file.open(QIODevice::ReadOnly))
        return notes;
    QList<QStringList> records;
    try {
        records = parseCsv(QString::fromUtf8(file.readAll()));
    } catch (const StoreError&) {
        return notes;
    }
    if (records.isEmpty())
        return notes;
    const int source = records.first().indexOf(QStringLiteral("source"));
    const int confidence = records.first().indexOf(QStringLiteral("confidence"));
    if (source < 0 || confidence < 0)
        return notes;
    for (int r = 1; r < records.size(); ++r) {
        const QStringList& row = records[r];
        // The first row of a key is the one the program reads.
        if (!row.isEmpty() && !notes.contains(row.first()))
            notes.insert(row.first(), {row.value(source), row.value(confidence)});
    }
    return notes;
}

} // namespace

std::optional<Procedencia> procedencia(const QString& tabela, const QString& chave)
{
    static QHash<QString, Notes> cache;
    auto it = cache.find(tabela);
    if (it == cache.end())
        it = cache.insert(tabela, readNotes(tabela));
    const auto found = it->constFind(chave);
    if (found == it->constEnd())
        return std::nullopt;
    return *found;
}

} // namespace lavra
