#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

namespace lavra {

struct Celula;
class Planilha;
class Store;

// The workbook of the spreadsheet edition that came before the program, and its one sheet.
inline const QString kPastaAnterior = QStringLiteral("1.0 Lavra QRT.xls");
inline const QString kPlanilhaAnterior = QStringLiteral("Lavra");

// The converters of the cells of that sheet.
// An empty cell becomes "???"; any other, its text.
QString SemVazio(const Celula& c);
// An empty cell becomes "---"; any other, its text.
QString SeVazioThenTraço(const Celula& c);
// A number as it is; a text read as a number under the machine's setting, 0 when it is none.
float IfTxtThenValSing(const Celula& c);
double IfTxtThenValDobl(const Celula& c);

// Whether a base dressing's name is a formula ("Formula", as 5-20-20 or 5-20-20S) or the name of
// a nitrogen source ("FontN", as 45-0-0 or "Ureia").
QString TestaFormulaOuFonteN(const QString& texto);

// Whether the sheet is laid out as that edition's: its labels of the company where they were.
bool TestaPlanilha(const Planilha& planilha);

inline const QString kMsgSemArquivo = QStringLiteral("O arquivo 1.0 Lavra QRT.xls não foi selecionado!");
inline const QString kMsgEstrutura = QStringLiteral(
    "A estrutura desta planilha não corresponde à estrutura da planilha 1.0 Lavra QRT! O processo será "
    "cancelado automaticamente.");
inline const QString kMsgSubstituir = QStringLiteral(
    "Alguns fertilizantes cadastrados na versão anterior já existem na nova versão. Deseja substituir os "
    "fertilizantes da nova versão pelos da versão anterior?");
QString perguntaNomeDiferente(const QString& nome);
QString msgAtualizado(const QString& formulario);

// What came over to one table.
struct ContagemMigracao {
    QString tabela;
    int adicionadas = 0;
    int existentes = 0;    // already in the database, left as they were
    int substituidas = 0;  // fertilisers overwritten after the question
    int recusadas = 0;
};

struct RelatorioMigracao {
    bool empresa = false;  // the company's row was written
    QVector<ContagemMigracao> tabelas;
    QStringList recusas;   // each refused row, with its reason
    bool cancelada = false;

    const ContagemMigracao& contagem(const QString& tabela) const;
    // For the user: what came, table by table, then what was refused and why.
    QString texto() const;
};

// What the transfer tells as it goes and asks on its way.
struct ProgressoMigracao {
    // A pass begins: its text and the bar's maximum.
    std::function<void(const QString& etapa, int maximo)> etapa;
    // Where the bar stands; false when the user stops the transfer.
    std::function<bool(int valor)> passo;
    // Asked once, at the first fertiliser of the sheet that the database already has: whether the
    // sheet's overwrites it. Without an answer the database's are kept.
    std::function<bool()> substituiFertilizantes;
};

// Brings the company, clients, analyses, fertilisers and saved recommendations of the sheet into
// the database, each pass skipping what the database already has, so a second run adds nothing.
// All of it is written in one transaction: a stop or a failure leaves the database as it was
// (a failure throws StoreError). A row whose figures are not numbers is refused and told.
RelatorioMigracao TransfereDados(Store& db, const Planilha& planilha, const ProgressoMigracao& progresso = {});

} // namespace lavra
