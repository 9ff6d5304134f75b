#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace lavra {
struct Session;
struct DestinoFormula;
}

namespace lavra::ui {

class WindowRegistry;

inline const QString kMsgIndisponivel = QStringLiteral("Esta parte do programa ainda não está disponível.");

// Shows a window of the chain by name; when the program has no such window yet, says so and
// returns null, so that the caller stays where it is.
QWidget* mostraJanela(QWidget* parent, WindowRegistry& windows, const QString& nome);

// "<< Retornar" of a base dressing step: back to the crop window of NomeGrupo. Opened by the
// forest plan, which stays open below it, the step closes instead.
void retornaDaBase(QWidget* passo, Session& session, WindowRegistry& windows, const QString& nome);
// "Cancelar" of a base dressing step, which is "Fechar" for the forest plan and closes this
// step alone.
void cancelaDaBase(Session& session, WindowRegistry& windows, const QString& nome);

// Where a base dressing leads once written: the forest plan gets the rows of its grid and this
// step closes; otherwise the split, afresh when the need changed.
void segueDaBase(QWidget* passo, Session& session, WindowRegistry& windows, const QString& nome,
    const DestinoFormula& destino, const std::function<QList<QStringList>()>& linhasFlorest);

} // namespace lavra::ui
