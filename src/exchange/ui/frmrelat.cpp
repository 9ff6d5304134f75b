#include "app/session.h"
#include "app/ui/andamento.h"
#include "app/ui/desktop.h"
#include "app/ui/dialogs.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "base/numbers.h"
#include "exchange/querytool.h"
#include "exchange/workbook.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// Rows one picks in a list are the rows the user selected, not the one the list made current.

// The workbook of a query goes where passing files go, under a name of its own, so that one
// still open in the spreadsheet program is never written over; the user saves it where wanted.
QString caminhoDaPlanilha(const QString& origem)
{
    QDir pasta(QStandardPaths::writableLocation(QStandardPaths::TempLocation));
    pasta.mkpath(QStringLiteral("Lavra"));
    pasta.cd(QStringLiteral("Lavra"));
    const QString base = nomeDeArquivo(QStringLiteral("Consulta %1 %2")
                                           .arg(origem, QDateTime::currentDateTime().toString(
                                                            QStringLiteral("yyyy-MM-dd hh-mm-ss"))));
    QString caminho = pasta.filePath(base + QStringLiteral(".xlsx"));
    for (int n = 2; QFileInfo::exists(caminho); ++n)
        caminho = pasta.filePath(QStringLiteral("%1 (%2).xlsx").arg(base).arg(n));
    return caminho;
}

// One table filtered on one of its fields, shown in the spreadsheet program or as text.
class FrmRelat final : public QWidget {
public:
    explicit FrmRelat(Session& session) : QWidget(nullptr, Qt::Window), m_session(session)
    {
        setWindowTitle(QStringLiteral("Consultas"));
        auto* layout = new QVBoxLayout(this);

        auto* listas = new QGridLayout;
        m_tabs = new QListWidget(this);
        m_tabs->setObjectName(QStringLiteral("lstTabs"));
        for (const OrigemConsulta& origem : origensConsulta())
            m_tabs->addItem(origem.texto);
        m_campos = new QListWidget(this);
        m_campos->setObjectName(QStringLiteral("lstCampos"));
        semEscolhaInicial(m_tabs);
        semEscolhaInicial(m_campos);
        listas->addWidget(rotulo(QStringLiteral("1º: Selecione a origem dos dados"), m_tabs, this), 0, 0);
        listas->addWidget(m_tabs, 1, 0);
        listas->addWidget(rotulo(QStringLiteral("2º Selecione o campo para filtrar os dados"), m_campos, this), 0, 1);
        listas->addWidget(m_campos, 1, 1);
        layout->addLayout(listas);

        m_crit = new QComboBox(this);
        m_crit->setObjectName(QStringLiteral("cboCrit"));
        m_crit->addItems(criteriosConsulta());
        m_crit->setCurrentIndex(-1);
        m_crit->setPlaceholderText(QStringLiteral("(escolha)"));
        layout->addWidget(rotulo(QStringLiteral("3º Escolha o critério de filtragem"), m_crit, this));
        layout->addWidget(m_crit);

        m_info = new QLineEdit(this);
        m_info->setObjectName(QStringLiteral("txtInfoCrit"));
        layout->addWidget(rotulo(QStringLiteral("4º Defina a informação para  o critério de filltragem"), m_info, this));
        layout->addWidget(m_info);

        auto* frame = new QGroupBox(QStringLiteral("Arquivo de saída dos dados da consulta"), this);
        frame->setObjectName(QStringLiteral("Frame1"));
        auto* opcoes = new QHBoxLayout(frame);
        m_excel = new QRadioButton(QStringLiteral("Exibir em Microsoft Excel"), frame);
        m_excel->setObjectName(QStringLiteral("optExcel"));
        m_excel->setChecked(true);
        m_bloco = new QRadioButton(QStringLiteral("Exibir em Bloco de Nota"), frame);
        m_bloco->setObjectName(QStringLiteral("optBloco"));
        opcoes->addWidget(m_excel);
        opcoes->addWidget(m_bloco);
        opcoes->addStretch();
        layout->addWidget(frame);

        auto* botoes = new QHBoxLayout;
        m_gera = new QPushButton(QStringLiteral("Gerar  arquivo"), this);
        m_gera->setObjectName(QStringLiteral("cmdGera"));
        m_gera->setDefault(true);
        m_cancela = new QPushButton(QStringLiteral("Cancelar"), this);
        m_cancela->setObjectName(QStringLiteral("cmdCancela"));
        botoes->addStretch();
        botoes->addWidget(m_gera);
        botoes->addWidget(m_cancela);
        layout->addLayout(botoes);
        m_barra = new QProgressBar(this);
        m_barra->setObjectName(QStringLiteral("pgbConsulta"));
        m_barra->setValue(0);
        m_barra->setTextVisible(false);
        layout->addWidget(m_barra);
        m_progresso = new QLabel(this);
        m_progresso->setObjectName(QStringLiteral("lblProgres"));
        layout->addWidget(m_progresso);
        m_andamento.emplace(m_barra, m_progresso, m_cancela);

        connect(m_tabs, &QListWidget::itemSelectionChanged, this, &FrmRelat::escolheOrigem);
        connect(m_gera, &QPushButton::clicked, this, &FrmRelat::gera);
        connect(m_info, &QLineEdit::returnPressed, this, &FrmRelat::gera);
        resize(620, 560);
    }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (!m_andamento->adiaFechamento(event))
            QWidget::closeEvent(event);
    }

private:
    void escolheOrigem()
    {
        const int origem = linhaEscolhida(m_tabs);
        if (origem < 0)
            return;
        m_session.TabelaConsulta = origensConsulta()[origem].tabela;
        m_campos->clear();
        m_listados.clear();
        try {
            m_listados = CamposDaOrigem(m_session.db, m_session.TabelaConsulta);
        } catch (const StoreError& erro) {
            erroBanco(this, erro);
            return;
        }
        for (const CampoConsulta& campo : m_listados)
            m_campos->addItem(campo.nome);
    }

    void gera()
    {
        if (m_andamento->emCurso())
            return;
        PedidoConsulta pedido;
        pedido.origem = linhaEscolhida(m_tabs);
        pedido.campo = linhaEscolhida(m_campos);
        pedido.criterio = m_crit->currentIndex();
        pedido.informacao = m_info->text();
        pedido.campos = m_listados;
        if (const Parada parada = ChecaConsulta(pedido)) {
            mostra(this, *parada);
            return;
        }
        const OrigemConsulta& origem = origensConsulta()[pedido.origem];
        m_session.TabelaConsulta = origem.tabela;
        const SaidaConsulta saida = m_excel->isChecked() ? SaidaConsulta::Planilha : SaidaConsulta::Texto;
        // The text file sits beside the database, as it always has.
        const QString caminho = saida == SaidaConsulta::Planilha
            ? caminhoDaPlanilha(origem.texto)
            : QFileInfo(m_session.db.strConn).absoluteDir().filePath(QStringLiteral("Temp.txt"));

        emAndamento(true);
        m_andamento->comeca(QStringLiteral("Consultando %1...").arg(origem.texto));
        ResultadoConsulta resultado;
        bool falhou = false;
        try {
            ProgressoConsulta progresso;
            progresso.linha = [this](qint64 feitas, qint64 total) { return m_andamento->passo(feitas, total); };
            progresso.gravando = [this] { m_andamento->aguarda(QStringLiteral("Gravando a planilha...")); };
            resultado = GeraConsulta(m_session.db, pedido, saida, caminho, progresso);
        } catch (const StoreError& erro) {
            falhou = true;
            m_andamento->termina(QStringLiteral("Erro na consulta."));
            erroBanco(this, erro);
        } catch (const ErroPasta& erro) {
            falhou = true;
            m_andamento->termina(QStringLiteral("Erro na gravação do arquivo."));
            critico(this, erro.mensagem());
        }
        emAndamento(false);
        if (!falhou)
            conclui(resultado, caminho);
        m_andamento->fechaSeAdiado(this);
    }

    void conclui(const ResultadoConsulta& resultado, const QString& caminho)
    {
        if (resultado.cancelada) {
            m_andamento->termina(QStringLiteral("Consulta cancelada."));
        } else if (resultado.linhas == 0) {
            m_andamento->termina(QString());
            informacao(this, QStringLiteral("Nenhuma informação encontrada para esta definição de consulta."));
        } else {
            m_andamento->termina(resultado.linhas == 1 ? QStringLiteral("1 registro encontrado.")
                                                       : QStringLiteral("%1 registros encontrados.")
                                                             .arg(machineLocale().toString(resultado.linhas)));
            mostraArquivo(this, caminho);
        }
    }

    void emAndamento(bool sim)
    {
        for (QWidget* w : std::initializer_list<QWidget*>{m_tabs, m_campos, m_crit, m_info, m_excel, m_bloco, m_gera})
            w->setEnabled(!sim);
    }

    Session& m_session;
    QListWidget* m_tabs = nullptr;
    QListWidget* m_campos = nullptr;
    QComboBox* m_crit = nullptr;
    QLineEdit* m_info = nullptr;
    QRadioButton* m_excel = nullptr;
    QRadioButton* m_bloco = nullptr;
    QPushButton* m_gera = nullptr;
    QPushButton* m_cancela = nullptr;
    QProgressBar* m_barra = nullptr;
    QLabel* m_progresso = nullptr;
    std::optional<Andamento> m_andamento;
    QList<CampoConsulta> m_listados;
};

} // namespace

QWidget* criaFrmRelat(Session& session, WindowRegistry&) { return new FrmRelat(session); }

} // namespace lavra::ui
