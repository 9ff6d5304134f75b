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

} // namespace lavra::ui
