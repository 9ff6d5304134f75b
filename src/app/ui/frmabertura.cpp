#include "frmabertura.h"

#include "app/windownames.h"

#include <QLabel>
#include <QSvgWidget>
#include <QVBoxLayout>

namespace lavra::ui {

FrmAbertura::FrmAbertura(QWidget* parent) : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(janela::kAbertura);
    setAttribute(Qt::WA_DeleteOnClose);
    setStyleSheet(QStringLiteral("#frmAbertura { background: #fbfaf3; border: 2px solid #3f7a2a; }"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 16);
    layout->setSpacing(4);

    auto* picture = new QSvgWidget(QStringLiteral(":/art/lavra.svg"), this);
    picture->setFixedSize(640, 240);
    layout->addWidget(picture);

    auto addLabel = [this, layout](const QString& name, const QString& text, int points, bool bold,
                                   const QString& colour) {
        auto* label = new QLabel(text, this);
        label->setObjectName(name);
        QFont font = label->font();
        font.setPointSize(points);
        font.setBold(bold);
        label->setFont(font);
        label->setAlignment(Qt::AlignCenter);
        label->setStyleSheet(QStringLiteral("color: %1;").arg(colour));
        layout->addWidget(label);
    };
    addLabel(QStringLiteral("lblTitulo"), QStringLiteral("LAVRA 2.1"), 30, true, QStringLiteral("#2f6420"));
    addLabel(QStringLiteral("lblSubtitulo"), QStringLiteral("Calagem e adubação"), 15, false, QStringLiteral("#6b3a1f"));
    addLabel(QStringLiteral("lblCredito1"),
             QStringLiteral("Recomendação de calagem e adubação para o Rio Grande do Sul e Santa Catarina"), 10,
             false, QStringLiteral("#444444"));
    addLabel(QStringLiteral("lblCredito2"), QStringLiteral("Carregando…"), 9, false, QStringLiteral("#777777"));

    m_timer.setObjectName(QStringLiteral("Timer1"));
    m_timer.setInterval(5000);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this]() {
        Q_EMIT terminou();
        close();
    });
    m_timer.start();
    adjustSize();
}

} // namespace lavra::ui
