#include "dialogs.h"

#include <QDialog>
#include <QFileDialog>
#include <QPrintDialog>
#include <QPrinter>

namespace lavra::ui {

namespace {

RespondedorImpressao& respondedorImpressao()
{
    static RespondedorImpressao atual;
    return atual;
}

RespondedorArquivo& respondedorArquivo()
{
    static RespondedorArquivo atual;
    return atual;
}

} // namespace

void setRespondedorImpressao(RespondedorImpressao respondedor) { respondedorImpressao() = std::move(respondedor); }

bool escolheImpressora(QWidget* parent, QPrinter& printer)
{
    if (respondedorImpressao())
        return respondedorImpressao()(printer);
    QPrintDialog dialogo(&printer, parent);
    return dialogo.exec() == QDialog::Accepted;
}

void setRespondedorArquivo(RespondedorArquivo respondedor) { respondedorArquivo() = std::move(respondedor); }

QString arquivoParaSalvar(QWidget* parent, const QString& titulo, const QString& inicial, const QString& filtro,
                          QString* filtroEscolhido)
{
    if (respondedorArquivo())
        return respondedorArquivo()(titulo, filtro);
    return QFileDialog::getSaveFileName(parent, titulo, inicial, filtro, filtroEscolhido);
}

} // namespace lavra::ui
