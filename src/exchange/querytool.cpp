#include "querytool.h"

#include "base/numbers.h"
#include "store/connection.h"
#include "store/query.h"
#include "store/rowreader.h"
#include "store/store.h"
#include "workbook.h"
#include "xlsxfile.h"

#include <QDate>
#include <QFileInfo>
#include <QSaveFile>

#include <chrono>
#include <future>

namespace lavra {

namespace {

// A letter that LIKE would take as a wildcard is escaped, so that it matches only itself.
QString literalDeLike(const QString& texto)
{
    QString escapado = texto;
    escapado.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    escapado.replace(QLatin1Char('%'), QStringLiteral("\\%"));
    escapado.replace(QLatin1Char('_'), QStringLiteral("\\_"));
    return escapado;
}

// The number typed, with either decimal symbol.
std::optional<double> numeroDigitado(const QString& texto)
{
    bool ok = false;
    const double numero = QLocale::c().toDouble(QString(texto).replace(QLatin1Char(','), QLatin1Char('.')).trimmed(), &ok);
    return ok ? std::optional(numero) : std::nullopt;
}

// The date typed as the machine writes dates, with a year of two or four digits, or as ISO. Two
// digits are read as the platform always did: 00 to 29 in this century, 30 to 99 in the last.
std::optional<QDate> dataDigitada(const QString& texto)
{
    const QString t = texto.trimmed();
    const QLocale locale = machineLocale();
    const QString curto = locale.dateFormat(QLocale::ShortFormat);
    const QString longo = curto.contains(QStringLiteral("yyyy")) ? curto : QString(curto).replace(QStringLiteral("yy"), QStringLiteral("yyyy"));
    for (const QString& formato : {longo, QStringLiteral("yyyy-MM-dd")}) {
        const QDate data = locale.toDate(t, formato);
        if (data.isValid())
            return data;
    }
    if (curto != longo) {
        const QDate data = locale.toDate(t, curto);
        if (data.isValid())
            return data.year() < 1930 ? data.addYears(100) : data;
    }
    return std::nullopt;
}

bool comparaValor(Criterio criterio)
{
    return criterio == Criterio::IgualA || criterio == Criterio::MenorQue || criterio == Criterio::MaiorQue;
}

QString operadorDe(Criterio criterio)
{
    switch (criterio) {
    case Criterio::MenorQue: return QStringLiteral(" < ");
    case Criterio::MaiorQue: return QStringLiteral(" > ");
    default: return QStringLiteral(" = ");
    }
}

QString padraoDe(Criterio criterio, const QString& texto)
{
    const QString literal = literalDeLike(texto);
    switch (criterio) {
    case Criterio::ComecaCom: return literal + QLatin1Char('%');
    case Criterio::Contem: return QLatin1Char('%') + literal + QLatin1Char('%');
    default: return QLatin1Char('%') + literal;
    }
}

// A text column's comparisons and order ignore case, accented letters too, and follow the
// machine's alphabet.
const QString kTexto = QStringLiteral(" COLLATE lavra");

} // namespace

const QList<OrigemConsulta>& origensConsulta()
{
    static const QList<OrigemConsulta> origens = {
        {QStringLiteral("Análises"), QStringLiteral("Analises")},
        {QStringLiteral("Clientes"), QStringLiteral("Clientes")},
        {QStringLiteral("Corretivos"), QStringLiteral("Calcario")},
        {QStringLiteral("Fertilizantes"), QStringLiteral("NPK")},
        {QStringLiteral("Recomendações com fórmulas"), QStringLiteral("RecoForm")},
        {QStringLiteral("Recomendações com formulação"), QStringLiteral("RecoFormulac")},
        {QStringLiteral("Recomendações para essências florestais"), QStringLiteral("RecoFlorest")},
    };
    return origens;
}

const QStringList& criteriosConsulta()
{
    static const QStringList criterios = {QStringLiteral("igual a"),    QStringLiteral("menor que"),
                                          QStringLiteral("maior que"),  QStringLiteral("começa com"),
                                          QStringLiteral("contém"),     QStringLiteral("termina com")};
    return criterios;
}

GrupoDoCampo grupoDoCampo(ColumnType tipo)
{
    switch (tipo) {
    case ColumnType::SmallInt:
    case ColumnType::Single:
    case ColumnType::Currency: return GrupoDoCampo::Numero;
    case ColumnType::Date: return GrupoDoCampo::Data;
    case ColumnType::Text: return GrupoDoCampo::Texto;
    default: return GrupoDoCampo::Nenhum;
    }
}

QList<CampoConsulta> CamposDaOrigem(const Store& db, const QString& tabela)
{
    const Cursor cursor = consulta::sql(db, QStringLiteral("SELECT * FROM %1 WHERE 0").arg(quoteIdentifier(tabela)));
    QList<CampoConsulta> campos;
    for (int i = 0; i < cursor.columnCount(); ++i)
        campos.append({cursor.columnName(i), cursor.columnType(i)});
    return campos;
}

Parada ChecaConsulta(const PedidoConsulta& pedido)
{
    if (pedido.origem < 0 || pedido.origem >= origensConsulta().size())
        return Desfecho::aviso(QStringLiteral("Selecione a origem dos dados!"), QStringLiteral("lstTabs"));
    if (pedido.campo < 0 || pedido.campo >= pedido.campos.size())
        return Desfecho::aviso(QStringLiteral("Selecione o campo para filtrar os dados!"), QStringLiteral("lstCampos"));
    if (pedido.criterio < 0 || pedido.criterio >= criteriosConsulta().size())
        return Desfecho::aviso(QStringLiteral("Escolha o critério de filtragem!"), QStringLiteral("cboCrit"));
    if (pedido.informacao.isEmpty())
        return Desfecho::aviso(QStringLiteral("Defina a informação para  o critério de filltragem!"),
                               QStringLiteral("txtInfoCrit"));

    const CampoConsulta& campo = pedido.campos[pedido.campo];
    const auto criterio = static_cast<Criterio>(pedido.criterio);
    const QString nomeCriterio = criteriosConsulta()[pedido.criterio];
    if (!comparaValor(criterio))
        return std::nullopt;
    switch (grupoDoCampo(campo.tipo)) {
    case GrupoDoCampo::Numero:
        if (!numeroDigitado(pedido.informacao))
            return Desfecho::aviso(QStringLiteral("O campo %1 é numérico: informe um número para o critério \"%2\".")
                                       .arg(campo.nome, nomeCriterio),
                                   QStringLiteral("txtInfoCrit"));
        break;
    case GrupoDoCampo::Data:
        if (!dataDigitada(pedido.informacao))
            return Desfecho::aviso(QStringLiteral("O campo %1 é uma data: informe uma data válida (%2) para o critério "
                                                  "\"%3\".")
                                       .arg(campo.nome, machineLocale().dateFormat(QLocale::ShortFormat).toLower(),
                                            nomeCriterio),
                                   QStringLiteral("txtInfoCrit"));
        break;
    default: break;
    }
    return std::nullopt;
}

ComandoConsulta MontaConsulta(const PedidoConsulta& pedido)
{
    ComandoConsulta comando;
    comando.tabela = origensConsulta()[pedido.origem].tabela;
    const CampoConsulta& campo = pedido.campos[pedido.campo];
    const QString nome = quoteIdentifier(campo.nome);
    const auto criterio = static_cast<Criterio>(pedido.criterio);
    const QString& v = pedido.informacao;

    QString filtro;
    QString ordem = nome;
    switch (grupoDoCampo(campo.tipo)) {
    case GrupoDoCampo::Numero:
        if (comparaValor(criterio)) {
            filtro = nome + operadorDe(criterio) + QLatin1Char('?');
            comando.valores << *numeroDigitado(v);
        } else {
            // The number's plain text, as the program shows it, with the point for decimals.
            filtro = QStringLiteral("printf('%.15g', %1) LIKE ? ESCAPE '\\'").arg(nome);
            comando.valores << padraoDe(criterio, QString(v).replace(QLatin1Char(','), QLatin1Char('.')));
        }
        break;
    case GrupoDoCampo::Data:
        if (comparaValor(criterio)) {
            filtro = QStringLiteral("date(%1)").arg(nome) + operadorDe(criterio) + QLatin1Char('?');
            comando.valores << dataDigitada(v)->toString(Qt::ISODate);
        } else {
            // Part of the date as it is written, dd/mm/yyyy; a whole date is taken in any form.
            const auto data = dataDigitada(v);
            const QString texto = data ? data->toString(QStringLiteral("dd/MM/yyyy")) : v;
            filtro = QStringLiteral("strftime('%d/%m/%Y', %1) LIKE ? ESCAPE '\\'").arg(nome);
            comando.valores << padraoDe(criterio, texto);
        }
        break;
    case GrupoDoCampo::Texto:
        if (comparaValor(criterio)) {
            filtro = nome + kTexto + operadorDe(criterio) + QLatin1Char('?');
            comando.valores << v;
        } else {
            filtro = QStringLiteral("dobra(%1) LIKE dobra(?) ESCAPE '\\'").arg(nome);
            comando.valores << padraoDe(criterio, v);
        }
        ordem += kTexto;
        break;
    case GrupoDoCampo::Nenhum:
        // No comparison at all: the rows where the field is set and not zero.
        filtro = nome;
        break;
    }
    const QString tabela = quoteIdentifier(comando.tabela);
    comando.sql = QStringLiteral("SELECT * FROM %1 WHERE %2 ORDER BY %3;").arg(tabela, filtro, ordem);
    comando.contagem = QStringLiteral("SELECT count(*) FROM %1 WHERE %2;").arg(tabela, filtro);
    return comando;
}

QString textoDoValor(const QVariant& valor)
{
    switch (valor.typeId()) {
    case QMetaType::UnknownType: return {};
    case QMetaType::QDate: return machineLocale().toString(valor.toDate(), QLocale::ShortFormat);
    case QMetaType::Float:
    case QMetaType::Double:
    case QMetaType::Int:
    case QMetaType::LongLong: return variantNumberText(valor);
    default: {
        // One line for each row, whatever a note holds.
        QString texto = valor.toString();
        texto.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
        texto.replace(QLatin1Char('\n'), QLatin1Char(' '));
        texto.replace(QLatin1Char('\r'), QLatin1Char(' '));
        return texto;
    }
    }
}

namespace {

// Where the rows go.
class Destino {
public:
    virtual ~Destino() = default;
    virtual void colunas(const QStringList& nomes) = 0;
    virtual void linha(const QVector<QVariant>& valores) = 0;
    virtual void fecha() = 0;
};

class DestinoPlanilha final : public Destino {
public:
    DestinoPlanilha(const QString& caminho, qint64 celulas, std::function<void()> espera)
        : m_escritor(caminho, celulas), m_espera(std::move(espera))
    {
        m_escritor.folha(QStringLiteral("Plan1"));
    }
    void colunas(const QStringList& nomes) override { m_escritor.linha(QVector<QVariant>(nomes.begin(), nomes.end())); }
    void linha(const QVector<QVariant>& valores) override { m_escritor.linha(valores); }
    void fecha() override
    {
        // Packing a large workbook takes seconds; it runs aside so that the window can say so.
        auto tarefa = std::async(std::launch::async, [this] { m_escritor.fecha(); });
        while (tarefa.wait_for(std::chrono::milliseconds(40)) != std::future_status::ready) {
            if (m_espera)
                m_espera();
        }
        tarefa.get();
    }

private:
    EscritorXlsx m_escritor;
    std::function<void()> m_espera;
};

// The text file: an empty line, the request, an empty line, the column names and the rows, each
// entry preceded by ";".
class DestinoTexto final : public Destino {
public:
    DestinoTexto(const QString& caminho, const QString& pedido) : m_arquivo(caminho)
    {
        if (!m_arquivo.open(QIODevice::WriteOnly | QIODevice::Text))
            throw ErroPasta(falha());
        escreve(QString());
        escreve(QLatin1Char(' ') + pedido);
        escreve(QString());
    }
    void colunas(const QStringList& nomes) override
    {
        QString texto;
        for (const QString& nome : nomes)
            texto += QLatin1Char(';') + nome;
        escreve(texto);
    }
    void linha(const QVector<QVariant>& valores) override
    {
        QString texto;
        for (const QVariant& valor : valores)
            texto += QLatin1Char(';') + textoDoValor(valor);
        escreve(texto);
    }
    void fecha() override
    {
        if (!m_arquivo.commit())
            throw ErroPasta(falha());
    }

private:
    void escreve(const QString& linha) { m_arquivo.write((linha + QLatin1Char('\n')).toUtf8()); }
    QString falha() const
    {
        return QStringLiteral("Não foi possível gravar o arquivo %1: %2")
            .arg(QFileInfo(m_arquivo.fileName()).fileName(), m_arquivo.errorString());
    }

    QSaveFile m_arquivo;
};

} // namespace

ResultadoConsulta GeraConsulta(const Store& db, const PedidoConsulta& pedido, SaidaConsulta saida,
                               const QString& caminho, const ProgressoConsulta& progresso)
{
    const ComandoConsulta comando = MontaConsulta(pedido);
    Connection cn(db.strConn);
    cn.open();
    ResultadoConsulta resultado;
    qint64 total = 0;
    {
        RowReader contagem(cn, comando.tabela, comando.contagem, comando.valores);
        if (contagem.next())
            total = contagem.value(0).toLongLong();
    }
    if (total == 0)
        return resultado;

    RowReader leitor(cn, comando.tabela, comando.sql, comando.valores);
    QStringList nomes;
    for (int i = 0; i < leitor.columnCount(); ++i)
        nomes << leitor.columnName(i);
    std::unique_ptr<Destino> destino;
    if (saida == SaidaConsulta::Planilha) {
        destino = std::make_unique<DestinoPlanilha>(caminho, total * leitor.columnCount(), progresso.gravando);
    } else {
        const QString texto = QStringList{origensConsulta()[pedido.origem].texto, pedido.campos[pedido.campo].nome,
                                          criteriosConsulta()[pedido.criterio], pedido.informacao}
                                  .join(QLatin1Char(';'));
        destino = std::make_unique<DestinoTexto>(caminho, texto);
    }
    destino->colunas(nomes);
    QVector<QVariant> valores(leitor.columnCount());
    while (leitor.next()) {
        for (int i = 0; i < valores.size(); ++i)
            valores[i] = leitor.value(i);
        destino->linha(valores);
        ++resultado.linhas;
        if (progresso.linha && !progresso.linha(resultado.linhas, total)) {
            resultado.cancelada = true;
            return resultado;
        }
    }
    destino->fecha();
    return resultado;
}

} // namespace lavra
