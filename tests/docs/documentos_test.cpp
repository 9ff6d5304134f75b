// The documents the build writes beside the program: the guide explains every window, its
// contents point at the right pages, and the note on correction carries the program's figures.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

QString leArquivo(const QString& caminho)
{
    QFile arquivo(caminho);
    return arquivo.open(QIODevice::ReadOnly) ? QString::fromUtf8(arquivo.readAll()) : QString();
}

QStringList capitulosDoGuia()
{
    QStringList caminhos;
    const QDir pasta(QStringLiteral(LAVRA_GUIA));
    for (const QString& nome : pasta.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name))
        caminhos << pasta.filePath(nome);
    return caminhos;
}

// The text of a page of a PDF, or of all of them.
QString textoDoPdf(const QString& pdf, int pagina = 0)
{
    QStringList argumentos{QStringLiteral("-layout")};
    if (pagina > 0)
        argumentos << QStringLiteral("-f") << QString::number(pagina) << QStringLiteral("-l") << QString::number(pagina);
    argumentos << pdf << QStringLiteral("-");
    QProcess processo;
    processo.start(QStringLiteral("pdftotext"), argumentos);
    processo.waitForFinished(60000);
    return QString::fromUtf8(processo.readAllStandardOutput());
}

QString simples(QString texto)
{
    return texto.replace(QRegularExpression(QStringLiteral("\\s+")), QStringLiteral(" ")).trimmed();
}

TEST(DocumentosTest, EveryWindowIsExplainedOnceAndEveryPictureIsUsed)
{
    QStringList janelas;
    const QRegularExpression nome(QStringLiteral("QStringLiteral\\(\"(frm[^\"]+)\"\\)"));
    for (const auto& m : nome.globalMatch(leArquivo(QStringLiteral(LAVRA_JANELAS))))
        janelas << m.captured(1);
    ASSERT_GT(janelas.size(), 40);

    QStringList marcas;
    QStringList figuras;
    const QRegularExpression marca(QStringLiteral("<!-- janela: (\\S+) -->"));
    const QRegularExpression figura(QStringLiteral("!\\[[^\\]]*\\]\\(([^)]+)\\)"));
    for (const QString& capitulo : capitulosDoGuia()) {
        const QString texto = leArquivo(capitulo);
        for (const auto& m : marca.globalMatch(texto))
            marcas << m.captured(1);
        for (const auto& m : figura.globalMatch(texto))
            figuras << QDir(QStringLiteral(LAVRA_GUIA)).filePath(m.captured(1));
    }
    for (const QString& janela : janelas)
        EXPECT_EQ(marcas.count(janela), 1) << janela.toStdString();
    for (const QString& m : marcas)
        EXPECT_TRUE(janelas.contains(m)) << "not a window: " << m.toStdString();

    const QDir imagens(QDir(QStringLiteral(LAVRA_GUIA)).filePath(QStringLiteral("imagens")));
    for (const QString& arquivo : imagens.entryList(QDir::Files))
        EXPECT_TRUE(figuras.contains(imagens.filePath(arquivo))) << "unused: " << arquivo.toStdString();
}

// Each chapter in the contents starts on the page the contents give: there the header names it
// and its title opens the page.
TEST(DocumentosTest, TheContentsOfTheGuideGiveTheRightPages)
{
    const QString pdf = QDir(QStringLiteral(LAVRA_SAIDA)).filePath(QStringLiteral("Tutorial Lavra.pdf"));
    ASSERT_TRUE(QFile::exists(pdf));
    ASSERT_TRUE(simples(textoDoPdf(pdf, 2)).startsWith(QStringLiteral("Lavra 2.1 — Guia do usuário Sumário")));
    // The contents take a few pages.
    QString sumario;
    for (int pagina = 2; pagina <= 6; ++pagina)
        sumario += simples(textoDoPdf(pdf, pagina)) + QLatin1Char(' ');

    const QStringList capitulos = capitulosDoGuia();
    EXPECT_GE(capitulos.size(), 12);
    for (const QString& capitulo : capitulos) {
        const QString titulo = simples(leArquivo(capitulo).section(QLatin1Char('\n'), 0, 0).mid(2));
        const QRegularExpressionMatch m
            = QRegularExpression(QRegularExpression::escape(titulo) + QStringLiteral(" (\\d+) ")).match(sumario);
        ASSERT_TRUE(m.hasMatch()) << titulo.toStdString();
        const QString pagina = simples(textoDoPdf(pdf, m.captured(1).toInt()));
        EXPECT_TRUE(pagina.startsWith(QStringLiteral("Lavra 2.1 — Guia do usuário ") + titulo + QLatin1Char(' ') + titulo))
            << titulo.toStdString() << " | " << pagina.left(160).toStdString();
    }
}

// The tables of the note come from the program's own correction routines and data.
TEST(DocumentosTest, TheNoteOnCorrectionCarriesTheProgramsFigures)
{
    const QString texto = simples(textoDoPdf(QDir(QStringLiteral(LAVRA_SAIDA)).filePath(QStringLiteral("AdubOficGrad.pdf"))));
    ASSERT_FALSE(texto.isEmpty());
    EXPECT_FALSE(texto.contains(QStringLiteral("{{")));
    EXPECT_TRUE(texto.startsWith(QStringLiteral("Lavra 2.1 — Correção de fósforo e potássio Correção oficial e ajuste gradual")))
        << texto.left(120).toStdString();
    // Official: a very low class takes 120, two thirds now; a medium one 30, all of it now.
    EXPECT_TRUE(texto.contains(QStringLiteral("Muito baixo 120 2/3 (80) 1/3 (40)")));
    EXPECT_TRUE(texto.contains(QStringLiteral("Médio 30 toda (30) sem correção")));
    // Gradual, 45 % clay: 120 below the lower limit, falling to nothing at the critical level.
    EXPECT_TRUE(texto.contains(QStringLiteral("45 120 79 51 23 0 0 0")));
    // The soybean rows of the grain tables, as delivered.
    EXPECT_TRUE(texto.contains(QStringLiteral("Soja 2 15 110 70 60 30 0")));
}

} // namespace
