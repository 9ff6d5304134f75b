#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/fieldchecks.h"
#include "app/ui/messages.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "base/numbers.h"
#include "base/outcome.h"
#include "registers/inputs.h"
#include "registerwindow.h"
#include "windows.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

const QString kExplicacaoIndice = QStringLiteral(
    "Índice de eficiência (requerido para fertilizantes orgânicos sólidos e líquidos):\n"
    "um valor entre 0 e 1, que indica a fração dos totais de N, P e K que é liberada no primeiro cultivo."
    " Por exemplo: se o índice de eficiência for 1 significa que 100% do nutriente é liberado no primeiro "
    "cultivo;  se o índice de eficiência for 0,5 significa que 50% do nutriente é liberado no primeiro cultivo.");
const QString kExplicacaoMs = QStringLiteral(
    "Teor de matéria seca (requerido apenas para fertilizantes orgânicos sólidos):\n"
    "porcentagem de materia seca presente no material orgânico.");

class FrmFertiliz;

// Asks which kind of fertiliser is being entered. Only its two buttons close it.
class FrmTipoAdubo final : public QWidget {
public:
    explicit FrmTipoAdubo(FrmFertiliz& register_);

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (m_podeFechar)
            event->accept();
        else
            event->ignore();
    }

private:
    void aplica();
    void cancela();
    void fecha()
    {
        m_podeFechar = true;
        close();
    }

    FrmFertiliz& m_register;
    QComboBox* m_tipo = nullptr;
    bool m_podeFechar = false;
};

// Fertilisers: prices typed in dollars, kept in both currencies.
class FrmFertiliz final : public RegisterWindow {
public:
    FrmFertiliz(Session& session, WindowRegistry& windows)
        : RegisterWindow(session, windows,
                         {QStringLiteral("Fertilizantes"), QStringLiteral("SELECT * FROM NPK ORDER BY N, P, K;"),
                          QStringLiteral("dtGrid"), &Session::OperacaoInsumo, {5, 7}})
    {
        auto* outer = new QVBoxLayout(formArea());
        outer->setContentsMargins(0, 0, 0, 0);
        auto* frame = new QGroupBox(QStringLiteral("Composição"), formArea());
        outer->addWidget(frame);
        auto* grid = new QGridLayout(frame);

        m_espec = addField(QStringLiteral("txtEspec"), 1, 20);
        m_n = addField(QStringLiteral("txtN"), 2);
        m_p = addField(QStringLiteral("txtP"), 3);
        m_k = addField(QStringLiteral("txtK"), 4);
        m_custo = addField(QStringLiteral("txtCusto"), 6);
        m_ms = addField(QStringLiteral("txtMS"), 8);
        m_ifn = addField(QStringLiteral("txtIFN"), 9);
        m_ifp = addField(QStringLiteral("txtIFP"), 10);
        m_ifk = addField(QStringLiteral("txtIFK"), 11);

        auto label = [frame](const QString& text) { return new QLabel(text, frame); };
        grid->addWidget(label(QStringLiteral("Especificação (máx. 20 caracteres)")), 0, 0);
        grid->addWidget(m_espec, 0, 1, 1, 5);
        grid->addWidget(label(QStringLiteral("N (%)")), 1, 0);
        grid->addWidget(m_n, 1, 1);
        grid->addWidget(label(QStringLiteral("P₂O₅ (%)")), 1, 2);
        grid->addWidget(m_p, 1, 3);
        grid->addWidget(label(QStringLiteral("K₂O (%)")), 1, 4);
        grid->addWidget(m_k, 1, 5);
        grid->addWidget(label(QStringLiteral("Preço (US$/t)")), 2, 0);
        grid->addWidget(m_custo, 2, 1);
        grid->addWidget(label(QStringLiteral("Teor de matéria seca (%)")), 3, 0);
        grid->addWidget(m_ms, 3, 1);
        auto* ms = new QPushButton(QStringLiteral("?"), frame);
        ms->setObjectName(QStringLiteral("cmdMs"));
        ms->setToolTip(QStringLiteral("O que é o teor de matéria seca"));
        ms->setFixedWidth(32);
        connect(ms, &QPushButton::clicked, this, [this]() { mostra(this, Desfecho::informacao(kExplicacaoMs)); });
        grid->addWidget(ms, 3, 2, Qt::AlignLeft);

        grid->addWidget(label(QStringLiteral("Índice de eficiência")), 4, 0);
        auto* indices = new QHBoxLayout;
        for (const auto& [text, field] : {std::pair{QStringLiteral("N"), m_ifn}, std::pair{QStringLiteral("P"), m_ifp},
                                          std::pair{QStringLiteral("K"), m_ifk}}) {
            indices->addWidget(label(text));
            indices->addWidget(field);
        }
        grid->addLayout(indices, 4, 1, 1, 4);
        auto* explica = new QPushButton(QStringLiteral("Ver explicação"), frame);
        explica->setObjectName(QStringLiteral("cmdExplicMSIF"));
        connect(explica, &QPushButton::clicked, this, [this]() { mostra(this, Desfecho::informacao(kExplicacaoIndice)); });
        grid->addWidget(explica, 4, 5);

        m_lblId = new QLabel(frame);
        m_lblId->setObjectName(QStringLiteral("lblId"));
        m_lblId->hide();

        checaAoSair(m_n, Grandeza::TeorN);
        checaAoSair(m_p, Grandeza::TeorP);
        checaAoSair(m_k, Grandeza::TeorK);
        checaAoSair(m_custo, Grandeza::PrecoDolar);
        // These may hold "---", so they are checked at Executar only.
        defineGrandeza(m_ms, Grandeza::TeorMS);
        for (QLineEdit* field : {m_ifn, m_ifp, m_ifk})
            defineGrandeza(field, Grandeza::IndiceEficiencia);
        VinculaTextos();
        BloqueiaTextos();
        resize(780, 560);
    }

    // The choice made in frmTipoAdubo.
    void aplicaTipo(TipoAdubo tipo)
    {
        m_tipo = tipo;
        m_lblId->setText(QString::number(static_cast<int>(tipo)));
        QList<QLineEdit*> notApplicable;
        if (tipo == TipoAdubo::Mineral)
            notApplicable = {m_ms, m_ifn, m_ifp, m_ifk};
        else if (tipo == TipoAdubo::OrganicoLiquido)
            notApplicable = {m_ms};
        for (QLineEdit* field : notApplicable) {
            field->setText(QStringLiteral("---"));
            field->setReadOnly(true);
        }
    }

    // frmTipoAdubo cancelled: back to where the register stood before "Novo".
    void desisteNovo()
    {
        habilitaBotoes(true);
        setOperacao(QString());
        BloqueiaTextos();
        VinculaTextos();
    }

protected:
    void aoNovo() override
    {
        m_tipo = TipoAdubo::Nenhum;
        auto* tipo = new FrmTipoAdubo(*this);
        m_windows.track(tipo);
        tipo->show();
    }

    bool verificacoes() override
    {
        if (operacao() == kExclusao)
            return true;
        // A figure refused as it was typed, or one no fertiliser has, is never stored.
        if (recusaCampos({m_n, m_p, m_k, m_custo}))
            return false;
        if (operacao() == kCadastro) {
            if (const Parada recusa = verificaFertilizante(fields(), m_tipo)) {
                mostra(this, *recusa);
                return false;
            }
        }
        // Dry matter and indices hold "---" where they do not apply, and an edit may leave any
        // other text; a number there must still be one the plan can read and one that can exist.
        for (QLineEdit* field : {m_ms, m_ifn, m_ifp, m_ifk}) {
            if (field->text() != QLatin1String("---") && isNumericText(field->text()) && recusaCampo(field))
                return false;
        }
        return true;
    }

    QVariantList valores() override { return linhaFertilizante(fields(), LeCotacao(m_session.db)); }

private:
    Fertilizante fields() const
    {
        return {m_n->text(),  m_p->text(),   m_k->text(),   m_espec->text(), m_custo->text(),
                m_ms->text(), m_ifn->text(), m_ifp->text(), m_ifk->text()};
    }

    QLineEdit *m_espec = nullptr, *m_n = nullptr, *m_p = nullptr, *m_k = nullptr, *m_custo = nullptr;
    QLineEdit *m_ms = nullptr, *m_ifn = nullptr, *m_ifp = nullptr, *m_ifk = nullptr;
    QLabel* m_lblId = nullptr;
    TipoAdubo m_tipo = TipoAdubo::Nenhum;
};

FrmTipoAdubo::FrmTipoAdubo(FrmFertiliz& register_) : QWidget(&register_, Qt::Dialog), m_register(register_)
{
    setObjectName(janela::kTipoAdubo);
    setWindowTitle(QStringLiteral("Tipo de Fertilizante"));
    setWindowModality(Qt::ApplicationModal);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Selecione o tipo de fertilizante"), this));
    m_tipo = new QComboBox(this);
    m_tipo->setObjectName(QStringLiteral("cboTipo"));
    m_tipo->addItems({QStringLiteral("Fertilizantes minerais"), QStringLiteral("Fertilizantes orgânicos sólidos"),
                      QStringLiteral("Fetilizantes orgânicos líquidos")});
    m_tipo->setCurrentIndex(-1);
    layout->addWidget(m_tipo);
    const auto buttons = adicionaBotoes(layout, this, {{QStringLiteral("cmpAplica"), QStringLiteral("Confirmar")},
                                                       {QStringLiteral("cmdCancel"), QStringLiteral("Cancelar")}});
    connect(buttons[0], &QPushButton::clicked, this, &FrmTipoAdubo::aplica);
    connect(buttons[1], &QPushButton::clicked, this, &FrmTipoAdubo::cancela);
    setMinimumWidth(320);
}

void FrmTipoAdubo::aplica()
{
    if (m_tipo->currentIndex() < 0) {
        mostra(this, Desfecho::simples(QStringLiteral("Selecione um tipo de fertilizante")));
        return;
    }
    m_register.aplicaTipo(static_cast<TipoAdubo>(m_tipo->currentIndex() + 1));
    fecha();
}

void FrmTipoAdubo::cancela()
{
    m_register.desisteNovo();
    fecha();
}

} // namespace

QWidget* criaFrmFertiliz(Session& session, WindowRegistry& windows) { return new FrmFertiliz(session, windows); }

} // namespace lavra::ui
