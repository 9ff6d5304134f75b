#include "chainwindow.h"

#include "widgets.h"

#include "app/navigation.h"
#include "app/session.h"
#include "app/windownames.h"
#include "desktop.h"
#include "messages.h"
#include "windowregistry.h"

#include <algorithm>

#include <QAction>
#include <QCloseEvent>
#include <QMenuBar>

namespace lavra::ui {

ChainWindow::ChainWindow(Session& session, WindowRegistry& windows, QWidget* parent)
    : QWidget(parent, Qt::Window), m_session(session), m_windows(windows)
{
    enterAcionaPadrao(this);
}

void ChainWindow::closeEvent(QCloseEvent* event)
{
    if (m_session.BloqueiaFechar)
        event->ignore();
    else
        event->accept();
}

void abreFertigrafico(Session& session, WindowRegistry& windows)
{
    // The chart shows the calculation as it stands now, so one left open is drawn afresh.
    session.GrafAvulso = 0;
    ReabreJanela(session, windows, janela::kChart, QStringLiteral("reabre"));
}

QMenuBar* criaMenusCalculo(QWidget* janela, Session& session, WindowRegistry& windows)
{
    auto* menus = new QMenuBar(janela);
    QAction* fert = menus->addAction(QStringLiteral("Fertigráfico"));
    fert->setObjectName(QStringLiteral("mnuFert"));
    QObject::connect(fert, &QAction::triggered, janela, [&session, &windows]() { abreFertigrafico(session, windows); });
    QAction* calc = menus->addAction(QStringLiteral("Calculadora"));
    calc->setObjectName(QStringLiteral("mnuCalc"));
    QObject::connect(calc, &QAction::triggered, janela, []() { abreCalculadora(); });
    return menus;
}

bool leuTabela(const LinhasDoCalculo& linhas, const QString& tabela)
{
    return linhas && std::any_of(linhas->cbegin(), linhas->cend(), [&](const manual::LinhaUsada& u) { return u.tabela == tabela; });
}

QAction* adicionaLinhasUsadas(QMenuBar* menus, QWidget* janela, Session& session, WindowRegistry& windows,
                              std::function<LinhasDoCalculo()> linhas)
{
    QAction* acao = menus->addAction(QStringLiteral("Linhas da tabela usadas"));
    acao->setObjectName(QStringLiteral("mnuLinhasUsadas"));
    QObject::connect(acao, &QAction::triggered, janela, [janela, &session, &windows, linhas = std::move(linhas)]() {
        const LinhasDoCalculo usadas = linhas();
        if (!usadas) {
            informacao(janela, QStringLiteral("Faça o cálculo primeiro: esta opção mostra as linhas das tabelas do "
                                              "manual que o último cálculo leu."));
            return;
        }
        if (usadas->isEmpty()) {
            informacao(janela, QStringLiteral("Este cálculo não lê linhas das tabelas do manual."));
            return;
        }
        session.LinhasUsadas = *usadas;
        if (windows.show(janela::kTabelas))
            Q_EMIT session.eventos.linhasUsadasPedidas();
    });
    return acao;
}

} // namespace lavra::ui
