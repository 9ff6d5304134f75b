#include "app/session.h"
#include "app/ui/andamento.h"
#include "app/ui/dialogs.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "app/windownames.h"
#include "exchange/migration.h"
#include "exchange/workbook.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <future>
#include <optional>
#include <utility>

namespace lavra::ui {

namespace {

using namespace std::chrono_literals;

const QString kErro = QStringLiteral("Erro na transferência.");

// Brings the data of the spreadsheet edition into the database, in one step.
class FrmAtualiza final : public QWidget {
public:
    explicit FrmAtualiza(Session& session) : QWidget(nullptr, Qt::Window), m_session(session)
    {
        setWindowTitle(QStringLiteral("Importação de dados a partir da versão 1.0 Lavra QRT"));
        auto* layout = new QVBoxLayout(this);
        const auto texto = [this, layout](const QString& t) {
            auto* l = new QLabel(t, this);
            l->setWordWrap(true);
            layout->addWidget(l);
            return l;
        };
        texto(QStringLiteral(
            "Clique no comando \"Localizar 1.0 Lavra QRT\" para exibir a janela  de localização do arquivo Excel com o "
            "nome \"1.0 Lavra QRT.xls\". Procure em  C:\\Arquivos de programas\\LVRQRT. Se você escolheu outro "
            "diretório no momento da instalação, verifique nesse diritório."));
        m_abrir = botao(QStringLiteral("cmdAbrir"), QStringLiteral("&Localizar 1.0 Lavra QRT"));
        layout->addWidget(m_abrir, 0, Qt::AlignLeft);
        m_caminho = new QLineEdit(this);
        m_caminho->setObjectName(QStringLiteral("txtCaminho"));
        texto(QStringLiteral(
                  "Se o comando \"Localizar 1.0 Lavra QRT\"  não exibir a janela de localização, digite o endereço do "
                  "\"1.0 Lavra QRT\" na caixa abaixo."))
            ->setBuddy(m_caminho);
        layout->addWidget(m_caminho);
        texto(QStringLiteral(
            "Após ter localizado o arquivo \"1.0 Lavra QRT.xls e seu endereço aparecer no campo acima, clique no "
            "comando \"Transferir dados\" para dar início ao processo."));
        texto(QStringLiteral(
            "Atenção! A transferência dos dados requer que o Excel seja fechado.  Se houver planilhas abertas elas "
            "serão fechadas automaticamente. Salve e feche as planilhas abertas. Durante o processo de transfência, "
            "não abra nenhum arquivo Excel até o final do processo."));

        auto* botoes = new QHBoxLayout;
        m_transferir = botao(QStringLiteral("cmdTrasfBd"), QStringLiteral("&Transferir dados"));
        m_transferir->setDefault(true);
        auto* cancelar = botao(QStringLiteral("cmdCancelar"), QStringLiteral("&Interromper"));
        // Left from an earlier layout: it does nothing and is not shown.
        botao(QStringLiteral("Command2"), QStringLiteral("Command2"))->hide();
        botoes->addWidget(m_transferir);
        botoes->addWidget(cancelar);
        botoes->addStretch();
        layout->addLayout(botoes);

        auto* linhaBarra = new QHBoxLayout;
        m_barra = new QProgressBar(this);
        m_barra->setObjectName(QStringLiteral("pgb1"));
        m_barra->setTextVisible(false);
        linhaBarra->addWidget(rotulo(QStringLiteral("Progresso:"), m_barra, this));
        linhaBarra->addWidget(m_barra, 1);
        layout->addLayout(linhaBarra);
        m_progresso = new QLabel(this);
        m_progresso->setObjectName(QStringLiteral("lblProgres"));
        layout->addWidget(m_progresso);
        m_andamento = std::make_unique<Andamento>(m_barra, m_progresso, cancelar);

        m_resumo = new QPlainTextEdit(this);
        m_resumo->setObjectName(QStringLiteral("txtResumo"));
        m_resumo->setReadOnly(true);
        m_resumo->setPlaceholderText(QStringLiteral("O resultado da transferência aparecerá aqui."));
        layout->addWidget(rotulo(QStringLiteral("Resultado:"), m_resumo, this));
        layout->addWidget(m_resumo, 1);

        // The transfer begins on the timer, once the window has shown that it began.
        m_timer = new QTimer(this);
        m_timer->setObjectName(QStringLiteral("Timer1"));
        m_timer->setInterval(400);
        m_timer->setSingleShot(true);
        connect(m_timer, &QTimer::timeout, this, [this] { TransfereDados(); });
        connect(m_abrir, &QPushButton::clicked, this, [this] { localiza(); });
        connect(m_transferir, &QPushButton::clicked, this, [this] { comeca(); });
        connect(m_caminho, &QLineEdit::returnPressed, this, [this] { comeca(); });
        resize(620, 520);
    }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (m_timer->isActive())
            m_timer->stop();
        if (!m_andamento->adiaFechamento(event))
            QWidget::closeEvent(event);
    }

private:
    QPushButton* botao(const QString& nome, const QString& legenda)
    {
        auto* b = new QPushButton(legenda, this);
        b->setObjectName(nome);
        return b;
    }

    void localiza()
    {
        const QString atual = m_caminho->text().trimmed();
        const QString caminho = arquivoParaAbrir(
            this, QStringLiteral("Localizar 1.0 Lavra QRT"),
            atual.isEmpty() ? pastaInicial(false) : QFileInfo(atual).path(),
            QStringLiteral("Planilhas Excel (*.xls *.xlsx);;Todos os arquivos (*)"));
        if (!caminho.isEmpty())
            m_caminho->setText(QDir::toNativeSeparators(caminho));
    }

    void comeca()
    {
        if (m_andamento->emCurso() || m_timer->isActive())
            return;
        m_resumo->clear();
        m_barra->setRange(0, 1);
        m_barra->setValue(0);
        m_progresso->setText(QStringLiteral("Acessando os dados..."));
        m_timer->start();
    }

    void erro(const QString& mensagem)
    {
        m_andamento->termina(kErro);
        critico(this, mensagem);
    }

    void TransfereDados()
    {
        const QString caminho = QDir::fromNativeSeparators(m_caminho->text().trimmed());
        if (caminho.isEmpty()) {
            aviso(this, kMsgSemArquivo);
            m_progresso->setText(kErro);
            m_caminho->setFocus();
            return;
        }
        const QString nome = QFileInfo(caminho).fileName();
        if (nome != kPastaAnterior) {
            const Mensagem pergunta{Icone::Critico, perguntaNomeDiferente(nome), QMessageBox::Yes | QMessageBox::No,
                                    QMessageBox::Yes};
            if (mostra(this, pergunta) != QMessageBox::Yes) {
                m_progresso->setText(kErro);
                return;
            }
        }
        emAndamento(true);
        m_andamento->comeca(QStringLiteral("Acessando os dados..."));
        transfere(caminho);
        emAndamento(false);
        m_andamento->fechaSeAdiado(this);
    }

    // The workbook is read on a thread of its own, so the window keeps answering.
    std::optional<Pasta> le(const QString& caminho)
    {
        auto leitura = std::async(std::launch::async, [caminho] { return abrePasta(caminho); });
        while (leitura.wait_for(50ms) != std::future_status::ready)
            m_andamento->aguarda(QStringLiteral("Acessando os dados..."));
        try {
            return leitura.get();
        } catch (const ErroPasta& e) {
            erro(e.mensagem());
        }
        return std::nullopt;
    }

    void transfere(const QString& caminho)
    {
        const std::optional<Pasta> pasta = le(caminho);
        if (!pasta)
            return;
        if (m_andamento->cancelado())
            return m_andamento->termina(QStringLiteral("Transferência interrompida: nada foi gravado."));
        const Planilha* planilha = pasta->planilha(kPlanilhaAnterior);
        if (!planilha || !TestaPlanilha(*planilha))
            return erro(kMsgEstrutura);

        ProgressoMigracao progresso;
        int maximo = 1;
        bool primeira = true;
        // The first pass enables Interromper again after the wait for the workbook.
        progresso.etapa = [this, &maximo, &primeira](const QString& etapa, int max) {
            maximo = max;
            m_barra->setRange(0, std::max(1, max));
            m_barra->setValue(0);
            if (std::exchange(primeira, false))
                m_andamento->comeca(etapa);
            else
                m_andamento->etapa(etapa);
        };
        progresso.passo = [this, &maximo](int valor) { return m_andamento->passo(valor, maximo); };
        progresso.substituiFertilizantes = [this] {
            return mostra(this, Mensagem{Icone::Exclamacao, kMsgSubstituir, QMessageBox::Yes | QMessageBox::No,
                                         QMessageBox::Yes})
                == QMessageBox::Yes;
        };
        RelatorioMigracao relatorio;
        try {
            relatorio = lavra::TransfereDados(m_session.db, *planilha, progresso);
        } catch (const StoreError& e) {
            m_andamento->termina(kErro);
            erroBanco(this, e);
            return;
        }
        m_resumo->setPlainText(relatorio.texto());
        if (relatorio.cancelada) {
            m_andamento->termina(QStringLiteral("Transferência interrompida: nada foi gravado."));
            return;
        }
        m_barra->setRange(0, 1);
        m_barra->setValue(1);
        m_andamento->termina(QStringLiteral("Transferência concluída."));
        informacao(this, msgAtualizado(objectName()));
    }

    void emAndamento(bool sim)
    {
        m_abrir->setEnabled(!sim);
        m_transferir->setEnabled(!sim);
        m_caminho->setReadOnly(sim);
    }

    Session& m_session;
    QPushButton* m_abrir = nullptr;
    QPushButton* m_transferir = nullptr;
    QLineEdit* m_caminho = nullptr;
    QProgressBar* m_barra = nullptr;
    QLabel* m_progresso = nullptr;
    QPlainTextEdit* m_resumo = nullptr;
    QTimer* m_timer = nullptr;
    std::unique_ptr<Andamento> m_andamento;
};

} // namespace

QWidget* criaFrmAtualiza(Session& session, WindowRegistry&)
{
    auto* w = new FrmAtualiza(session);
    w->setObjectName(janela::kAtualiza);
    return w;
}

} // namespace lavra::ui
