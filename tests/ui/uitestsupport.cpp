#include "uitestsupport.h"

#include "app/ui/chainwindow.h"
#include "registers/refusal.h"
#include "store/databasefile.h"
#include "store/storeerror.h"

#include <QAbstractButton>
#include <QApplication>
#include <QListWidget>
#include <QSqlError>
#include <QSqlQuery>
#include <QTableView>

namespace lavra::test {

UiHarness::UiHarness() : m_path(m_dir.filePath(QStringLiteral("Lavra.db")))
{
    ui::setResponder([this](const ui::Mensagem& m) {
        boxes << m;
        if (!m.botoes.testFlag(QMessageBox::Yes))
            return QMessageBox::Ok;
        return answers.isEmpty() ? QMessageBox::Yes : answers.takeFirst();
    });
    ui::setRespondedorEntrada([this](const QString& titulo, const QString& pergunta) {
        prompts << titulo + QLatin1String(": ") + pergunta;
        if (!inputs.isEmpty())
            return inputs.takeFirst();
        // A box that cannot be left without a number would ask for ever.
        qWarning() << "unanswered input box:" << pergunta;
        return QStringLiteral("1");
    });
    m_app = std::make_unique<ui::Aplicacao>(m_path);
}

UiHarness::~UiHarness()
{
    m_app.reset();
    ui::setResponder({});
    ui::setRespondedorEntrada({});
}

CamposAnalise analiseDeExemplo()
{
    CamposAnalise c;
    c.cliente = QStringLiteral("Ana Prado");
    c.local = QStringLiteral("Erechim");
    c.fazenda = QStringLiteral("Santa Rita");
    c.gleba = QStringLiteral("Coxilha");
    c.data = QStringLiteral("15/08/2026");
    c.area = QStringLiteral("10");
    c.numAnalise = QStringLiteral("1234");
    c.pH = QStringLiteral("5,2");
    c.ca = QStringLiteral("3");
    c.mg = QStringLiteral("1,2");
    c.al = QStringLiteral("0,4");
    c.hAl = QStringLiteral("4,5");
    c.smp = QStringLiteral("5,6");
    c.mo = QStringLiteral("3");
    c.argila = QStringLiteral("45");
    c.p = QStringLiteral("8");
    c.k = QStringLiteral("90");
    c.mehlich = true;
    return c;
}

void cadastraAnalise(UiHarness& h, CamposAnalise c)
{
    const auto ctc = CalculaCTC(c.ca, c.mg, c.hAl, c.k);
    QVERIFY(ctc);
    c.ctc = ctc->ctc;
    c.bases = ctc->bases;
    EntradaCadastro entrada{c, kCadastro, {}};
    ResultadoCadastro r = CadastraAnalise(h.session().db, entrada);
    while (r.desfecho && r.desfecho->tipo == TipoDesfecho::Pergunta) {
        entrada.resposta = Resposta::Sim;
        r = CadastraAnalise(h.session().db, entrada);
    }
    QVERIFY2(!r.desfecho, r.desfecho ? qPrintable(r.desfecho->texto) : "");
}

QWidget* UiHarness::open(const QString& name)
{
    QWidget* window = windows().show(name);
    if (!window)
        qWarning() << "window not registered:" << name;
    return window;
}

QStringList UiHarness::texts() const
{
    QStringList list;
    for (const ui::Mensagem& m : boxes)
        list << m.texto;
    return list;
}

QVariant UiHarness::scalar(const QString& sql) const
{
    auto file = DatabaseFile::acquire(m_path);
    QSqlQuery query(file->database());
    if (!query.exec(sql) || !query.next())
        throw StoreError(engineMessage(query.lastError()));
    return query.value(0);
}

void UiHarness::exec(const QString& sql) const
{
    DatabaseFile::acquire(m_path)->run(sql);
}

void type(QWidget* window, const QString& field, const QString& text)
{
    auto* edit = find<QLineEdit>(window, field);
    if (!edit)
        return;
    edit->setFocus();
    edit->setText(text);
    Q_EMIT edit->textEdited(text);
    Q_EMIT edit->editingFinished();
}

void click(QWidget* window, const QString& button)
{
    if (auto* b = find<QAbstractButton>(window, button))
        b->click();
}

void selectRow(QWidget* window, const QString& grid, int row)
{
    auto* view = find<QTableView>(window, grid);
    view->setCurrentIndex(view->model()->index(row, 0));
}

void focusByTab(QWidget* window, const QString& control)
{
    QWidget* widget = find<QWidget>(window, control);
    QFocusEvent event(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(widget, &event);
}

void fill(QWidget* window, const QList<std::pair<QString, QString>>& fields)
{
    for (const auto& [field, value] : fields)
        type(window, field, value);
}

QString text(QWidget* window, const QString& field)
{
    auto* edit = find<QLineEdit>(window, field);
    return edit ? edit->text() : QString();
}

QStringList texts(QWidget* window, const QStringList& fields)
{
    QStringList list;
    for (const QString& field : fields)
        list << text(window, field);
    return list;
}

void choose(QWidget* window, const QString& list, int row)
{
    if (auto* widget = find<QListWidget>(window, list))
        widget->setCurrentRow(row);
}

QWidget* openStandIn(UiHarness& h, const QString& name)
{
    auto* window = new ui::ChainWindow(h.session(), h.windows());
    window->setObjectName(name);
    window->setAttribute(Qt::WA_DeleteOnClose);
    h.windows().track(window);
    window->show();
    return window;
}

} // namespace lavra::test
