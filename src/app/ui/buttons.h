#pragma once

#include <QList>
#include <QString>

class QBoxLayout;
class QPushButton;
class QWidget;

namespace lavra::ui {

struct Botao {
    QString nome;
    QString legenda;
};

// A row of buttons at the bottom right of a window; the first answers Enter.
QList<QPushButton*> adicionaBotoes(QBoxLayout* layout, QWidget* parent, const QList<Botao>& botoes);

// The buttons of a step of the chain, laid out the same way in every step: the step's own
// actions on the left, then Cancelar apart, then back and forward, forward last. A button
// whose name is empty is left out.
struct BotoesPasso {
    QList<Botao> acoes;
    Botao cancela;
    Botao retorna;
    Botao prossegue;
};

struct LinhaPasso {
    QList<QPushButton*> acoes;
    QPushButton* cancela = nullptr;
    QPushButton* retorna = nullptr;
    QPushButton* prossegue = nullptr;
};

// The first action answers Enter, or forward when the step has no action of its own.
LinhaPasso adicionaBotoesPasso(QBoxLayout* layout, QWidget* parent, const BotoesPasso& botoes);

} // namespace lavra::ui
