#include "liming.h"

#include "app/analise.h"
#include "app/session.h"
#include "app/slots.h"
#include "base/numbers.h"
#include "calc/cropgroups.h"
#include "smp.h"
#include "store/manualtables.h"
#include "store/query.h"
#include "store/store.h"
#include "store/storeerror.h"

namespace lavra {

namespace {

const QString kTabelaCalagem = QStringLiteral("Calagem");
// Named from the schema when first asked, not while the program starts.
QString colunaGrupo() { return consulta::coluna(kTabelaCalagem, 1); }

Desfecho falta(const QString& nome)
{
    return Desfecho::critico(
        QStringLiteral("A análise escolhida não tem %1. Complete-a no cadastro de análises e calcule de novo.").arg(nome));
}

// An empty element of the analysis stops the calculation only where it is read.
template <typename T>
T requer(const std::optional<T>& valor, const QString& nome)
{
    if (!valor)
        throw falta(nome);
    return *valor;
}

float prntDe(const EntradaCalagem& entrada)
{
    if (!entrada.prnt)
        throw Desfecho::critico(QStringLiteral("Não há calcário com PRNT numérico escolhido em \"Calcários cadastrados\". "
                                          "Escolha um ou corrija o cadastro de calcários."));
    if (*entrada.prnt == 0)
        throw Desfecho::critico(QStringLiteral("O PRNT do calcário escolhido é zero, e a dose não pode ser calculada. "
                                          "Escolha outro calcário ou corrija o cadastro de calcários."));
    return *entrada.prnt;
}

std::optional<float> numeroSimples(const QVariant& valor)
{
    const std::optional<double> numero = toNumber(valor);
    return numero ? std::optional<float>(toSingle(*numero)) : std::nullopt;
}

// Need per hectare of a material of PRNT 100 from the SMP table, at the index floor.
std::optional<float> leSmp(Store& db, const EntradaCalagem& entrada, ComparacaoSmp comparacao)
{
    const float indiceSmp = requer(entrada.analise.IndiceSMP, QStringLiteral("o índice SMP"));
    try {
        return consultaSmp(db, indiceSmp, entrada.sistema.indice, comparacao);
    } catch (const StoreError& error) {
        throw StoreError(QStringLiteral("Falha ao ler a coluna %1 da tabela SMP, indicada para \"%2\" na tabela "
                                        "Calagem:\n%3")
                             .arg(entrada.sistema.indice)
                             .arg(entrada.sistema.texto, error.message()));
    }
}

float saturacao(const EntradaCalagem& entrada, float f)
{
    const float v = requer(entrada.analise.V, QStringLiteral("a saturação por bases"));
    const float ctc = requer(entrada.analise.CTC, QStringLiteral("a CTC a pH 7"));
    return (entrada.sistema.vAlvo - v) * ctc / 100.0f / f;
}

// The product of the area with a figure of the step: a single area keeps single precision, a
// double or a text makes it a double, as the session's variants multiply.
QVariant produtoArea(const QVariant& area, float valor)
{
    const double numero = toNumber(area).value_or(0);
    const int tipo = area.typeId();
    if (tipo == QMetaType::Double || tipo == QMetaType::QString)
        return QVariant(numero * static_cast<double>(valor));
    return QVariant(toSingle(numero) * valor);
}

} // namespace

bool SimNao(const QVariant& texto) { return texto.toString().toUpper() == QLatin1String("S"); }

QStringList SistemasDoGrupo(Store& db, int grupo)
{
    Cursor rs = consulta::linhas(db, kTabelaCalagem, {{colunaGrupo(), grupo}});
    QStringList sistemas;
    for (; !rs.atEnd(); rs.moveNext())
        sistemas << rs.value(0).toString();
    return sistemas;
}

std::optional<SistemaCalagem> LeSistemaCalagem(Store& db, int grupo, const QString& texto)
{
    const auto linha =
        consulta::primeira(db, kTabelaCalagem, {{colunaGrupo(), grupo}, {consulta::coluna(kTabelaCalagem, 0), texto}});
    if (!linha)
        return std::nullopt;
    manual::anotaLeitura(kTabelaCalagem, *linha);
    const QVector<QVariant>& v = *linha;
    SistemaCalagem s;
    s.texto = texto;
    s.grupo = grupo;
    s.indice = v.value(2).toInt();
    s.divisor = v.value(3).toFloat();
    s.a = v.value(4).toFloat();
    s.b = v.value(5).toFloat();
    s.c = v.value(6).toFloat();
    s.vAlvo = v.value(7).toFloat();
    s.pHRef = v.value(8).toFloat();
    s.vRef = v.value(9).toFloat();
    s.doisCriterios = SimNao(v.value(10));
    s.superficie = SimNao(v.value(11));
    return s;
}

AnaliseCalagem analiseCalagem(const QVector<QVariant>& analise)
{
    AnaliseCalagem a;
    a.pH = numeroSimples(analise.value(8));
    a.Ca = numeroSimples(analise.value(9));
    a.Mg = numeroSimples(analise.value(10));
    a.Al = numeroSimples(analise.value(11));
    a.SatAl = numeroSimples(analise.value(13));
    a.V = numeroSimples(analise.value(14));
    a.CTC = numeroSimples(analise.value(15));
    a.IndiceSMP = numeroSimples(analise.value(16));
    a.MO = numeroSimples(analise.value(17));
    if (const std::optional<double> classe = toNumber(analise.value(31)))
        a.ClasseP = static_cast<std::int16_t>(roundHalfEven(*classe));
    return a;
}

Necessidade Verifica_Necessidade_PorSistema(Store& db, const EntradaCalagem& entrada)
{
    const SistemaCalagem& s = entrada.sistema;
    const AnaliseCalagem& an = entrada.analise;
    Necessidade n;

    if (s.indice == kIndiceCaMg) {
        // The rule stands on its own: the method chosen on the screen plays no part.
        const float ca = requer(an.Ca, QStringLiteral("o teor de Ca"));
        const float mg = requer(an.Mg, QStringLiteral("o teor de Mg"));
        if (ca <= kCaMinimo || mg <= kMgMinimo)
            n.quantidade = 100.0f / prntDe(entrada);
        return n;
    }

    if (s.indice == kIndiceSaturacao) {
        n.metodoForcado = entrada.metodo != MetodoCalagem::SatBases;
        EntradaCalagem porSaturacao = entrada;
        porSaturacao.metodo = MetodoCalagem::SatBases;
        n.quantidade = Calcula_PorMetodo(db, porSaturacao);
        return n;
    }

    const float pH = requer(an.pH, QStringLiteral("o pH em água"));
    const bool a = pH < s.pHRef;
    if (!s.doisCriterios) {
        if (a)
            n.quantidade = Calcula_PorMetodo(db, entrada);
        return n;
    }

    const float v = requer(an.V, QStringLiteral("a saturação por bases"));
    const bool b = v < s.vRef;
    if (a && b) {
        n.quantidade = Calcula_PorMetodo(db, entrada);
    } else if (a || b) {
        // A soil very rich in P with little exchangeable Al is spared when it fails only one of
        // the two criteria.
        const std::int16_t classeP = requer(an.ClasseP, QStringLiteral("a classe de P"));
        const bool excecao = classeP != kClassePMuitoAlta
            || requer(an.SatAl, QStringLiteral("a saturação por alumínio")) >= kSatAlExcecao;
        if (excecao)
            n.quantidade = Calcula_PorMetodo(db, entrada);
    }
    return n;
}

float Calcula_PorMetodo(Store& db, const EntradaCalagem& entrada)
{
    if (entrada.metodo == MetodoCalagem::Nenhum)
        return 0;
    const float f = prntDe(entrada) / 100.0f;
    const SistemaCalagem& s = entrada.sistema;
    switch (entrada.metodo) {
    case MetodoCalagem::SMP: {
        const std::optional<float> smp = leSmp(db, entrada, ComparacaoSmp::Texto);
        return smp ? *smp / f : 0.0f;
    }
    case MetodoCalagem::AlMO: {
        const float mo = requer(entrada.analise.MO, QStringLiteral("o teor de matéria orgânica"));
        const float al = requer(entrada.analise.Al, QStringLiteral("o teor de Al"));
        return (s.a + s.b * mo + s.c * al) / f;
    }
    case MetodoCalagem::SatBases:
        return saturacao(entrada, f);
    case MetodoCalagem::Media: {
        const std::optional<float> smp = leSmp(db, entrada, ComparacaoSmp::Numerica);
        return (smp.value_or(0.0f) / f + saturacao(entrada, f)) / 2.0f;
    }
    case MetodoCalagem::Nenhum: break;
    }
    return 0;
}

ExibicaoCalagem exibeCalagem(float quantidade, float divisor, std::optional<double> preco)
{
    ExibicaoCalagem e;
    e.resultado = QStringLiteral("0");
    e.custo = QStringLiteral("0");
    if (quantidade <= 0)
        return e;
    if (divisor == 0)
        throw Desfecho::critico(QStringLiteral("O divisor da dose desta cultura é zero na tabela Calagem, e a dose não "
                                          "pode ser calculada."));
    e.dose = static_cast<double>(quantidade) / static_cast<double>(divisor);
    e.resultado = e.dose > 0.01 && e.dose < 1 ? formatFixed(e.dose, 2) : formatFixed(e.dose, 1);
    // The cost follows the figure the user sees: a dose that rounds to nothing costs nothing.
    if (parseNumber(e.resultado).value_or(0) <= 0)
        return e;
    if (!preco)
        throw Desfecho::critico(QStringLiteral("O calcário escolhido não tem preço em R$/t. Corrija-o no cadastro de "
                                          "calcários."));
    e.custo = formatFixed(e.dose * *preco, 2);
    return e;
}

ResultadoCalagem CalculaCalagem(Store& db, const PedidoCalagem& pedido)
{
    ResultadoCalagem r;
    if (pedido.naoCalcular) {
        r.desfecho = Desfecho::aviso(kMsgNaoCalcularMarcada);
        return r;
    }
    if (pedido.posicaoSistema == 0) {
        r.desfecho = Desfecho::aviso(kMsgSelecioneSistema);
        return r;
    }
    try {
        const std::optional<SistemaCalagem> sistema = LeSistemaCalagem(db, pedido.grupo, pedido.sistema);
        if (!sistema && pedido.sistema.isEmpty())
            throw Desfecho::critico(QStringLiteral("A tabela Calagem não tem culturas nem sistemas de cultivo para este "
                                              "grupo de culturas."));
        if (!sistema)
            throw Desfecho::critico(QStringLiteral("\"%1\" não está mais na tabela Calagem para este grupo de culturas.")
                                   .arg(pedido.sistema));
        r.metodoForcado = sistema->indice == kIndiceSaturacao && pedido.metodo != MetodoCalagem::SatBases;

        EntradaCalagem entrada;
        entrada.sistema = *sistema;
        entrada.analise = pedido.analise;
        entrada.metodo = pedido.metodo;
        if (pedido.material)
            entrada.prnt = numeroSimples(pedido.material->prnt);
        r.quantidade = Verifica_Necessidade_PorSistema(db, entrada).quantidade;
        r.exibicao = exibeCalagem(r.quantidade, sistema->divisor,
                                  pedido.material ? toNumber(pedido.material->preco) : std::nullopt);
    } catch (const Desfecho& falha) {
        // Empty labels keep the step from going on with a figure that was never worked out.
        r.desfecho = falha;
        r.exibicao = {};
    }
    return r;
}

Parada GravaCalagem(Session& session, const EscolhaCalagem& escolha)
{
    session.CustoCalcario = 0;
    if (!escolha.naoCalcular) {
        if (escolha.resultado.isEmpty() || escolha.custo.isEmpty())
            return Desfecho::aviso(kMsgCalcarioNaoCalculado);
        const std::optional<double> dose = parseNumber(escolha.resultado);
        const std::optional<double> preco =
            escolha.material ? parseNumber(variantNumberText(escolha.material->preco)) : std::nullopt;
        const QVariant area = session.Analise.value(analise::kArea);
        if (!dose || !escolha.material)
            return Desfecho::critico(
                    QStringLiteral("Não há calcário escolhido em \"Calcários cadastrados\". Escolha um e calcule de novo."));
        if (!preco)
            return Desfecho::critico(
                    QStringLiteral("O calcário escolhido não tem preço em R$/t. Corrija-o no cadastro de calcários."));
        if (!toNumber(area))
            return Desfecho::critico(
                    QStringLiteral("A análise escolhida não tem a área em hectares. Complete-a no cadastro de análises."));

        // The dose is the rounded figure of the screen, so the saved row agrees with what was shown.
        const float r = toSingle(*dose);
        const float p = toSingle(*preco);
        QVector<QVariant>& dados = session.Dados;
        dados[slot::kCalcFonte] = variantNumberText(escolha.material->nome);
        dados[slot::kCalcPRNT] = variantNumberText(escolha.material->prnt);
        dados[slot::kCalcPreco] = p;
        dados[slot::kCalcDose] = r;
        dados[slot::kCalcCusto] = r * p;
        dados[slot::kCalcQuant] = produtoArea(area, r);
        dados[slot::kCalcCustoTotal] = produtoArea(area, r * p);
        session.CustoCalcario = toNumber(dados[slot::kCalcCustoTotal]).value_or(0);
    }
    if (session.Grupo != grupo::Florestais) {
        session.CustoEtapa1 = 0;
        session.CustoEtapa2 = 0;
        session.CustoEtapa3 = 0;
    }
    return std::nullopt;
}

void ExcluiCalagem(Session& session)
{
    for (int s = slot::kCalcFonte; s <= slot::kCalcCustoTotal; ++s)
        session.Dados[s] = 0;
}

} // namespace lavra
