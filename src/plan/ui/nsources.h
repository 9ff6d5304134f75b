#pragma once

#include <QVariant>
#include <QWidget>

class QCheckBox;
class QLineEdit;
class QTableView;

namespace lavra {
class CursorModel;
struct Session;
}

namespace lavra::ui {

// The choice of a source of nitrogen for a need: the grid dtGrid of the sources in NPK (or of
// every fertiliser with chkTodas), the dose txtFnt that covers the need and its cost txtCusto.
// The split of the topdressing and the nitrogen dressing of the forest plan share it.
class EscolhaFonteN final : public QWidget {
    Q_OBJECT

public:
    EscolhaFonteN(Session& session, float necessidade, const QString& titulo, QWidget* parent);

    // The sources of nitrogen, or with todas every fertiliser, as the rows of the grid.
    void AbreTabelaN(bool todas);

    // The source at the grid's record, its price and the dose of its box; empty without one.
    QString fonte() const;
    QVariant preco() const;
    QString txtFnt() const;

    QTableView* grade() const { return m_dtGrid; }
    QCheckBox* chkTodas() const { return m_chkTodas; }

Q_SIGNALS:
    // The dose was worked out again; outra when it is for another source than before.
    void fonteMudou(bool outra);

private:
    void aoMudarFonte();
    void ajustaColunas();
    int linhaAtual() const;

    Session& m_session;
    float m_necessidade = 0;
    CursorModel* m_fontes = nullptr;
    qint64 m_linhaFonte = -1; // rowid of the source the dose was worked out for
    QTableView* m_dtGrid = nullptr;
    QCheckBox* m_chkTodas = nullptr;
    QLineEdit* m_txtCalcula = nullptr;
    QLineEdit* m_txtFnt = nullptr;
    QLineEdit* m_txtCusto = nullptr;
};

} // namespace lavra::ui
