// The results Excel saved with the formulas of a legacy workbook (.xls). freexl gives a formula's
// cell as empty, so these are read from the workbook's record stream by a walker of our own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lavra::leitor {

// A formula's cell as its last calculation left it. Rows and columns count from 0.
struct ResultadoFormula {
    enum class Tipo : std::uint8_t { Numero, Texto, Logico };
    std::uint16_t linha = 0;
    std::uint16_t coluna = 0;
    Tipo tipo = Tipo::Numero;
    double numero = 0; // the number, or 0/1 for a boolean
    std::string texto; // UTF-8
};

struct FormulasDaFolha {
    std::string nome; // UTF-8, as freexl gives the sheet's name
    std::vector<ResultadoFormula> resultados;
};

// Every worksheet of a BIFF5 or BIFF8 stream ("Book" or "Workbook") with its formulas' results;
// errors and empty texts are left out. Whatever the bytes say, nothing is read outside them: a
// damaged stream gives what could be read before the damage.
std::vector<FormulasDaFolha> formulasDoFluxo(const unsigned char* dados, std::size_t tamanho);

// The same from a compound file on disk (a local 8-bit path); nothing when it cannot be opened.
std::vector<FormulasDaFolha> formulasDoArquivo(const char* caminho);

} // namespace lavra::leitor
