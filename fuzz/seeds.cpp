// Writes the starting corpora for the fuzz targets: small workbooks of the kind the import reads,
// from the project's own writers, plus a few hand-made ones that reach what those writers never
// write (formulas with saved results, rich text, the 1904 day zero, repeated cells). Each zip is
// there both deflated and with its parts stored: the fuzzer's byte changes in a stored part land
// in the XML instead of in a deflate stream the library rejects outright.
//
//   fuzz_seeds <dir>   ->  <dir>/xlsx, <dir>/ods, <dir>/xls

#include "odsfile.h"
#include "xlsfile.h"
#include "xlsxfile.h"
#include "workbook.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>

#include <QFile>

#include <zlib.h>

#include <cstdio>

namespace {

using Linhas = QVector<QVector<QVariant>>;

struct Folha {
    QString nome;
    Linhas linhas;
};
using Pasta = QList<Folha>;

const QVariant nada;

Pasta analise()
{
    return {{QStringLiteral("Análises"),
             {{QStringLiteral("Amostra"), QStringLiteral("Talhão"), QStringLiteral("Data da coleta"),
               QStringLiteral("pH (CaCl₂)"), QStringLiteral("M.O. (g/dm³)"), QStringLiteral("P resina (mg/dm³)"),
               QStringLiteral("K (mmolc/dm³)"), QStringLiteral("Ca"), QStringLiteral("Mg"), QStringLiteral("H+Al"),
               QStringLiteral("Argila (%)")},
              {QStringLiteral("A-001"), QStringLiteral("Gleba São João"), QDate(2023, 3, 14), 5.2, 28, 14, 1.8, 32,
               11, 31, 42},
              {QStringLiteral("A-002"), QStringLiteral("Várzea"), QDate(2023, 3, 15), 4.7, 19.5, nada, 0.9, 15, 6,
               47, 18.25},
              {QStringLiteral("A-003"), nada, QDate(2024, 1, 2), QStringLiteral("5,8"), 35, 120, 4.15, 48, 17, 22,
               nada},
              {},
              {QStringLiteral("Obs.: amostras de 0–20 cm; ação da calagem em avaliação."), nada, nada, nada}}}};
}

Pasta variasFolhas()
{
    return {{QStringLiteral("Resultados"),
             {{QStringLiteral("Cliente"), QStringLiteral("Município"), QStringLiteral("Área (ha)"),
               QStringLiteral("Coleta")},
              {QStringLiteral("José Antônio Araújo"), QStringLiteral("Chapecó"), 12.5, QDate(2022, 11, 30)},
              {QStringLiteral("Cooperativa Agroindustrial Paraná"), QStringLiteral("Guarapuava"), 1350,
               QDate(1999, 12, 31)}}},
            {QStringLiteral("Observações"),
             {{QStringLiteral("Nota")},
              {QStringLiteral("ç ã õ é ü ñ — “aspas” ½ µg")},
              {nada, nada, QStringLiteral("só na terceira coluna")}}},
            {QStringLiteral("Vazia"), {}}};
}

Pasta tipos()
{
    return {{QStringLiteral("Tipos"),
             {{true, false, -0.0, 1e-9, 123456789012.0, -273.15},
              {QStringLiteral("80,5"), QStringLiteral("1.234,56"), QStringLiteral(" 7 "), QString(), 0, 1},
              {QDate(1900, 3, 1), QDate(2099, 12, 31), QDate(1970, 1, 1), nada, nada, QStringLiteral("fim")}}}};
}

Pasta umaCelula() { return {{QStringLiteral("Plan1"), {{42}}}}; }

Pasta larga()
{
    Linhas linhas;
    for (int l = 0; l < 12; ++l) {
        QVector<QVariant> linha;
        for (int c = 0; c < 45; ++c)
            linha << (c % 3 == 0 ? QVariant(QStringLiteral("t%1_%2").arg(l).arg(c)) : QVariant(l * 100 + c + 0.5));
        linhas << linha;
    }
    return {{QStringLiteral("Larga"), linhas}};
}

const QList<QPair<QString, Pasta>> kPastas = {{QStringLiteral("analise"), analise()},
                                              {QStringLiteral("varias"), variasFolhas()},
                                              {QStringLiteral("tipos"), tipos()},
                                              {QStringLiteral("uma"), umaCelula()},
                                              {QStringLiteral("larga"), larga()}};

using Partes = QList<QPair<QString, QByteArray>>;

// A zip written and read here with zlib alone: libxlsxwriter carries its own minizip, and a second
// zip library in the same process takes over its symbols.
void u16(QByteArray& b, quint32 v) { b.append(char(v & 0xff)).append(char((v >> 8) & 0xff)); }
void u32(QByteArray& b, quint32 v)
{
    u16(b, v & 0xffff);
    u16(b, v >> 16);
}
quint32 le(const QByteArray& b, qsizetype i, int n)
{
    quint32 v = 0;
    for (int k = n - 1; k >= 0; --k)
        v = v << 8 | quint8(b[i + k]);
    return v;
}

QByteArray deflateBruto(const QByteArray& dados)
{
    z_stream z{};
    if (deflateInit2(&z, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        return {};
    QByteArray saida(qsizetype(deflateBound(&z, uLong(dados.size()))), '\0');
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(dados.constData()));
    z.avail_in = uInt(dados.size());
    z.next_out = reinterpret_cast<Bytef*>(saida.data());
    z.avail_out = uInt(saida.size());
    const int r = deflate(&z, Z_FINISH);
    saida.resize(qsizetype(z.total_out));
    deflateEnd(&z);
    return r == Z_STREAM_END ? saida : QByteArray();
}

QByteArray inflateBruto(const QByteArray& dados, qsizetype tamanho)
{
    z_stream z{};
    if (inflateInit2(&z, -MAX_WBITS) != Z_OK)
        return {};
    QByteArray saida(tamanho, '\0');
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(dados.constData()));
    z.avail_in = uInt(dados.size());
    z.next_out = reinterpret_cast<Bytef*>(saida.data());
    z.avail_out = uInt(saida.size());
    const int r = inflate(&z, Z_FINISH);
    inflateEnd(&z);
    return r == Z_STREAM_END ? saida : QByteArray();
}

bool gravaZip(const QString& caminho, const Partes& partes, bool comprime)
{
    QByteArray arquivo, diretorio;
    for (const auto& [nomeTexto, dados] : partes) {
        const QByteArray nome = nomeTexto.toUtf8();
        const quint32 crc = quint32(crc32(0, reinterpret_cast<const Bytef*>(dados.constData()), uInt(dados.size())));
        // An OpenDocument's media type is always stored, where readers look for it.
        const bool deflate = comprime && nomeTexto != QStringLiteral("mimetype");
        const QByteArray gravado = deflate ? deflateBruto(dados) : dados;
        const quint32 metodo = deflate ? 8 : 0;
        const quint32 offset = quint32(arquivo.size());
        u32(arquivo, 0x04034b50), u16(arquivo, 20), u16(arquivo, 0), u16(arquivo, metodo), u16(arquivo, 0);
        u16(arquivo, 0x21), u32(arquivo, crc), u32(arquivo, quint32(gravado.size())), u32(arquivo, quint32(dados.size()));
        u16(arquivo, quint32(nome.size())), u16(arquivo, 0);
        arquivo += nome + gravado;
        u32(diretorio, 0x02014b50), u16(diretorio, 20), u16(diretorio, 20), u16(diretorio, 0), u16(diretorio, metodo);
        u16(diretorio, 0), u16(diretorio, 0x21), u32(diretorio, crc), u32(diretorio, quint32(gravado.size()));
        u32(diretorio, quint32(dados.size())), u16(diretorio, quint32(nome.size())), u16(diretorio, 0);
        u16(diretorio, 0), u16(diretorio, 0), u16(diretorio, 0), u32(diretorio, 0), u32(diretorio, offset);
        diretorio += nome;
    }
    QByteArray fim;
    u32(fim, 0x06054b50), u16(fim, 0), u16(fim, 0), u16(fim, quint32(partes.size())), u16(fim, quint32(partes.size()));
    u32(fim, quint32(diretorio.size())), u32(fim, quint32(arquivo.size())), u16(fim, 0);
    QFile f(caminho);
    const QByteArray tudo = arquivo + diretorio + fim;
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(tudo) == tudo.size();
}

// Reads back the archives written above and by libxlsxwriter: no zip64, no data descriptors.
bool leZip(const QString& caminho, Partes& partes)
{
    QFile f(caminho);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray z = f.readAll();
    const qsizetype fim = z.lastIndexOf(QByteArrayLiteral("PK\x05\x06"));
    if (fim < 0 || fim + 22 > z.size())
        return false;
    qsizetype pos = le(z, fim + 16, 4);
    for (quint32 e = 0, n = le(z, fim + 10, 2); e < n; ++e) {
        if (pos + 46 > z.size() || le(z, pos, 4) != 0x02014b50)
            return false;
        const quint32 metodo = le(z, pos + 10, 2), compactado = le(z, pos + 20, 4), tamanho = le(z, pos + 24, 4);
        const quint32 lnome = le(z, pos + 28, 2), local = le(z, pos + 42, 4);
        const QString nome = QString::fromUtf8(z.mid(pos + 46, lnome));
        pos += 46 + lnome + le(z, pos + 30, 2) + le(z, pos + 32, 2);
        if (qsizetype(local) + 30 > z.size())
            return false;
        const qsizetype inicio = local + 30 + le(z, local + 26, 2) + le(z, local + 28, 2);
        const QByteArray bruto = z.mid(inicio, compactado);
        const QByteArray dados = metodo == 0 ? bruto : metodo == 8 ? inflateBruto(bruto, tamanho) : QByteArray();
        if (qsizetype(tamanho) != dados.size())
            return false;
        partes.append({nome, dados});
    }
    return !partes.isEmpty();
}

bool reembala(const QString& de, const QString& para, bool comprime)
{
    Partes partes;
    return leZip(de, partes) && gravaZip(para, partes, comprime);
}

// An .xlsx with what libxlsxwriter does not write: formulas with saved results of each type,
// a shared formula, inline and rich texts, an error, custom and built-in date formats and the
// 1904 day zero.
Partes xlsxFeito()
{
    const QByteArray tipos = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types"><Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/><Default Extension="xml" ContentType="application/xml"/><Override PartName="/xl/workbook.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"/><Override PartName="/xl/worksheets/sheet1.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/><Override PartName="/xl/worksheets/sheet2.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/><Override PartName="/xl/styles.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml"/><Override PartName="/xl/sharedStrings.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml"/></Types>)";
    const QByteArray rels = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="xl/workbook.xml"/></Relationships>)";
    const QByteArray livro = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"><workbookPr date1904="1"/><sheets><sheet name="Laudo" sheetId="1" r:id="rId1"/><sheet name="Fórmulas" sheetId="2" r:id="rId2"/></sheets></workbook>)";
    const QByteArray livroRels = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet" Target="worksheets/sheet1.xml"/><Relationship Id="rId2" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet" Target="worksheets/sheet2.xml"/><Relationship Id="rId3" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles" Target="styles.xml"/><Relationship Id="rId4" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/sharedStrings" Target="sharedStrings.xml"/></Relationships>)";
    const QByteArray estilos = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<styleSheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><numFmts count="3"><numFmt numFmtId="164" formatCode="[$-416]dd/mm/yyyy;@"/><numFmt numFmtId="165" formatCode="0.00&quot; dias&quot;"/><numFmt numFmtId="166" formatCode="[Red]General"/></numFmts><fonts count="1"><font><sz val="11"/><name val="Calibri"/></font></fonts><fills count="1"><fill><patternFill patternType="none"/></fill></fills><borders count="1"><border><left/><right/><top/><bottom/><diagonal/></border></borders><cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"/></cellStyleXfs><cellXfs count="5"><xf numFmtId="0" fontId="0" fillId="0" borderId="0" xfId="0"/><xf numFmtId="164" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/><xf numFmtId="14" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/><xf numFmtId="165" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/><xf numFmtId="166" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/></cellXfs><cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles></styleSheet>)";
    const QByteArray textos = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<sst xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" count="4" uniqueCount="4"><si><t>Amostra</t></si><si><t xml:space="preserve"> pH água </t></si><si><r><rPr><b/><sz val="11"/><color rgb="FFFF0000"/><rFont val="Calibri"/></rPr><t>K</t></r><r><t xml:space="preserve"> (mmol</t></r><r><rPr><vertAlign val="subscript"/></rPr><t>c</t></r><r><t>/dm³)</t></r></si><si><t>Coleta</t></si></sst>)";
    const QByteArray folha1 = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><dimension ref="A1:E4"/><sheetData><row r="1" spans="1:5"><c r="A1" t="s"><v>0</v></c><c r="B1" t="s"><v>1</v></c><c r="C1" t="s"><v>2</v></c><c r="D1" t="s"><v>3</v></c><c r="E1" t="inlineStr"><is><t>Observação</t></is></c></row><row r="2"><c r="A2" t="inlineStr"><is><t>B-17</t></is></c><c r="B2"><v>5.4</v></c><c r="C2"><v>2.35</v></c><c r="D2" s="1"><v>43000</v></c><c r="E2" s="3"><v>12</v></c></row><row r="3"><c r="A3" t="inlineStr"><is><t>B-18</t></is></c><c r="B3" s="4"><v>6.1</v></c><c r="C3" t="e"><v>#DIV/0!</v></c><c r="D3" s="2"><v>43001.75</v></c><c r="E3" t="b"><v>1</v></c></row><row r="4"><c r="B4" s="1"/><c r="D4" t="d"><v>2021-07-09T10:30:00</v></c></row></sheetData></worksheet>)";
    const QByteArray folha2 = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><sheetData><row r="1"><c r="A1"><v>2</v></c><c r="B1"><f>A1*2</f><v>4</v></c><c r="C1" t="str"><f>"pH "&amp;A1</f><v>pH 2</v></c><c r="D1" t="b"><f>A1&gt;1</f><v>1</v></c><c r="E1" t="e"><f>1/0</f><v>#DIV/0!</v></c></row><row r="2"><c r="A2"><v>3</v></c><c r="B2"><f t="shared" ref="B2:B4" si="0">A2*2</f><v>6</v></c></row><row r="3"><c r="A3"><v>4</v></c><c r="B3"><f t="shared" si="0"/><v>8</v></c></row><row r="4"><c r="A4"><v>5</v></c><c r="B4"><f t="shared" si="0"/><v>10</v></c><c r="C4"><f t="array" ref="C4">SUM(A1:A4)</f><v>14</v></c></row><row r="7"><c r="AN7"><v>40</v></c><c r="AO7"><v>41</v></c></row></sheetData></worksheet>)";
    return {{QStringLiteral("[Content_Types].xml"), tipos},
            {QStringLiteral("_rels/.rels"), rels},
            {QStringLiteral("xl/workbook.xml"), livro},
            {QStringLiteral("xl/_rels/workbook.xml.rels"), livroRels},
            {QStringLiteral("xl/styles.xml"), estilos},
            {QStringLiteral("xl/sharedStrings.xml"), textos},
            {QStringLiteral("xl/worksheets/sheet1.xml"), folha1},
            {QStringLiteral("xl/worksheets/sheet2.xml"), folha2}};
}

// An .xlsx with the parts around the cells that a real workbook carries and the import ignores:
// names, views and panes, column widths, merges, filters, conditional formats, validations,
// links and a table. Each reaches an interface of orcus that the reader may not provide.
Partes xlsxRecursos()
{
    Partes p = xlsxFeito();
    const auto troca = [&](const QString& nome, const QByteArray& dados) {
        for (auto& [n, d] : p) {
            if (n == nome)
                d = dados;
        }
    };
    troca(QStringLiteral("xl/workbook.xml"), R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"><workbookPr/><bookViews><workbookView activeTab="1"/></bookViews><sheets><sheet name="Laudo" sheetId="1" r:id="rId1"/><sheet name="Fórmulas" sheetId="2" r:id="rId2"/></sheets><definedNames><definedName name="_xlnm._FilterDatabase" localSheetId="0" hidden="1">Laudo!$A$1:$E$4</definedName><definedName name="Amostras">Laudo!$A$2:$A$4</definedName><definedName name="Dobro" localSheetId="1">Fórmulas!$B$1</definedName></definedNames><calcPr calcId="191029"/></workbook>)");
    troca(QStringLiteral("xl/worksheets/sheet1.xml"), R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"><sheetPr filterMode="1"><tabColor rgb="FF00B050"/></sheetPr><dimension ref="A1:E4"/><sheetViews><sheetView tabSelected="1" zoomScale="120" workbookViewId="0"><pane xSplit="1" ySplit="1" topLeftCell="B2" activePane="bottomRight" state="frozen"/><selection pane="topRight" activeCell="B1" sqref="B1"/><selection pane="bottomLeft" activeCell="A2" sqref="A2"/><selection pane="bottomRight" activeCell="C3" sqref="C3:D4"/></sheetView></sheetViews><sheetFormatPr defaultRowHeight="15"/><cols><col min="1" max="1" width="12.5" customWidth="1"/><col min="2" max="5" width="9" hidden="1" customWidth="1"/></cols><sheetData><row r="1" spans="1:5" ht="20" customHeight="1"><c r="A1" t="s"><v>0</v></c><c r="B1" t="s"><v>1</v></c><c r="C1" t="s"><v>2</v></c><c r="D1" t="s"><v>3</v></c><c r="E1" t="s"><v>0</v></c></row><row r="2" hidden="1"><c r="A2" t="s"><v>3</v></c><c r="B2"><v>5.4</v></c><c r="C2"><v>2.35</v></c><c r="D2" s="1"><v>43000</v></c><c r="E2" s="3"><v>12</v></c></row><row r="3"><c r="B3"><v>6.1</v></c><c r="D3" s="2"><v>43001.75</v></c></row><row r="4"><c r="A4"><v>1</v></c></row></sheetData><sheetProtection sheet="1" objects="1" scenarios="1"/><autoFilter ref="A1:E4"><filterColumn colId="1"><customFilters><customFilter operator="greaterThan" val="5"/></customFilters></filterColumn><filterColumn colId="0"><filters><filter val="B-17"/></filters></filterColumn></autoFilter><mergeCells count="1"><mergeCell ref="A4:B4"/></mergeCells><conditionalFormatting sqref="B2:B4"><cfRule type="cellIs" dxfId="0" priority="1" operator="lessThan"><formula>5.5</formula></cfRule><cfRule type="colorScale" priority="2"><colorScale><cfvo type="min"/><cfvo type="max"/><color rgb="FFF8696B"/><color rgb="FF63BE7B"/></colorScale></cfRule></conditionalFormatting><dataValidations count="1"><dataValidation type="decimal" allowBlank="1" sqref="B2:B4"><formula1>3</formula1><formula2>9</formula2></dataValidation></dataValidations><hyperlinks><hyperlink ref="A1" r:id="rId9"/></hyperlinks><pageMargins left="0.7" right="0.7" top="0.75" bottom="0.75" header="0.3" footer="0.3"/><tableParts count="1"><tablePart r:id="rId1"/></tableParts></worksheet>)");
    p.append({QStringLiteral("xl/worksheets/_rels/sheet1.xml.rels"), R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/table" Target="../tables/table1.xml"/><Relationship Id="rId9" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/hyperlink" Target="https://example.org/" TargetMode="External"/></Relationships>)"});
    p.append({QStringLiteral("xl/tables/table1.xml"), R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<table xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" id="1" name="Tabela1" displayName="Tabela1" ref="A1:E4" totalsRowShown="0"><autoFilter ref="A1:E4"/><tableColumns count="5"><tableColumn id="1" name="Amostra"/><tableColumn id="2" name="pH"/><tableColumn id="3" name="K"/><tableColumn id="4" name="Coleta"/><tableColumn id="5" name="Obs" totalsRowFunction="sum"/></tableColumns><tableStyleInfo name="TableStyleMedium2" showFirstColumn="0" showLastColumn="0" showRowStripes="1" showColumnStripes="0"/></table>)"});
    for (auto& [n, d] : p) {
        if (n == QStringLiteral("[Content_Types].xml"))
            d.replace("</Types>", R"(<Override PartName="/xl/tables/table1.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.table+xml"/></Types>)");
        if (n == QStringLiteral("xl/styles.xml"))
            d.replace("<cellStyles", R"(<dxfs count="1"><dxf><font><color rgb="FF9C0006"/></font><fill><patternFill><bgColor rgb="FFFFC7CE"/></patternFill></fill></dxf></dxfs><cellStyles)");
    }
    return p;
}

// An .ods with repeated rows and columns, every value type, a date style, a formula and texts in
// spans and several paragraphs.
Partes odsFeito()
{
    const QByteArray manifesto = R"(<?xml version="1.0" encoding="UTF-8"?>
<manifest:manifest xmlns:manifest="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0" manifest:version="1.2"><manifest:file-entry manifest:full-path="/" manifest:media-type="application/vnd.oasis.opendocument.spreadsheet"/><manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml"/></manifest:manifest>)";
    const QByteArray conteudo = R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document-content xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" xmlns:number="urn:oasis:names:tc:opendocument:xmlns:datastyle:1.0" xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0" xmlns:of="urn:oasis:names:tc:opendocument:xmlns:of:1.2" office:version="1.2"><office:automatic-styles><number:date-style style:name="N37"><number:day number:style="long"/><number:text>/</number:text><number:month number:style="long"/><number:text>/</number:text><number:year number:style="long"/></number:date-style><number:number-style style:name="N2"><number:number number:decimal-places="2" number:min-integer-digits="1"/></number:number-style><style:style style:name="ce1" style:family="table-cell" style:parent-style-name="Default" style:data-style-name="N37"/><style:style style:name="ce2" style:family="table-cell" style:parent-style-name="Default" style:data-style-name="N2"><style:text-properties fo:font-weight="bold"/></style:style></office:automatic-styles><office:body><office:spreadsheet><table:calculation-settings><table:null-date table:date-value="1899-12-30"/></table:calculation-settings><table:table table:name="Laudo"><table:table-column table:number-columns-repeated="6"/><table:table-row><table:table-cell office:value-type="string"><text:p>Amostra</text:p></table:table-cell><table:table-cell office:value-type="string"><text:p>pH <text:span>CaCl</text:span><text:span>₂</text:span></text:p></table:table-cell><table:table-cell office:value-type="string"><text:p>Data</text:p></table:table-cell><table:table-cell office:value-type="string"><text:p>Saturação</text:p><text:p>por bases</text:p></table:table-cell><table:table-cell office:value-type="string"><text:p>Custo</text:p></table:table-cell><table:table-cell office:value-type="string"><text:p>Conferido</text:p></table:table-cell></table:table-row><table:table-row table:number-rows-repeated="3"><table:table-cell office:value-type="string"><text:p>C-1</text:p></table:table-cell><table:table-cell table:style-name="ce2" office:value-type="float" office:value="5.35"><text:p>5,35</text:p></table:table-cell><table:table-cell table:style-name="ce1" office:value-type="date" office:date-value="2023-05-02T08:15:00"><text:p>02/05/2023</text:p></table:table-cell><table:table-cell office:value-type="percentage" office:value="0.62"><text:p>62%</text:p></table:table-cell><table:table-cell office:value-type="currency" office:currency="BRL" office:value="18.9"><text:p>R$ 18,90</text:p></table:table-cell><table:table-cell office:value-type="boolean" office:boolean-value="true"><text:p>VERDADEIRO</text:p></table:table-cell></table:table-row><table:table-row><table:table-cell table:number-columns-repeated="2" office:value-type="float" office:value="7"><text:p>7</text:p></table:table-cell><table:table-cell table:formula="of:=[.A5]+[.B5]" office:value-type="float" office:value="14"><text:p>14</text:p></table:table-cell><table:table-cell table:formula="of:=&quot;x&quot;" office:value-type="string" office:string-value="x"><text:p>x</text:p></table:table-cell><table:table-cell office:value-type="time" office:time-value="PT13H45M00S"><text:p>13:45</text:p></table:table-cell><table:covered-table-cell/></table:table-row><table:table-row table:number-rows-repeated="4"><table:table-cell table:number-columns-repeated="6"/></table:table-row><table:table-row><table:table-cell/><table:table-cell office:value-type="string"><text:p>depois das vazias</text:p></table:table-cell></table:table-row></table:table><table:table table:name="Segunda folha"><table:table-row><table:table-cell office:value-type="float" office:value="-1.5E-3"><text:p>-0,0015</text:p></table:table-cell></table:table-row></table:table></office:spreadsheet></office:body></office:document-content>)";
    return {{QStringLiteral("mimetype"), QByteArrayLiteral("application/vnd.oasis.opendocument.spreadsheet")},
            {QStringLiteral("META-INF/manifest.xml"), manifesto},
            {QStringLiteral("content.xml"), conteudo}};
}

// An .ods with styles in their own part, merged cells, named ranges, a filtered database range
// and a hidden sheet.
Partes odsRecursos()
{
    Partes p = odsFeito();
    const QByteArray estilos = R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document-styles xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0" xmlns:number="urn:oasis:names:tc:opendocument:xmlns:datastyle:1.0" xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0" office:version="1.2"><office:font-face-decls/><office:styles><style:default-style style:family="table-cell"><style:paragraph-properties style:tab-stop-distance="1.25cm"/><style:text-properties style:font-name="Liberation Sans" fo:language="pt" fo:country="BR"/></style:default-style><number:date-style style:name="N84"><number:year number:style="long"/><number:text>-</number:text><number:month number:style="long"/><number:text>-</number:text><number:day number:style="long"/></number:date-style><style:style style:name="Default" style:family="table-cell"/><style:style style:name="Data" style:family="table-cell" style:parent-style-name="Default" style:data-style-name="N84"><style:table-cell-properties fo:background-color="#dddddd" fo:border="0.06pt solid #000000"/></style:style></office:styles></office:document-styles>)";
    p.append({QStringLiteral("styles.xml"), estilos});
    for (auto& [n, d] : p) {
        if (n != QStringLiteral("content.xml"))
            continue;
        d.replace(R"(<table:table-cell office:value-type="string"><text:p>Amostra</text:p></table:table-cell>)",
                  R"(<table:table-cell table:number-columns-spanned="2" table:number-rows-spanned="1" office:value-type="string"><text:p>Amostra</text:p></table:table-cell>)");
        d.replace(R"(<table:table table:name="Segunda folha">)",
                  R"(<table:table table:name="Segunda folha" table:style-name="ta2" table:print="false"><table:table-column table:style-name="co1" table:default-cell-style-name="Data"/>)");
        d.replace("</office:spreadsheet>", R"(<table:named-expressions><table:named-range table:name="Amostras" table:base-cell-address="$Laudo.$A$2" table:cell-range-address="$Laudo.$A$2:.$A$4"/><table:named-expression table:name="Dobro" table:base-cell-address="$Laudo.$A$1" table:expression="of:=2*[.B2]"/></table:named-expressions><table:database-ranges><table:database-range table:name="__Anonymous_Sheet_DB__0" table:target-range-address="Laudo.A1:Laudo.F9" table:display-filter-buttons="true"><table:filter><table:filter-and><table:filter-condition table:field-number="1" table:value="5" table:operator="&gt;"/><table:filter-condition table:field-number="0" table:value="C-1" table:operator="="/></table:filter-and></table:filter></table:database-range></table:database-ranges></office:spreadsheet>)");
    }
    return p;
}

template <typename Escrita>
QList<Escrita> converte(const Pasta& pasta)
{
    QList<Escrita> folhas;
    for (const Folha& f : pasta)
        folhas.append(Escrita{f.nome, f.linhas});
    return folhas;
}

int g_falhas = 0;

void confere(bool ok, const QString& caminho)
{
    if (!ok) {
        std::fprintf(stderr, "fuzz_seeds: could not write %s\n", qPrintable(caminho));
        ++g_falhas;
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <seeds dir>\n", argv[0]);
        return 2;
    }
    const QDir raiz(QString::fromLocal8Bit(argv[1]));
    for (const char* sub : {"xlsx", "ods", "xls"})
        raiz.mkpath(QString::fromLatin1(sub));

    for (const auto& [nome, pasta] : kPastas) {
        const QString xlsx = raiz.filePath(QStringLiteral("xlsx/%1.xlsx").arg(nome));
        try {
            lavra::gravaXlsx(xlsx, converte<lavra::FolhaEscrita>(pasta));
            confere(reembala(xlsx, raiz.filePath(QStringLiteral("xlsx/%1-stored.xlsx").arg(nome)), false), xlsx);
        } catch (const lavra::ErroPasta& e) {
            std::fprintf(stderr, "%s\n", qPrintable(e.mensagem()));
            ++g_falhas;
        }

        const QString ods = raiz.filePath(QStringLiteral("ods/%1.ods").arg(nome));
        confere(lavra::test::gravaOds(ods, converte<lavra::test::PlanilhaOds>(pasta)), ods);
        confere(reembala(ods, raiz.filePath(QStringLiteral("ods/%1-deflated.ods").arg(nome)), true), ods);

        const QString xls = raiz.filePath(QStringLiteral("xls/%1.xls").arg(nome));
        confere(lavra::test::gravaXls(xls, converte<lavra::test::PlanilhaXls>(pasta)), xls);
    }
    // Only the .xls writer writes formulas with their saved results.
    const auto formula = [](const QVariant& v) { return QVariant::fromValue(lavra::test::FormulaXls{v}); };
    const QString formulas = raiz.filePath(QStringLiteral("xls/formulas.xls"));
    confere(lavra::test::gravaXls(formulas, {{QStringLiteral("Custos"),
                                              {{QStringLiteral("Insumo"), QStringLiteral("Custo")},
                                               {QStringLiteral("Ureia"), formula(2.5), formula(true)},
                                               {formula(QStringLiteral("Calcário")), formula(1e-3)}}},
                                             {QStringLiteral("Total"), {{formula(-7)}}}}),
            formulas);
    for (const bool comprime : {true, false}) {
        const QString sufixo = comprime ? QStringLiteral("-deflated") : QStringLiteral("-stored");
        const QString xlsx = raiz.filePath(QStringLiteral("xlsx/feito%1.xlsx").arg(sufixo));
        confere(gravaZip(xlsx, xlsxFeito(), comprime), xlsx);
        const QString ods = raiz.filePath(QStringLiteral("ods/feito%1.ods").arg(sufixo));
        confere(gravaZip(ods, odsFeito(), comprime), ods);
        const QString xlsxR = raiz.filePath(QStringLiteral("xlsx/recursos%1.xlsx").arg(sufixo));
        confere(gravaZip(xlsxR, xlsxRecursos(), comprime), xlsxR);
        const QString odsR = raiz.filePath(QStringLiteral("ods/recursos%1.ods").arg(sufixo));
        confere(gravaZip(odsR, odsRecursos(), comprime), odsR);
    }
    return g_falhas == 0 ? 0 : 1;
}
