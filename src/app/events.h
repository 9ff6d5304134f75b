#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace lavra {

// What one window of a calculation tells the others. A window that sends does not know who
// listens, and a listener reads what it needs from the session; table changes go through the
// store's change notifier instead.
class Eventos final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    // The analysis picker chose NomeCliente and CodAnalise for the analysis register, or was left
    // without a choice.
    void analiseEscolhida();
    void escolhaDeAnaliseCancelada();
    // The client picker of the analysis register chose NomeCliente.
    void clienteEscolhido(const QString& nome);
    // The need of the crop window of that name was adjusted to these texts (N base, P, K, N
    // topdressing); the window shows them.
    void necessidadeAjustada(const QString& janela, const QStringList& ajustados);
    // A dressing of the forest plan (1 to 3) was planned: the rows for its grid.
    void etapaPreenchida(int etapa, const QList<QStringList>& linhas);
    // The signing technician changed: an open report is built again.
    void tecnicoAssinanteMudou();
    // A selection window asks for the chart of that ModoEscolha on an analysis. The chart hides
    // the window it came from once it is shown; on a failure that window stays for another choice.
    void graficoPedido(const QString& modo, const QString& codAnalise, QObject* origem);
    // A value for a field of the analysis register, by the field's name.
    void valorParaAnalise(const QString& campo, const QString& valor);
    // A calculation window asks to see the rows of the manual's tables its last calculation
    // read, left in the session's LinhasUsadas.
    void linhasUsadasPedidas();
};

} // namespace lavra
