#include "medicinal.h"

#include "app/analise.h"
#include "app/session.h"
#include "calc/crops.h"

#include <array>

namespace lavra {

namespace {

// CONDMEDN: the share of the total N given at the base, then the totals of organic-matter class
// 2 to 4 at the ordinal of the class itself.
constexpr int kColFracaoBase = 1;
constexpr int kPrimeiraClasseMO = 2;
constexpr int kUltimaClasseMO = 4;

} // namespace

int classeDobrada(int classe)
{
    switch (classe) {
    case 1:
    case 2: return 1;
    case 3: return 2;
    case 4:
    case 5: return 3;
    default: return 0;
    }
}

CalculoCultura CalculaCondimentares(const Store& db, Session& session, int posicao)
{
    CalculoCultura r;
    if (posicao < 0 || posicao >= culturasCondimentares().size()) {
        r.desfecho = Desfecho::aviso(kMsgSelecioneCultura, QStringLiteral("lstCulturas"));
        return r;
    }
    r.substituiResultado = true;
    const ChavesCultura chaves = chavesCondimentares(posicao, session.CultivoTxt);

    if (const auto linha = leLinha(db, chaves.n)) {
        // Only a class of organic matter has a column; the share sits before them.
        const int classeMO = classe(session.Analise, analise::kClasseMO);
        const auto total = classeMO >= kPrimeiraClasseMO && classeMO <= kUltimaClasseMO
            ? celula(*linha, classeMO)
            : std::nullopt;
        if (!total)
            return falhou(r, semValor(chaves.n, classeMO));
        const auto fracao = celula(*linha, kColFracaoBase);
        if (!fracao)
            return falhou(r, semValor(chaves.n, kColFracaoBase));
        r.nec[3] = textoNumero(*total - *fracao * *total);
        r.nec[0] = textoNumero(*fracao * *total);
    }

    // A class the analysis does not have leaves its box empty, rather than the crop's name.
    const std::array<std::pair<const Consulta*, int>, 2> nutrientes = { {
        { &chaves.p, classeDobrada(classe(session.Analise, analise::kClasseP)) },
        { &chaves.k, classeDobrada(classe(session.Analise, analise::kClasseK)) },
    } };
    for (std::size_t n = 0; n < nutrientes.size(); ++n) {
        if (nutrientes[n].second == 0)
            continue;
        const Leitura lida = leClasse(db, *nutrientes[n].first, nutrientes[n].second);
        if (lida.falha)
            return falhou(r, *lida.falha);
        if (lida.valor)
            r.nec[1 + n] = textoNumero(*lida.valor);
    }

    NecessidadeRecalculada(session, false);
    return r;
}

Parada ProssegueCondimentares(Session& session, WindowHost& janelas, int posicao, const TextosNec& nec)
{
    return ProssegueCultura(session, janelas, culturasCondimentares().value(posicao), std::nullopt, nec);
}

} // namespace lavra
