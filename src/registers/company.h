#pragma once

#include "store/store.h"

#include <QStringList>

#include <optional>

namespace lavra {

class CursorModel;
struct Session;

// The ten fields of the company, in column order.
inline constexpr int kCamposEmpresa = 10;

// The company's row, if there is one.
std::optional<QStringList> LeEmpresa(Store& db);
// Writes the one row of Empresa, adding it when the table is empty.
void SalvaEmpresa(Store& db, const QStringList& campos);
// Deletes the first row of Empresa, if any.
void ExcluiEmpresa(Store& db);

// Marks the technician of that name as the one who signs and every other row as not; the marked
// row's data go to the session (the later one, should two share the name). Written in one
// transaction through the register's view. Returns whether any row had the name.
bool MarcaTecnico(CursorModel& view, Session& session, const QString& nome);

} // namespace lavra
