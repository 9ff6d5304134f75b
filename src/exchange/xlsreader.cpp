// Legacy Excel workbooks (.xls, BIFF5 and BIFF8) through libfreexl.
//
// freexl 1.0.6 trusts what a file declares: a damaged or crafted .xls makes it read past its
// buffers, overflow the size of its cell table or count days for minutes (fuzz/ finds such files
// in seconds). No check ahead of it could cover all of that, so on Unix it reads in a child
// process: whatever happens to freexl there, the program goes on and the user is told the file
// could not be read. The child sends the cells back through a pipe; the sheets are built here.
// freexl reads no formula: the results Excel saved with them are read from the stream beside it.

#include "biffformulas.h"
#include "workbook.h"

#include <freexl.h>

#include <QFile>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <string>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#include <ctime>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#if defined(__SANITIZE_ADDRESS__)
#define LAVRA_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LAVRA_ASAN 1
#endif
#endif

namespace lavra::leitor {

namespace {

// Closes the handle however the reading ends.
class Handle {
public:
    ~Handle()
    {
        if (m_handle)
            freexl_close(m_handle);
    }
    const void** endereco() { return &m_handle; }
    const void* get() const { return m_handle; }

private:
    const void* m_handle = nullptr;
};

// What freexl read, as the child hands it over: a byte of kind, then its fields as they lie in
// memory, since both ends are the same program.
enum Registro : char {
    kFolha = 'S',  // the name of the next sheet
    kCelula = 'C', // row, column, freexl's type and its value
    kFim = 'F',    // the whole workbook was read
    kIlegivel = 'I',
    kSenha = 'P',
    kGrande = 'G',
};

class Saida {
public:
    explicit Saida(int fd) : m_fd(fd) {}

    void folha(const char* nome)
    {
        m_dados += kFolha;
        texto(nome ? nome : "");
    }
    void celula(unsigned int linha, unsigned short coluna, const FreeXL_CellValue& v)
    {
        m_dados += kCelula;
        bruto(linha);
        bruto(coluna);
        m_dados += static_cast<char>(v.type);
        switch (v.type) {
        case FREEXL_CELL_INT: bruto(v.value.int_value); break;
        case FREEXL_CELL_DOUBLE: bruto(v.value.double_value); break;
        default: texto(v.value.text_value ? v.value.text_value : "");
        }
        if (m_dados.size() >= 1 << 16)
            envia();
    }
    void fim(Registro r)
    {
        m_dados += r;
        envia();
    }
    std::string& dados() { return m_dados; }

private:
    template <typename T>
    void bruto(T valor)
    {
        m_dados.append(reinterpret_cast<const char*>(&valor), sizeof valor);
    }
    void texto(const char* s)
    {
        const auto n = static_cast<std::uint32_t>(std::strlen(s));
        bruto(n);
        m_dados.append(s, n);
    }
    // In the child, what is gathered goes down the pipe; in-process it stays for the reader.
    void envia()
    {
#ifdef Q_OS_UNIX
        if (m_fd < 0)
            return;
        std::size_t feito = 0;
        while (feito < m_dados.size()) {
            const ssize_t n = ::write(m_fd, m_dados.data() + feito, m_dados.size() - feito);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                ::_exit(1);
            feito += static_cast<std::size_t>(n);
        }
        m_dados.clear();
#endif
    }

    int m_fd;
    std::string m_dados;
};

// A formula's result is sent as the cell freexl would have given. Its style is not read, so a
// formula shown as a date comes back as its day count, a number. False past the cell limit.
bool enviaFormulas(const FormulasDaFolha& folha, const OpcoesLeitura& opcoes, Saida& saida,
                   std::size_t& celulas)
{
    for (const ResultadoFormula& f : folha.resultados) {
        if (f.coluna >= opcoes.maxColunas)
            continue;
        FreeXL_CellValue v{};
        switch (f.tipo) {
        case ResultadoFormula::Tipo::Numero:
            v.type = FREEXL_CELL_DOUBLE;
            v.value.double_value = f.numero;
            break;
        case ResultadoFormula::Tipo::Texto:
            v.type = FREEXL_CELL_TEXT;
            v.value.text_value = f.texto.c_str();
            break;
        case ResultadoFormula::Tipo::Logico:
            v.type = FREEXL_CELL_INT;
            v.value.int_value = f.numero != 0;
            break;
        }
        saida.celula(f.linha, f.coluna, v);
        if (++celulas > opcoes.maxCelulas)
            return false;
    }
    return true;
}

// Every cell freexl holds, sheet by sheet, the columns past the limit left out.
void leComFreexl(const QByteArray& local, const OpcoesLeitura& opcoes, Saida& saida)
{
    Handle xls;
    // freexl can report success and still hand back no workbook when the string table is damaged.
    if (freexl_open(local.constData(), xls.endereco()) != FREEXL_OK || !xls.get())
        return saida.fim(kIlegivel);
    unsigned int senha = 0;
    if (freexl_get_info(xls.get(), FREEXL_BIFF_PASSWORD, &senha) == FREEXL_OK && senha == FREEXL_BIFF_OBFUSCATED)
        return saida.fim(kSenha);
    unsigned int folhas = 0;
    // Sheets are chosen by a 16-bit index: past that freexl cannot reach them.
    if (freexl_get_info(xls.get(), FREEXL_BIFF_SHEET_COUNT, &folhas) != FREEXL_OK || folhas > 0xFFFF)
        return saida.fim(kIlegivel);

    // A file libgsf cannot open, though freexl could, simply gives no formula results.
    const std::vector<FormulasDaFolha> formulas = formulasDoArquivo(local.constData());

    std::size_t celulas = 0;
    for (unsigned int f = 0; f < folhas; ++f) {
        const auto indice = static_cast<unsigned short>(f);
        const char* nome = nullptr;
        unsigned int linhas = 0;
        unsigned short colunas = 0;
        if (freexl_get_worksheet_name(xls.get(), indice, &nome) != FREEXL_OK
            || freexl_select_active_worksheet(xls.get(), indice) != FREEXL_OK
            || freexl_worksheet_dimensions(xls.get(), &linhas, &colunas) != FREEXL_OK)
            return saida.fim(kIlegivel);
        saida.folha(nome);
        const auto lidas = static_cast<unsigned short>(std::min<int>(colunas, opcoes.maxColunas));
        for (unsigned int l = 0; l < linhas; ++l) {
            for (unsigned short c = 0; c < lidas; ++c) {
                FreeXL_CellValue v;
                if (freexl_get_cell_value(xls.get(), l, c, &v) != FREEXL_OK)
                    return saida.fim(kIlegivel);
                if (v.type == FREEXL_CELL_NULL)
                    continue;
                saida.celula(l, c, v);
                if (++celulas > opcoes.maxCelulas)
                    return saida.fim(kGrande);
            }
        }
        // Matched by name: the walker keeps worksheets only, and freexl need not count sheets alike.
        const auto achada = std::find_if(formulas.begin(), formulas.end(),
                                         [&](const FormulasDaFolha& x) { return nome && x.nome == nome; });
        if (achada != formulas.end() && !enviaFormulas(*achada, opcoes, saida, celulas))
            return saida.fim(kGrande);
    }
    saida.fim(kFim);
}

#ifdef Q_OS_UNIX
// A legitimate workbook is read in seconds; a crafted one may keep freexl counting for hours.
constexpr int kMaxSegundos = 60;

// Runs freexl in a child and returns what it sent, or an empty text when it did not finish.
std::string leEmOutroProcesso(const QByteArray& local, const OpcoesLeitura& opcoes)
{
    int tubo[2];
    if (::pipe(tubo) != 0)
        return {};
    const pid_t filho = ::fork();
    if (filho < 0) {
        ::close(tubo[0]);
        ::close(tubo[1]);
        return {};
    }
    if (filho == 0) {
        ::close(tubo[0]);
        rlimit cpu{kMaxSegundos, kMaxSegundos};
        ::setrlimit(RLIMIT_CPU, &cpu);
#ifndef LAVRA_ASAN
        // Far more than the largest .xls needs; the sanitizer's shadow memory needs the address space.
        rlimit memoria{rlim_t(4) << 30, rlim_t(4) << 30};
        ::setrlimit(RLIMIT_AS, &memoria);
#endif
        Saida saida(tubo[1]);
        leComFreexl(local, opcoes, saida);
        // No destructor or exit handler of the parent's may run here.
        ::_exit(0);
    }
    ::close(tubo[1]);

    std::string dados;
    char bloco[1 << 16];
    const std::time_t limite = std::time(nullptr) + 2 * kMaxSegundos;
    bool terminou = false;
    while (std::time(nullptr) < limite) {
        pollfd p{tubo[0], POLLIN, 0};
        const int pronto = ::poll(&p, 1, 1000);
        if (pronto < 0 && errno != EINTR)
            break;
        if (pronto <= 0)
            continue;
        const ssize_t n = ::read(tubo[0], bloco, sizeof bloco);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            terminou = n == 0;
            break;
        }
        dados.append(bloco, static_cast<std::size_t>(n));
    }
    ::close(tubo[0]);
    if (!terminou)
        ::kill(filho, SIGKILL);
    int estado = 0;
    while (::waitpid(filho, &estado, 0) < 0 && errno == EINTR) {
    }
    if (!terminou || !WIFEXITED(estado) || WEXITSTATUS(estado) != 0)
        return {};
    return dados;
}
#endif

// freexl gives dates as "YYYY-MM-DD", with " HH:MM:SS" for a date and time.
double diaDe(const std::string& texto)
{
    const QString t = QString::fromLatin1(texto.data(), static_cast<qsizetype>(texto.size()));
    const QDate data = QDate::fromString(t.left(10), Qt::ISODate);
    if (!data.isValid())
        return 0;
    double dia = static_cast<double>(QDate(1899, 12, 30).daysTo(data));
    if (t.size() >= 19) {
        const QTime hora = QTime::fromString(t.mid(11, 8), QStringLiteral("HH:mm:ss"));
        if (hora.isValid())
            dia += hora.msecsSinceStartOfDay() / 86400000.0;
    }
    return dia;
}

// Reads what leComFreexl wrote, checking every length against what is left.
class Entrada {
public:
    explicit Entrada(const std::string& dados) : m_dados(dados) {}

    bool fim() const { return m_pos >= m_dados.size(); }
    bool tipo(char& r) { return bruto(r); }
    template <typename T>
    bool bruto(T& valor)
    {
        if (m_dados.size() - m_pos < sizeof valor)
            return false;
        std::memcpy(&valor, m_dados.data() + m_pos, sizeof valor);
        m_pos += sizeof valor;
        return true;
    }
    bool texto(std::string& s)
    {
        std::uint32_t n = 0;
        if (!bruto(n) || m_dados.size() - m_pos < n)
            return false;
        s.assign(m_dados, m_pos, n);
        m_pos += n;
        return true;
    }

private:
    const std::string& m_dados;
    std::size_t m_pos = 0;
};

} // namespace

void leXls(const QString& caminho, Pasta& pasta, const OpcoesLeitura& opcoes)
{
    const QByteArray local = QFile::encodeName(caminho);
#ifdef Q_OS_UNIX
    const std::string dados = leEmOutroProcesso(local, opcoes);
#else
    Saida saida(-1);
    leComFreexl(local, opcoes, saida);
    const std::string dados = std::move(saida.dados());
#endif

    using Bruto = Planilha::Bruto;
    auto textos = std::make_shared<std::vector<std::string>>();
    Entrada entrada(dados);
    std::size_t celulas = 0;
    char r = 0;
    while (entrada.tipo(r)) {
        switch (r) {
        case kFolha: {
            std::string nome;
            if (!entrada.texto(nome))
                throw ErroPasta(erroPastaIlegivel(caminho));
            pasta.planilhas.push_back(std::make_unique<Planilha>(
                QString::fromUtf8(nome.data(), static_cast<qsizetype>(nome.size())), opcoes.maxColunas));
            pasta.planilhas.back()->usaTextos(textos);
            break;
        }
        case kCelula: {
            unsigned int l = 0;
            unsigned short c = 0;
            unsigned char tipo = 0;
            if (!entrada.bruto(l) || !entrada.bruto(c) || !entrada.bruto(tipo) || pasta.planilhas.empty()
                || l > INT_MAX)
                throw ErroPasta(erroPastaIlegivel(caminho));
            Planilha& planilha = *pasta.planilhas.back();
            const int li = static_cast<int>(l);
            int inteiro = 0;
            double real = 0;
            std::string texto;
            const bool lido = tipo == FREEXL_CELL_INT      ? entrada.bruto(inteiro)
                            : tipo == FREEXL_CELL_DOUBLE ? entrada.bruto(real)
                                                         : entrada.texto(texto);
            if (!lido)
                throw ErroPasta(erroPastaIlegivel(caminho));
            switch (tipo) {
            case FREEXL_CELL_INT: planilha.poe(li, c, Bruto::Numero, inteiro); break;
            case FREEXL_CELL_DOUBLE: planilha.poe(li, c, Bruto::Numero, real); break;
            case FREEXL_CELL_TEXT:
            case FREEXL_CELL_SST_TEXT:
                textos->push_back(std::move(texto));
                planilha.poe(li, c, Bruto::Texto, 0, static_cast<std::uint32_t>(textos->size() - 1));
                break;
            case FREEXL_CELL_DATE:
            case FREEXL_CELL_DATETIME: planilha.poe(li, c, Bruto::Data, diaDe(texto)); break;
            // A time alone is no day; it is kept as the fraction it is.
            case FREEXL_CELL_TIME: planilha.poe(li, c, Bruto::Numero, diaDe("1899-12-30 " + texto)); break;
            default: continue;
            }
            if (++celulas > opcoes.maxCelulas)
                throw ErroPasta(erroPastaGrande(caminho));
            break;
        }
        case kFim:
            if (!entrada.fim())
                throw ErroPasta(erroPastaIlegivel(caminho));
            return;
        case kSenha: throw ErroPasta(erroPastaSenha(caminho));
        case kGrande: throw ErroPasta(erroPastaGrande(caminho));
        default: throw ErroPasta(erroPastaIlegivel(caminho));
        }
    }
    // The child died or gave up before the end: freexl could not read the file.
    throw ErroPasta(erroPastaIlegivel(caminho));
}

} // namespace lavra::leitor
