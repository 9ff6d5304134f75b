#include "frmgraficos.h"

#include "app/navigation.h"
#include "app/session.h"
#include "app/windownames.h"
#include "charts/choice.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>

namespace lavra::ui {

FrmGraficos::FrmGraficos(Session& session, WindowRegistry& windows, QWidget* parent)
    : QMainWindow(parent), m_session(session), m_windows(windows)
{
    setWindowTitle(QStringLiteral("Análise Gráfica"));
    m_area = new QMdiArea(this);
    m_area->setObjectName(QStringLiteral("areaGraficos"));
    m_area->setBackground(palette().window());
    setCentralWidget(m_area);

    const struct {
        const char* nome;
        const char* legenda;
        const QString& modo;
    } menus[] = {
        {"ferti", "Fertigráfico", kModoFertigrafico},
        {"ocupactc", "Ocupação da CTC", kModoOcupaCTC},
        {"evolferti", "Evolução da fertilidade", kModoEvolFert},
    };
    for (const auto& m : menus) {
        QAction* acao = menuBar()->addAction(QString::fromUtf8(m.legenda));
        acao->setObjectName(QString::fromLatin1(m.nome));
        const QString modo = m.modo;
        connect(acao, &QAction::triggered, this, [this, modo]() { Abre_ChamaGraf(m_session, m_windows, modo); });
    }
    QAction* custo = menuBar()->addAction(QStringLiteral("Composição do custo"));
    custo->setObjectName(QStringLiteral("custofert"));
    connect(custo, &QAction::triggered, this, [this]() {
        FechaJanela(m_session, m_windows, janela::kChamaGrafCusto);
        FechaJanela(m_session, m_windows, janela::kChamaGraf);
        m_windows.show(janela::kChamaGrafCusto);
    });
    resize(menuBar()->sizeHint().width() + 300, 420);
}

QMdiSubWindow* FrmGraficos::subjanela(QWidget* janela) const
{
    return janela ? qobject_cast<QMdiSubWindow*>(janela->parentWidget()) : nullptr;
}

void FrmGraficos::acolhe(QWidget* janela)
{
    QMdiSubWindow* sub = m_area->addSubWindow(janela);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowIcon(windowIcon());
    // A window that hides or goes takes its place in the frame with it.
    janela->installEventFilter(this);
    QPointer<QMdiSubWindow> guarda(sub);
    connect(janela, &QObject::destroyed, this, [guarda]() {
        if (guarda)
            guarda->deleteLater();
    });
}

void FrmGraficos::ativa(QWidget* janela)
{
    QMdiSubWindow* sub = subjanela(janela);
    if (!sub)
        return;
    janela->show();
    sub->show();
    sub->adjustSize();
    sub->move(0, 0);
    m_area->setActiveSubWindow(sub);
    // The keyboard goes to the window in front: to its first field when it takes none itself.
    if (janela->focusPolicy() != Qt::NoFocus) {
        janela->setFocus();
    } else if (!janela->isAncestorOf(QApplication::focusWidget())) {
        for (QWidget* w = janela->nextInFocusChain(); w && w != janela; w = w->nextInFocusChain()) {
            if (janela->isAncestorOf(w) && w->isVisible() && w->isEnabled() && (w->focusPolicy() & Qt::TabFocus)) {
                w->setFocus(Qt::TabFocusReason);
                break;
            }
        }
    }

    // The frame fits the window in front, as far as the screen allows.
    showNormal();
    QSize tamanho = sub->size() + QSize(0, menuBar()->sizeHint().height());
    tamanho = tamanho.expandedTo(QSize(menuBar()->sizeHint().width(), 0));
    const QRect livre = screen() ? screen()->availableGeometry() : QRect();
    if (livre.isValid())
        tamanho = tamanho.boundedTo(livre.size() - QSize(40, 80));
    resize(tamanho);
    if (!m_posta) {
        m_posta = true;
        centraliza(this);
    } else if (livre.isValid() && !livre.contains(frameGeometry())) {
        // Grown past the edge of the screen: moved back in, whole.
        QRect dentro = frameGeometry();
        dentro.moveRight(std::min(dentro.right(), livre.right()));
        dentro.moveBottom(std::min(dentro.bottom(), livre.bottom()));
        dentro.moveLeft(std::max(dentro.left(), livre.left()));
        dentro.moveTop(std::max(dentro.top(), livre.top()));
        move(dentro.topLeft());
    }
    raise();
    activateWindow();
}

bool FrmGraficos::eventFilter(QObject* objeto, QEvent* evento)
{
    auto* janela = qobject_cast<QWidget*>(objeto);
    if (QMdiSubWindow* sub = subjanela(janela)) {
        if (evento->type() == QEvent::HideToParent)
            sub->hide();
        else if (evento->type() == QEvent::WindowTitleChange)
            sub->setWindowTitle(janela->windowTitle());
    }
    return QMainWindow::eventFilter(objeto, evento);
}

void FrmGraficos::closeEvent(QCloseEvent* event)
{
    // The frame goes with all its charts; none of them reopens another on the way out.
    m_session.CTCDoFertigrafico = false;
    m_area->closeAllSubWindows();
    event->accept();
}

} // namespace lavra::ui
