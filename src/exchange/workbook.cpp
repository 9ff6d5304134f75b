#include "workbook.h"

#include "base/numbers.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>

namespace lavra {

namespace {

const QDate kOrigem(1899, 12, 30);

// Past this much uncompressed content a workbook is refused before it is unpacked, so that a
// small file cannot fill the memory.
constexpr qint64 kMaxDescompactado = qint64(1) << 30;
constexpr qint64 kMaxArquivo = qint64(512) << 20;

QString nomeCurto(const QString& caminho) { return QFileInfo(caminho).fileName(); }

quint32 le32(const QByteArray& b, qint64 i)
{
    const auto* p = reinterpret_cast<const unsigned char*>(b.constData()) + i;
    return quint32(p[0]) | quint32(p[1]) << 8 | quint32(p[2]) << 16 | quint32(p[3]) << 24;
}
quint16 le16(const QByteArray& b, qint64 i)
{
    const auto* p = reinterpret_cast<const unsigned char*>(b.constData()) + i;
    return quint16(p[0] | p[1] << 8);
}

// The sum of the uncompressed sizes the zip's central directory declares; -1 when there is no
// directory to read, which the reader will then report as damage.
qint64 tamanhoDescompactado(const QByteArray& zip)
{
    const qint64 n = zip.size();
    for (qint64 fim = n - 22; fim >= 0 && fim >= n - 22 - 65535; --fim) {
        if (le32(zip, fim) != 0x06054b50)
            continue;
        const qint64 entradas = le16(zip, fim + 10);
        qint64 pos = le32(zip, fim + 16);
        qint64 total = 0;
        for (qint64 e = 0; e < entradas; ++e) {
            if (pos + 46 > n || le32(zip, pos) != 0x02014b50)
                return -1;
            const quint32 descompactado = le32(zip, pos + 24);
            // Zip64 marks its sizes elsewhere; such a workbook is larger than any we take.
            if (descompactado == 0xffffffffu)
                return kMaxDescompactado + 1;
            total += descompactado;
            pos += 46 + le16(zip, pos + 28) + le16(zip, pos + 30) + le16(zip, pos + 32);
        }
        return total;
    }
    return -1;
}

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

QDate Celula::data() const { return kOrigem.addDays(static_cast<qint64>(std::floor(numero))); }

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
    if (Bruta* c = lugar(linha0, coluna0))
        c->estilo = xf;
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
        const qint64 total = tamanhoDescompactado(bytes);
        if (total < 0)
            throw ErroPasta(erroPastaIlegivel(caminho));
        if (total > kMaxDescompactado)
            throw ErroPasta(erroPastaGrande(caminho));
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
