#include "app/analise.h"
#include "app/slots.h"
#include "store/schema.h"

#include <gtest/gtest.h>

namespace lavra {
namespace {

struct SlotNomeado {
    const char* tabela;
    const char* coluna;
    int slot;
};

int ordinal(const QString& tabela, const QString& coluna)
{
    const TableDef* definicao = schema::findTable(tabela);
    if (!definicao)
        return -1;
    for (int i = 0; i < definicao->columns.size(); ++i) {
        if (definicao->columns[i].name == coluna)
            return i;
    }
    return -1;
}

TEST(SlotsTest, EverySlotIsTheColumnOfItsNameLessOne)
{
    using namespace slot;
    const SlotNomeado nomeados[] = {
        { "RecoForm", "Cultura", kCultura },
        { "RecoFlorest", "CultivoOrdem", kCultivoOrdem },
        { "RecoFormulac", "DataPlantio", kDataPlantio },
        { "RecoForm", "Expectativa", kExpectativa },
        { "RecoForm", "CalcFonte", kCalcFonte },
        { "RecoFlorest", "CalcPRNT", kCalcPRNT },
        { "RecoForm", "CalcPreco", kCalcPreco },
        { "RecoForm", "CalcDose", kCalcDose },
        { "RecoFormulac", "CalcCusto", kCalcCusto },
        { "RecoForm", "CalcQuant", kCalcQuant },
        { "RecoForm", "CalcCustoTotal", kCalcCustoTotal },
        { "RecoForm", "BaseFonte", kBase + produto::kFonte },
        { "RecoForm", "BasePreco", kBase + produto::kPreco },
        { "RecoForm", "BaseDose", kBase + produto::kDose },
        { "RecoForm", "BaseCusto", kBase + produto::kCusto },
        { "RecoForm", "BaseQuant", kBase + produto::kQuant },
        { "RecoForm", "BaseCustoTotal", kBase + produto::kCustoTotal },
        { "RecoFormulac", "MistFonte", kBase },
        { "RecoForm", "CobFonte", kCobFormulas },
        { "RecoForm", "CobCustoTotal", kCobFormulas + produto::kCustoTotal },
        { "RecoForm", "Parc1Dose", kCobFormulas + kParcelas },
        { "RecoForm", "Parc8Epoca", kCobFormulas + kParcelas + 2 * kParcelasTotal - 1 },
        { "RecoFormulac", "CobFonte", kCobFormulacao },
        { "RecoFormulac", "Parc1Dose", kCobFormulacao + kParcelas },
        { "RecoFormulac", "Parc8Epoca", kCobFormulacao + kParcelas + 2 * kParcelasTotal - 1 },
        { "RecoFlorest", "Plantio0", kPlantio },
        { "RecoFlorest", "Cob0", kCobFlorest },
        { "RecoFlorest", "Repos0", kReposicao },
        { "RecoForm", "CustoTotal", kTotalFormulas },
        { "RecoFormulac", "CustoTotal", kTotalFormulacao },
        { "RecoFlorest", "CustoTotal", kTotalFlorest },
        { "RecoForm", "Aviso", kTotalFormulas + fim::kAviso },
        { "RecoFlorest", "Info", kTotalFlorest + fim::kInfo },
    };
    for (const SlotNomeado& s : nomeados)
        EXPECT_EQ(coluna(s.slot), ordinal(QString::fromLatin1(s.tabela), QString::fromLatin1(s.coluna)))
            << s.tabela << "." << s.coluna;
}

TEST(SlotsTest, EveryAnalysisOrdinalIsTheColumnOfItsName)
{
    using namespace analise;
    const std::pair<const char*, int> nomeados[] = {
        { "Código", kCodigo }, { "Cliente", kCliente }, { "Local_", kLocal }, { "Fazenda", kFazenda },
        { "Gleba", kGleba }, { "Data_", kData }, { "Area", kArea }, { "NumAnalise", kNumAnalise }, { "pH", kPH },
        { "Ca", kCa }, { "Mg", kMg }, { "Al", kAl }, { "H_Al", kHAl }, { "SatAl", kSatAl },
        { "SatBases", kSatBases }, { "CTC", kCTC }, { "SMP", kSMP }, { "MO", kMO }, { "Argila", kArgila },
        { "P", kP }, { "K", kK }, { "MetodoP", kMetodoP }, { "ArrozIrrig", kArrozIrrig },
        { "ClassePH", kClassePH }, { "ClasseCa", kClasseCa }, { "ClasseMg", kClasseMg },
        { "ClasseMO", kClasseMO }, { "ClasseP", kClasseP }, { "ClasseK", kClasseK }, { "ClasseCTC", kClasseCTC },
        { "ClasseSatAl", kClasseSatAl }, { "ClasseSatBases", kClasseSatBases },
    };
    for (const auto& [nome, ordinalNomeado] : nomeados)
        EXPECT_EQ(ordinalNomeado, ordinal(QStringLiteral("Analises"), QString::fromUtf8(nome))) << nome;
    EXPECT_EQ(kColunas, schema::findTable(QStringLiteral("Analises"))->columns.size());
}

} // namespace
} // namespace lavra
