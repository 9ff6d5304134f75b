#include "nsources.h"

#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "plan/split.h"
#include "store/cursormodel.h"
#include "store/storeerror.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace lavra::ui {

namespace {

// Worked out from the source and the need; the user does not type them.
QLineEdit* caixaNumero(QWidget* parent, const QString& nome)
{
    return caixaSomenteLeitura(parent, nome, QStringLiteral("00000,0000"));
}

} // namespace

EscolhaFonteN::EscolhaFonteN(Session& session, float necessidade, const QString& titulo, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_necessidade(necessidade)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* lblFontes = new QLabel(titulo, this);
    lblFontes->setObjectName(QStringLiteral("lblFontes"));
    m_dtGrid = new QTableView(this);
    m_dtGrid->setObjectName(QStringLiteral("dtGrid"));
    m_dtGrid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_dtGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_dtGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_dtGrid->setAlternatingRowColors(true);
    m_dtGrid->verticalHeader()->hide();
    m_dtGrid->verticalHeader()->setDefaultSectionSize(m_dtGrid->fontMetrics().height() + 8);
    m_dtGrid->horizontalHeader()->setStretchLastSection(true);
    m_dtGrid->setMinimumHeight(170);
    lblFontes->setBuddy(m_dtGrid);
    layout->addWidget(lblFontes);
    layout->addWidget(m_dtGrid, 1);

    auto* abaixo = new QHBoxLayout;
    m_chkTodas = new QCheckBox(QStringLiteral("Exibir todos os fertilizantes cadastrados"), this);
    m_chkTodas->setObjectName(QStringLiteral("chkTodas"));
    abaixo->addWidget(m_chkTodas);
    abaixo->addStretch();
    m_txtFnt = caixaNumero(this, QStringLiteral("txtFnt"));
    m_txtCusto = caixaNumero(this, QStringLiteral("txtCusto"));
    auto* lblFnt = new QLabel(QStringLiteral("Fonte (kg/ha)"), this);
    auto* lblCusto = new QLabel(QStringLiteral("Custo (R$/ha)"), this);
    lblFnt->setBuddy(m_txtFnt);
    lblCusto->setBuddy(m_txtCusto);
    abaixo->addWidget(lblFnt);
    abaixo->addWidget(m_txtFnt);
    abaixo->addSpacing(16);
    abaixo->addWidget(lblCusto);
    abaixo->addWidget(m_txtCusto);
    layout->addLayout(abaixo);

    // Bound to the source's formula, as the grid's current row is: it never shows.
    m_txtCalcula = new QLineEdit(this);
    m_txtCalcula->setObjectName(QStringLiteral("txtCalcula"));
    m_txtCalcula->hide();

    connect(m_chkTodas, &QCheckBox::clicked, this, &EscolhaFonteN::AbreTabelaN);
}

void EscolhaFonteN::AbreTabelaN(bool todas)
{
    CursorModel* novo = nullptr;
    try {
        novo = new CursorModel(m_session.db.strConn, ConsultaFontes(todas), this);
        // The sources and prices the step opened with hold until chkTodas or a reopening, as
        // the rest of the session does.
        novo->setFollowsChanges(false);
    } catch (const StoreError& error) {
        erroBanco(this, error);
        return;
    }
    QItemSelectionModel* selecaoAntiga = m_dtGrid->selectionModel();
    CursorModel* antigo = m_fontes;
    m_fontes = novo;
    m_dtGrid->setModel(novo);
    delete selecaoAntiga;
    delete antigo;

    sincronizaGrade(m_dtGrid, novo, fonte::kNome, [this](const StoreError& error) { erroBanco(this, error); });
    connect(novo, &CursorModel::currentRowChanged, this, &EscolhaFonteN::aoMudarFonte);
    connect(novo, &QAbstractItemModel::modelReset, this, &EscolhaFonteN::ajustaColunas);

    ajustaColunas();
    if (novo->currentRow() >= 0)
        m_dtGrid->setCurrentIndex(novo->index(novo->currentRow(), fonte::kNome));
    aoMudarFonte();
}

void EscolhaFonteN::ajustaColunas()
{
    for (int coluna : { 5, 6 })
        m_dtGrid->setColumnHidden(coluna, true);
    m_dtGrid->resizeColumnsToContents();
    int largura = 2 * m_dtGrid->frameWidth() + m_dtGrid->verticalScrollBar()->sizeHint().width();
    for (int c = 0; c < m_fontes->columnCount(); ++c) {
        m_dtGrid->setColumnWidth(c, std::clamp(m_dtGrid->columnWidth(c) + 12, 56, 240));
        if (!m_dtGrid->isColumnHidden(c))
            largura += m_dtGrid->columnWidth(c);
    }
    // Every column in view, on any screen the program is used on.
    m_dtGrid->setMinimumWidth(std::min(largura, 1000));
}

int EscolhaFonteN::linhaAtual() const
{
    return m_fontes ? m_fontes->currentRow() : -1;
}

void EscolhaFonteN::aoMudarFonte()
{
    const int linha = linhaAtual();
    const qint64 id = linha >= 0 ? m_fontes->cursor().rowIdAt(linha) : -1;
    m_txtCalcula->setText(linha >= 0 ? cellText(m_fontes->value(linha, 0)) : QString());
    const bool outra = id != m_linhaFonte;
    m_linhaFonte = id;
    m_txtFnt->clear();
    m_txtCusto->clear();
    if (linha >= 0) {
        const DoseFonte dose = CalculaDoseFonte(
            m_necessidade, m_fontes->value(linha, fonte::kN), m_fontes->value(linha, fonte::kPreco));
        m_txtFnt->setText(dose.txtFnt);
        m_txtCusto->setText(dose.txtCusto);
    }
    emit fonteMudou(outra);
}

QString EscolhaFonteN::fonte() const
{
    const int linha = linhaAtual();
    return linha >= 0 ? cellText(m_fontes->value(linha, fonte::kNome)) : QString();
}

QVariant EscolhaFonteN::preco() const
{
    const int linha = linhaAtual();
    return linha >= 0 ? m_fontes->value(linha, fonte::kPreco) : QVariant();
}

QString EscolhaFonteN::txtFnt() const
{
    return m_txtFnt->text();
}

} // namespace lavra::ui
