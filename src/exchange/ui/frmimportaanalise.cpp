#include "app/session.h"
#include "app/ui/desktop.h"
#include "app/ui/dialogs.h"
#include "app/ui/messages.h"
#include "exchange/importanalysis.h"
#include "exchange/workbook.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QTableView>
#include <QVBoxLayout>

#include <optional>

namespace lavra::ui {

namespace {

// The rows of the report, each with what happened to it, in the order of the sheet.
class ModeloRelatorio final : public QAbstractTableModel {
public:
    enum Situacao { Recusada, Existente, Adicionada };

    explicit ModeloRelatorio(const RelatorioImportacao& r, QObject* parent) : QAbstractTableModel(parent)
    {
        for (const auto& l : r.recusadas)
            m_todas.push_back({&l, Recusada});
        for (const auto& l : r.existentes)
            m_todas.push_back({&l, Existente});
        for (const auto& l : r.adicionadas)
            m_todas.push_back({&l, Adicionada});
        std::stable_sort(m_todas.begin(), m_todas.end(),
                         [](const Item& a, const Item& b) { return a.linha->linha < b.linha->linha; });
        filtra(std::nullopt);
    }

    void filtra(std::optional<Situacao> situacao)
    {
        beginResetModel();
        m_vistas.clear();
        for (const Item& item : m_todas) {
            if (!situacao || item.situacao == *situacao)
                m_vistas.push_back(&item);
        }
        endResetModel();
    }

    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : int(m_vistas.size()); }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 4; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role != Qt::DisplayRole || !index.isValid())
            return {};
        const Item& item = *m_vistas[static_cast<std::size_t>(index.row())];
        switch (index.column()) {
        case 0: return item.linha->linha;
        case 1: return QStringList{QStringLiteral("Recusada"), QStringLiteral("Já existente"),
                                   QStringLiteral("Adicionada")}[item.situacao];
        case 2: return item.linha->analise;
        default: return item.linha->motivo;
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return QAbstractTableModel::headerData(section, orientation, role);
        return QStringList{QStringLiteral("Linha"), QStringLiteral("Situação"), QStringLiteral("Análise"),
                           QStringLiteral("Motivo")}
            .value(section);
    }

private:
    struct Item {
        const LinhaRelatorio* linha;
        Situacao situacao;
    };
    std::vector<Item> m_todas;
    std::vector<const Item*> m_vistas;
};

// What came in and what did not, row by row, with the reason; it can be kept as a text file.
void mostraRelatorio(QWidget* parent, const RelatorioImportacao& r, const QString& pasta, const QString& planilha)
{
    QDialog janela(parent);
    janela.setObjectName(QStringLiteral("frmResultadoImportacao"));
    janela.setWindowTitle(QStringLiteral("Resultado da importação"));
    auto* layout = new QVBoxLayout(&janela);
    auto* resumo = new QLabel(
        QStringLiteral("<b>%1</b>, planilha <b>%2</b><br>Análises adicionadas: %3<br>Análises já existentes: %4"
                       "<br>Linhas recusadas: %5<br>Clientes novos: %6")
            .arg(pasta.toHtmlEscaped(), planilha.toHtmlEscaped())
            .arg(r.adicionadas.size())
            .arg(r.existentes.size())
            .arg(r.recusadas.size())
            .arg(r.clientesNovos.size()),
        &janela);
    resumo->setObjectName(QStringLiteral("lblResumo"));
    layout->addWidget(resumo);

    auto* linhaFiltro = new QHBoxLayout;
    auto* filtro = new QComboBox(&janela);
    filtro->setObjectName(QStringLiteral("cboMostrar"));
    filtro->addItems({QStringLiteral("Todas as linhas"), QStringLiteral("Recusadas"), QStringLiteral("Já existentes"),
                      QStringLiteral("Adicionadas")});
    auto* rotuloFiltro = new QLabel(QStringLiteral("&Mostrar:"), &janela);
    rotuloFiltro->setBuddy(filtro);
    linhaFiltro->addWidget(rotuloFiltro);
    linhaFiltro->addWidget(filtro);
    linhaFiltro->addStretch();
    layout->addLayout(linhaFiltro);

    auto* modelo = new ModeloRelatorio(r, &janela);
    auto* grade = new QTableView(&janela);
    grade->setObjectName(QStringLiteral("grdLinhas"));
    grade->setModel(modelo);
    grade->setSelectionBehavior(QAbstractItemView::SelectRows);
    grade->verticalHeader()->hide();
    grade->verticalHeader()->setDefaultSectionSize(grade->fontMetrics().height() + 6);
    grade->horizontalHeader()->setStretchLastSection(true);
    grade->setColumnWidth(0, 60);
    grade->setColumnWidth(1, 100);
    grade->setColumnWidth(2, 300);
    layout->addWidget(grade);
    // Opening on the refusals when there are any: they are what the user has to act on.
    QObject::connect(filtro, &QComboBox::currentIndexChanged, &janela, [modelo](int i) {
        modelo->filtra(i == 0 ? std::nullopt : std::optional(ModeloRelatorio::Situacao(i - 1)));
    });
    if (!r.recusadas.isEmpty())
        filtro->setCurrentIndex(1);

    auto* botoes = new QHBoxLayout;
    botoes->addStretch();
    auto* salvar = new QPushButton(QStringLiteral("&Salvar relatório..."), &janela);
    salvar->setObjectName(QStringLiteral("cmdSalvar"));
    auto* fechar = new QPushButton(QStringLiteral("&Fechar"), &janela);
    fechar->setObjectName(QStringLiteral("cmdFechar"));
    fechar->setDefault(true);
    botoes->addWidget(salvar);
    botoes->addWidget(fechar);
    layout->addLayout(botoes);
    QObject::connect(fechar, &QPushButton::clicked, &janela, &QDialog::accept);
    QObject::connect(salvar, &QPushButton::clicked, &janela, [&] {
        const QString inicial = QDir(pastaInicial(false))
                                    .filePath(nomeDeArquivo(QStringLiteral("Importação de %1.txt")
                                                                .arg(QFileInfo(pasta).completeBaseName())));
        const QString caminho = arquivoParaSalvar(&janela, QStringLiteral("Salvar relatório da importação"), inicial,
                                                  QStringLiteral("Texto (*.txt)"));
        if (caminho.isEmpty())
            return;
        QSaveFile arquivo(caminho);
        if (!arquivo.open(QIODevice::WriteOnly | QIODevice::Text)
            || arquivo.write(r.texto(pasta, planilha).toUtf8()) < 0 || !arquivo.commit()) {
            critico(&janela, QStringLiteral("Não foi possível gravar o relatório em %1: %2")
                                 .arg(QDir::toNativeSeparators(caminho), arquivo.errorString()));
        }
    });
    janela.resize(760, 460);
    janela.exec();
}

class FrmImportaAnalise final : public QWidget {
public:
    explicit FrmImportaAnalise(Session& session) : QWidget(nullptr, Qt::Window), m_session(session)
    {
        setObjectName(QStringLiteral("frmImportaAnalise"));
        setWindowTitle(QStringLiteral("Importação de Dados de Análise de Solo"));
        auto* layout = new QVBoxLayout(this);

        layout->addWidget(passo(1, QStringLiteral("Clique em \"Localizar arquivo Excel\" para abrir arquivo contendo "
                                                  "os dados da análise.")));
        auto* linha1 = new QHBoxLayout;
        m_abrir = botao(QStringLiteral("cmdAbrir"), QStringLiteral("&Localizar arquivo Excel"));
        linha1->addWidget(m_abrir);
        m_caminho = caixa(QStringLiteral("txtCaminho"));
        linha1->addWidget(m_caminho, 3);
        linha1->addWidget(new QLabel(QStringLiteral("Planilha:"), this));
        m_planilha = caixa(QStringLiteral("txtPlanilha"));
        linha1->addWidget(m_planilha, 1);
        layout->addLayout(linha1);

        layout->addWidget(passo(2, QStringLiteral("Informe em cada caixa de seleção abaixo a correspondente coluna "
                                                  "da planilha Excel")));
        auto* grade = new QGridLayout;
        // Two columns of boxes, read down the first and then the second.
        const int porColuna = (kCaixas + 1) / 2;
        for (int k = 0; k < kCaixas; ++k) {
            auto* cbo = new QComboBox(this);
            cbo->setObjectName(QStringLiteral("cboCad_%1").arg(k));
            cbo->setMinimumWidth(180);
            cbo->setMaxVisibleItems(20);
            auto* rotulo = new QLabel(rotulosCaixas()[k], this);
            rotulo->setBuddy(cbo);
            grade->addWidget(rotulo, k % porColuna, (k / porColuna) * 2);
            grade->addWidget(cbo, k % porColuna, (k / porColuna) * 2 + 1);
            m_caixas[static_cast<std::size_t>(k)] = cbo;
        }
        grade->setColumnStretch(1, 1);
        grade->setColumnStretch(3, 1);
        grade->setHorizontalSpacing(12);
        layout->addLayout(grade);
        auto* linha2 = new QHBoxLayout;
        m_instrucao = botao(QStringLiteral("cmdInstrução"), QStringLiteral("Leia as &orientações"));
        linha2->addWidget(m_instrucao);
        linha2->addStretch();
        layout->addLayout(linha2);

        layout->addWidget(passo(3, QStringLiteral("Verifique cuidadosamente se as informações anteriores estão "
                                                  "corretas. Feito isso, clique no comando \"Transferir dados\" para "
                                                  "dar início ao processo.")));
        auto* linha3 = new QHBoxLayout;
        m_transfere = botao(QStringLiteral("cmdTrasfBd"), QStringLiteral("&Transferir dados"));
        m_cancela = botao(QStringLiteral("cmdCancela"), QStringLiteral("&Cancelar"));
        m_cancela->setEnabled(false);
        m_fecha = botao(QStringLiteral("cmdFechar"), QStringLiteral("&Fechar"));
        linha3->addWidget(m_transfere);
        linha3->addWidget(m_cancela);
        linha3->addStretch();
        linha3->addWidget(m_fecha);
        layout->addLayout(linha3);

        auto* linha4 = new QHBoxLayout;
        linha4->addWidget(new QLabel(QStringLiteral("Progresso:"), this));
        m_barra = new QProgressBar(this);
        m_barra->setObjectName(QStringLiteral("pgb1"));
        m_barra->setRange(0, 1);
        m_barra->setValue(0);
        linha4->addWidget(m_barra, 1);
        layout->addLayout(linha4);
        m_progresso = new QLabel(this);
        m_progresso->setObjectName(QStringLiteral("lblProgres"));
        layout->addWidget(m_progresso);

        connect(m_abrir, &QPushButton::clicked, this, &FrmImportaAnalise::abre);
        connect(m_instrucao, &QPushButton::clicked, this, &FrmImportaAnalise::instrucoes);
        connect(m_transfere, &QPushButton::clicked, this, &FrmImportaAnalise::transfere);
        connect(m_cancela, &QPushButton::clicked, this, [this] { m_cancelar = true; });
        connect(m_fecha, &QPushButton::clicked, this, &QWidget::close);
        m_abrir->setFocus();
        resize(760, 560);
    }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        // A transfer under way is cancelled first; the window closes once it has been undone.
        if (m_transferindo) {
            m_cancelar = true;
            m_fecharDepois = true;
            event->ignore();
            return;
        }
        QWidget::closeEvent(event);
    }

private:
    QLabel* passo(int n, const QString& texto)
    {
        auto* l = new QLabel(QStringLiteral("<b>Passo %1:</b> %2").arg(n).arg(texto.toHtmlEscaped()), this);
        l->setObjectName(QStringLiteral("lblPasso%1").arg(n));
        l->setWordWrap(true);
        return l;
    }
    QPushButton* botao(const QString& nome, const QString& legenda)
    {
        auto* b = new QPushButton(legenda, this);
        b->setObjectName(nome);
        return b;
    }
    QLineEdit* caixa(const QString& nome)
    {
        auto* c = new QLineEdit(this);
        c->setObjectName(nome);
        c->setReadOnly(true);
        return c;
    }

    // Reads the workbook, telling the user what is wrong with it; nothing when it cannot be read.
    std::optional<Pasta> le(const QString& caminho)
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        try {
            Pasta pasta = abrePasta(caminho, OpcoesLeitura{kColunasEscolhiveis});
            QApplication::restoreOverrideCursor();
            return pasta;
        } catch (const ErroPasta& erro) {
            QApplication::restoreOverrideCursor();
            critico(this, erro.mensagem());
            return std::nullopt;
        }
    }

    void abre()
    {
        const QString caminho =
            arquivoParaAbrir(this, QStringLiteral("Localizar arquivo Excel"),
                             m_caminho->text().isEmpty() ? pastaInicial(false) : QFileInfo(m_caminho->text()).path(),
                             QStringLiteral("Planilhas (*.xls *.xlsx *.ods);;Planilhas Excel (*.xls *.xlsx);;"
                                            "Planilhas do LibreOffice Calc (*.ods)"));
        if (caminho.isEmpty())
            return;
        auto pasta = le(caminho);
        if (!pasta)
            return;
        m_pasta = std::move(pasta);
        m_lida = QFileInfo(caminho).lastModified();
        m_caminho->setText(QDir::toNativeSeparators(caminho));
        m_planilha->clear();
        // Enter takes the sheet offered: most workbooks hold their data in the first.
        for (const QString& nome : m_pasta->nomes()) {
            const Mensagem pergunta{Icone::Pergunta, QStringLiteral("A planilha contendo os dados é ") + nome
                                                         + QStringLiteral(" ?"),
                                    QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes};
            if (mostra(this, pergunta) == QMessageBox::Yes) {
                m_planilha->setText(nome);
                break;
            }
        }
        if (m_planilha->text().isEmpty())
            aviso(this, QStringLiteral("Nenhuma planilha foi escolhida. Clique de novo em \"Localizar arquivo Excel\" "
                                       "e responda \"Sim\" para a planilha que contém os dados."));
        preencheCaixas();
    }

    // "Selecione", then the first-row headings of the first forty columns, empty ones included, so
    // that a box's index is its column.
    void preencheCaixas()
    {
        const Planilha* planilha = m_pasta ? m_pasta->planilha(m_planilha->text()) : nullptr;
        QStringList itens;
        if (planilha) {
            itens << QStringLiteral("Selecione");
            for (int c = 1; c <= kColunasEscolhiveis; ++c)
                itens << planilha->celula(1, c).comoTexto();
        }
        for (QComboBox* cbo : m_caixas) {
            cbo->clear();
            cbo->addItems(itens);
            cbo->setCurrentIndex(itens.isEmpty() ? -1 : 0);
        }
    }

    void instrucoes()
    {
        if (mostra(this, Mensagem{Icone::Nenhum, msgInstrucoes(), QMessageBox::Yes | QMessageBox::No})
            != QMessageBox::Yes)
            return;
        const QString inicial = QDir(pastaInicial(false)).filePath(QStringLiteral("Planilha exemplo.xlsx"));
        const QString caminho = arquivoParaSalvar(this, QStringLiteral("Salvar planilha exemplo"), inicial,
                                                  QStringLiteral("Pasta de trabalho do Excel (*.xlsx)"));
        if (caminho.isEmpty())
            return;
        const QString comExtensao =
            caminho.endsWith(QLatin1String(".xlsx"), Qt::CaseInsensitive) ? caminho : caminho + QStringLiteral(".xlsx");
        try {
            GeraPlanExcel(comExtensao);
        } catch (const ErroPasta& erro) {
            critico(this, erro.mensagem());
            return;
        }
        mostraArquivo(this, comExtensao);
    }

    void transfere()
    {
        m_progresso->setText(QStringLiteral("Acessando os dados..."));
        Mapeamento colunas{};
        for (int k = 0; k < kCaixas; ++k)
            colunas[static_cast<std::size_t>(k)] = std::max(0, m_caixas[static_cast<std::size_t>(k)]->currentIndex());
        if (std::find(colunas.begin(), colunas.end(), 0) != colunas.end() || !m_pasta) {
            aviso(this, kMsgCaixasSemColuna);
            m_progresso->setText(QStringLiteral("Erro na transferência."));
            return;
        }
        // The workbook may have been changed and saved since it was opened here.
        const QString caminho = QDir::fromNativeSeparators(m_caminho->text());
        if (QFileInfo(caminho).lastModified() != m_lida) {
            auto pasta = le(caminho);
            if (!pasta) {
                m_progresso->setText(QStringLiteral("Erro na transferência."));
                return;
            }
            m_pasta = std::move(pasta);
            m_lida = QFileInfo(caminho).lastModified();
        }
        const Planilha* planilha = m_pasta->planilha(m_planilha->text());
        if (!planilha) {
            aviso(this, QStringLiteral("A planilha %1 não está mais na pasta de trabalho.").arg(m_planilha->text()));
            m_progresso->setText(QStringLiteral("Erro na transferência."));
            return;
        }

        emAndamento(true);
        QElapsedTimer relogio;
        relogio.start();
        Progresso progresso;
        progresso.etapa = [this](const QString& etapa, int linhas) {
            m_progresso->setText(etapa);
            m_barra->setRange(1, std::max(1, linhas));
            m_barra->setValue(1);
            QApplication::processEvents();
        };
        // The window is repainted and the Cancel button heard a few times a second, not at every row.
        progresso.linha = [this, &relogio](int linha) {
            if (relogio.elapsed() >= 50) {
                m_barra->setValue(linha);
                QApplication::processEvents();
                relogio.restart();
            }
            return !m_cancelar;
        };
        std::optional<RelatorioImportacao> relatorio;
        try {
            relatorio = ImportaAnalises(m_session.db, *planilha, colunas, progresso);
        } catch (const StoreError& erro) {
            emAndamento(false);
            m_progresso->setText(QStringLiteral("Erro na transferência."));
            erroBanco(this, erro);
            return fechaSePedido();
        }
        emAndamento(false);
        const QString nomePasta = QFileInfo(caminho).fileName();
        if (relatorio->cancelada) {
            m_progresso->setText(QStringLiteral("Transferência cancelada."));
            informacao(this, QStringLiteral("A transferência foi cancelada. Nenhum cliente e nenhuma análise foram "
                                            "gravados."));
            return fechaSePedido();
        }
        m_barra->setValue(m_barra->maximum());
        m_progresso->setText(QStringLiteral("Transferência concluída."));
        informacao(this, msgTransferidas(nomePasta));
        mostraRelatorio(this, *relatorio, nomePasta, planilha->nome());
        close();
    }

    void emAndamento(bool sim)
    {
        m_transferindo = sim;
        m_cancelar = false;
        m_abrir->setEnabled(!sim);
        m_transfere->setEnabled(!sim);
        m_instrucao->setEnabled(!sim);
        m_fecha->setEnabled(!sim);
        for (QComboBox* cbo : m_caixas)
            cbo->setEnabled(!sim);
        m_cancela->setEnabled(sim);
        if (sim)
            m_cancela->setFocus();
    }

    void fechaSePedido()
    {
        if (m_fecharDepois)
            close();
    }

    Session& m_session;
    QPushButton* m_abrir = nullptr;
    QPushButton* m_instrucao = nullptr;
    QPushButton* m_transfere = nullptr;
    QPushButton* m_cancela = nullptr;
    QPushButton* m_fecha = nullptr;
    QLineEdit* m_caminho = nullptr;
    QLineEdit* m_planilha = nullptr;
    std::array<QComboBox*, kCaixas> m_caixas{};
    QProgressBar* m_barra = nullptr;
    QLabel* m_progresso = nullptr;
    std::optional<Pasta> m_pasta;
    QDateTime m_lida;
    bool m_transferindo = false;
    bool m_cancelar = false;
    bool m_fecharDepois = false;
};

} // namespace

QWidget* criaFrmImportaAnalise(Session& session, WindowRegistry&) { return new FrmImportaAnalise(session); }

} // namespace lavra::ui
