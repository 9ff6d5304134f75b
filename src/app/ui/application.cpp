#include "application.h"

#include "app/locais.h"
#include "app/startup.h"
#include "app/windownames.h"
#include "base/outcome.h"
#include "calc/ui/windows.h"
#include "charts/ui/windows.h"
#include "exchange/ui/windows.h"
#include "frmabertura.h"
#include "frmlavra.h"
#include "infowindows.h"
#include "messages.h"
#include "plan/ui/windows.h"
#include "registers/ui/windows.h"
#include "report/ui/windows.h"
#include "store/storeerror.h"
#include "tools/ui/windows.h"
#include "translations.h"

#include <QApplication>
#include <QDir>
#include <QIcon>

namespace lavra::ui {

Aplicacao::Aplicacao(const QString& databasePath)
{
    m_atualizacaoDados = AbreBanco(m_session, databasePath);
    registraJanelas();
}

Aplicacao::~Aplicacao()
{
    // The windows refer to the session; they go before it does.
    for (const QString& name : m_windows.openWindows()) {
        if (QWidget* w = m_windows.window(name))
            delete w;
    }
}

namespace {

// A box holds a few dozen lines; the whole list stays in the history of the tables.
QString resumoDaAtualizacao(const QString& texto)
{
    constexpr int kLinhas = 30;
    QStringList linhas = texto.split(QLatin1Char('\n'));
    if (linhas.size() > kLinhas) {
        const qsizetype resto = linhas.size() - kLinhas;
        linhas = linhas.mid(0, kLinhas);
        linhas << QStringLiteral("… e mais %1 linhas.").arg(resto);
    }
    linhas << QString()
           << QStringLiteral("Os valores alterados estão no histórico das tabelas (menu Ferramentas, Tabelas do manual).");
    return linhas.join(QLatin1Char('\n'));
}

} // namespace

// The one place where every window of the program is made known by its name.
void Aplicacao::registraJanelas()
{
    const auto with = [this](QWidget* (*factory)(Session&, WindowRegistry&)) {
        return [this, factory]() { return factory(m_session, m_windows); };
    };
    m_windows.registerWindow(janela::kSobre, with(criaFrmSobre));
    m_windows.registerWindow(janela::kContatos, criaFrmContatos);
    m_windows.registerWindow(janela::kCadAnalise, with(criaFrmCadAnalise), Modo::Modal);
    m_windows.registerWindow(janela::kImportaAnalise, with(criaFrmImportaAnalise), Modo::Modal);
    m_windows.registerWindow(janela::kRelat, with(criaFrmRelat));
    m_windows.registerWindow(janela::kCopiaBd, with(criaFrmCopiaBd), Modo::Modal);
    m_windows.registerWindow(janela::kAtualiza, with(criaFrmAtualiza), Modo::Modal);
    m_windows.registerWindow(janela::kConvert, with(criaFrmConvert));
    m_windows.registerWindow(janela::kTabelas, with(criaFrmTabelas));
    m_windows.registerWindow(janela::kCliente, with(criaFrmCliente), Modo::Modal);
    m_windows.registerWindow(janela::kCadCli, with(criaFrmCadCli), Modo::Modal);
    m_windows.registerWindow(janela::kFertiliz, with(criaFrmFertiliz), Modo::Modal);
    m_windows.registerWindow(janela::kCadCalc, with(criaFrmCadCalc), Modo::Modal);
    m_windows.registerWindow(janela::kCotac, with(criaFrmCotac));
    m_windows.registerWindow(janela::kEmpresa, with(criaFrmEmpresa));
    m_windows.registerWindow(janela::kTecResp, with(criaFrmTecResp));
    m_windows.registerWindow(janela::kCliAn, with(criaFrmCliAn));
    m_windows.registerWindow(janela::kGrupCult, with(criaFrmGrupCult));
    m_windows.registerWindow(janela::kCalagem, with(criaFrmCalagem));
    m_windows.registerWindow(janela::kGraos, with(criaFrmGraos));
    m_windows.registerWindow(janela::kHort, with(criaFrmHort));
    m_windows.registerWindow(janela::kForrage, with(criaFrmForrage));
    m_windows.registerWindow(janela::kFlorest, with(criaFrmFlorest));
    m_windows.registerWindow(janela::kOrnam, with(criaFrmOrnam));
    m_windows.registerWindow(janela::kCondMedic, with(criaFrmCondMedic));
    m_windows.registerWindow(janela::kCana, with(criaFrmCana));
    m_windows.registerWindow(janela::kAjusta, with(criaFrmAjusta), Modo::Modal);
    m_windows.registerWindow(janela::kAjustaFlorest, with(criaFrmAjustaFlorest), Modo::Modal);
    m_windows.registerWindow(janela::kNPK, with(criaFrmNPK));
    m_windows.registerWindow(janela::kFormulacao, with(criaFrmFormulacao));
    m_windows.registerWindow(janela::kParcelaN, with(criaFrmParcelaN));
    m_windows.registerWindow(janela::kNPKFlorest, with(criaFrmNPKFlorest));
    m_windows.registerWindow(janela::kParcNitroFlo, with(criaFrmParcNitroFlo));
    m_windows.registerWindow(janela::kFinalCalculo, with(criaFrmFinalCalculo));
    m_windows.registerWindow(QStringLiteral("rptLdForml"), with(criaRptLdForml));
    m_windows.registerWindow(QStringLiteral("rptLdFormlacao"), with(criaRptLdFormlacao));
    m_windows.registerWindow(QStringLiteral("rptLdFlorest"), with(criaRptLdFlorest));
    m_windows.registerWindow(janela::kObsLaudo, with(criaFrmObsLaudo));
    m_windows.registerWindow(janela::kAbreLaudo, with(criaFrmAbreLaudo));
    registraGraficos(m_session, m_windows);
}

FrmLavra* Aplicacao::mostraJanelaPrincipal()
{
    if (!m_main) {
        m_main = new FrmLavra(m_session, m_windows);
        m_main->setAttribute(Qt::WA_DeleteOnClose);
        m_windows.track(m_main);
    }
    centraliza(m_main);
    m_main->show();
    m_main->iniciar();
    if (!m_atualizacaoDados.isEmpty()) {
        informacao(m_main, resumoDaAtualizacao(m_atualizacaoDados));
        m_atualizacaoDados.clear();
    }
    return m_main;
}

bool AplicacaoQt::notify(QObject* receiver, QEvent* event)
{
    // The windows catch the failures of the database where the user's context is; this is the
    // last guard, for one that slipped through an event handler or a slot.
    try {
        return QApplication::notify(receiver, event);
    } catch (const StoreError& error) {
        erroBanco(activeWindow(), error);
    } catch (const std::exception& error) {
        mostra(activeWindow(), Desfecho::critico(QStringLiteral("Ocorreu um erro inesperado:\n%1\n\nA operação foi interrompida; o "
                                               "programa continua.")
                                    .arg(QString::fromLocal8Bit(error.what()))));
    }
    return false;
}

std::unique_ptr<Aplicacao> abrePrograma(const QString& databasePath)
{
    try {
        return std::make_unique<Aplicacao>(databasePath);
    } catch (const StoreError& error) {
        erroAbertura(databasePath, error);
        return nullptr;
    }
}

int executa(int argc, char** argv)
{
    AplicacaoQt app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Lavra"));
    QApplication::setApplicationVersion(QStringLiteral("2.1"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/art/lavra-icon.svg")));
    carregaTraducoes();

    QGuiApplication::setDesktopFileName(QStringLiteral("br.agr.lavra.Lavra"));
    const QString banco = locais::bancoPadrao();
    if (banco.isEmpty()) {
        critico(nullptr, QStringLiteral("Não foi possível criar a pasta do banco de dados em %1.\n\nVerifique se há espaço "
                                        "no disco e permissão de escrita na sua pasta pessoal.")
                             .arg(QDir::toNativeSeparators(locais::localAtual().pastaDeDados)));
        return 1;
    }
    std::unique_ptr<Aplicacao> lavra = abrePrograma(banco);
    if (!lavra)
        return 1;

    auto* splash = new FrmAbertura;
    centraliza(splash);
    QObject::connect(splash, &FrmAbertura::terminou, [&lavra]() { lavra->mostraJanelaPrincipal(); });
    splash->show();
    const int code = app.exec();
    lavra.reset();
    return code;
}

} // namespace lavra::ui
