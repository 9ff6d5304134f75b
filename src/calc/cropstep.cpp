#include "cropstep.h"

#include "app/navigation.h"
#include "app/session.h"
#include "app/slots.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "calc/cropgroups.h"
#include "store/manualtables.h"
#include "store/query.h"

#include <cmath>

namespace lavra {

namespace {

// Every table of the manual keys its rows on this column.
const QString kColunaChave = QStringLiteral("Chave");

} // namespace

QString textoNumero(double valor)
{
    if (valor == 0)
        valor = 0; // no "-0"
    QString texto = QString::number(valor, 'g', 15);
    texto.replace(QLatin1Char('.'), decimalSymbol());
    return texto;
}

QString janelaDoPlano(const QString& tipoPlano)
{
    if (tipoPlano == QStringLiteral("Fórmulas"))
        return janela::kNPK;
    if (tipoPlano == QStringLiteral("Formulação"))
        return janela::kFormulacao;
    return {};
}

void NecessidadeRecalculada(Session& session, bool mantemObsAjuste)
{
    session.RefazPlano = 1;
    if (!mantemObsAjuste)
        session.ObsAjuste.clear();
}

void CopiaParaNec(Session& session, const TextosNec& nec)
{
    copiaNecessidade(session.Nec, nec);
}

void RegistraCultura(Session& session, WindowHost& janelas, const QString& nomeCultura,
    std::optional<float> expectativa)
{
    session.Dados[slot::kCultura] = nomeCultura;
    if (expectativa)
        session.Dados[slot::kExpectativa] = QVariant(*expectativa);
    if (session.RefazPlano == 1) {
        FechaPlano(session, janelas);
        session.RefazPlano = 0;
    }
}

Parada ProssegueCultura(Session& session, WindowHost& janelas, const QString& nomeCultura,
    std::optional<float> expectativa, const TextosNec& nec)
{
    if (nec[0].isEmpty())
        return Desfecho::aviso(kMsgNaoCalculada);
    const auto valores = necNumerica(nec);
    if (!valores)
        return Desfecho::critico(kMsgResultadoIncompleto);
    for (std::size_t i = 0; i < valores->size(); ++i)
        session.Nec[i] = QVariant((*valores)[i]);
    RegistraCultura(session, janelas, nomeCultura, expectativa);
    return std::nullopt;
}

// ---- The yield typed after its class --------------------------------------------------------

QString perguntaRendimento(const QString& faixa)
{
    return QStringLiteral("Digite um valor de expectativa de rendimento para a classe ") + faixa
        + QStringLiteral(" t/ha");
}

RespostaRendimento LeRendimento(const QString& resposta)
{
    if (resposta.isEmpty())
        return { Desfecho::simples(kMsgFornecaExpectativa), 0 };
    const auto valor = parseNumber(resposta);
    if (!valor)
        return { Desfecho::simples(kMsgFornecaNumero), 0 };
    // It goes to the report as the yield; a negative one or one typed in kilograms is no yield.
    if (VerificaFaixa(Grandeza::Expectativa, resposta))
        return { Desfecho::simples(mensagemFaixa(Grandeza::Expectativa)), 0 };
    return { std::nullopt, toSingle(*valor) };
}

// ---- Adjustment by the user -----------------------------------------------------------------

QString perguntaAjuste()
{
    return QStringLiteral("A informação abaixo será impressa no laudo.\n\n\n'") + kObsAjuste
        + QStringLiteral(".'\n\n\nConcorda?");
}

Parada VerificaAjuste(const QStringList& ajustados, const QStringList& campos)
{
    for (int i = 0; i < ajustados.size(); ++i) {
        if (ajustados[i].isEmpty())
            return Desfecho::aviso(kMsgCamposVazios, campos.value(i));
    }
    for (int i = 0; i < ajustados.size(); ++i) {
        if (!isNumericText(ajustados[i]))
            return Desfecho::aviso(kMsgCamposNaoNumericos, campos.value(i));
    }
    return std::nullopt;
}

QString janelaAjustada(const QString& nomeGrupo)
{
    const GrupoCultura* g = grupoCultura(nomeGrupo);
    return g ? g->janelaAjuste : QString();
}

void AplicaAjuste(Session& session)
{
    session.ObsAjuste = kObsAjuste;
    session.RefazPlano = 1;
}

// ---- The manual's tables ----------------------------------------------------------------------

int classe(const QVector<QVariant>& analise, int ordinal)
{
    return static_cast<int>(std::floor(toNumber(analise.value(ordinal)).value_or(0)));
}

float analiseSingle(const QVector<QVariant>& analise, int ordinal)
{
    return toSingle(toNumber(analise.value(ordinal)).value_or(0));
}

std::optional<double> celula(const QVector<QVariant>& linha, int ordinal)
{
    if (ordinal < 1 || ordinal >= linha.size())
        return std::nullopt;
    const QVariant& valor = linha.at(ordinal);
    if (valor.typeId() == QMetaType::Float)
        return widenShortest(valor.toFloat());
    return toNumber(valor);
}

std::optional<QVector<QVariant>> leLinha(const Store& db, const Consulta& consulta)
{
    auto linha = consulta::primeira(db, consulta.tabela, { { kColunaChave, consulta.chave } });
    if (linha)
        manual::anotaLeitura(consulta.tabela, *linha);
    return linha;
}

Desfecho semLinha(const Consulta& consulta)
{
    return Desfecho::critico(
        QStringLiteral("Não há na tabela %1 uma linha para \"%2\", e o cálculo não pode ser concluído.")
            .arg(consulta.tabela, consulta.chave));
}

Desfecho semValor(const Consulta& consulta, int ordinal)
{
    return Desfecho::critico(
        QStringLiteral("A linha \"%1\" da tabela %2 não tem valor na coluna %3; verifique as classes "
                       "da análise.")
            .arg(consulta.chave, consulta.tabela)
            .arg(ordinal));
}

Leitura leClasse(const Store& db, const Consulta& consulta, int ordinal)
{
    const auto linha = leLinha(db, consulta);
    if (!linha)
        return {};
    const auto valor = celula(*linha, ordinal);
    if (!valor)
        return { {}, semValor(consulta, ordinal) };
    return { valor, {} };
}

Leitura necessidadeDaLinha(const QVector<QVariant>& linha, const Consulta& consulta, int ordinalClasse, double e,
    std::optional<double> referencia)
{
    if (!referencia)
        referencia = celula(linha, kColRendimento);
    if (!referencia)
        return { {}, semValor(consulta, kColRendimento) };
    const auto daClasse = celula(linha, ordinalClasse);
    if (!daClasse)
        return { {}, semValor(consulta, ordinalClasse) };
    if (e <= *referencia)
        return { *daClasse, {} };
    const auto adicional = celula(linha, kColAdicional);
    if (!adicional)
        return { {}, semValor(consulta, kColAdicional) };
    return { (e - *referencia) * *adicional + *daClasse, {} };
}

} // namespace lavra
