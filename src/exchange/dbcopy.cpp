#include "dbcopy.h"

#include "store/storeerror.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace lavra {

namespace {

bool mesmoArquivo(const QString& a, const QString& b)
{
    const QFileInfo fa(a);
    const QFileInfo fb(b);
    if (fa.exists() && fb.exists())
        return fa.canonicalFilePath() == fb.canonicalFilePath();
    return fa.absoluteFilePath() == fb.absoluteFilePath();
}

void removeCopiaParcial(const QString& caminho)
{
    QFile::remove(caminho);
    QFile::remove(caminho + QStringLiteral("-journal"));
}

} // namespace

QString NomeDaCopia(const QString& nome) { return nome + QStringLiteral(".db"); }

QString CaminhoDaCopia(const QString& pasta, const QString& nomeDaCopia)
{
    QString dir = QDir::cleanPath(pasta);
    if (dir.endsWith(QLatin1Char('/')))
        dir.chop(1);
    return dir + QLatin1Char('/') + nomeDaCopia;
}

QStringList ArquivosDaPasta(const QString& pasta)
{
    return QDir(pasta).entryList(QDir::Files, QDir::Name | QDir::IgnoreCase);
}

QString ArquivoDeMesmoNome(const QStringList& arquivos, const QString& nomeDaCopia)
{
    if (arquivos.contains(nomeDaCopia))
        return nomeDaCopia;
    for (const QString& arquivo : arquivos) {
        if (arquivo.compare(nomeDaCopia, Qt::CaseInsensitive) == 0)
            return arquivo;
    }
    return {};
}

bool CopiaBanco(const QString& origem, const QString& destino, const QString& substituido,
                const ProgressoCopia& progresso)
{
    if (mesmoArquivo(origem, destino) || (!substituido.isEmpty() && mesmoArquivo(origem, substituido)))
        throw StoreError(QStringLiteral("A cópia não pode ficar no lugar do próprio banco de dados em uso. Escolha "
                                        "outro nome ou outra pasta."));
    const QFileInfo alvo(destino);
    const QString parcial = alvo.absolutePath() + QStringLiteral("/.") + alvo.fileName() + QStringLiteral(".parcial");
    removeCopiaParcial(parcial);
    if (!copiaArquivoDeBanco(origem, parcial, progresso))
        return false;

    QStringList faltas;
    try {
        faltas = verificaIntegridade(parcial);
    } catch (const StoreError&) {
        removeCopiaParcial(parcial);
        throw;
    }
    if (!faltas.isEmpty()) {
        removeCopiaParcial(parcial);
        throw StoreError(QStringLiteral("A cópia não passou na verificação de integridade e foi descartada; o banco de "
                                        "dados em uso pode estar danificado. Restaure uma cópia de segurança anterior."),
                         faltas.join(QStringLiteral("; ")), StoreError::Access::Read);
    }
    // The new file takes the old one's place in one step, so that there is always one of them. A
    // file of the same name in other capitals goes just before, once the copy is ready: on a disk
    // that ignores case the two names are one file.
    if (!substituido.isEmpty() && substituido != destino)
        QFile::remove(substituido);
    if (std::rename(QFile::encodeName(parcial).constData(), QFile::encodeName(destino).constData()) != 0) {
        removeCopiaParcial(parcial);
        throw StoreError(QStringLiteral("Não foi possível gravar a cópia com o nome %1 na pasta de destino.")
                             .arg(alvo.fileName()));
    }
    return true;
}

} // namespace lavra
