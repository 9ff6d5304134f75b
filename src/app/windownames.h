#pragma once

#include <QString>

// The name of every window, as the window registry, the chain and the tests know it.
namespace lavra::janela {

// Start-up and the main window.
inline const QString kAbertura = QStringLiteral("frmAbertura");
inline const QString kLavra = QStringLiteral("frmLavra");
inline const QString kSobre = QStringLiteral("frmSobre");
inline const QString kContatos = QStringLiteral("frmContatos");

// The calculation chain.
inline const QString kCliAn = QStringLiteral("frmCliAn");
inline const QString kGrupCult = QStringLiteral("frmGrupCult");
inline const QString kCalagem = QStringLiteral("frmCalagem");
inline const QString kGraos = QStringLiteral("frmGraos");
inline const QString kHort = QStringLiteral("frmHort");
inline const QString kForrage = QStringLiteral("frmForrage");
inline const QString kFlorest = QStringLiteral("frmFlorest");
inline const QString kOrnam = QStringLiteral("frmOrnam");
inline const QString kCondMedic = QStringLiteral("frmCondMedic");
inline const QString kCana = QStringLiteral("frmCana");
inline const QString kAjusta = QStringLiteral("frmAjusta");
inline const QString kAjustaFlorest = QStringLiteral("frmAjustaFlorest");
inline const QString kNPK = QStringLiteral("frmNPK");
inline const QString kFormulacao = QStringLiteral("frmFormulação");
inline const QString kTipoAdubo = QStringLiteral("frmTipoAdubo");
inline const QString kNPKFlorest = QStringLiteral("frmNPKFlorest");
inline const QString kParcelaN = QStringLiteral("frmParcelaN");
inline const QString kParcNitroFlo = QStringLiteral("frmParcNitroFlo");
inline const QString kFinalCalculo = QStringLiteral("frmFinalCalculo");

// Registers.
inline const QString kCadAnalise = QStringLiteral("frmCadAnalise");
inline const QString kCliente = QStringLiteral("frmCliente");
inline const QString kCadCli = QStringLiteral("frmCadCli");
inline const QString kFertiliz = QStringLiteral("frmFertiliz");
inline const QString kCadCalc = QStringLiteral("frmCadCalc");
inline const QString kEmpresa = QStringLiteral("frmEmpresa");
inline const QString kTecResp = QStringLiteral("frmTecResp");
inline const QString kCotac = QStringLiteral("frmCotac");

// Reports.
inline const QString kObsLaudo = QStringLiteral("frmObsLaudo");
inline const QString kAbreLaudo = QStringLiteral("frmAbreLaudo");

// Charts.
inline const QString kGraficos = QStringLiteral("frmGraficos");
inline const QString kChamaGraf = QStringLiteral("frmChamaGraf");
inline const QString kChamaGrafCusto = QStringLiteral("frmChamaGrafCusto");
inline const QString kChart = QStringLiteral("frmChart");
inline const QString kEvolFert = QStringLiteral("frmEvolFert");
inline const QString kOcupaCTC = QStringLiteral("frmOcupaCTC");
inline const QString kOcupaCusto = QStringLiteral("frmOcupaCusto");

// Exchange and tools.
inline const QString kImportaAnalise = QStringLiteral("frmImportaAnalise");
inline const QString kRelat = QStringLiteral("frmRelat");
inline const QString kAtualiza = QStringLiteral("frmAtualiza");
inline const QString kCopiaBd = QStringLiteral("frmCopiaBd");
inline const QString kConvert = QStringLiteral("frmConvert");
inline const QString kTabelas = QStringLiteral("frmTabelas");

} // namespace lavra::janela
