#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace lavra {

// One cell as a workbook holds it. A date is a date only when the workbook says so (a date
// format or a date value type); a number that merely looks like one stays a number.
struct Celula {
    enum class Tipo : std::uint8_t { Vazia, Texto, Numero, Data, Logico };
    Tipo tipo = Tipo::Vazia;
    double numero = 0;  // a number, a date's day count from 30/12/1899, or 0/1 for a boolean
    QString texto;

    bool vazia() const { return tipo == Tipo::Vazia || (tipo == Tipo::Texto && texto.trimmed().isEmpty()); }
    QDate data() const;
    // The cell as a text: numbers under the machine's decimal symbol, dates as dd/mm/yyyy.
    QString comoTexto() const;
};

// A workbook that cannot be read: the message is for the user, in plain words.
class ErroPasta : public std::runtime_error {
public:
    explicit ErroPasta(const QString& mensagem) : std::runtime_error(mensagem.toStdString()), m_mensagem(mensagem) {}
    const QString& mensagem() const { return m_mensagem; }

private:
    QString m_mensagem;
};

// One sheet, held in memory as the readers fill it. Rows and columns count from 1, as the user
// sees them in the spreadsheet program.
class Planilha {
public:
    explicit Planilha(QString nome, int maxColunas) : m_nome(std::move(nome)), m_maxColunas(maxColunas) {}

    const QString& nome() const { return m_nome; }
    // The last row that holds any cell; 0 for an empty sheet.
    int linhasUsadas() const { return static_cast<int>(m_linhas.size()); }
    Celula celula(int linha, int coluna) const;

    // For the readers: from 0, as the file formats count. Columns past the limit are not kept.
    enum class Bruto : std::uint8_t { Vazia, Texto, Numero, Data, Logico };
    void poe(int linha0, int coluna0, Bruto tipo, double numero, std::uint32_t texto = 0);
    // A number's format is known only once the styles are read: xf is its style's index.
    void poeEstilo(int linha0, int coluna0, std::uint32_t xf);
    // Repeats a cell, as it was stored, that many rows below itself; false when it holds nothing.
    bool copiaAbaixo(int linha0, int coluna0, int linhas);
    // Drops the rows past the last that holds a value: a formatted empty cell is not a used one.
    void conclui();
    void usaTextos(std::shared_ptr<const std::vector<std::string>> textos) { m_textos = std::move(textos); }
    // The styles whose number format is a date, and the workbook's day zero counted from 30/12/1899.
    void usaEstilosDeData(std::shared_ptr<const std::vector<bool>> estilos, qint64 deslocamento = 0)
    {
        m_estilosDeData = std::move(estilos);
        m_deslocamento = deslocamento;
    }
    std::size_t celulas() const { return m_celulas; }

private:
    struct Bruta {
        double numero = 0;
        std::uint32_t texto = 0;   // index into the workbook's texts
        std::uint16_t estilo = 0;  // sixteen bytes a cell: the workbook is held whole while it is read
        Bruto tipo = Bruto::Vazia;
    };
    Bruta* lugar(int linha0, int coluna0);

    QString m_nome;
    int m_maxColunas = 0;
    std::vector<std::vector<Bruta>> m_linhas;
    std::shared_ptr<const std::vector<std::string>> m_textos;
    std::shared_ptr<const std::vector<bool>> m_estilosDeData;
    std::size_t m_celulas = 0;
    qint64 m_deslocamento = 0;
};

// A workbook read whole: its sheets in order.
struct Pasta {
    QString caminho;
    std::vector<std::unique_ptr<Planilha>> planilhas;

    QStringList nomes() const;
    const Planilha* planilha(const QString& nome) const;
};

struct OpcoesLeitura {
    // Columns past this one are dropped as the file is read, so memory follows what is used.
    int maxColunas = 256;
    // Refused beyond this, as no laboratory sheet needs it and memory would run out first.
    std::size_t maxCelulas = 20'000'000;
};

// Reads an .xlsx, .ods or .xls workbook, whatever its name says, by what its bytes are. Throws
// ErroPasta for a file that is missing, damaged, protected by a password, empty or too large.
Pasta abrePasta(const QString& caminho, const OpcoesLeitura& opcoes = {});

// The readers behind abrePasta, each from its own library.
namespace leitor {
void leOpenDocument(const QByteArray& bytes, bool ods, Pasta& pasta, const OpcoesLeitura& opcoes);
void leXls(const QString& caminho, Pasta& pasta, const OpcoesLeitura& opcoes);
}

// Messages of the readers.
QString erroPastaIlegivel(const QString& caminho);
QString erroPastaGrande(const QString& caminho);
QString erroPastaSenha(const QString& caminho);

} // namespace lavra
