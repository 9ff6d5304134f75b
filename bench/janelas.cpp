// Times the windows a user waits on in a large database, on the offscreen platform: opening each,
// a keystroke of the client search, a click on a client. Prints the same table as lavra_bench.

#include "app/ui/application.h"
#include "app/ui/messages.h"
#include "app/ui/windowregistry.h"
#include "app/windownames.h"
#include "common.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTableWidget>
#include <QTemporaryDir>

#include <memory>

using namespace lavra;
using namespace lavra::bench;

namespace {

// Until every posted event is handled: what the user waits for before the window answers.
void assenta()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

QWidget* abre(ui::WindowRegistry& janelas, const QString& nome)
{
    QWidget* janela = janelas.show(nome);
    if (!janela)
        qFatal("window not registered: %s", qPrintable(nome));
    assenta();
    return janela;
}

void fecha(QWidget* janela)
{
    janela->close();
    assenta();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Types the text into the field one key at a time, as a user would.
void digita(QWidget* janela, const QString& texto)
{
    auto* campo = janela->findChild<QLineEdit*>(QStringLiteral("txtCli"));
    campo->clear();
    for (const QChar c : texto) {
        QKeyEvent tecla(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(campo, &tecla);
        assenta();
    }
}

void clicaCliente(QWidget* janela, int linha)
{
    auto* grade = janela->findChild<QTableWidget*>(QStringLiteral("flxCli"));
    grade->selectRow(linha);
    assenta();
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ui::AplicacaoQt qt(argc, argv);
    QTemporaryDir pasta;
    const QString caminho = pasta.filePath(QStringLiteral("Lavra.db"));
    const long picoVazio = criaBanco(caminho);
    // No box waits for a user here.
    ui::setResponder([](const ui::Mensagem& m) {
        return m.botoes.testFlag(QMessageBox::Yes) ? QMessageBox::Yes : QMessageBox::Ok;
    });

    std::vector<Medida> medidas;
    medidas.push_back(mede(QStringLiteral("start: open the database, main window"), kAnalises, [&](int) {
        auto app = std::make_unique<ui::Aplicacao>(caminho);
        app->mostraJanelaPrincipal();
        assenta();
    }));

    ui::Aplicacao app(caminho);
    app.mostraJanelaPrincipal();
    ui::WindowRegistry& janelas = app.windows();
    const int linhaCliente = 1234;

    for (const QString& nome : {janela::kCliAn, janela::kAbreLaudo}) {
        medidas.push_back(mede(QStringLiteral("open ") + nome, kClientes, [&](int) { fecha(abre(janelas, nome)); }));
        QWidget* janela = abre(janelas, nome);
        medidas.push_back(mede(nome + QStringLiteral(": client search, per key"), kClientes, [&](int) {
            const QString texto = QStringLiteral("Cliente 049");
            digita(janela, texto);
        }));
        // The whole word took this many keys; the line shows one.
        medidas.back().ms /= 11;
        medidas.push_back(mede(nome + QStringLiteral(": click a client"), kAnalises,
                               [&](int rodada) { clicaCliente(janela, linhaCliente + rodada); }));
        fecha(janela);
    }
    const std::pair<QString, int> outras[] = {{janela::kCadAnalise, kAnalises}, {janela::kCadCli, kClientes},
                                              {janela::kGrupCult, 0}, {janela::kTabelas, 52}};
    for (const auto& [nome, linhas] : outras)
        medidas.push_back(mede(QStringLiteral("open ") + nome, linhas, [&](int) { fecha(abre(janelas, nome)); }));

    imprime(medidas, picoVazio);
    return 0;
}
