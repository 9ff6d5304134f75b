#include "desktop.h"

#include "base/outcome.h"
#include "messages.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace lavra::ui {

void abreExterno(const QString& endereco)
{
    const QUrl url = endereco.contains(QLatin1String("://")) ? QUrl(endereco) : QUrl::fromLocalFile(endereco);
    QDesktopServices::openUrl(url);
}

void abreDocumento(QWidget* parent, const QString& arquivo)
{
    const QString caminho = QDir(QCoreApplication::applicationDirPath()).filePath(arquivo);
    if (!QFileInfo::exists(caminho)) {
        mostra(parent, Desfecho::informacao(QStringLiteral("O documento \"%1\" não está instalado junto com o programa.\n\n"
                                          "Ele deveria estar na pasta %2.")
                               .arg(arquivo, QDir::toNativeSeparators(QCoreApplication::applicationDirPath()))));
        return;
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(caminho)))
        mostra(parent, Desfecho::informacao(QStringLiteral("Não foi possível abrir o documento \"%1\": não há um programa para "
                                          "exibir arquivos PDF neste computador.")
                               .arg(arquivo)));
}

namespace {
std::function<bool(const QString&)>& abridorDeArquivos()
{
    static std::function<bool(const QString&)> abridor;
    return abridor;
}
} // namespace

void setAbridorDeArquivos(std::function<bool(const QString& caminho)> abridor)
{
    abridorDeArquivos() = std::move(abridor);
}

void mostraArquivo(QWidget* parent, const QString& caminho)
{
    const bool aberto = abridorDeArquivos() ? abridorDeArquivos()(caminho)
                                            : QDesktopServices::openUrl(QUrl::fromLocalFile(caminho));
    if (!aberto)
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
