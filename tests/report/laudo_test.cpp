#include "app/session.h"
#include "report/laudo.h"
#include "testsupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <gtest/gtest.h>

using namespace lavra;
using namespace lavra::report;

// The pages are compared, field by field, with the reference files in golden/. A missing reference
// fails. After a deliberate change of a layout, run once with LAVRA_REGRAVA_LAUDOS=1 to write them
// afresh, and read the difference before committing it.

namespace {

const QString kAnalise = QStringLiteral("Santa Rita/Coxilha/15/08/2026");
const QString kNota = QStringLiteral(
    "Esta recomendação foi ajustada pelo usuário do programa, consulte-o para saber as razões do ajuste");

// A saved row: every column 0, as the chain leaves a slot no step wrote, except those given.
QString linha(const QString& tabela, int colunas, const QMap<int, QString>& valores)
{
    QStringList celulas;
    for (int c = 0; c < colunas; ++c)
        celulas << valores.value(c, QStringLiteral("0"));
    return QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(tabela, celulas.join(QStringLiteral(", ")));
}

// Columns from `primeira` on, in order.
void junta(QMap<int, QString>& valores, int primeira, const QStringList& sql)
{
    for (int k = 0; k < sql.size(); ++k)
        valores[primeira + k] = sql[k];
}

QMap<int, QString> cabeca(const QString& cultivo, const QString& cultura, const QString& ordem, const QString& data,
                          const QString& expectativa)
{
    QMap<int, QString> v;
    junta(v, 0, {"'" + kAnalise + "'", "'" + cultivo + "'", "'" + cultura + "'", "'" + ordem + "'", "'" + data + "'",
                 expectativa});
    return v;
}

const QStringList kCalcario = {"'Calcário dolomítico'", "85", "180.5", "3.4", "613.7", "34", "6137"};

class LaudoTest : public ::testing::Test {
protected:
    LaudoTest() : session(scratch.path()), locale(test::commaLocale())
    {
        scratch.exec(QStringLiteral(
            "INSERT INTO Empresa VALUES ('AgroSul Consultoria Agronômica Ltda.', 'Rua Sete de Setembro', '1250', "
            "'99700-000', 'Erechim', 'Centro', 'RS', '(54) 3321-4567', 'contato@agrosul.com.br', "
            "'www.agrosul.com.br')"));
        scratch.exec(QStringLiteral(
            "INSERT INTO Analises VALUES ('%1', 'Ana Prado', 'Erechim', 'Santa Rita', 'Coxilha', '2026-08-15', 10, "
            "'1234', 5.2, 3, 1.2, 0.4, 4.5, 8.3, 49.6, 8.93, 5.6, 3, 45, 8, 90, 1, 1, 0, 0, 0, 0, "
            "2, 3, 4, 3, 2, 4, 3, 2, 2)")
                         .arg(kAnalise));
        scratch.exec(QStringLiteral(
            "INSERT INTO Analises VALUES ('Boa Vista/Lote 2/01/03/2026', 'Caio Lemos', 'Getúlio Vargas', "
            "'Boa Vista', 'Lote 2', '2026-03-01', 4, '77', 6, 5, 2, 0, 2, 0, 78, 9.2, 6.4, 2, 30, 20, 150, 1, 1, "
            "0, 0, 0, 0, 4, 4, 4, 2, 4, 5, 3, 1, 4)"));

        // Maize with everything: liming, formula, urea in two parcels and orientations.
        auto milho = cabeca("Milho-Primeiro-15/10/2026", "Milho", "Primeiro", "2026-10-15", "10");
        junta(milho, 6, kCalcario);
        junta(milho, 13, {"'5-20-20'", "2150", "350", "752.5", "3500", "7525", "'Ureia'", "2600", "300", "780",
                          "3000", "7800", "150", "'V4'", "150", "'V8'"});
        junta(milho, 41, {"21462", "''", "'Aplicar o calcário a lanço três meses antes da semeadura.'"});
        scratch.exec(linha("RecoForm", 44, milho));

        // Maize without liming.
        auto semCalagem = cabeca("Milho-Segundo-20/01/2027", "Milho", "Segundo", "2027-01-20", "9.5");
        junta(semCalagem, 13, {"'5-20-20'", "2150", "300", "645", "3000", "6450", "'Ureia'", "2600", "250", "650",
                               "2500", "6500", "250", "'V6'"});
        junta(semCalagem, 41, {"12950", "''", "''"});
        scratch.exec(linha("RecoForm", 44, semCalagem));

        // Soybean: no nitrogen at all, and a need adjusted by hand.
        auto soja = cabeca("Soja-Primeiro-20/11/2026", "Soja", "Primeiro", "2026-11-20", "4");
        junta(soja, 6, {"'Calcário calcítico'", "90.5", "150", "2.2", "330", "22", "3300"});
        junta(soja, 13, {"'0-20-30'", "2300", "280", "644", "2800", "6440"});
        junta(soja, 41, {"9740", "'" + kNota + "'", "''"});
        scratch.exec(linha("RecoForm", 44, soja));

        // Irrigated rice from raw materials, six parcels, the sixth time typed as a bare number.
        auto arroz = cabeca("Arroz irrigado (RS) - Sistema pré-germinado-Primeiro-10/11/2026",
                            "Arroz irrigado (RS) - Sistema pré-germinado", "Primeiro", "2026-11-10", "3");
        junta(arroz, 6, kCalcario);
        junta(arroz, 13, {"'Cama de frango'", "275", "2000", "550", "20000", "5500",
                          "'Ureia'", "3547.5", "60", "212.85", "600", "2128.5",
                          "'Superfosfato triplo'", "3190", "110", "350.9", "1100", "3509",
                          "'Cloreto de potássio'", "2970", "0", "0", "0", "0",
                          "'Ureia'", "3547.5", "180", "638.55", "1800", "6385.5"});
        junta(arroz, 43, {"50", "'V3'", "40", "'V6'", "30", "'R0'", "25", "'15'", "20", "'30'", "15", "'45'"});
        junta(arroz, 59, {"23660.5", "''", "'Manter a lâmina de água após a cobertura.'"});
        scratch.exec(linha("RecoFormulac", 62, arroz));

        // Eucalyptus: planting by formula, topdressing with one source, replacement left empty.
        auto eucalipto = cabeca("Eucalipto-Primeiro-05/09/2026", "Eucalipto", "Primeiro", "2026-09-05", "0");
        junta(eucalipto, 13, {"'Fórmula#Preço (R$/t)#Dosagem (kg/ha)#Custo (R$/ha)#Quantidade (kg)#Custo total (R$)'",
                              "'5-30-15#2800#250#700#2500#7000'"});
        junta(eucalipto, 18, {"'Fonte#Preço (R$/t)#Dosagem (kg/ha)#Custo (R$/ha)#Quantidade (kg)#Custo total (R$)'",
                              "'Ureia#2600#120,5#313,3#1205#3133'"});
        junta(eucalipto, 23, {"'Fontes#Preço (R$/t)#Dosagem (kg/ha)#Custo (R$/ha)#Quantidade (kg)#Custo total (R$)'",
                              "'---#---#---#---#---#---'"});
        junta(eucalipto, 28, {"10133", "''", "''"});
        scratch.exec(linha("RecoFlorest", 31, eucalipto));

        session.NomeTec = QStringLiteral("Marina Costa Ribeiro");
        session.ProfTec = QStringLiteral("Engenheira Agrônoma");
        session.CreaTec = QStringLiteral("RS-123456");
    }

    Pagina monta(TipoLaudo tipo, const QString& cultivo)
    {
        const Laudo laudo = MontaLaudo(session, tipo, kAnalise, cultivo);
        if (!laudo.pagina) {
            ADD_FAILURE() << (laudo.recusa ? laudo.recusa->texto.toStdString() : "");
            return {};
        }
        return *laudo.pagina;
    }

    QString campo(const Pagina& pagina, const char* nome)
    {
        const TextoPosto* t = pagina.texto(QString::fromLatin1(nome));
        return t ? t->texto : QStringLiteral("<no field>");
    }

    test::ScratchDatabase scratch;
    Session session;
    test::MachineLocale locale;
};

void comparaComReferencia(const QString& nome, const QString& atual)
{
    const QString caminho = QFileInfo(QString::fromUtf8(__FILE__)).dir().filePath(QStringLiteral("golden/") + nome);
    QFile arquivo(caminho);
    if (qEnvironmentVariableIsSet("LAVRA_REGRAVA_LAUDOS")) {
        ASSERT_TRUE(arquivo.open(QIODevice::WriteOnly | QIODevice::Truncate));
        arquivo.write(atual.toUtf8());
        arquivo.close();
    }
    ASSERT_TRUE(arquivo.open(QIODevice::ReadOnly)) << "missing reference " << caminho.toStdString();
    const QStringList esperadas = QString::fromUtf8(arquivo.readAll()).split(QLatin1Char('\n'));
    const QStringList atuais = atual.split(QLatin1Char('\n'));
    int diferencas = 0;
    for (int i = 0; i < std::max(esperadas.size(), atuais.size()) && diferencas < 10; ++i) {
        if (esperadas.value(i) != atuais.value(i)) {
            ++diferencas;
            ADD_FAILURE() << nome.toStdString() << " line " << i + 1 << "\n  expected: "
                          << esperadas.value(i).toStdString() << "\n  actual:   " << atuais.value(i).toStdString();
        }
    }
}

struct CasoReferencia {
    const char* arquivo;
    TipoLaudo tipo;
    const char* cultivo;
};

void PrintTo(const CasoReferencia& caso, std::ostream* os) { *os << caso.arquivo; }

class ReferenciaTest : public LaudoTest, public ::testing::WithParamInterface<CasoReferencia> {};

TEST_P(ReferenciaTest, EveryFieldAsTheReferenceHasIt)
{
    const CasoReferencia& caso = GetParam();
    const Pagina pagina = monta(caso.tipo, QString::fromUtf8(caso.cultivo));
    comparaComReferencia(QString::fromLatin1(caso.arquivo), textoPagina(pagina));
}

INSTANTIATE_TEST_SUITE_P(
    Laudos, ReferenciaTest,
    ::testing::Values(CasoReferencia{"forml_milho.txt", TipoLaudo::Formulas, "Milho-Primeiro-15/10/2026"},
                      CasoReferencia{"forml_sem_calagem.txt", TipoLaudo::Formulas, "Milho-Segundo-20/01/2027"},
                      CasoReferencia{"forml_sem_cobertura.txt", TipoLaudo::Formulas, "Soja-Primeiro-20/11/2026"},
                      CasoReferencia{"formulacao_arroz.txt", TipoLaudo::Formulacao,
                                     "Arroz irrigado (RS) - Sistema pré-germinado-Primeiro-10/11/2026"},
                      CasoReferencia{"florest_eucalipto.txt", TipoLaudo::Florestais, "Eucalipto-Primeiro-05/09/2026"}),
    [](const ::testing::TestParamInfo<CasoReferencia>& info) {
        return QFileInfo(QString::fromLatin1(info.param.arquivo)).baseName().toStdString();
    });

TEST_F(LaudoTest, AMissingCompanyOrRowIsRefusedWithTheKeysSetAll)
{
    const Laudo semLinha = LaudoFormulacao(session, kAnalise, QStringLiteral("Milho-Primeiro-15/10/2026"));
    EXPECT_FALSE(semLinha.pagina);
    EXPECT_EQ(semLinha.recusa, Desfecho::aviso(msgSemRecomendacao(kAnalise, QStringLiteral("Milho-Primeiro-15/10/2026"))));

    scratch.exec(QStringLiteral("DELETE FROM Empresa"));
    const Laudo semEmpresa = LaudoFlorest(session, kAnalise, QStringLiteral("Eucalipto-Primeiro-05/09/2026"));
    EXPECT_FALSE(semEmpresa.pagina);
    EXPECT_EQ(semEmpresa.recusa, Desfecho::aviso(QStringLiteral("Não há empresa cadastrada responsável pelo laudo! "
                                                                "Acesse o menu arquivo para fazer o cadastro.")));
    // The observations window works on these even when no page came of them.
    EXPECT_EQ(session.TipoLaudo, QStringLiteral("Florestais"));
    EXPECT_EQ(session.LaudoAnalise, kAnalise);
    EXPECT_EQ(session.LaudoCultivo, QStringLiteral("Eucalipto-Primeiro-05/09/2026"));
}

TEST_F(LaudoTest, TheFirstRowOfTheKeyIsTheOnePrinted)
{
    auto copia = cabeca("Milho-Primeiro-15/10/2026", "Milho (cópia)", "Primeiro", "2026-10-15", "12");
    scratch.exec(linha("RecoForm", 44, copia));
    EXPECT_EQ(campo(monta(TipoLaudo::Formulas, QStringLiteral("Milho-Primeiro-15/10/2026")), "lblDadCult5"),
              QStringLiteral("Milho"));
}

TEST_F(LaudoTest, TheAnalysisOfTheRecommendationIsPrintedWhateverWasLoadedBefore)
{
    session.Analise = QVector<QVariant>(36, QVariant(QStringLiteral("outra")));
    const Pagina pagina = monta(TipoLaudo::Formulas, QStringLiteral("Soja-Primeiro-20/11/2026"));
    EXPECT_EQ(campo(pagina, "lblDadCult1"), QStringLiteral("Ana Prado"));
    EXPECT_EQ(campo(pagina, "lblDiag13"), QStringLiteral("90,0"));
}

// Irrigated rice reads its figure as an increment of yield, but only by the crop's exact start
// and never in the forest layout.
TEST_F(LaudoTest, TheYieldCaptionFollowsTheCropInTheFirstTwoLayouts)
{
    struct Caso {
        TipoLaudo tipo;
        int colunas;
        const char* cultura;
        const char* legenda;
    };
    const char* expectativa = "Expectativa de rendim. (t/ha):";
    const char* incremento = "Incremento de rendim. (t/ha):";
    const Caso casos[] = {
        {TipoLaudo::Formulas, 44, "Arroz irrigado (RS) - Sistema convencional", incremento},
        {TipoLaudo::Formulacao, 62, "Arroz irrigado (RS)", incremento},
        {TipoLaudo::Florestais, 31, "Arroz irrigado (RS) - Sistema convencional", expectativa},
        {TipoLaudo::Formulas, 44, "arroz irrigado (RS) - Sistema convencional", expectativa},
        {TipoLaudo::Formulas, 44, "Arroz irrigado (SC)", expectativa},
        {TipoLaudo::Formulacao, 62, "Arroz de sequeiro", expectativa},
    };
    int n = 0;
    for (const Caso& c : casos) {
        const QString cultivo = QStringLiteral("Caso %1").arg(++n);
        auto valores = cabeca(cultivo, QString::fromUtf8(c.cultura), "Primeiro", "2026-11-10", "2");
        scratch.exec(linha(definicao(c.tipo).tabela, c.colunas, valores));
        EXPECT_EQ(campo(monta(c.tipo, cultivo), "lblExpect"), QString::fromUtf8(c.legenda)) << c.cultura;
    }
}

// Numbers follow the machine's decimal symbol; the stored zeros of a plan without liming keep their decimals.
TEST_F(LaudoTest, ZerosOfAPlanWithoutLimingUnderBothSymbols)
{
    struct Caso {
        QLocale locale;
        const char* preco;
        const char* dose;
    };
    for (const Caso& c : {Caso{test::commaLocale(), "0,00", "0,0"}, Caso{test::pointLocale(), "0.00", "0.0"}}) {
        test::MachineLocale maquina(c.locale);
        const Pagina pagina = monta(TipoLaudo::Formulas, QStringLiteral("Milho-Segundo-20/01/2027"));
        EXPECT_EQ(campo(pagina, "lblCalcr1"), QStringLiteral("0"));
        EXPECT_EQ(campo(pagina, "lblCalcr2"), QStringLiteral("0"));
        for (const char* nome : {"lblCalcr3", "lblCalcr5", "lblCalcr7"})
            EXPECT_EQ(campo(pagina, nome), QString::fromLatin1(c.preco)) << nome;
        for (const char* nome : {"lblCalcr4", "lblCalcr6"})
            EXPECT_EQ(campo(pagina, nome), QString::fromLatin1(c.dose)) << nome;
    }
}

TEST(ColunasFlorestaisTest, CellsAreTakenRowByRowWithOneDecimal)
{
    test::MachineLocale locale(test::commaLocale());
    QVector<QVariant> linha(31, QVariant(0));
    linha[13] = QStringLiteral("Fonte#Preço (R$/t)#Dosagem (kg/ha)");  // a short row leaves its columns blank
    linha[14] = QStringLiteral("Ureia#2600#2,25#---#0#7");
    linha[15] = QStringLiteral("0");                                   // an unwritten slot is skipped
    linha[20] = QStringLiteral("Sulfato#1#2#3#4#5#6");                 // a seventh cell is ignored
    const QStringList esperadas = {
        QStringLiteral("Fonte\nUreia\nSulfato\n"), QStringLiteral("Preço (R$/t)\n2600,0\n1,0\n"),
        QStringLiteral("Dosagem (kg/ha)\n2,3\n2,0\n"), QStringLiteral("\n---\n3,0\n"),
        QStringLiteral("\n0,0\n4,0\n"), QStringLiteral("\n7,0\n5,0\n"),
    };
    EXPECT_EQ(colunasFlorestais(linha), esperadas);
}

} // namespace
