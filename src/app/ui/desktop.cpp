#include "desktop.h"

#include "app/locais.h"
#include "messages.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
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

// Hands the file or page to the desktop and calls naoAbriu when it could not be opened, at once or
// when the desktop's opener gives up. Qt reports success as soon as xdg-open starts, even when it
// then finds no program for the file, so on such desktops xdg-open is run here and its exit status
// read. Its process is not deleted at exit: xdg-open may be waiting on the viewer it started.
void abre(QWidget* parent, const QString& arquivoOuEndereco, const QUrl& url,
          std::function<void(QWidget*)> naoAbriu)
{
    if (abridorDeArquivos()) {
        if (!abridorDeArquivos()(arquivoOuEndereco))
            naoAbriu(parent);
        return;
    }
    const QString xdgOpen = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (xdgOpen.isEmpty()) {
        if (!QDesktopServices::openUrl(url))
            naoAbriu(parent);
        return;
    }
    auto* processo = new QProcess;
    processo->setProcessChannelMode(QProcess::ForwardedChannels);
    const QPointer<QWidget> janela(parent);
    QObject::connect(processo, &QProcess::finished, processo, [processo, janela, naoAbriu](int codigo, QProcess::ExitStatus estado) {
        if (estado != QProcess::NormalExit || codigo != 0)
            naoAbriu(janela.data());
        processo->deleteLater();
    });
    QObject::connect(processo, &QProcess::errorOccurred, processo, [processo, janela, naoAbriu](QProcess::ProcessError erro) {
        if (erro == QProcess::FailedToStart) {
            naoAbriu(janela.data());
            processo->deleteLater();
        }
    });
    processo->start(xdgOpen, {url.toString(QUrl::FullyEncoded)});
}

} // namespace

void setAbridorDeArquivos(std::function<bool(const QString& caminho)> abridor)
{
    abridorDeArquivos() = std::move(abridor);
}

void abreExterno(QWidget* parent, const QString& endereco)
{
    abre(parent, endereco, QUrl(endereco), [endereco](QWidget* janela) {
        informacao(janela, QStringLiteral("Não foi possível abrir o endereço abaixo: este computador não tem um programa "
                                          "configurado para abri-lo. Copie-o para o seu navegador ou programa de "
                                          "e-mail.\n\n%1")
                               .arg(endereco));
    });
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
    abre(parent, caminho, QUrl::fromLocalFile(caminho), [arquivo, caminho](QWidget* janela) {
        informacao(janela, QStringLiteral("Não foi possível abrir o documento \"%1\": não há um programa para exibir "
                                          "arquivos PDF neste computador.\n\nO documento está em %2.")
                               .arg(arquivo, QDir::toNativeSeparators(caminho)));
    });
}

void mostraArquivo(QWidget* parent, const QString& caminho)
{
    abre(parent, caminho, QUrl::fromLocalFile(caminho), [caminho](QWidget* janela) {
        informacao(janela, QStringLiteral("O arquivo foi gravado em %1, mas não há neste computador um programa "
                                          "para abri-lo.")
                               .arg(QDir::toNativeSeparators(caminho)));
    });
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
