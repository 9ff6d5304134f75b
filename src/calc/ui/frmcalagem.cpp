#include "app/navigation.h"
#include "app/session.h"
#include "app/ui/buttons.h"
#include "app/ui/chainwindow.h"
#include "app/ui/desktop.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "base/numbers.h"
#include "calc/cropgroups.h"
#include "calc/liming.h"
#include "store/cursormodel.h"
#include "store/changenotifier.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace lavra::ui {

namespace {

const QString kSelectCalcario = QStringLiteral("SELECT * FROM Calcario");
constexpr int kColunaNome = 0;
constexpr int kColunaPrnt = 1;
constexpr int kColunaDolar = 2;
constexpr int kColunaPreco = 3;
constexpr int kLarguraNomeTwips = 2000;

// Prices in reais read as money in the grid, whatever decimals the register kept.
class PrecoDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant& value, const QLocale& locale) const override
    {
        if (const std::optional<double> preco = parseNumber(value.toString()))
            return formatFixed(*preco, 2);
        return QStyledItemDelegate::displayText(value, locale);
    }
};

// The liming step: the system of the crop, the method and the material give the dose in t/ha
// and its cost, which go to the session as the user moves on.
class FrmCalagem final : public ChainWindow {
public:
    FrmCalagem(Session& session, WindowRegistry& windows)
        : ChainWindow(session, windows), m_analise(analiseCalagem(session.Analise))
    {
        setWindowTitle(QStringLiteral("Calagem"));
        auto* layout = new QVBoxLayout(this);
        QMenuBar* menus = criaMenusCalculo(this, m_session, m_windows);
        adicionaLinhasUsadas(menus, this, m_session, m_windows, [this]() { return m_linhasUsadas; });
        // A dose read from a row the user has just corrected no longer stands.
        connect(&ChangeNotifier::instance(), &ChangeNotifier::tableChanged, this, [this](const QString& tabela) {
            if (leuTabela(m_linhasUsadas, tabela))
                limpaResultado();
        });
        layout->setMenuBar(menus);

        auto* sistemaFrame = new QGroupBox(QStringLiteral("Selecione a cultura ou o sistema de cultivo"), this);
        auto* sistemaLayout = new QVBoxLayout(sistemaFrame);
        m_sistemas = new QComboBox(sistemaFrame);
        m_sistemas->setObjectName(QStringLiteral("cboSistemas"));
        m_sistemas->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        sistemaLayout->addWidget(m_sistemas);
        layout->addWidget(sistemaFrame);

        // The labels of the result come first: the grid clears them as it takes its first row.
        QGridLayout* resultado = criaResultado();
        m_naoCalcular = new QCheckBox(QStringLiteral("Não calcular calagem"), this);
        m_naoCalcular->setObjectName(QStringLiteral("Check1"));
        auto* esquerda = new QVBoxLayout;
        esquerda->addWidget(criaMetodos());
        esquerda->addStretch();
        esquerda->addWidget(m_naoCalcular);
        esquerda->addSpacing(6);
        esquerda->addLayout(resultado);
        auto* meio = new QHBoxLayout;
        meio->addLayout(esquerda);
        meio->addWidget(criaGrade(), 1);
        layout->addLayout(meio, 1);

        const LinhaPasso buttons = adicionaBotoesPasso(layout, this,
            {{{QStringLiteral("cmdCalc"), QStringLiteral("Calcular")}},
             {QStringLiteral("cmdCancela"), QStringLiteral("Cancelar")},
             {QStringLiteral("cmdRetorna"), QStringLiteral("<< Retornar")},
             {QStringLiteral("cmdProssegue"), QStringLiteral("Prosseguir >>")}});
        connect(buttons.acoes[0], &QPushButton::clicked, this, &FrmCalagem::calcula);
        connect(buttons.retorna, &QPushButton::clicked, this, &FrmCalagem::retorna);
        connect(buttons.prossegue, &QPushButton::clicked, this, &FrmCalagem::prossegue);
        connect(buttons.cancela, &QPushButton::clicked, this, [this]() { FechaJanelas(m_session, m_windows, true); });

        connect(m_sistemas, &QComboBox::currentIndexChanged, this, &FrmCalagem::limpaResultado);
        connect(m_naoCalcular, &QCheckBox::clicked, this, [this]() {
            limpaResultado();
            ExcluiCalagem(m_session);
        });

        setTabOrder(m_sistemas, m_smp);
        setTabOrder(m_smp, m_alMo);
        setTabOrder(m_alMo, m_satB);
        setTabOrder(m_satB, m_media);
        setTabOrder(m_media, m_grade);
        setTabOrder(m_grade, m_naoCalcular);
        setTabOrder(m_naoCalcular, buttons.acoes[0]);
        setTabOrder(buttons.acoes[0], buttons.prossegue);
        setTabOrder(buttons.prossegue, buttons.retorna);
        setTabOrder(buttons.retorna, buttons.cancela);

        carregaSistemas();
    }

private:
    QGroupBox* criaMetodos()
    {
        auto* frame = new QGroupBox(QStringLiteral("Selecione o método de cálculo"), this);
        auto* metodos = new QVBoxLayout(frame);
        auto* grupo = new QButtonGroup(frame);
        const auto opcao = [&](const QString& nome, const QString& legenda) {
            auto* radio = new QRadioButton(legenda, frame);
            radio->setObjectName(nome);
            grupo->addButton(radio);
            metodos->addWidget(radio);
            connect(radio, &QRadioButton::clicked, this, &FrmCalagem::limpaResultado);
            return radio;
        };
        m_smp = opcao(QStringLiteral("optSMP"), QStringLiteral("SMP"));
        m_alMo = opcao(QStringLiteral("optAL_MO"), QStringLiteral("Al + MO"));
        m_satB = opcao(QStringLiteral("optSatB"), QStringLiteral("Saturação por bases"));
        m_media = opcao(QStringLiteral("optMédia"), QStringLiteral("Média: SMP e Sat. por bases"));
        metodos->addStretch();
        return frame;
    }

    QGroupBox* criaGrade()
    {
        auto* frame = new QGroupBox(QStringLiteral("Calcários cadastrados"), this);
        auto* gradeLayout = new QVBoxLayout(frame);
        m_grade = new QTableView(frame);
        m_grade->setObjectName(QStringLiteral("dtgCalc"));
        m_grade->setSelectionBehavior(QAbstractItemView::SelectRows);
        m_grade->setSelectionMode(QAbstractItemView::SingleSelection);
        m_grade->setEditTriggers(QAbstractItemView::NoEditTriggers);
        m_grade->setAlternatingRowColors(true);
        m_grade->verticalHeader()->hide();
        m_grade->verticalHeader()->setDefaultSectionSize(m_grade->fontMetrics().height() + 8);
        m_grade->horizontalHeader()->setStretchLastSection(true);
        m_grade->setItemDelegateForColumn(kColunaPreco, new PrecoDelegate(m_grade));
        m_grade->setMinimumSize(340, 200);
        gradeLayout->addWidget(m_grade);

        try {
            m_modelo = new CursorModel(m_session.db.strConn, kSelectCalcario, this);
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return frame;
        }
        m_grade->setModel(m_modelo);
        ajustaColunas();
        sincronizaGrade(m_grade, m_modelo, 0, [this](const StoreError& error) { erroBanco(this, error); });
        // Another material, or the same one re-read with another PRNT or price after an edit in
        // the register: the dose on the screen no longer belongs to it.
        connect(m_modelo, &CursorModel::currentRowChanged, this, [this](int) {
            if (!mesmoMaterial(material(), m_materialCalculado))
                limpaResultado();
        });
        connect(m_grade, &QTableView::clicked, this, &FrmCalagem::limpaResultado);
        connect(m_modelo, &QAbstractItemModel::modelReset, this, &FrmCalagem::ajustaColunas);
        connect(m_modelo, &CursorModel::refreshFailed, this,
                [this](const StoreError& error) { erroBanco(this, error); });
        if (m_modelo->rowCount() > 0)
            m_modelo->setCurrentRow(0);
        m_grade->setCurrentIndex(m_modelo->index(m_modelo->currentRow(), 0));
        return frame;
    }

    QGridLayout* criaResultado()
    {
        auto* grade = new QGridLayout;
        const auto figura = [this](const QString& nome) {
            auto* label = new QLabel(this);
            label->setObjectName(nome);
            // A box on all four sides, as a read-only field: the styled panel of some styles
            // draws only its two sides, which reads as two bars.
            label->setStyleSheet(QStringLiteral("border: 1px solid palette(mid); background: palette(base);"));
            label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            label->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("000000,00")) + 16);
            label->setMinimumHeight(fontMetrics().height() + 10);
            label->setContentsMargins(4, 0, 4, 0);
            label->setTextInteractionFlags(Qt::TextSelectableByMouse);
            QFont font = label->font();
            font.setBold(true);
            label->setFont(font);
            return label;
        };
        m_resultado = figura(QStringLiteral("lblResultado"));
        m_custo = figura(QStringLiteral("lblCust"));
        grade->addWidget(new QLabel(QStringLiteral("Calcário (t/ha)"), this), 0, 0);
        grade->addWidget(new QLabel(QStringLiteral("Custo (R$/ha)"), this), 0, 1);
        grade->addWidget(m_resultado, 1, 0);
        grade->addWidget(m_custo, 1, 1);
        grade->setHorizontalSpacing(12);
        return grade;
    }

    void ajustaColunas()
    {
        // Dollars are the register's business; here the price is in reais.
        m_grade->setColumnHidden(kColunaDolar, true);
        m_grade->resizeColumnsToContents();
        const int nome = kLarguraNomeTwips * logicalDpiX() / 1440;
        m_grade->setColumnWidth(kColunaNome, std::max(nome, m_grade->columnWidth(kColunaNome) + 12));
        m_grade->setColumnWidth(kColunaPrnt, m_grade->columnWidth(kColunaPrnt) + 24);
    }

    void carregaSistemas()
    {
        QStringList sistemas;
        try {
            sistemas = SistemasDoGrupo(m_session.db, m_session.Grupo);
        } catch (const StoreError& error) {
            erroBanco(this, error);
        }
        m_sistemas->addItems(sistemas);
        m_sistemas->setCurrentIndex(sistemas.isEmpty() ? -1 : 0);
    }

    void limpaResultado()
    {
        m_resultado->clear();
        m_custo->clear();
        m_materialCalculado.reset();
    }

    static bool mesmoMaterial(const std::optional<MaterialCalagem>& a, const std::optional<MaterialCalagem>& b)
    {
        return a && b && a->nome == b->nome && a->prnt == b->prnt && a->preco == b->preco;
    }

    MetodoCalagem metodo() const
    {
        if (m_smp->isChecked())
            return MetodoCalagem::SMP;
        if (m_alMo->isChecked())
            return MetodoCalagem::AlMO;
        if (m_satB->isChecked())
            return MetodoCalagem::SatBases;
        if (m_media->isChecked())
            return MetodoCalagem::Media;
        return MetodoCalagem::Nenhum;
    }

    std::optional<MaterialCalagem> material() const
    {
        const int row = m_modelo ? m_modelo->currentRow() : -1;
        if (row < 0)
            return std::nullopt;
        return MaterialCalagem{m_modelo->value(row, kColunaNome), m_modelo->value(row, kColunaPrnt),
                               m_modelo->value(row, kColunaPreco)};
    }

    void calcula()
    {
        PedidoCalagem pedido;
        pedido.naoCalcular = m_naoCalcular->isChecked();
        pedido.posicaoSistema = m_sistemas->currentIndex();
        pedido.sistema = m_sistemas->currentText();
        pedido.grupo = m_session.Grupo;
        pedido.metodo = metodo();
        pedido.analise = m_analise;
        pedido.material = material();

        ResultadoCalagem resultado;
        try {
            resultado = anotandoLinhas(m_linhasUsadas, [&]() { return CalculaCalagem(m_session.db, pedido); });
        } catch (const StoreError& error) {
            limpaResultado();
            erroBanco(this, error);
            return;
        }
        // A refusal comes before any read, so no method was forced with it.
        if (resultado.metodoForcado) {
            informacao(this, kMsgApenasSaturacao);
            m_satB->setChecked(true);
        }
        if (resultado.desfecho) {
            if (resultado.desfecho->tipo != TipoDesfecho::Aviso)
                limpaResultado();
            ui::mostra(this, *resultado.desfecho);
            return;
        }
        m_resultado->setText(resultado.exibicao.resultado);
        m_custo->setText(resultado.exibicao.custo);
        m_materialCalculado = pedido.material;
    }

    void prossegue()
    {
        if (const Parada recusa =
                GravaCalagem(m_session, {m_naoCalcular->isChecked(), m_resultado->text(), m_custo->text(), material()})) {
            ui::mostra(this, *recusa);
            return;
        }
        hide();
        const GrupoCultura* grupo = grupoCultura(m_session.Grupo);
        if (!grupo || !m_windows.show(grupo->janela)) {
            show();
            informacao(this, QStringLiteral("O cálculo das culturas do grupo \"%1\" ainda não está disponível nesta "
                                            "versão do programa.")
                                 .arg(m_session.NomeGrupo));
        }
    }

    void retorna()
    {
        hide();
        m_windows.show(janela::kGrupCult);
    }

    // The copies of the analysis taken as the window loads; a new analysis closes the window.
    AnaliseCalagem m_analise;
    QComboBox* m_sistemas = nullptr;
    QRadioButton* m_smp = nullptr;
    QRadioButton* m_alMo = nullptr;
    QRadioButton* m_satB = nullptr;
    QRadioButton* m_media = nullptr;
    QTableView* m_grade = nullptr;
    CursorModel* m_modelo = nullptr;
    QCheckBox* m_naoCalcular = nullptr;
    QLabel* m_resultado = nullptr;
    QLabel* m_custo = nullptr;
    // The material of the figures on the screen, while they stand.
    std::optional<MaterialCalagem> m_materialCalculado;
    // What the last run of cmdCalc read, for "Linhas da tabela usadas".
    LinhasDoCalculo m_linhasUsadas;
};

} // namespace

QWidget* criaFrmCalagem(Session& session, WindowRegistry& windows) { return new FrmCalagem(session, windows); }

} // namespace lavra::ui
