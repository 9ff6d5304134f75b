#include "tools/converter.h"
#include "testsupport.h"

#include <gtest/gtest.h>

namespace lavra {
namespace {

// The value, in a unit, of an element; as the window reads the factor back from its list.
std::optional<QString> converte(const QString& elemento, const QString& unidade, const QString& valor)
{
    for (const ElementoConvertido& e : elementosConvertidos())
        if (e.nome == elemento)
            for (const UnidadeDeOrigem& u : e.origens)
                if (u.unidade == unidade)
                    return Calcula(valor, textoDoFator(u.fator));
    return std::nullopt;
}

TEST(ConverterTest, TheExamplesUnderBothDecimalSymbols)
{
    struct Caso {
        const char* elemento;
        const char* unidade;
        const char* valor;  // with the point; typed with the machine's symbol
        const char* esperado;
    };
    const Caso casos[] = {
        {"K", "cmolc/dm³", "0.2", "78.200"},  // 391, not the 399 of the CTC
        {"Ca", "mg/dm³", "200", "0.998"},
        {"MO", "C%", "15", "25.800"},
        {"Mg", "g/dm³", "0.5", "4.112"},
        {"Al", "ppm", "90", "1.000"},
        {"P", "meq/100cm³", "0.05", "5.000"},
        {"Argila", "g/kg", "450", "45.000"},
    };
    for (const QLocale& locale : {test::commaLocale(), test::pointLocale()}) {
        test::MachineLocale machine(locale);
        const QChar simbolo = decimalSymbol();
        for (const Caso& c : casos) {
            const QString valor = QString::fromLatin1(c.valor).replace(QLatin1Char('.'), simbolo);
            const QString esperado = QString::fromLatin1(c.esperado).replace(QLatin1Char('.'), simbolo);
            EXPECT_EQ(converte(QString::fromUtf8(c.elemento), QString::fromUtf8(c.unidade), valor), esperado)
                << c.elemento << ' ' << c.unidade;
        }
    }
}

TEST(ConverterTest, TheTablesAndWhatCannotBeComputed)
{
    test::MachineLocale machine(test::commaLocale());
    const auto& elementos = elementosConvertidos();
    ASSERT_EQ(elementos.size(), 8);
    QStringList nomes;
    for (const auto& e : elementos)
        nomes << e.nome;
    EXPECT_EQ(nomes, (QStringList{"Ca", "Mg", "Al", "H", "MO", "Argila", "P", "K"}));
    // K converts only to mg/dm³: 25 mg/dm³ of K in cmolc cannot be asked for.
    EXPECT_EQ(elementos[7].unidadeAlvo, "mg/dm³");
    EXPECT_EQ(elementos[5].origens.size(), 3);
    EXPECT_EQ(textoDoFator("0.00499"), "0,00499");
    EXPECT_EQ(textoDoFator("0.01111111"), "0,01111111");

    EXPECT_EQ(Calcula("", "1"), std::nullopt);
    EXPECT_EQ(Calcula("1.5", "1"), std::nullopt) << "never read with the other decimal symbol";
    EXPECT_EQ(Calcula("2", ""), std::nullopt);

    EXPECT_EQ(campoDaAnalise(0), "txtCa");
    EXPECT_EQ(campoDaAnalise(3), "") << "H has no field in the register";
    EXPECT_EQ(campoDaAnalise(7), "txtK");
}

} // namespace
} // namespace lavra
