#pragma once

#include "app/ui/buttons.h"

#include <QWidget>

#include <optional>

class QButtonGroup;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTableWidget;
class QVBoxLayout;

namespace lavra {
struct Session;
}

namespace lavra::report {
enum class TipoLaudo;
}

namespace lavra::ui {

class WindowRegistry;

// The saved recommendations of a client's analysis: the search, the client grid, the analyses,
// the three kinds and the keys. The windows that open one put their buttons under it.
class EscolhaRecomendacao : public QWidget {
    Q_OBJECT

public:
    EscolhaRecomendacao(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

protected:
    // The row of buttons under the lists, last in the order of Tab; the first answers Enter.
    QList<QPushButton*> adicionaBotoes(const QList<Botao>& botoes);
    std::optional<report::TipoLaudo> tipoEscolhido() const;
    QString analiseEscolhida() const;
    // The chosen key, or nothing after telling the user to choose.
    std::optional<QString> recomendacaoEscolhida();
    void preencheRecomendacoes();

    Session& m_session;
    WindowRegistry& m_windows;
    QListWidget* m_lstReco = nullptr;

private:
    void clienteMudou();
    void busca(const QString& texto);
    void desligaOpcoes();

    QVBoxLayout* m_layout = nullptr;
    QLineEdit* m_txtCli = nullptr;
    QTableWidget* m_flxCli = nullptr;
    QListWidget* m_lstAna = nullptr;
    QButtonGroup* m_opcoes = nullptr;
};

} // namespace lavra::ui
