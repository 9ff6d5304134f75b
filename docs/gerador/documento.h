#pragma once

#include "conteudo.h"

#include <QString>

// Lays out a prepared text on A4 pages and writes it as PDF, with the program's own means.
namespace lavra::docs {

struct Opcoes {
    QString titulo;     // of the PDF, and of the cover
    QString subtitulo;  // on the cover
    QString cabecalho;  // left of every page's header
    QString pastaBase;  // where the images named in the text are
    QString icone;      // SVG on the cover; none without a cover
    bool capa = false;
    bool sumario = false;
};

struct Entrada {
    int nivel = 1;
    QString titulo;
    int pagina = 0; // of the PDF, the cover counting as 1
};

struct Resultado {
    int paginas = 0;
    QList<Entrada> sumario;
    QString erro;
};

Resultado escrevePdf(const Texto& texto, const Opcoes& opcoes, const QString& saida);

} // namespace lavra::docs
