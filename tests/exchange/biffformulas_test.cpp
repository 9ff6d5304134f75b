#include "exchange/biffformulas.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <sstream>

namespace lavra::leitor {
namespace {

// Workbook streams built by hand, for what the test .xls writer never writes: BIFF5, texts split
// across records, charts, damaged entries.
using Bytes = std::vector<unsigned char>;

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}
Bytes u16(std::size_t v)
{
    return {static_cast<unsigned char>(v), static_cast<unsigned char>(v >> 8)};
}
Bytes u32(std::uint64_t v)
{
    return u16(v & 0xFFFF) + u16(v >> 16 & 0xFFFF);
}
Bytes registro(unsigned tipo, const Bytes& dados)
{
    return u16(tipo) + u16(dados.size()) + dados;
}
Bytes bof(bool biff8, unsigned tipo)
{
    Bytes d = u16(biff8 ? 0x0600 : 0x0500) + u16(tipo);
    d.resize(biff8 ? 16 : 8);
    return registro(0x0809, d);
}
const Bytes kEof = registro(0x000A, {});

// Row, column, style, the result, options, four reserved bytes and the formula =1.
Bytes formula(unsigned linha, unsigned coluna, const Bytes& resultado)
{
    return registro(
        0x0006, u16(linha) + u16(coluna) + u16(15) + resultado + Bytes(6, 0) + Bytes {3, 0, 0x1E, 1, 0});
}
Bytes numero(double x)
{
    std::uint64_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    return u32(bits) + u32(bits >> 32);
}
// The results that are not numbers: 0 text, 1 boolean, 2 error, 3 empty text.
Bytes outroTipo(unsigned char tipo, unsigned char valor = 0)
{
    return {tipo, 0, valor, 0, 0, 0, 0xFF, 0xFF};
}
Bytes utf16(std::u16string_view s)
{
    Bytes b;
    for (const char16_t c : s)
        b = b + u16(c);
    return b;
}
Bytes nome8(std::u16string_view s)
{
    return Bytes {static_cast<unsigned char>(s.size()), 1} + utf16(s);
}

struct Folha {
    Bytes nome; // as the BOUNDSHEET record holds it, length first
    Bytes registros;
    unsigned char tipo = 0; // 0 worksheet, 2 chart
    std::optional<std::uint32_t> inicio = {}; // where the entry says the sheet begins, if not there
};

// The globals with one entry a sheet, then the sheets in order.
Bytes livro(bool biff8, const std::vector<Folha>& folhas, const Bytes& globais = {})
{
    std::vector<std::size_t> entradas;
    Bytes g = bof(biff8, 0x0005) + globais;
    for (const Folha& f : folhas) {
        entradas.push_back(g.size() + 4);
        g = g + registro(0x0085, u32(0) + Bytes {0, f.tipo} + f.nome);
    }
    g = g + kEof;
    for (std::size_t i = 0; i < folhas.size(); ++i) {
        const Bytes inicio = u32(folhas[i].inicio.value_or(static_cast<std::uint32_t>(g.size())));
        std::copy(inicio.begin(), inicio.end(), g.begin() + static_cast<std::ptrdiff_t>(entradas[i]));
        g = g + bof(biff8, folhas[i].tipo == 2 ? 0x0020 : 0x0010) + folhas[i].registros + kEof;
    }
    return g;
}

// A line a sheet: its name, then each result as "row,column kind value".
std::string le(const Bytes& fluxo)
{
    std::ostringstream s;
    for (const FormulasDaFolha& f : formulasDoFluxo(fluxo.data(), fluxo.size())) {
        s << '[' << f.nome << ']';
        for (const ResultadoFormula& r : f.resultados) {
            s << ' ' << r.linha << ',' << r.coluna << ' ' << "ntl"[static_cast<int>(r.tipo)];
            if (r.tipo == ResultadoFormula::Tipo::Texto)
                s << r.texto;
            else
                s << r.numero;
        }
        s << '\n';
    }
    return s.str();
}

// Each kind of result among ordinary cells; a shared formula, whose text follows its SHRFMLA; a
// text whose STRING never came; a chart inside the sheet, whose records are not the sheet's cells.
Bytes planilhaCompleta()
{
    const Bytes numeroComum = registro(0x0203, Bytes {0, 0, 0, 0, 15, 0} + numero(7));
    const Bytes grafico = bof(true, 0x0020) + formula(9, 9, numero(1)) + kEof;
    const Bytes texto = registro(0x0207, u16(6) + Bytes {1} + utf16(u"Dose ú"));
    return livro(true,
        {{nome8(u"Custos"),
            numeroComum + formula(0, 1, numero(2.5)) + formula(1, 0, outroTipo(0))
                + registro(0x04BC, Bytes(10, 0)) + texto + formula(2, 0, outroTipo(1, 1))
                + formula(2, 1, outroTipo(1, 0)) + formula(3, 0, outroTipo(2, 0x07))
                + formula(3, 1, outroTipo(3)) + formula(4, 0, outroTipo(0)) + formula(4, 1, numero(-0.001))
                + grafico + formula(300, 200, numero(1e300))}});
}

TEST(BiffFormulasTest, ReadsEachKindOfSavedResultAndLeavesErrorsAndEmptyTextsOut)
{
    EXPECT_EQ(
        le(planilhaCompleta()), "[Custos] 0,1 n2.5 1,0 tDose ú 2,0 l1 2,1 l0 4,1 n-0.001 300,200 n1e+300\n");
}

TEST(BiffFormulasTest, NamesAndTextsOfEitherVersionComeAsUtf8)
{
    // BIFF8 names take one byte a character (Latin-1) or two; a chart sheet holds no cells.
    EXPECT_EQ(le(livro(true,
                  {{Bytes {3, 0, 'P', 0xE1, 'g'}, formula(0, 0, numero(1))}, {nome8(u"Gráfico"), {}, 2},
                      {nome8(u"Doses K₂O"), formula(1, 1, numero(2))}})),
        "[Pág] 0,0 n1\n[Doses K₂O] 1,1 n2\n");
    // A long text goes on in CONTINUE records, each of which says again how wide its characters are.
    const Bytes texto8 = registro(0x0207, u16(7) + Bytes {1} + utf16(u"Ca"))
        + registro(0x003C, Bytes {0, 'l', 'c', 0xE1}) + registro(0x003C, Bytes {1} + utf16(u"r₂"));
    EXPECT_EQ(le(livro(true, {{nome8(u"P"), formula(0, 0, outroTipo(0)) + texto8}})), "[P] 0,0 tCalcár₂\n");

    // BIFF5 names and texts are in the code page, read as Windows-1252; continued texts simply go on.
    const Bytes texto5
        = registro(0x0207, u16(7) + Bytes {0x93, 'C', 'a'}) + registro(0x003C, Bytes {'l', 0xE7, 'a', 0x94});
    EXPECT_EQ(
        le(livro(false, {{Bytes {6, 'C', 'u', 's', 't', 'o', 0x80}, formula(0, 2, outroTipo(0)) + texto5}})),
        "[Custo€] 0,2 t“Calça”\n");
}

TEST(BiffFormulasTest, ADamagedStreamIsReadOnlyAsFarAsItsBytesGo)
{
    // Cut at every length, in a buffer of exactly that size: the results before the cut, in order.
    const Bytes inteiro = planilhaCompleta();
    const std::string todos = le(inteiro);
    for (std::size_t n = 0; n < inteiro.size(); ++n) {
        const std::string parte
            = le(Bytes(inteiro.begin(), inteiro.begin() + static_cast<std::ptrdiff_t>(n)));
        EXPECT_TRUE(todos.starts_with(parte.substr(0, parte.find('\n')))) << n << ": " << parte;
    }
    // Each byte changed in turn: what counts is that nothing outside the buffer is read.
    for (std::size_t i = 0; i < inteiro.size(); ++i) {
        Bytes estragado = inteiro;
        estragado[i] ^= 0xFF;
        le(estragado);
    }

    // A text that claims more characters than its record holds, with no continuation.
    const Bytes longo = registro(0x0207, u16(0xFFFF) + Bytes {0, 'a', 'b'});
    EXPECT_EQ(le(livro(true, {{nome8(u"P"), formula(0, 0, outroTipo(0)) + longo}})), "[P] 0,0 tab\n");

    // A sheet said to begin past the end, at the globals, or where another sheet begins.
    const Folha a {nome8(u"A"), formula(0, 0, numero(1))};
    const auto comB = [&a](std::uint32_t inicio) {
        return le(livro(true, {a, {nome8(u"B"), formula(0, 0, numero(2)), 0, inicio}}));
    };
    const Bytes normal = livro(true, {a, {nome8(u"B"), {}}});
    const std::uint32_t inicioA = normal[24] | normal[25] << 8; // in the first entry, after the BOF
    for (const std::uint32_t inicio : {0xFFFFFFF0u, 0u, inicioA})
        EXPECT_EQ(comB(inicio), "[A] 0,0 n1\n") << inicio;

    // An encrypted workbook's records are not plain.
    EXPECT_EQ(le(livro(true, {a}, registro(0x002F, Bytes(6, 0)))), "");
}

} // namespace
} // namespace lavra::leitor
