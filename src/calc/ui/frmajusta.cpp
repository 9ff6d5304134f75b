#include "app/events.h"
#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/chainwindow.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "calc/cropstep.h"
#include "calc/forest.h"
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

// The user's own figures in place of the computed ones, at the price of a note on the report.
// It writes into the result boxes of the crop window, so that its "Prosseguir" carries them on;
// it always opens afresh and closes itself after use. The four figures of most groups and the
// nine of the forest group differ only in their boxes.
class JanelaAjuste : public QWidget {
public:
    JanelaAjuste(Session& session, WindowRegistry& windows)
        : QWidget(nullptr, Qt::Window)
        , m_session(session)
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
        m_frame = new QGroupBox(QStringLiteral("Ajuste NPK"), this);
        m_grade = new QGridLayout(m_frame);
        corpo->addWidget(m_frame, 1);
        layout->addLayout(corpo);
        layout->addStretch();

        const auto botoes = adicionaBotoes(layout, this,
            { { QStringLiteral("cmdAplica"), QStringLiteral("Aplicar") },
                { QStringLiteral("cmdCancela"), QStringLiteral("Fechar") } });
        connect(botoes[0], &QPushButton::clicked, this, &JanelaAjuste::aplica);
        connect(botoes[1], &QPushButton::clicked, this, &QWidget::close);
    }

protected:
    // A box the user fills, empty at first; built before the boxes shown for reading, so that
    // the tab chain runs through the adjusted boxes alone.
    QLineEdit* caixaAjustada(const QString& nome, Grandeza grandeza, int largura)
    {
        auto* caixa = new QLineEdit(m_frame);
        caixa->setObjectName(nome);
        caixa->setFixedWidth(largura);
        m_ajustados << Ajustado { caixa, grandeza };
        return caixa;
    }

    QLineEdit* caixaIndicada(const QString& nome, const QVariant& valor, int largura)
    {
        auto* caixa = caixaSomenteLeitura(m_frame, nome);
        caixa->setText(variantNumberText(valor));
        caixa->setFixedWidth(largura);
        return caixa;
    }

    // The crop window that takes the figures; empty where none does.
    virtual QString destino() const = 0;

    Session& m_session;
    QGroupBox* m_frame = nullptr;
    QGridLayout* m_grade = nullptr;

private:
    void aplica()
    {
        QStringList ajustados;
        QStringList campos;
        for (const Ajustado& a : std::as_const(m_ajustados)) {
            if (a.caixa->text() != a.caixa->text().trimmed())
                a.caixa->setText(a.caixa->text().trimmed());
            ajustados << a.caixa->text();
            campos << a.caixa->objectName();
        }
        if (const Parada recusa = VerificaAjuste(ajustados, campos)) {
            ui::mostra(this, *recusa);
            return;
        }
        // The plan reads these figures: one with a thousands separator, or one no crop needs, is refused.
        for (const Ajustado& a : std::as_const(m_ajustados)) {
            if (const auto recusa = RecusaValor(a.grandeza, a.caixa->text())) {
                ui::mostra(this, Desfecho::aviso(*recusa, a.caixa->objectName()));
                return;
            }
        }
        if (!confirma(this, perguntaAjuste()))
            return;
        AplicaAjuste(m_session);
        const QString janela = destino();
        if (!janela.isEmpty())
            emit m_session.eventos.necessidadeAjustada(janela, ajustados);
        close();
    }

    struct Ajustado {
        QLineEdit* caixa;
        Grandeza grandeza;
    };
    QList<Ajustado> m_ajustados;
};

// The four figures, "Indicado" from Nec, sent to the crop window of NomeGrupo.
class FrmAjusta final : public JanelaAjuste {
public:
    FrmAjusta(Session& session, WindowRegistry& windows)
        : JanelaAjuste(session, windows)
    {
        m_grade->addWidget(new QLabel(QStringLiteral("Indicado"), m_frame), 0, 1, Qt::AlignCenter);
        m_grade->addWidget(new QLabel(QStringLiteral("Ajustado"), m_frame), 0, 2, Qt::AlignCenter);
        const std::array<QString, 4> linhas = { QStringLiteral("N Base"), QStringLiteral("P Base"),
            QStringLiteral("K Base"), QStringLiteral("N Cob") };
        const std::array<const char*, 4> nomes = { "txtNB", "txtPB", "txtKB", "txtNC" };
        const std::array<Grandeza, 4> grandezas
            = { Grandeza::NecNBase, Grandeza::NecPBase, Grandeza::NecKBase, Grandeza::NecNCob };
        const int largura = fontMetrics().horizontalAdvance(QStringLiteral("Consultar MAC")) + 16;
        std::array<QLineEdit*, 4> ajustados {};
        for (std::size_t i = 0; i < linhas.size(); ++i)
            ajustados[i] = caixaAjustada(QString::fromLatin1(nomes[i]) + QStringLiteral("2"), grandezas[i], largura);
        for (std::size_t i = 0; i < linhas.size(); ++i) {
            const int linha = static_cast<int>(i) + 1;
            auto* rotulo = new QLabel(linhas[i], m_frame);
            rotulo->setBuddy(ajustados[i]);
            m_grade->addWidget(rotulo, linha, 0);
            m_grade->addWidget(caixaIndicada(QString::fromLatin1(nomes[i]), session.Nec[i], largura), linha, 1);
            m_grade->addWidget(ajustados[i], linha, 2);
        }
    }

protected:
    QString destino() const override { return janelaAjustada(m_session.NomeGrupo); }
};

// The nine figures of the forest group, a row per dressing, "Indicado" from what frmFlorest
// showed, sent back to it.
class FrmAjustaFlorest final : public JanelaAjuste {
public:
    FrmAjustaFlorest(Session& session, WindowRegistry& windows)
        : JanelaAjuste(session, windows)
    {
        const QStringList nutrientes = legendasNutrientes();
        const QStringList etapas = legendasEtapasFlorestais();
        m_grade->addWidget(new QLabel(QStringLiteral("Indicado"), m_frame), 0, 1, 1, 3, Qt::AlignCenter);
        m_grade->addWidget(new QLabel(QStringLiteral("Ajustado"), m_frame), 0, 5, 1, 3, Qt::AlignCenter);
        for (int c = 0; c < nutrientes.size(); ++c) {
            m_grade->addWidget(new QLabel(nutrientes[c], m_frame), 1, c + 1, Qt::AlignCenter);
            m_grade->addWidget(new QLabel(nutrientes[c], m_frame), 1, c + 5, Qt::AlignCenter);
        }
        m_grade->setColumnMinimumWidth(4, 16);
        const int largura = fontMetrics().horizontalAdvance(QStringLiteral("00000,00")) + 16;
        std::array<QLineEdit*, kBoxesFlorest> ajustados {};
        for (int i = 0; i < kBoxesFlorest; ++i)
            ajustados[i] = caixaAjustada(QStringLiteral("txtAjust_%1").arg(i), Grandeza::NecFlorestal, largura);
        for (int i = 0; i < kBoxesFlorest; ++i) {
            const int linha = i / 3 + 2;
            if (i % 3 == 0) {
                auto* rotulo = new QLabel(etapas[i / 3], m_frame);
                rotulo->setBuddy(ajustados[i]);
                m_grade->addWidget(rotulo, linha, 0);
            }
            m_grade->addWidget(caixaIndicada(QStringLiteral("txtNec_%1").arg(i), session.NecFlorest[i], largura),
                linha, i % 3 + 1);
            m_grade->addWidget(ajustados[i], linha, i % 3 + 5);
        }
    }

protected:
    QString destino() const override { return janela::kFlorest; }
};

} // namespace

QWidget* criaFrmAjusta(Session& session, WindowRegistry& windows)
{
    return new FrmAjusta(session, windows);
}

QWidget* criaFrmAjustaFlorest(Session& session, WindowRegistry& windows)
{
    return new FrmAjustaFlorest(session, windows);
}

} // namespace lavra::ui
