#include "tabelasmodelo.h"

#include "store/schema.h"

#include <QBrush>
#include <QColor>
#include <QFont>

namespace lavra::ui {

namespace {

// Light enough for the text to stay readable, apart enough to be seen at a glance.
const QColor kFundoBaixa(255, 228, 160);
const QColor kFundoConferida(214, 238, 214);

// A text as it is compared in the filter: no capitals and no accents, so that "feijao" finds
// "Feijão" as the agronomist would expect.
QString semAcentos(const QString& texto)
{
    const QString decomposto = texto.normalized(QString::NormalizationForm_D);
    QString simples;
    simples.reserve(decomposto.size());
    for (const QChar c : decomposto) {
        if (c.category() != QChar::Mark_NonSpacing)
            simples += c;
    }
    return simples.toCaseFolded();
}

} // namespace

void ModeloTabela::define(const QString& tabela, const QList<manual::LinhaManual>& linhas)
{
    beginResetModel();
    m_tabela = tabela;
    m_linhas = linhas;
    m_nomes.clear();
    m_colunas.clear();
    if (const TableDef* def = schema::findTable(tabela)) {
        for (const ColumnDef& coluna : def->columns)
            m_nomes << coluna.name;
    }
    const QList<int> chaves = manual::colunasChave(tabela);
    for (int c : chaves) {
        if (c >= 0 && c < m_nomes.size())
            m_colunas << c;
    }
    m_chaves = static_cast<int>(m_colunas.size());
    for (int c = 0; c < m_nomes.size(); ++c) {
        if (!chaves.contains(c))
            m_colunas << c;
    }
    endResetModel();
}

int ModeloTabela::linhaDaChave(const QString& chave) const
{
    for (int i = 0; i < m_linhas.size(); ++i) {
        if (m_linhas[i].chave == chave)
            return i;
    }
    return -1;
}

int ModeloTabela::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_linhas.size());
}

int ModeloTabela::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() || m_tabela.isEmpty() ? 0 : colunaFonte() + 1;
}

QVariant ModeloTabela::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_linhas.size())
        return {};
    const manual::LinhaManual& linha = m_linhas[index.row()];
    const int coluna = colunaDaTabela(index.column());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (coluna >= 0)
            return manual::textoValor(linha.valores.value(coluna));
        if (index.column() == colunaConfianca())
            return manual::textoConfianca(linha.confianca);
        return linha.fonte;
    case Qt::ToolTipRole:
        // A long key or source is cut short in its cell.
        if (index.column() < m_chaves)
            return manual::textoValor(linha.valores.value(coluna));
        return index.column() == colunaFonte() && !linha.fonte.isEmpty() ? QVariant(linha.fonte) : QVariant();
    case Qt::TextAlignmentRole: {
        const QVariant valor = coluna >= 0 ? linha.valores.value(coluna) : QVariant();
        const bool numero = valor.isValid() && valor.typeId() != QMetaType::QString;
        return QVariant::fromValue((numero ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    case Qt::BackgroundRole:
        if (linha.confianca == manual::Confianca::Baixa)
            return QBrush(kFundoBaixa);
        if (linha.confianca == manual::Confianca::ConferidaPeloUsuario)
            return QBrush(kFundoConferida);
        return {};
    case Qt::ForegroundRole:
        // The light backgrounds stay readable under a dark theme too.
        if (linha.confianca == manual::Confianca::Baixa || linha.confianca == manual::Confianca::ConferidaPeloUsuario)
            return QBrush(Qt::black);
        return {};
    case Qt::FontRole:
        if (index.column() == colunaConfianca() && linha.confianca == manual::Confianca::Baixa) {
            QFont negrito;
            negrito.setBold(true);
            return negrito;
        }
        return {};
    case kPapelChave: {
        QString texto = linha.chave;
        for (int c = 0; c < m_chaves; ++c)
            texto += QLatin1Char('\n') + manual::textoValor(linha.valores.value(m_colunas[c]));
        return texto;
    }
    case kPapelConfianca:
        return static_cast<int>(linha.confianca);
    default:
        return {};
    }
}

QVariant ModeloTabela::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    const int coluna = colunaDaTabela(section);
    if (role == Qt::DisplayRole) {
        if (coluna >= 0)
            return manual::tituloColuna(m_tabela, m_nomes.value(coluna));
        return section == colunaConfianca() ? QStringLiteral("Confiança") : QStringLiteral("Fonte");
    }
    if (role == Qt::ToolTipRole && coluna >= 0)
        return m_nomes.value(coluna);
    return {};
}

Qt::ItemFlags ModeloTabela::flags(const QModelIndex& index) const
{
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    if (index.isValid() && index.column() >= m_chaves && colunaDaTabela(index.column()) >= 0)
        f |= Qt::ItemIsEditable;
    return f;
}

bool ModeloTabela::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const int coluna = colunaDaTabela(index.column());
    if (role != Qt::EditRole || !index.isValid() || coluna < 0 || index.column() < m_chaves || !m_pedido)
        return false;
    m_pedido(index.row(), coluna, value.toString());
    // The value changes only once it is written, and then the table is read again.
    return false;
}

void FiltroTabela::filtra(const QString& texto, std::optional<manual::Confianca> confianca)
{
    m_texto = semAcentos(texto.trimmed());
    m_confianca = confianca;
    invalidateRowsFilter();
}

bool FiltroTabela::filterAcceptsRow(int linha, const QModelIndex& pai) const
{
    const QModelIndex indice = sourceModel()->index(linha, 0, pai);
    if (m_confianca && indice.data(ModeloTabela::kPapelConfianca).toInt() != static_cast<int>(*m_confianca))
        return false;
    return m_texto.isEmpty() || semAcentos(indice.data(ModeloTabela::kPapelChave).toString()).contains(m_texto);
}

} // namespace lavra::ui
