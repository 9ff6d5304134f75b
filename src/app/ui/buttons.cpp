#include "buttons.h"

#include <QBoxLayout>
#include <QPushButton>

namespace lavra::ui {

QList<QPushButton*> adicionaBotoes(QBoxLayout* layout, QWidget* parent, const QList<Botao>& botoes)
{
    auto* row = new QHBoxLayout;
    row->addStretch();
    QList<QPushButton*> created;
    for (const Botao& botao : botoes) {
        auto* button = new QPushButton(botao.legenda, parent);
        button->setObjectName(botao.nome);
        button->setMinimumWidth(96);
        row->addWidget(button);
        created << button;
    }
    if (!created.isEmpty())
        created.first()->setDefault(true);
    layout->addLayout(row);
    return created;
}

} // namespace lavra::ui
