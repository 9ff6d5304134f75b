#include "startup.h"

#include "store/database.h"
#include "store/manualtables.h"
#include "store/query.h"
#include "store/storeerror.h"

#include <QFile>
#include <QFileInfo>

namespace lavra {

QString AbreBanco(Session& session, const QString& path)
{
    // An empty file is what a full disk or a broken copy leaves: there was nothing in it to keep.
    const QFileInfo found(path);
    if (found.exists() && found.size() == 0) {
        QFile empty(path);
        if (!empty.remove())
            throw StoreError(QStringLiteral("O arquivo do banco de dados está vazio e não pôde ser substituído. "
                                            "Verifique se a pasta onde ele está permite gravar."),
                             empty.errorString(), StoreError::Access::None);
    }
    QString atualizacao;
    if (QFileInfo::exists(path)) {
        database::check(path);
        database::upgrade(path);
        atualizacao = AtualizaTabelasDoManual(path);
    } else {
        database::create(path);
    }
    session.db = Store(path);
    return atualizacao;
}

QString AtualizaTabelasDoManual(const QString& path, const manual::DadosEntregues& dados)
{
    Connection connection(path);
    connection.open();
    QString texto;
    try {
        const manual::RelatorioAtualizacao r = manual::atualizaDados(connection, dados);
        if (!r.vazio())
            texto = r.texto();
    } catch (const StoreError& error) {
        // A copy on a read-only disk is still worked on, with the rows it holds.
        if (!error.stoppedWrite())
            throw;
    }
    connection.close();
    return texto;
}

bool CarregaTecnico(Session& session)
{
    const Store& db = session.db;
    const QString tabela = QStringLiteral("TecResp");
    if (const auto assinante = consulta::primeira(db, tabela, {{QStringLiteral("Assina"), 1}})) {
        session.NomeTec = assinante->value(0).toString();
        session.ProfTec = assinante->value(1).toString();
        session.CreaTec = assinante->value(2).toString();
    }
    return !consulta::existe(db, tabela, {});
}

bool AtualizaNPK(Store& db)
{
    try {
        if (consulta::sql(db, QStringLiteral("SELECT * FROM NPK WHERE 0")).columnCount() >= 10)
            return false;

        db.AbreConexao();
        Transaction transaction(db.cn);
        for (const char* column : {"MS", "EFICN", "EFICP", "EFICK"})
            db.cn.addTextColumn(QStringLiteral("NPK"), QString::fromLatin1(column), 40);

        db.rs = Cursor();
        db.rs.open(QStringLiteral("SELECT * FROM NPK;"), db.cn);
        while (!db.rs.atEnd()) {
            for (int ordinal = 8; ordinal <= 11; ++ordinal)
                db.rs.setValue(ordinal, QStringLiteral("---"));
            db.rs.moveNext();  // moving off the row writes it
        }
        db.rs.close();

        db.cn.execute(QStringLiteral("ALTER TABLE NPK ALTER N SINGLE;"));
        db.cn.execute(QStringLiteral("ALTER TABLE NPK ALTER P SINGLE;"));
        db.cn.execute(QStringLiteral("ALTER TABLE NPK ALTER K SINGLE;"));
        transaction.commit();
        db.cn.close();
        return true;
    } catch (...) {
        db.descarta();
        throw;
    }
}

} // namespace lavra
