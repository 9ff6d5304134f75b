#include "tabelasdialogos.h"

#include "app/ui/dialogs.h"
#include "app/ui/messages.h"
#include "exchange/workbook.h"
#include "store/storeerror.h"

#include <QDialog>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace lavra::ui {

namespace {

const QString kFiltroXlsx = QStringLiteral("Pasta de trabalho do Excel (*.xlsx)");

QPlainTextEdit* caixaDeTexto(const QString& nome, const QString& texto, QWidget* pai)
{
    auto* caixa = new QPlainTextEdit(texto, pai);
    caixa->setObjectName(nome);
    caixa->setReadOnly(true);
    caixa->setTabChangesFocus(true);
    caixa->setLineWrapMode(QPlainTextEdit::NoWrap);
    return caixa;
}

} // namespace

QString pastaParaSalvar(QWidget* pai, const QString& titulo, const QString& nome)
{
    const QString inicial = QDir(pastaInicial(false)).filePath(nomeDeArquivo(nome) + QStringLiteral(".xlsx"));
    QString caminho = arquivoParaSalvar(pai, titulo, inicial, kFiltroXlsx);
    // Without the ending, the spreadsheet program would not know the file for its own.
    if (!caminho.isEmpty() && !caminho.endsWith(QStringLiteral(".xlsx"), Qt::CaseInsensitive))
        caminho += QStringLiteral(".xlsx");
    return caminho;
}

void mostraHistorico(QWidget* pai, const Store& db, const QList<manual::RegistroHistorico>& registros)
{
    QDialog dialogo(pai);
    dialogo.setObjectName(QStringLiteral("frmHistoricoTabelas"));
    dialogo.setWindowTitle(QStringLiteral("Histórico das correções das tabelas"));
    auto* layout = new QVBoxLayout(&dialogo);

    auto* modelo = new QStandardItemModel(0, 7, &dialogo);
    modelo->setHorizontalHeaderLabels({QStringLiteral("Data e hora"), QStringLiteral("Tabela"), QStringLiteral("Chave"),
                                       QStringLiteral("Coluna"), QStringLiteral("Valor anterior"),
                                       QStringLiteral("Valor novo"), QStringLiteral("Motivo")});
    for (const manual::RegistroHistorico& r : registros) {
        QList<QStandardItem*> linha;
        for (const QString& texto : {r.quando.toString(QStringLiteral("dd/MM/yyyy HH:mm")), r.tabela, r.chave, r.coluna,
                                     r.anterior, r.novo, r.motivo}) {
            auto* item = new QStandardItem(texto);
            item->setEditable(false);
            item->setToolTip(texto);
            linha << item;
        }
        linha[3]->setToolTip(manual::tituloColuna(r.tabela, r.coluna));
        linha[4]->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        linha[5]->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        modelo->appendRow(linha);
    }
    auto* grade = new QTableView(&dialogo);
    grade->setObjectName(QStringLiteral("grdHistorico"));
    grade->setModel(modelo);
    grade->setSelectionBehavior(QAbstractItemView::SelectRows);
    grade->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grade->setTabKeyNavigation(false);
    grade->verticalHeader()->hide();
    grade->verticalHeader()->setDefaultSectionSize(grade->fontMetrics().height() + 8);
    grade->horizontalHeader()->setStretchLastSection(true);
    grade->resizeColumnsToContents();
    grade->setColumnWidth(2, std::min(grade->columnWidth(2), 260));
    layout->addWidget(grade);

    auto* botoes = new QHBoxLayout;
    auto* exportar = new QPushButton(QStringLiteral("&Exportar..."), &dialogo);
    exportar->setObjectName(QStringLiteral("cmdExportarHist"));
    auto* fechar = new QPushButton(QStringLiteral("&Fechar"), &dialogo);
    fechar->setObjectName(QStringLiteral("cmdFechar"));
    fechar->setDefault(true);
    botoes->addWidget(exportar);
    botoes->addStretch();
    botoes->addWidget(fechar);
    layout->addLayout(botoes);

    QObject::connect(fechar, &QPushButton::clicked, &dialogo, &QDialog::accept);
    QObject::connect(exportar, &QPushButton::clicked, &dialogo, [&dialogo, &db]() {
        const QString caminho =
            pastaParaSalvar(&dialogo, QStringLiteral("Exportar histórico"), QStringLiteral("Histórico das tabelas"));
        if (caminho.isEmpty())
            return;
        try {
            manual::exportaHistorico(db, caminho);
        } catch (const ErroPasta& erro) {
            critico(&dialogo, erro.mensagem());
            return;
        } catch (const StoreError& erro) {
            erroBanco(&dialogo, erro);
            return;
        }
        informacao(&dialogo, QStringLiteral("O histórico foi gravado em %1.").arg(QDir::toNativeSeparators(caminho)));
    });
    dialogo.resize(900, 420);
    dialogo.exec();
}

bool confirmaImportacao(QWidget* pai, const manual::Importacao& importacao, const QString& arquivo)
{
    QDialog dialogo(pai);
    dialogo.setObjectName(QStringLiteral("frmImportaTabela"));
    dialogo.setWindowTitle(QStringLiteral("Importar a tabela %1").arg(importacao.tabela));
    auto* layout = new QVBoxLayout(&dialogo);

    const int quantos = static_cast<int>(importacao.correcoes.size());
    auto* titulo = new QLabel(quantos == 1 ? QStringLiteral("A planilha %1 muda 1 valor da tabela %2:")
                                                 .arg(arquivo, importacao.tabela)
                                           : QStringLiteral("A planilha %1 muda %2 valores da tabela %3:")
                                                 .arg(arquivo)
                                                 .arg(quantos)
                                                 .arg(importacao.tabela),
                              &dialogo);
    titulo->setWordWrap(true);
    layout->addWidget(titulo);
    auto* alteracoes = caixaDeTexto(QStringLiteral("txtAlteracoes"), importacao.texto(), &dialogo);
    layout->addWidget(alteracoes, 2);

    if (!importacao.recusas.isEmpty()) {
        auto* rotuloRecusas = new QLabel(QStringLiteral("Linhas recusadas, que ficam como estão na tabela:"), &dialogo);
        layout->addWidget(rotuloRecusas);
        layout->addWidget(caixaDeTexto(QStringLiteral("txtRecusas"), importacao.recusas.join(QLatin1Char('\n')), &dialogo),
                          1);
    }

    auto* botoes = new QHBoxLayout;
    botoes->addStretch();
    auto* aplicar = new QPushButton(QStringLiteral("&Aplicar"), &dialogo);
    aplicar->setObjectName(QStringLiteral("cmdAplicar"));
    auto* cancelar = new QPushButton(QStringLiteral("&Cancelar"), &dialogo);
    cancelar->setObjectName(QStringLiteral("cmdCancelar"));
    // Enter alone never writes to the manual's tables.
    cancelar->setDefault(true);
    botoes->addWidget(aplicar);
    botoes->addWidget(cancelar);
    layout->addLayout(botoes);
    QObject::connect(aplicar, &QPushButton::clicked, &dialogo, &QDialog::accept);
    QObject::connect(cancelar, &QPushButton::clicked, &dialogo, &QDialog::reject);

    dialogo.resize(720, 420);
    return dialogo.exec() == QDialog::Accepted;
}

} // namespace lavra::ui
