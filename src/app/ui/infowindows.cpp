#include "infowindows.h"

#include "buttons.h"
#include "app/session.h"
#include "links.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSvgWidget>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// A "Fechar" button at the bottom right.
void adicionaFechar(QWidget* window, QVBoxLayout* layout, const QString& name)
{
    QPushButton* fechar = adicionaBotoes(layout, window, {{name, QStringLiteral("Fechar")}}).first();
    QObject::connect(fechar, &QPushButton::clicked, window, &QWidget::close);
}

} // namespace

QWidget* criaFrmSobre(Session& session, WindowRegistry&)
{
    auto* window = new QWidget(nullptr, Qt::Dialog);
    window->setWindowTitle(QStringLiteral("Sobre o Lavra"));
    auto* layout = new QVBoxLayout(window);

    auto* top = new QHBoxLayout;
    auto* icon = new QSvgWidget(QStringLiteral(":/art/lavra-icon.svg"), window);
    icon->setFixedSize(72, 72);
    top->addWidget(icon, 0, Qt::AlignTop);
    auto* text = new QLabel(window);
    text->setObjectName(QStringLiteral("lblSobre"));
    text->setTextFormat(Qt::RichText);
    text->setWordWrap(true);
    text->setText(QStringLiteral(
        "<h2 style='color:#2f6420'>LAVRA 2.1</h2>"
        "<p><b>Calagem e adubação</b> — versão 2.1</p>"
        "<p>Programa para o cálculo de recomendações de calagem e adubação a partir da análise de solo, "
        "seguindo o Manual de Adubação e de Calagem para os Estados do Rio Grande do Sul e Santa "
        "Catarina. Interpreta as análises, calcula a necessidade de corretivo e de nitrogênio, fósforo "
        "e potássio de cada cultura, transforma-a em produtos comerciais com seus custos e emite o laudo "
        "de recomendação.</p>"));
    top->addWidget(text, 1);
    layout->addLayout(top);

    // Where the data is, for a copy or for support: it differs between a portable and an
    // installed program.
    auto* banco = new QLabel(QStringLiteral("Banco de dados em uso: %1")
                                 .arg(QDir::toNativeSeparators(QFileInfo(session.db.strConn).absoluteFilePath())),
                             window);
    banco->setObjectName(QStringLiteral("lblBanco"));
    banco->setWordWrap(true);
    banco->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(banco);

    adicionaFechar(window, layout, QStringLiteral("Command1"));
    window->resize(460, 260);
    return window;
}

QWidget* criaFrmContatos()
{
    auto* window = new QWidget(nullptr, Qt::Dialog);
    window->setWindowTitle(QStringLiteral("Contatos"));
    auto* layout = new QVBoxLayout(window);
    auto* text = new QPlainTextEdit(window);
    text->setObjectName(QStringLiteral("txtContatos"));
    text->setReadOnly(true);
    text->setPlainText(QStringLiteral("LAVRA 2.1 - Calagem e adubação\n\n"
                                      "Página na internet: %1\n"
                                      "Atualizações: %2\n"
                                      "E-mail: %3\n\n"
                                      "Envie suas dúvidas, sugestões e relatos de erro pelo e-mail acima, "
                                      "informando a versão do programa.")
                           .arg(kPaginaPrincipal, kPaginaAtualizacao, kEmailContato));
    layout->addWidget(text);
    adicionaFechar(window, layout, QStringLiteral("cmdFechar"));
    window->resize(440, 220);
    return window;
}

} // namespace lavra::ui
