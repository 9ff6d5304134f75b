#include "saved.h"

#include "store/store.h"

namespace lavra::report {

namespace {

// Both keys as the row stores them; an empty cell matches no key.
bool mesmaChave(const Cursor& rs, const QString& codAnalise, const QString& codCultivo)
{
    const QVariant analise = rs.value(0);
    const QVariant cultivo = rs.value(1);
    return !analise.isNull() && !cultivo.isNull() && analise.toString() == codAnalise
        && cultivo.toString() == codCultivo;
}

QString seleciona(const QString& tabela) { return QStringLiteral("SELECT * FROM ") + tabela + QStringLiteral(";"); }

// Runs the walk on a connection of its own, so that the shared pair of a caller is left alone.
// The cursor stands on the first row with both keys, or past the last.
template <typename Acao>
auto comLinha(const Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo,
              Acao acao)
{
    Connection cn(db.strConn);
    cn.open();
    Cursor rs;
    rs.open(seleciona(tabela), cn);
    while (!rs.atEnd() && !mesmaChave(rs, codAnalise, codCultivo))
        rs.moveNext();
    auto resultado = acao(rs);
    rs.close();
    cn.close();
    return resultado;
}

} // namespace

bool GravaInfo(Store& db, TipoLaudo tipo, const QString& codAnalise, const QString& codCultivo,
               const QString& info)
{
    const DefinicaoLaudo& laudo = definicao(tipo);
    bool gravou = false;
    try {
        db.strSQL = seleciona(laudo.tabela);
        db.AbreTabela(db.strSQL);
        Transaction transacao(db.cn);
        for (; !db.rs.atEnd(); db.rs.moveNext()) {
            if (mesmaChave(db.rs, codAnalise, codCultivo)) {
                db.rs.setValue(laudo.colunaInfo, info);
                db.rs.update();
                gravou = true;
                break;
            }
        }
        transacao.commit();
        db.fecha();
    } catch (...) {
        db.descarta();
        throw;
    }
    return gravou;
}

QString textoPerguntaExclusao(const QString& codCultivo)
{
    return QStringLiteral("A recomendação ") + codCultivo + QStringLiteral(" será excluída! Confirma?");
}

std::optional<QString> PerguntaExclusao(Store& db, const QString& tabela, const QString& codAnalise,
                                        const QString& codCultivo)
{
    return comLinha(db, tabela, codAnalise, codCultivo, [](const Cursor& rs) -> std::optional<QString> {
        if (rs.atEnd())
            return std::nullopt;
        return textoPerguntaExclusao(rs.value(1).toString());
    });
}

bool ExcluiRecomendacao(Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo)
{
    return comLinha(db, tabela, codAnalise, codCultivo, [](Cursor& rs) {
        if (rs.atEnd())
            return false;
        rs.deleteCurrent();
        return true;
    });
}

QStringList RecomendacoesDaAnalise(Store& db, const QString& tabela, const QString& codAnalise)
{
    QStringList chaves;
    try {
        db.strSQL = seleciona(tabela);
        db.AbreTabela(db.strSQL);
        for (; !db.rs.atEnd(); db.rs.moveNext()) {
            const QVariant analise = db.rs.value(0);
            if (!analise.isNull() && analise.toString() == codAnalise)
                chaves << db.rs.value(1).toString();
        }
        db.fecha();
    } catch (...) {
        db.descarta();
        throw;
    }
    return chaves;
}

} // namespace lavra::report
