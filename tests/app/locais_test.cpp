#include "app/locais.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace lavra::locais;

namespace {

void cria(const QString& caminho)
{
    QDir().mkpath(QFileInfo(caminho).absolutePath());
    QFile arquivo(caminho);
    ASSERT_TRUE(arquivo.open(QIODevice::WriteOnly));
}

// A portable copy keeps its database beside itself; an installed one, even run by the
// administrator who can write /usr/bin, keeps it in the user's data folder.
TEST(LocaisTest, DatabaseBesideAPortableCopyAndInTheDataFolderWhenInstalled)
{
    Local local;
    local.pastaDoPrograma = QStringLiteral("/opt/lavra");
    local.pastaDeDados = QStringLiteral("/home/ana/.local/share/Lavra");

    local.pastaGravavel = true;
    EXPECT_EQ(caminhoDoBanco(local), QStringLiteral("/opt/lavra/Lavra.db"));

    local.pastaGravavel = false;
    EXPECT_EQ(caminhoDoBanco(local), QStringLiteral("/home/ana/.local/share/Lavra/Lavra.db"));

    local.pastaGravavel = true;
    local.pastaInstalada = QStringLiteral("/usr/share/lavra");
    EXPECT_EQ(caminhoDoBanco(local), QStringLiteral("/home/ana/.local/share/Lavra/Lavra.db"));
}

// A copy on a folder it cannot write (a read-only share, a CD) goes on with the database it has.
TEST(LocaisTest, ADatabaseAlreadyBesideAReadOnlyCopyIsKept)
{
    QTemporaryDir pasta;
    cria(pasta.filePath(QStringLiteral("Lavra.db")));
    Local local;
    local.pastaDoPrograma = pasta.path();
    local.pastaDeDados = pasta.filePath(QStringLiteral("dados"));
    EXPECT_EQ(caminhoDoBanco(local), pasta.filePath(QStringLiteral("Lavra.db")));
}

// Documents are looked for beside the program first, then in the installation; when neither has
// one the message names the place beside the program.
TEST(LocaisTest, DocumentsBesideTheProgramThenInTheInstallation)
{
    QTemporaryDir raiz;
    Local local;
    local.pastaDoPrograma = raiz.filePath(QStringLiteral("bin"));
    local.pastaInstalada = raiz.filePath(QStringLiteral("share/lavra"));
    const QString tutorial = QStringLiteral("Tutorial Lavra.pdf");

    EXPECT_EQ(caminhoDoDocumento(local, tutorial), QDir(local.pastaDoPrograma).filePath(tutorial));
    cria(QDir(local.pastaInstalada).filePath(tutorial));
    EXPECT_EQ(caminhoDoDocumento(local, tutorial), QDir(local.pastaInstalada).filePath(tutorial));
    cria(QDir(local.pastaDoPrograma).filePath(tutorial));
    EXPECT_EQ(caminhoDoDocumento(local, tutorial), QDir(local.pastaDoPrograma).filePath(tutorial));
}

} // namespace
