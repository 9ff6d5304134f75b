#pragma once

#include "app/ui/application.h"
#include "app/ui/messages.h"
#include "registers/analysis.h"

#include <QLineEdit>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace lavra::test {

// A running program on a scratch database, with every message box answered here: Yes/No boxes
// take the next queued answer (Yes when none is queued), the others OK.
class UiHarness {
public:
    UiHarness();
    ~UiHarness();

    ui::Aplicacao& app() { return *m_app; }
    Session& session() { return m_app->session(); }
    ui::WindowRegistry& windows() { return m_app->windows(); }
    QString databasePath() const { return m_path; }

    // Opens a window by name as its command would, and returns it.
    QWidget* open(const QString& name);

    QList<ui::Mensagem> boxes;
    // Input boxes take the next queued answer; the prompts asked are kept in order.
    QStringList inputs;
    QStringList prompts;
    QList<QMessageBox::StandardButton> answers;
    QStringList texts() const;
    void clearBoxes() { boxes.clear(); }

    // Runs a statement straight on the file; returns the first column of the first row.
    QVariant scalar(const QString& sql) const;
    void exec(const QString& sql) const;

private:
    QTemporaryDir m_dir;
    QString m_path;
    std::unique_ptr<ui::Aplicacao> m_app;
};

template <typename T>
T* find(QWidget* window, const QString& name)
{
    T* found = window ? window->findChild<T*>(name) : nullptr;
    if (!found)
        qWarning() << "control not found:" << name;
    return found;
}

// The analysis of the end-to-end runs: Ana Prado, Santa Rita/Coxilha/15/08/2026, 10 ha, pH 5,2,
// P 8 (Mehlich), K 90, typed under a comma locale.
CamposAnalise analiseDeExemplo();
// Registers an analysis as the register would, CTC and saturation worked out, Yes to its question.
void cadastraAnalise(UiHarness& h, CamposAnalise campos);

// Types a text into a field and leaves it, as a user would with Tab.
void type(QWidget* window, const QString& field, const QString& text);
// Clicks a button by name.
void click(QWidget* window, const QString& button);
// Makes a row of a grid its current row, as a click on it would.
void selectRow(QWidget* window, const QString& grid, int row);
// Gives a control the focus as Tab would, without the window having to be active.
void focusByTab(QWidget* window, const QString& control);
// Types each (field, text) pair in turn.
void fill(QWidget* window, const QList<std::pair<QString, QString>>& fields);
// The text of a field, and of several fields in turn.
QString text(QWidget* window, const QString& field);
QStringList texts(QWidget* window, const QStringList& fields);
// Makes a row of a list current, as a click on it would.
void choose(QWidget* window, const QString& list, int row);
// A plain step of the chain, open under a name, standing in for the real one.
QWidget* openStandIn(UiHarness& h, const QString& name);

} // namespace lavra::test
