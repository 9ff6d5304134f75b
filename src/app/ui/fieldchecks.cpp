#include "fieldchecks.h"

#include "base/outcome.h"
#include "base/validation.h"
#include "messages.h"

#include <QLineEdit>
#include <QPointer>
#include <QTimer>

namespace lavra::ui {

namespace {

const char* const kGrandeza = "lavraGrandeza";

std::optional<Grandeza> grandezaDe(const QLineEdit* caixa)
{
    const QVariant valor = caixa->property(kGrandeza);
    if (!valor.isValid())
        return std::nullopt;
    return static_cast<Grandeza>(valor.toInt());
}

// After the box has been shown: the field is where the user fixes it.
void devolveFoco(QLineEdit* caixa)
{
    QPointer<QLineEdit> field(caixa);
    QTimer::singleShot(0, caixa, [field]() {
        if (field)
            field->setFocus();
    });
}

} // namespace

bool ValidaNumero(QLineEdit* caixa)
{
    const NumberCheck check = lavra::ValidaNumero(caixa->text());
    if (check.clearField)
        caixa->clear();
    for (const QString& message : check.messages)
        mostra(caixa->window(), Desfecho::aviso(message));
    return check.invalid;
}

void checaAoSair(QLineEdit* caixa, std::optional<Grandeza> grandeza)
{
    if (grandeza)
        defineGrandeza(caixa, *grandeza);
    QObject::connect(caixa, &QLineEdit::editingFinished, caixa, [caixa]() {
        // A read-only field is being shown, not typed in.
        if (caixa->isReadOnly() || !caixa->isEnabled())
            return;
        // A blank before or after the number is never meant, and is no symbol to be told of.
        const QString aparado = caixa->text().trimmed();
        if (aparado != caixa->text())
            caixa->setText(aparado);
        if (ValidaNumero(caixa)) {
            devolveFoco(caixa);
            return;
        }
        if (const auto g = grandezaDe(caixa)) {
            if (const auto recusa = VerificaFaixa(*g, caixa->text())) {
                mostra(caixa->window(), Desfecho::aviso(*recusa));
                devolveFoco(caixa);
            }
        }
    });
}

void defineGrandeza(QLineEdit* caixa, Grandeza grandeza)
{
    caixa->setProperty(kGrandeza, static_cast<int>(grandeza));
}

bool recusaCampo(QLineEdit* caixa)
{
    const QString aparado = caixa->text().trimmed();
    if (aparado != caixa->text())
        caixa->setText(aparado);
    const auto recusa = RecusaNumero(aparado, grandezaDe(caixa));
    if (!recusa)
        return false;
    mostra(caixa->window(), Desfecho::aviso(*recusa));
    caixa->setFocus();
    return true;
}

bool recusaCampos(std::initializer_list<QLineEdit*> caixas)
{
    for (QLineEdit* caixa : caixas) {
        if (recusaCampo(caixa))
            return true;
    }
    return false;
}

void checaAoMudar(QLineEdit* caixa)
{
    QObject::connect(caixa, &QLineEdit::textEdited, caixa, [caixa]() { ValidaNumero(caixa); });
}

bool ValidaData(QWidget* parent, const QString& digitos)
{
    if (lavra::ValidaData(digitos))
        return true;
    mostra(parent, Desfecho::aviso(kMsgDataInvalida));
    return false;
}

void AvisaValorElevado(QWidget* parent, const QVariant& valor)
{
    if (const auto message = lavra::AvisaValorElevado(valor))
        mostra(parent, Desfecho::aviso(*message));
}

} // namespace lavra::ui
