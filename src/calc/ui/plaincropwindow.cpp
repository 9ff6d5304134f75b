#include "plaincropwindow.h"

#include "app/ui/widgets.h"

#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace lavra::ui {

PlainCropWindow::PlainCropWindow(Session& session, WindowRegistry& windows, const QString& titulo,
    const QStringList& culturas, QWidget* parent)
    : CropWindow(session, windows, culturas, parent)
{
    setWindowTitle(titulo);
    auto* layout = new QVBoxLayout(this);
    m_lstCulturas->setMinimumWidth(m_lstCulturas->sizeHintForColumn(0) + 40);
    // The list is shown whole, and no taller than it is.
    const int linhas = std::max(m_lstCulturas->count(), 3);
    m_lstCulturas->setFixedHeight(m_lstCulturas->sizeHintForRow(0) * linhas + 2 * m_lstCulturas->frameWidth() + 4);
    layout->addWidget(rotulo(QStringLiteral("Culturas"), m_lstCulturas, this));
    layout->addWidget(m_lstCulturas);
    layout->addWidget(criaResultadoFinal());
    criaComandos(layout);
}

void PlainCropWindow::calcula()
{
    const int posicao = posicaoCultura();
    if (const auto r = executa<CalculoCultura>([&]() { return calculo(posicao); }))
        mostraCalculo(*r);
}

} // namespace lavra::ui
