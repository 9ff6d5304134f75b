#include "registers/clients.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

class ClientsTest : public ::testing::Test {
protected:
    test::ScratchDatabase scratch;
    Store db{scratch.path()};

    void SetUp() override
    {
        scratch.exec(QStringLiteral("INSERT INTO Clientes (Nome) VALUES ('Ana'), ('Bruno')"));
        scratch.exec(QStringLiteral("INSERT INTO Analises (\"Código\", Cliente) VALUES ('F/G/01/01/2020', 'ana')"));
    }

    std::optional<QString> refusal(const char* operacao, const char* nome, const char* anterior = "")
    {
        const Parada v = verificaCliente(db, QString::fromUtf8(operacao), QString::fromUtf8(nome),
                                              QString::fromUtf8(anterior));
        if (v) {
            EXPECT_EQ(v->tipo, TipoDesfecho::Critico);
        }
        return v ? std::optional<QString>(v->texto) : std::nullopt;
    }
};

TEST_F(ClientsTest, NamesAreComparedWithoutRegardToCase)
{
    EXPECT_EQ(refusal("Cadastro", "ANA"), kMsgClienteRepetido);
    EXPECT_EQ(refusal("Cadastro", "Carla"), std::nullopt);
    // Bruno has no analyses: he may be renamed, but not onto another client.
    EXPECT_EQ(refusal("Edição", "Bruno Lima", "Bruno"), std::nullopt);
    EXPECT_EQ(refusal("Edição", "ana", "Bruno"), kMsgClienteRepetido);
    EXPECT_EQ(refusal("Edição", "BRUNO", "Bruno"), std::nullopt);
    // Nor do blanks around a name make another client of it.
    EXPECT_EQ(refusal("Cadastro", "ana  "), kMsgClienteRepetido);
    EXPECT_EQ(refusal("Cadastro", " Bruno"), kMsgClienteRepetido);
    EXPECT_EQ(refusal("Edição", "ANA ", "Bruno"), kMsgClienteRepetido);
    EXPECT_EQ(refusal("Edição", "Bruno ", "Bruno"), std::nullopt);
}

TEST_F(ClientsTest, AnalysesHoldTheName)
{
    EXPECT_EQ(refusal("Edição", "Ana Maria", "Ana"), kMsgEdicaoNomeCliente);
    // A change of case alone is always allowed, and the analyses still match.
    EXPECT_EQ(refusal("Edição", "ANA", "Ana"), std::nullopt);
    EXPECT_EQ(refusal("Exclusão", "Ana"), kMsgExclusaoCliente);
    EXPECT_EQ(refusal("Exclusão", "Bruno"), std::nullopt);
    EXPECT_FALSE(db.cn.isOpen());
}

} // namespace
