#include "importanalysis.h"

#include "base/numbers.h"
#include "base/validation.h"
#include "registers/analysis.h"
#include "registers/interpretation.h"
#include "store/connection.h"
#include "store/databasefile.h"
#include "store/insertion.h"
#include "store/store.h"
#include "store/storeerror.h"
#include "workbook.h"
#include "xlsxfile.h"

#include <QDateTime>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>

#include <optional>
#include <variant>

namespace lavra {

namespace {

enum Caixa {
    kCliente, kLocal, kFazenda, kGleba, kArea, kData, kNumAnalise, kPH, kCa, kMg, kAl, kHAl, kSMP, kMO,
    kArgila, kP, kK, kUtilizacao, kMetodoP
};

// Two-digit years as the platform reads them: 00 to 29 in this century, 30 to 99 in the last.
int anoCompleto(int ano, int digitos) { return digitos > 2 ? ano : (ano < 30 ? 2000 + ano : 1900 + ano); }

bool soDigitos(const QString& t)
{
    return !t.isEmpty() && std::all_of(t.begin(), t.end(), [](QChar c) { return c.isDigit(); });
}

// A date written with separators, in the order of the machine's short date.
std::optional<QDate> dataDaMaquina(const QString& texto)
{
    static const QRegularExpression partes(QStringLiteral(R"(^\s*(\d{1,4})[/.-](\d{1,2})[/.-](\d{1,4})\s*$)"));
    const auto m = partes.match(texto);
    if (!m.hasMatch())
        return std::nullopt;
    const QString p1 = m.captured(1), p2 = m.captured(2), p3 = m.captured(3);
    int dia = 0, mes = 0, ano = 0, digitosAno = 0;
    if (p1.size() > 2) {  // year first, as ISO writes it
        ano = p1.toInt();
        digitosAno = static_cast<int>(p1.size());
        mes = p2.toInt();
        dia = p3.toInt();
    } else {
        const QString formato = machineLocale().dateFormat(QLocale::ShortFormat);
        const bool mesPrimeiro = formato.indexOf(QLatin1Char('M')) < formato.indexOf(QLatin1Char('d'));
        dia = (mesPrimeiro ? p2 : p1).toInt();
        mes = (mesPrimeiro ? p1 : p2).toInt();
        ano = p3.toInt();
        digitosAno = static_cast<int>(p3.size());
    }
    const QDate data(anoCompleto(ano, digitosAno), mes, dia);
    if (!data.isValid())
        return std::nullopt;
    return data;
}

// A form fitted: the date it makes, or the zero of dates when it makes none.
QDate forma(const QString& dia, const QString& mes, const QString& ano)
{
    if (!soDigitos(dia) || !soDigitos(mes) || !soDigitos(ano))
        return QDate(1899, 12, 30);
    const QDate data(anoCompleto(ano.toInt(), static_cast<int>(ano.size())), mes.toInt(), dia.toInt());
    return data.isValid() ? data : QDate(1899, 12, 30);
}

const QString& rotulo(int caixa) { return rotulosCaixas()[caixa]; }

struct LinhaLida {
    QString cliente, local, fazenda, gleba, numAnalise, codigo;
    QDate data;
    MedidasAnalise medidas;
};

struct Recusa {
    QString analise;
    QString motivo;
};

struct EmBranco {};

using Leitura = std::variant<LinhaLida, Recusa, EmBranco>;

std::optional<double> numeroDe(const Celula& c)
{
    if (c.tipo == Celula::Tipo::Numero)
        return c.numero;
    if (c.tipo == Celula::Tipo::Texto)
        return parseNumber(c.texto);
    return std::nullopt;
}

class Leitor {
public:
    Leitor(const Planilha& planilha, const Mapeamento& colunas) : m_planilha(planilha), m_colunas(colunas) {}

    Leitura le(int linha) const
    {
        std::array<Celula, kCaixas> c;
        QStringList vazias;
        for (int k = 0; k < kCaixas; ++k) {
            c[k] = m_planilha.celula(linha, m_colunas[k]);
            if (c[k].vazia())
                vazias << rotulo(k);
        }
        if (vazias.size() == kCaixas)
            return EmBranco{};

        LinhaLida l;
        l.cliente = c[kCliente].comoTexto().trimmed();
        l.local = c[kLocal].comoTexto().trimmed();
        l.fazenda = c[kFazenda].comoTexto().trimmed();
        l.gleba = c[kGleba].comoTexto().trimmed();
        l.numAnalise = c[kNumAnalise].comoTexto().trimmed();
        l.codigo = ComporCodigo(l.fazenda, l.gleba, c[kData].comoTexto().trimmed());
        const QString analise = l.cliente.isEmpty() ? l.codigo : l.codigo + QStringLiteral(" (") + l.cliente + QLatin1Char(')');
        if (!vazias.isEmpty()) {
            return Recusa{analise, (vazias.size() == 1 ? QStringLiteral("Célula vazia: ") : QStringLiteral("Células vazias: "))
                                       + vazias.join(QStringLiteral(", ")) + QLatin1Char('.')};
        }
        l.data = c[kData].tipo == Celula::Tipo::Data ? c[kData].data() : ControlaDada(c[kData].comoTexto().trimmed());

        const std::pair<int, Grandeza> figuras[] = {
            {kArea, Grandeza::Area}, {kPH, Grandeza::PH},   {kCa, Grandeza::Ca},         {kMg, Grandeza::Mg},
            {kAl, Grandeza::Al},     {kHAl, Grandeza::HAl}, {kSMP, Grandeza::SMP},       {kMO, Grandeza::MO},
            {kArgila, Grandeza::Argila}, {kP, Grandeza::Fosforo}, {kK, Grandeza::Potassio}};
        std::array<float, kCaixas> v{};
        for (const auto& [k, grandeza] : figuras) {
            const auto n = numeroDe(c[k]);
            if (!n) {
                return Recusa{analise, QStringLiteral("%1: '%2' não é um número (o símbolo decimal deste computador é '%3').")
                                           .arg(rotulo(k), c[k].comoTexto(), decimalSymbol())};
            }
            if (const auto fora = VerificaFaixa(grandeza, numberText(*n)))
                return Recusa{analise, rotulo(k) + QStringLiteral(": ") + *fora};
            v[k] = toSingle(*n);
        }
        for (const int k : {kUtilizacao, kMetodoP}) {
            const auto n = numeroDe(c[k]);
            if (!n || (*n != 1 && *n != 2)) {
                return Recusa{analise, QStringLiteral("%1: '%2' deveria ser 1 ou 2.").arg(rotulo(k), c[k].comoTexto())};
            }
            v[k] = static_cast<float>(*n);
        }
        if (!TemBasesOuAluminio(v[kAl], v[kK], v[kCa], v[kMg]))
            return Recusa{analise, kMsgSemBases};

        MedidasAnalise& m = l.medidas;
        m.area = v[kArea];
        m.pH = v[kPH];
        m.ca = v[kCa];
        m.mg = v[kMg];
        m.al = v[kAl];
        m.hAl = v[kHAl];
        m.smp = v[kSMP];
        m.mo = v[kMO];
        m.argila = v[kArgila];
        m.p = v[kP];
        m.k = v[kK];
        m.ctc = CTC(m.ca, m.mg, m.hAl, m.k);
        m.bases = SatBases(m.ca, m.mg, m.hAl, m.k);
        m.condicao = static_cast<int>(v[kUtilizacao]);
        m.metodoP = static_cast<int>(v[kMetodoP]);
        return l;
    }

private:
    const Planilha& m_planilha;
    const Mapeamento& m_colunas;
};

// The keys of a table's first column in capitals, read once: the import compares as the platform's
// capitals do, accents included, which the index's own comparison does not.
QSet<QString> chavesEmMaiusculas(const Connection& cn, const QString& sql)
{
    QSqlQuery q(cn.database());
    q.setForwardOnly(true);
    if (!q.exec(sql))
        throw engineError(q.lastError(), StoreError::Access::Read);
    QSet<QString> chaves;
    while (q.next())
        chaves.insert(q.value(0).toString().toUpper());
    return chaves;
}

} // namespace

QDate ControlaDada(const QString& texto)
{
    if (const auto data = dataDaMaquina(texto))
        return *data;
    switch (texto.size()) {
    case 8: return forma(texto.mid(0, 2), texto.mid(2, 2), texto.mid(4, 4));
    case 6:
        if (soDigitos(texto.mid(2, 2)) && texto.mid(2, 2).toInt() < 13)
            return forma(texto.mid(0, 2), texto.mid(2, 2), texto.mid(4, 2));
        if (soDigitos(texto.mid(2, 4)) && texto.mid(2, 4).toInt() > 1950 && texto.mid(2, 4).toInt() < 2010)
            return forma(texto.mid(0, 1), texto.mid(1, 1), texto.mid(2, 4));
        break;
    case 4: return forma(texto.mid(0, 1), texto.mid(1, 1), texto.mid(2, 2));
    default: break;
    }
    return QDate(1900, 1, 1);
}

const QStringList& rotulosCaixas()
{
    static const QStringList r = {
        QStringLiteral("Cliente"),          QStringLiteral("Local ou Cidade"),
        QStringLiteral("Fazenda ou Propriedade"), QStringLiteral("Gleba ou Lavoura"),
        QStringLiteral("Área (ha)"),        QStringLiteral("Data (dd/mm/aaaa)"),
        QStringLiteral("N°da Análise"),     QStringLiteral("pH (água)"),
        QStringLiteral("Ca (cmolc/dm³)"),   QStringLiteral("Mg (cmolc/dm³)"),
        QStringLiteral("Al (cmolc/dm³)"),   QStringLiteral("H+Al (cmol/dm³)"),
        QStringLiteral("Índice SMP"),       QStringLiteral("MO     (% m/v)"),
        QStringLiteral("Argila       (% m/v)"), QStringLiteral("P (mg/dm³)"),
        QStringLiteral("K (mg/dm³)"),       QStringLiteral("Utilização da área"),
        QStringLiteral("Método de extração de P")};
    return r;
}

const QStringList& cabecalhosExemplo()
{
    static const QStringList c = {
        QStringLiteral("Cliente"), QStringLiteral("Local"), QStringLiteral("Fazenda"), QStringLiteral("Gleba"),
        QStringLiteral("Área"), QStringLiteral("Data (dd/mm/aaaa)"), QStringLiteral("Nº_Análise"),
        QStringLiteral("pH"), QStringLiteral("Ca (cmolc/dm³)"), QStringLiteral("Mg (cmolc/dm³)"),
        QStringLiteral("Al (cmolc/dm³)"), QStringLiteral("H + Al (cmolc/dm³)"), QStringLiteral("SMP"),
        QStringLiteral("MO (%)"), QStringLiteral("Argila (%)"), QStringLiteral("P (mg/dm³)"),
        QStringLiteral("K (mg/dm³)"), QStringLiteral("Condição_área"), QStringLiteral("Extração_P")};
    return c;
}

void GeraPlanExcel(const QString& caminho)
{
    QVector<QVariant> cabecalho;
    for (const QString& c : cabecalhosExemplo())
        cabecalho << c;
    const QVector<QVariant> exemplo = {QStringLiteral("Ana Pereira"), QStringLiteral("Vale Verde"),
                                       QStringLiteral("Faz. Vale V."), QStringLiteral("Coxilha"), 35,
                                       QDate(2011, 6, 22), QStringLiteral("3245"), 5.2, 2.4, 1.3, 0.1, 5.2, 5.5,
                                       2.6, 46, 6.7, 45, 1, 1};
    gravaXlsx(caminho, {FolhaEscrita{QStringLiteral("Plan1"), {cabecalho, exemplo}}});
}

QString msgInstrucoes()
{
    return QStringLiteral(
        "1.\nA planilha contendo os dados deve ter um cabeçalho na primeira linha com o nome dos dados de cada "
        "coluna. As informações a serem transferidas devem ser digitadas a partir da segunda linha.\n\n"
        "2.\nOs dados devem ser digitados com símbolo decimal (, ou .), de acordo com as configurações do "
        "computador.\n\n"
        "3.\nOs valores dos elementos da análise de solo devem estar nas unidades indicadas nas respectivas "
        "caixas de seleção.\n\n"
        "4.\nOs dados de linhas que tenham células vazias não serão transferidos.\n\n"
        "5.\nNa coluna da planilha Excel referente ao campo 'Utilização da área', as células devem ser prenchidas "
        "com um número (1 ou 2) que indica a condição da lavoura. Número 1: cultivo em áreas de sequeiro; número "
        "2: cultivo de arroz em solo alagado.\n\n"
        "6.\nNa coluna da planilha Excel referente ao campo 'Método de extração de P', as células devem ser "
        "prenchidas com um número (1 ou 2) que indica o método de extração de fósforo. Número 1: extração por "
        "Mehlich I; número 2: extração por resina.\n\n"
        "Deseja gerar uma planilha exemplo ?");
}

QString msgTransferidas(const QString& pasta)
{
    return QStringLiteral("As análises de ") + pasta + QStringLiteral(" foram transferidas para o banco de dados.");
}

QString RelatorioImportacao::texto(const QString& pasta, const QString& planilha) const
{
    QStringList t;
    t << QStringLiteral("Importação de análises de solo");
    t << QStringLiteral("Pasta de trabalho: %1, planilha %2").arg(pasta, planilha);
    t << QStringLiteral("Em %1").arg(QDateTime::currentDateTime().toString(QStringLiteral("dd/MM/yyyy HH:mm")));
    if (cancelada)
        t << QStringLiteral("A importação foi cancelada: nada foi gravado.");
    t << QString();
    t << QStringLiteral("Análises adicionadas: %1").arg(adicionadas.size());
    t << QStringLiteral("Análises já existentes: %1").arg(existentes.size());
    t << QStringLiteral("Linhas recusadas: %1").arg(recusadas.size());
    t << QStringLiteral("Clientes novos: %1").arg(clientesNovos.size());
    const auto secao = [&t](const QString& titulo, const QVector<LinhaRelatorio>& linhas) {
        if (linhas.isEmpty())
            return;
        t << QString() << titulo;
        for (const LinhaRelatorio& l : linhas) {
            QString linha = QStringLiteral("Linha %1: %2").arg(l.linha).arg(l.analise);
            if (!l.motivo.isEmpty())
                linha += QStringLiteral(" - ") + l.motivo;
            t << linha;
        }
    };
    secao(QStringLiteral("Linhas recusadas"), recusadas);
    secao(QStringLiteral("Análises já existentes"), existentes);
    secao(QStringLiteral("Análises adicionadas"), adicionadas);
    if (!clientesNovos.isEmpty())
        t << QString() << QStringLiteral("Clientes novos") << clientesNovos;
    return t.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

RelatorioImportacao ImportaAnalises(Store& db, const Planilha& planilha, const Mapeamento& colunas,
                                    const Progresso& progresso)
{
    RelatorioImportacao r;
    const Leitor leitor(planilha, colunas);
    const int ultima = planilha.linhasUsadas();
    const auto etapa = [&](const QString& nome) {
        if (progresso.etapa)
            progresso.etapa(nome, ultima);
    };
    const auto segue = [&](int linha) { return !progresso.linha || progresso.linha(linha); };
    const auto cancela = [&r] {
        r = RelatorioImportacao{};
        r.cancelada = true;
        return r;
    };

    Connection cn(db.strConn);
    cn.open();
    Transaction transacao(cn);

    etapa(kEtapaClientes);
    QSet<QString> clientes = chavesEmMaiusculas(cn, QStringLiteral("SELECT Nome FROM Clientes"));
    Insercao novoCliente(cn, QStringLiteral("Clientes"));
    for (int i = 2; i <= ultima; ++i) {
        const Leitura lida = leitor.le(i);
        if (const auto* l = std::get_if<LinhaLida>(&lida)) {
            const QString chave = l->cliente.toUpper();
            if (!clientes.contains(chave)) {
                const QString x = QStringLiteral("???");
                novoCliente.insere({l->cliente, x, x, x, x});
                clientes.insert(chave);
                r.clientesNovos << l->cliente;
            }
        }
        if (!segue(i))
            return cancela();
    }

    etapa(kEtapaAnalises);
    const QSet<QString> existentes = chavesEmMaiusculas(cn, QStringLiteral("SELECT \"Código\" FROM Analises"));
    QHash<QString, int> novas;  // key in capitals, row it came from
    Insercao novaAnalise(cn, QStringLiteral("Analises"));
    for (int i = 2; i <= ultima; ++i) {
        const Leitura lida = leitor.le(i);
        if (const auto* recusa = std::get_if<Recusa>(&lida)) {
            r.recusadas << LinhaRelatorio{i, recusa->analise, recusa->motivo};
        } else if (const auto* l = std::get_if<LinhaLida>(&lida)) {
            const QString chave = l->codigo.toUpper();
            if (existentes.contains(chave)) {
                r.existentes << LinhaRelatorio{i, l->codigo, QStringLiteral("A análise já estava no banco de dados.")};
            } else if (const auto repetida = novas.constFind(chave); repetida != novas.cend()) {
                r.existentes << LinhaRelatorio{i, l->codigo,
                                               QStringLiteral("Repete a análise da linha %1.").arg(repetida.value())};
            } else {
                novaAnalise.insere(LinhaAnalise(
                    {l->codigo, l->cliente, l->local, l->fazenda, l->gleba, l->data, l->numAnalise}, l->medidas));
                novas.insert(chave, i);
                r.adicionadas << LinhaRelatorio{i, l->codigo, {}};
            }
        }
        if (!segue(i))
            return cancela();
    }
    transacao.commit();
    return r;
}

} // namespace lavra
