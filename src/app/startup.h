#pragma once

#include "session.h"
#include "store/manualtables.h"

namespace lavra {

inline const QString kMsgSemTecnico = QStringLiteral(
    "Acesse o menu arquivo para fazer o cadastro da empresa e dos técnicos responsáveis pelo laudo ou "
    "importar os dados da vesão anterior!");

// Makes sure the database at path can be worked on and points the session's store at it. A
// missing or empty file is created complete; a file that is not a database, or lacks a table,
// is refused. A file that holds an older version of the manual's tables is brought up to date,
// leaving the rows the user corrected; the text says what changed, and is empty when nothing
// did. Throws StoreError.
QString AbreBanco(Session& session, const QString& path);
// That bringing up to date on its own, with the data given.
QString AtualizaTabelasDoManual(const QString& path, const manual::DadosEntregues& dados = manual::dadosDoPrograma());

// Reads the signing technician: the first row of TecResp marked 1 fills NomeTec, ProfTec and
// CreaTec. Returns true when TecResp has no rows at all, which the main window tells the user.
bool CarregaTecnico(Session& session);

// An NPK of the old eight-column layout gets the dry-matter and efficiency columns, filled with
// "---", and its nutrients become 32-bit floats. Decided by the column count alone, so it runs
// once. All of it or nothing is written. Returns whether the table was upgraded.
bool AtualizaNPK(Store& db);

} // namespace lavra
