#include "fieldchecks.h"

#include "app/validation.h"
#include "messages.h"

#include <QLineEdit>
#include <QPointer>
#include <QTimer>

namespace lavra::ui {

bool ValidaNumero(QLineEdit* caixa)
{
    const NumberCheck check = lavra::ValidaNumero(caixa->text());
    if (check.clearField)
        caixa->clear();
    for (const QString& message : check.messages)
        aviso(caixa->window(), message);
    return check.invalid;
}

void checaAoSair(QLineEdit* caixa)
{
    QObject::connect(caixa, &QLineEdit::editingFinished, caixa, [caixa]() {
        // A read-only field is being shown, not typed in.
        if (caixa->isReadOnly() || !caixa->isEnabled())
            return;
        if (ValidaNumero(caixa)) {
            QPointer<QLineEdit> field(caixa);
            QTimer::singleShot(0, caixa, [field]() {
                if (field)
                    field->setFocus();
            });
        }
    });
}

void checaAoMudar(QLineEdit* caixa)
{
    QObject::connect(caixa, &QLineEdit::textEdited, caixa, [caixa]() { ValidaNumero(caixa); });
}

bool ValidaData(QWidget* parent, const QString& digitos)
{
    if (lavra::ValidaData(digitos))
        return true;
    aviso(parent, kMsgDataInvalida);
    return false;
}

void AvisaValorElevado(QWidget* parent, const QVariant& valor)
{
    if (const auto message = lavra::AvisaValorElevado(valor))
        aviso(parent, *message);
}

} // namespace lavra::ui
