#pragma once

#include "store/manualtables.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <functional>
#include <optional>

namespace lavra::ui {

// The rows of one table of the manual as the grid shows them: the key columns, the values, then
// the confidence and the source. An edit is not written here: it is handed on, so that the window
// can ask for the reason first; the grid keeps showing what the database holds.
class ModeloTabela final : public QAbstractTableModel {
public:
    // The row (of this model), the column of the table and the text the user committed.
    using PedidoCorrecao = std::function<void(int linha, int coluna, const QString& texto)>;

    explicit ModeloTabela(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    void define(const QString& tabela, const QList<manual::LinhaManual>& linhas);
    void aoCorrigir(PedidoCorrecao pedido) { m_pedido = std::move(pedido); }

    const QString& tabela() const { return m_tabela; }
    const QList<manual::LinhaManual>& linhas() const { return m_linhas; }
    // The row of that key, or -1.
    int linhaDaChave(const QString& chave) const;
    // The column of the table shown in a grid column; -1 for the confidence and the source.
    int colunaDaTabela(int colunaGrade) const { return m_colunas.value(colunaGrade, -1); }
    int colunaDaGrade(int colunaTabela) const { return m_colunas.indexOf(colunaTabela); }
    int colunaConfianca() const { return static_cast<int>(m_colunas.size()); }
    int colunaFonte() const { return colunaConfianca() + 1; }
    int quantasChaves() const { return m_chaves; }

    // What a row is filtered by: its key as kept and as shown, and its confidence.
    static constexpr int kPapelChave = Qt::UserRole + 1;
    static constexpr int kPapelConfianca = Qt::UserRole + 2;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

private:
    QString m_tabela;
    QStringList m_nomes; // the table's own column names
    QList<int> m_colunas; // grid column -> column of the table: the keys first
    int m_chaves = 0;
    QList<manual::LinhaManual> m_linhas;
    PedidoCorrecao m_pedido;
};

// The rows whose key holds a text, whatever its capitals, and of one confidence.
class FiltroTabela final : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;
    void filtra(const QString& texto, std::optional<manual::Confianca> confianca);

protected:
    bool filterAcceptsRow(int linha, const QModelIndex& pai) const override;

private:
    QString m_texto;
    std::optional<manual::Confianca> m_confianca;
};

} // namespace lavra::ui
