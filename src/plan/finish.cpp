#include "finish.h"

#include "app/analise.h"
#include "app/session.h"
#include "app/slots.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "calc/cropgroups.h"
#include "registers/analysis.h"
#include "store/cursormodel.h"
#include "store/query.h"
#include "store/storeerror.h"

#include <QDate>

namespace lavra {

namespace {

struct Plano {
    const char* tabela;
    std::int16_t ultimoSlot;
    const char* texto;
};

const Plano kPlanos[] = {{"RecoForm", slot::kTotalFormulas, "formulas"},
    {"RecoFormulac", slot::kTotalFormulacao, "formulacao"}, {"RecoFlorest", slot::kTotalFlorest, "floresta"}};

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
    const double total = session.Grupo == grupo::Florestais
        ? session.CustoEtapa1 + session.CustoCalcario + session.CustoEtapa2 + session.CustoEtapa3
        : session.CustoBase + session.CustoCalcario + session.CustoN;
    session.Dados[session.UltimoSlot] = FormataNumero(total, 2);
    session.CodCultivo = slotText(session.Dados[slot::kCultura]) + QLatin1Char('-')
        + slotText(session.Dados[slot::kCultivoOrdem]) + QLatin1Char('-') + slotText(session.Dados[slot::kDataPlantio]);
}

namespace {

QList<Chave> chavesDaRecomendacao(const QString& tabela, const QString& codAnalise, const QString& codCultivo)
{
    return { { consulta::coluna(tabela, 0), codAnalise }, { consulta::coluna(tabela, 1), codCultivo } };
}

} // namespace

bool ExisteRecomendacao(const Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo)
{
    return consulta::existe(db, tabela, chavesDaRecomendacao(tabela, codAnalise, codCultivo));
}

Parada SalvaRecomendacao(Session& session, const QString& data)
{
    const QString digits = digitsOf(data);
    if (!ValidaData(digits))
        return Desfecho::aviso(kMsgDataInvalida);
    if (!QDate::fromString(digits, QStringLiteral("ddMMyyyy")).isValid())
        return Desfecho::aviso(avisoDataInexistente(data));

    session.Dados[slot::kDataPlantio] = data;
    Tabela_e_CalcCustTot(session, session.PlanoNum);
    session.Dados[session.UltimoSlot + slot::fim::kAviso] = session.ObsAjuste;
    // The technician's orientations are written later, from the report.
    session.Dados[session.UltimoSlot + slot::fim::kInfo] = QString();

    const QString codAnalise = session.Analise.value(analise::kCodigo).toString();
    const QString& tabela = session.TabelaReco;
    // The rows of the key: none, or the save is refused. The new row is added to them.
    Cursor rs = consulta::linhas(session.db, tabela, chavesDaRecomendacao(tabela, codAnalise, session.CodCultivo));
    if (!rs.atEnd())
        return Desfecho::aviso(mensagemRepetida(session.CodCultivo, codAnalise));

    rs.addNew();
    rs.setValue(0, codAnalise);
    rs.setValue(1, session.CodCultivo);
    for (int column = 2; column < rs.columnCount(); ++column) {
        const QVariant& valor = session.Dados[slot::deColuna(column)];
        // The store turns each slot into the column's declared type: singles, doubles, dates
        // from their dd/mm/yyyy text, and the rest as they stand.
        rs.setValue(column, rs.columnType(column) == ColumnType::Date ? QVariant(slotText(valor)) : valor);
    }
    rs.update();
    return std::nullopt;
}

} // namespace lavra
