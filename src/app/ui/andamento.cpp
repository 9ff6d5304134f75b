#include "andamento.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <limits>
#include <utility>

namespace lavra::ui {

Andamento::Andamento(QProgressBar* barra, QLabel* rotulo, QPushButton* cancela)
    : m_barra(barra), m_rotulo(rotulo), m_cancela(cancela)
{
    QObject::connect(m_cancela, &QPushButton::clicked, m_cancela, [this] { m_cancelado = true; });
    m_cancela->setEnabled(false);
}

void Andamento::comeca(const QString& texto)
{
    m_cancelado = false;
    m_emCurso = true;
    m_barra->setRange(0, 1);
    m_barra->setValue(0);
    m_cancela->setEnabled(true);
    m_cancela->setFocus();
    etapa(texto);
    m_relogio.start();
}

bool Andamento::passo(qint64 feitos, qint64 total)
{
    if (m_relogio.elapsed() >= 50 || feitos >= total) {
        // The bar counts in ints; a larger total is shown in proportion.
        const qint64 escala = total > std::numeric_limits<int>::max() ? total / 1'000'000 + 1 : 1;
        m_barra->setRange(0, static_cast<int>(std::max<qint64>(1, total / escala)));
        m_barra->setValue(static_cast<int>(feitos / escala));
        QApplication::processEvents();
        m_relogio.restart();
    }
    return !m_cancelado;
}

void Andamento::aguarda(const QString& texto)
{
    if (m_rotulo->text() != texto) {
        m_cancela->setEnabled(false);
        m_barra->setRange(0, 0);
        m_rotulo->setText(texto);
    }
    QApplication::processEvents();
}

void Andamento::etapa(const QString& texto)
{
    m_rotulo->setText(texto);
    QApplication::processEvents();
}

bool Andamento::adiaFechamento(QCloseEvent* event)
{
    if (!m_emCurso)
        return false;
    m_cancelado = true;
    m_fecharDepois = true;
    event->ignore();
    return true;
}

void Andamento::fechaSeAdiado(QWidget* janela)
{
    if (std::exchange(m_fecharDepois, false))
        janela->close();
}

void Andamento::termina(const QString& texto)
{
    m_emCurso = false;
    m_cancela->setEnabled(false);
    // A bar left busy by a wait shows the work done.
    if (m_barra->maximum() == 0) {
        m_barra->setRange(0, 1);
        m_barra->setValue(1);
    }
    m_rotulo->setText(texto);
}

} // namespace lavra::ui
