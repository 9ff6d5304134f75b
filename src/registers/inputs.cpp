#include "inputs.h"

#include "base/numbers.h"
#include "store/query.h"
#include "store/storeerror.h"

namespace lavra {

namespace {

float single(const QString& text)
{
    return toSingle(parseNumber(text).value_or(0.0));
}

} // namespace

Parada verificaFertilizante(const Fertilizante& f, TipoAdubo tipo)
{
    const bool organic = tipo == TipoAdubo::OrganicoSolido || tipo == TipoAdubo::OrganicoLiquido;
    const bool indicesNumeric = isNumericText(f.ifn) && isNumericText(f.ifp) && isNumericText(f.ifk);
    if (tipo == TipoAdubo::OrganicoSolido && !(isNumericText(f.ms) && indicesNumeric))
        return Desfecho::aviso(kMsgMsOuIndice);
    if (tipo == TipoAdubo::OrganicoLiquido && !indicesNumeric)
        return Desfecho::aviso(kMsgIndiceNumero);
    if (tipo == TipoAdubo::OrganicoSolido && single(f.ms) > 100.0f)
        return Desfecho::aviso(kMsgMsAte100);
    if (organic && (single(f.ifn) > 1.0f || single(f.ifp) > 1.0f || single(f.ifk) > 1.0f))
        return Desfecho::aviso(kMsgIndiceAte1);
    return std::nullopt;
}

QVariantList linhaFertilizante(const Fertilizante& f, float cotacao)
{
    const float p = single(f.p);
    const float k = single(f.k);
    const QVariant pk = k == 0.0f ? QVariant(0) : QVariant(p / k);
    const double reais = parseNumber(f.custo).value_or(0.0) * static_cast<double>(cotacao);
    return {f.n + QLatin1Char('-') + f.p + QLatin1Char('-') + f.k,
            f.especificacao,
            single(f.n),
            p,
            k,
            pk,
            f.custo,
            reais,
            f.ms,
            f.ifn,
            f.ifp,
            f.ifk};
}

QVariantList linhaCorretivo(const QString& nome, const QString& prnt, const QString& custo)
{
    return {nome, prnt, custo, parseNumber(custo).value_or(0.0) * kFatorCorretivo};
}

float LeCotacao(Store& db)
{
    const Cursor rs = consulta::sql(db, QStringLiteral("SELECT * FROM CotDolar ORDER BY rowid LIMIT 1"));
    if (rs.atEnd())
        throw StoreError(QStringLiteral("A tabela CotDolar não tem a linha da cotação."));
    return rs.value(0).toFloat();
}

void AtualizaCotacao(Store& db, float cotacao)
{
    try {
        db.AbreConexao();
        Transaction transaction(db.cn);
        db.rs.open(QStringLiteral("SELECT * FROM CotDolar;"), db.cn);
        if (db.rs.atEnd())
            throw StoreError(QStringLiteral("A tabela CotDolar não tem a linha da cotação."));
        db.rs.setValue(0, cotacao);
        db.rs.update();

        // Both price lists follow the dollar: R$/t = US$/t x quotation, row by row.
        const std::pair<const char*, int> lists[] = {{"SELECT * FROM Calcario;", 3}, {"SELECT * FROM NPK;", 7}};
        for (const auto& [statement, reais] : lists) {
            db.rs.open(QString::fromLatin1(statement), db.cn);
            while (!db.rs.atEnd()) {
                // Priced to the precision of the dollar figures, so 33 x 5.45 is 179.85.
                const double preco = widenShortest(db.rs.value(reais - 1).toFloat()) * widenShortest(cotacao);
                db.rs.setValue(reais, widenShortest(toSingle(preco)));
                db.rs.moveNext();
            }
        }
        db.rs.close();
        transaction.commit();
        db.cn.close();
    } catch (...) {
        db.descarta();
        throw;
    }
}

} // namespace lavra
