// A workbook stream is a run of records: a 16-bit type, a 16-bit length, that many bytes. The
// globals come first and say where each sheet's own run (from its BOF to its EOF) begins.
// libgsf opens the compound file around it; the records are walked here.

#include "biffformulas.h"

#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-infile.h>
#include <gsf/gsf-input-stdio.h>
#include <gsf/gsf-input.h>
#include <gsf/gsf-utils.h>

#include <QString>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

namespace lavra::leitor {

namespace {

constexpr std::uint16_t kBof = 0x0809;
constexpr std::uint16_t kEof = 0x000A;
constexpr std::uint16_t kFilepass = 0x002F;
constexpr std::uint16_t kBoundsheet = 0x0085;
constexpr std::uint16_t kFormula = 0x0006;
constexpr std::uint16_t kString = 0x0207;
constexpr std::uint16_t kContinue = 0x003C;

constexpr std::uint16_t kGlobais = 0x0005;
constexpr std::uint16_t kPlanilha = 0x0010;

std::uint16_t le16(const unsigned char* p)
{
    return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}

std::uint32_t le32(const unsigned char* p)
{
    return le16(p) | static_cast<std::uint32_t>(le16(p + 2)) << 16;
}

double leDouble(const unsigned char* p)
{
    const std::uint64_t bits = le32(p) | static_cast<std::uint64_t>(le32(p + 4)) << 32;
    double x;
    std::memcpy(&x, &bits, sizeof x);
    return x;
}

struct Registro {
    std::uint16_t tipo = 0;
    const unsigned char* dados = nullptr;
    std::size_t tamanho = 0;
};

// The stream as records; a record whose length runs past the end is the end.
class Fluxo {
public:
    Fluxo(const unsigned char* dados, std::size_t tamanho)
        : m_dados(dados)
        , m_tamanho(tamanho)
    {
    }

    std::size_t posicao() const { return m_pos; }
    void vaiPara(std::size_t pos) { m_pos = pos; }

    bool espia(std::uint16_t& tipo) const
    {
        Registro r;
        if (!le(m_pos, r))
            return false;
        tipo = r.tipo;
        return true;
    }
    bool proximo(Registro& r)
    {
        if (!le(m_pos, r))
            return false;
        m_pos += 4 + r.tamanho;
        return true;
    }

private:
    bool le(std::size_t pos, Registro& r) const
    {
        if (pos > m_tamanho || m_tamanho - pos < 4)
            return false;
        r.tipo = le16(m_dados + pos);
        r.tamanho = le16(m_dados + pos + 2);
        if (m_tamanho - pos - 4 < r.tamanho)
            return false;
        r.dados = m_dados + pos + 4;
        return true;
    }

    const unsigned char* m_dados;
    std::size_t m_tamanho;
    std::size_t m_pos = 0;
};

// BIFF5 texts are in the workbook's code page; Windows-1252 is what Excel used where this program
// is used, and it differs from Latin-1 only here.
constexpr char16_t kWindows1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

enum class Codificacao { Latin1, Windows1252, Utf16 };

// Appends up to n characters from the bytes there are; returns how many were taken.
std::size_t acrescenta(
    std::u16string& s, const unsigned char* p, std::size_t bytes, std::size_t n, Codificacao cod)
{
    if (cod == Codificacao::Utf16) {
        n = std::min(n, bytes / 2);
        for (std::size_t i = 0; i < n; ++i)
            s += static_cast<char16_t>(le16(p + 2 * i));
        return n;
    }
    n = std::min(n, bytes);
    for (std::size_t i = 0; i < n; ++i) {
        const unsigned char c = p[i];
        s += cod == Codificacao::Windows1252 && c >= 0x80 && c < 0xA0 ? kWindows1252[c - 0x80] : char16_t(c);
    }
    return n;
}

std::string utf8(const std::u16string& s)
{
    return QString::fromUtf16(s.data(), static_cast<qsizetype>(s.size())).toStdString();
}

// In BIFF8 a flags byte says whether the characters that follow take one byte or two.
Codificacao codificacao(bool biff8, unsigned char flags = 0)
{
    if (!biff8)
        return Codificacao::Windows1252;
    return flags & 1 ? Codificacao::Utf16 : Codificacao::Latin1;
}

struct Folha {
    std::uint32_t inicio = 0;
    std::string nome;
};

// A sheet's entry in the globals: its offset, its kind, then its name. Only worksheets hold cells.
bool folhaDe(const Registro& r, bool biff8, Folha& folha)
{
    const std::size_t pos = biff8 ? 8 : 7;
    if (r.tamanho < pos || r.dados[5] != 0)
        return false;
    folha.inicio = le32(r.dados);
    std::u16string nome;
    acrescenta(nome, r.dados + pos, r.tamanho - pos, r.dados[6], codificacao(biff8, biff8 ? r.dados[7] : 0));
    folha.nome = utf8(nome);
    return true;
}

// The text result of a formula: a STRING record, which a long text continues in CONTINUE records.
// In BIFF8 each continuation starts with its own flags byte. A text that claims more characters
// than its records hold is kept as far as they go.
std::string textoDe(const Registro& r, Fluxo& fluxo, bool biff8)
{
    std::size_t pos = biff8 ? 3 : 2;
    if (r.tamanho < pos)
        return {};
    std::size_t falta = le16(r.dados);
    Codificacao cod = codificacao(biff8, biff8 ? r.dados[2] : 0);
    std::u16string s;
    Registro atual = r;
    for (;;) {
        falta -= acrescenta(s, atual.dados + pos, atual.tamanho - pos, falta, cod);
        std::uint16_t tipo = 0;
        if (falta == 0 || !fluxo.espia(tipo) || tipo != kContinue || !fluxo.proximo(atual)
            || atual.tamanho == 0)
            break;
        pos = 0;
        if (biff8)
            cod = codificacao(true, atual.dados[pos++]);
    }
    return utf8(s);
}

// A sheet's records up to its EOF. Charts embedded in it have substreams of their own, whose
// records are not the sheet's cells. The FORMULA record: row, column, style, the 8-byte result,
// then the formula itself, which is not needed. Shared and array formulas keep their results in
// their FORMULA records too.
void leFolha(Fluxo& fluxo, bool biff8, std::vector<ResultadoFormula>& resultados)
{
    int profundidade = 1;
    ResultadoFormula texto;
    bool textoPendente = false;
    Registro r;
    while (profundidade > 0 && fluxo.proximo(r)) {
        switch (r.tipo) {
        case kBof:
            ++profundidade;
            break;
        case kEof:
            --profundidade;
            break;
        case kFormula: {
            textoPendente = false;
            if (profundidade != 1 || r.tamanho < 14)
                break;
            ResultadoFormula f;
            f.linha = le16(r.dados);
            f.coluna = le16(r.dados + 2);
            const unsigned char* v = r.dados + 6;
            // A number is any result whose top two bytes are not all ones: those mark the other kinds.
            if (le16(v + 6) != 0xFFFF) {
                f.numero = leDouble(v);
                if (std::isfinite(f.numero))
                    resultados.push_back(std::move(f));
            } else if (v[0] == 0) { // a text, in the STRING record that follows
                f.tipo = ResultadoFormula::Tipo::Texto;
                texto = std::move(f);
                textoPendente = true;
            } else if (v[0] == 1) {
                f.tipo = ResultadoFormula::Tipo::Logico;
                f.numero = v[2] != 0 ? 1 : 0;
                resultados.push_back(std::move(f));
            }
            // 2 is an error and 3 an empty text: the cell is left empty.
            break;
        }
        case kString:
            if (profundidade == 1 && textoPendente) {
                texto.texto = textoDe(r, fluxo, biff8);
                if (!texto.texto.empty())
                    resultados.push_back(std::move(texto));
            }
            textoPendente = false;
            break;
        default:
            break;
        }
    }
}

void solta(gpointer objeto)
{
    g_object_unref(objeto);
}

template <typename T> using Objeto = std::unique_ptr<T, decltype(&solta)>;

template <typename T> Objeto<T> objeto(T* p)
{
    return Objeto<T>(p, &solta);
}

// The workbook stream of a compound file, as much of it as could be read. Excel 97 and later name
// it "Workbook", Excel 5 and 95 "Book"; a file saved for both holds both, and the newer is read,
// as freexl does. Some writers spell the names in capitals.
std::vector<unsigned char> fluxoDoLivro(const char* caminho)
{
    static const bool iniciada = [] {
        gsf_init();
        // A damaged file makes libgsf complain on the terminal; here it only means no formula results.
        for (const char* dominio : {"libgsf", "libgsf:msole"})
            g_log_set_handler(
                dominio, static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK),
                [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
        return true;
    }();
    (void)iniciada;

    std::vector<unsigned char> bytes;
    GError* erro = nullptr;
    const auto arquivo = objeto(gsf_input_stdio_new(caminho, &erro));
    g_clear_error(&erro);
    if (!arquivo)
        return bytes;
    const auto ole = objeto(gsf_infile_msole_new(arquivo.get(), &erro));
    g_clear_error(&erro);
    if (!ole)
        return bytes;
    int escolhido = -1;
    for (int i = 0, n = gsf_infile_num_children(ole.get()); i < n; ++i) {
        const char* nome = gsf_infile_name_by_index(ole.get(), i);
        if (!nome)
            continue;
        if (g_ascii_strcasecmp(nome, "Workbook") == 0)
            escolhido = i;
        else if (g_ascii_strcasecmp(nome, "Book") == 0 && escolhido < 0)
            escolhido = i;
    }
    if (escolhido < 0)
        return bytes;
    const auto fluxo = objeto(gsf_infile_child_by_index(ole.get(), escolhido));
    if (!fluxo)
        return bytes;
    // In blocks, so that a size the directory merely claims is never allocated at once.
    constexpr gsf_off_t kBloco = 1 << 16;
    for (gsf_off_t falta = gsf_input_size(fluxo.get()); falta > 0;) {
        const auto n = static_cast<std::size_t>(std::min(falta, kBloco));
        const std::size_t antes = bytes.size();
        bytes.resize(antes + n);
        if (!gsf_input_read(fluxo.get(), n, bytes.data() + antes)) {
            bytes.resize(antes);
            break;
        }
        falta -= static_cast<gsf_off_t>(n);
    }
    return bytes;
}

} // namespace

std::vector<FormulasDaFolha> formulasDoFluxo(const unsigned char* dados, std::size_t tamanho)
{
    Fluxo fluxo(dados, tamanho);
    Registro r;
    if (!fluxo.proximo(r) || r.tipo != kBof || r.tamanho < 4 || le16(r.dados + 2) != kGlobais)
        return {};
    const bool biff8 = le16(r.dados) != 0x0500;

    std::vector<Folha> folhas;
    while (fluxo.proximo(r) && r.tipo != kEof) {
        // Past this the records are encrypted; freexl refuses such a workbook anyway.
        if (r.tipo == kFilepass)
            return {};
        Folha folha;
        if (r.tipo == kBoundsheet && folhaDe(r, biff8, folha))
            folhas.push_back(std::move(folha));
    }

    // Walked in the order they lie in the stream; a sheet said to begin inside one already walked
    // is a damaged entry, and skipping it keeps the work to one pass over the stream.
    std::stable_sort(
        folhas.begin(), folhas.end(), [](const Folha& a, const Folha& b) { return a.inicio < b.inicio; });
    std::vector<FormulasDaFolha> lidas;
    std::size_t fimDaAnterior = 0;
    for (Folha& folha : folhas) {
        if (folha.inicio < fimDaAnterior)
            continue;
        fluxo.vaiPara(folha.inicio);
        if (!fluxo.proximo(r) || r.tipo != kBof || r.tamanho < 4 || le16(r.dados + 2) != kPlanilha)
            continue;
        FormulasDaFolha lida {std::move(folha.nome), {}};
        leFolha(fluxo, biff8, lida.resultados);
        fimDaAnterior = fluxo.posicao();
        lidas.push_back(std::move(lida));
    }
    return lidas;
}

std::vector<FormulasDaFolha> formulasDoArquivo(const char* caminho)
{
    const std::vector<unsigned char> bytes = fluxoDoLivro(caminho);
    return formulasDoFluxo(bytes.data(), bytes.size());
}

} // namespace lavra::leitor
