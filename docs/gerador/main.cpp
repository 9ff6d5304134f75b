// Writes the program's documents as PDF from their Markdown, at build time:
//   lavra_docs --saida "Tutorial Lavra.pdf" [--capa --sumario --icone x.svg] --titulo T
//              [--subtitulo S] [--cabecalho C] capitulo1.md capitulo2.md ...
#include "conteudo.h"
#include "documento.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>

#include <cstdio>

int main(int argc, char** argv)
{
    // Fonts and images need a GUI application, but no screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    QCommandLineParser linha;
    const QCommandLineOption saida(QStringLiteral("saida"), QStringLiteral("PDF a escrever"), QStringLiteral("arquivo"));
    const QCommandLineOption titulo(QStringLiteral("titulo"), QStringLiteral("título"), QStringLiteral("texto"));
    const QCommandLineOption subtitulo(QStringLiteral("subtitulo"), QStringLiteral("subtítulo da capa"), QStringLiteral("texto"));
    const QCommandLineOption cabecalho(QStringLiteral("cabecalho"), QStringLiteral("cabeçalho das páginas"), QStringLiteral("texto"));
    const QCommandLineOption icone(QStringLiteral("icone"), QStringLiteral("SVG da capa"), QStringLiteral("arquivo"));
    const QCommandLineOption capa(QStringLiteral("capa"), QStringLiteral("com capa"));
    const QCommandLineOption sumario(QStringLiteral("sumario"), QStringLiteral("com sumário"));
    const QCommandLineOption semNumero(QStringLiteral("sem-numero"),
                                       QStringLiteral("sem o número do capítulo: um capítulo do guia publicado à parte"));
    linha.addOptions({saida, titulo, subtitulo, cabecalho, icone, capa, sumario, semNumero});
    linha.addPositionalArgument(QStringLiteral("markdown"), QStringLiteral("os capítulos, em ordem"));
    linha.process(app);
    const QStringList arquivos = linha.positionalArguments();
    if (arquivos.isEmpty() || !linha.isSet(saida) || !linha.isSet(titulo)) {
        std::fprintf(stderr, "%s\n", qPrintable(linha.helpText()));
        return 2;
    }

    lavra::docs::Texto texto = lavra::docs::preparaTexto(arquivos);
    if (linha.isSet(semNumero))
        texto.markdown.replace(QRegularExpression(QStringLiteral("^# \\d+\\. "), QRegularExpression::MultilineOption),
                               QStringLiteral("# "));
    for (const QString& erro : texto.erros)
        std::fprintf(stderr, "lavra_docs: %s\n", qPrintable(erro));
    if (!texto.erros.isEmpty())
        return 1;

    lavra::docs::Opcoes opcoes;
    opcoes.titulo = linha.value(titulo);
    opcoes.subtitulo = linha.value(subtitulo);
    opcoes.cabecalho = linha.isSet(cabecalho) ? linha.value(cabecalho) : opcoes.titulo;
    opcoes.pastaBase = QFileInfo(arquivos.first()).absolutePath();
    opcoes.icone = linha.value(icone);
    opcoes.capa = linha.isSet(capa);
    opcoes.sumario = linha.isSet(sumario);
    const lavra::docs::Resultado resultado = lavra::docs::escrevePdf(texto, opcoes, linha.value(saida));
    if (!resultado.erro.isEmpty()) {
        std::fprintf(stderr, "lavra_docs: %s\n", qPrintable(resultado.erro));
        return 1;
    }
    std::printf("%s: %d páginas\n", qPrintable(QFileInfo(linha.value(saida)).fileName()), resultado.paginas);
    for (const lavra::docs::Entrada& entrada : resultado.sumario)
        if (entrada.nivel == 1)
            std::printf("  %3d  %s\n", entrada.pagina, qPrintable(entrada.titulo));
    return 0;
}
