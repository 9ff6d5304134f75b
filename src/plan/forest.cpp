#include "forest.h"

#include "app/analise.h"
#include "app/session.h"
#include "app/slots.h"
#include "app/windownames.h"
#include "base/numbers.h"
#include "calc/cropstep.h"
#include "plan/split.h"

namespace lavra {

namespace {

const QChar kSeparador = QLatin1Char('#');

double necessidade(const QVariant& valor)
{
    return toNumber(valor).value_or(0);
}

} // namespace

QStringList CabecalhoFlorestal(const QString& primeiroTitulo)
{
    return { primeiroTitulo, QStringLiteral("Preço (R$/t)"), QStringLiteral("Dosagem (kg/ha)"),
        QStringLiteral("Custo (R$/ha)"), QStringLiteral("Quantidade (kg)"), QStringLiteral("Custo total (R$)") };
}

int primeiroSlotDaEtapa(int etapa)
{
    static constexpr std::array<int, kEtapasFlorestais> primeiros
        = { slot::kPlantio, slot::kCobFlorest, slot::kReposicao };
    return primeiros.at(static_cast<std::size_t>(etapa - 1));
}

void DefineCustoEtapa(Session& session, int etapa, double custo)
{
    switch (etapa) {
    case 1:
        session.CustoEtapa1 = custo;
        break;
    case 2:
        session.CustoEtapa2 = custo;
        break;
    case 3:
        session.CustoEtapa3 = custo;
        break;
    default:
        break;
    }
}

std::array<QString, 9> TextosNecessidadeFlorestal(const Session& session)
{
    std::array<QString, 9> textos;
    for (std::size_t i = 0; i < textos.size(); ++i)
        textos[i] = variantNumberText(session.NecFlorest[i]);
    return textos;
}

OpcoesEtapa opcoesDaEtapa(const Session& session, int etapa)
{
    OpcoesEtapa opcoes;
    // Planting always offers both.
    if (etapa < 2)
        return opcoes;
    const std::size_t i = static_cast<std::size_t>(etapa - 1) * 3;
    const double n = necessidade(session.NecFlorest[i]);
    const double p = necessidade(session.NecFlorest[i + 1]);
    const double k = necessidade(session.NecFlorest[i + 2]);
    opcoes.fontesDeN = n != 0 && p == 0 && k == 0;
    opcoes.habilitada = n != 0 || p != 0 || k != 0;
    return opcoes;
}

void AbrePlanoFlorestal(Session& session)
{
    for (int etapa = 1; etapa <= kEtapasFlorestais; ++etapa)
        DefineCustoEtapa(session, etapa, 0);
}

void PreparaEtapa(Session& session, int etapa, const std::array<QString, 3>& necessidade)
{
    for (std::size_t i = 0; i < necessidade.size(); ++i)
        session.Nec[i] = necessidade[i];
    session.EtapaFlorest = static_cast<std::int16_t>(etapa);
}

void PreencheVazios(Session& session, int slot)
{
    session.Dados[slot] = CabecalhoFlorestal(QStringLiteral("Fontes")).join(kSeparador);
    session.Dados[slot + 1] = QStringLiteral("---#---#---#---#---#---");
}

void GravaPlanoFlorestal(Session& session, const std::array<GradeFlorestal, kEtapasFlorestais>& grades)
{
    for (int s = slot::kBase; s < session.Dados.size(); ++s)
        session.Dados[s] = 0;
    for (int etapa = 1; etapa <= kEtapasFlorestais; ++etapa) {
        const GradeFlorestal& grade = grades[static_cast<std::size_t>(etapa - 1)];
        const int primeiro = primeiroSlotDaEtapa(etapa);
        if (grade.isEmpty()) {
            PreencheVazios(session, primeiro);
            continue;
        }
        // A block has five slots; no step fills a grid with more rows.
        for (int r = 0; r < grade.size() && r < slot::kCobFlorest - slot::kPlantio; ++r)
            session.Dados[primeiro + r] = grade[r].join(kSeparador);
    }
    session.JanelaAnterior = janela::kNPKFlorest;
}

float LeNecessidadeNFlorestal(const Session& session)
{
    return toSingle(necessidade(session.Nec[0]));
}

FonteNFlorestal GravaFonteNFlorestal(
    Session& session, const QString& fonte, const QVariant& preco, const QString& txtFnt)
{
    FonteNFlorestal r;
    const std::optional<double> dose = parseNumber(txtFnt);
    if (fonte.isEmpty() || !dose) {
        r.recusa = Desfecho::aviso(kMsgSemDoseFonte);
        return r;
    }
    const double valor = toNumber(preco).value_or(0);
    const double custo = *dose * valor / 1000;
    const double quantidade = toNumber(session.Analise.value(analise::kArea)).value_or(0) * *dose;
    const double total = quantidade * valor / 1000;
    session.CustoN = total;
    DefineCustoEtapa(session, session.EtapaFlorest, total);
    r.linhas = { CabecalhoFlorestal(QStringLiteral("Fonte")),
        { fonte, variantNumberText(preco.isNull() ? QVariant(0) : preco), txtFnt, textoNumero(custo),
            textoNumero(quantidade), textoNumero(total) } };
    return r;
}

} // namespace lavra
