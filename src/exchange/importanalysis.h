#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <functional>

namespace lavra {

class Planilha;
class Store;

// The date of a date cell's text, as people type it: a date by the machine's rules, or the
// forms without separators ddmmaaaa, ddmmaa, dmaaaa (years 1951 to 2009) and dmaa. 1/1/1900 when
// no form fits; 30/12/1899, the zero of dates, when a form fits but makes no date.
QDate ControlaDada(const QString& texto);

// The nineteen boxes that say which column of the sheet holds which datum.
inline constexpr int kCaixas = 19;
// At most this many columns of the sheet can be chosen.
inline constexpr int kColunasEscolhiveis = 40;
// The column each box stands for, from 1; 0 for a box with no column chosen.
using Mapeamento = std::array<int, kCaixas>;

// The captions beside the boxes, in order.
const QStringList& rotulosCaixas();

// The example sheet: the headings and one sample row, written as an .xlsx. Throws ErroPasta.
void GeraPlanExcel(const QString& caminho);
// The example's headings, which also name the columns in the report.
const QStringList& cabecalhosExemplo();

inline const QString kMsgCaixasSemColuna =
    QStringLiteral("Há caixas de seleção sem definição da correspondente coluna da planilha Excel");
QString msgInstrucoes();
QString msgTransferidas(const QString& pasta);

// One row of the sheet in the report: its number as the spreadsheet shows it, the analysis it
// stands for (its key, or what could be read of it), and the reason for what was done.
struct LinhaRelatorio {
    int linha = 0;
    QString analise;
    QString motivo;
};

struct RelatorioImportacao {
    QVector<LinhaRelatorio> adicionadas;
    QVector<LinhaRelatorio> existentes;
    QVector<LinhaRelatorio> recusadas;
    QStringList clientesNovos;
    bool cancelada = false;

    // The whole report as plain text, to be saved as a file.
    QString texto(const QString& pasta, const QString& planilha) const;
};

// What the transfer tells as it goes. etapa starts a pass over that many rows; linha says a row
// is done and returns false when the user cancels.
struct Progresso {
    std::function<void(const QString& etapa, int linhas)> etapa;
    std::function<bool(int linha)> linha;
};

inline const QString kEtapaClientes = QStringLiteral("Transferindo clientes...");
inline const QString kEtapaAnalises = QStringLiteral("Transferindo análises...");

// The transfer of the rows from the second on: a client for every new name (the other columns
// "???"), an analysis for every new key, the worked-out columns and classes as the register
// works them out. Rows with an empty cell, a figure that is not a number or is out of bounds are
// refused with their reason. Everything is written in one transaction: a cancel or a failure
// leaves the database as it was (a failure throws StoreError).
RelatorioImportacao ImportaAnalises(Store& db, const Planilha& planilha, const Mapeamento& colunas,
                                    const Progresso& progresso = {});

} // namespace lavra
