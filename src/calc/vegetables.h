#pragma once

#include "calc/cropstep.h"

#include <QString>

namespace lavra {

class Store;
struct Session;
class WindowHost;

// ---- Vegetables (frmHort) -------------------------------------------------------------------

inline const QString kTituloHortalicas = QStringLiteral("Grupo: Hortaliças");

// What the vegetable window holds when its commands run.
struct DefinicoesHortalicas {
    int posicao = -1; // lstCulturas
    int posicaoExpectativa = -1; // cboExpect: 0 is "Selecione", -1 a disabled list
};

// Garlic and potato ask for the yield itself once a class is picked; tomato does not.
bool hortalicaPedeRendimento(int posicao);

// The organic-matter class by which cassava reads HORTN. The limits of organic matter in %
// are applied to the class number itself, so that class 2 reads as 3, and 3 and 4 as 4.
int classeMOMandioca(float classeMO);

// cmdCalc: the checks in the window's order, then HORTN, HORTPC<n> and HORTKC<n> by the keys of
// chavesHortalicas, with the fixed base nitrogen of artichoke, potato and pea. On a full run it
// sets CultivoTxt and RefazPlano and drops the note of an earlier adjustment. Throws StoreError.
CalculoCultura CalculaHortalicas(const Store& db, Session& session, const DefinicoesHortalicas& definicoes);

// cmdProssegue: the yield typed for its class goes on only for the crops with classes; for
// tomato that is whatever an earlier question left in ExpectHort.
Parada ProssegueHortalicas(Session& session, WindowHost& janelas, int posicao, const TextosNec& nec);

} // namespace lavra
