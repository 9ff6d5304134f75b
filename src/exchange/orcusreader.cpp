// Office Open XML (.xlsx) and OpenDocument (.ods) workbooks through liborcus. The cells go
// straight into the sheets of the Pasta as orcus parses them, keeping only what the import reads:
// values, texts and whether a number is formatted as a date.

#include "workbook.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

#include <orcus/orcus_ods.hpp>
#include <orcus/orcus_xlsx.hpp>
#include <orcus/spreadsheet/import_interface.hpp>
#include <orcus/zip_archive.hpp>
#include <orcus/zip_archive_stream.hpp>

#include <stdexcept>
#include <unordered_map>

namespace lavra::leitor {

namespace {

namespace ss = orcus::spreadsheet;
using ss::col_t;
using ss::row_t;
using Bruto = Planilha::Bruto;

// orcus 0.17 trusts a zip's directory: it allocates the sizes an entry declares before reading
// it, so a few kilobytes can ask for gigabytes. Its XML parser reads past the end of some
// malformed documents and then stops the whole program on an assertion. So the archive is looked
// at first, the way orcus will read it, and refused when it is damaged or too large.

// Past this much uncompressed content a workbook is refused before it is unpacked.
constexpr qint64 kMaxDescompactado = qint64(1) << 30;
// Deflate cannot expand data by more than 1032 to 1; an entry claiming more is lying.
constexpr qint64 kMaxRazao = 1032;

quint32 le32(const QByteArray& b, qint64 i)
{
    const auto* p = reinterpret_cast<const unsigned char*>(b.constData()) + i;
    return quint32(p[0]) | quint32(p[1]) << 8 | quint32(p[2]) << 16 | quint32(p[3]) << 24;
}
quint16 le16(const QByteArray& b, qint64 i)
{
    const auto* p = reinterpret_cast<const unsigned char*>(b.constData()) + i;
    return quint16(p[0] | p[1] << 8);
}

// The directory as orcus walks it: entry after entry while their signature holds, whatever count
// the directory declares.
void confereDiretorio(const QByteArray& zip, qint64 fim, const QString& caminho)
{
    const qint64 n = zip.size();
    qint64 total = 0;
    for (qint64 pos = le32(zip, fim + 16); pos + 4 <= n && le32(zip, pos) == 0x02014b50;) {
        if (pos + 46 > n)
            throw ErroPasta(erroPastaIlegivel(caminho));
        const quint16 metodo = le16(zip, pos + 10);
        const qint64 compactado = le32(zip, pos + 20);
        const qint64 descompactado = le32(zip, pos + 24);
        const qint64 local = le32(zip, pos + 42);
        pos += 46 + le16(zip, pos + 28) + le16(zip, pos + 30) + le16(zip, pos + 32);
        if (local + 30 > n || local + 30 + le16(zip, local + 26) + le16(zip, local + 28) + compactado > n
            || (metodo == 8 && descompactado > (compactado + 1) * kMaxRazao))
            throw ErroPasta(erroPastaIlegivel(caminho));
        total += descompactado;
        if (total > kMaxDescompactado)
            throw ErroPasta(erroPastaGrande(caminho));
    }
}

// orcus looks for the end of the directory backwards, in blocks, and may miss a signature that
// straddles two of them; so every directory a signature points to is checked, not only the last.
// A zip has one; a few more may sit by chance in stored data.
void confereDiretorios(const QByteArray& zip, const QString& caminho)
{
    int achados = 0;
    for (qint64 fim = zip.indexOf(QByteArrayLiteral("PK\x05\x06")); fim >= 0;
         fim = zip.indexOf(QByteArrayLiteral("PK\x05\x06"), fim + 1)) {
        if (++achados > 16)
            throw ErroPasta(erroPastaIlegivel(caminho));
        // orcus cannot read an end record cut short by the end of the file, and gives up.
        if (fim + 22 <= zip.size())
            confereDiretorio(zip, fim, caminho);
    }
    if (achados == 0)
        throw ErroPasta(erroPastaIlegivel(caminho));
}

// Every part that reads as XML must be well formed, and carry no DOCTYPE, which no Office file has.
bool xmlBemFormado(const std::vector<unsigned char>& parte)
{
    // orcus ends each part with a null of its own.
    const auto n = static_cast<qsizetype>(parte.empty() ? 0 : parte.size() - 1);
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(parte.data()), n);
    qsizetype i = bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    while (i < n && (bytes[i] == ' ' || bytes[i] == '\t' || bytes[i] == '\r' || bytes[i] == '\n'))
        ++i;
    if (i == n || bytes[i] != '<')
        return true;
    // Fed a block at a time: given the whole part at once, the reader would hold it again as
    // UTF-16, twice the size of a sheet that is already in memory.
    constexpr qsizetype kBloco = 1 << 16;
    QXmlStreamReader xml;
    xml.setNamespaceProcessing(false);
    qsizetype pos = 0;
    do {
        xml.addData(bytes.mid(pos, kBloco));
        pos += kBloco;
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::DTD)
                return false;
        }
    } while (pos < n && xml.error() == QXmlStreamReader::PrematureEndOfDocumentError);
    return !xml.hasError();
}

void confereZip(const QByteArray& bytes, const QString& caminho)
{
    confereDiretorios(bytes, caminho);
    orcus::zip_archive_stream_blob fluxo(reinterpret_cast<const uint8_t*>(bytes.constData()),
                                         static_cast<std::size_t>(bytes.size()));
    orcus::zip_archive zip(&fluxo);
    zip.load();
    for (std::size_t i = 0; i < zip.get_file_entry_count(); ++i) {
        std::vector<unsigned char> parte;
        if (zip.read_file_entry(zip.get_file_entry_name(i), parte) && !xmlBemFormado(parte))
            throw ErroPasta(erroPastaIlegivel(caminho));
    }
}

struct Estado {
    const OpcoesLeitura& opcoes;
    std::size_t celulas = 0;

    void conta(const QString& caminho)
    {
        if (++celulas > opcoes.maxCelulas)
            throw ErroPasta(erroPastaGrande(caminho));
    }
};

class Textos final : public ss::iface::import_shared_strings {
public:
    std::shared_ptr<std::vector<std::string>> lista = std::make_shared<std::vector<std::string>>();

    std::size_t append(std::string_view s) override
    {
        lista->emplace_back(s);
        return lista->size() - 1;
    }
    std::size_t add(std::string_view s) override
    {
        const auto it = m_indice.find(std::string(s));
        if (it != m_indice.end())
            return it->second;
        const std::size_t i = append(s);
        m_indice.emplace(std::string(s), i);
        return i;
    }
    void set_segment_font(std::size_t) override {}
    void set_segment_bold(bool) override {}
    void set_segment_italic(bool) override {}
    void set_segment_font_name(std::string_view) override {}
    void set_segment_font_size(double) override {}
    void set_segment_font_color(ss::color_elem_t, ss::color_elem_t, ss::color_elem_t, ss::color_elem_t) override {}
    void append_segment(std::string_view s) override { m_segmentos += s; }
    std::size_t commit_segments() override
    {
        const std::size_t i = append(m_segmentos);
        m_segmentos.clear();
        return i;
    }

private:
    std::unordered_map<std::string, std::size_t> m_indice;
    std::string m_segmentos;
};

// Whether a number format shows a date: a built-in date format, or a code with day, month or
// year letters outside quoted text, escapes and [colour] or [$-locale] brackets.
bool formatoDeData(std::size_t id, const std::string* codigo)
{
    if ((id >= 14 && id <= 22) || (id >= 27 && id <= 36) || (id >= 45 && id <= 47) || (id >= 50 && id <= 58))
        return true;
    if (!codigo)
        return false;
    static const QRegularExpression fora(QStringLiteral(R"("[^"]*"|\[[^\]]*\]|\\.|_.|\*.)"));
    const QString limpo = QString::fromStdString(*codigo).remove(fora).toLower();
    // "General" holds an e and an l but no date letter of its own.
    if (limpo.contains(QLatin1String("general")))
        return false;
    static const QRegularExpression letras(QStringLiteral("[dmy]"));
    return limpo.contains(letras);
}

class Estilos final : public ss::iface::import_styles {
public:
    // The cell styles whose number format is a date, by style index.
    std::shared_ptr<std::vector<bool>> deData() const
    {
        auto v = std::make_shared<std::vector<bool>>();
        for (const std::size_t id : m_xfs) {
            const auto it = m_formatos.find(id);
            v->push_back(formatoDeData(id, it == m_formatos.end() ? nullptr : &it->second));
        }
        return v;
    }

    void set_number_format_count(std::size_t) override {}
    void set_number_format_identifier(std::size_t id) override { m_idFormato = id; }
    void set_number_format_code(std::string_view s) override { m_codigo = s; }
    std::size_t commit_number_format() override
    {
        m_formatos[m_idFormato] = m_codigo;
        m_codigo.clear();
        return m_idFormato;
    }
    void set_xf_number_format(std::size_t index) override { m_xfFormato = index; }
    std::size_t commit_cell_xf() override
    {
        m_xfs.push_back(m_xfFormato);
        m_xfFormato = 0;
        return m_xfs.size() - 1;
    }
    std::size_t commit_cell_style_xf() override { return m_xfFormato = 0; }
    std::size_t commit_dxf() override { return m_xfFormato = 0; }

    // Fonts, fills, borders, protection, alignment and named styles say nothing of a value.
    void set_font_count(std::size_t) override {}
    void set_font_bold(bool) override {}
    void set_font_italic(bool) override {}
    void set_font_name(std::string_view) override {}
    void set_font_size(double) override {}
    void set_font_underline(ss::underline_t) override {}
    void set_font_underline_width(ss::underline_width_t) override {}
    void set_font_underline_mode(ss::underline_mode_t) override {}
    void set_font_underline_type(ss::underline_type_t) override {}
    void set_font_underline_color(ss::color_elem_t, ss::color_elem_t, ss::color_elem_t, ss::color_elem_t) override {}
    void set_font_color(ss::color_elem_t, ss::color_elem_t, ss::color_elem_t, ss::color_elem_t) override {}
    void set_strikethrough_style(ss::strikethrough_style_t) override {}
    void set_strikethrough_type(ss::strikethrough_type_t) override {}
    void set_strikethrough_width(ss::strikethrough_width_t) override {}
    void set_strikethrough_text(ss::strikethrough_text_t) override {}
    std::size_t commit_font() override { return 0; }
    void set_fill_count(std::size_t) override {}
    void set_fill_pattern_type(ss::fill_pattern_t) override {}
    void set_fill_fg_color(ss::color_elem_t, ss::color_elem_t, ss::color_elem_t, ss::color_elem_t) override {}
    void set_fill_bg_color(ss::color_elem_t, ss::color_elem_t, ss::color_elem_t, ss::color_elem_t) override {}
    std::size_t commit_fill() override { return 0; }
    void set_border_count(std::size_t) override {}
    void set_border_style(ss::border_direction_t, ss::border_style_t) override {}
    void set_border_color(ss::border_direction_t, ss::color_elem_t, ss::color_elem_t, ss::color_elem_t,
                          ss::color_elem_t) override {}
    void set_border_width(ss::border_direction_t, double, orcus::length_unit_t) override {}
    std::size_t commit_border() override { return 0; }
    void set_cell_hidden(bool) override {}
    void set_cell_locked(bool) override {}
    void set_cell_print_content(bool) override {}
    void set_cell_formula_hidden(bool) override {}
    std::size_t commit_cell_protection() override { return 0; }
    void set_cell_xf_count(std::size_t) override {}
    void set_cell_style_xf_count(std::size_t) override {}
    void set_dxf_count(std::size_t) override {}
    void set_xf_font(std::size_t) override {}
    void set_xf_fill(std::size_t) override {}
    void set_xf_border(std::size_t) override {}
    void set_xf_protection(std::size_t) override {}
    void set_xf_style_xf(std::size_t) override {}
    void set_xf_apply_alignment(bool) override {}
    void set_xf_horizontal_alignment(ss::hor_alignment_t) override {}
    void set_xf_vertical_alignment(ss::ver_alignment_t) override {}
    void set_cell_style_count(std::size_t) override {}
    void set_cell_style_name(std::string_view) override {}
    void set_cell_style_xf(std::size_t) override {}
    void set_cell_style_builtin(std::size_t) override {}
    void set_cell_style_parent_name(std::string_view) override {}
    std::size_t commit_cell_style() override { return 0; }

private:
    std::unordered_map<std::size_t, std::string> m_formatos;
    std::vector<std::size_t> m_xfs;
    std::size_t m_idFormato = 0;
    std::size_t m_xfFormato = 0;
    std::string m_codigo;
};

class Ajustes final : public ss::iface::import_global_settings {
public:
    // Days from 30/12/1899 to the workbook's own day zero: 1462 for the 1904 system.
    qint64 deslocamento = 0;

    void set_origin_date(int year, int month, int day) override
    {
        deslocamento = QDate(1899, 12, 30).daysTo(QDate(year, month, day));
    }
    void set_default_formula_grammar(ss::formula_grammar_t grammar) override { m_gramatica = grammar; }
    ss::formula_grammar_t get_default_formula_grammar() const override { return m_gramatica; }
    void set_character_set(orcus::character_set_t) override {}

private:
    ss::formula_grammar_t m_gramatica = ss::formula_grammar_t::unknown;
};

// Cell references in the A1 style, as sheets state their extent: "B3", "$B$3", "Plan1!B3:C4".
class Referencias final : public ss::iface::import_reference_resolver {
public:
    ss::src_address_t resolve_address(std::string_view endereco) override
    {
        const std::string_view celula = endereco.substr(endereco.rfind('!') == std::string_view::npos ? 0
                                                                                                  : endereco.rfind('!') + 1);
        ss::src_address_t a{0, 0, 0};
        std::size_t i = 0;
        const auto pulaCifrao = [&] { i += i < celula.size() && celula[i] == '$'; };
        pulaCifrao();
        int coluna = 0;
        // Stops past the last column, as the row below stops past its limit: the rest is refused.
        // Letters and digits of the reference are ASCII whatever the machine's setting.
        const auto letra = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
        for (; i < celula.size() && letra(celula[i]) && coluna <= 1 << 14; ++i)
            coluna = coluna * 26 + ((celula[i] & ~0x20) - 'A' + 1);
        pulaCifrao();
        long linha = 0;
        for (; i < celula.size() && celula[i] >= '0' && celula[i] <= '9' && linha < 1 << 24; ++i)
            linha = linha * 10 + (celula[i] - '0');
        if (coluna == 0 || coluna > 1 << 14 || linha == 0 || i != celula.size())
            throw std::invalid_argument("referência de célula inválida");
        a.row = static_cast<row_t>(linha - 1);
        a.column = coluna - 1;
        return a;
    }
    ss::src_range_t resolve_range(std::string_view intervalo) override
    {
        const std::size_t dois = intervalo.find(':');
        if (dois == std::string_view::npos) {
            const auto a = resolve_address(intervalo);
            return {a, a};
        }
        return {resolve_address(intervalo.substr(0, dois)), resolve_address(intervalo.substr(dois + 1))};
    }
};

class Folha;

// A formula's cell holds the result the spreadsheet program saved with it.
class Formula final : public ss::iface::import_formula {
public:
    Formula(Folha& folha, Textos& textos) : m_folha(folha), m_textos(textos) {}
    void set_position(row_t row, col_t col) override
    {
        m_linha = row;
        m_coluna = col;
        m_tipo = Bruto::Vazia;
    }
    void set_formula(ss::formula_grammar_t, std::string_view) override {}
    void set_shared_formula_index(std::size_t) override {}
    void set_result_string(std::string_view value) override
    {
        m_tipo = Bruto::Texto;
        m_texto = static_cast<std::uint32_t>(m_textos.add(value));
    }
    void set_result_value(double value) override
    {
        m_tipo = Bruto::Numero;
        m_numero = value;
    }
    void set_result_bool(bool value) override
    {
        m_tipo = Bruto::Logico;
        m_numero = value ? 1 : 0;
    }
    void set_result_empty() override { m_tipo = Bruto::Vazia; }
    void commit() override;

private:
    Folha& m_folha;
    Textos& m_textos;
    row_t m_linha = 0;
    col_t m_coluna = 0;
    Bruto m_tipo = Bruto::Vazia;
    double m_numero = 0;
    std::uint32_t m_texto = 0;
};

// An array formula's cells hold the results saved with it. orcus 0.17 hands an .xlsx array formula
// to the sheet's interface without checking that there is one, so this must exist.
class MatrizFormula final : public ss::iface::import_array_formula {
public:
    MatrizFormula(Folha& folha, Textos& textos) : m_folha(folha), m_textos(textos) {}
    void set_range(const ss::range_t& range) override { m_inicio = range.first; }
    void set_formula(ss::formula_grammar_t, std::string_view) override {}
    void set_result_string(row_t row, col_t col, std::string_view value) override;
    void set_result_value(row_t row, col_t col, double value) override;
    void set_result_bool(row_t row, col_t col, bool value) override;
    void set_result_empty(row_t, col_t) override {}
    void commit() override {}

private:
    Folha& m_folha;
    Textos& m_textos;
    ss::address_t m_inicio{0, 0};
};

class Folha final : public ss::iface::import_sheet {
public:
    Folha(Planilha& planilha, Textos& textos, Estado& estado, const QString& caminho)
        : m_planilha(planilha), m_textos(textos), m_estado(estado), m_caminho(caminho), m_formula(*this, textos),
          m_matriz(*this, textos)
    {
    }

    void poe(row_t row, col_t col, Bruto tipo, double numero, std::uint32_t texto = 0)
    {
        m_estado.conta(m_caminho);
        m_planilha.poe(row, col, tipo, numero, texto);
    }

    ss::iface::import_formula* get_formula() override { return &m_formula; }
    ss::iface::import_array_formula* get_array_formula() override { return &m_matriz; }
    void set_auto(row_t row, col_t col, std::string_view s) override
    {
        poe(row, col, Bruto::Texto, 0, static_cast<std::uint32_t>(m_textos.add(s)));
    }
    void set_string(row_t row, col_t col, ss::string_id_t sindex) override { poe(row, col, Bruto::Texto, 0, sindex); }
    void set_value(row_t row, col_t col, double value) override { poe(row, col, Bruto::Numero, value); }
    void set_bool(row_t row, col_t col, bool value) override { poe(row, col, Bruto::Logico, value ? 1 : 0); }
    void set_date_time(row_t row, col_t col, int year, int month, int day, int hour, int minute,
                       double second) override
    {
        const QDate data(year, month, day);
        if (!data.isValid())
            return poe(row, col, Bruto::Vazia, 0);
        const double dia = static_cast<double>(QDate(1899, 12, 30).daysTo(data));
        poe(row, col, Bruto::Data, dia + (hour * 3600.0 + minute * 60.0 + second) / 86400.0);
    }
    void set_format(row_t row, col_t col, std::size_t xf_index) override
    {
        m_planilha.poeEstilo(row, col, static_cast<std::uint32_t>(xf_index));
    }
    // A style over a range marks no cell that the import reads: cells carry their own.
    void set_format(row_t, col_t, row_t, col_t, std::size_t) override {}
    void fill_down_cells(row_t src_row, col_t src_col, row_t range_size) override
    {
        for (row_t r = 1; r <= range_size; ++r) {
            if (m_planilha.copiaAbaixo(src_row, src_col, r))
                m_estado.conta(m_caminho);
        }
    }
    ss::range_size_t get_sheet_size() const override { return {1048576, 16384}; }

private:
    Planilha& m_planilha;
    Textos& m_textos;
    Estado& m_estado;
    const QString& m_caminho;
    Formula m_formula;
    MatrizFormula m_matriz;
};

void Formula::commit()
{
    if (m_tipo != Bruto::Vazia)
        m_folha.poe(m_linha, m_coluna, m_tipo, m_numero, m_texto);
}

void MatrizFormula::set_result_string(row_t row, col_t col, std::string_view value)
{
    m_folha.poe(m_inicio.row + row, m_inicio.column + col, Bruto::Texto, 0,
                static_cast<std::uint32_t>(m_textos.add(value)));
}
void MatrizFormula::set_result_value(row_t row, col_t col, double value)
{
    m_folha.poe(m_inicio.row + row, m_inicio.column + col, Bruto::Numero, value);
}
void MatrizFormula::set_result_bool(row_t row, col_t col, bool value)
{
    m_folha.poe(m_inicio.row + row, m_inicio.column + col, Bruto::Logico, value ? 1 : 0);
}

class Fabrica final : public ss::iface::import_factory {
public:
    Fabrica(Pasta& pasta, const OpcoesLeitura& opcoes, bool ods)
        : m_pasta(pasta), m_opcoes(opcoes), m_estado{opcoes}, m_ods(ods)
    {
    }

    ss::iface::import_global_settings* get_global_settings() override { return &m_ajustes; }
    ss::iface::import_shared_strings* get_shared_strings() override { return &m_textos; }
    ss::iface::import_styles* get_styles() override { return &m_estilos; }
    // Only .xlsx needs references resolved, to place its cells. An .ods asks for them only for named
    // ranges and filters, in its own "$Plan1.$A$1" form, and does without when there is none.
    ss::iface::import_reference_resolver* get_reference_resolver(ss::formula_ref_context_t) override
    {
        return m_ods ? nullptr : &m_referencias;
    }
    ss::iface::import_sheet* append_sheet(ss::sheet_t, std::string_view name) override
    {
        auto planilha = std::make_unique<Planilha>(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
                                                   m_opcoes.maxColunas);
        m_folhas.push_back(std::make_unique<Folha>(*planilha, m_textos, m_estado, m_pasta.caminho));
        m_pasta.planilhas.push_back(std::move(planilha));
        return m_folhas.back().get();
    }
    ss::iface::import_sheet* get_sheet(std::string_view name) override
    {
        const QString nome = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
        for (std::size_t i = 0; i < m_pasta.planilhas.size(); ++i) {
            if (m_pasta.planilhas[i]->nome() == nome)
                return m_folhas[i].get();
        }
        return nullptr;
    }
    ss::iface::import_sheet* get_sheet(ss::sheet_t index) override
    {
        return index >= 0 && static_cast<std::size_t>(index) < m_folhas.size() ? m_folhas[index].get() : nullptr;
    }
    void finalize() override
    {
        const auto datas = m_estilos.deData();
        for (auto& p : m_pasta.planilhas) {
            p->usaTextos(m_textos.lista);
            p->usaEstilosDeData(datas, m_ajustes.deslocamento);
        }
    }

private:
    Pasta& m_pasta;
    const OpcoesLeitura& m_opcoes;
    Estado m_estado;
    Textos m_textos;
    Estilos m_estilos;
    Ajustes m_ajustes;
    Referencias m_referencias;
    bool m_ods = false;
    std::vector<std::unique_ptr<Folha>> m_folhas;
};

} // namespace

void leOpenDocument(const QByteArray& bytes, bool ods, Pasta& pasta, const OpcoesLeitura& opcoes)
{
    Fabrica fabrica(pasta, opcoes, ods);
    const std::string_view conteudo(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    try {
        confereZip(bytes, pasta.caminho);
        if (ods) {
            orcus::orcus_ods filtro(&fabrica);
            filtro.read_stream(conteudo);
        } else {
            orcus::orcus_xlsx filtro(&fabrica);
            filtro.read_stream(conteudo);
        }
    } catch (const ErroPasta&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw ErroPasta(erroPastaGrande(pasta.caminho));
    } catch (const std::exception&) {
        throw ErroPasta(erroPastaIlegivel(pasta.caminho));
    }
    // Readers that end without finalize (a workbook with no sheets) still leave usable sheets.
    fabrica.finalize();
}

} // namespace lavra::leitor
