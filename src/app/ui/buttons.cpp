#include "buttons.h"

#include <QBoxLayout>
#include <QPushButton>

namespace lavra::ui {

namespace {

QPushButton* criaBotao(QHBoxLayout* row, QWidget* parent, const Botao& botao)
{
    if (botao.nome.isEmpty())
        return nullptr;
    auto* button = new QPushButton(botao.legenda, parent);
    button->setObjectName(botao.nome);
    button->setMinimumWidth(96);
    row->addWidget(button);
    return button;
}

} // namespace

QList<QPushButton*> adicionaBotoes(QBoxLayout* layout, QWidget* parent, const QList<Botao>& botoes)
{
    auto* row = new QHBoxLayout;
    row->addStretch();
    QList<QPushButton*> created;
    for (const Botao& botao : botoes)
        created << criaBotao(row, parent, botao);
    if (!created.isEmpty())
        created.first()->setDefault(true);
    layout->addLayout(row);
    return created;
}

LinhaPasso adicionaBotoesPasso(QBoxLayout* layout, QWidget* parent, const BotoesPasso& botoes)
{
    // Made in the order Tab reaches them, forward before back and Cancelar last; laid out in
    // the order the eye reads them.
    auto* row = new QHBoxLayout;
    auto* fim = new QHBoxLayout;
    LinhaPasso linha;
    for (const Botao& botao : botoes.acoes)
        linha.acoes << criaBotao(row, parent, botao);
    linha.prossegue = criaBotao(fim, parent, botoes.prossegue);
    linha.retorna = criaBotao(fim, parent, botoes.retorna);
    if (linha.retorna)
        fim->insertWidget(0, linha.retorna);
    linha.cancela = criaBotao(fim, parent, botoes.cancela);
    if (linha.cancela) {
        fim->insertWidget(0, linha.cancela);
        fim->insertSpacing(1, 24);
    }
    row->addStretch();
    row->addLayout(fim);
    if (QPushButton* padrao = linha.acoes.isEmpty() ? linha.prossegue : linha.acoes.first())
        padrao->setDefault(true);
    layout->addLayout(row);
    return linha;
}

} // namespace lavra::ui
