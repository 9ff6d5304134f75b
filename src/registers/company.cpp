#include "company.h"

#include "app/session.h"
#include "store/cursormodel.h"
#include "store/query.h"
#include "store/storeerror.h"

namespace lavra {

namespace {

// The one row of Empresa, or an empty cursor, editable.
Cursor empresa(const Store& db)
{
    return consulta::sql(db, QStringLiteral("SELECT * FROM Empresa ORDER BY rowid LIMIT 1"));
}

} // namespace

std::optional<QStringList> LeEmpresa(Store& db)
{
    const Cursor rs = empresa(db);
    if (rs.atEnd())
        return std::nullopt;
    QStringList campos;
    for (int i = 0; i < kCamposEmpresa; ++i)
        campos.append(rs.value(i).toString());
    return campos;
}

void SalvaEmpresa(Store& db, const QStringList& campos)
{
    Cursor rs = empresa(db);
    if (rs.atEnd())
        rs.addNew();
    for (int i = 0; i < kCamposEmpresa; ++i)
        rs.setValue(i, campos.value(i));
    rs.update();
}

void ExcluiEmpresa(Store& db)
{
    Cursor rs = empresa(db);
    if (!rs.atEnd())
        rs.deleteCurrent();
}

bool MarcaTecnico(CursorModel& view, Session& session, const QString& nome)
{
    Cursor& rs = view.cursor();
    const int kept = view.currentRow();
    bool found = false;
    QString nomeTec, profTec, creaTec;
    {
        Transaction transaction(view.connection());
        rs.moveFirst();
        while (!rs.atEnd()) {
            const bool signs = rs.value(0).toString() == nome;
            rs.setValue(3, signs ? 1 : 0);
            if (signs) {
                found = true;
                nomeTec = rs.value(0).toString();
                profTec = rs.value(1).toString();
                creaTec = rs.value(2).toString();
            }
            rs.moveNext();
        }
        transaction.commit();
    }
    rs.moveTo(kept);
    if (found) {
        session.NomeTec = nomeTec;
        session.ProfTec = profTec;
        session.CreaTec = creaTec;
    }
    return found;
}

} // namespace lavra
