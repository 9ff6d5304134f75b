// What the three fuzz targets share: the limits, and a walk over every cell the way the import
// reads them, so that faults in the accessors show up and not only in the parsing.
#pragma once

#include "exchange/workbook.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

namespace lavra::fuzz {

inline OpcoesLeitura opcoes()
{
    OpcoesLeitura o;
    // Small enough that a legitimately large sheet is refused before it reaches the RSS limit.
    o.maxCelulas = 200'000;
    return o;
}

// LAVRA_FUZZ_SHOW=1 prints what an input read as, for a look at a reproducer or a seed.
inline bool mostra()
{
    static const bool sim = qEnvironmentVariableIsSet("LAVRA_FUZZ_SHOW");
    return sim;
}

inline void percorre(Pasta& pasta)
{
    for (auto& p : pasta.planilhas) {
        p->conclui();
        if (mostra())
            std::fprintf(stderr, "sheet '%s': %d rows\n", qPrintable(p->nome()), p->linhasUsadas());
        volatile qsizetype soma = p->nome().size();
        for (int l = 1; l <= p->linhasUsadas(); ++l) {
            QStringList linha;
            for (int c = 1; c <= 40; ++c) {
                const Celula celula = p->celula(l, c);
                const QString texto = celula.comoTexto();
                soma = soma + texto.size() + celula.data().isValid() + celula.vazia();
                if (mostra())
                    linha << texto;
            }
            if (mostra())
                std::fprintf(stderr, "  %d: %s\n", l, qPrintable(linha.join(QLatin1Char('|'))));
        }
    }
}

// ErroPasta is how a reader turns down a bad file; anything else leaving it is a fault.
template <typename Leitura>
int executa(Leitura&& leitura)
{
    Pasta pasta;
    pasta.caminho = QStringLiteral("fuzz");
    try {
        leitura(pasta);
    } catch (const ErroPasta& e) {
        if (mostra())
            std::fprintf(stderr, "refused: %s\n", qPrintable(e.mensagem()));
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "exception escaped the reader: %s\n", e.what());
        std::abort();
    } catch (...) {
        std::fprintf(stderr, "unknown exception escaped the reader\n");
        std::abort();
    }
    percorre(pasta);
    return 0;
}

} // namespace lavra::fuzz
