#include "chartwindow.h"

#include "app/ui/dialogs.h"
#include "app/ui/messages.h"
#include "base/outcome.h"
#include "chartview.h"

#include <QAction>
#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QClipboard>
#include <QDir>
#include <QMenuBar>
#include <QPrinter>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

const QString kMsgCopiado =
    QStringLiteral("Gráfico copiado.\n\nNo documento que você for colar o gráfico, selecione a opção \"Colar especial\" e "
                   "escolha um formato de imagem.");

} // namespace

JanelaGrafico::JanelaGrafico(Session& session, WindowRegistry& windows, const QString& titulo, QWidget* parent)
    : QWidget(parent, Qt::Window), m_session(session), m_windows(windows)
{
    setWindowTitle(titulo);
    // Takes the focus as it comes to the front, so that its keys (Ctrl+P, Ctrl+C, Ctrl+S) answer.
    setFocusPolicy(Qt::StrongFocus);
    m_layout = new QVBoxLayout(this);
    m_menus = new QMenuBar(this);
    m_layout->setMenuBar(m_menus);
}

QChartView* JanelaGrafico::poeGrafico(QChart* grafico, const QString& nome, ImpressaoGrafico impressao)
{
    m_vista = criaVista(grafico, this, nome);
    m_impressao = std::move(impressao);
    return m_vista;
}

QAction* JanelaGrafico::adicionaMenu(const QString& nome, const QString& legenda)
{
    QAction* acao = m_menus->addAction(legenda);
    acao->setObjectName(nome);
    // The menus answer their keys while the chart window is the one in use.
    addAction(acao);
    acao->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    return acao;
}

QAction* JanelaGrafico::adicionaImprimir(const QString& nome)
{
    QAction* acao = adicionaMenu(nome, QStringLiteral("Imprimir"));
    acao->setShortcut(QKeySequence::Print);
    connect(acao, &QAction::triggered, this, &JanelaGrafico::imprime);
    return acao;
}

void JanelaGrafico::adicionaCopiarESalvar()
{
    QAction* copiar = adicionaMenu(QStringLiteral("copy"), QStringLiteral("Copiar"));
    copiar->setShortcut(QKeySequence::Copy);
    connect(copiar, &QAction::triggered, this, &JanelaGrafico::copia);
    QAction* salvar = adicionaMenu(QStringLiteral("salvar"), QStringLiteral("Salvar"));
    salvar->setShortcut(QKeySequence::Save);
    connect(salvar, &QAction::triggered, this, &JanelaGrafico::salva);
}

void JanelaGrafico::imprime()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setDocName(windowTitle());
    // A cancelled dialog ends the printing without a word.
    if (!escolheImpressora(this, printer))
        return;
    const int pedidas = std::max(1, printer.copyCount());
    if (imprimeGrafico(printer, m_impressao, m_vista) < pedidas)
        mostra(this, Desfecho::aviso(QStringLiteral("Não foi possível imprimir o gráfico na impressora escolhida.")));
}

void JanelaGrafico::copia()
{
    QApplication::clipboard()->clear();
    QApplication::clipboard()->setImage(m_vista->grab().toImage());
    mostra(this, Desfecho::simples(kMsgCopiado));
}

void JanelaGrafico::salva()
{
    const QString inicial = QDir(pastaInicial(true)).filePath(nomeDeArquivo(m_vista->chart()->title()));
    QString filtro;
    const QString caminho =
        arquivoParaSalvar(this, QStringLiteral("Salvar Gráfico"), inicial, filtroFormatos(), &filtro);
    if (caminho.trimmed().isEmpty())
        return;
    if (salvaGrafico(m_vista, caminho, filtro).isEmpty())
        mostra(this, Desfecho::aviso(QStringLiteral("Não foi possível gravar o arquivo ") +
                                     QDir::toNativeSeparators(caminho.trimmed()) + QLatin1Char('.')));
}

} // namespace lavra::ui
