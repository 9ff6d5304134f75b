#include "app/session.h"
#include "plan/split.h"
#include "store/store.h"
#include "testsupport.h"

#include <gtest/gtest.h>

using namespace lavra;

namespace {

void preparaCobertura(Session& s, const QVariant& necNCob, std::int16_t plano)
{
    s.Nec[3] = necNCob;
    s.Analise = QVector<QVariant>(36);
    s.Analise[6] = 2.5f;
    s.PlanoNum = plano;
}

// The parcels as the window hands them over: shares, their doses of a 200 kg/ha source, times.
EntradaParcelamento entrada(const QList<int>& porcentagens, const QString& prefixoEpoca = "época ")
{
    EntradaParcelamento e { "Ureia", 3547.5f, "200", static_cast<int>(porcentagens.size()), {} };
    for (int i = 0; i < porcentagens.size(); ++i) {
        const QString porcentagem = QString::number(porcentagens[i]) + QStringLiteral(" %");
        e.parcelas[i]
            = { porcentagem, DoseParcela(porcentagem, e.txtFnt), prefixoEpoca + QString::number(i + 1) };
    }
    return e;
}

} // namespace

TEST(SplitTest, SourcesAreTheNitrogenFertilisersUnlessAllAreAsked)
{
    test::ScratchDatabase scratch;
    Store db(scratch.path());
    db.AbreTabela(ConsultaFontes(false));
    QStringList fontes;
    for (; !db.rs.atEnd(); db.rs.moveNext()) {
        EXPECT_EQ(db.rs.value(3).toFloat() + db.rs.value(4).toFloat(), 0.0f);
        fontes << db.rs.value(fonte::kNome).toString();
    }
    EXPECT_TRUE(fontes.contains(QStringLiteral("Ureia")));
    EXPECT_EQ(fontes.size(),
        scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM NPK WHERE P = 0 AND K = 0")).toInt());
    db.AbreTabela(ConsultaFontes(true));
    EXPECT_EQ(db.rs.recordCount(), scratch.scalar(QStringLiteral("SELECT COUNT(*) FROM NPK")).toInt());
    db.fecha();
}

TEST(SplitTest, SourceDoseRoundsHalfToEvenAndCostsTheRoundedDose)
{
    test::MachineLocale comma(test::commaLocale());
    struct Case {
        float nec;
        QVariant percentual, preco;
        QString fnt, custo;
    };
    const Case cases[] = {
        { 90, 45.0f, 3547.5f, "200", "709,50" },
        { 91, 45.0f, 3000.0f, "202", "606,00" },
        { 10.5f, 100.0f, 1000.0f, "10", "10,00" },
        { 11.5f, 100.0f, 1000.0f, "12", "12,00" },
        { 90, 0.0f, 3000.0f, "", "" },
        { 90, QVariant(), 3000.0f, "", "" },
        { 90, 45.0f, QVariant(), "200", "" },
    };
    for (const Case& c : cases) {
        const DoseFonte dose = CalculaDoseFonte(c.nec, c.percentual, c.preco);
        EXPECT_EQ(dose.txtFnt, c.fnt) << c.nec;
        EXPECT_EQ(dose.txtCusto, c.custo) << c.nec;
    }
}

TEST(SplitTest, ParcelsAreSharesOfTheSourceInStepsOfFive)
{
    test::MachineLocale comma(test::commaLocale());
    const QStringList percentuais = PercentuaisDeParcela();
    EXPECT_EQ(percentuais.size(), 20);
    EXPECT_EQ(percentuais.first(), QStringLiteral("5 %"));
    EXPECT_EQ(percentuais.last(), QStringLiteral("100 %"));

    const std::tuple<QString, QString, QString> doses[] = { { "50 %", "202", "101" },
        { "45 %", "202", "90,9" }, { "5 %", "200", "10" }, { "", "200", "" }, { "50 %", "", "" } };
    for (const auto& [porcentagem, fnt, dose] : doses)
        EXPECT_EQ(DoseParcela(porcentagem, fnt), dose) << porcentagem.toStdString();
}

TEST(SplitTest, VerificaStopsAtTheFirstFault)
{
    const auto parcelas = [](const QList<QString>& porcentagens, const QList<QString>& epocas) {
        Parcelas p;
        for (int i = 0; i < porcentagens.size(); ++i)
            p[i] = { porcentagens[i], QString(), epocas.value(i) };
        return p;
    };
    struct Case {
        int n;
        Parcelas parcelas;
        std::optional<QString> falha;
    };
    const Case cases[] = {
        { 2, parcelas({ "50 %", "50 %" }, { "a", "b" }), std::nullopt },
        { 2, parcelas({ "50 %", "45 %" }, { "a", "b" }), kMsgSomaMenor },
        { 2, parcelas({ "60 %", "50 %" }, { "a", "b" }), kMsgSomaMaior },
        { 1, parcelas({ "100 %", "50 %" }, { "a" }), std::nullopt },
        { 1, parcelas({ "95 %" }, { "a" }), kMsgSomaMenor },
        { 0, parcelas({}, {}), kMsgSomaMenor },
        { 2, parcelas({ "50 %", "" }, { "a", "b" }), kMsgParcelas },
        { 2, parcelas({ "50 %", "50 %" }, { "a", "" }), kMsgEpocas },
        { 2, parcelas({ "", "50 %" }, { "a", "" }), kMsgParcelas },
        { 8,
            parcelas({ "30 %", "10 %", "10 %", "10 %", "10 %", "10 %", "10 %", "10 %" },
                { "a", "b", "c", "d", "e", "f", "g", "h" }),
            std::nullopt },
    };
    for (const Case& c : cases)
        EXPECT_EQ(Verifica(c.n, c.parcelas).value_or(Desfecho()).texto, c.falha.value_or(QString())) << c.n;
}

TEST(SplitTest, NitrogenBlockAtTheBaseOfThePlan)
{
    test::MachineLocale comma(test::commaLocale());
    for (const auto& [plano, b] : { std::pair<std::int16_t, int> { 1, 18 }, { 2, 36 } }) {
        Session s;
        preparaCobertura(s, 90.0f, plano);
        ASSERT_FALSE(ProssegueParcelamento(s, entrada({ 15, 15, 10, 10, 10, 10, 15, 15 })));
        EXPECT_EQ(s.Dados[b], QVariant(QStringLiteral("Ureia")));
        const std::pair<int, float> simples[] = { { b + 1, 3547.5f }, { b + 2, 200.0f }, { b + 3, 709.5f },
            { b + 6, 30.0f }, { b + 20, 30.0f } };
        for (const auto& [slot, valor] : simples) {
            EXPECT_EQ(s.Dados[slot].typeId(), QMetaType::Float) << slot;
            EXPECT_EQ(s.Dados[slot].toFloat(), valor) << slot;
        }
        // The dose enters the products as the text of its box, which makes them doubles.
        EXPECT_EQ(s.Dados[b + 4].typeId(), QMetaType::Double);
        EXPECT_EQ(s.Dados[b + 4].toDouble(), 500.0);
        EXPECT_EQ(s.Dados[b + 5].toDouble(), 1773.75);
        EXPECT_EQ(s.CustoN, 1773.75);
        EXPECT_EQ(s.Dados[b + 7], QVariant(QStringLiteral("época 1")));
        EXPECT_EQ(s.Dados[b + 21], QVariant(QStringLiteral("época 8")));
        EXPECT_EQ(s.Dados[b + 22], QVariant(0));
        EXPECT_EQ(s.Dados[b - 1], QVariant(0));
        EXPECT_EQ(s.JanelaAnterior, QStringLiteral("frmParcelaN"));
    }
}

TEST(SplitTest, FewerParcelsOnASecondPassKeepTheHigherPairs)
{
    test::MachineLocale comma(test::commaLocale());
    Session s;
    preparaCobertura(s, 90.0f, 1);
    ASSERT_FALSE(ProssegueParcelamento(s, entrada({ 40, 30, 30 }, "primeira ")));
    ASSERT_FALSE(ProssegueParcelamento(s, entrada({ 50, 50 }, "segunda ")));
    EXPECT_EQ(s.Dados[24].toFloat(), 100.0f);
    EXPECT_EQ(s.Dados[27], QVariant(QStringLiteral("segunda 2")));
    EXPECT_EQ(s.Dados[28].toFloat(), 60.0f);
    EXPECT_EQ(s.Dados[29], QVariant(QStringLiteral("primeira 3")));
}

TEST(SplitTest, NoNeedInTopdressingWritesNothingAndChecksNothing)
{
    for (const QVariant& nec : { QVariant(0.0f), QVariant(0), QVariant() }) {
        Session s;
        preparaCobertura(s, nec, 1);
        s.CustoN = 12.5;
        EntradaParcelamento vazia;
        EXPECT_FALSE(ProssegueParcelamento(s, vazia));
        EXPECT_EQ(s.Dados, QVector<QVariant>(Session::kSlots, QVariant(0)));
        EXPECT_EQ(s.CustoN, 12.5);
        EXPECT_EQ(s.JanelaAnterior, QStringLiteral("frmParcelaN"));
    }
}

TEST(SplitTest, EmptySourceDoseIsRefusedAfterTheParcels)
{
    Session s;
    preparaCobertura(s, 90.0f, 1);
    EntradaParcelamento semDose = entrada({ 50, 45 });
    semDose.txtFnt.clear();
    EXPECT_EQ(ProssegueParcelamento(s, semDose), Desfecho::aviso(kMsgSomaMenor));
    semDose = entrada({ 50, 50 });
    semDose.txtFnt.clear();
    EXPECT_EQ(ProssegueParcelamento(s, semDose), Desfecho::aviso(kMsgSemDoseFonte));
    EXPECT_EQ(s.Dados, QVector<QVariant>(Session::kSlots, QVariant(0)));
    EXPECT_TRUE(s.JanelaAnterior.isEmpty());
}
