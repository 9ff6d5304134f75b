#include "cropgroups.h"

#include "app/windownames.h"

namespace lavra {

QString GrupoCultura::tabelaP(const QString& cultivoTxt) const
{
    return prefixoP + (porCultivo ? cultivoTxt : QStringLiteral("1"));
}

QString GrupoCultura::tabelaK(const QString& cultivoTxt) const
{
    return prefixoK + (porCultivo ? cultivoTxt : QStringLiteral("1"));
}

const QList<GrupoCultura>& gruposCultura()
{
    static const QList<GrupoCultura> grupos = {
        { grupo::Graos, QStringLiteral("Produtoras de grãos"), janela::kGraos, janela::kGraos, true,
            QStringLiteral("GRAON"), QStringLiteral("GRAOPC"), QStringLiteral("GRAOKC"), true, culturasGraos },
        { grupo::Hortalicas, QStringLiteral("Hortaliças"), janela::kHort, janela::kHort, true,
            QStringLiteral("HORTN"), QStringLiteral("HORTPC"), QStringLiteral("HORTKC"), true, culturasHortalicas },
        { grupo::Forrageiras, QStringLiteral("Forrageiras"), janela::kForrage, janela::kForrage, true,
            QStringLiteral("FORRAGN"), QStringLiteral("FORRAGPC"), QStringLiteral("FORRAGKC"), true,
            culturasForrageiras },
        { grupo::Florestais, QStringLiteral("Essências Florestais"), janela::kFlorest, {}, false,
            QStringLiteral("FLOREST"), {}, {}, false, culturasFlorestais },
        // The doses of the ornamentals are written in the program.
        { grupo::Ornamentais, QStringLiteral("Plantas Ornamentais"), janela::kOrnam, janela::kOrnam, false, {}, {},
            {}, false, culturasOrnamentais },
        { grupo::Condimentares, QStringLiteral("Medicinais/Aromáticas/Condimentares"), janela::kCondMedic, {}, false,
            QStringLiteral("CONDMEDN"), QStringLiteral("CONDMEDP"), QStringLiteral("CONDMEDK"), true,
            culturasCondimentares },
        // The cane rows lie in the vegetable tables of the first crop.
        { grupo::Cana, QStringLiteral("Outras Culturas (Cana-de-acúcar)"), janela::kCana, {}, false,
            QStringLiteral("HORTN"), QStringLiteral("HORTPC"), QStringLiteral("HORTKC"), false, culturasCana },
    };
    return grupos;
}

const GrupoCultura* grupoCultura(int numero)
{
    const auto& grupos = gruposCultura();
    return numero >= 1 && numero <= grupos.size() ? &grupos[numero - 1] : nullptr;
}

const GrupoCultura* grupoCultura(const QString& nome)
{
    for (const GrupoCultura& g : gruposCultura()) {
        if (g.nome == nome)
            return &g;
    }
    return nullptr;
}

QStringList nomesGrupos()
{
    QStringList nomes;
    for (const GrupoCultura& g : gruposCultura())
        nomes << g.nome;
    return nomes;
}

const QStringList& culturasDoGrupo(int numero)
{
    static const QStringList nenhuma;
    const GrupoCultura* g = grupoCultura(numero);
    return g ? g->culturas() : nenhuma;
}

const QStringList& culturasGraos()
{
    static const QStringList lista = { QStringLiteral("Amendoim"), QStringLiteral("Arroz de sequeiro"),
        QStringLiteral("Arroz irrigado (RS)"), QStringLiteral("Arroz irrigado (SC)"),
        QStringLiteral("Aveia branca"), QStringLiteral("Aveia preta"), QStringLiteral("Canola"),
        QStringLiteral("Centeio"), QStringLiteral("Cevada"), QStringLiteral("Ervilha forrageira"),
        QStringLiteral("Ervilhaca"), QStringLiteral("Feijão"), QStringLiteral("Girassol"),
        QStringLiteral("Linho"), QStringLiteral("Milho"), QStringLiteral("Milho pipoca"),
        QStringLiteral("Nabo forrageiro"), QStringLiteral("Painço"), QStringLiteral("Soja"),
        QStringLiteral("Sorgo"), QStringLiteral("Tremoço"), QStringLiteral("Trigo"),
        QStringLiteral("Triticale") };
    return lista;
}

const QStringList& culturasHortalicas()
{
    static const QStringList lista = { QStringLiteral("Abóbora"), QStringLiteral("Alcachofra"),
        QStringLiteral("Alface"), QStringLiteral("Alho"), QStringLiteral("Almeirão"),
        QStringLiteral("Aspargo (instalação)"), QStringLiteral("Batata"), QStringLiteral("Batata-doce"),
        QStringLiteral("Beterraba"), QStringLiteral("Brócolo"), QStringLiteral("Couve-flor"),
        QStringLiteral("Cebola"), QStringLiteral("Cenoura"), QStringLiteral("Chicória"),
        QStringLiteral("Ervilha"), QStringLiteral("Mandioca"), QStringLiteral("Melancia"),
        QStringLiteral("Melão"), QStringLiteral("Moranga"), QStringLiteral("Pepino (conserva)"),
        QStringLiteral("Pepino (partenocárpico)"), QStringLiteral("Pimentão"), QStringLiteral("Rabanete"),
        QStringLiteral("Repolho"), QStringLiteral("Rúcula"), QStringLiteral("Tomateiro") };
    return lista;
}

const QStringList& culturasForrageiras()
{
    // Position 10 has two blanks after "perenes": the tables carry it so.
    static const QStringList lista = { QStringLiteral("Alfafa"), QStringLiteral("Capim elefante"),
        QStringLiteral("Consorciação de gram. e de leg. de estação fria"),
        QStringLiteral("Consorciação de gram. e de leg. de estação quente"),
        QStringLiteral("Gramíneas anuais de estação fria"),
        QStringLiteral("Gramíneas anuais de estação quente"),
        QStringLiteral("Gramíneas perenes de estação fria"),
        QStringLiteral("Gramíneas perenes de estação quente"),
        QStringLiteral("Leguminosas anuais de estação fria"),
        QStringLiteral("Leguminosas anuais de estação quente"),
        QStringLiteral("Leguminosas perenes  de estação fria"),
        QStringLiteral("Leguminosas perenes de estação quente"), QStringLiteral("Milho silagem"),
        QStringLiteral("Pastagens naturais com introdução de gram. e leg."),
        QStringLiteral("Pastagens naturais com introdução de gramíneas"),
        QStringLiteral("Pastagens naturais com introdução de leguminosas"),
        QStringLiteral("Pastagens naturais nativas ou naturalizadas"), QStringLiteral("Sorgo silagem") };
    return lista;
}

const QStringList& culturasFlorestais()
{
    static const QStringList lista
        = { QStringLiteral("Acácia-negra"), QStringLiteral("Araucária"), QStringLiteral("Bracatinga"),
              QStringLiteral("Erva-Mate"), QStringLiteral("Eucalipto"), QStringLiteral("Pinus") };
    return lista;
}

const QStringList& culturasOrnamentais()
{
    static const QStringList lista
        = { QStringLiteral("Crisântemo de corte"), QStringLiteral("Roseira de corte") };
    return lista;
}

const QStringList& culturasCondimentares()
{
    static const QStringList lista = { QStringLiteral("Alfavaca"), QStringLiteral("Calêndula"),
        QStringLiteral("Camomila"), QStringLiteral("Capim-limão"), QStringLiteral("Cardamomo"),
        QStringLiteral("Carqueja"), QStringLiteral("Chá"), QStringLiteral("Citronela-de-java"),
        QStringLiteral("Coentro"), QStringLiteral("Curcuma"), QStringLiteral("Erva-doce"),
        QStringLiteral("Estévia"), QStringLiteral("Funcho"), QStringLiteral("Gengibre"),
        QStringLiteral("Hortelãs"), QStringLiteral("Palma-rosa"), QStringLiteral("Piretro"),
        QStringLiteral("Salsa"), QStringLiteral("Urucum (plantio)"), QStringLiteral("Urucum (formação)"),
        QStringLiteral("Urucum (produção)"), QStringLiteral("Vetiver") };
    return lista;
}

const QStringList& culturasCana()
{
    static const QStringList lista = { QStringLiteral("Cana-planta"), QStringLiteral("Cana-soca") };
    return lista;
}

} // namespace lavra
