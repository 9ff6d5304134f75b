#pragma once

#include "schema.h"
#include "store.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

namespace lavra::manual {

// The manual's tables that the agronomist can check and correct, in the order they are offered.
// The program's own registers (fertilisers, limes, the dollar) are kept in their own windows.
const QStringList& tabelas();
bool ehTabelaDoManual(const QString& tabela);
// The table a name stands for: an alias such as CONDMEDP1 reads CONDMEDP.
QString tabelaDe(const QString& nome);

// Its columns; throws StoreError for a table that is not one of the manual's.
const TableDef& definicaoDe(const QString& tabela);

// The columns that tell the rows of a table apart: text and group in Calagem, where every
// group has its own "Selecione", the first column elsewhere. They are not edited.
QList<int> colunasChave(const QString& tabela);
// The key of a row as the history and the marks keep it: the first column's text, and for
// Calagem the group after it, "Plantio direto consolidado (grupo 1)".
QString textoChave(const QString& tabela, const QVector<QVariant>& valores);

// A key as the user reads it: an index written as the machine writes numbers, "5,6".
QString chaveExibida(const QString& tabela, const QString& chave);

// The heading of a column in words, with its unit; the column's own name for one not described.
QString tituloColuna(const QString& tabela, const QString& coluna);
// What the table holds, in a few words, for the picker.
QString descricaoTabela(const QString& tabela);

enum class Confianca { Alta, Media, Baixa, ConferidaPeloUsuario, SemNota };
// "alta", "média", "baixa", "conferida pelo usuário", and an empty text for a row the program
// did not deliver.
QString textoConfianca(Confianca confianca);

// ---- What the program delivers -------------------------------------------------------------

struct LinhaEntregue {
    QVector<QVariant> valores; // typed as the database keeps them
    QString fonte;
    QString confianca; // "high", "medium" or "low", as the data files write it
};

struct DadosEntregues {
    int versao = 0;
    // By table, in file order.
    QHash<QString, QList<LinhaEntregue>> tabelas;
    // The row of that key, if the program delivers one.
    const LinhaEntregue* linha(const QString& tabela, const QString& chave) const;
};

// The number of the data delivered with this program. Raise it with any change to the rows of
// the manual's tables, so that existing databases take the change at their next start.
inline constexpr int kVersaoDados = 1;

// The rows of every table of the manual in the data files of dir, as version versao.
// Throws StoreError on a file that cannot be read.
DadosEntregues leDadosEntregues(const QString& dir, int versao);
// The data built into the program.
const DadosEntregues& dadosDoPrograma();

// ---- Rows as the database holds them -------------------------------------------------------

struct LinhaManual {
    qint64 id = 0; // the row's place in the file
    QVector<QVariant> valores;
    QString chave;
    QString fonte; // empty for a row the program did not deliver
    Confianca confianca = Confianca::SemNota;
    bool corrigida = false;
};

// Every row of a table in the order the table keeps them. Throws StoreError.
QList<LinhaManual> leTabela(const Store& db, const QString& tabela, const DadosEntregues& dados = dadosDoPrograma());

// A value as a cell shows it: numbers with the machine's decimal symbol.
QString textoValor(const QVariant& valor);

// What the user typed for a column, as the column keeps it, or why it is refused. Numbers are
// read with the machine's decimal symbol only.
struct ValorLido {
    QVariant valor;
    QString recusa; // empty when accepted
};
ValorLido leValor(const QString& tabela, int coluna, const QString& texto);
// Whether two values are the same for a column of that type: singles as 32-bit floats.
bool mesmoValor(const QVariant& a, const QVariant& b, ColumnType tipo);

// ---- Corrections and their history ---------------------------------------------------------

struct Correcao {
    QString tabela;
    QString chave;
    int coluna = 0;
    QVariant anterior;
    QVariant novo;
};

// "GRAON, "MilhoG", NBase: 20 → 25", the values as the machine writes numbers.
QString textoCorrecao(const Correcao& correcao);

struct RegistroHistorico {
    QString tabela;
    QString chave;
    QString coluna;
    QString anterior;
    QString novo;
    QString motivo;
    QDateTime quando;
};

// Writes the corrections in one transaction: each value, its row in the history with the reason,
// and the mark of a row checked by the user. A row changed since it was read, or gone, fails the
// whole lot. Throws StoreError with nothing written.
void corrige(const Store& db, const QList<Correcao>& correcoes, const QString& motivo);

// The corrections that put a row back as the program delivered it; none when it already is.
// Throws StoreError when the program delivered no row of that key.
QList<Correcao> restauracao(const Store& db, const QString& tabela, const QString& chave,
    const DadosEntregues& dados = dadosDoPrograma());
// Writes them, with the history, and drops the mark of the row: one transaction.
void restaura(const Store& db, const QString& tabela, const QString& chave, const QString& motivo,
    const DadosEntregues& dados = dadosDoPrograma());

// The history, most recent first. Throws StoreError.
QList<RegistroHistorico> historico(const Store& db);

// ---- The data of a newer version -----------------------------------------------------------

struct RelatorioAtualizacao {
    int de = 0;
    int para = 0;
    QList<Correcao> alteradas;   // written
    QList<Correcao> preservadas; // the program has another value; the user's correction stays
    QStringList novas;           // "table: key", rows the database lacked
    bool vazio() const { return alteradas.isEmpty() && preservadas.isEmpty() && novas.isEmpty(); }
    QString texto() const;
};

// The version of the data the database holds; 0 for one made before versions were kept.
int versaoDados(Connection& connection);
// Brings the rows of the manual's tables up to the data delivered, in one transaction, when the
// database holds an older version: a row the user corrected is left alone, any other takes the
// delivered values, a missing row is added; every change goes to the history. Throws StoreError
// with the database as it was.
RelatorioAtualizacao atualizaDados(Connection& connection, const DadosEntregues& dados = dadosDoPrograma());
// Marks a new database as holding the data delivered.
void registraVersaoDados(Connection& connection, int versao = kVersaoDados);

// ---- The rows a calculation read -----------------------------------------------------------

struct LinhaUsada {
    QString tabela;
    QString chave;
    bool operator==(const LinhaUsada&) const = default;
};

// While one is alive, the rows of the manual's tables that the calculation reads on this thread
// are gathered in it, each once, in the order read.
class LeiturasDoCalculo {
public:
    LeiturasDoCalculo();
    ~LeiturasDoCalculo();
    LeiturasDoCalculo(const LeiturasDoCalculo&) = delete;
    LeiturasDoCalculo& operator=(const LeiturasDoCalculo&) = delete;
    const QList<LinhaUsada>& linhas() const { return m_linhas; }

private:
    friend void anotaLeitura(const QString&, const QVector<QVariant>&);
    QList<LinhaUsada> m_linhas;
    LeiturasDoCalculo* m_anterior;
};

// Notes a row read from a table (or its alias); nothing when no calculation is listening or the
// table is not one of the manual's.
void anotaLeitura(const QString& tabela, const QVector<QVariant>& linha);

} // namespace lavra::manual
