#pragma once

#include "app/ui/chainwindow.h"
#include "app/ui/messages.h"
#include "calc/cropstep.h"
#include "store/storeerror.h"

#include <QList>
#include <QStringList>

#include <functional>
#include <optional>

class QBoxLayout;
class QGridLayout;
class QGroupBox;
class QLineEdit;
class QListWidget;
class QMenuBar;

namespace lavra::ui {

// What every crop window shares: the crop list lstCulturas, the result boxes txtNec_0.. under
// "Resultado final (kg/ha)", and the buttons cmdCalc, cmdAjusta, cmdProssegue, cmdRetorna and
// cmdCancela. A window derives from it, lays out its own inputs around m_lstCulturas, and
// supplies the calculation and its part of "Prosseguir".
class CropWindow : public ChainWindow {
    Q_OBJECT

public:
    CropWindow(
        Session& session, WindowRegistry& windows, const QStringList& culturas, QWidget* parent = nullptr);

    // The result boxes as they stand, from box 0.
    QStringList necessidade() const;
    // Empties every result box: no result outlives the input that made it.
    void LimpaCalculo();

    // "N base", "P base", "K base", "N cob".
    static QStringList legendasNec();

protected:
    // The frame "Resultado final (kg/ha)" with one read-only box per caption, caption above.
    QGroupBox* criaResultadoFinal(const QStringList& legendas = legendasNec(),
        const QString& titulo = QStringLiteral("Resultado final (kg/ha)"));
    // The frame "Definições para o cálculo" with the crop list under "Culturas" in its first
    // column, over linhas rows of the grid, the whole list in view and at least minimoLinhas tall.
    QGroupBox* criaDefinicoes(QGridLayout*& grade, int linhas, int minimoLinhas = 0);
    // The five buttons, in a row at the bottom of the window's layout, and the menu bar above it.
    void criaComandos(QBoxLayout* layout);
    // A box of a number the user types: the warning against kilograms at each change, the
    // check as it is left, and any change is a change of input.
    void ligaCampoNumerico(QLineEdit* caixa);
    // The position of the crop the user chose in lstCulturas; -1 while none is.
    int posicaoCultura() const;
    // The boxes as the four figures of most groups.
    TextosNec textosNec() const;
    // Runs the logic of cmdCalc; a failure of the database empties the boxes and is told, and
    // gives nothing.
    template <typename Calculo>
    std::optional<Calculo> executa(const std::function<Calculo()>& calculo)
    {
        try {
            return anotandoLinhas(m_linhasUsadas, calculo);
        } catch (const StoreError& error) {
            LimpaCalculo();
            erroBanco(this, error);
            return std::nullopt;
        }
    }
    // The boxes take what the calculation left in them, then its outcome is told.
    void mostraCalculo(const CalculoCultura& r);

    // A click in lstCulturas, after the results were emptied.
    virtual void culturaEscolhida(int posicao);
    // Any change of an input.
    virtual void entradaMudou();
    // cmdCalc.
    virtual void calcula() = 0;
    // The crop's part of cmdProssegue once the need is known to be there; nothing when the
    // window may go on.
    virtual Parada prossegue() = 0;
    // The window that follows; the forest window has its own.
    virtual QString proximaJanela() const;
    // cmdAjusta; the forest window has its own adjustment.
    virtual void ajusta();

    QListWidget* m_lstCulturas = nullptr;
    QList<QLineEdit*> m_txtNec;

private:
    // What the last run of cmdCalc read, for "Linhas da tabela usadas".
    LinhasDoCalculo m_linhasUsadas;

    void prossegueClicado();
    // The figures adjusted in frmAjusta for the window of that name, box by box; they count as a
    // result of this window.
    void necessidadeAjustada(const QString& janela, const QStringList& valores);
};


} // namespace lavra::ui
