#include "finish.h"

#include "base/numbers.h"
#include "app/session.h"
#include "base/validation.h"
#include "registers/analysis.h"
#include "store/cursormodel.h"
#include "store/storeerror.h"

#include <QDate>

namespace lavra {

namespace {

struct Plano {
    const char* tabela;
    std::int16_t ultimoSlot;
    const char* texto;
};

const Plano kPlanos[] = {{"RecoForm", 40, "formulas"}, {"RecoFormulac", 58, "formulacao"}, {"RecoFlorest", 27, "floresta"}};

QString digitsOf(const QString& text)
{
    QString digits;
    for (const QChar c : text) {
        if (c.isDigit())
            digits += c;
    }
    return digits;
}

// A slot as the key and the text columns see it: numbers under the machine's setting.
QString slotText(const QVariant& slot)
{
    return cellText(slot);
}

} // namespace

QString mensagemRepetida(const QString& codCultivo, const QString& codAnalise)
{
    return QStringLiteral("Já existe no banco de dados uma recomendação [") + codCultivo
        + QStringLiteral("] cadastrada para a análise [") + codAnalise + QStringLiteral("]\n\n")
        + QStringLiteral("Escolha uma outra data para o cadastro.");
}

void Tabela_e_CalcCustTot(Session& session, int plano)
{
    if (plano < 1 || plano > 3)
        throw StoreError(QStringLiteral("Plano de adubação desconhecido: %1.").arg(plano));
    const Plano& p = kPlanos[plano - 1];
    session.TabelaReco = QString::fromLatin1(p.tabela);
    session.UltimoSlot = p.ultimoSlot;
    session.PlanoTexto = QString::fromLatin1(p.texto);

    // The forest plan has three applications of its own and no separate topdressing.
    const double total = session.Grupo == 4
        ? session.CustoEtapa1 + session.CustoCalcario + session.CustoEtapa2 + session.CustoEtapa3
        : session.CustoBase + session.CustoCalcario + session.CustoN;
    session.Dados[session.UltimoSlot] = FormataNumero(total, 2);
    session.CodCultivo = slotText(session.Dados[1]) + QLatin1Char('-') + slotText(session.Dados[2])
        + QLatin1Char('-') + slotText(session.Dados[3]);
}

bool ExisteRecomendacao(Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo)
{
    Connection connection(db.strConn);
    connection.open();
    Cursor rs;
    rs.open(QStringLiteral("SELECT CodAnalise, CodCultivo FROM ") + tabela, connection);
    bool found = false;
    for (; !rs.atEnd() && !found; rs.moveNext())
        found = rs.value(0).toString() == codAnalise && rs.value(1).toString() == codCultivo;
    rs.close();
    connection.close();
    return found;
}

ResultadoSalva SalvaRecomendacao(Session& session, const QString& data)
{
    const QString digits = digitsOf(data);
    if (!ValidaData(digits))
        return {Salvamento::DataInvalida, kMsgDataInvalida};
    if (!QDate::fromString(digits, QStringLiteral("ddMMyyyy")).isValid())
        return {Salvamento::DataInexistente, avisoDataInexistente(data)};

    session.Dados[3] = data;
    Tabela_e_CalcCustTot(session, session.PlanoNum);
    session.Dados[session.UltimoSlot + 1] = session.ObsAjuste;
    // The technician's orientations are written later, from the report.
    session.Dados[session.UltimoSlot + 2] = QString();

    const QString codAnalise = session.Analise.value(0).toString();
    Store& db = session.db;
    if (ExisteRecomendacao(db, session.TabelaReco, codAnalise, session.CodCultivo))
        return {Salvamento::Repetida, mensagemRepetida(session.CodCultivo, codAnalise)};

    try {
        db.strSQL = QStringLiteral("SELECT * FROM ") + session.TabelaReco + QStringLiteral(";");
        db.AbreTabela(db.strSQL);
        db.rs.addNew();
        db.rs.setValue(0, codAnalise);
        db.rs.setValue(1, session.CodCultivo);
        for (int column = 2; column < db.rs.columnCount(); ++column) {
            const QVariant& slot = session.Dados[column - 1];
            // The store turns each slot into the column's declared type: singles, doubles, dates
            // from their dd/mm/yyyy text, and the rest as they stand.
            db.rs.setValue(column, db.rs.columnType(column) == ColumnType::Date ? QVariant(slotText(slot)) : slot);
        }
        db.rs.update();
        db.fecha();
    } catch (...) {
        db.descarta();
        throw;
    }
    return {};
}

} // namespace lavra
