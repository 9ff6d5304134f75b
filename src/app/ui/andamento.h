#pragma once

#include <QElapsedTimer>
#include <QString>

class QCloseEvent;
class QLabel;
class QProgressBar;
class QPushButton;
class QWidget;

namespace lavra::ui {

// Long work done on the window's own thread: the bar and its line of text are repainted, and the
// Cancel button heard, a few times a second rather than at every step.
class Andamento {
public:
    Andamento(QProgressBar* barra, QLabel* rotulo, QPushButton* cancela);

    // Begins a piece of work under that text; the bar is empty and Cancel is enabled.
    void comeca(const QString& texto);
    // Where the work stands; false once the user asked to stop.
    bool passo(qint64 feitos, qint64 total);
    // A wait of unknown length under that text: the bar only shows that work goes on; Cancel is
    // disabled, as the work cannot stop.
    void aguarda(const QString& texto);
    // A new line of text, shown at once.
    void etapa(const QString& texto);
    // Ends the work with that text; Cancel is disabled again.
    void termina(const QString& texto);

    void cancela() { m_cancelado = true; }
    // Whether the user asked to stop, during a wait too.
    bool cancelado() const { return m_cancelado; }
    bool emCurso() const { return m_emCurso; }

    // A window closed while its work goes on stops the work first and closes once it has ended:
    // true when the close was put off.
    bool adiaFechamento(QCloseEvent* event);
    // Closes the window whose close was put off.
    void fechaSeAdiado(QWidget* janela);

private:
    QProgressBar* m_barra;
    QLabel* m_rotulo;
    QPushButton* m_cancela;
    QElapsedTimer m_relogio;
    bool m_cancelado = false;
    bool m_emCurso = false;
    bool m_fecharDepois = false;
};

} // namespace lavra::ui
