#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lavra {

// What a crop group is, once for the whole program: its number (Grupo), its text in the group
// list (NomeGrupo), its windows, its crops and the manual's tables it reads.

namespace grupo {
enum Numero : int { Graos = 1, Hortalicas, Forrageiras, Florestais, Ornamentais, Condimentares, Cana };
inline constexpr int kGrupos = 7;
} // namespace grupo

struct GrupoCultura {
    int numero = 0;
    QString nome;
    QString janela;
    // The window that takes the figures of frmAjusta; empty where none does (the forest group has
    // its own adjustment; medicinal plants and cane keep their figures).
    QString janelaAjuste;
    // Whether the group asks whether this is the first or the second crop after the analysis.
    bool pedeCultivo = false;
    // The manual's tables: nitrogen, then the P and K tables less their crop-order digit. Empty
    // where the group reads no such table.
    QString tabelaN;
    QString prefixoP;
    QString prefixoK;
    // The P and K tables follow the crop order; otherwise they are always those of the first crop.
    bool porCultivo = false;
    const QStringList& (*culturas)() = nullptr;

    QString tabelaP(const QString& cultivoTxt) const;
    QString tabelaK(const QString& cultivoTxt) const;
};

// Every group, in list order.
const QList<GrupoCultura>& gruposCultura();
// The group of that number or of that list text; nothing for any other.
const GrupoCultura* grupoCultura(int numero);
const GrupoCultura* grupoCultura(const QString& nome);
// The texts of the group list.
QStringList nomesGrupos();

// --- Crop lists, in list order -------------------------------------------------------------
// The list position, not the text, picks the branches, so the order is part of the design.

const QStringList& culturasGraos();
const QStringList& culturasHortalicas();
const QStringList& culturasForrageiras();
const QStringList& culturasFlorestais();
const QStringList& culturasOrnamentais();
const QStringList& culturasCondimentares();
const QStringList& culturasCana();
// The list of Grupo 1 to 7; empty for any other number.
const QStringList& culturasDoGrupo(int grupo);

} // namespace lavra
