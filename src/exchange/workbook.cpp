#include "workbook.h"

#include "base/numbers.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>

namespace lavra {

namespace {

const QDate kOrigem(1899, 12, 30);

constexpr qint64 kMaxArquivo = qint64(512) << 20;

QString nomeCurto(const QString& caminho) { return QFileInfo(caminho).fileName(); }

// An Office file encrypted with a password is a compound file holding this stream.
bool ooxmlCifrado(const QByteArray& bytes)
{
    static const QByteArray nome = [] {
        QByteArray b;
        for (const char c : QByteArrayLiteral("EncryptionInfo"))
            b.append(c).append('\0');
        return b;
    }();
    return bytes.contains(nome);
}

} // namespace

QString erroPastaSenha(const QString& caminho)
{
    return QStringLiteral("A pasta de trabalho %1 está protegida por senha. Abra-a na planilha eletrônica, retire a "
                          "senha, salve-a e tente de novo.")
        .arg(nomeCurto(caminho));
}

QString erroPastaIlegivel(const QString& caminho)
{
    return QStringLiteral("O arquivo %1 não pôde ser lido: está danificado ou não é uma pasta de trabalho do Excel "
                          "(.xls, .xlsx) ou do LibreOffice Calc (.ods).")
        .arg(nomeCurto(caminho));
}

QString erroPastaGrande(const QString& caminho)
{
    return QStringLiteral("A pasta de trabalho %1 é grande demais para ser lida. Divida os dados em arquivos "
                          "menores e importe um de cada vez.")
        .arg(nomeCurto(caminho));
}

QDate Celula::data() const
{
    // A damaged file can hold any double; past some hundred million years, or not a number at
    // all, there is no day to convert to.
    if (!(std::fabs(numero) < 1e11))
        return {};
    return kOrigem.addDays(static_cast<qint64>(std::floor(numero)));
}

QString Celula::comoTexto() const
{
    switch (tipo) {
    case Tipo::Vazia: return {};
    case Tipo::Texto: return texto;
    case Tipo::Numero: return numberText(numero);
    case Tipo::Data: return data().toString(QStringLiteral("dd/MM/yyyy"));
    case Tipo::Logico: return numero != 0 ? QStringLiteral("Verdadeiro") : QStringLiteral("Falso");
    }
    return {};
}

Planilha::Bruta* Planilha::lugar(int linha0, int coluna0)
{
    if (linha0 < 0 || coluna0 < 0 || coluna0 >= m_maxColunas)
        return nullptr;
    if (static_cast<std::size_t>(linha0) >= m_linhas.size())
        m_linhas.resize(static_cast<std::size_t>(linha0) + 1);
    auto& linha = m_linhas[static_cast<std::size_t>(linha0)];
    if (static_cast<std::size_t>(coluna0) >= linha.size())
        linha.resize(static_cast<std::size_t>(coluna0) + 1);
    return &linha[static_cast<std::size_t>(coluna0)];
}

void Planilha::poe(int linha0, int coluna0, Bruto tipo, double numero, std::uint32_t texto)
{
    Bruta* c = lugar(linha0, coluna0);
    if (!c)
        return;
    if (c->tipo == Bruto::Vazia && tipo != Bruto::Vazia)
        ++m_celulas;
    c->tipo = tipo;
    c->numero = numero;
    c->texto = texto;
}

void Planilha::poeEstilo(int linha0, int coluna0, std::uint32_t xf)
{
    // No workbook has that many styles; a number past them is read as a plain number.
    if (Bruta* c = lugar(linha0, coluna0); c && xf <= 0xffff)
        c->estilo = static_cast<std::uint16_t>(xf);
}

bool Planilha::copiaAbaixo(int linha0, int coluna0, int linhas)
{
    if (linha0 < 0 || static_cast<std::size_t>(linha0) >= m_linhas.size()
        || coluna0 < 0 || static_cast<std::size_t>(coluna0) >= m_linhas[static_cast<std::size_t>(linha0)].size())
        return false;
    const Bruta origem = m_linhas[static_cast<std::size_t>(linha0)][static_cast<std::size_t>(coluna0)];
    if (origem.tipo == Bruto::Vazia)
        return false;
    Bruta* destino = lugar(linha0 + linhas, coluna0);
    if (!destino)
        return false;
    if (destino->tipo == Bruto::Vazia)
        ++m_celulas;
    *destino = origem;
    return true;
}

void Planilha::conclui()
{
    const auto temValor = [](const std::vector<Bruta>& linha) {
        for (const Bruta& c : linha) {
            if (c.tipo != Bruto::Vazia)
                return true;
        }
        return false;
    };
    while (!m_linhas.empty() && !temValor(m_linhas.back()))
        m_linhas.pop_back();
}

Celula Planilha::celula(int linha, int coluna) const
{
    Celula c;
    if (linha < 1 || coluna < 1 || static_cast<std::size_t>(linha) > m_linhas.size())
        return c;
    const auto& l = m_linhas[static_cast<std::size_t>(linha) - 1];
    if (static_cast<std::size_t>(coluna) > l.size())
        return c;
    const Bruta& b = l[static_cast<std::size_t>(coluna) - 1];
    c.numero = b.numero;
    switch (b.tipo) {
    case Bruto::Vazia: break;
    case Bruto::Texto:
        c.tipo = Celula::Tipo::Texto;
        if (m_textos && b.texto < m_textos->size())
            c.texto = QString::fromStdString((*m_textos)[b.texto]);
        break;
    case Bruto::Numero: {
        const bool data = m_estilosDeData && b.estilo < m_estilosDeData->size() && (*m_estilosDeData)[b.estilo];
        c.tipo = data ? Celula::Tipo::Data : Celula::Tipo::Numero;
        if (data)
            c.numero += static_cast<double>(m_deslocamento);
        break;
    }
    case Bruto::Data: c.tipo = Celula::Tipo::Data; break;
    case Bruto::Logico: c.tipo = Celula::Tipo::Logico; break;
    }
    return c;
}

QStringList Pasta::nomes() const
{
    QStringList n;
    for (const auto& p : planilhas)
        n << p->nome();
    return n;
}

const Planilha* Pasta::planilha(const QString& nome) const
{
    for (const auto& p : planilhas) {
        if (p->nome() == nome)
            return p.get();
    }
    return nullptr;
}

Pasta abrePasta(const QString& caminho, const OpcoesLeitura& opcoes)
{
    QFile arquivo(caminho);
    if (!arquivo.exists())
        throw ErroPasta(QStringLiteral("O arquivo %1 não foi encontrado.").arg(caminho));
    if (!arquivo.open(QIODevice::ReadOnly))
        throw ErroPasta(QStringLiteral("O arquivo %1 não pôde ser aberto: %2").arg(caminho, arquivo.errorString()));
    if (arquivo.size() == 0)
        throw ErroPasta(QStringLiteral("O arquivo %1 está vazio.").arg(nomeCurto(caminho)));
    if (arquivo.size() > kMaxArquivo)
        throw ErroPasta(erroPastaGrande(caminho));
    const QByteArray bytes = arquivo.readAll();
    arquivo.close();

    Pasta pasta;
    pasta.caminho = caminho;
    if (bytes.startsWith(QByteArrayLiteral("PK\x03\x04"))) {
        const bool ods = bytes.contains(QByteArrayLiteral("application/vnd.oasis.opendocument.spreadsheet"));
        leitor::leOpenDocument(bytes, ods, pasta, opcoes);
    } else if (bytes.startsWith(QByteArrayLiteral("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"))) {
        if (ooxmlCifrado(bytes))
            throw ErroPasta(erroPastaSenha(caminho));
        leitor::leXls(caminho, pasta, opcoes);
    } else {
        throw ErroPasta(erroPastaIlegivel(caminho));
    }
    if (pasta.planilhas.empty())
        throw ErroPasta(QStringLiteral("A pasta de trabalho %1 não tem planilhas.").arg(nomeCurto(caminho)));
    for (auto& p : pasta.planilhas)
        p->conclui();
    return pasta;
}

} // namespace lavra
