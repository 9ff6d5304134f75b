#include "registerwindow.h"

#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "base/outcome.h"
#include "registers/refusal.h"
#include "store/cursormodel.h"
#include "store/storeerror.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <optional>

namespace lavra::ui {

RegisterWindow::RegisterWindow(Session& session, WindowRegistry& windows, const Config& config)
    : QWidget(nullptr, Qt::Window), m_session(session), m_windows(windows), m_config(config)
{
    setWindowTitle(config.title);
    m_layout = new QVBoxLayout(this);

    std::optional<StoreError> unreadable;
    try {
        m_view = new CursorModel(session.db.strConn, config.statement, this);
    } catch (const StoreError& error) {
        // The window still opens, empty and with nothing to act on, so that the user reads the
        // failure where it happened and the program goes on.
        m_view = new CursorModel(this);
        unreadable = error;
    }
    m_view->setObjectName(QStringLiteral("adoData"));
    m_grid = new QTableView(this);
    m_grid->setObjectName(config.gridName);
    m_grid->setModel(m_view);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setAlternatingRowColors(true);
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 8);
    m_grid->verticalHeader()->hide();
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->setMinimumHeight(180);
    m_layout->addWidget(m_grid, 1);

    sincronizaGrade(m_grid, m_view, 0, [this](const StoreError& error) { showError(error); });
    connect(m_view, &CursorModel::currentRowChanged, this, [this]() { mostraLinha(); });
    connect(m_view, &QAbstractItemModel::modelReset, this, [this]() { ajustaColunas(); });
    connect(m_view, &CursorModel::refreshFailed, this, [this](const StoreError& error) { showError(error); });

    m_form = new QWidget(this);
    m_layout->addWidget(m_form);

    auto* buttons = new QHBoxLayout;
    auto button = [this, buttons](const QString& name, const QString& caption, void (RegisterWindow::*slot)()) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        b->setMinimumWidth(90);
        connect(b, &QPushButton::clicked, this, slot);
        buttons->addWidget(b);
        return b;
    };
    m_novo = button(QStringLiteral("cmdNovo"), QStringLiteral("Novo"), &RegisterWindow::novo);
    m_edita = button(QStringLiteral("cmdEdita"), QStringLiteral("Editar"), &RegisterWindow::edita);
    m_exclui = button(QStringLiteral("cmdExclui"), QStringLiteral("Excluir"), &RegisterWindow::exclui);
    buttons->addStretch();
    QPushButton* confirma = button(QStringLiteral("cmdConfirma"), QStringLiteral("Executar"), &RegisterWindow::executa);
    confirma->setDefault(true);
    QPushButton* cancela = button(QStringLiteral("cmdCancela"), QStringLiteral("Cancela"), &RegisterWindow::cancela);
    button(QStringLiteral("cmdSai"), QStringLiteral("Sair"), &RegisterWindow::sai);
    m_layout->addLayout(buttons);

    ajustaColunas();
    if (unreadable) {
        // Only Sair is left; the register is opened again once the file can be read.
        for (QPushButton* b : {m_novo, m_edita, m_exclui, confirma, cancela})
            b->setEnabled(false);
        showError(*unreadable);
    } else if (m_view->rowCount() > 0) {
        m_view->setCurrentRow(0);
    }
}

QLineEdit* RegisterWindow::addField(const QString& name, int ordinal, int maxLength)
{
    auto* field = new QLineEdit(m_form);
    field->setObjectName(name);
    if (maxLength > 0)
        field->setMaxLength(maxLength);
    m_fields.append({field, ordinal});
    return field;
}

QString RegisterWindow::operacao() const { return m_session.*(m_config.operacao); }
void RegisterWindow::setOperacao(const QString& value) { m_session.*(m_config.operacao) = value; }

void RegisterWindow::habilitaBotoes(bool enabled)
{
    m_novo->setEnabled(enabled);
    m_edita->setEnabled(enabled);
    m_exclui->setEnabled(enabled);
    // While a row is typed in, the grid stays on it, so that the write lands on the row shown.
    const bool entering = !enabled && operacao() != kExclusao;
    m_grid->setEnabled(!entering);
}

void RegisterWindow::LiberaTextos()
{
    for (const auto& [field, ordinal] : m_fields)
        field->setReadOnly(false);
}

void RegisterWindow::BloqueiaTextos()
{
    for (const auto& [field, ordinal] : m_fields)
        field->setReadOnly(true);
}

bool RegisterWindow::VerificaTextos() const
{
    // A field of blanks is as empty as one with nothing.
    for (const auto& [field, ordinal] : m_fields) {
        if (field->text().trimmed().isEmpty())
            return false;
    }
    return true;
}

void RegisterWindow::VinculaTextos()
{
    m_bound = true;
    mostraLinha();
}

void RegisterWindow::DesvinculaTextos() { m_bound = false; }

void RegisterWindow::LimpaTextos()
{
    for (const auto& [field, ordinal] : m_fields)
        field->clear();
}

void RegisterWindow::mostraLinha()
{
    if (!m_bound)
        return;
    const int row = m_view->currentRow();
    for (const auto& [field, ordinal] : m_fields) {
        if (ordinal >= 0)
            field->setText(row >= 0 ? cellText(m_view->value(row, ordinal)) : QString());
    }
}

void RegisterWindow::ajustaColunas()
{
    for (int column : m_config.hiddenColumns)
        m_grid->setColumnHidden(column, true);
    m_grid->resizeColumnsToContents();
    for (int c = 0; c < m_view->columnCount(); ++c)
        m_grid->setColumnWidth(c, std::clamp(m_grid->columnWidth(c) + 12, 70, 320));
}

QString RegisterWindow::textoExclusao() const
{
    const int row = m_view->currentRow();
    return row >= 0 ? cellText(m_view->value(row, 0)) : QString();
}

void RegisterWindow::novo()
{
    setOperacao(kCadastro);
    habilitaBotoes(false);
    DesvinculaTextos();
    LiberaTextos();
    LimpaTextos();
    if (!m_fields.isEmpty())
        m_fields.first().first->setFocus();
    aoNovo();
}

void RegisterWindow::edita()
{
    setOperacao(kEdicao);
    habilitaBotoes(false);
    DesvinculaTextos();
    LiberaTextos();
    aoEditar();
    if (!m_fields.isEmpty())
        m_fields.first().first->setFocus();
}

void RegisterWindow::exclui()
{
    setOperacao(kExclusao);
    habilitaBotoes(false);
}

void RegisterWindow::cancela()
{
    // What was typed and refused is dropped for good: leaving the row later writes nothing.
    m_view->discardEdits();
    setOperacao(QString());
    habilitaBotoes(true);
    BloqueiaTextos();
    VinculaTextos();
}

void RegisterWindow::executa()
{
    // Blanks around a text are never meant, and "Ana " must meet "Ana" in the checks and the table.
    for (const auto& [field, ordinal] : m_fields) {
        if (!field->isReadOnly() && field->text() != field->text().trimmed())
            field->setText(field->text().trimmed());
    }
    if (!VerificaTextos()) {
        mostra(this, Desfecho::aviso(QStringLiteral("Há campos vazios.")));
        for (const auto& [field, ordinal] : m_fields) {
            if (field->text().trimmed().isEmpty()) {
                field->setFocus();
                break;
            }
        }
        return;
    }
    const QString op = operacao();
    if (op.isEmpty()) {
        mostra(this, Desfecho::aviso(QStringLiteral("Nenhuma ação foi especificada.")));
        return;
    }
    try {
        if (!verificacoes())
            return;
        if (op == kCadastro || op == kEdicao) {
            grava();
            BloqueiaTextos();
            VinculaTextos();
            setOperacao(QString());
        } else if (op == kExclusao) {
            if (m_view->currentRow() >= 0
                && mostra(this, Desfecho::pergunta(textoExclusao() + QStringLiteral(" será excluído, confirma?")))) {
                m_view->cursor().deleteCurrent();
                m_view->refresh();
            }
        }
        habilitaBotoes(true);
        aposConfirmar();
    } catch (const StoreError& error) {
        // What was typed stays in the fields, so the user can try again.
        showError(error);
    }
}

void RegisterWindow::grava()
{
    const QVariantList values = valores();
    Cursor& rs = m_view->cursor();
    try {
        Transaction transaction(m_view->connection());
        if (operacao() == kCadastro)
            rs.addNew();
        else if (m_view->currentRow() < 0)
            throw StoreError(QStringLiteral("Nenhum registro selecionado para editar."));
        for (int ordinal = 0; ordinal < values.size(); ++ordinal) {
            if (values[ordinal].isValid())
                rs.setValue(ordinal, values[ordinal]);
        }
        rs.update();
        transaction.commit();
    } catch (const StoreError&) {
        // The cursor would write the refused row when it leaves it: drop it, and show the table
        // as the file has it when the file can be read. The caller tells the failure, once.
        m_view->discardEdits();
        throw;
    }
    // Written: a grid that cannot be read again just now keeps its rows, the new one among them.
    m_view->tryRefresh();
}

void RegisterWindow::showError(const StoreError& error) { erroBanco(this, error); }

} // namespace lavra::ui
