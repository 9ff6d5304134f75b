#include "saved.h"

#include "store/query.h"
#include "store/store.h"

namespace lavra::report {

namespace {

// The rows with both keys as an editable cursor on the first; an empty cell matches no key.
Cursor linhasDaChave(const Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo)
{
    return consulta::linhas(db, tabela,
                            {{QStringLiteral("CodAnalise"), codAnalise}, {QStringLiteral("CodCultivo"), codCultivo}});
}

} // namespace

bool GravaInfo(Store& db, TipoLaudo tipo, const QString& codAnalise, const QString& codCultivo,
               const QString& info)
{
    const DefinicaoLaudo& laudo = definicao(tipo);
    Cursor rs = linhasDaChave(db, laudo.tabela, codAnalise, codCultivo);
    if (rs.atEnd())
        return false;
    // One statement writes the one row, so a failure leaves the table as it was.
    rs.setValue(laudo.colunaInfo, info);
    rs.update();
    return true;
}

QString textoPerguntaExclusao(const QString& codCultivo)
{
    return QStringLiteral("A recomendação ") + codCultivo + QStringLiteral(" será excluída! Confirma?");
}

Parada PerguntaExclusao(Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo)
{
    const Cursor rs = linhasDaChave(db, tabela, codAnalise, codCultivo);
    if (rs.atEnd())
        return std::nullopt;
    return Desfecho::pergunta(textoPerguntaExclusao(rs.value(1).toString()));
}

bool ExcluiRecomendacao(Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo)
{
    Cursor rs = linhasDaChave(db, tabela, codAnalise, codCultivo);
    if (rs.atEnd())
        return false;
    rs.deleteCurrent();
    return true;
}

QStringList RecomendacoesDaAnalise(Store& db, const QString& tabela, const QString& codAnalise)
{
    QStringList chaves;
    Cursor rs = consulta::sql(db,
                              QStringLiteral("SELECT CodCultivo FROM %1 WHERE CodAnalise = ? AND CodAnalise = ? COLLATE BINARY "
                                             "ORDER BY rowid")
                                  .arg(quoteIdentifier(tabela)),
                              {codAnalise, codAnalise});
    for (; !rs.atEnd(); rs.moveNext())
        chaves << rs.value(0).toString();
    return chaves;
}

} // namespace lavra::report
