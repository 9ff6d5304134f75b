#include "clientgrid.h"

#include "app/session.h"
#include "app/ui/messages.h"
#include "app/ui/widgets.h"
#include "registers/analysis.h"
#include "store/storeerror.h"

#include <QHeaderView>
#include <QListWidget>
#include <QStyle>
#include <QTableWidget>

namespace lavra::ui {

QTableWidget* criaGradeClientes(QWidget* parent)
{
    auto* grade = new QTableWidget(parent);
    grade->setObjectName(QStringLiteral("flxCli"));
    grade->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grade->setSelectionBehavior(QAbstractItemView::SelectRows);
    grade->setSelectionMode(QAbstractItemView::SingleSelection);
    grade->setAlternatingRowColors(true);
    grade->setWordWrap(false);
    grade->verticalHeader()->hide();
    grade->verticalHeader()->setDefaultSectionSize(grade->fontMetrics().height() + 8);
    grade->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    return grade;
}

void preencheGradeClientes(QTableWidget* grade, const GradeClientes& clientes)
{
    grade->clear();
    grade->setColumnCount(static_cast<int>(clientes.colunas.size()));
    grade->setHorizontalHeaderLabels(clientes.colunas);
    grade->setRowCount(static_cast<int>(clientes.linhas.size()));
    for (int linha = 0; linha < clientes.linhas.size(); ++linha) {
        const QStringList& celulas = clientes.linhas[linha];
        for (int coluna = 0; coluna < celulas.size(); ++coluna) {
            auto* item = new QTableWidgetItem(celulas[coluna]);
            item->setToolTip(celulas[coluna]);
            grade->setItem(linha, coluna, item);
        }
    }
}

int buscaNaGrade(QTableWidget* grade, const QString& texto)
{
    QStringList nomes;
    for (int linha = 0; linha < grade->rowCount(); ++linha)
        nomes << (grade->item(linha, 0) ? grade->item(linha, 0)->text() : QString());
    const int achada = BuscaCliente(nomes, texto);
    if (achada >= 0) {
        grade->setCurrentCell(achada, 0);
        grade->scrollToItem(grade->item(achada, 0), QAbstractItemView::PositionAtTop);
    }
    return achada;
}

bool carregaGradeClientes(QWidget* janela, Session& session, QTableWidget* grade)
{
    try {
        preencheGradeClientes(grade, LeClientes(session.db));
    } catch (const StoreError& error) {
        erroBanco(janela, error);
    }
    const int largura = 1700 * janela->logicalDpiX() / 1440;
    for (int coluna = 0; coluna < grade->columnCount(); ++coluna)
        grade->setColumnWidth(coluna, largura);
    grade->horizontalHeader()->setStretchLastSection(true);
    // All five columns in view, with room for the vertical scroll bar.
    grade->setMinimumWidth(5 * largura + 2 * grade->frameWidth()
                           + grade->style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    return grade->rowCount() > 0;
}

void buscaERelista(QTableWidget* grade, const QString& texto, const std::function<void()>& relista)
{
    const int anterior = grade->currentRow();
    const int achada = buscaNaGrade(grade, texto);
    // A new row refills the list through the grid's own signal.
    if (achada >= 0 && achada == anterior)
        relista();
}

void listaAnalisesDoCliente(QWidget* janela, Session& session, const QTableWidget* grade, QListWidget* lista)
{
    lista->clear();
    const QTableWidgetItem* nome = grade->currentRow() < 0 ? nullptr : grade->item(grade->currentRow(), 0);
    if (!nome)
        return;
    try {
        lista->addItems(AnalisesDoCliente(session.db, nome->text()));
        semEscolhaInicial(lista);
    } catch (const StoreError& error) {
        erroBanco(janela, error);
    }
}

} // namespace lavra::ui
