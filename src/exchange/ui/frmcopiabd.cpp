#include "app/session.h"
#include "app/ui/andamento.h"
#include "app/ui/dialogs.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "exchange/dbcopy.h"
#include "store/storeerror.h"
#include "windows.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStorageInfo>
#include <QTreeView>
#include <QVBoxLayout>

namespace lavra::ui {

namespace {

// The places a copy can go: the home folder, the system's root and every disk mounted for the
// user, a memory stick among them; not the system's own pseudo file systems.
QList<std::pair<QString, QString>> discos()
{
    QList<std::pair<QString, QString>> lista{{QStringLiteral("Pasta pessoal (%1)").arg(QDir::homePath()), QDir::homePath()},
                                             {QStringLiteral("Sistema (/)"), QStringLiteral("/")}};
    static const QStringList internos = {QStringLiteral("/proc"), QStringLiteral("/sys"), QStringLiteral("/dev"),
                                         QStringLiteral("/run"), QStringLiteral("/snap"), QStringLiteral("/boot")};
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        const QString raiz = volume.rootPath();
        if (!volume.isValid() || !volume.isReady() || volume.isReadOnly() || raiz == QLatin1String("/"))
            continue;
        const bool interno = std::any_of(internos.begin(), internos.end(), [&raiz](const QString& p) {
            return raiz == p || raiz.startsWith(p + QLatin1Char('/'));
        });
        // Disks mounted for the user under /run/media are offered; the rest of /run is the system's.
        if (interno && !raiz.startsWith(QStringLiteral("/run/media/")))
            continue;
        lista.append({QStringLiteral("%1 (%2)").arg(volume.displayName(), raiz), raiz});
    }
    return lista;
}

// A copy of the database file under another name and place: the program's backup.
class FrmCopiaBd final : public QWidget {
public:
    explicit FrmCopiaBd(Session& session) : QWidget(nullptr, Qt::Window), m_session(session)
    {
        setWindowTitle(QStringLiteral("Copiar Banco de Dados"));
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(new QLabel(QStringLiteral("Selecione o local onde será salvo o banco de dados"), this));

        m_drive = new QComboBox(this);
        m_drive->setObjectName(QStringLiteral("Drive1"));
        for (const auto& [texto, raiz] : discos())
            m_drive->addItem(texto, raiz);
        layout->addWidget(m_drive);

        auto* grade = new QGridLayout;
        m_modelo = new QFileSystemModel(this);
        m_modelo->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
        m_modelo->setRootPath(QStringLiteral("/"));
        m_dir = new QTreeView(this);
        m_dir->setObjectName(QStringLiteral("Dir1"));
        m_dir->setModel(m_modelo);
        for (int c = 1; c < m_modelo->columnCount(); ++c)
            m_dir->hideColumn(c);
        m_dir->header()->hide();
        m_dir->setSelectionMode(QAbstractItemView::SingleSelection);
        m_arquivos = new QListWidget(this);
        m_arquivos->setObjectName(QStringLiteral("File1"));
        m_arquivos->setSelectionMode(QAbstractItemView::NoSelection);
        auto* conteudo = rotulo(QStringLiteral("Conteúdo do diretório"), m_arquivos, this);
        m_pastaEscolhida = new QLabel(this);
        m_pastaEscolhida->setObjectName(QStringLiteral("lblPasta"));
        m_pastaEscolhida->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grade->addWidget(m_dir, 0, 0, 3, 1);
        grade->addWidget(conteudo, 0, 1);
        grade->addWidget(m_arquivos, 1, 1);
        grade->addWidget(m_pastaEscolhida, 3, 0, 1, 2);
        grade->setColumnStretch(0, 3);
        grade->setColumnStretch(1, 2);
        layout->addLayout(grade, 1);

        auto* linha = new QHBoxLayout;
        m_nome = new QLineEdit(kNomeInicialDaCopia, this);
        m_nome->setObjectName(QStringLiteral("txtNome"));
        auto* nome = rotulo(QStringLiteral("Nome:"), m_nome, this);
        m_salvar = new QPushButton(QStringLiteral("Salvar"), this);
        m_salvar->setObjectName(QStringLiteral("Command1"));
        m_salvar->setDefault(true);
        m_fechar = new QPushButton(QStringLiteral("Cancelar"), this);
        m_fechar->setObjectName(QStringLiteral("cmdCancel"));
        linha->addWidget(nome);
        linha->addWidget(m_nome, 1);
        linha->addWidget(m_salvar);
        linha->addWidget(m_fechar);
        layout->addLayout(linha);

        auto* andamento = new QHBoxLayout;
        m_barra = new QProgressBar(this);
        m_barra->setObjectName(QStringLiteral("pgbCopia"));
        m_barra->setValue(0);
        m_barra->setTextVisible(false);
        m_interrompe = new QPushButton(QStringLiteral("Interromper"), this);
        m_interrompe->setObjectName(QStringLiteral("cmdInterrompe"));
        andamento->addWidget(m_barra, 1);
        andamento->addWidget(m_interrompe);
        layout->addLayout(andamento);
        m_progresso = new QLabel(this);
        m_progresso->setObjectName(QStringLiteral("lblProgres"));
        layout->addWidget(m_progresso);
        auto* origem = new QLabel(QStringLiteral("Banco de dados em uso: %1")
                                      .arg(QDir::toNativeSeparators(QFileInfo(m_session.db.strConn).absoluteFilePath())),
                                  this);
        origem->setObjectName(QStringLiteral("lblOrigem"));
        origem->setTextInteractionFlags(Qt::TextSelectableByMouse);
        origem->setWordWrap(true);
        layout->addWidget(origem);
        m_andamento.emplace(m_barra, m_progresso, m_interrompe);

        connect(m_drive, &QComboBox::activated, this, [this] { mostraDisco(m_drive->currentIndex()); });
        connect(m_dir->selectionModel(), &QItemSelectionModel::selectionChanged, this, &FrmCopiaBd::escolhePasta);
        connect(m_salvar, &QPushButton::clicked, this, &FrmCopiaBd::salva);
        connect(m_nome, &QLineEdit::returnPressed, this, &FrmCopiaBd::salva);
        connect(m_fechar, &QPushButton::clicked, this, &QWidget::close);
        // The disk that holds the folder of the user's documents, and that folder.
        const QString inicial = pastaInicial(false);
        int disco = 0;
        for (int i = 0; i < m_drive->count(); ++i) {
            const QString raiz = m_drive->itemData(i).toString();
            if (inicial.startsWith(raiz) && raiz.size() > m_drive->itemData(disco).toString().size())
                disco = i;
        }
        m_drive->setCurrentIndex(disco);
        vaiPara(inicial);
        resize(640, 520);
    }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (!m_andamento->adiaFechamento(event))
            QWidget::closeEvent(event);
    }

private:
    // The whole tree stays in view, so that one can always go up; a disk is where it begins.
    void mostraDisco(int indice) { vaiPara(m_drive->itemData(indice).toString()); }

    void vaiPara(const QString& pasta)
    {
        const QModelIndex indice = m_modelo->index(pasta);
        if (!indice.isValid())
            return;
        m_dir->selectionModel()->setCurrentIndex(indice, QItemSelectionModel::ClearAndSelect);
        m_dir->scrollTo(indice);
        m_dir->expand(indice);
    }

    void escolhePasta()
    {
        const QModelIndexList escolhidas = m_dir->selectionModel()->selectedIndexes();
        if (escolhidas.isEmpty())
            return;
        m_pasta = m_modelo->filePath(escolhidas.first());
        m_pastaEscolhida->setText(QStringLiteral("Pasta: %1").arg(QDir::toNativeSeparators(m_pasta)));
        listaArquivos();
    }

    void listaArquivos()
    {
        m_arquivos->clear();
        m_arquivos->addItems(ArquivosDaPasta(m_pasta));
    }

    QStringList listados() const
    {
        QStringList nomes;
        for (int i = 0; i < m_arquivos->count(); ++i)
            nomes << m_arquivos->item(i)->text();
        return nomes;
    }

    void salva()
    {
        if (m_andamento->emCurso())
            return;
        if (m_nome->text().isEmpty()) {
            aviso(this, QStringLiteral("Informe um nome para o arquivo!"));
            m_nome->setFocus();
            return;
        }
        if (m_nome->text().contains(QLatin1Char('/'))) {
            aviso(this, QStringLiteral("O nome do arquivo não pode conter o caractere \"/\"."));
            m_nome->setFocus();
            return;
        }
        if (m_pasta.isEmpty()) {
            aviso(this, QStringLiteral("Selecione a pasta onde será salva a cópia."));
            m_dir->setFocus();
            return;
        }
        const QString nome = NomeDaCopia(m_nome->text());
        const QString existente = ArquivoDeMesmoNome(listados(), nome);
        if (!existente.isEmpty()) {
            const auto resposta = mostra(this, Mensagem{Icone::Informacao,
                                                        QStringLiteral("O arquivo %1 já existe!\n\nSubstituir o arquivo "
                                                                       "existente?")
                                                            .arg(nome),
                                                        QMessageBox::Yes | QMessageBox::No});
            if (resposta != QMessageBox::Yes)
                return;
        }
        emAndamento(true);
        m_andamento->comeca(QStringLiteral("Copiando o banco de dados..."));
        bool feita = false;
        try {
            feita = CopiaBanco(m_session.db.strConn, CaminhoDaCopia(m_pasta, nome),
                               existente.isEmpty() ? QString() : CaminhoDaCopia(m_pasta, existente),
                               [this](int copiadas, int total) { return m_andamento->passo(copiadas, total); });
        } catch (const StoreError& erro) {
            emAndamento(false);
            m_andamento->termina(QStringLiteral("A cópia não foi feita."));
            erroBanco(this, erro);
            return m_andamento->fechaSeAdiado(this);
        }
        emAndamento(false);
        listaArquivos();
        if (!feita) {
            m_andamento->termina(QStringLiteral("Cópia interrompida; nada foi gravado."));
            return m_andamento->fechaSeAdiado(this);
        }
        m_andamento->termina(QStringLiteral("Cópia verificada: %1").arg(QDir::toNativeSeparators(CaminhoDaCopia(m_pasta, nome))));
        informacao(this, nome + QStringLiteral(" Copiado com sucesso"));
    }

    void emAndamento(bool sim)
    {
        for (QWidget* w : std::initializer_list<QWidget*>{m_drive, m_dir, m_nome, m_salvar, m_fechar})
            w->setEnabled(!sim);
    }

    Session& m_session;
    QComboBox* m_drive = nullptr;
    QFileSystemModel* m_modelo = nullptr;
    QTreeView* m_dir = nullptr;
    QListWidget* m_arquivos = nullptr;
    QLabel* m_pastaEscolhida = nullptr;
    QLineEdit* m_nome = nullptr;
    QPushButton* m_salvar = nullptr;
    QPushButton* m_fechar = nullptr;
    QProgressBar* m_barra = nullptr;
    QPushButton* m_interrompe = nullptr;
    QLabel* m_progresso = nullptr;
    std::optional<Andamento> m_andamento;
    QString m_pasta;
};

} // namespace

QWidget* criaFrmCopiaBd(Session& session, WindowRegistry&) { return new FrmCopiaBd(session); }

} // namespace lavra::ui
