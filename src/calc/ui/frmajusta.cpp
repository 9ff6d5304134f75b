#include "app/events.h"
#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/chainwindow.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "calc/cropstep.h"
#include "windows.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QSvgWidget>
#include <QVBoxLayout>

#include <array>

namespace lavra::ui {

namespace {

// The user's own figures in place of the four computed ones, at the price of a note on the
// report. It writes into the result boxes of the crop window of NomeGrupo, so that its
// "Prosseguir" carries them on; it always opens afresh and closes itself after use.
class FrmAjusta final : public QWidget {
public:
    FrmAjusta(Session& session, WindowRegistry& windows)
        : QWidget(nullptr, Qt::Window)
        , m_session(session)
        , m_windows(windows)
    {
        // The title was taken from another window and stays so.
        setWindowTitle(QStringLiteral("Interpretação de MO, P e K no Solo"));
        auto* layout = new QVBoxLayout(this);
        layout->setMenuBar(criaMenusCalculo(this, session, windows));

        auto* corpo = new QHBoxLayout;
        auto* image1 = new QSvgWidget(QStringLiteral(":/art/lavra.svg"), this);
        image1->setObjectName(QStringLiteral("Image1"));
        image1->setFixedSize(96, 96);
        corpo->addWidget(image1, 0, Qt::AlignTop);

        auto* frame = new QGroupBox(QStringLiteral("Ajuste NPK"), this);
        auto* grade = new QGridLayout(frame);
        grade->addWidget(new QLabel(QStringLiteral("Indicado"), frame), 0, 1, Qt::AlignCenter);
        grade->addWidget(new QLabel(QStringLiteral("Ajustado"), frame), 0, 2, Qt::AlignCenter);
        const std::array<QString, 4> linhas = { QStringLiteral("N Base"), QStringLiteral("P Base"),
            QStringLiteral("K Base"), QStringLiteral("N Cob") };
        const std::array<const char*, 4> nomes = { "txtNB", "txtPB", "txtKB", "txtNC" };
        const int largura = fontMetrics().horizontalAdvance(QStringLiteral("Consultar MAC")) + 16;
        // The adjusted boxes are built first, so that the tab chain runs through them alone.
        for (std::size_t i = 0; i < linhas.size(); ++i) {
            m_ajustado[i] = new QLineEdit(frame);
            m_ajustado[i]->setObjectName(QString::fromLatin1(nomes[i]) + QStringLiteral("2"));
            m_ajustado[i]->setFixedWidth(largura);
        }
        for (std::size_t i = 0; i < linhas.size(); ++i) {
            const int linha = static_cast<int>(i) + 1;
            auto* indicado = caixaSomenteLeitura(frame, QString::fromLatin1(nomes[i]));
            indicado->setText(variantNumberText(session.Nec[i]));
            indicado->setFixedWidth(largura);
            auto* rotulo = new QLabel(linhas[i], frame);
            rotulo->setBuddy(m_ajustado[i]);
            grade->addWidget(rotulo, linha, 0);
            grade->addWidget(indicado, linha, 1);
            grade->addWidget(m_ajustado[i], linha, 2);
        }
        corpo->addWidget(frame, 1);
        layout->addLayout(corpo);
        layout->addStretch();

        const auto botoes = adicionaBotoes(layout, this,
            { { QStringLiteral("cmdAplica"), QStringLiteral("Aplicar") },
                { QStringLiteral("cmdCancela"), QStringLiteral("Fechar") } });
        connect(botoes[0], &QPushButton::clicked, this, &FrmAjusta::aplica);
        connect(botoes[1], &QPushButton::clicked, this, &QWidget::close);
    }

private:
    void aplica()
    {
        QStringList ajustados;
        for (QLineEdit* caixa : m_ajustado) {
            if (caixa->text() != caixa->text().trimmed())
                caixa->setText(caixa->text().trimmed());
            ajustados << caixa->text();
        }
        QStringList campos;
        for (const QLineEdit* caixa : m_ajustado)
            campos << caixa->objectName();
        if (const Parada recusa = VerificaAjuste(ajustados, campos)) {
            ui::mostra(this, *recusa);
            return;
        }
        // The plan reads these figures: one with a thousands separator, or one no crop needs, is refused.
        const std::array<Grandeza, 4> grandezas
            = { Grandeza::NecNBase, Grandeza::NecPBase, Grandeza::NecKBase, Grandeza::NecNCob };
        for (std::size_t i = 0; i < m_ajustado.size(); ++i) {
            if (const auto recusa = RecusaValor(grandezas[i], m_ajustado[i]->text())) {
                ui::mostra(this, Desfecho::aviso(*recusa, m_ajustado[i]->objectName()));
                return;
            }
        }
        if (!confirma(this, perguntaAjuste()))
            return;
        AplicaAjuste(m_session);
        const QString destino = janelaAjustada(m_session.NomeGrupo);
        if (!destino.isEmpty())
            emit m_session.eventos.necessidadeAjustada(destino, ajustados);
        close();
    }

    Session& m_session;
    WindowRegistry& m_windows;
    std::array<QLineEdit*, 4> m_ajustado {};
};

} // namespace

QWidget* criaFrmAjusta(Session& session, WindowRegistry& windows)
{
    return new FrmAjusta(session, windows);
}

} // namespace lavra::ui
