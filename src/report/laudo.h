#pragma once

#include "base/outcome.h"
#include "kinds.h"
#include "layout.h"

#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

namespace lavra {
struct Session;
}

namespace lavra::report {

inline const QString kMsgSemEmpresa = QStringLiteral(
    "Não há empresa cadastrada responsável pelo laudo! Acesse o menu arquivo para fazer o cadastro.");
// A recommendation that is not (or no longer) in its table.
QString msgSemRecomendacao(const QString& codAnalise, const QString& codCultivo);

// One text laid on the page, already formatted. The box is in twips from the top left of the detail.
struct TextoPosto {
    QString nome;
    QRect caixa;
    Alinhamento alinhamento = Alinhamento::Esquerda;
    Fonte fonte;
    bool quebraLinhas = false;  // several lines from the top of the box
    bool moldura = false;       // a frame around the box
    QString texto;
};

// What a report prints, free of any way of drawing it. Lengths in twips.
struct Pagina {
    TipoLaudo tipo = TipoLaudo::Formulas;
    QString titulo;  // the window's and the document's title
    QString familia = QStringLiteral("Arial");
    int larguraPapel = kLarguraPapel;
    int alturaPapel = kAlturaPapel;
    int margem = kMargem;
    QPoint origem;  // the detail's top left corner on the paper
    int larguraCorpo = 0;
    int alturaDetalhe = 0;
    QVector<TextoPosto> textos;
    QVector<Traco> tracos;  // from the detail's corner, as the texts

    const TextoPosto* texto(const QString& nome) const;
};

// A page, or the box that stands in its place.
struct Laudo {
    std::optional<Pagina> pagina;
    Parada recusa;
};

// The signing technician as the session holds him.
struct Tecnico {
    QString nome;
    QString profissao;
    QString crea;
};

// The builders. Each sets TipoLaudo, LaudoAnalise and LaudoCultivo, reads the company, finds the
// saved row whose columns 0 and 1 are the two codes (the first such row) and lays it out with the
// session's analysis, which is loaded for the code when it holds another, and the session's
// technician. No company and no row give a refusal. A failure of the database throws StoreError.
Laudo MontaLaudo(Session& session, TipoLaudo tipo, const QString& codAnalise, const QString& codCultivo);
Laudo LaudoFormulas(Session& session, const QString& codAnalise, const QString& codCultivo);
Laudo LaudoFormulacao(Session& session, const QString& codAnalise, const QString& codCultivo);
Laudo LaudoFlorest(Session& session, const QString& codAnalise, const QString& codCultivo);

// The layout filled from data already read: the saved row, the analysis, the ten columns of the
// company. Missing elements print as empty.
Pagina montaPagina(TipoLaudo tipo, const QVector<QVariant>& linha, const QVector<QVariant>& analise,
                   const QStringList& empresa, const Tecnico& tecnico);

// The six columns of the forest plan: columns 13 to 27 of the row, each a "#"-joined line or 0,
// laid out column by column, one decimal to every number, a line break after every cell.
QStringList colunasFlorestais(const QVector<QVariant>& linha);

// The page as text: a first line for the page (page|left|top|width|height|title, the detail on the
// paper), then one line per text (name|left|top|width|height|text) and per rule (rule|left|top|width|0|),
// line breaks written as \n.
QString textoPagina(const Pagina& pagina);

} // namespace lavra::report
