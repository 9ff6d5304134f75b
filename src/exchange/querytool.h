#pragma once

#include "base/outcome.h"
#include "store/schema.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>

namespace lavra {

class Store;

// The query tool: one table filtered on one of its fields, looked at in a spreadsheet or as text.

struct OrigemConsulta {
    QString texto;   // as the list shows it
    QString tabela;
};
// The sources, in list order.
const QList<OrigemConsulta>& origensConsulta();
// The criteria, in list order.
const QStringList& criteriosConsulta();

enum class Criterio { IgualA, MenorQue, MaiorQue, ComecaCom, Contem, TerminaCom };

// How the value of a criterion is read: the kinds of column fall in three groups, and the
// others (whole numbers of 32 bits, doubles) in none.
enum class GrupoDoCampo { Numero, Data, Texto, Nenhum };
GrupoDoCampo grupoDoCampo(ColumnType tipo);

struct CampoConsulta {
    QString nome;
    ColumnType tipo = ColumnType::Text;
};
// The columns of a table in their order, as the database file declares them.
QList<CampoConsulta> CamposDaOrigem(const Store& db, const QString& tabela);

// The user's four choices; -1 where nothing was chosen.
struct PedidoConsulta {
    int origem = -1;
    int campo = -1;
    int criterio = -1;
    QString informacao;
    QList<CampoConsulta> campos;  // the fields of the source, as listed
};

// The choices checked in the order the window numbers them, and the value checked against the
// field: a number for "igual a", "menor que" and "maior que" on a number, a date on a date.
Parada ChecaConsulta(const PedidoConsulta& pedido);

// The statement for a checked request. The user's text is always bound, never part of the text
// of the statement: a quotation mark, '%' or '_' in it is a letter like any other.
struct ComandoConsulta {
    QString tabela;
    QString sql;       // SELECT * ... WHERE ... ORDER BY ...
    QString contagem;  // SELECT count(*) with the same filter
    QVariantList valores;
};
ComandoConsulta MontaConsulta(const PedidoConsulta& pedido);

enum class SaidaConsulta { Planilha, Texto };

// Rows written so far and rows to write, false to stop; then, every few hundredths of a second
// while the workbook is packed into its file, which cannot be stopped, gravando.
struct ProgressoConsulta {
    std::function<bool(qint64 feitas, qint64 total)> linha;
    std::function<void()> gravando;
};

struct ResultadoConsulta {
    qint64 linhas = 0;
    bool cancelada = false;
};

// Runs the request and writes its rows to caminho: a workbook with the column names in the first
// row and the rows from the second, or the text file of the tool. Writes nothing when no row
// matches, or when progresso stops it (a text file that was there stays as it was). Throws
// StoreError when the database fails and ErroPasta when the file cannot be written.
ResultadoConsulta GeraConsulta(const Store& db, const PedidoConsulta& pedido, SaidaConsulta saida,
                               const QString& caminho, const ProgressoConsulta& progresso = {});

// A value as the text file shows it, on the machine's setting.
QString textoDoValor(const QVariant& valor);

} // namespace lavra
