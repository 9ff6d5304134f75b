#include "formulas.h"

#include "app/analise.h"
#include "app/session.h"
#include "app/slots.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "calc/cropgroups.h"
#include "plan/forest.h"
#include "store/cursormodel.h"
#include "store/query.h"
#include "store/store.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace lavra {

namespace {

// A run-time failure of the calculation, with the number and words the user is shown.
struct Falha {
    int numero;
    QString descricao;
};

const Falha kTiposIncompativeis { 13, QStringLiteral("Tipos incompatíveis") };
const Falha kDivisaoPorZero { 11, QStringLiteral("Divisão por zero") };
const Falha kEstouro { 6, QStringLiteral("Estouro") };

float celulaNumero(const QString& texto)
{
    const std::optional<double> numero = parseNumber(texto);
    if (!numero)
        throw kTiposIncompativeis;
    return toSingle(*numero);
}

float divide(float dividendo, float divisor)
{
    if (divisor == 0.0f)
        throw dividendo == 0.0f ? kEstouro : kDivisaoPorZero;
    const float quociente = dividendo / divisor;
    if (!std::isfinite(quociente))
        throw kEstouro;
    return quociente;
}

float numeroOuZero(const QVariant& valor)
{
    return toSingle(toNumber(valor).value_or(0));
}

// The supply of each nutrient that a dose of a fertiliser of these grades gives.
NPKkg fornecimento(const NPKkg& teor, float dose)
{
    return { teor.n / 100.0f * dose, teor.p / 100.0f * dose, teor.k / 100.0f * dose };
}

bool naTolerancia(float forn, float nec)
{
    const float diferenca = forn - nec;
    return diferenca >= -10.0f && diferenca <= 10.0f;
}

SituacaoNutriente situacao(const QString& caixa, float nec, float forn, bool comNaoRequer)
{
    const std::optional<double> lido = parseNumber(caixa);
    if (!lido)
        return {};
    const float t = toSingle(*lido);
    if (t > nec) {
        if (comNaoRequer && nec == 0.0f)
            return { kNaoRequer, true };
        // A negative need, which no crop gives, leaves the label as it was cleared.
        if (nec < 0.0f)
            return {};
        const std::int64_t n = roundHalfEven(forn - nec);
        return { QString::number(n) + QStringLiteral(" kg a mais"), n >= 11 };
    }
    if (t < nec) {
        const std::int64_t n = roundHalfEven(nec - forn);
        return { QString::number(n) + QStringLiteral(" kg a menos"), n >= 11 };
    }
    return { kIdeal, false };
}

// The operand kinds of the old variant arithmetic, narrowest first.
enum class Tipo { Nulo, Inteiro, Longo, Simples, Duplo };

struct Operando {
    Tipo tipo = Tipo::Nulo;
    double valor = 0;
};

Operando operando(const QVariant& v)
{
    if (!v.isValid() || v.isNull())
        return {};
    switch (v.typeId()) {
    case QMetaType::Bool:
        return { Tipo::Inteiro, v.toBool() ? -1.0 : 0.0 };
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return { Tipo::Inteiro, v.toDouble() };
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
        return { Tipo::Longo, v.toDouble() };
    case QMetaType::Float:
        return { Tipo::Simples, static_cast<double>(v.toFloat()) };
    default:
        break;
    }
    // Texts are read as doubles; a text that holds no number gives no product.
    if (const std::optional<double> numero = toNumber(v))
        return { Tipo::Duplo, *numero };
    return {};
}

} // namespace

NPKkg LeNecessidadeBase(const Session& session)
{
    return { numeroOuZero(session.Nec[0]), numeroOuZero(session.Nec[1]), numeroOuZero(session.Nec[2]) };
}

QString TextoNecessidade(const NPKkg& nec)
{
    const QString relacao = nec.k == 0.0f ? QStringLiteral("?") : formatFixed(nec.p / nec.k, 2);
    return QStringLiteral("Necessidade NPK na Base é de: ") + numberText(nec.n) + QStringLiteral(" _ ")
        + numberText(nec.p) + QStringLiteral(" _ ") + numberText(nec.k) + QStringLiteral(".")
        + QStringLiteral(" A Relação P/K da Necessidade é de: ") + relacao;
}

TabelaNPK LeTabelaNPK(Store& db)
{
    TabelaNPK tabela;
    Cursor rs = consulta::sql(db, kConsultaFormulas);
    for (int c = 0; c < rs.columnCount(); ++c)
        tabela.colunas << rs.columnName(c);
    for (; !rs.atEnd(); rs.moveNext()) {
        QVariantList linha;
        for (int c = 0; c < rs.columnCount(); ++c)
            linha << rs.value(c);
        tabela.linhas << linha;
    }
    return tabela;
}

bool Indicados(const NPKkg& nec, const NPKkg& forn)
{
    return naTolerancia(forn.n, nec.n) && naTolerancia(forn.p, nec.p) && naTolerancia(forn.k, nec.k);
}

GradeFormulas Insere_Indicados(const TabelaNPK& tabela, const NPKkg& nec, bool somente)
{
    GradeFormulas grade;
    grade.cabecalho[flx::kFormula] = tabela.colunas.value(0);
    grade.cabecalho[flx::kEspecificacao] = tabela.colunas.value(1);
    grade.cabecalho[flx::kPK] = tabela.colunas.value(5);
    grade.cabecalho[flx::kPreco] = tabela.colunas.value(7);

    for (const QVariantList& valores : tabela.linhas) {
        if (somente) {
            const std::optional<double> n = toNumber(valores.value(2));
            const std::optional<double> p = toNumber(valores.value(3));
            const std::optional<double> k = toNumber(valores.value(4));
            if (!n || !p || !k)
                continue;
            const NPKkg teor { toSingle(*n), toSingle(*p), toSingle(*k) };
            if (!(teor.p + teor.k > 0.0f))
                continue;
            // Always by equal differences of P and K, whatever mode the user has chosen.
            const float dose = (nec.p + nec.k) / ((teor.p + teor.k) / 100.0f);
            if (!Indicados(nec, fornecimento(teor, dose)))
                continue;
        }
        LinhaFlx linha;
        linha[flx::kFormula] = cellText(valores.value(0));
        linha[flx::kEspecificacao] = cellText(valores.value(1));
        linha[flx::kN] = cellText(valores.value(2));
        linha[flx::kP] = cellText(valores.value(3));
        linha[flx::kK] = cellText(valores.value(4));
        linha[flx::kPK] = FormataNumero(valores.value(5), 2);
        linha[flx::kPreco] = cellText(valores.value(7));
        linha[flx::kEficN] = cellText(valores.value(9));
        grade.linhas << linha;
    }
    return grade;
}

ResultadoCalculo Calcula(const EntradaCalculo& entrada)
{
    ResultadoCalculo resultado;
    if (!entrada.modo) {
        resultado.desfecho = Desfecho::aviso(kMsgSemModo);
        return resultado;
    }
    // Without a row there is nothing to compute, not an arithmetic failure.
    if (entrada.linha[flx::kFormula].isEmpty()) {
        resultado.desfecho = Desfecho::aviso(kMsgSemFertilizante);
        return resultado;
    }
    try {
        const LinhaFlx& linha = entrada.linha;
        const NPKkg teor { celulaNumero(linha[flx::kN]), celulaNumero(linha[flx::kP]),
            celulaNumero(linha[flx::kK]) };
        // Only organic fertilisers carry an efficiency index; their dose is a matter of formulation.
        if (isNumericText(linha[flx::kEficN])) {
            resultado.desfecho = Desfecho::simples(kMsgOrganico);
            return resultado;
        }
        const float preco = celulaNumero(linha[flx::kPreco]);
        const NPKkg& nec = entrada.nec;
        float dose = 0;
        switch (*entrada.modo) {
        case ModoCalculo::IntegralizarP:
            dose = divide(nec.p, teor.p / 100.0f);
            break;
        case ModoCalculo::IntegralizarK:
            dose = divide(nec.k, teor.k / 100.0f);
            break;
        case ModoCalculo::DiferencasIguais:
            dose = divide(nec.p + nec.k, (teor.p + teor.k) / 100.0f);
            break;
        }
        const NPKkg forn = fornecimento(teor, dose);
        const float custo = dose / 1000.0f * preco;
        if (!std::isfinite(custo)
            || std::fabs(dose) > static_cast<float>(std::numeric_limits<std::int32_t>::max()))
            throw kEstouro;

        resultado.dose = dose;
        resultado.preco = preco;
        resultado.forn = forn;
        resultado.txtFormula = QString::number(roundHalfEven(dose));
        resultado.txtCusto = formatFixed(custo, 2);
        resultado.txtForn = { QString::number(roundHalfEven(forn.n)), QString::number(roundHalfEven(forn.p)),
            QString::number(roundHalfEven(forn.k)) };
    } catch (const Falha& falha) {
        resultado = {};
        resultado.desfecho = Desfecho::informacao(
            QStringLiteral("Erro ") + QString::number(falha.numero) + QStringLiteral(" ") + falha.descricao);
    }
    return resultado;
}

std::array<SituacaoNutriente, 3> SituacaoFornecimento(
    const std::array<QString, 3>& txtForn, const NPKkg& nec, const NPKkg& forn)
{
    if (txtForn[0].isEmpty())
        return {};
    return { situacao(txtForn[0], nec.n, forn.n, true), situacao(txtForn[1], nec.p, forn.p, false),
        situacao(txtForn[2], nec.k, forn.k, false) };
}

NPKkg FornecimentoDasCaixas(const std::array<QString, 3>& txtForn)
{
    const auto caixa = [](const QString& texto) { return toSingle(parseNumber(texto).value_or(0)); };
    return { caixa(txtForn[0]), caixa(txtForn[1]), caixa(txtForn[2]) };
}

Parada PerguntaFornecimento(const NPKkg& nec, const NPKkg& forn)
{
    if (Indicados(nec, forn))
        return std::nullopt;
    const QString separador = QStringLiteral("--");
    return Desfecho::pergunta(QStringLiteral("A necessidade de N, P e K é de   ") + numberText(nec.n) + separador
        + numberText(nec.p) + separador + numberText(nec.k) + QStringLiteral(" kg/ha")
        + QStringLiteral("\n\n") + QStringLiteral("As quantidades fonecidas de N, P e K são   ")
        + numberText(forn.n) + separador + numberText(forn.p) + separador + numberText(forn.k)
        + QStringLiteral(" kg/ha") + QStringLiteral("\n\n")
        + QStringLiteral("CONTINUAR A RECOMENDAÇÃO COM ESTAS QUANTIDADES?"));
}

DestinoFormula GravaFormula(Session& session, const EscolhaFormula& escolha)
{
    const float preco = toSingle(parseNumber(escolha.preco).value_or(0));
    const float dose = toSingle(parseNumber(escolha.dose).value_or(0));
    const QVariant area = session.Analise.value(analise::kArea);
    const QVariant quantidade = ProdutoVariant(area, dose);

    QVector<QVariant>& dados = session.Dados;
    using namespace slot::produto;
    const int b = slot::kBase;
    dados[b + kFonte] = escolha.formula;
    dados[b + kPreco] = preco;
    dados[b + kDose] = dose;
    dados[b + kCusto] = preco / 1000.0f * dose; // on the rounded dose, unlike the cost on the screen
    dados[b + kQuant] = quantidade;
    dados[b + kCustoTotal] = ProdutoVariant(quantidade, preco / 1000.0f);
    session.CustoBase = toNumber(dados[b + kCustoTotal]).value_or(0);
    return ConcluiBase(session, 1, QStringLiteral("Fórmulas"));
}

DestinoFormula ConcluiBase(Session& session, std::int16_t planoNum, const QString& tipoPlano)
{
    DestinoFormula destino;
    if (session.Grupo == grupo::Florestais) {
        destino.florestal = true;
        DefineCustoEtapa(session, session.EtapaFlorest, session.CustoBase);
        return destino;
    }
    session.PlanoNum = planoNum;
    session.TipoPlano = tipoPlano;
    if (session.RefazPlano == 1) {
        destino.fechaParcelamento = true;
        session.RefazPlano = 0;
    }
    return destino;
}

QList<QStringList> LinhasFlorest(const Session& session, const QString& primeiroTitulo, int blocos)
{
    QList<QStringList> linhas { CabecalhoFlorestal(primeiroTitulo) };
    for (int bloco = 0; bloco < blocos; ++bloco) {
        QStringList valores;
        const int inicio = slot::kBase + bloco * slot::produto::kTamanho;
        for (int s = inicio; s < inicio + slot::produto::kTamanho; ++s)
            valores << variantNumberText(session.Dados.value(s));
        linhas << valores;
    }
    return linhas;
}

QList<QStringList> LinhasFlorestFormula(const Session& session)
{
    return LinhasFlorest(session, QStringLiteral("Fórmula"), 1);
}

QVariant ProdutoVariant(const QVariant& a, const QVariant& b)
{
    const Operando x = operando(a);
    const Operando y = operando(b);
    if (x.tipo == Tipo::Nulo || y.tipo == Tipo::Nulo)
        return {};
    const Tipo maior = std::max(x.tipo, y.tipo);
    const bool simplesComLongo = maior == Tipo::Simples && std::min(x.tipo, y.tipo) == Tipo::Longo;
    if (maior == Tipo::Simples && !simplesComLongo)
        return QVariant(static_cast<float>(x.valor) * static_cast<float>(y.valor));
    const double produto = x.valor * y.valor;
    if (maior == Tipo::Duplo || simplesComLongo)
        return QVariant(produto);
    // Whole numbers widen as they overflow, as the variants did.
    if (maior == Tipo::Inteiro && std::fabs(produto) <= std::numeric_limits<std::int16_t>::max())
        return QVariant::fromValue(static_cast<std::int16_t>(produto));
    if (std::fabs(produto) <= std::numeric_limits<std::int32_t>::max())
        return QVariant(static_cast<std::int32_t>(produto));
    return QVariant(produto);
}

} // namespace lavra
