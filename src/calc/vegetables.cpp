#include "vegetables.h"

#include "app/analise.h"
#include "app/session.h"
#include "base/numbers.h"
#include "calc/crops.h"
#include "registers/interpretation.h"

namespace lavra {

namespace {

// Column of HORTN with the share of the total nitrogen given at the base.
constexpr int kColFracaoBase = 1;

// The cassava limits, in % of organic matter, applied to the class number.
constexpr float kMandiocaLimite1 = 1.2f;
constexpr float kMandiocaLimite2 = 2.5f;

// Crops whose base nitrogen is a fixed dose taken from the total of the row.
double nBaseFixo(int posicao)
{
    switch (posicao) {
    case hortalicas::Alcachofra: return 40;
    case hortalicas::Batata: return 10;
    case hortalicas::Ervilha: return 20;
    default: return 0;
    }
}

bool temFaixas(int posicao)
{
    return !expectativasHortalicas(posicao).isEmpty();
}

} // namespace

bool hortalicaPedeRendimento(int posicao)
{
    return posicao == hortalicas::Alho || posicao == hortalicas::Batata;
}

int classeMOMandioca(float classeMO)
{
    if (classeMO <= kMandiocaLimite1)
        return 2;
    if (classeMO <= kMandiocaLimite2)
        return 3;
    return 4;
}

CalculoCultura CalculaHortalicas(const Store& db, Session& session, const DefinicoesHortalicas& d)
{
    CalculoCultura r;
    if (d.posicao < 0 || d.posicao >= culturasHortalicas().size()) {
        r.desfecho = Desfecho::aviso(kMsgSelecioneCultura, QStringLiteral("lstCulturas"));
        return r;
    }
    // From here on the boxes hold this calculation or nothing.
    r.substituiResultado = true;
    if (temFaixas(d.posicao) && d.posicaoExpectativa < 1) {
        r.desfecho = Desfecho::aviso(kMsgInformeExpectativa, QStringLiteral("cboExpect"));
        return r;
    }

    const ChavesCultura chaves = chavesHortalicas(d.posicao, d.posicaoExpectativa,
        ClasseArgila(analiseSingle(session.Analise, analise::kArgila)), session.Cultivo);
    const int classeMO = d.posicao == hortalicas::Mandioca
        ? classeMOMandioca(analiseSingle(session.Analise, analise::kClasseMO))
        : classe(session.Analise, analise::kClasseMO);
    TextosNec& nec = r.nec;

    if (const auto linha = leLinha(db, chaves.n)) {
        const auto total = celula(*linha, classeMO);
        if (!total)
            return falhou(r, semValor(chaves.n, classeMO));
        const auto fracao = celula(*linha, kColFracaoBase);
        if (!fracao)
            return falhou(r, semValor(chaves.n, kColFracaoBase));
        nec[3] = textoNumero(*total - *fracao * *total);
        nec[0] = textoNumero(*fracao * *total);
    }
    if (const double fixo = nBaseFixo(d.posicao); fixo != 0) {
        // The fixed dose comes out of the topdressing, so it needs the row.
        const auto cobertura = parseNumber(nec[3]);
        if (!cobertura)
            return falhou(r, semLinha(chaves.n));
        nec[3] = textoNumero(*cobertura - fixo);
        nec[0] = textoNumero(fixo);
    }

    // A second crop reads the one-column tables, whatever the class.
    const bool primeiro = session.Cultivo == 1;
    const std::array<std::pair<const Consulta*, int>, 2> nutrientes = { {
        { &chaves.p, primeiro ? classe(session.Analise, analise::kClasseP) : 1 },
        { &chaves.k, primeiro ? classe(session.Analise, analise::kClasseK) : 1 },
    } };
    for (std::size_t n = 0; n < nutrientes.size(); ++n) {
        const Leitura lida = leClasse(db, *nutrientes[n].first, nutrientes[n].second);
        if (lida.falha)
            return falhou(r, *lida.falha);
        if (lida.valor)
            nec[1 + n] = textoNumero(*lida.valor);
    }

    session.CultivoTxt = chaves.cultivoTxt;
    NecessidadeRecalculada(session, false);
    return r;
}

Parada ProssegueHortalicas(Session& session, WindowHost& janelas, int posicao, const TextosNec& nec)
{
    const std::optional<float> expectativa = temFaixas(posicao) ? std::optional(session.ExpectHort) : std::nullopt;
    return ProssegueCultura(session, janelas, culturasHortalicas().value(posicao), expectativa, nec);
}

} // namespace lavra
