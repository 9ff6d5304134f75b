#pragma once

#include <QString>

// Where the program finds its database and its documents. A copy run from a folder the user can
// write (unpacked from an archive, or the build tree) keeps everything beside the program; an
// installed copy reads its documents from the installation and keeps the database in the user's
// data folder.
namespace lavra::locais {

struct Local {
    QString pastaDoPrograma;
    bool pastaGravavel = false;
    // The documents of an installed copy: <prefix>/share/lavra beside <prefix>/bin.
    QString pastaInstalada;
    QString pastaDeDados; // the user's, for this program
};

// This program's, as it runs now.
Local localAtual();

// The database file: beside the program in a copy whose folder the user can write, or where one
// is there already; in the user's data folder when the program is installed.
QString caminhoDoBanco(const Local& local);
// The same for this program, with the data folder created when it is used. An empty text when
// that folder cannot be created.
QString bancoPadrao();

// A document that comes with the program: beside it, or in the installation's documents. The
// path beside the program when neither has it, so that a message can say where it should be.
QString caminhoDoDocumento(const Local& local, const QString& arquivo);

} // namespace lavra::locais
