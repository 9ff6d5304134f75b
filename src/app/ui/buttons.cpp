#include "buttons.h"

#include <QBoxLayout>
#include <QPushButton>

namespace lavra::ui {

namespace {

QPushButton* criaBotao(QWidget* parent, const Botao& botao)
{
    if (botao.nome.isEmpty())
        return nullptr;
    auto* button = new QPushButton(botao.legenda, parent);
    button->setObjectName(botao.nome);
    button->setMinimumWidth(96);
    return button;
}

} // namespace

QList<QPushButton*> adicionaBotoes(QBoxLayout* layout, QWidget* parent, const QList<Botao>& botoes)
{
    auto* row = new QHBoxLayout;
    row->addStretch();
    QList<QPushButton*> created;
    for (const Botao& botao : botoes) {
        created << criaBotao(parent, botao);
        row->addWidget(created.last());
    }
    if (!created.isEmpty())
        created.first()->setDefault(true);
    layout->addLayout(row);
    return created;
}

LinhaPasso adicionaBotoesPasso(QBoxLayout* layout, QWidget* parent, const BotoesPasso& botoes)
{
    // Made in the order Tab reaches them, forward before back and Cancelar last; laid out in
    // the order the eye reads them.
    LinhaPasso linha;
    for (const Botao& botao : botoes.acoes)
        linha.acoes << criaBotao(parent, botao);
    linha.prossegue = criaBotao(parent, botoes.prossegue);
    linha.retorna = criaBotao(parent, botoes.retorna);
    linha.cancela = criaBotao(parent, botoes.cancela);

    auto* row = new QHBoxLayout;
    for (QPushButton* acao : linha.acoes)
        row->addWidget(acao);
    row->addStretch();
    if (linha.cancela) {
        row->addWidget(linha.cancela);
        row->addSpacing(24);
    }
    for (QPushButton* button : {linha.retorna, linha.prossegue}) {
        if (button)
            row->addWidget(button);
    }
    if (QPushButton* padrao = linha.acoes.isEmpty() ? linha.prossegue : linha.acoes.first())
        padrao->setDefault(true);
    layout->addLayout(row);
    return linha;
}

} // namespace lavra::ui
