#pragma once

#include "xlsfile.h"

#include <QMap>
#include <QString>
#include <QVariant>

namespace lavra::test {

// A workbook of the spreadsheet edition that came before the program, its data on the sheet
// "Lavra" at the cells where that edition kept them. Starts with the labels of the company in
// place, as every workbook of that edition had them.
class PastaAnterior {
public:
    PastaAnterior();

    // One cell, by its row and its column's letters; an invalid value takes the cell away.
    void poe(int linha, const QString& coluna, const QVariant& valor);
    QVariant valor(int linha, const QString& coluna) const;

    // The sheet "Lavra" and, to make it a workbook like the others, a sheet of charts' data.
    QList<PlanilhaXls> planilhas() const;
    bool grava(const QString& caminho) const { return gravaXls(caminho, planilhas()); }

    // The column number of letters, A being 1.
    static int coluna(const QString& letras);
    // The letters of a column number.
    static QString letras(int coluna);

private:
    QMap<int, QMap<int, QVariant>> m_celulas;
};

} // namespace lavra::test
