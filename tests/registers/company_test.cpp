#include "app/session.h"
#include "registers/company.h"
#include "store/cursormodel.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

TEST(CompanyTest, SavingTwiceOverwritesTheOneRow)
{
    test::ScratchDatabase scratch;
    Store db(scratch.path());
    EXPECT_FALSE(LeEmpresa(db));
    QStringList campos;
    for (int i = 0; i < kCamposEmpresa; ++i)
        campos << QStringLiteral("campo %1").arg(i);
    SalvaEmpresa(db, campos);
    campos[0] = QStringLiteral("Agro D'Oeste");
    SalvaEmpresa(db, campos);
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM Empresa")).toInt(), 1);
    EXPECT_EQ(LeEmpresa(db)->at(0), QStringLiteral("Agro D'Oeste"));
    ExcluiEmpresa(db);
    EXPECT_FALSE(LeEmpresa(db));
}

TEST(CompanyTest, MarkingATechnicianUnmarksTheOthersAndTheLaterNamesakeWins)
{
    test::ScratchDatabase scratch;
    scratch.exec(QStringLiteral("INSERT INTO TecResp VALUES ('Ana', 'Eng. Agrônoma', 'RS-1', 1), "
                                "('Bruno', 'Eng. Agrônomo', 'RS-2', 0), ('Bruno', 'Téc. Agrícola', 'RS-3', 0)"));
    Session session(scratch.path());
    CursorModel view(scratch.path(), QStringLiteral("SELECT * FROM TecResp"));
    EXPECT_TRUE(MarcaTecnico(view, session, QStringLiteral("Bruno")));
    EXPECT_EQ(session.NomeTec, QStringLiteral("Bruno"));
    EXPECT_EQ(session.CreaTec, QStringLiteral("RS-3"));
    EXPECT_EQ(scratch.scalar(QStringLiteral("SELECT group_concat(Assina, '') FROM TecResp")).toString(),
              QStringLiteral("011"));

    EXPECT_FALSE(MarcaTecnico(view, session, QStringLiteral("Carla")));
    EXPECT_EQ(session.NomeTec, QStringLiteral("Bruno"));
}

} // namespace
