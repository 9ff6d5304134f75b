#include "forestneed.h"

#include "app/ui/widgets.h"
#include "calc/forest.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

namespace lavra::ui {

QGroupBox* criaNecessidadeFlorestal(QWidget* pai, const QString& titulo, QList<QLineEdit*>& caixas)
{
    auto* frame = new QGroupBox(titulo, pai);
    auto* grade = new QGridLayout(frame);
    const QStringList nutrientes = legendasNutrientes();
    const QStringList etapas = legendasEtapasFlorestais();
    for (int c = 0; c < nutrientes.size(); ++c)
        grade->addWidget(new QLabel(nutrientes[c], frame), 0, c + 1, Qt::AlignCenter);
    for (int i = 0; i < kBoxesFlorest; ++i) {
        const int linha = i / 3 + 1;
        if (i % 3 == 0)
            grade->addWidget(new QLabel(etapas[linha - 1], frame), linha, 0);
        auto* caixa = caixaSomenteLeitura(frame, QStringLiteral("txtNec_%1").arg(i), QStringLiteral("0000,00"));
        caixa->setAlignment(Qt::AlignRight);
        grade->addWidget(caixa, linha, i % 3 + 1);
        caixas << caixa;
    }
    grade->setRowStretch(etapas.size() + 1, 1);
    return frame;
}

} // namespace lavra::ui
