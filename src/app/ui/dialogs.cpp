#include "dialogs.h"

#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>

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

QString arquivoParaAbrir(QWidget* parent, const QString& titulo, const QString& inicial, const QString& filtro)
{
    if (respondedorArquivo())
        return respondedorArquivo()(titulo, filtro);
    return QFileDialog::getOpenFileName(parent, titulo, inicial, filtro);
}

QString nomeDeArquivo(const QString& texto)
{
    QString nome = texto;
    static const QString proibidos = QStringLiteral("/\\:*?\"<>|");
    for (QChar& c : nome) {
        if (proibidos.contains(c))
            c = QLatin1Char('-');
    }
    return nome.trimmed();
}

QString pastaInicial(bool imagens)
{
    for (const auto local : {imagens ? QStandardPaths::PicturesLocation : QStandardPaths::DocumentsLocation,
                             QStandardPaths::HomeLocation}) {
        const QString pasta = QStandardPaths::writableLocation(local);
        if (!pasta.isEmpty() && QDir(pasta).exists())
            return pasta;
    }
    return QDir::homePath();
}

} // namespace lavra::ui
