#include "forest.h"

#include "app/analise.h"
#include "app/session.h"
#include "base/numbers.h"
#include "calc/crops.h"

namespace lavra {

namespace {

// Where a box reads FLOREST: the class of the analysis that picks the column, the classes it
// may have, and the ordinal of the column of its lowest class.
struct ColunaFlorest {
    int ordinalClasse;
    int menorClasse;
    int maiorClasse;
    int primeiraColuna;
};

constexpr ColunaFlorest mo(int primeira) { return { analise::kClasseMO, 2, 4, primeira }; }
constexpr ColunaFlorest fosforo(int primeira) { return { analise::kClasseP, 1, 5, primeira }; }
constexpr ColunaFlorest potassio(int primeira) { return { analise::kClasseK, 1, 5, primeira }; }

// Box by box; P in topdressing has no column.
const std::array<std::optional<ColunaFlorest>, kBoxesFlorest> kColunas = { {
    mo(1), fosforo(10), potassio(20),
    mo(4), std::nullopt, potassio(25),
    mo(7), fosforo(15), potassio(30),
} };

const QString kNomesClasses[] = { QStringLiteral("de matéria orgânica"), QStringLiteral("de fósforo"),
    QStringLiteral("de potássio") };

Desfecho classeSemColuna(const Consulta& consulta, int ordinalClasse, int classe)
{
    const QString& nome = kNomesClasses[ordinalClasse - analise::kClasseMO];
    return Desfecho::critico(
        QStringLiteral("A classe %1 da análise (%2) não tem coluna na tabela %3; verifique a interpretação da "
                       "análise.")
            .arg(nome)
            .arg(classe)
            .arg(consulta.tabela));
}

} // namespace

QStringList legendasEtapasFlorestais()
{
    return { QStringLiteral("Plantio"), QStringLiteral("Cobertura"), QStringLiteral("Reposição") };
}

QStringList legendasNutrientes()
{
    return { QStringLiteral("N"), QStringLiteral("P₂O₅"), QStringLiteral("K₂O") };
}

CalculoFlorestal CalculaFlorestais(const Store& db, Session& session, int posicao, const QString& expectativa)
{
    CalculoFlorestal r;
    if (posicao < 0 || posicao >= culturasFlorestais().size()) {
        r.desfecho = Desfecho::aviso(kMsgSelecioneCultura, QStringLiteral("lstCulturas"));
        return r;
    }
    double rendimento = 0;
    if (florestalPedeRendimento(posicao)) {
        if (expectativa.isEmpty()) {
            r.desfecho = Desfecho::aviso(kMsgInformeExpectativa, QStringLiteral("txtExpect"));
            return r;
        }
        const auto e = parseNumber(expectativa);
        if (!e) {
            r.desfecho = Desfecho::aviso(kMsgExpectativaInvalida, QStringLiteral("txtExpect"));
            return r;
        }
        rendimento = *e;
    }
    r.substituiResultado = true;

    const Consulta consulta = chaveFlorestal(posicao, rendimento);
    const auto linha = leLinha(db, consulta);
    if (!linha)
        return falhou(r, semLinha(consulta));
    for (int box = 0; box < kBoxesFlorest; ++box) {
        const auto& coluna = kColunas[static_cast<std::size_t>(box)];
        if (!coluna) {
            r.nec[box] = QStringLiteral("0");
            continue;
        }
        const int c = classe(session.Analise, coluna->ordinalClasse);
        if (c < coluna->menorClasse || c > coluna->maiorClasse)
            return falhou(r, classeSemColuna(consulta, coluna->ordinalClasse, c));
        const int ordinal = coluna->primeiraColuna + c - coluna->menorClasse;
        const auto valor = celula(*linha, ordinal);
        if (!valor)
            return falhou(r, semValor(consulta, ordinal));
        r.nec[box] = textoNumero(*valor);
    }
    NecessidadeRecalculada(session, false);
    return r;
}

void CopiaParaNecFlorest(Session& session, const TextosNecFlorest& nec)
{
    copiaNecessidade(session.NecFlorest, nec);
}

Parada ProssegueFlorestais(Session& session, WindowHost& janelas, int posicao, const QString& expectativa,
    const TextosNecFlorest& nec)
{
    if (nec[0].isEmpty())
        return Desfecho::aviso(kMsgNaoCalculada);
    const auto valores = necNumerica(nec);
    if (!valores)
        return Desfecho::critico(kMsgResultadoIncompleto);
    std::optional<float> rendimento;
    if (florestalPedeRendimento(posicao)) {
        const auto e = parseNumber(expectativa);
        if (!e)
            return Desfecho::critico(kMsgExpectativaInvalida);
        rendimento = toSingle(*e);
    }
    for (std::size_t i = 0; i < valores->size(); ++i)
        session.NecFlorest[i] = QVariant((*valores)[i]);
    // The other species leave the yield slot as it was.
    RegistraCultura(session, janelas, culturasFlorestais().value(posicao), rendimento);
    session.PlanoNum = 3;
    return std::nullopt;
}

} // namespace lavra
