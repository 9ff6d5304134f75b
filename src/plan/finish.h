#pragma once

#include "base/outcome.h"

#include <QString>

namespace lavra {

class Store;
struct Session;

// Sets the table of the plan at hand, the slot of the total, the plan's text, the total cost
// (formatted "0.00", as the saved row keeps it) and the key CodCultivo: crop, order, date.
void Tabela_e_CalcCustTot(Session& session, int plano);

// Whether the table already holds a recommendation with both keys.
bool ExisteRecomendacao(const Store& db, const QString& tabela, const QString& codAnalise, const QString& codCultivo);

// The save of the final step: the date, the total and the key, the check for a repeated key,
// then one row of the plan's table written from the slots by each column's declared type.
// Nothing is written unless all of it is. A refused date, a day the calendar does not have
// (31/02) and a key saved already are refusals. Throws StoreError.
Parada SalvaRecomendacao(Session& session, const QString& data);

QString mensagemRepetida(const QString& codCultivo, const QString& codAnalise);

} // namespace lavra
