#include "documento.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgRenderer>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

#include <cmath>

namespace lavra::docs {

namespace {

const QColor kVerde(0x2e, 0x6b, 0x2e);
const QColor kCinza(0x60, 0x60, 0x60);
const QColor kFundoCabecalho(0xe6, 0xef, 0xe0);
constexpr int kDpi = 300;
// Screenshots are drawn as if the screen had this many dots per inch: a 1000-dot window
// spans the text's width, a small dialog stays small.
constexpr double kDpiDasTelas = 130.0;

double mm(double milimetros)
{
    return milimetros / 25.4 * kDpi;
}

QString familia()
{
    const QString preferida = QStringLiteral("Liberation Sans");
    return QFontDatabase::families().contains(preferida) ? preferida : QFont().family();
}

QFont fonte(double pontos, bool negrito = false)
{
    QFont f(familia());
    f.setPointSizeF(pontos);
    f.setBold(negrito);
    return f;
}

QTextCursor seleciona(const QTextBlock& bloco)
{
    QTextCursor cursor(bloco);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    return cursor;
}

// A block of code, as the Markdown reader marks it.
bool ehCodigo(const QTextBlockFormat& formato)
{
    return formato.hasProperty(QTextFormat::BlockCodeLanguage) || formato.hasProperty(QTextFormat::BlockCodeFence);
}

struct Pagina {
    QSizeF corpo;     // where the text goes, in dots
    double topo = 0;  // height of the header above it
};

// Gives the Markdown's plain structure the look of the program's documents: sizes and colour of
// headings, a chapter on a new page, framed tables, images fitted and centred with their
// caption under them.
void formata(QTextDocument& doc, const Pagina& pagina, const QString& pastaBase)
{
    doc.setDefaultFont(fonte(10.5));
    for (QTextBlock bloco = doc.begin(); bloco.isValid(); bloco = bloco.next()) {
        QTextCursor cursor(bloco);
        QTextBlockFormat formato = bloco.blockFormat();
        const int nivel = formato.headingLevel();
        if (nivel > 0) {
            static const double tamanhos[] = {20, 14, 12, 11};
            QTextCharFormat letra;
            letra.setFont(fonte(tamanhos[std::min(nivel, 4) - 1], true));
            letra.setForeground(nivel <= 2 ? kVerde : QColor(Qt::black));
            letra.clearProperty(QTextFormat::FontSizeAdjustment);
            seleciona(bloco).mergeCharFormat(letra);
            formato.setTopMargin(mm(nivel == 1 ? 0 : nivel == 2 ? 6 : 4));
            formato.setBottomMargin(mm(nivel == 1 ? 6 : 2));
            if (nivel == 1)
                formato.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            QTextCursor(bloco).setBlockFormat(formato);
            continue;
        }
        // A command to type: on a grey band, set in a little.
        if (ehCodigo(formato)) {
            formato.setBackground(QColor(0xf0, 0xf0, 0xf0));
            formato.setLeftMargin(mm(4));
            formato.setTopMargin(mm(1));
            formato.setBottomMargin(mm(3));
            QTextCursor(bloco).setBlockFormat(formato);
            continue;
        }
        if (!bloco.textList() && !cursor.currentTable()) {
            formato.setBottomMargin(mm(2.2));
            formato.setLineHeight(118, QTextBlockFormat::ProportionalHeight);
            QTextCursor(bloco).setBlockFormat(formato);
        }
        // An image alone in its block: fit it, centre it, and centre its caption in grey.
        for (auto it = bloco.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragmento = it.fragment();
            if (!fragmento.charFormat().isImageFormat())
                continue;
            QTextImageFormat imagem = fragmento.charFormat().toImageFormat();
            const QImage original(QDir(pastaBase).filePath(imagem.name()));
            double largura = original.width() * kDpi / kDpiDasTelas;
            double altura = original.height() * kDpi / kDpiDasTelas;
            const double escala = std::min({1.0, pagina.corpo.width() / largura, pagina.corpo.height() * 0.8 / altura});
            // The layout scales image sizes from 96 dots per inch to the device's own.
            imagem.setWidth(std::floor(largura * escala * 96 / kDpi));
            imagem.setHeight(std::floor(altura * escala * 96 / kDpi));
            QTextCursor sobre(&doc);
            sobre.setPosition(fragmento.position());
            sobre.setPosition(fragmento.position() + fragmento.length(), QTextCursor::KeepAnchor);
            sobre.setCharFormat(imagem);
            formato.setAlignment(Qt::AlignHCenter);
            // The extra leading of text would add a fifth of the picture's height under it.
            formato.setLineHeight(100, QTextBlockFormat::ProportionalHeight);
            formato.setBottomMargin(mm(1.5));
            formato.setTopMargin(mm(2));
            QTextCursor(bloco).setBlockFormat(formato);
            const QTextBlock legenda = bloco.next();
            if (legenda.isValid()) {
                QTextBlockFormat formatoLegenda = legenda.blockFormat();
                formatoLegenda.setAlignment(Qt::AlignHCenter);
                formatoLegenda.setBottomMargin(mm(4));
                QTextCursor(legenda).setBlockFormat(formatoLegenda);
                QTextCharFormat cinza;
                cinza.setForeground(kCinza);
                cinza.setFontPointSize(9);
                seleciona(legenda).mergeCharFormat(cinza);
            }
            break;
        }
    }
    // Tables: thin grey rules, a little air in the cells, the heading row shaded.
    for (QTextFrame* quadro : doc.rootFrame()->childFrames()) {
        auto* tabela = qobject_cast<QTextTable*>(quadro);
        if (!tabela)
            continue;
        QTextTableFormat formato = tabela->format();
        formato.setBorder(0.6 * kDpi / 72);
        formato.setBorderBrush(QColor(0xa0, 0xa0, 0xa0));
        formato.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        formato.setCellSpacing(0);
        formato.setCellPadding(mm(1.2));
        formato.setBorderCollapse(true);
        formato.setTopMargin(mm(1));
        formato.setBottomMargin(mm(4));
        formato.setHeaderRowCount(1);
        formato.setWidth(QTextLength(QTextLength::PercentageLength, 100));
        tabela->setFormat(formato);
        for (int coluna = 0; coluna < tabela->columns(); ++coluna) {
            QTextTableCell celula = tabela->cellAt(0, coluna);
            QTextCharFormat fundo = celula.format();
            fundo.setBackground(kFundoCabecalho);
            celula.setFormat(fundo);
        }
        for (int linha = 0; linha < tabela->rows(); ++linha)
            for (int coluna = 0; coluna < tabela->columns(); ++coluna) {
                QTextCursor celula = tabela->cellAt(linha, coluna).firstCursorPosition();
                celula.setPosition(tabela->cellAt(linha, coluna).lastCursorPosition().position(), QTextCursor::KeepAnchor);
                QTextCharFormat letra;
                letra.setFontPointSize(linha == 0 ? 8.5 : 9.5);
                if (linha == 0)
                    letra.setFontWeight(QFont::Bold);
                celula.mergeCharFormat(letra);
                QTextBlockFormat semMargem;
                semMargem.setTopMargin(0);
                semMargem.setBottomMargin(0);
                celula.mergeBlockFormat(semMargem);
            }
    }
}

// The table of contents, put before the first chapter: one line a heading, its page at the
// right margin.
void insereSumario(QTextDocument& doc, const QList<Entrada>& entradas, const Pagina& pagina)
{
    // A new empty block at the start, to become the title; the first chapter follows it.
    QTextCursor cursor(&doc);
    cursor.movePosition(QTextCursor::Start);
    cursor.insertBlock();
    cursor.movePosition(QTextCursor::Start);
    QTextBlockFormat titulo;
    titulo.setBottomMargin(mm(6));
    cursor.setBlockFormat(titulo);
    QTextCharFormat letraTitulo;
    letraTitulo.setFont(fonte(20, true));
    letraTitulo.setForeground(kVerde);
    cursor.setBlockCharFormat(letraTitulo);
    cursor.insertText(QStringLiteral("Sumário"), letraTitulo);
    for (const Entrada& entrada : entradas) {
        QTextBlockFormat formato;
        const double recuo = entrada.nivel == 1 ? 0 : mm(6);
        formato.setLeftMargin(recuo);
        // Tab stops, like images, are given at 96 dots per inch.
        formato.setTabPositions({QTextOption::Tab((pagina.corpo.width() - recuo) * 96 / kDpi - 1, QTextOption::RightTab)});
        formato.setTopMargin(entrada.nivel == 1 ? mm(3) : mm(0.6));
        QTextCharFormat letra;
        letra.setFont(fonte(entrada.nivel == 1 ? 11 : 10, entrada.nivel == 1));
        letra.setForeground(QColor(Qt::black));
        cursor.insertBlock(formato, letra);
        // Placeholders the width of the real numbers, so that the layout does not move when
        // they are written in.
        cursor.insertText(entrada.titulo + QLatin1Char('\t') +
                              (entrada.pagina > 0 ? QString::number(entrada.pagina) : QStringLiteral("00")),
                          letra);
    }
}

struct Montagem {
    std::unique_ptr<QTextDocument> doc;
    QList<Entrada> titulos;      // every heading of level 1 and 2, with its page
    QList<QPair<int, QString>> capitulos; // page where each chapter starts
};

Montagem monta(const Texto& texto, const Opcoes& opcoes, QPaintDevice* dispositivo, const Pagina& pagina,
               const QList<Entrada>& sumario, int primeiraPagina)
{
    Montagem m;
    m.doc = std::make_unique<QTextDocument>();
    QTextDocument& doc = *m.doc;
    doc.setMarkdown(texto.markdown, QTextDocument::MarkdownDialectGitHub);
    // After the text: setting it drops the resources the document had.
    for (const Figura& figura : texto.figuras)
        doc.addResource(QTextDocument::ImageResource, QUrl(figura.arquivo),
                        QImage(QDir(opcoes.pastaBase).filePath(figura.arquivo)));
    // Formatted before it has a layout: with one, every change of a format lays out again.
    formata(doc, pagina, opcoes.pastaBase);
    if (opcoes.sumario)
        insereSumario(doc, sumario, pagina);
    doc.setDocumentMargin(0);
    doc.documentLayout()->setPaintDevice(dispositivo);
    doc.setPageSize(pagina.corpo);
    // Laying out gives every block its page.
    doc.documentLayout()->documentSize();
    for (QTextBlock bloco = doc.begin(); bloco.isValid(); bloco = bloco.next()) {
        const int nivel = bloco.blockFormat().headingLevel();
        if (nivel < 1 || nivel > 2)
            continue;
        const QRectF onde = doc.documentLayout()->blockBoundingRect(bloco);
        const int pag = primeiraPagina + int(std::floor((onde.top() + 1) / pagina.corpo.height()));
        m.titulos.append({nivel, bloco.text().trimmed(), pag});
        if (nivel == 1)
            m.capitulos.append({pag, bloco.text().trimmed()});
    }
    return m;
}

void desenhaCapa(QPainter& p, const Opcoes& opcoes, const QRectF& area)
{
    if (!opcoes.icone.isEmpty()) {
        QSvgRenderer svg(opcoes.icone);
        const double lado = mm(45);
        svg.render(&p, QRectF(area.center().x() - lado / 2, area.top() + mm(55), lado, lado));
    }
    p.setPen(kVerde);
    p.setFont(fonte(32, true));
    p.drawText(QRectF(area.left(), area.top() + mm(115), area.width(), mm(20)), Qt::AlignCenter, opcoes.titulo);
    p.setPen(Qt::black);
    p.setFont(fonte(16));
    p.drawText(QRectF(area.left(), area.top() + mm(138), area.width(), mm(12)), Qt::AlignCenter, opcoes.subtitulo);
    p.setPen(kCinza);
    p.setFont(fonte(11));
    p.drawText(QRectF(area.left() + mm(10), area.bottom() - mm(25), area.width() - mm(20), mm(15)),
               Qt::AlignCenter | Qt::TextWordWrap,
               QStringLiteral("Calagem e adubação segundo o Manual de Calagem e Adubação para os estados do Rio Grande do Sul e de Santa Catarina"));
}

void desenhaMoldura(QPainter& p, const Opcoes& opcoes, const QString& capitulo, int numero, const QSizeF& area,
                    double topo)
{
    p.setFont(fonte(8.5));
    p.setPen(kCinza);
    const QRectF cabecalho(0, 0, area.width(), topo - mm(4));
    p.drawText(cabecalho, Qt::AlignLeft | Qt::AlignBottom, opcoes.cabecalho);
    p.drawText(cabecalho, Qt::AlignRight | Qt::AlignBottom, capitulo);
    p.setPen(QPen(QColor(0xb0, 0xb0, 0xb0), 0.5 * kDpi / 72));
    p.drawLine(QPointF(0, topo - mm(2.5)), QPointF(area.width(), topo - mm(2.5)));
    p.setPen(kCinza);
    p.drawText(QRectF(0, area.height() - mm(6), area.width(), mm(6)), Qt::AlignHCenter | Qt::AlignBottom,
               QString::number(numero));
}

} // namespace

Resultado escrevePdf(const Texto& texto, const Opcoes& opcoes, const QString& saida)
{
    Resultado resultado;
    for (const Figura& figura : texto.figuras)
        if (QImage(QDir(opcoes.pastaBase).filePath(figura.arquivo)).isNull()) {
            resultado.erro = QStringLiteral("a figura %1 não pôde ser lida").arg(figura.arquivo);
            return resultado;
        }
    QPdfWriter escritor(saida);
    escritor.setResolution(kDpi);
    escritor.setPageSize(QPageSize(QPageSize::A4));
    escritor.setPageMargins(QMarginsF(20, 14, 20, 12), QPageLayout::Millimeter);
    escritor.setTitle(opcoes.titulo);
    escritor.setCreator(QStringLiteral("Lavra 2.1"));
    Pagina pagina;
    pagina.topo = mm(10);
    const QSizeF util(escritor.width(), escritor.height());
    pagina.corpo = QSizeF(util.width(), util.height() - pagina.topo - mm(9));
    const int primeira = opcoes.capa ? 2 : 1;

    // The page of every heading is known only once the contents are in place; the contents'
    // own length does not depend on those numbers, so a second pass settles them.
    Montagem m = monta(texto, opcoes, &escritor, pagina, {}, primeira);
    for (int passo = 0; opcoes.sumario && passo < 3; ++passo) {
        const QList<Entrada> anteriores = m.titulos;
        m = monta(texto, opcoes, &escritor, pagina, anteriores, primeira);
        bool iguais = m.titulos.size() == anteriores.size();
        for (int i = 0; iguais && i < m.titulos.size(); ++i)
            iguais = m.titulos[i].pagina == anteriores[i].pagina;
        if (iguais)
            break;
    }
    resultado.sumario = m.titulos;

    QPainter p;
    if (!p.begin(&escritor)) {
        resultado.erro = QStringLiteral("não foi possível escrever %1").arg(saida);
        return resultado;
    }
    int numero = 1;
    if (opcoes.capa) {
        desenhaCapa(p, opcoes, QRectF(QPointF(0, 0), util));
        escritor.newPage();
        ++numero;
    }
    const int paginas = m.doc->pageCount();
    for (int i = 0; i < paginas; ++i, ++numero) {
        if (i > 0)
            escritor.newPage();
        QString capitulo;
        for (const auto& [inicio, titulo] : m.capitulos)
            if (inicio <= numero)
                capitulo = titulo;
        desenhaMoldura(p, opcoes, capitulo, numero, util, pagina.topo);
        p.save();
        p.translate(0, pagina.topo - i * pagina.corpo.height());
        QAbstractTextDocumentLayout::PaintContext contexto;
        contexto.clip = QRectF(0, i * pagina.corpo.height(), pagina.corpo.width(), pagina.corpo.height());
        p.setClipRect(contexto.clip);
        m.doc->documentLayout()->draw(&p, contexto);
        p.restore();
    }
    p.end();
    resultado.paginas = numero - 1;
    return resultado;
}

} // namespace lavra::docs
