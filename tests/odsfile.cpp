#include "odsfile.h"

#include <QDataStream>
#include <QDate>
#include <QXmlStreamWriter>

#include <QFile>

#include <zlib.h>

namespace lavra::test {

namespace {

const QString kTable = QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:table:1.0");
const QString kOffice = QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:office:1.0");
const QString kText = QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:text:1.0");

QByteArray conteudo(const QList<PlanilhaOds>& planilhas)
{
    QByteArray xml;
    QXmlStreamWriter w(&xml);
    w.writeStartDocument();
    w.writeNamespace(kOffice, QStringLiteral("office"));
    w.writeNamespace(kTable, QStringLiteral("table"));
    w.writeNamespace(kText, QStringLiteral("text"));
    w.writeStartElement(kOffice, QStringLiteral("document-content"));
    w.writeAttribute(kOffice, QStringLiteral("version"), QStringLiteral("1.2"));
    w.writeStartElement(kOffice, QStringLiteral("body"));
    w.writeStartElement(kOffice, QStringLiteral("spreadsheet"));
    for (const PlanilhaOds& p : planilhas) {
        w.writeStartElement(kTable, QStringLiteral("table"));
        w.writeAttribute(kTable, QStringLiteral("name"), p.nome);
        for (const auto& linha : p.linhas) {
            w.writeStartElement(kTable, QStringLiteral("table-row"));
            for (const QVariant& v : linha) {
                w.writeStartElement(kTable, QStringLiteral("table-cell"));
                QString texto;
                switch (v.typeId()) {
                case QMetaType::UnknownType: break;
                case QMetaType::QDate:
                    w.writeAttribute(kOffice, QStringLiteral("value-type"), QStringLiteral("date"));
                    w.writeAttribute(kOffice, QStringLiteral("date-value"), v.toDate().toString(Qt::ISODate));
                    texto = v.toDate().toString(QStringLiteral("dd/MM/yyyy"));
                    break;
                case QMetaType::Bool:
                    w.writeAttribute(kOffice, QStringLiteral("value-type"), QStringLiteral("boolean"));
                    w.writeAttribute(kOffice, QStringLiteral("boolean-value"), v.toBool() ? "true" : "false");
                    texto = v.toBool() ? QStringLiteral("VERDADEIRO") : QStringLiteral("FALSO");
                    break;
                case QMetaType::Int:
                case QMetaType::Double:
                    w.writeAttribute(kOffice, QStringLiteral("value-type"), QStringLiteral("float"));
                    w.writeAttribute(kOffice, QStringLiteral("value"), QString::number(v.toDouble(), 'g', 17));
                    texto = QString::number(v.toDouble());
                    break;
                default:
                    w.writeAttribute(kOffice, QStringLiteral("value-type"), QStringLiteral("string"));
                    texto = v.toString();
                }
                if (!texto.isEmpty())
                    w.writeTextElement(kText, QStringLiteral("p"), texto);
                w.writeEndElement();
            }
            w.writeEndElement();
        }
        w.writeEndElement();
    }
    w.writeEndDocument();
    return xml;
}

// A zip archive with its entries stored, not compressed: the simplest archive every reader takes.
// (The zip library of the tests would clash with the one inside the .xlsx writer.)
class Zip {
public:
    void adiciona(const QByteArray& nome, const QByteArray& dados)
    {
        const auto crc = static_cast<quint32>(
            crc32(0, reinterpret_cast<const Bytef*>(dados.constData()), static_cast<uInt>(dados.size())));
        const auto tamanho = static_cast<quint32>(dados.size());
        const auto offset = static_cast<quint32>(m_arquivo.size());
        const auto tamanhoNome = static_cast<quint16>(nome.size());
        // Version 1.0, no flags, stored, a fixed date; then the sizes and the name.
        escreve(m_arquivo) << quint32(0x04034b50) << quint16(10) << quint16(0) << quint16(0) << quint16(0)
                           << quint16(0x21) << crc << tamanho << tamanho << tamanhoNome << quint16(0);
        m_arquivo += nome + dados;
        escreve(m_diretorio) << quint32(0x02014b50) << quint16(20) << quint16(10) << quint16(0) << quint16(0)
                             << quint16(0) << quint16(0x21) << crc << tamanho << tamanho << tamanhoNome
                             << quint16(0) << quint16(0) << quint16(0) << quint16(0) << quint32(0) << offset;
        m_diretorio += nome;
        ++m_entradas;
    }
    QByteArray fecha() const
    {
        QByteArray fim;
        escreve(fim) << quint32(0x06054b50) << quint16(0) << quint16(0) << m_entradas << m_entradas
                     << quint32(m_diretorio.size()) << quint32(m_arquivo.size()) << quint16(0);
        return m_arquivo + m_diretorio + fim;
    }

private:
    // Appends little-endian fields at the end of a buffer.
    struct Fluxo {
        QDataStream dados;
        explicit Fluxo(QByteArray& b) : dados(&b, QIODevice::Append) { dados.setByteOrder(QDataStream::LittleEndian); }
        template <typename T>
        Fluxo& operator<<(T v)
        {
            dados << v;
            return *this;
        }
    };
    static Fluxo escreve(QByteArray& b) { return Fluxo(b); }

    QByteArray m_arquivo;
    QByteArray m_diretorio;
    quint16 m_entradas = 0;
};

} // namespace

bool gravaOds(const QString& caminho, const QList<PlanilhaOds>& planilhas)
{
    const QByteArray manifesto = R"(<?xml version="1.0" encoding="UTF-8"?>
<manifest:manifest xmlns:manifest="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0" manifest:version="1.2">
 <manifest:file-entry manifest:full-path="/" manifest:media-type="application/vnd.oasis.opendocument.spreadsheet"/>
 <manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml"/>
</manifest:manifest>
)";
    // The media type comes first, as readers look for it at a fixed place.
    Zip zip;
    zip.adiciona("mimetype", "application/vnd.oasis.opendocument.spreadsheet");
    zip.adiciona("META-INF/manifest.xml", manifesto);
    zip.adiciona("content.xml", conteudo(planilhas));
    QFile arquivo(caminho);
    return arquivo.open(QIODevice::WriteOnly) && arquivo.write(zip.fecha()) >= 0 && arquivo.flush();
}

} // namespace lavra::test
