#include "xlsfile.h"

#include <QDate>
#include <QHash>
#include <QSaveFile>
#include <QStringList>

#include <algorithm>
#include <cstring>

// An Excel 97 workbook is a BIFF8 record stream named "Workbook" inside a compound file.
// Only what readers need is written: one font, the style XFs every reader expects, a general
// and a date cell XF, the sheets, the shared strings, formulas with their saved results; no formats
// per cell or ROW blocks.

namespace lavra::test {
namespace {

constexpr int maxRecordData = 8224;
constexpr quint16 xfGeral = 15; // first cell XF, after the 15 style XFs
constexpr quint16 xfData = 16;
constexpr quint16 formatoData = 164; // first number format index free for the workbook's own

// Everything in both layers is little-endian.
void put8(QByteArray& b, quint8 v)
{
    b.append(char(v));
}
void put16(QByteArray& b, quint16 v)
{
    put8(b, quint8(v));
    put8(b, quint8(v >> 8));
}
void put32(QByteArray& b, quint32 v)
{
    put16(b, quint16(v));
    put16(b, quint16(v >> 16));
}
void putDouble(QByteArray& b, double v)
{
    quint64 bits;
    std::memcpy(&bits, &v, sizeof bits);
    put32(b, quint32(bits));
    put32(b, quint32(bits >> 32));
}
void putUtf16(QByteArray& b, QStringView s)
{
    for (QChar c : s)
        put16(b, c.unicode());
}
void patch32(QByteArray& b, qsizetype at, quint32 v)
{
    for (int i = 0; i < 4; ++i)
        b[at + i] = char(v >> (8 * i));
}

void record(QByteArray& out, quint16 type, const QByteArray& data)
{
    put16(out, type);
    put16(out, quint16(data.size()));
    out += data;
}

void bof(QByteArray& out, quint16 kind)
{
    QByteArray d;
    put16(d, 0x0600); // BIFF8
    put16(d, kind);
    put16(d, 0x0DBB); // build and year of Excel 97
    put16(d, 0x07CC);
    put32(d, 0);
    put32(d, 6); // lowest version that can read it
    record(out, 0x0809, d);
}

// Texts live once in the workbook's shared table; cells point at them by index.
struct Strings {
    QStringList unique;
    QHash<QString, quint32> index;
    quint32 total = 0;

    quint32 add(const QString& s)
    {
        ++total;
        const auto it = index.constFind(s);
        if (it != index.cend())
            return *it;
        index.insert(s, quint32(unique.size()));
        unique.append(s);
        return quint32(unique.size() - 1);
    }
};

// One sheet's substream. False when a row, column or text is past what BIFF8 holds.
bool writeSheet(QByteArray& out, const PlanilhaXls& sheet, Strings& strings, bool first)
{
    if (sheet.linhas.size() > 65536)
        return false;
    QByteArray cells;
    int rowMin = -1, rowMax = -1, colMin = 256, colMax = -1;
    for (int r = 0; r < sheet.linhas.size(); ++r) {
        const QVector<QVariant>& row = sheet.linhas[r];
        for (int c = 0; c < row.size(); ++c) {
            const QVariant& v = row[c];
            const bool date = v.typeId() == QMetaType::QDate;
            if (!v.isValid() || (date && !v.toDate().isValid()))
                continue;
            if (c > 255)
                return false;
            QByteArray d;
            put16(d, quint16(r));
            put16(d, quint16(c));
            bool number = false;
            const double x = v.typeId() == QMetaType::QString ? 0 : v.toDouble(&number);
            if (v.typeId() == qMetaTypeId<FormulaXls>()) {
                const QVariant resultado = v.value<FormulaXls>().resultado;
                const bool texto = resultado.typeId() == QMetaType::QString;
                put16(d, xfGeral);
                if (texto) // the text follows in a record of its own
                    d.append("\0\0\0\0\0\0\xFF\xFF", 8);
                else if (resultado.typeId() == QMetaType::Bool)
                    d.append(resultado.toBool() ? "\1\0\1\0\0\0\xFF\xFF" : "\1\0\0\0\0\0\xFF\xFF", 8);
                else
                    putDouble(d, resultado.toDouble());
                put16(d, 0);  // options
                put32(d, 0);  // reserved
                put16(d, 3);  // =1
                put8(d, 0x1E);
                put16(d, 1);
                record(cells, 0x0006, d); // FORMULA
                if (texto) {
                    QByteArray t;
                    const QString s = resultado.toString();
                    put16(t, quint16(s.size()));
                    put8(t, 1);
                    putUtf16(t, s);
                    record(cells, 0x0207, t); // STRING
                }
            } else if (date) {
                // Excel's 1900 system counts days from 1899-12-30 for any date after February 1900.
                put16(d, xfData);
                putDouble(d, double(QDate(1899, 12, 30).daysTo(v.toDate())));
                record(cells, 0x0203, d); // NUMBER
            } else if (v.typeId() == QMetaType::Bool) {
                put16(d, xfGeral);
                put8(d, v.toBool());
                put8(d, 0); // a boolean, not an error code
                record(cells, 0x0205, d); // BOOLERR
            } else if (number) {
                put16(d, xfGeral);
                putDouble(d, x);
                record(cells, 0x0203, d); // NUMBER
            } else {
                const QString text = v.toString();
                if (text.size() > 32767)
                    return false;
                put16(d, xfGeral);
                if (text.isEmpty()) {
                    record(cells, 0x0201, d); // BLANK, as Excel does: freexl rejects an empty shared string
                } else {
                    put32(d, strings.add(text));
                    record(cells, 0x00FD, d); // LABELSST
                }
            }
            rowMin = rowMin < 0 ? r : rowMin;
            rowMax = r;
            colMin = std::min(colMin, c);
            colMax = std::max(colMax, c);
        }
    }

    bof(out, 0x0010);
    // Readers size the sheet from this record: first used row and column, and one past the last.
    QByteArray dim;
    const bool empty = rowMax < 0;
    put32(dim, empty ? 0 : rowMin);
    put32(dim, empty ? 0 : rowMax + 1);
    put16(dim, empty ? 0 : colMin);
    put16(dim, empty ? 0 : colMax + 1);
    put16(dim, 0);
    record(out, 0x0200, dim); // DIMENSION
    out += cells;
    QByteArray window;
    put16(window, first ? 0x06B6 : 0x00B6); // grid, headers, zeros; the first sheet selected and shown
    put16(window, 0);
    put16(window, 0);
    put16(window, 64); // default grid colour
    window.append(10, '\0');
    record(out, 0x023E, window); // WINDOW2
    record(out, 0x000A, {});
    return true;
}

// The shared string table. Strings are always stored as UTF-16; one that does not fit runs on into
// a CONTINUE record, which restarts with its own flags byte. EXTSST indexes every dsst-th string.
void writeStrings(QByteArray& out, const Strings& strings)
{
    const quint32 count = quint32(strings.unique.size());
    const quint32 perBucket = std::max<quint32>(count / 128 + 1, 8);
    QByteArray buckets;
    put16(buckets, quint16(perBucket));

    QByteArray rec;
    quint16 type = 0x00FC; // SST, then CONTINUE
    auto flush = [&] {
        record(out, type, rec);
        rec.clear();
        type = 0x003C;
    };
    put32(rec, strings.total);
    put32(rec, count);
    for (quint32 i = 0; i < count; ++i) {
        const QString& s = strings.unique[int(i)];
        // A string's length and flags may not be split from its first character.
        if (rec.size() + 3 + 2 > maxRecordData)
            flush();
        if (i % perBucket == 0) {
            put32(buckets, quint32(out.size() + 4 + rec.size()));
            put16(buckets, quint16(4 + rec.size()));
            put16(buckets, 0);
        }
        put16(rec, quint16(s.size()));
        put8(rec, 1); // 16-bit characters
        qsizetype done = 0;
        for (;;) {
            qsizetype n = std::min<qsizetype>((maxRecordData - rec.size()) / 2, s.size() - done);
            if (done + n < s.size() && n > 1 && s[done + n - 1].isHighSurrogate())
                --n; // keep a surrogate pair in one record
            putUtf16(rec, QStringView(s).mid(done, n));
            done += n;
            if (done == s.size())
                break;
            flush();
            put8(rec, 1);
        }
    }
    flush();
    record(out, 0x00FF, buckets); // EXTSST
}

// The workbook globals. Sheet positions are unknown yet: where each goes is returned in offsetAt.
QByteArray globals(const QList<PlanilhaXls>& sheets, const Strings& strings, QList<qsizetype>& offsetAt)
{
    QByteArray g;
    bof(g, 0x0005);
    QByteArray d;
    put16(d, 1200); // texts are UTF-16
    record(g, 0x0042, d); // CODEPAGE

    d.clear();
    for (quint16 v : { 0, 0, 0x3000, 0x1E00, 0x0038, 0, 0, 1, 600 })
        put16(d, v);
    record(g, 0x003D, d); // WINDOW1

    d.clear();
    put16(d, 0); // dates count from 1900
    record(g, 0x0022, d); // DATEMODE

    // Font 4 does not exist in BIFF, so readers count on at least five FONT records.
    d.clear();
    for (quint16 v : { 200, 0, 0x7FFF, 400, 0, 0, 0 }) // 10 pt, plain, automatic colour
        put16(d, v);
    put8(d, 5);
    put8(d, 0);
    d.append("Arial");
    for (int i = 0; i < 5; ++i)
        record(g, 0x0031, d); // FONT

    d.clear();
    put16(d, formatoData);
    put16(d, 10);
    put8(d, 0);
    d.append("dd/mm/yyyy");
    record(g, 0x041E, d); // FORMAT

    auto xf = [&](quint16 format, quint16 kind, quint8 used) {
        QByteArray x;
        put16(x, 0); // font
        put16(x, format);
        put16(x, kind);
        put8(x, 0x20); // bottom aligned
        put8(x, 0);
        put8(x, 0);
        put8(x, used);
        x.append(8, '\0'); // no borders, no fill
        put16(x, 0x20C0); // automatic pattern colours
        record(g, 0x00E0, x); // XF
    };
    xf(0, 0xFFF5, 0); // style XFs: Normal, then the 14 outline styles
    for (int i = 1; i < 15; ++i)
        xf(0, 0xFFF5, 0xF4);
    xf(0, 0x0001, 0); // xfGeral
    xf(formatoData, 0x0001, 0x04); // xfData, with its own number format

    d.clear();
    put16(d, 0x8000); // built-in style on XF 0
    put8(d, 0); // Normal
    put8(d, 0xFF);
    record(g, 0x0293, d); // STYLE

    for (const PlanilhaXls& sheet : sheets) {
        d.clear();
        put32(d, 0);
        put8(d, 0); // visible
        put8(d, 0); // worksheet
        put8(d, quint8(sheet.nome.size()));
        put8(d, 1);
        putUtf16(d, sheet.nome);
        offsetAt.append(g.size() + 4);
        record(g, 0x0085, d); // BOUNDSHEET
    }
    if (!strings.unique.isEmpty())
        writeStrings(g, strings);
    record(g, 0x000A, {});
    return g;
}

// The stream as the only one of a compound file with 512-byte sectors: header, stream, directory,
// allocation table and, past 109 table sectors, the extra sectors that list the table's sectors.
QByteArray compoundFile(QByteArray stream)
{
    // Streams under 4096 bytes belong in the mini stream; padding after the last EOF keeps this one
    // in ordinary sectors.
    if (stream.size() < 4096)
        stream.append(4096 - stream.size(), '\0');
    const quint32 size = quint32(stream.size());
    const quint32 dataSectors = (size + 511) / 512;
    const quint32 dirSector = dataSectors;
    const quint32 fatStart = dirSector + 1;
    quint32 fatSectors = 1, listSectors = 0; // each table sector maps 128 sectors, its own included
    for (;; ++fatSectors) {
        listSectors = fatSectors > 109 ? (fatSectors - 109 + 126) / 127 : 0;
        if (fatStart + fatSectors + listSectors <= fatSectors * 128)
            break;
    }
    const quint32 listStart = fatStart + fatSectors;
    const quint32 endOfChain = 0xFFFFFFFE, unused = 0xFFFFFFFF;
    auto fatSectorAt = [&](quint32 i) { return i < fatSectors ? fatStart + i : unused; };

    QByteArray f;
    f.append("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    f.append(16, '\0');
    for (quint16 v : { 0x003E, 0x0003, 0xFFFE, 9, 6 }) // version 3, 512-byte sectors, 64-byte mini sectors
        put16(f, v);
    f.append(6, '\0');
    for (quint32 v : { 0u, fatSectors, dirSector, 0u, 4096u, endOfChain, 0u,
             listSectors ? listStart : endOfChain, listSectors })
        put32(f, v);
    for (quint32 i = 0; i < 109; ++i)
        put32(f, fatSectorAt(i));

    f += stream;
    f.append(dataSectors * 512 - size, '\0');

    auto entry = [&](const QString& name, quint8 type, quint32 child, quint32 start, quint32 bytes) {
        const qsizetype at = f.size();
        putUtf16(f, name);
        f.append(64 - (f.size() - at), '\0');
        put16(f, quint16(name.isEmpty() ? 0 : (name.size() + 1) * 2));
        put8(f, type);
        put8(f, type ? 1 : 0); // black, in a tree of one
        put32(f, unused);
        put32(f, unused);
        put32(f, child);
        f.append(36, '\0'); // class id, state, times
        put32(f, start);
        put32(f, bytes);
        put32(f, 0);
    };
    entry(QStringLiteral("Root Entry"), 5, 1, endOfChain, 0);
    entry(QStringLiteral("Workbook"), 2, unused, 0, size);
    entry({}, 0, unused, 0, 0);
    entry({}, 0, unused, 0, 0);

    for (quint32 s = 0; s < fatSectors * 128; ++s) {
        quint32 next = unused;
        if (s + 1 < dataSectors)
            next = s + 1;
        else if (s + 1 == dataSectors || s == dirSector)
            next = endOfChain;
        else if (s < listStart)
            next = 0xFFFFFFFD; // a table sector
        else if (s < listStart + listSectors)
            next = 0xFFFFFFFC; // a sector of the table's list
        put32(f, next);
    }
    for (quint32 k = 0; k < listSectors; ++k) {
        for (quint32 j = 0; j < 127; ++j)
            put32(f, fatSectorAt(109 + k * 127 + j));
        put32(f, k + 1 < listSectors ? listStart + k + 1 : endOfChain);
    }
    return f;
}

} // namespace

bool gravaXls(const QString& caminho, const QList<PlanilhaXls>& planilhas)
{
    if (planilhas.isEmpty())
        return false;
    Strings strings;
    QList<QByteArray> sheets;
    for (int i = 0; i < planilhas.size(); ++i) {
        const QString& nome = planilhas[i].nome;
        if (nome.isEmpty() || nome.size() > 31)
            return false;
        sheets.append(QByteArray());
        if (!writeSheet(sheets.last(), planilhas[i], strings, i == 0))
            return false;
    }
    QList<qsizetype> offsetAt;
    QByteArray stream = globals(planilhas, strings, offsetAt);
    for (int i = 0; i < sheets.size(); ++i) {
        patch32(stream, offsetAt[i], quint32(stream.size()));
        stream += sheets[i];
    }
    const QByteArray file = compoundFile(stream);
    QSaveFile out(caminho);
    return out.open(QIODevice::WriteOnly) && out.write(file) == file.size() && out.commit();
}

} // namespace lavra::test
