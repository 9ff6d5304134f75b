#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

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

// The same, a row at a time, for sheets too large to hold. A workbook of more cells than
// kCelulasEmMemoria is written as it goes, its texts kept in their cells rather than in the
// workbook's shared list (spreadsheet programs read both; some readers only the list).
class EscritorXlsx {
public:
    static constexpr qint64 kCelulasEmMemoria = 500'000;

    // Throws ErroPasta when the file cannot be begun.
    EscritorXlsx(const QString& caminho, qint64 celulasPrevistas = 0);
    EscritorXlsx(const EscritorXlsx&) = delete;
    EscritorXlsx& operator=(const EscritorXlsx&) = delete;
    // A workbook not closed is dropped, and a file it was to replace stays as it was.
    ~EscritorXlsx();

    // Starts a sheet; the rows that follow go to it, from its first row.
    void folha(const QString& nome);
    void linha(const QVector<QVariant>& valores);
    // Writes the file; throws ErroPasta on failure, leaving no new file behind.
    void fecha();

private:
    struct Estado;
    std::unique_ptr<Estado> m;
};

} // namespace lavra
