// Legacy Excel workbooks (.xls, BIFF5 and BIFF8) through libfreexl.

#include "workbook.h"

#include <freexl.h>

#include <QFile>

namespace lavra::leitor {

namespace {

// Closes the handle however the reading ends.
class Handle {
public:
    ~Handle()
    {
        if (m_handle)
            freexl_close(m_handle);
    }
    const void** endereco() { return &m_handle; }
    const void* get() const { return m_handle; }

private:
    const void* m_handle = nullptr;
};

// freexl gives dates as "YYYY-MM-DD", with " HH:MM:SS" for a date and time.
double diaDe(const char* texto)
{
    const QString t = QString::fromLatin1(texto);
    const QDate data = QDate::fromString(t.left(10), Qt::ISODate);
    if (!data.isValid())
        return 0;
    double dia = static_cast<double>(QDate(1899, 12, 30).daysTo(data));
    if (t.size() >= 19) {
        const QTime hora = QTime::fromString(t.mid(11, 8), QStringLiteral("HH:mm:ss"));
        if (hora.isValid())
            dia += hora.msecsSinceStartOfDay() / 86400000.0;
    }
    return dia;
}

} // namespace

void leXls(const QString& caminho, Pasta& pasta, const OpcoesLeitura& opcoes)
{
    Handle xls;
    const QByteArray local = QFile::encodeName(caminho);
    // freexl can report success and still hand back no workbook when the string table is damaged.
    if (freexl_open(local.constData(), xls.endereco()) != FREEXL_OK || !xls.get())
        throw ErroPasta(erroPastaIlegivel(caminho));
    unsigned int senha = 0;
    if (freexl_get_info(xls.get(), FREEXL_BIFF_PASSWORD, &senha) == FREEXL_OK && senha == FREEXL_BIFF_OBFUSCATED)
        throw ErroPasta(erroPastaSenha(caminho));
    unsigned int folhas = 0;
    if (freexl_get_info(xls.get(), FREEXL_BIFF_SHEET_COUNT, &folhas) != FREEXL_OK)
        throw ErroPasta(erroPastaIlegivel(caminho));

    auto textos = std::make_shared<std::vector<std::string>>();
    std::size_t celulas = 0;
    for (unsigned short f = 0; f < folhas; ++f) {
        const char* nome = nullptr;
        unsigned int linhas = 0;
        unsigned short colunas = 0;
        if (freexl_get_worksheet_name(xls.get(), f, &nome) != FREEXL_OK
            || freexl_select_active_worksheet(xls.get(), f) != FREEXL_OK
            || freexl_worksheet_dimensions(xls.get(), &linhas, &colunas) != FREEXL_OK)
            throw ErroPasta(erroPastaIlegivel(caminho));
        auto planilha = std::make_unique<Planilha>(QString::fromUtf8(nome ? nome : ""), opcoes.maxColunas);
        const unsigned short lidas = static_cast<unsigned short>(std::min<int>(colunas, opcoes.maxColunas));
        for (unsigned int l = 0; l < linhas; ++l) {
            for (unsigned short c = 0; c < lidas; ++c) {
                FreeXL_CellValue v;
                if (freexl_get_cell_value(xls.get(), l, c, &v) != FREEXL_OK)
                    throw ErroPasta(erroPastaIlegivel(caminho));
                using Bruto = Planilha::Bruto;
                const int li = static_cast<int>(l);
                switch (v.type) {
                case FREEXL_CELL_INT: planilha->poe(li, c, Bruto::Numero, v.value.int_value); break;
                case FREEXL_CELL_DOUBLE: planilha->poe(li, c, Bruto::Numero, v.value.double_value); break;
                case FREEXL_CELL_TEXT:
                case FREEXL_CELL_SST_TEXT:
                    textos->emplace_back(v.value.text_value ? v.value.text_value : "");
                    planilha->poe(li, c, Bruto::Texto, 0, static_cast<std::uint32_t>(textos->size() - 1));
                    break;
                case FREEXL_CELL_DATE:
                case FREEXL_CELL_DATETIME: planilha->poe(li, c, Bruto::Data, diaDe(v.value.text_value)); break;
                // A time alone is no day; it is kept as the fraction it is.
                case FREEXL_CELL_TIME:
                    planilha->poe(li, c, Bruto::Numero, diaDe(("1899-12-30 " + std::string(v.value.text_value)).c_str()));
                    break;
                default: continue;
                }
                if (++celulas > opcoes.maxCelulas)
                    throw ErroPasta(erroPastaGrande(caminho));
            }
        }
        planilha->usaTextos(textos);
        pasta.planilhas.push_back(std::move(planilha));
    }
}

} // namespace lavra::leitor
