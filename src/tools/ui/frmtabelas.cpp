#include "app/events.h"
#include "app/session.h"
#include "app/ui/dialogs.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "exchange/manualsheet.h"
#include "exchange/workbook.h"
#include "store/changenotifier.h"
#include "store/storeerror.h"
#include "tabelasdialogos.h"
#include "tabelasmodelo.h"
#include "windows.h"

#include <QComboBox>
#include <QFileInfo>
#include <QDir>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace lavra::ui {

namespace {

const QString kMotivoRestauracao = QStringLiteral("Valor original do programa restaurado");
constexpr int kLarguraMaximaChave = 300;
constexpr int kLarguraMaximaValor = 150;
constexpr int kMargemTitulo = 20;
constexpr int kLarguraFonte = 360;

QString plural(int n, const QString& um, const QString& varios)
{
    return QStringLiteral("%1 %2").arg(n).arg(n == 1 ? um : varios);
}

// The manual's tables as the program holds them: the agronomist sees where each row comes from
// and how far it can be trusted, corrects a value with a reason, puts a row back as delivered,
// and exchanges a table with a workbook. Opened from the calculation, it goes to the rows that
// the calculation read.
class FrmTabelas final : public QWidget {
public:
    explicit FrmTabelas(Session& session) : QWidget(nullptr, Qt::Window), m_session(session)
    {
        setWindowTitle(QStringLiteral("Tabelas do manual"));
        criaControles();

        m_modelo = new ModeloTabela(this);
        // The question of the reason waits until the grid has closed its editor.
        m_modelo->aoCorrigir([this](int linha, int coluna, const QString& texto) {
            QMetaObject::invokeMethod(
                this, [this, linha, coluna, texto]() { corrigeValor(linha, coluna, texto); }, Qt::QueuedConnection);
        });
        m_filtro = new FiltroTabela(this);
        m_filtro->setSourceModel(m_modelo);
        m_grade->setModel(m_filtro);

        for (const QString& tabela : manual::tabelas())
            m_cboTabela->addItem(QStringLiteral("%1 — %2").arg(tabela, manual::descricaoTabela(tabela)), tabela);

        connect(m_cboTabela, &QComboBox::currentIndexChanged, this, &FrmTabelas::tabelaEscolhida);
        connect(m_txtFiltro, &QLineEdit::textChanged, this, &FrmTabelas::aplicaFiltros);
        connect(m_cboConfianca, &QComboBox::currentIndexChanged, this, &FrmTabelas::aplicaFiltros);
        connect(m_grade->selectionModel(), &QItemSelectionModel::selectionChanged, this, &FrmTabelas::mostraFonte);
        connect(m_filtro, &QAbstractItemModel::modelReset, this, &FrmTabelas::mostraFonte);
        connect(m_lstUsadas, &QListWidget::itemSelectionChanged, this, &FrmTabelas::usadaEscolhida);
        connect(&m_session.eventos, &Eventos::linhasUsadasPedidas, this, &FrmTabelas::linhasUsadasPedidas);
        connect(&ChangeNotifier::instance(), &ChangeNotifier::tableChanged, this, [this](const QString& tabela) {
            if (concerns(tabela, m_modelo->tabela()) || concerns(tabela, QStringLiteral("LinhasConferidas")))
                tabelaMudou();
        });
        connect(m_grade->itemDelegate(), &QAbstractItemDelegate::closeEditor, this, [this]() {
            if (std::exchange(m_releitura, false))
                QMetaObject::invokeMethod(this, &FrmTabelas::recarrega, Qt::QueuedConnection);
        });

        tabelaEscolhida();
        // Wide enough for the notes after the values of most tables, on the screens in use.
        const QRect tela = screen()->availableGeometry();
        resize(std::min(1320, tela.width() - 40), std::min(700, tela.height() - 60));
    }

protected:
    void keyPressEvent(QKeyEvent* evento) override
    {
        // Escape closes the window as it would a dialog; an open editor of the grid takes it first.
        if (evento->key() == Qt::Key_Escape && evento->modifiers() == Qt::NoModifier) {
            close();
            return;
        }
        QWidget::keyPressEvent(evento);
    }

private:
    void criaControles()
    {
        auto* layout = new QVBoxLayout(this);

        auto* topo = new QGridLayout;
        m_cboTabela = new QComboBox(this);
        m_cboTabela->setObjectName(QStringLiteral("cboTabela"));
        m_cboTabela->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        m_cboTabela->setMaxVisibleItems(24);
        m_txtFiltro = new QLineEdit(this);
        m_txtFiltro->setObjectName(QStringLiteral("txtFiltro"));
        m_txtFiltro->setPlaceholderText(QStringLiteral("cultura, sistema ou índice"));
        m_txtFiltro->setClearButtonEnabled(true);
        m_cboConfianca = new QComboBox(this);
        m_cboConfianca->setObjectName(QStringLiteral("cboConfianca"));
        m_cboConfianca->addItem(QStringLiteral("Todas"));
        for (const manual::Confianca c : {manual::Confianca::Alta, manual::Confianca::Media, manual::Confianca::Baixa,
                                          manual::Confianca::ConferidaPeloUsuario})
            m_cboConfianca->addItem(manual::textoConfianca(c), static_cast<int>(c));
        m_lblContagem = new QLabel(this);
        m_lblContagem->setObjectName(QStringLiteral("lblContagem"));

        topo->addWidget(rotulo(QStringLiteral("&Tabela:"), m_cboTabela, this), 0, 0);
        topo->addWidget(m_cboTabela, 0, 1, 1, 4);
        topo->addWidget(rotulo(QStringLiteral("&Procurar na chave:"), m_txtFiltro, this), 1, 0);
        topo->addWidget(m_txtFiltro, 1, 1);
        topo->addWidget(rotulo(QStringLiteral("C&onfiança:"), m_cboConfianca, this), 1, 2, Qt::AlignRight);
        topo->addWidget(m_cboConfianca, 1, 3);
        topo->addWidget(m_lblContagem, 1, 4, Qt::AlignRight);
        topo->setColumnStretch(1, 1);
        topo->setColumnStretch(4, 1);
        layout->addLayout(topo);

        auto* meio = new QHBoxLayout;
        m_painelUsadas = new QWidget(this);
        auto* usadas = new QVBoxLayout(m_painelUsadas);
        usadas->setContentsMargins(0, 0, 0, 0);
        m_lstUsadas = new QListWidget(m_painelUsadas);
        m_lstUsadas->setObjectName(QStringLiteral("lstUsadas"));
        // The grid keeps the room; a longer item is read whole in its tip.
        m_lstUsadas->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("FORRAGPC1 — Azevém + trevo-branco")) + 30);
        usadas->addWidget(rotulo(QStringLiteral("Linhas &usadas no último cálculo"), m_lstUsadas, m_painelUsadas));
        usadas->addWidget(m_lstUsadas);
        m_painelUsadas->hide();
        meio->addWidget(m_painelUsadas);

        m_grade = new QTableView(this);
        m_grade->setObjectName(QStringLiteral("grdTabela"));
        m_grade->setSelectionBehavior(QAbstractItemView::SelectRows);
        m_grade->setSelectionMode(QAbstractItemView::SingleSelection);
        m_grade->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                                 | QAbstractItemView::AnyKeyPressed);
        // Tab leaves the grid for the buttons, as it does in the rest of the window.
        m_grade->setTabKeyNavigation(false);
        m_grade->setWordWrap(false);
        m_grade->verticalHeader()->hide();
        m_grade->verticalHeader()->setDefaultSectionSize(m_grade->fontMetrics().height() + 8);
        // Headings in words wrap on two or three lines rather than widen every column.
        m_grade->horizontalHeader()->setDefaultAlignment(Qt::Alignment::fromInt(Qt::AlignCenter | Qt::TextWordWrap));
        // A chosen row would set every heading in bold, wider than the room measured for it.
        m_grade->horizontalHeader()->setHighlightSections(false);
        m_grade->horizontalHeader()->setStretchLastSection(true);
        meio->addWidget(m_grade, 1);
        layout->addLayout(meio, 1);

        m_txtFonte = new QPlainTextEdit(this);
        m_txtFonte->setObjectName(QStringLiteral("txtFonte"));
        m_txtFonte->setReadOnly(true);
        m_txtFonte->setTabChangesFocus(true);
        m_txtFonte->setFocusPolicy(Qt::ClickFocus);
        m_txtFonte->setFixedHeight(3 * m_txtFonte->fontMetrics().lineSpacing() + 12);
        layout->addWidget(rotulo(QStringLiteral("Fonte da linha escolhida:"), m_txtFonte, this));
        layout->addWidget(m_txtFonte);

        auto* botoes = new QHBoxLayout;
        const auto botao = [this, botoes](const QString& nome, const QString& texto) {
            auto* b = new QPushButton(texto, this);
            b->setObjectName(nome);
            botoes->addWidget(b);
            return b;
        };
        QPushButton* restaurar = botao(QStringLiteral("cmdRestaurar"), QStringLiteral("&Restaurar valor original"));
        QPushButton* historico = botao(QStringLiteral("cmdHistorico"), QStringLiteral("&Histórico..."));
        QPushButton* exportar = botao(QStringLiteral("cmdExportar"), QStringLiteral("&Exportar..."));
        QPushButton* importar = botao(QStringLiteral("cmdImportar"), QStringLiteral("&Importar..."));
        botoes->addStretch();
        QPushButton* fechar = botao(QStringLiteral("cmdFechar"), QStringLiteral("&Fechar"));
        layout->addLayout(botoes);

        connect(restaurar, &QPushButton::clicked, this, &FrmTabelas::restaura);
        connect(historico, &QPushButton::clicked, this, &FrmTabelas::historico);
        connect(exportar, &QPushButton::clicked, this, &FrmTabelas::exporta);
        connect(importar, &QPushButton::clicked, this, &FrmTabelas::importa);
        connect(fechar, &QPushButton::clicked, this, &QWidget::close);

        setTabOrder(m_lstUsadas, m_cboTabela);
        setTabOrder(m_cboTabela, m_txtFiltro);
        setTabOrder(m_txtFiltro, m_cboConfianca);
        setTabOrder(m_cboConfianca, m_grade);
        setTabOrder(m_grade, restaurar);
        setTabOrder(restaurar, historico);
        setTabOrder(historico, exportar);
        setTabOrder(exportar, importar);
        setTabOrder(importar, fechar);
    }

    QString tabela() const { return m_cboTabela->currentData().toString(); }

    void tabelaEscolhida()
    {
        carrega({});
        m_grade->scrollToTop();
        ajustaColunas();
    }

    // Reads the table again, with the same row chosen if it is still there.
    void recarrega() { carrega(chaveEscolhida()); }

    // Another write to the table; a value being typed is not lost to it, the table is read once
    // the editor closes.
    void tabelaMudou()
    {
        if (m_grade->indexWidget(m_grade->currentIndex()))
            m_releitura = true;
        else
            recarrega();
    }

    void carrega(const QString& chave)
    {
        const int coluna = m_grade->currentIndex().column();
        QList<manual::LinhaManual> linhas;
        try {
            linhas = manual::leTabela(m_session.db, tabela());
        } catch (const StoreError& error) {
            // Rows of another table, or of an earlier read, would be taken for these.
            m_modelo->define(tabela(), {});
            atualizaContagem();
            erroBanco(this, error);
            return;
        }
        m_modelo->define(tabela(), linhas);
        if (!chave.isEmpty())
            escolhe(chave, coluna);
        atualizaContagem();
    }

    void ajustaColunas()
    {
        QHeaderView* cabecalho = m_grade->horizontalHeader();
        const QFontMetrics metrica = cabecalho->fontMetrics();
        const int fonte = m_modelo->colunaFonte();
        int altura = metrica.height();
        for (int c = 0; c < fonte; ++c) {
            const QString titulo = m_modelo->headerData(c, Qt::Horizontal).toString();
            // As wide as the figures, the longest word of the heading and a third of the whole
            // heading, so that it takes three lines where the limit allows.
            int largura = static_cast<const QAbstractItemView*>(m_grade)->sizeHintForColumn(c) + kMargemTitulo;
            for (const QString& palavra : titulo.split(QLatin1Char(' ')))
                largura = std::max(largura, metrica.horizontalAdvance(palavra) + kMargemTitulo);
            largura = std::max(largura, metrica.horizontalAdvance(titulo) / 3 + 2 * kMargemTitulo);
            largura = std::min(largura, c < m_modelo->quantasChaves() ? kLarguraMaximaChave : kLarguraMaximaValor);
            // Room for the longest confidence, which a correction may bring to any row.
            if (c == m_modelo->colunaConfianca())
                largura = metrica.horizontalAdvance(manual::textoConfianca(manual::Confianca::ConferidaPeloUsuario))
                          + kMargemTitulo;
            m_grade->setColumnWidth(c, largura);
            const QRect caixa(0, 0, largura - kMargemTitulo, 100 * metrica.height());
            altura = std::max(altura, metrica.boundingRect(caixa, Qt::AlignCenter | Qt::TextWordWrap, titulo).height());
        }
        m_grade->setColumnWidth(fonte, kLarguraFonte);
        // The header is as tall as its longest heading: the toolkit would measure one line.
        cabecalho->setFixedHeight(std::min(altura, 6 * metrica.height()) + 10);
    }

    void aplicaFiltros()
    {
        const QVariant confianca = m_cboConfianca->currentData();
        m_filtro->filtra(m_txtFiltro->text(), confianca.isValid()
                                                  ? std::optional(static_cast<manual::Confianca>(confianca.toInt()))
                                                  : std::nullopt);
        atualizaContagem();
    }

    void atualizaContagem()
    {
        int baixas = 0;
        for (int i = 0; i < m_filtro->rowCount(); ++i) {
            if (m_filtro->index(i, 0).data(ModeloTabela::kPapelConfianca).toInt()
                == static_cast<int>(manual::Confianca::Baixa))
                ++baixas;
        }
        m_lblContagem->setText(QStringLiteral("%1, %2 de confiança baixa")
                                   .arg(plural(m_filtro->rowCount(), QStringLiteral("linha"), QStringLiteral("linhas")))
                                   .arg(baixas));
    }

    // The row of the table the user selected, or -1: the grid's current row alone is not a choice.
    int linhaEscolhida() const
    {
        const int linha = ui::linhaEscolhida(m_grade);
        return linha < 0 ? -1 : m_filtro->mapToSource(m_filtro->index(linha, 0)).row();
    }

    QString chaveEscolhida() const
    {
        const int linha = linhaEscolhida();
        return linha < 0 ? QString() : m_modelo->linhas()[linha].chave;
    }

    // Selects the row of that key, in view; false when the filters or the table leave it out.
    bool escolhe(const QString& chave, int colunaGrade = -1)
    {
        const int linha = m_modelo->linhaDaChave(chave);
        const QModelIndex indice =
            m_filtro->mapFromSource(m_modelo->index(linha, std::max(colunaGrade, m_modelo->quantasChaves())));
        if (linha < 0 || !indice.isValid())
            return false;
        m_grade->selectionModel()->setCurrentIndex(indice, QItemSelectionModel::ClearAndSelect
                                                               | QItemSelectionModel::Rows);
        m_grade->scrollTo(indice, QAbstractItemView::PositionAtCenter);
        return true;
    }

    void mostraFonte()
    {
        const int linha = linhaEscolhida();
        m_txtFonte->setPlainText(linha < 0 ? QString() : m_modelo->linhas()[linha].fonte);
    }

    QString tituloColuna(int coluna) const
    {
        const TableDef* def = schema::findTable(m_modelo->tabela());
        return def && coluna < def->columns.size() ? manual::tituloColuna(m_modelo->tabela(), def->columns[coluna].name)
                                                   : QString();
    }

    void corrigeValor(int linha, int coluna, const QString& texto)
    {
        if (linha < 0 || linha >= m_modelo->linhas().size())
            return;
        // Taken now: the boxes below let the table be read again under them.
        const QString nomeTabela = m_modelo->tabela();
        const QString chave = m_modelo->linhas()[linha].chave;
        const QVariant anterior = m_modelo->linhas()[linha].valores.value(coluna);

        const manual::ValorLido lido = manual::leValor(nomeTabela, coluna, texto);
        if (!lido.recusa.isEmpty()) {
            aviso(this, lido.recusa);
            return;
        }
        if (manual::mesmoValor(lido.valor, anterior, manual::definicaoDe(nomeTabela).columns[coluna].type))
            return;
        const QString motivo =
            entrada(this, QStringLiteral("Motivo da correção"),
                    QStringLiteral("%1, linha \"%2\", coluna \"%3\": de %4 para %5.\n\nPor que o valor muda? "
                                   "(por exemplo, \"conferido no manual de 2004, p. 45\")")
                        .arg(nomeTabela, manual::chaveExibida(nomeTabela, chave), tituloColuna(coluna), manual::textoValor(anterior),
                             manual::textoValor(lido.valor)))
                .trimmed();
        if (motivo.isEmpty())
            return;
        try {
            manual::corrige(m_session.db, {manual::Correcao{nomeTabela, chave, coluna, anterior, lido.valor}}, motivo);
        } catch (const StoreError& error) {
            erroBanco(this, error);
        }
        recarrega();
    }

    void restaura()
    {
        const int linha = linhaEscolhida();
        if (linha < 0) {
            aviso(this, QStringLiteral("Selecione uma linha da tabela."));
            m_grade->setFocus();
            return;
        }
        const QString nomeTabela = m_modelo->tabela();
        const QString chave = m_modelo->linhas()[linha].chave;
        QList<manual::Correcao> mudancas;
        try {
            mudancas = manual::restauracao(m_session.db, nomeTabela, chave);
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return;
        }
        if (mudancas.isEmpty()) {
            informacao(this, QStringLiteral("A linha já tem os valores originais do programa."));
            return;
        }
        QStringList itens;
        for (const manual::Correcao& c : mudancas)
            itens << QStringLiteral("• %1: %2 → %3")
                         .arg(tituloColuna(c.coluna), manual::textoValor(c.anterior), manual::textoValor(c.novo));
        // Going back to what the program delivered needs no reason of its own: the history says so.
        if (!confirma(this, QStringLiteral("Restaurar os valores originais do programa na linha \"%1\" da tabela %2?\n\n%3")
                                .arg(manual::chaveExibida(nomeTabela, chave), nomeTabela, itens.join(QLatin1Char('\n')))))
            return;
        try {
            manual::restaura(m_session.db, nomeTabela, chave, kMotivoRestauracao);
        } catch (const StoreError& error) {
            erroBanco(this, error);
        }
        recarrega();
    }

    void historico()
    {
        QList<manual::RegistroHistorico> registros;
        try {
            registros = manual::historico(m_session.db);
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return;
        }
        if (registros.isEmpty()) {
            informacao(this, QStringLiteral("Nenhum valor das tabelas do manual foi corrigido até agora."));
            return;
        }
        mostraHistorico(this, m_session.db, registros);
    }

    void exporta()
    {
        const QString nomeTabela = m_modelo->tabela();
        const QString caminho =
            pastaParaSalvar(this, QStringLiteral("Exportar a tabela %1").arg(nomeTabela), QStringLiteral("Tabela ") + nomeTabela);
        if (caminho.isEmpty())
            return;
        try {
            manual::exportaTabela(m_session.db, nomeTabela, caminho);
        } catch (const ErroPasta& erro) {
            critico(this, erro.mensagem());
            return;
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return;
        }
        informacao(this, QStringLiteral("A tabela %1 foi gravada em %2.").arg(nomeTabela, QDir::toNativeSeparators(caminho)));
    }

    void importa()
    {
        const QString nomeTabela = m_modelo->tabela();
        const QString caminho = arquivoParaAbrir(this, QStringLiteral("Importar a tabela %1").arg(nomeTabela),
                                                 pastaInicial(false),
                                                 QStringLiteral("Planilhas (*.xlsx *.ods *.xls)"));
        if (caminho.isEmpty())
            return;
        manual::Importacao importacao;
        try {
            importacao = manual::leImportacao(m_session.db, nomeTabela, caminho);
        } catch (const ErroPasta& erro) {
            critico(this, erro.mensagem());
            return;
        } catch (const StoreError& error) {
            erroBanco(this, error);
            return;
        }
        const QString arquivo = QFileInfo(caminho).fileName();
        if (importacao.correcoes.isEmpty()) {
            QString texto = QStringLiteral("A planilha %1 não muda nenhum valor da tabela %2; nada foi gravado.")
                                .arg(arquivo, nomeTabela);
            if (!importacao.recusas.isEmpty())
                texto += QStringLiteral("\n\nLinhas recusadas:\n") + importacao.recusas.join(QLatin1Char('\n'));
            informacao(this, texto);
            return;
        }
        if (!confirmaImportacao(this, importacao, arquivo))
            return;
        const QString motivo = entrada(this, QStringLiteral("Motivo da correção"),
                                       QStringLiteral("Por que os valores da tabela %1 mudam?").arg(nomeTabela),
                                       QStringLiteral("Importação de %1").arg(arquivo))
                                   .trimmed();
        if (motivo.isEmpty())
            return;
        try {
            manual::corrige(m_session.db, importacao.correcoes, motivo);
        } catch (const StoreError& error) {
            erroBanco(this, error);
            recarrega();
            return;
        }
        recarrega();
        const int quantos = static_cast<int>(importacao.correcoes.size());
        informacao(this, QStringLiteral("%1 na tabela %2.")
                             .arg(quantos == 1 ? QStringLiteral("1 valor foi corrigido")
                                               : QStringLiteral("%1 valores foram corrigidos").arg(quantos),
                                  nomeTabela));
    }

    void linhasUsadasPedidas()
    {
        m_usadas = m_session.LinhasUsadas;
        m_lstUsadas->clear();
        for (const manual::LinhaUsada& u : m_usadas) {
            auto* item = new QListWidgetItem(QStringLiteral("%1 — %2").arg(u.tabela, manual::chaveExibida(u.tabela, u.chave)), m_lstUsadas);
            item->setToolTip(item->text());
        }
        m_painelUsadas->setVisible(!m_usadas.isEmpty());
        if (m_usadas.isEmpty())
            return;
        // The first row read is the one the agronomist came for.
        m_lstUsadas->setCurrentRow(0);
        m_lstUsadas->setFocus();
    }

    void usadaEscolhida()
    {
        const int i = ui::linhaEscolhida(m_lstUsadas);
        if (i < 0 || i >= m_usadas.size())
            return;
        const manual::LinhaUsada& usada = m_usadas[i];
        const int indice = m_cboTabela->findData(manual::tabelaDe(usada.tabela));
        if (indice < 0)
            return;
        // The filters would hide the row looked for.
        m_txtFiltro->clear();
        m_cboConfianca->setCurrentIndex(0);
        if (indice != m_cboTabela->currentIndex())
            m_cboTabela->setCurrentIndex(indice);
        if (!escolhe(usada.chave))
            informacao(this, QStringLiteral("A linha \"%1\" não está mais na tabela %2.").arg(manual::chaveExibida(usada.tabela, usada.chave), usada.tabela));
    }

    Session& m_session;
    QComboBox* m_cboTabela = nullptr;
    QLineEdit* m_txtFiltro = nullptr;
    QComboBox* m_cboConfianca = nullptr;
    QLabel* m_lblContagem = nullptr;
    QWidget* m_painelUsadas = nullptr;
    QListWidget* m_lstUsadas = nullptr;
    QTableView* m_grade = nullptr;
    QPlainTextEdit* m_txtFonte = nullptr;
    ModeloTabela* m_modelo = nullptr;
    FiltroTabela* m_filtro = nullptr;
    QList<manual::LinhaUsada> m_usadas;
    bool m_releitura = false;
};

} // namespace

QWidget* criaFrmTabelas(Session& session, WindowRegistry&) { return new FrmTabelas(session); }

} // namespace lavra::ui
