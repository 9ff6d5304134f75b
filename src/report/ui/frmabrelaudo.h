#pragma once

#include <QWidget>

#include <optional>

class QButtonGroup;
class QLineEdit;
class QListWidget;
class QTableWidget;

namespace lavra {
struct Session;
}

namespace lavra::report {
enum class TipoLaudo;
}

namespace lavra::ui {

class WindowRegistry;

// The saved recommendations: client, analysis, kind and key, then the report or the deletion.
class FrmAbreLaudo final : public QWidget {
    Q_OBJECT

public:
    FrmAbreLaudo(Session& session, WindowRegistry& windows, QWidget* parent = nullptr);

private:
    void clienteMudou();
    void busca(const QString& texto);
    void desligaOpcoes();
    void preencheRecomendacoes();
    std::optional<report::TipoLaudo> tipoEscolhido() const;
    QString analiseEscolhida() const;
    // The chosen key, or nothing after telling the user to choose.
    std::optional<QString> recomendacaoEscolhida();
    void abre();
    void exclui();

    Session& m_session;
    WindowRegistry& m_windows;
    QLineEdit* m_txtCli = nullptr;
    QTableWidget* m_flxCli = nullptr;
    QListWidget* m_lstAna = nullptr;
    QButtonGroup* m_opcoes = nullptr;
    QListWidget* m_lstReco = nullptr;
};

} // namespace lavra::ui
