#include "widgets.h"

#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QListWidget>
#include <QPushButton>

namespace lavra::ui {

namespace {

class EnterPadrao final : public QObject {
public:
    explicit EnterPadrao(QWidget* janela) : QObject(janela), m_janela(janela) {}

protected:
    bool eventFilter(QObject* objeto, QEvent* evento) override
    {
        // The key reaches the window only when the control that had it let it go.
        if (objeto != m_janela || evento->type() != QEvent::KeyPress)
            return false;
        const auto* tecla = static_cast<QKeyEvent*>(evento);
        if ((tecla->key() != Qt::Key_Return && tecla->key() != Qt::Key_Enter)
            || (tecla->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
            return false;
        // On a button, Enter presses that button, as Space does.
        if (auto* focado = qobject_cast<QPushButton*>(m_janela->focusWidget()); focado && focado->isEnabled()) {
            focado->click();
            return true;
        }
        for (QPushButton* botao : m_janela->findChildren<QPushButton*>()) {
            if (botao->isDefault() && botao->isVisible() && botao->isEnabled()) {
                botao->click();
                return true;
            }
        }
        return false;
    }

private:
    QWidget* m_janela;
};

} // namespace

void enterAcionaPadrao(QWidget* janela)
{
    janela->installEventFilter(new EnterPadrao(janela));
}

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
