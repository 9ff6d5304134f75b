#pragma once

#include <QString>

namespace lavra {

class Store;
struct Session;

// Sets the table of the plan at hand, the slot of the total, the plan's text, the total cost
// (formatted "0.00", as the saved row keeps it) and the key CodCultivo: crop, order, date.
void Tabela_e_CalcCustTot(Session& session, int plano);

// Whether the table already holds a recommendation with both keys.
bool ExisteRecomendacao(Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo);

enum class Salvamento {
    Salva,
    DataInvalida,    // refused by the date check
    DataInexistente, // a day the calendar does not have, such as 31/02
    Repetida,        // the same key is saved already; another date will do
};

struct ResultadoSalva {
    Salvamento desfecho = Salvamento::Salva;
    QString mensagem;
};

// The save of the final step: the date, the total and the key, the check for a repeated key,
// then one row of the plan's table written from the slots by each column's declared type.
// Nothing is written unless all of it is. Throws StoreError.
ResultadoSalva SalvaRecomendacao(Session& session, const QString& data);

QString mensagemRepetida(const QString& codCultivo, const QString& codAnalise);

} // namespace lavra
