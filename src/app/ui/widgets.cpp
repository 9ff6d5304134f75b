#include "widgets.h"

#include "store/cursormodel.h"
#include "store/storeerror.h"

#include <algorithm>

#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
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

// A click in an empty masked box puts the cursor at its start, so that the digits are typed
// from the first position and not from where the click fell among the blanks.
class MascaraDoInicio final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* objeto, QEvent* evento) override
    {
        auto* caixa = qobject_cast<QLineEdit*>(objeto);
        if (caixa && evento->type() == QEvent::MouseButtonRelease) {
            const QString texto = caixa->text();
            if (std::none_of(texto.begin(), texto.end(), [](QChar c) { return c.isLetterOrNumber(); }))
                caixa->setCursorPosition(0);
        }
        return false;
    }
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

void mascaraDoInicio(QLineEdit* caixa)
{
    caixa->installEventFilter(new MascaraDoInicio(caixa));
}

int twips(const QWidget* widget, int valor)
{
    return valor * widget->logicalDpiX() / 1440;
}

QLabel* rotulo(const QString& texto, QWidget* campo, QWidget* pai, const QString& nome)
{
    auto* label = new QLabel(texto, pai);
    if (!nome.isEmpty())
        label->setObjectName(nome);
    label->setBuddy(campo);
    return label;
}

QLabel* rotuloDestaque(const QString& texto, const QString& nome, QWidget* pai)
{
    auto* rotulo = new QLabel(texto, pai);
    rotulo->setObjectName(nome);
    QFont destaque = rotulo->font();
    destaque.setBold(true);
    rotulo->setFont(destaque);
    return rotulo;
}

QLineEdit* caixaSomenteLeitura(QWidget* pai, const QString& nome, const QString& amostra)
{
    auto* caixa = new QLineEdit(pai);
    caixa->setObjectName(nome);
    caixa->setReadOnly(true);
    caixa->setFocusPolicy(Qt::ClickFocus);
    if (!amostra.isEmpty()) {
        caixa->setAlignment(Qt::AlignRight);
        caixa->setFixedWidth(caixa->fontMetrics().horizontalAdvance(amostra) + 16);
    }
    return caixa;
}

void sincronizaGrade(QAbstractItemView* grade, CursorModel* modelo, int coluna,
                     std::function<void(const StoreError&)> falha)
{
    QObject::connect(grade->selectionModel(), &QItemSelectionModel::currentRowChanged, modelo,
                     [grade, modelo, coluna, falha](const QModelIndex& atual) {
                         if (!atual.isValid() || atual.row() == modelo->currentRow())
                             return;
                         try {
                             modelo->setCurrentRow(atual.row());
                         } catch (const StoreError& error) {
                             // A refused row is dropped, never to be written by a later click.
                             modelo->discardEdits();
                             grade->setCurrentIndex(modelo->index(modelo->currentRow(), coluna));
                             if (falha)
                                 falha(error);
                         }
                     });
    QObject::connect(modelo, &CursorModel::currentRowChanged, grade, [grade, modelo, coluna](int linha) {
        if (linha >= 0 && grade->currentIndex().row() != linha)
            grade->setCurrentIndex(modelo->index(linha, coluna));
    });
}

} // namespace lavra::ui
