#include "analysis.h"

#include "app/session.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "interpretation.h"
#include "store/cursormodel.h"
#include "store/query.h"
#include "store/schema.h"
#include "store/storeerror.h"

#include <QDate>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace lavra {

namespace {

const QString kAnalises = QStringLiteral("Analises");
const QString kColunaCodigo = QStringLiteral("Código");

// Fields are checked as they are left; a number read here has passed that check.
float numero(const QString& texto)
{
    return toSingle(parseNumber(texto).value_or(0.0));
}

QString digitosDaData(const QString& data)
{
    QString digitos;
    for (const QChar c : data) {
        if (c.isDigit())
            digitos += c;
    }
    return digitos;
}

// Every text field of the window but the date, by its object name, in the order of the window.
QList<std::pair<const char*, QString*>> textos(CamposAnalise& c)
{
    return {{"txtCliente", &c.cliente}, {"txtLocal", &c.local}, {"txtFazenda", &c.fazenda}, {"txtGleba", &c.gleba},
            {"txtÁrea", &c.area},       {"txtAnálise", &c.numAnalise}, {"txtpH", &c.pH},   {"txtCa", &c.ca},
            {"txtMg", &c.mg},           {"txtAl", &c.al},           {"txtH_Al", &c.hAl},     {"txtSMP", &c.smp},
            {"txtMO", &c.mo},           {"txtArgila", &c.argila},   {"txtP", &c.p},          {"txtK", &c.k},
            {"txtCTC", &c.ctc},         {"txtBases", &c.bases}};
}

// Blanks around a text are never meant: a field of blanks is empty, and a name is the same name.
CamposAnalise aparados(CamposAnalise c)
{
    for (const auto& [nome, texto] : textos(c))
        *texto = texto->trimmed();
    return c;
}

// The first empty field, if any.
std::optional<QString> VerificaTextos(CamposAnalise c)
{
    for (const auto& [nome, texto] : textos(c)) {
        if (texto->isEmpty())
            return QString::fromUtf8(nome);
    }
    return std::nullopt;
}

// A number refused as its field was left can still be there when Executar is pressed, and so can
// one that no soil has; both are refused again here, before anything is stored or worked out.
std::optional<ResultadoCadastro> verificaNumeros(const CamposAnalise& c)
{
    const std::tuple<const char*, const QString*, Grandeza> campos[] = {
        {"txtÁrea", &c.area, Grandeza::Area},   {"txtpH", &c.pH, Grandeza::PH},
        {"txtCa", &c.ca, Grandeza::Ca},         {"txtMg", &c.mg, Grandeza::Mg},
        {"txtAl", &c.al, Grandeza::Al},         {"txtH_Al", &c.hAl, Grandeza::HAl},
        {"txtSMP", &c.smp, Grandeza::SMP},      {"txtMO", &c.mo, Grandeza::MO},
        {"txtArgila", &c.argila, Grandeza::Argila}, {"txtP", &c.p, Grandeza::Fosforo},
        {"txtK", &c.k, Grandeza::Potassio}};
    for (const auto& [nome, texto, grandeza] : campos) {
        if (const auto recusa = RecusaNumero(*texto, grandeza))
            return ResultadoCadastro{Desfecho::aviso(*recusa, QString::fromUtf8(nome)), Seguimento::Fica, {}};
    }
    return std::nullopt;
}

// The digits have passed ValidaData, which does not know how long each month is.
std::optional<QDate> dataDoCalendario(const QString& digitos)
{
    const QDate data(digitos.mid(4, 4).toInt(), digitos.mid(2, 2).toInt(), digitos.left(2).toInt());
    if (!data.isValid())
        return std::nullopt;
    return data;
}

// The rows of that code as an editable cursor on the first.
Cursor analiseDeCodigo(const Store& db, const QString& codigo)
{
    return consulta::linhas(db, kAnalises, {{kColunaCodigo, codigo}});
}

bool temRecomendacao(const Store& db, const QString& codigo, bool florestais)
{
    return db.ExisteValor(QStringLiteral("RecoForm"), codigo, 0)
        || db.ExisteValor(QStringLiteral("RecoFormulac"), codigo, 0)
        || (florestais && db.ExisteValor(QStringLiteral("RecoFlorest"), codigo, 0));
}

// The whole row in column order: the typed values, what is worked out from them, and the classes.
void escreveLinha(Cursor& rs, const CamposAnalise& c, const QString& codigo, const QDate& data)
{
    MedidasAnalise m;
    m.area = numero(c.area);
    m.pH = numero(c.pH);
    m.ca = numero(c.ca);
    m.mg = numero(c.mg);
    m.al = numero(c.al);
    m.hAl = numero(c.hAl);
    m.bases = numero(c.bases);
    m.ctc = numero(c.ctc);
    m.smp = numero(c.smp);
    m.mo = numero(c.mo);
    m.argila = numero(c.argila);
    m.p = numero(c.p);
    m.k = numero(c.k);
    m.metodoP = c.mehlich ? 1 : 2;
    m.condicao = c.arroz ? 2 : 1;
    const QVector<QVariant> valores =
        LinhaAnalise({codigo, c.cliente, c.local, c.fazenda, c.gleba, data, c.numAnalise}, m);
    for (int ordinal = 0; ordinal < valores.size(); ++ordinal)
        rs.setValue(ordinal, valores[ordinal]);
}

ResultadoCadastro para(Desfecho desfecho, const QString& codigo) { return {std::move(desfecho), Seguimento::Fica, codigo}; }
ResultadoCadastro segue(Seguimento seguimento, const QString& codigo) { return {std::nullopt, seguimento, codigo}; }

ResultadoCadastro exclui(Store& db, const EntradaCadastro& e)
{
    Cursor rs = analiseDeCodigo(db, e.codAnalise);
    const bool achou = !rs.atEnd();
    // A forest recommendation does not hold the analysis back from deletion.
    if (temRecomendacao(db, e.codAnalise, false))
        return para(Desfecho::critico(kMsgExclusaoComRecomendacao), e.codAnalise);
    if (achou && e.resposta == Resposta::NaoPerguntado)
        return para(Desfecho::pergunta(perguntaExclusao(e.codAnalise)), e.codAnalise);
    if (achou && e.resposta == Resposta::Sim) {
        rs.deleteCurrent();
        return segue(Seguimento::Concluida, e.codAnalise);
    }
    return segue(Seguimento::NaoExcluida, e.codAnalise);
}

ResultadoCadastro grava(Store& db, const EntradaCadastro& e)
{
    const CamposAnalise& c = e.campos;
    const bool edicao = e.operacao == kEdicao;
    QString codAnalise = e.codAnalise;

    if (edicao && temRecomendacao(db, e.codAnalise, true))
        return para(Desfecho::critico(kMsgEdicaoComRecomendacao), codAnalise);

    const QString codigo = ComporCodigo(c.fazenda, c.gleba, c.data);
    if (!edicao)
        codAnalise = codigo;
    // An edit that keeps farm, field and date keeps its own code.
    const bool testaDuplicacao = !edicao || codigo != e.codAnalise;
    if (testaDuplicacao && db.ExisteValor(QStringLiteral("Analises"), codigo, analise::kCodigo))
        return para(Desfecho::aviso(kMsgDuplicacao), codAnalise);

    const QString digitos = digitosDaData(c.data);
    if (!ValidaData(digitos))
        return para(Desfecho::aviso(kMsgDataInvalida, QStringLiteral("mskData")), codAnalise);
    const auto data = dataDoCalendario(digitos);
    if (!data)
        return para(Desfecho::aviso(avisoDataInexistente(c.data), QStringLiteral("mskData")), codAnalise);

    // An edit stands on its row; a new row starts on a cursor that read none.
    Cursor rs = edicao ? analiseDeCodigo(db, e.codAnalise)
                       : consulta::sql(db, QStringLiteral("SELECT * FROM Analises WHERE 0"));
    if (edicao && rs.atEnd())
        throw StoreError(QStringLiteral("A análise '%1' não foi encontrada.").arg(e.codAnalise));
    if (!edicao)
        rs.addNew();
    // One statement writes the row, so a failure leaves the table as it was.
    escreveLinha(rs, c, codigo, *data);
    rs.update();
    return segue(Seguimento::Concluida, codAnalise);
}

} // namespace

QVector<QVariant> LinhaAnalise(const IdentificacaoAnalise& id, const MedidasAnalise& m)
{
    const float satAl = SaturacaoAl(m.al, m.k, m.ca, m.mg);
    QVector<QVariant> linha = {id.codigo, id.cliente, id.local, id.fazenda, id.gleba, id.data, m.area,
                               id.numAnalise, m.pH, m.ca, m.mg, m.al, m.hAl, satAl, m.bases, m.ctc, m.smp,
                               m.mo, m.argila, m.p, m.k, m.metodoP, m.condicao, 0, 0, 0, 0};
    // The P table is chosen by a three-digit code: area condition, extraction method, clay class.
    const float codigoP = static_cast<float>(m.condicao * 100 + m.metodoP * 10 + ClasseArgila(m.argila));
    const Classe classes[] = {
        InterpretaClasse(m.pH, 0, QStringLiteral("pH")),
        InterpretaClasse(m.ca, 0, QStringLiteral("Ca")),
        InterpretaClasse(m.mg, 0, QStringLiteral("Mg")),
        InterpretaClasse(m.mo, 0, QStringLiteral("MO")),
        InterpretaClasse(m.p, codigoP, QStringLiteral("P")),
        InterpretaClasse(m.k, m.ctc, QStringLiteral("K")),
        InterpretaClasse(m.ctc, 0, QStringLiteral("CTC")),
        InterpretaClasse(satAl, 0, QStringLiteral("SatAl")),
        InterpretaClasse(m.bases, 0, QStringLiteral("SatBas")),
    };
    for (const Classe classe : classes)
        linha << static_cast<int>(classe);
    return linha;
}

float CTC(float ca, float mg, float hAl, float k) { return k / 399.0f + ca + mg + hAl; }

float SatBases(float ca, float mg, float hAl, float k)
{
    const float bases = k / 399.0f + ca + mg;
    const float ctc = bases + hAl;
    // A soil with nothing on its exchange sites has nothing to saturate.
    return ctc == 0.0f ? 0.0f : 100.0f * bases / ctc;
}

QVector<QVariant> LeAnalise(const Store& db, const QString& codigo)
{
    auto linha = consulta::primeira(db, kAnalises, {{kColunaCodigo, codigo, true}});
    if (!linha)
        throw StoreError(QStringLiteral("A análise '%1' não foi encontrada.").arg(codigo));
    return std::move(*linha);
}

void CarregaAnalise(Session& session, const QString& codigo)
{
    session.Analise = LeAnalise(session.db, codigo);
}

QString ComporCodigo(const QString& fazenda, const QString& gleba, const QString& data)
{
    return fazenda + QLatin1Char('/') + gleba + QLatin1Char('/') + data;
}

std::optional<CTCCalculada> CalculaCTC(const QString& ca, const QString& mg, const QString& hAl, const QString& k)
{
    const auto vCa = parseNumber(ca);
    const auto vMg = parseNumber(mg);
    const auto vHAl = parseNumber(hAl);
    const auto vK = parseNumber(k);
    if (!vCa || !vMg || !vHAl || !vK)
        return std::nullopt;
    const float ctc = CTC(toSingle(*vCa), toSingle(*vMg), toSingle(*vHAl), toSingle(*vK));
    const float saturacao = SatBases(toSingle(*vCa), toSingle(*vMg), toSingle(*vHAl), toSingle(*vK));
    // Figures beyond a 32-bit float are refused by their fields; they never show as "inf".
    if (!std::isfinite(ctc) || !std::isfinite(saturacao))
        return std::nullopt;
    return CTCCalculada{FormataNumero(QVariant(ctc), 2), FormataNumero(QVariant(saturacao), 2)};
}

CamposAnalise LeAnalise(Store& db, const QString& codigo, const QString& cliente)
{
    const auto linha = consulta::primeira(db, kAnalises, {{kColunaCodigo, codigo}, {QStringLiteral("Cliente"), cliente}});
    if (!linha)
        throw StoreError(QStringLiteral("A análise '%1' de %2 não foi encontrada.").arg(codigo, cliente));
    const auto texto = [&linha](int ordinal) { return cellText(linha->value(ordinal)); };
    CamposAnalise c{texto(1),  texto(2),  texto(3),  texto(4),  texto(6),  texto(7),  texto(5),
                    texto(8),  texto(9),  texto(10), texto(11), texto(12), texto(16), texto(17),
                    texto(18), texto(19), texto(20), {},        {}};
    const int metodo = linha->value(analise::kMetodoP).toInt();
    c.mehlich = metodo == 1;
    c.resina = metodo == 2;
    c.arroz = linha->value(analise::kArrozIrrig).toInt() == 2;
    return c;
}

QString perguntaArroz(bool arroz)
{
    return QStringLiteral("A opção 'Esta área será utilizada para arroz irrigado' %1. Está certo que fez a escolha "
                          "correta?")
        .arg(arroz ? QStringLiteral("FOI SELECIONADA") : QStringLiteral("NÃO FOI SELECIONADA"));
}

QString perguntaExclusao(const QString& codigo)
{
    return codigo + QStringLiteral(" será excluída, confirma?");
}

QString avisoDataInexistente(const QString& data)
{
    return QStringLiteral("Data inexistente: %1. Verifique o dia e o mês.").arg(data);
}

ResultadoCadastro CadastraAnalise(Store& db, const EntradaCadastro& entrada)
{
    if (entrada.operacao.isEmpty())
        return para(Desfecho::aviso(kMsgNenhumaAcao), entrada.codAnalise);

    EntradaCadastro e = entrada;
    e.campos = aparados(entrada.campos);
    const bool exclusao = e.operacao == kExclusao;
    if (!exclusao) {
        CamposAnalise& c = e.campos;
        if (const auto vazio = VerificaTextos(c))
            return para(Desfecho::aviso(kMsgCamposVazios, *vazio), e.codAnalise);
        if (!c.mehlich && !c.resina)
            return para(Desfecho::aviso(kMsgMetodoP), e.codAnalise);
        if (auto recusa = verificaNumeros(c)) {
            recusa->codAnalise = e.codAnalise;
            return *recusa;
        }
        if (!TemBasesOuAluminio(numero(c.al), numero(c.k), numero(c.ca), numero(c.mg)))
            return para(Desfecho::aviso(kMsgSemBases, QStringLiteral("txtCa")), e.codAnalise);
        // An analysis of a client the register does not know would be found by no one.
        const std::optional<QString> registrado = ClienteRegistrado(db, c.cliente);
        if (!registrado)
            return para(Desfecho::aviso(kMsgClienteNaoCadastrado, QStringLiteral("txtCliente")), e.codAnalise);
        c.cliente = *registrado;
        // Asked at every save, whichever way the box stands: the choice changes the class of P.
        if (e.resposta == Resposta::NaoPerguntado)
            return para(Desfecho::pergunta(perguntaArroz(c.arroz)), e.codAnalise);
        if (e.resposta == Resposta::Nao)
            return segue(Seguimento::Fica, e.codAnalise);
    }

    try {
        if (exclusao)
            return exclui(db, e);
        if (e.operacao == kEdicao || e.operacao == kCadastro)
            return grava(db, e);
    } catch (...) {
        db.descarta();
        throw;
    }
    return para(Desfecho::aviso(kMsgNenhumaAcao), e.codAnalise);
}

std::optional<QString> ClienteRegistrado(Store& db, const QString& nome)
{
    const QString procurado = nome.trimmed();
    // Only names that hold the text can match once their blanks are off; the engine picks those.
    Cursor rs = consulta::sql(db, QStringLiteral("SELECT Nome FROM Clientes WHERE instr(Nome, ?) > 0 ORDER BY rowid"),
                              {procurado.isNull() ? QStringLiteral("") : procurado});
    for (; !rs.atEnd(); rs.moveNext()) {
        const QString nomeCadastrado = rs.value(0).toString();
        // Exact, as the pickers list a client's analyses by the very name.
        if (nomeCadastrado.trimmed() == procurado)
            return nomeCadastrado;
    }
    return std::nullopt;
}

GradeClientes LeClientes(Store& db)
{
    GradeClientes grade;
    Cursor rs = consulta::sql(db, QStringLiteral("SELECT * FROM Clientes ORDER BY Nome;"));
    const int colunas = std::min(rs.columnCount(), 5);
    for (int ordinal = 0; ordinal < colunas; ++ordinal)
        grade.colunas << rs.columnName(ordinal);
    grade.linhas.reserve(rs.recordCount());
    for (; !rs.atEnd(); rs.moveNext()) {
        QStringList linha;
        for (int ordinal = 0; ordinal < colunas; ++ordinal)
            linha << cellText(rs.value(ordinal));
        grade.linhas << linha;
    }
    return grade;
}

QStringList AnalisesDoCliente(Store& db, const QString& cliente)
{
    // Exact: an analysis keeps a copy of the name, not a reference to the client. The order is
    // the code's own, which ignores case.
    QStringList codigos;
    Cursor rs = consulta::sql(
        db, QStringLiteral("SELECT \"Código\" FROM Analises WHERE Cliente = ? AND Cliente = ? COLLATE BINARY "
                           "ORDER BY \"Código\""),
        {cliente, cliente});
    for (; !rs.atEnd(); rs.moveNext())
        codigos << rs.value(0).toString();
    return codigos;
}

int BuscaCliente(const QStringList& nomes, const QString& texto)
{
    const QString procurado = texto.toUpper();
    for (int i = 0; i < nomes.size(); ++i) {
        if (nomes[i].left(texto.size()).toUpper() == procurado)
            return i;
    }
    return -1;
}

} // namespace lavra
