#include "cane.h"

#include "app/analise.h"
#include "app/session.h"
#include "calc/crops.h"

namespace lavra {

CalculoCultura CalculaCana(const Store& db, Session& session, int posicao, int posicaoExpectativa)
{
    CalculoCultura r;
    if (posicao < 0 || posicao >= culturasCana().size()) {
        r.desfecho = Desfecho::aviso(kMsgSelecioneCultura, QStringLiteral("lstCulturas"));
        return r;
    }
    r.substituiResultado = true;
    if (posicaoExpectativa < 1) {
        r.desfecho = Desfecho::aviso(kMsgInformeExpectativa, QStringLiteral("cboExpect"));
        return r;
    }
    const ChavesCultura chaves = chavesCana(posicao, posicaoExpectativa);
    const std::array<std::pair<const Consulta*, int>, 3> leituras = { {
        { &chaves.n, classe(session.Analise, analise::kClasseMO) },
        { &chaves.p, classe(session.Analise, analise::kClasseP) },
        { &chaves.k, classe(session.Analise, analise::kClasseK) },
    } };
    std::array<std::optional<double>, 3> valores;
    for (std::size_t i = 0; i < leituras.size(); ++i) {
        const Leitura lida = leClasse(db, *leituras[i].first, leituras[i].second);
        if (lida.falha) {
            r.desfecho = lida.falha;
            return r;
        }
        valores[i] = lida.valor;
    }
    if (const auto total = valores[0]) {
        const double base = posicao == cana::CanaPlanta ? kNBaseCanaPlanta : 0;
        r.nec[3] = textoNumero(*total - base);
        r.nec[0] = textoNumero(base);
    }
    for (std::size_t n = 1; n < valores.size(); ++n) {
        if (valores[n])
            r.nec[n] = textoNumero(*valores[n]);
    }
    NecessidadeRecalculada(session, false);
    return r;
}

Parada ProssegueCana(Session& session, WindowHost& janelas, int posicao, const TextosNec& nec)
{
    return ProssegueCultura(session, janelas, culturasCana().value(posicao), session.ExpectHort, nec);
}

} // namespace lavra
