#include "xlsxfile.h"

#include "base/numbers.h"
#include "workbook.h"

#include <QDate>
#include <QFile>
#include <QFileInfo>

#include <xlsxwriter.h>

#include <algorithm>
#include <vector>

namespace lavra {

namespace {

QString erroGravacao(const QString& caminho, const QString& motivo)
{
    return QStringLiteral("Não foi possível gravar a planilha %1: %2").arg(QFileInfo(caminho).fileName(), motivo);
}

constexpr lxw_row_t kLinhasMedidas = 2000;

// Widths in characters, as the spreadsheet program counts them, with a little room.
double largura(const QVariant& valor)
{
    if (valor.typeId() == QMetaType::QDate)
        return 10;
    return valor.toString().size();
}

} // namespace

struct EscritorXlsx::Estado {
    QString caminho;
    bool existia = false;
    QByteArray local;
    lxw_workbook* pasta = nullptr;
    lxw_format* negrito = nullptr;
    lxw_format* data = nullptr;
    lxw_worksheet* folha = nullptr;
    lxw_row_t linha = 0;
    std::vector<double> larguras;

    void ajustaLarguras()
    {
        for (std::size_t c = 0; folha && c < larguras.size(); ++c) {
            const auto col = static_cast<lxw_col_t>(c);
            worksheet_set_column(folha, col, col, std::min(larguras[c] + 2, 80.0), nullptr);
        }
        larguras.clear();
    }

    // A failed write never takes away a file that was there before.
    void descarta()
    {
        if (!existia)
            QFile::remove(caminho);
    }
};

EscritorXlsx::EscritorXlsx(const QString& caminho, qint64 celulasPrevistas) : m(std::make_unique<Estado>())
{
    m->caminho = caminho;
    m->existia = QFile::exists(caminho);
    m->local = QFile::encodeName(caminho);
    lxw_workbook_options opcoes{};
    opcoes.constant_memory = celulasPrevistas > kCelulasEmMemoria ? LXW_TRUE : LXW_FALSE;
    m->pasta = workbook_new_opt(m->local.constData(), &opcoes);
    if (!m->pasta)
        throw ErroPasta(erroGravacao(caminho, QStringLiteral("a pasta de destino não aceita o arquivo.")));
    m->negrito = workbook_add_format(m->pasta);
    format_set_bold(m->negrito);
    m->data = workbook_add_format(m->pasta);
    format_set_num_format(m->data, "dd/mm/yyyy");
}

EscritorXlsx::~EscritorXlsx()
{
    if (m->pasta)
        lxw_workbook_free(m->pasta);
}

void EscritorXlsx::folha(const QString& nome)
{
    m->ajustaLarguras();
    const QByteArray texto = nome.toUtf8();
    m->folha = workbook_add_worksheet(m->pasta, texto.isEmpty() ? nullptr : texto.constData());
    if (!m->folha)
        throw ErroPasta(erroGravacao(m->caminho, QStringLiteral("nome de planilha inválido: %1.").arg(nome)));
    m->linha = 0;
}

void EscritorXlsx::linha(const QVector<QVariant>& valores)
{
    if (!m->folha)
        folha(QString());
    const lxw_row_t row = m->linha++;
    if (m->larguras.size() < static_cast<std::size_t>(valores.size()))
        m->larguras.resize(static_cast<std::size_t>(valores.size()), 0);
    lxw_format* formato = row == 0 ? m->negrito : nullptr;
    for (int c = 0; c < valores.size(); ++c) {
        const QVariant& v = valores[c];
        const auto col = static_cast<lxw_col_t>(c);
        switch (v.typeId()) {
        case QMetaType::UnknownType: continue;
        case QMetaType::QDate: {
            const QDate d = v.toDate();
            lxw_datetime dt{d.year(), d.month(), d.day(), 0, 0, 0};
            worksheet_write_datetime(m->folha, row, col, &dt, m->data);
            break;
        }
        // A single goes in as the number it reads as, 0.1 and not 0.100000001.
        case QMetaType::Float: worksheet_write_number(m->folha, row, col, widenShortest(v.toFloat()), formato); break;
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::Double: worksheet_write_number(m->folha, row, col, v.toDouble(), formato); break;
        case QMetaType::Bool: worksheet_write_boolean(m->folha, row, col, v.toBool(), formato); break;
        default: {
            const QByteArray texto = v.toString().toUtf8();
            worksheet_write_string(m->folha, row, col, texto.constData(), formato);
        }
        }
        // The widths follow the first rows; measuring every cell of a large sheet costs more than
        // writing it.
        if (row < kLinhasMedidas) {
            auto& maior = m->larguras[static_cast<std::size_t>(c)];
            maior = std::max(maior, largura(v));
        }
    }
}

void EscritorXlsx::fecha()
{
    m->ajustaLarguras();
    lxw_workbook* pasta = std::exchange(m->pasta, nullptr);
    const lxw_error erro = workbook_close(pasta);
    if (erro != LXW_NO_ERROR) {
        m->descarta();
        throw ErroPasta(erroGravacao(m->caminho, QString::fromUtf8(lxw_strerror(erro))));
    }
}

void gravaXlsx(const QString& caminho, const QList<FolhaEscrita>& folhas)
{
    // The rows are in memory already; the workbook keeps its texts in the shared list, which
    // every reader takes, the import's among them.
    EscritorXlsx escritor(caminho);
    for (const FolhaEscrita& folha : folhas) {
        escritor.folha(folha.nome);
        for (const auto& linha : folha.linhas)
            escritor.linha(linha);
    }
    escritor.fecha();
}

} // namespace lavra
