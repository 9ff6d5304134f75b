#include "store/errortext.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

struct EngineCase {
    int code;
    const char* words;
    EngineFailure failure;
    const char* told;  // a part of the plain text
};

void PrintTo(const EngineCase& c, std::ostream* os) { *os << c.code << " " << c.words; }

class EngineTextTest : public ::testing::TestWithParam<EngineCase> {};

TEST_P(EngineTextTest, EngineWordsBecomePlainPortuguese)
{
    const EngineCase& c = GetParam();
    const QString words = QString::fromUtf8(c.words);
    EXPECT_EQ(engineFailure(c.code, words), c.failure);
    const QString plain = plainEngineText(c.code, words);
    EXPECT_TRUE(plain.contains(QString::fromUtf8(c.told))) << plain.toStdString();
    if (c.failure != EngineFailure::Other) {
        EXPECT_FALSE(plain.contains(words)) << "the engine's words are a detail, not the message";
    }
}

// Code -1 stands for a failure whose code did not come through: the words alone decide.
INSTANTIATE_TEST_SUITE_P(
    Engine, EngineTextTest,
    ::testing::Values(
        EngineCase{8, "attempt to write a readonly database", EngineFailure::ReadOnly, "somente leitura"},
        EngineCase{5, "database is locked", EngineFailure::Busy, "em uso por outro programa"},
        EngineCase{6, "database table is locked", EngineFailure::Busy, "Feche o outro programa e tente de novo"},
        EngineCase{26, "file is not a database", EngineFailure::Damaged, "Restaure uma cópia"},
        EngineCase{-1, "file is not a database", EngineFailure::Damaged, "danificado"},
        EngineCase{11, "database disk image is malformed", EngineFailure::Damaged, "danificado"},
        EngineCase{13, "database or disk is full", EngineFailure::DiskFull, "O disco está cheio"},
        EngineCase{14, "unable to open database file", EngineFailure::CannotOpen, "Não foi possível abrir"},
        EngineCase{10, "disk I/O error", EngineFailure::DiskError, "erro de leitura ou gravação no disco"},
        EngineCase{266, "disk I/O error", EngineFailure::DiskError, "no disco"},  // an extended code
        EngineCase{1, "no such table: Clientes", EngineFailure::MissingTable, "A tabela Clientes não existe"},
        EngineCase{1, "no such table: main.NPK", EngineFailure::MissingTable, "A tabela NPK não existe"},
        // Words of no common failure are the best there is to tell.
        EngineCase{1, "disco cheio", EngineFailure::Other, "disco cheio"},
        EngineCase{19, "UNIQUE constraint failed: Clientes.Nome", EngineFailure::Other, "UNIQUE constraint"}));

} // namespace
