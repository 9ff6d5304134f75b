#pragma once

#include "store/engine.h"

#include <QString>
#include <QStringList>

namespace lavra {

// The backup of the database: a copy of its file under another name and place.

inline const QString kNomeInicialDaCopia = QStringLiteral("CopiaBdLavra");

// The file name of the copy: the name typed and the engine's extension, which is always added,
// so that "copia.db" gives "copia.db.db".
QString NomeDaCopia(const QString& nome);
// Where the copy goes in that folder.
QString CaminhoDaCopia(const QString& pasta, const QString& nomeDaCopia);
// The files of a folder as the window lists them: hidden ones left out, by name, case ignored.
QStringList ArquivosDaPasta(const QString& pasta);
// The listed file that has the copy's name, case ignored ("COPIA.db" meets "copia.db"), the one
// with the very same name first; empty when there is none.
QString ArquivoDeMesmoNome(const QStringList& arquivos, const QString& nomeDaCopia);

// Copies the database at origem to destino. The copy is written beside it under a hidden name,
// checked with the engine's integrity check, and only then put in place of substituido (the
// listed file of the same name, which the user agreed to replace; empty when none), so that a
// failure leaves the old file as it was. Refuses to replace the database itself. Throws
// StoreError; false when progresso stopped it.
bool CopiaBanco(const QString& origem, const QString& destino, const QString& substituido,
                const ProgressoCopia& progresso = {});

} // namespace lavra
