#include "ornamentals.h"

#include "app/analise.h"
#include "app/session.h"
#include "base/numbers.h"
#include "calc/cropgroups.h"

#include <array>

namespace lavra {

namespace {

// One row per class 1 to 5: chrysanthemum, rose.
using DosesPorClasse = std::array<std::array<double, 2>, 5>;
constexpr DosesPorClasse kFosforo = { { { 80, 480 }, { 60, 320 }, { 40, 280 }, { 30, 200 }, { 30, 200 } } };
constexpr DosesPorClasse kPotassio = { { { 140, 400 }, { 120, 300 }, { 100, 150 }, { 80, 80 }, { 80, 80 } } };
constexpr std::array<std::array<double, 2>, 3> kNitrogenio = { { { 100, 120 }, { 75, 80 }, { 50, 60 } } };

std::optional<double> dosePorClasse(const DosesPorClasse& doses, int posicao, double classe)
{
    for (std::size_t i = 0; i < doses.size(); ++i) {
        if (classe == static_cast<double>(i + 1))
            return doses[i][static_cast<std::size_t>(posicao)];
    }
    return std::nullopt;
}

bool posicaoValida(int posicao)
{
    return posicao >= 0 && posicao < culturasOrnamentais().size();
}

double valor(const Session& session, int ordinal)
{
    return toNumber(session.Analise.value(ordinal)).value_or(0);
}

} // namespace

double nitrogenioOrnamentais(int posicao, double classeMO)
{
    const auto coluna = static_cast<std::size_t>(posicao);
    if (classeMO <= 2.5)
        return kNitrogenio[0][coluna];
    if (classeMO <= 5)
        return kNitrogenio[1][coluna];
    return kNitrogenio[2][coluna];
}

std::optional<double> fosforoOrnamentais(int posicao, double classeP)
{
    return dosePorClasse(kFosforo, posicao, classeP);
}

std::optional<double> potassioOrnamentais(int posicao, float classeK)
{
    return dosePorClasse(kPotassio, posicao, classeK);
}

CalculoCultura CalculaOrnamentais(Session& session, int posicao)
{
    CalculoCultura r;
    if (!posicaoValida(posicao)) {
        r.desfecho = Desfecho::aviso(kMsgSelecioneCultura, QStringLiteral("lstCulturas"));
        return r;
    }
    r.substituiResultado = true;
    r.nec[0] = textoNumero(nitrogenioOrnamentais(posicao, valor(session, analise::kClasseMO)));
    if (const auto p = fosforoOrnamentais(posicao, valor(session, analise::kClasseP)))
        r.nec[1] = textoNumero(*p);
    if (const auto k = potassioOrnamentais(posicao, analiseSingle(session.Analise, analise::kClasseK)))
        r.nec[2] = textoNumero(*k);
    r.nec[3] = kConsultarMAC;
    NecessidadeRecalculada(session, false);
    return r;
}

Parada ProssegueOrnamentais(Session& session, WindowHost& janelas, int posicao, const TextosNec& nec)
{
    if (!nec[0].isEmpty() && nec[3] == kConsultarMAC)
        return Desfecho::aviso(kMsgCoberturaOrnamentais, QStringLiteral("cmdAjusta"));
    return ProssegueCultura(session, janelas, culturasOrnamentais().value(posicao), std::nullopt, nec);
}

} // namespace lavra
