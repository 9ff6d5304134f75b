#include "desktop.h"

#include "app/locais.h"
#include "messages.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace lavra::ui {

namespace {

std::function<bool(const QString&)>& abridorDeArquivos()
{
    static std::function<bool(const QString&)> abridor;
    return abridor;
}

bool abre(const QString& arquivoOuEndereco, const QUrl& url)
{
    return abridorDeArquivos() ? abridorDeArquivos()(arquivoOuEndereco) : QDesktopServices::openUrl(url);
}

} // namespace

void setAbridorDeArquivos(std::function<bool(const QString& caminho)> abridor)
{
    abridorDeArquivos() = std::move(abridor);
}

void abreExterno(QWidget* parent, const QString& endereco)
{
    if (!abre(endereco, QUrl(endereco)))
        informacao(parent, QStringLiteral("Não foi possível abrir o endereço abaixo: este computador não tem um programa "
                                          "configurado para abri-lo. Copie-o para o seu navegador ou programa de "
                                          "e-mail.\n\n%1")
                               .arg(endereco));
}

void abreDocumento(QWidget* parent, const QString& arquivo)
{
    const locais::Local local = locais::localAtual();
    const QString caminho = locais::caminhoDoDocumento(local, arquivo);
    if (!QFileInfo::exists(caminho)) {
        const QString pasta = local.pastaInstalada.isEmpty() ? local.pastaDoPrograma : local.pastaInstalada;
        informacao(parent, QStringLiteral("O documento \"%1\" não está instalado junto com o programa.\n\n"
                                          "Ele deveria estar na pasta %2.")
                               .arg(arquivo, QDir::toNativeSeparators(pasta)));
        return;
    }
    if (!abre(caminho, QUrl::fromLocalFile(caminho)))
        informacao(parent, QStringLiteral("Não foi possível abrir o documento \"%1\": não há um programa para exibir "
                                          "arquivos PDF neste computador.\n\nO documento está em %2.")
                               .arg(arquivo, QDir::toNativeSeparators(caminho)));
}

void mostraArquivo(QWidget* parent, const QString& caminho)
{
    if (!abre(caminho, QUrl::fromLocalFile(caminho)))
        informacao(parent, QStringLiteral("O arquivo foi gravado em %1, mas não há neste computador um programa "
                                          "para abri-lo.")
                               .arg(QDir::toNativeSeparators(caminho)));
}

void abreCalculadora()
{
    const QString appDir = QCoreApplication::applicationDirPath();
    for (const char* name : {"Calc", "gnome-calculator", "kcalc", "mate-calc", "galculator", "qalculate-gtk",
                             "qalculate-qt", "speedcrunch", "xcalc"}) {
        QString program = QStandardPaths::findExecutable(QString::fromLatin1(name), {appDir});
        if (program.isEmpty())
            program = QStandardPaths::findExecutable(QString::fromLatin1(name));
        if (!program.isEmpty() && QProcess::startDetached(program, {}))
            return;
    }
}

} // namespace lavra::ui
