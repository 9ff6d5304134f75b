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
    // Room for the medicinal list without a long scroll, and no empty well under the two ornamentals.
    const int linhas = std::min<int>(m_lstCulturas->count(), 12);
    m_lstCulturas->setMinimumHeight(
        m_lstCulturas->sizeHintForRow(0) * std::max(linhas, 3) + 2 * m_lstCulturas->frameWidth() + 4);
    layout->addWidget(rotulo(QStringLiteral("Culturas"), m_lstCulturas, this));
    layout->addWidget(m_lstCulturas, 1);
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
