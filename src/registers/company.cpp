#include "company.h"

#include "app/session.h"
#include "store/cursormodel.h"
#include "store/storeerror.h"

namespace lavra {

std::optional<QStringList> LeEmpresa(Store& db)
{
    try {
        db.strSQL = QStringLiteral("SELECT * FROM Empresa;");
        db.AbreTabela(db.strSQL);
        std::optional<QStringList> campos;
        if (!db.rs.atEnd()) {
            campos = QStringList();
            for (int i = 0; i < kCamposEmpresa; ++i)
                campos->append(db.rs.value(i).toString());
        }
        db.fecha();
        return campos;
    } catch (...) {
        db.descarta();
        throw;
    }
}

void SalvaEmpresa(Store& db, const QStringList& campos)
{
    try {
        db.strSQL = QStringLiteral("SELECT * FROM Empresa;");
        db.AbreTabela(db.strSQL);
        if (db.rs.atEnd())
            db.rs.addNew();
        for (int i = 0; i < kCamposEmpresa; ++i)
            db.rs.setValue(i, campos.value(i));
        db.rs.update();
        db.fecha();
    } catch (...) {
        db.descarta();
        throw;
    }
}

void ExcluiEmpresa(Store& db)
{
    try {
        db.strSQL = QStringLiteral("SELECT * FROM Empresa;");
        db.AbreTabela(db.strSQL);
        if (!db.rs.atEnd())
            db.rs.deleteCurrent();
        db.fecha();
    } catch (...) {
        db.descarta();
        throw;
    }
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
