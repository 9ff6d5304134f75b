#pragma once

#include <QString>
#include <QStringList>

// The text of a document before it is laid out: its Markdown files joined, the figures the
// program itself holds written into it, and the notes meant for its writers taken out.
namespace lavra::docs {

struct Figura {
    QString arquivo; // as the Markdown names it, relative to the document's folder
    QString legenda;
};

struct Texto {
    QString markdown;
    QList<Figura> figuras;
    QStringList erros; // a missing file, an unknown table or key: the build stops on them
};

// Joins the files in order. In the text:
// - a line "<!-- ... -->" is a note to the writers and goes;
// - a line "{{nome ...}}" becomes a table built from the program's data and routines;
// - an image alone in its paragraph gets a numbered caption, "Figura 3. Legenda".
Texto preparaTexto(const QStringList& arquivos);

// One generated table, in Markdown, or an empty text with the reason in erro.
QString tabelaGerada(const QString& pedido, QString* erro);

} // namespace lavra::docs
