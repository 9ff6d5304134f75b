#include "widgets.h"

#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <QListWidget>

namespace lavra::ui {

void semEscolhaInicial(QAbstractItemView* vista)
{
    // Once a current index has been set, even an invalid one, the view no longer picks one
    // by itself on focus.
    vista->setCurrentIndex(QModelIndex());
    if (QItemSelectionModel* selecao = vista->selectionModel())
        selecao->clearSelection();
}

int linhaEscolhida(const QAbstractItemView* vista)
{
    const QItemSelectionModel* selecao = vista->selectionModel();
    if (!selecao)
        return -1;
    const QModelIndexList linhas = selecao->selectedIndexes();
    return linhas.isEmpty() ? -1 : linhas.first().row();
}

QString textoEscolhido(const QListWidget* lista)
{
    const QList<QListWidgetItem*> itens = lista->selectedItems();
    return itens.isEmpty() ? QString() : itens.first()->text();
}

} // namespace lavra::ui
