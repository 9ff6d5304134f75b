#include "frmobslaudo.h"

#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "report/saved.h"
#include "report/ui/windows.h"
#include "store/storeerror.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QVBoxLayout>

#include <algorithm>

namespace lavra::ui {

FrmObsLaudo::FrmObsLaudo(Session& session, WindowRegistry& windows, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::WindowStaysOnTopHint), m_session(session), m_windows(windows)
{
    setObjectName(janela::kObsLaudo);
    setWindowTitle(QStringLiteral("Observações"));
    auto* layout = new QVBoxLayout(this);
    // A new signing technician reaches the open report through here.
    connect(&m_session.eventos, &Eventos::tecnicoAssinanteMudou, this, [this]() {
        if (isVisible())
            RecarregaLaudo();
    });

    auto* lblUso = new QLabel(QStringLiteral("Use o campo abaixo para acrescentar informações ao laudo. As informações "
                                             "serão inseridas no campo orientações do técnico."),
                              this);
    lblUso->setObjectName(QStringLiteral("Label1"));
    lblUso->setWordWrap(true);
    auto* lblMaximo = new QLabel(QStringLiteral("Máximo 255 caracteres minúsculos"), this);
    lblMaximo->setObjectName(QStringLiteral("Label2"));
    m_txtInfo = new QPlainTextEdit(this);
    m_txtInfo->setObjectName(QStringLiteral("txtInfo"));
    m_txtInfo->setTabChangesFocus(true);
    // Room for the whole of what the report's box holds.
    m_txtInfo->setMinimumHeight(m_txtInfo->fontMetrics().lineSpacing() * 6);
    lblMaximo->setBuddy(m_txtInfo);
    layout->addWidget(lblUso);
    layout->addWidget(lblMaximo);
    layout->addWidget(m_txtInfo, 1);

    auto* rodape = new QHBoxLayout;
    m_lblDigit = new QLabel(QStringLiteral("Digitados:"), this);
    m_lblDigit->setObjectName(QStringLiteral("lblDigit"));
    // Wide enough for the largest count, so that the buttons do not shift while typing.
    m_lblDigit->setMinimumWidth(m_lblDigit->fontMetrics().horizontalAdvance(QStringLiteral("Digitados: 255")) + 8);
    auto* cmdMudaTec = new QPushButton(QStringLiteral("Mudar téc. respons."), this);
    cmdMudaTec->setObjectName(QStringLiteral("cmdMudaTec"));
    auto* cmdInsere = new QPushButton(QStringLiteral("Inserir informações"), this);
    cmdInsere->setObjectName(QStringLiteral("cmdInsere"));
    rodape->addWidget(m_lblDigit);
    rodape->addStretch();
    for (QPushButton* botao : {cmdMudaTec, cmdInsere}) {
        botao->setMinimumWidth(std::max(130, botao->sizeHint().width()));
        rodape->addWidget(botao);
    }
    layout->addLayout(rodape);
    setTabOrder(m_txtInfo, cmdInsere);
    setTabOrder(cmdInsere, cmdMudaTec);

    connect(m_txtInfo, &QPlainTextEdit::textChanged, this, &FrmObsLaudo::textoMudou);
    connect(cmdInsere, &QPushButton::clicked, this, &FrmObsLaudo::insere);
    connect(cmdMudaTec, &QPushButton::clicked, this,
            [this]() { m_windows.show(janela::kTecResp); });
    resize(460, sizeHint().height());
}

void FrmObsLaudo::textoMudou()
{
    const QString texto = m_txtInfo->toPlainText();
    if (texto.size() > kMaxInfo) {
        // Like a box with a length limit: what was just typed or pasted past the limit is dropped.
        const int excesso = static_cast<int>(texto.size()) - kMaxInfo;
        QTextCursor cursor = m_txtInfo->textCursor();
        const int fim = cursor.position();
        if (fim >= excesso) {
            cursor.setPosition(fim - excesso);
            cursor.setPosition(fim, QTextCursor::KeepAnchor);
        } else {
            cursor.setPosition(kMaxInfo);
            cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        }
        // Comes back here with the text within the limit.
        cursor.removeSelectedText();
        return;
    }
    m_lblDigit->setText(QStringLiteral("Digitados: ") + QString::number(texto.size()));
    m_lblDigit->repaint();
}

void FrmObsLaudo::insere()
{
    // An empty box leaves the stored orientations alone; they can't be blanked from here.
    if (!m_txtInfo->toPlainText().isEmpty())
        RecarregaLaudo();
}

void FrmObsLaudo::RecarregaLaudo()
{
    const auto tipo = report::tipoPorTexto(m_session.TipoLaudo);
    if (!tipo)
        return;
    try {
        report::GravaInfo(m_session.db, *tipo, m_session.LaudoAnalise, m_session.LaudoCultivo,
                          m_txtInfo->toPlainText());
    } catch (const StoreError& error) {
        erroBanco(this, error);
        return;
    }
    // The report reads only the saved row and the present technician, so a fresh one shows both.
    const QString janela = report::definicao(*tipo).janela;
    m_windows.closeWindow(janela);
    m_windows.show(janela);
}

QWidget* criaFrmObsLaudo(Session& session, WindowRegistry& windows) { return new FrmObsLaudo(session, windows); }

} // namespace lavra::ui
