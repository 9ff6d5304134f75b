#include "xlsxfile.h"

#include "workbook.h"

#include <QDate>
#include <QFile>
#include <QFileInfo>

#include <xlsxwriter.h>

#include <algorithm>

namespace lavra {

namespace {

QString erroGravacao(const QString& caminho, const QString& motivo)
{
    return QStringLiteral("Não foi possível gravar a planilha %1: %2").arg(QFileInfo(caminho).fileName(), motivo);
}

// Widths in characters, as the spreadsheet program counts them, with a little room.
double largura(const QVariant& valor)
{
    if (valor.typeId() == QMetaType::QDate)
        return 10;
    return valor.toString().size();
}

} // namespace

void gravaXlsx(const QString& caminho, const QList<FolhaEscrita>& folhas)
{
    const QByteArray local = QFile::encodeName(caminho);
    // A failed write never takes away a file that was there before.
    const bool existia = QFile::exists(caminho);
    const auto descarta = [&] {
        if (!existia)
            QFile::remove(caminho);
    };
    lxw_workbook* pasta = workbook_new(local.constData());
    if (!pasta)
        throw ErroPasta(erroGravacao(caminho, QStringLiteral("a pasta de destino não aceita o arquivo.")));
    lxw_format* negrito = workbook_add_format(pasta);
    format_set_bold(negrito);
    lxw_format* data = workbook_add_format(pasta);
    format_set_num_format(data, "dd/mm/yyyy");

    for (const FolhaEscrita& folha : folhas) {
        const QByteArray nome = folha.nome.toUtf8();
        lxw_worksheet* ws = workbook_add_worksheet(pasta, nome.isEmpty() ? nullptr : nome.constData());
        if (!ws) {
            workbook_close(pasta);
            descarta();
            throw ErroPasta(erroGravacao(caminho, QStringLiteral("nome de planilha inválido: %1.").arg(folha.nome)));
        }
        std::vector<double> larguras;
        for (int l = 0; l < folha.linhas.size(); ++l) {
            const auto& linha = folha.linhas[l];
            if (larguras.size() < static_cast<std::size_t>(linha.size()))
                larguras.resize(static_cast<std::size_t>(linha.size()), 0);
            for (int c = 0; c < linha.size(); ++c) {
                const QVariant& v = linha[c];
                const auto row = static_cast<lxw_row_t>(l);
                const auto col = static_cast<lxw_col_t>(c);
                lxw_format* formato = l == 0 ? negrito : nullptr;
                switch (v.typeId()) {
                case QMetaType::UnknownType: continue;
                case QMetaType::QDate: {
                    const QDate d = v.toDate();
                    lxw_datetime dt{d.year(), d.month(), d.day(), 0, 0, 0};
                    worksheet_write_datetime(ws, row, col, &dt, data);
                    break;
                }
                case QMetaType::Int:
                case QMetaType::LongLong:
                case QMetaType::Double:
                case QMetaType::Float: worksheet_write_number(ws, row, col, v.toDouble(), formato); break;
                case QMetaType::Bool: worksheet_write_boolean(ws, row, col, v.toBool(), formato); break;
                default: {
                    const QByteArray texto = v.toString().toUtf8();
                    worksheet_write_string(ws, row, col, texto.constData(), formato);
                }
                }
                larguras[static_cast<std::size_t>(c)] = std::max(larguras[static_cast<std::size_t>(c)], largura(v));
            }
        }
        for (std::size_t c = 0; c < larguras.size(); ++c) {
            const auto col = static_cast<lxw_col_t>(c);
            worksheet_set_column(ws, col, col, std::min(larguras[c] + 2, 80.0), nullptr);
        }
    }
    const lxw_error erro = workbook_close(pasta);
    if (erro != LXW_NO_ERROR) {
        descarta();
        throw ErroPasta(erroGravacao(caminho, QString::fromUtf8(lxw_strerror(erro))));
    }
}

} // namespace lavra
