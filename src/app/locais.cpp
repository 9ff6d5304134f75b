#include "locais.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace lavra::locais {

namespace {
const QString kBanco = QStringLiteral("Lavra.db");
}

Local localAtual()
{
    Local local;
    local.pastaDoPrograma = QCoreApplication::applicationDirPath();
    local.pastaGravavel = QFileInfo(local.pastaDoPrograma).isWritable();
    const QString instalada = QDir(local.pastaDoPrograma).filePath(QStringLiteral("../share/lavra"));
    if (QFileInfo(instalada).isDir())
        local.pastaInstalada = QDir::cleanPath(instalada);
    local.pastaDeDados = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return local;
}

QString caminhoDoBanco(const Local& local)
{
    const QString aoLado = QDir(local.pastaDoPrograma).filePath(kBanco);
    // An installed program's folder is the system's, even for the administrator who can write it.
    if (local.pastaInstalada.isEmpty() && (local.pastaGravavel || QFileInfo::exists(aoLado)))
        return aoLado;
    return QDir(local.pastaDeDados).filePath(kBanco);
}

QString bancoPadrao()
{
    const Local local = localAtual();
    const QString caminho = caminhoDoBanco(local);
    if (!QDir().mkpath(QFileInfo(caminho).absolutePath()))
        return {};
    return caminho;
}

QString caminhoDoDocumento(const Local& local, const QString& arquivo)
{
    const QString aoLado = QDir(local.pastaDoPrograma).filePath(arquivo);
    if (QFileInfo::exists(aoLado) || local.pastaInstalada.isEmpty())
        return aoLado;
    const QString instalado = QDir(local.pastaInstalada).filePath(arquivo);
    return QFileInfo::exists(instalado) ? instalado : aoLado;
}

} // namespace lavra::locais
