#include "app/session.h"
#include "calc/liming.h"
#include "store/store.h"
#include "store/storeerror.h"
#include "testsupport.h"

#include <gtest/gtest.h>

#include <tuple>

namespace lavra {
namespace {

// The elements of an analysis the liming reads; the defaults are an acid soil that needs lime
// under every system of the grain group.
struct Solo {
    float pH = 5.2f;
    float Ca = 3.0f;
    float Mg = 1.0f;
    float Al = 1.0f;
    float SatAl = 15.0f;
    float V = 45.0f;
    float CTC = 10.0f;
    float SMP = 5.0f;
    float MO = 2.0f;
    int classeP = 3;
};

AnaliseCalagem analise(const Solo& s)
{
    QVector<QVariant> registro(36);
    registro[6] = 12.5f;
    registro[8] = s.pH;
    registro[9] = s.Ca;
    registro[10] = s.Mg;
    registro[11] = s.Al;
    registro[13] = s.SatAl;
    registro[14] = s.V;
    registro[15] = s.CTC;
    registro[16] = s.SMP;
    registro[17] = s.MO;
    registro[31] = s.classeP;
    return analiseCalagem(registro);
}

// Shipped rows of Calcario: name, PRNT, R$/t.
const MaterialCalagem kDolomitico{QStringLiteral("Calcário dolomítico"), 75.0f, 220.0};
const MaterialCalagem kCalcitico{QStringLiteral("Calcário calcítico"), 80.0f, 247.5};
const MaterialCalagem kFiller{QStringLiteral("Calcário filler"), 95.0f, 385.0};
const MaterialCalagem kCalVirgem{QStringLiteral("Cal virgem agrícola"), 160.0f, 1045.0};

const QString kConvencional = QStringLiteral("Sistema convencional");
const QString kConsolidado = QStringLiteral("Plantio direto consolidado");
const QString kArrozSeco = QStringLiteral("Arroz irrigado - semeadura em solo seco");
const QString kArrozCaMg = QStringLiteral("Arroz irrigado - pré-germinado ou transplante de mudas");

// The expected texts are written with a point; the machine's symbol replaces it.
QString naMaquina(QString texto) { return texto.replace(QLatin1Char('.'), decimalSymbol()); }

PedidoCalagem pedido(const QString& sistema, MetodoCalagem metodo, const Solo& solo, const MaterialCalagem& material)
{
    PedidoCalagem p;
    p.posicaoSistema = 1;
    p.sistema = sistema;
    p.grupo = 1;
    p.metodo = metodo;
    p.analise = analise(solo);
    p.material = material;
    return p;
}

struct CasoMetodo {
    const char* nome;
    QString sistema;
    MetodoCalagem metodo;
    Solo solo;
    MaterialCalagem material;
    float quantidade;
    QString resultado;
    QString custo;
};

// Worked by hand from the rows of Calagem and SMP: a SMP need of 9.9 t/ha (index 5.0, pH 6.0) at
// PRNT 75 is 13.2 t/ha, and so on.
const CasoMetodo kCasosMetodo[] = {
    {"Smp", kConvencional, MetodoCalagem::SMP, {}, kDolomitico, 13.2f, "13.2", "2904.00"},
    {"AlMo", kConvencional, MetodoCalagem::AlMO, {}, kFiller, 3.7147369f, "3.7", "1430.17"},
    {"SaturacaoPorBases", kConvencional, MetodoCalagem::SatBases, {}, kDolomitico, 4.0f, "4.0", "880.00"},
    {"Media", kConvencional, MetodoCalagem::Media, {.SMP = 5.5f}, kDolomitico, 6.0666666f, "6.1", "1334.67"},
    {"DivisorHalvesTheDose", kConsolidado, MetodoCalagem::SMP, {.pH = 5.0f, .V = 50.0f}, kDolomitico, 13.2f, "6.6", "1452.00"},
    {"SmpColumnOfPh55", kArrozSeco, MetodoCalagem::SMP, {.pH = 5.0f, .SMP = 6.0f}, kDolomitico, 2.1333334f, "2.1", "469.33"},
    {"SmpIndexAboveTheTableGivesNothing", kConvencional, MetodoCalagem::SMP, {.SMP = 7.2f}, kDolomitico, 0, "0", "0"},
    {"MediaWithoutSmpRowKeepsHalfTheSaturation", kConvencional, MetodoCalagem::Media, {.SMP = 7.2f}, kDolomitico, 2.0f, "2.0", "440.00"},
    {"SaturationAboveTargetShowsZero", kConvencional, MetodoCalagem::SatBases, {.V = 80.0f}, kDolomitico, -0.6666667f, "0", "0"},
    {"NoMethodNoLime", kConvencional, MetodoCalagem::Nenhum, {}, kDolomitico, 0, "0", "0"},
    {"CaAtLimit", kArrozCaMg, MetodoCalagem::SMP, {.Ca = 2.0f}, kCalcitico, 1.25f, "1.3", "309.38"},
    {"MgAtLimitBelowOneTonne", kArrozCaMg, MetodoCalagem::Nenhum, {.Mg = 0.5f}, kCalVirgem, 0.625f, "0.63", "653.13"},
    {"CaAndMgAboveLimits", kArrozCaMg, MetodoCalagem::SatBases, {.Ca = 2.1f, .Mg = 0.6f}, kDolomitico, 0, "0", "0"},
};

// A new database for each test.
struct ComBanco {
    test::ScratchDatabase scratch;
    Store db{scratch.path()};
};

class LimingMethodTest : public ::testing::TestWithParam<std::tuple<CasoMetodo, bool>>, protected ComBanco {};

TEST_P(LimingMethodTest, DoseAndCostOfTheShippedRows)
{
    const auto& [caso, virgula] = GetParam();
    test::MachineLocale machine(virgula ? test::commaLocale() : test::pointLocale());
    const ResultadoCalagem r = CalculaCalagem(db, pedido(caso.sistema, caso.metodo, caso.solo, caso.material));
    ASSERT_FALSE(r.desfecho) << r.desfecho->texto.toStdString();
    EXPECT_NEAR(r.quantidade, caso.quantidade, 1e-5);
    EXPECT_EQ(r.exibicao.resultado, naMaquina(caso.resultado));
    EXPECT_EQ(r.exibicao.custo, naMaquina(caso.custo));
    EXPECT_FALSE(r.metodoForcado);
    EXPECT_FALSE(db.cn.isOpen());
}

INSTANTIATE_TEST_SUITE_P(ManualRows, LimingMethodTest, ::testing::Combine(::testing::ValuesIn(kCasosMetodo), ::testing::Bool()),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param).nome) + (std::get<1>(info.param) ? "Comma" : "Point");
                         });

struct CasoCriterio {
    const char* nome;
    QString sistema;
    Solo solo;
    bool calcula;
};

// "Plantio direto consolidado" limes below pH 5.5 and V 65 %; "Sistema convencional" below pH 6.0.
const CasoCriterio kCasosCriterio[] = {
    {"BothFailed", kConsolidado, {.pH = 5.4f, .SatAl = 0, .V = 64, .classeP = 5}, true},
    {"PhOnlyVeryHighPLowAl", kConsolidado, {.pH = 5.4f, .SatAl = 9.9f, .V = 65, .classeP = 5}, false},
    {"PhOnlyVeryHighPAlAtTen", kConsolidado, {.pH = 5.4f, .SatAl = 10, .V = 65, .classeP = 5}, true},
    {"PhOnlyHighP", kConsolidado, {.pH = 5.4f, .SatAl = 0, .V = 70, .classeP = 4}, true},
    {"SaturationOnlyVeryHighPLowAl", kConsolidado, {.pH = 5.5f, .SatAl = 5, .V = 64, .classeP = 5}, false},
    {"SaturationOnlyMediumP", kConsolidado, {.pH = 5.5f, .SatAl = 5, .V = 64, .classeP = 3}, true},
    {"NeitherFailed", kConsolidado, {.pH = 5.5f, .SatAl = 30, .V = 65, .classeP = 1}, false},
    {"OneCriterionPhBelow", kConvencional, {.pH = 5.9f, .SatAl = 0, .V = 90, .classeP = 5}, true},
    {"OneCriterionPhAtLimit", kConvencional, {.pH = 6.0f, .SatAl = 50, .V = 20, .classeP = 3}, false},
};

class LimingCriteriaTest : public ::testing::TestWithParam<CasoCriterio>, protected ComBanco {};

TEST_P(LimingCriteriaTest, NeedDecidedByPhAndSaturation)
{
    const CasoCriterio& caso = GetParam();
    const std::optional<SistemaCalagem> sistema = LeSistemaCalagem(db, 1, caso.sistema);
    ASSERT_TRUE(sistema.has_value());
    EntradaCalagem entrada{*sistema, analise(caso.solo), MetodoCalagem::SMP, 100.0f};
    // SMP 5.0 at pH 6.0 is 9.9 t/ha of a PRNT 100 material.
    EXPECT_NEAR(Verifica_Necessidade_PorSistema(db, entrada).quantidade, caso.calcula ? 9.9f : 0.0f, 1e-5);
}

INSTANTIATE_TEST_SUITE_P(NoTillAndConventional, LimingCriteriaTest, ::testing::ValuesIn(kCasosCriterio),
                         [](const auto& info) { return std::string(info.param.nome); });

struct CasoExibicao {
    float quantidade;
    float divisor;
    QString resultado;
    QString custo;
};

// Below 1 t/ha two decimals, else one; the cost on the unrounded dose, and none for a figure
// that rounds to 0.
const CasoExibicao kCasosExibicao[] = {
    {0.005f, 1, "0.0", "0"},   {0.01f, 1, "0.0", "0"},   {0.011f, 1, "0.01", "1.10"}, {0.5f, 1, "0.50", "50.00"},
    {0.999f, 1, "1.00", "99.90"}, {1.0f, 1, "1.0", "100.00"}, {1.04f, 1, "1.0", "104.00"}, {1.25f, 1, "1.3", "125.00"},
    {3.0f, 2, "1.5", "150.00"}, {0, 1, "0", "0"},        {-0.5f, 1, "0", "0"},
};

TEST(LimingDisplayTest, RoundingOfDoseAndCostUnderBothSymbols)
{
    for (const bool virgula : {false, true}) {
        test::MachineLocale machine(virgula ? test::commaLocale() : test::pointLocale());
        for (const CasoExibicao& caso : kCasosExibicao) {
            const ExibicaoCalagem e = exibeCalagem(caso.quantidade, caso.divisor, 100.0);
            EXPECT_EQ(e.resultado, naMaquina(caso.resultado)) << caso.quantidade;
            EXPECT_EQ(e.custo, naMaquina(caso.custo)) << caso.quantidade;
        }
    }
}

class LimingRunTest : public ::testing::Test, protected ComBanco {
protected:
    // A crop limed by base saturation alone; the shipped table has none.
    void SetUp() override
    {
        scratch.exec(QStringLiteral("INSERT INTO Calagem VALUES ('Só saturação', 1, 0, 1, 0, 0, 0, 70, 0, 0, 'N', 'N'), "
                                    "('Sem divisor', 1, 2, 0, 0, 0, 0, 75, 6, 75, 'N', 'N'), "
                                    "('Coluna 9', 1, 9, 1, 0, 0, 0, 75, 6, 75, 'n', 'N')"));
    }
};

TEST_F(LimingRunTest, SaturationOnlySystemForcesItsMethod)
{
    test::MachineLocale machine(test::pointLocale());
    for (const MetodoCalagem metodo : {MetodoCalagem::Nenhum, MetodoCalagem::SMP, MetodoCalagem::SatBases}) {
        const ResultadoCalagem r = CalculaCalagem(db, pedido(QStringLiteral("Só saturação"), metodo, {.pH = 7.0f}, kDolomitico));
        EXPECT_EQ(r.metodoForcado, metodo != MetodoCalagem::SatBases);
        // No limit pH applies: (70 - 45) x 10 / 100 at PRNT 75.
        EXPECT_EQ(r.exibicao.resultado, QStringLiteral("3.3"));
        EXPECT_EQ(r.exibicao.custo, QStringLiteral("733.33"));
    }
}

TEST_F(LimingRunTest, RefusalsComeBeforeAnyRead)
{
    PedidoCalagem p = pedido(kConvencional, MetodoCalagem::SMP, {}, kDolomitico);
    p.naoCalcular = true;
    p.posicaoSistema = 0;
    EXPECT_EQ(CalculaCalagem(db, p).desfecho, Desfecho::aviso(kMsgNaoCalcularMarcada));
    p.naoCalcular = false;
    const ResultadoCalagem r = CalculaCalagem(db, p);
    EXPECT_EQ(r.desfecho, Desfecho::aviso(kMsgSelecioneSistema));
}

TEST_F(LimingRunTest, DataFaultsStopWithEmptyLabels)
{
    const MaterialCalagem semPrnt{QStringLiteral("X"), 0.0f, 100.0};
    const MaterialCalagem semPreco{QStringLiteral("X"), 100.0f, QVariant()};
    struct Caso {
        PedidoCalagem pedido;
        QString trecho;
    };
    PedidoCalagem semMaterial = pedido(kConvencional, MetodoCalagem::SMP, {}, kDolomitico);
    semMaterial.material.reset();
    PedidoCalagem semIndice = pedido(kConvencional, MetodoCalagem::SMP, {}, kDolomitico);
    semIndice.analise.IndiceSMP.reset();
    PedidoCalagem semClasse = pedido(kConsolidado, MetodoCalagem::SMP, {.pH = 5.4f, .V = 70}, kDolomitico);
    semClasse.analise.ClasseP.reset();
    const Caso casos[] = {
        {pedido(kConvencional, MetodoCalagem::SMP, {}, semPrnt), QStringLiteral("PRNT")},
        {pedido(kArrozCaMg, MetodoCalagem::Nenhum, {.Ca = 1.0f}, semPrnt), QStringLiteral("PRNT")},
        {semMaterial, QStringLiteral("PRNT")},
        {pedido(kConvencional, MetodoCalagem::SMP, {}, semPreco), QStringLiteral("preço")},
        {semIndice, QStringLiteral("índice SMP")},
        {semClasse, QStringLiteral("classe de P")},
        {pedido(QStringLiteral("Sem divisor"), MetodoCalagem::SatBases, {}, kDolomitico), QStringLiteral("divisor")},
        {pedido(QStringLiteral("Sistema sumido"), MetodoCalagem::SatBases, {}, kDolomitico), QStringLiteral("Calagem")},
    };
    for (const Caso& caso : casos) {
        const ResultadoCalagem r = CalculaCalagem(db, caso.pedido);
        ASSERT_TRUE(r.desfecho) << caso.trecho.toStdString();
        EXPECT_EQ(r.desfecho->tipo, TipoDesfecho::Critico);
        EXPECT_TRUE(r.desfecho->texto.contains(caso.trecho)) << r.desfecho->texto.toStdString();
        EXPECT_TRUE(r.exibicao.resultado.isEmpty());
        EXPECT_TRUE(r.exibicao.custo.isEmpty());
    }
    // Values a path does not read may be missing: no need, no PRNT; base saturation, no SMP.
    const ResultadoCalagem semNecessidade = CalculaCalagem(db, pedido(kArrozCaMg, MetodoCalagem::SMP, {}, semPrnt));
    EXPECT_EQ(semNecessidade.exibicao.resultado, QStringLiteral("0"));
    semIndice.metodo = MetodoCalagem::SatBases;
    EXPECT_FALSE(CalculaCalagem(db, semIndice).desfecho);
}

TEST_F(LimingRunTest, SmpColumnTheTableLacksIsADatabaseError)
{
    EXPECT_THROW(CalculaCalagem(db, pedido(QStringLiteral("Coluna 9"), MetodoCalagem::SMP, {}, kDolomitico)), StoreError);
    EXPECT_FALSE(db.cn.isOpen());
    EXPECT_FALSE(db.rs.isOpen());
}

TEST_F(LimingRunTest, SystemsOfTheGroupInTableOrder)
{
    const QStringList graos = SistemasDoGrupo(db, 1);
    ASSERT_EQ(graos.size(), 10);
    EXPECT_EQ(graos.first(), QStringLiteral("Selecione"));
    EXPECT_EQ(graos[1], kConvencional);
    EXPECT_EQ(graos[6], kArrozCaMg);
    EXPECT_EQ(graos.last(), QStringLiteral("Coluna 9"));
    EXPECT_EQ(SistemasDoGrupo(db, 7), (QStringList{QStringLiteral("Selecione"), QStringLiteral("Cana-de-açúcar")}));
    EXPECT_TRUE(SistemasDoGrupo(db, 8).isEmpty());
    EXPECT_FALSE(db.cn.isOpen());
}

TEST(LimingTextTest, SimNaoTakesOnlyTheLetterS)
{
    EXPECT_TRUE(SimNao(QStringLiteral("S")));
    EXPECT_TRUE(SimNao(QStringLiteral("s")));
    for (const QVariant& nao : {QVariant(QStringLiteral("N")), QVariant(QStringLiteral("Sim")), QVariant(), QVariant(QString())})
        EXPECT_FALSE(SimNao(nao));
}

class LimingSlotsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        s.Analise = QVector<QVariant>(36);
        s.Analise[6] = 12.5f;
        s.Grupo = 1;
        for (int slot = 5; slot <= 11; ++slot)
            s.Dados[slot] = QStringLiteral("antes");
        s.CustoCalcario = 99;
        s.CustoEtapa1 = s.CustoEtapa2 = s.CustoEtapa3 = 5;
    }

    Session s;
};

TEST_F(LimingSlotsTest, WritesTheRoundedDoseAndItsCosts)
{
    // Material, PRNT text, R$/t, dose, R$/ha, t and R$ over 12.5 ha; a zero dose keeps its material.
    struct Caso {
        QString dose, custo;
        MaterialCalagem material;
        std::array<QVariant, 7> dados;
    };
    const Caso casos[] = {
        {"2,1", "469,33", kDolomitico, {QStringLiteral("Calcário dolomítico"), QStringLiteral("75"), 220.0f, 2.1f, 462.0f, 26.25f, 5775.0f}},
        {"0", "0", kCalcitico, {QStringLiteral("Calcário calcítico"), QStringLiteral("80"), 247.5f, 0.0f, 0.0f, 0.0f, 0.0f}},
    };
    test::MachineLocale machine(test::commaLocale());
    for (const Caso& caso : casos) {
        ASSERT_FALSE(GravaCalagem(s, {false, caso.dose, caso.custo, caso.material}));
        for (int i = 0; i < 7; ++i) {
            EXPECT_EQ(s.Dados[5 + i].typeId(), caso.dados[i].typeId()) << i;
            if (i < 2)
                EXPECT_EQ(s.Dados[5 + i], caso.dados[i]);
            else
                EXPECT_FLOAT_EQ(s.Dados[5 + i].toFloat(), caso.dados[i].toFloat()) << i;
        }
        EXPECT_NEAR(s.CustoCalcario, caso.dados[6].toDouble(), 1e-3);
        EXPECT_EQ(s.CustoEtapa1 + s.CustoEtapa2 + s.CustoEtapa3, 0);
    }
}

TEST_F(LimingSlotsTest, UncalculatedDoseIsRefusedWithTheCostCleared)
{
    EXPECT_EQ(GravaCalagem(s, {false, QString(), QString(), kDolomitico}), Desfecho::aviso(kMsgCalcarioNaoCalculado));
    EXPECT_EQ(s.CustoCalcario, 0);
    EXPECT_EQ(s.Dados[8].toString(), QStringLiteral("antes"));
    EXPECT_EQ(s.CustoEtapa1, 5);
}

TEST_F(LimingSlotsTest, NoLimingZeroesSlotsAndCost)
{
    ExcluiCalagem(s);
    for (int slot = 5; slot <= 11; ++slot) {
        EXPECT_EQ(s.Dados[slot].typeId(), QMetaType::Int) << slot;
        EXPECT_EQ(s.Dados[slot].toInt(), 0) << slot;
    }
    s.Dados[5] = QStringLiteral("depois");  // proceeding with the box ticked writes nothing
    EXPECT_FALSE(GravaCalagem(s, {true, QString(), QString(), std::nullopt}));
    EXPECT_EQ(s.Dados[5].toString(), QStringLiteral("depois"));
    EXPECT_EQ(s.CustoCalcario, 0);
    EXPECT_EQ(s.CustoEtapa3, 0);
}

} // namespace
} // namespace lavra
