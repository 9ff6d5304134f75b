#include "store/provenance.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

TEST(ProvenanceTest, StartingRowsCarryTheirSourceAndConfidence)
{
    const auto milho = procedencia(QStringLiteral("GRAON"), QStringLiteral("MilhoG"));
    ASSERT_TRUE(milho);
    EXPECT_EQ(milho->confianca, QStringLiteral("medium"));
    EXPECT_TRUE(milho->fonte.contains(QStringLiteral("2004")));
    EXPECT_EQ(procedencia(QStringLiteral("SMP"), QStringLiteral("4.4"))->confianca, QStringLiteral("high"));
    EXPECT_FALSE(procedencia(QStringLiteral("GRAON"), QStringLiteral("Cultura do usuário")));
    EXPECT_FALSE(procedencia(QStringLiteral("Clientes"), QStringLiteral("Ana")));
}

} // namespace
