#include "crops.h"

#include "app/analise.h"
#include "app/windownames.h"
#include "base/numbers.h"
#include "registers/interpretation.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <cmath>

namespace lavra {

namespace {

// The yield increases that the RS rice accepts, and that its keys carry.
constexpr std::array<int, 3> kIncrementosArrozRS = { 2, 3, 4 };

QString digito(int n)
{
    return QString::number(n);
}

// The potassium bands differ with the CTC, so its class is part of the key.
QString prefixoPotassioGraf(int classeCtc)
{
    return QStringLiteral("K") + digito(classeCtc);
}

} // namespace

// --- Grains ----------------------------------------------------------------------------------

bool nitrogenioZeroGraos(int posicao)
{
    switch (posicao) {
    case graos::Amendoim:
    case graos::ErvilhaForrageira:
    case graos::Ervilhaca:
    case graos::Soja:
    case graos::Tremoco:
        return true;
    default:
        return false;
    }
}

bool arrozIrrigado(int posicao)
{
    return posicao == graos::ArrozIrrigadoRS || posicao == graos::ArrozIrrigadoSC;
}

QStringList cultivosAnterioresGraos(int posicao)
{
    switch (posicao) {
    case graos::AveiaBranca:
    case graos::AveiaPreta:
    case graos::Centeio:
    case graos::Cevada:
    case graos::Trigo:
    case graos::Triticale:
        return { QStringLiteral("Gramíneas"), QStringLiteral("Leguminosas") };
    case graos::Milho:
        return { QStringLiteral("Gramíneas"), QStringLiteral("Leguminosas"),
            QStringLiteral("Consórcio ou pousio") };
    default:
        return {};
    }
}

QString sufixoCultivoAnterior(const QString& cultivoAnterior)
{
    if (cultivoAnterior == QStringLiteral("Gramíneas"))
        return QStringLiteral("G");
    if (cultivoAnterior == QStringLiteral("Leguminosas"))
        return QStringLiteral("L");
    if (cultivoAnterior == QStringLiteral("Consórcio ou pousio"))
        return QStringLiteral("CP");
    return {};
}

bool incrementoArrozRSValido(double incremento)
{
    return std::any_of(kIncrementosArrozRS.begin(), kIncrementosArrozRS.end(),
        [incremento](int valido) { return incremento == valido; });
}

ChavesCultura chavesGraos(const EntradaGraos& entrada)
{
    const QString cultura = culturasGraos().value(entrada.posicao);
    if (cultura.isEmpty())
        return {};
    const double rendimento = parseNumber(entrada.expectativa).value_or(0);

    QString sufixo;
    if (entrada.posicao == graos::ArrozIrrigadoRS)
        sufixo = entrada.expectativa; // as typed: an increase, not a yield
    else if (entrada.posicao == graos::ArrozIrrigadoSC)
        sufixo = rendimento <= graos::kArrozScLimite ? QStringLiteral("1") : QStringLiteral("2");
    else if (!cultivosAnterioresGraos(entrada.posicao).isEmpty())
        sufixo = sufixoCultivoAnterior(entrada.cultivoAnterior);

    ChavesCultura chaves;
    chaves.n = { grupoCultura(grupo::Graos)->tabelaN, cultura + sufixo };
    if (arrozIrrigado(entrada.posicao)) {
        // Rice rows exist only for the first crop, and P and K keep the nitrogen's key, except
        // that the RS potassium also splits on the CTC.
        chaves.cultivoTxt = QStringLiteral("1");
        chaves.p = { grupoCultura(grupo::Graos)->tabelaP(QStringLiteral("1")), cultura + sufixo };
        QString chaveK = cultura + sufixo;
        if (entrada.posicao == graos::ArrozIrrigadoRS)
            chaveK = cultura + (entrada.classeCtc == 4 ? QStringLiteral("2") : QStringLiteral("1"))
                + entrada.expectativa;
        chaves.k = { grupoCultura(grupo::Graos)->tabelaK(QStringLiteral("1")), chaveK };
    } else {
        chaves.cultivoTxt = digito(entrada.cultivo);
        chaves.p = { grupoCultura(grupo::Graos)->tabelaP(chaves.cultivoTxt), cultura };
        chaves.k = { grupoCultura(grupo::Graos)->tabelaK(chaves.cultivoTxt), cultura };
    }
    return chaves;
}

// --- Vegetables ------------------------------------------------------------------------------

QStringList expectativasHortalicas(int posicao)
{
    switch (posicao) {
    case hortalicas::Alho:
        return { QStringLiteral("6 a 8"), QStringLiteral("9 a 11"), QStringLiteral("12 a 15") };
    case hortalicas::Batata:
        return { QStringLiteral("<= 20"), QStringLiteral(" > 20") };
    case hortalicas::Tomateiro:
        return { QStringLiteral("50"), QStringLiteral("75"), QStringLiteral("100") };
    default:
        return {};
    }
}

QString digitoArgilaMandioca(int classeArgila)
{
    return classeArgila >= 4 ? QStringLiteral("2") : QStringLiteral("1");
}

ChavesCultura chavesHortalicas(int posicao, int posicaoExpectativa, int classeArgila, int cultivo)
{
    const QString cultura = culturasHortalicas().value(posicao);
    if (cultura.isEmpty())
        return {};
    QString chaveN = cultura;
    QString chaveP = cultura;
    QString chaveK = cultura;
    if (!expectativasHortalicas(posicao).isEmpty()) {
        chaveN += digito(posicaoExpectativa);
        // Potato grades only its nitrogen by yield.
        if (posicao != hortalicas::Batata) {
            chaveP += digito(posicaoExpectativa);
            chaveK += digito(posicaoExpectativa);
        }
    }
    if (posicao == hortalicas::Mandioca) {
        chaveN += digitoArgilaMandioca(classeArgila);
        chaveK += digitoArgilaMandioca(classeArgila);
    }
    ChavesCultura chaves;
    chaves.cultivoTxt = digito(cultivo);
    chaves.n = { grupoCultura(grupo::Hortalicas)->tabelaN, chaveN };
    chaves.p = { grupoCultura(grupo::Hortalicas)->tabelaP(chaves.cultivoTxt), chaveP };
    chaves.k = { grupoCultura(grupo::Hortalicas)->tabelaK(chaves.cultivoTxt), chaveK };
    return chaves;
}

// --- Forages ---------------------------------------------------------------------------------

RegraNForragem regraNitrogenioForragem(int posicao)
{
    switch (posicao) {
    case forrageiras::CapimElefante:
    case forrageiras::GramineasAnuaisQuente:
    case forrageiras::GramineasPerenesQuente:
        return RegraNForragem::EquacaoA;
    case forrageiras::GramineasAnuaisFria:
    case forrageiras::GramineasPerenesFria:
        return RegraNForragem::EquacaoB;
    // The legume introduction reads the table, and the grass introduction gets no N.
    case forrageiras::MilhoSilagem:
    case forrageiras::PastagensLeguminosas:
    case forrageiras::SorgoSilagem:
        return RegraNForragem::Tabela;
    default:
        return RegraNForragem::Nenhuma;
    }
}

const QStringList& cultivosAnterioresForragem()
{
    static const QStringList lista = { QStringLiteral("Gramíneas"), QStringLiteral("Leguminosas"),
        QStringLiteral("Consórcio"), QStringLiteral("Pousio") };
    return lista;
}

ChavesCultura chavesForrageiras(int posicao, int posicaoCultivoAnterior, int cultivo)
{
    const QString cultura = culturasForrageiras().value(posicao);
    if (cultura.isEmpty())
        return {};
    ChavesCultura chaves;
    chaves.cultivoTxt = digito(cultivo);
    if (regraNitrogenioForragem(posicao) != RegraNForragem::Nenhuma) {
        QString chaveN = cultura;
        // Fallow counts as a mixture for silage maize; sorghum keeps its plain key.
        if (posicao == forrageiras::MilhoSilagem)
            chaveN += digito(posicaoCultivoAnterior == 4 ? 3 : posicaoCultivoAnterior);
        chaves.n = { grupoCultura(grupo::Forrageiras)->tabelaN, chaveN };
    }
    chaves.p = { grupoCultura(grupo::Forrageiras)->tabelaP(chaves.cultivoTxt), cultura };
    chaves.k = { grupoCultura(grupo::Forrageiras)->tabelaK(chaves.cultivoTxt), cultura };
    return chaves;
}

// --- Forest species --------------------------------------------------------------------------

bool florestalPedeRendimento(int posicao)
{
    return posicao == florestais::ErvaMate;
}

Consulta chaveFlorestal(int posicao, double rendimento)
{
    const QString cultura = culturasFlorestais().value(posicao);
    if (cultura.isEmpty())
        return {};
    QString chave = cultura;
    if (florestalPedeRendimento(posicao)) {
        if (rendimento < florestais::kErvaMateLimite1)
            chave += QStringLiteral("1");
        else if (rendimento <= florestais::kErvaMateLimite2)
            chave += QStringLiteral("2");
        else
            chave += QStringLiteral("3");
    }
    return { grupoCultura(grupo::Florestais)->tabelaN, chave };
}

// --- Medicinal, aromatic and condiment plants ------------------------------------------------

ChavesCultura chavesCondimentares(int posicao, const QString& cultivoTxt)
{
    const QString cultura = culturasCondimentares().value(posicao);
    if (cultura.isEmpty())
        return {};
    ChavesCultura chaves;
    chaves.n = { grupoCultura(grupo::Condimentares)->tabelaN, cultura };
    chaves.p = { grupoCultura(grupo::Condimentares)->tabelaP(cultivoTxt), cultura };
    chaves.k = { grupoCultura(grupo::Condimentares)->tabelaK(cultivoTxt), cultura };
    return chaves;
}

// --- Sugar cane ------------------------------------------------------------------------------

QStringList expectativasCana(int posicao)
{
    switch (posicao) {
    case cana::CanaPlanta:
        return { QStringLiteral("< 80"), QStringLiteral("80 a 100"), QStringLiteral("> 100") };
    case cana::CanaSoca:
        return { QStringLiteral("< 50"), QStringLiteral("50 a 80"), QStringLiteral("> 80") };
    default:
        return {};
    }
}

ChavesCultura chavesCana(int posicao, int posicaoExpectativa)
{
    const QString cultura = culturasCana().value(posicao);
    if (cultura.isEmpty())
        return {};
    const QString comFaixa = cultura + digito(posicaoExpectativa);
    ChavesCultura chaves;
    // Plant cane has one nitrogen row for every yield band.
    chaves.n = { grupoCultura(grupo::Cana)->tabelaN, posicao == cana::CanaSoca ? comFaixa : cultura };
    chaves.p = { grupoCultura(grupo::Cana)->tabelaP({}), comFaixa };
    chaves.k = { grupoCultura(grupo::Cana)->tabelaK({}), comFaixa };
    return chaves;
}

// --- Bands of the charts ---------------------------------------------------------------------

namespace {

struct DefinicaoGraf {
    IndicadorGraf indicador;
    const char* prefixo; // empty for P and K, whose prefix depends on the analysis
    const char* tipo; // the name InterpretaClasse knows it by
    int colunaClasse; // in Analise
};

// In the order of IndicadorGraf, which is the order of the bars.
constexpr std::array<DefinicaoGraf, 9> kDefinicoesGraf = { {
    { IndicadorGraf::pH, "pH", "pH", analise::kClassePH },
    { IndicadorGraf::Ca, "Ca", "Ca", analise::kClasseCa },
    { IndicadorGraf::Mg, "Mg", "Mg", analise::kClasseMg },
    { IndicadorGraf::SatAl, "SatAl", "SatAl", analise::kClasseSatAl },
    { IndicadorGraf::SatB, "SatB", "SatBas", analise::kClasseSatBases },
    { IndicadorGraf::CTC, "CTC", "CTC", analise::kClasseCTC },
    { IndicadorGraf::MO, "MO", "MO", analise::kClasseMO },
    { IndicadorGraf::P, "", "P", analise::kClasseP },
    { IndicadorGraf::K, "", "K", analise::kClasseK },
} };

// Class columns are cut to whole numbers before use.
int inteiro(const QVariant& valor)
{
    return static_cast<int>(std::trunc(valor.toDouble()));
}

} // namespace

const QList<IndicadorGraf>& indicadoresGraf()
{
    static const QList<IndicadorGraf> lista = [] {
        QList<IndicadorGraf> l;
        for (const DefinicaoGraf& d : kDefinicoesGraf)
            l << d.indicador;
        return l;
    }();
    return lista;
}

QString prefixoFosforoGraf(int metodo, int usoArea, int classeArgila)
{
    if (metodo == 1)
        return usoArea == 1 ? QStringLiteral("PCT") + digito(classeArgila) : QStringLiteral("PA");
    if (metodo == 2)
        return QStringLiteral("PR");
    return {};
}

QString chaveGraf(IndicadorGraf indicador, const QVector<QVariant>& registro)
{
    const DefinicaoGraf& d = kDefinicoesGraf.at(static_cast<std::size_t>(indicador));
    QString prefixo = QString::fromLatin1(d.prefixo);
    if (indicador == IndicadorGraf::P)
        prefixo = prefixoFosforoGraf(inteiro(registro.value(analise::kMetodoP)),
            inteiro(registro.value(analise::kArrozIrrig)),
            ClasseArgila(registro.value(analise::kArgila).toFloat()));
    else if (indicador == IndicadorGraf::K)
        prefixo = prefixoPotassioGraf(inteiro(registro.value(analise::kClasseCTC)));
    return prefixo + digito(inteiro(registro.value(d.colunaClasse)));
}

// --- Every read ------------------------------------------------------------------------------

namespace {

// The classes that the interpretation can give, from its lowest to its highest: they are
// contiguous, so the two ends of the scale of values give the whole range.
QList<int> classesPossiveis(const char* tipo, float aux = 0)
{
    const QString nome = QString::fromLatin1(tipo);
    QList<int> classes;
    for (int c = InterpretaClasse(0.0f, aux, nome); c <= InterpretaClasse(1e9f, aux, nome); ++c)
        classes << c;
    return classes;
}

// Positions 1..n of a list after its "Selecione"; -1 alone where the list stays disabled.
QList<int> posicoesDaLista(qsizetype itens)
{
    QList<int> posicoes;
    for (int e = 1; e <= itens; ++e)
        posicoes << e;
    return posicoes.isEmpty() ? QList<int> { -1 } : posicoes;
}

constexpr std::array<int, 2> kCultivos = { 1, 2 };

} // namespace

QList<ConsultaPossivel> consultasPossiveis()
{
    QList<ConsultaPossivel> lista;
    QSet<QString> vistas;
    QString janela;
    const auto adiciona = [&](const Consulta& consulta, bool linhaEsperada = true) {
        if (consulta.lida() && !vistas.contains(consulta.tabela + QChar(0) + consulta.chave)) {
            vistas.insert(consulta.tabela + QChar(0) + consulta.chave);
            lista << ConsultaPossivel { janela, consulta.tabela, consulta.chave, linhaEsperada };
        }
    };
    QStringList cultivoTxtDeixados = { QString() }; // a run that calculated no group 1 to 3
    const auto adicionaCultura = [&](const ChavesCultura& chaves, bool nitrogenioEsperado = true) {
        adiciona(chaves.n, nitrogenioEsperado);
        adiciona(chaves.p);
        adiciona(chaves.k);
        cultivoTxtDeixados << chaves.cultivoTxt;
    };

    janela = grupoCultura(grupo::Graos)->janela;
    // The CTC class only splits the RS rice potassium; every class an analysis can hold counts.
    const QList<int> classesCtc = classesPossiveis("CTC");
    for (int posicao = 0; posicao < culturasGraos().size(); ++posicao) {
        QStringList expectativas = { QString() }; // no band: any yield forms the same keys
        if (posicao == graos::ArrozIrrigadoRS) {
            expectativas.clear();
            for (int incremento : kIncrementosArrozRS)
                expectativas << QString::number(incremento);
        } else if (posicao == graos::ArrozIrrigadoSC) {
            expectativas = { numberText(graos::kArrozScLimite), numberText(graos::kArrozScLimite + 1) };
        }
        QStringList anteriores = cultivosAnterioresGraos(posicao);
        if (anteriores.isEmpty())
            anteriores << QString();
        for (const QString& expectativa : expectativas) {
            for (const QString& anterior : anteriores) {
                for (int classeCtc : classesCtc) {
                    for (int cultivo : kCultivos)
                        adicionaCultura(chavesGraos({ posicao, expectativa, anterior, classeCtc, cultivo }),
                            !nitrogenioZeroGraos(posicao));
                }
            }
        }
    }

    janela = grupoCultura(grupo::Hortalicas)->janela;
    QList<int> classesArgila;
    for (int argila = ClasseArgila(100.0f); argila <= ClasseArgila(0.0f); ++argila)
        classesArgila << argila;
    for (int posicao = 0; posicao < culturasHortalicas().size(); ++posicao) {
        for (int e : posicoesDaLista(expectativasHortalicas(posicao).size())) {
            for (int argila : classesArgila) {
                for (int cultivo : kCultivos)
                    adicionaCultura(chavesHortalicas(posicao, e, argila, cultivo));
            }
        }
    }

    janela = grupoCultura(grupo::Forrageiras)->janela;
    for (int posicao = 0; posicao < culturasForrageiras().size(); ++posicao) {
        for (int anterior : posicoesDaLista(cultivosAnterioresForragem().size())) {
            for (int cultivo : kCultivos)
                adicionaCultura(chavesForrageiras(posicao, anterior, cultivo));
        }
    }

    janela = grupoCultura(grupo::Florestais)->janela;
    for (int posicao = 0; posicao < culturasFlorestais().size(); ++posicao) {
        for (double rendimento : { 0.0, florestais::kErvaMateLimite1, florestais::kErvaMateLimite2 + 1 })
            adiciona(chaveFlorestal(posicao, rendimento));
    }

    // The ornamentals read no table: their doses are the program's own. The medicinal window
    // reads whatever digit an earlier calculation left; cane never sets one.
    cultivoTxtDeixados.removeDuplicates();
    const QStringList sufixosCondimentares = cultivoTxtDeixados;
    janela = grupoCultura(grupo::Condimentares)->janela;
    for (int posicao = 0; posicao < culturasCondimentares().size(); ++posicao) {
        for (const QString& cultivoTxt : sufixosCondimentares)
            adicionaCultura(chavesCondimentares(posicao, cultivoTxt));
    }

    janela = grupoCultura(grupo::Cana)->janela;
    for (int posicao = 0; posicao < culturasCana().size(); ++posicao) {
        for (int e : posicoesDaLista(expectativasCana(posicao).size()))
            adicionaCultura(chavesCana(posicao, e));
    }

    // A class 0 has no row by design: its bar stays empty.
    janela = janela::kChart;
    const QString graf = QStringLiteral("Graf");
    for (const DefinicaoGraf& d : kDefinicoesGraf) {
        if (d.indicador == IndicadorGraf::P) {
            for (int metodo : { 1, 2 }) {
                for (int uso : { 1, 2 }) {
                    for (int argila : classesArgila) {
                        const float codigo = static_cast<float>(uso * 100 + metodo * 10 + argila);
                        for (int classe : classesPossiveis(d.tipo, codigo))
                            adiciona({ graf, prefixoFosforoGraf(metodo, uso, argila) + digito(classe) });
                    }
                }
            }
        } else if (d.indicador == IndicadorGraf::K) {
            for (int classeCtc : classesCtc) {
                for (int classe : classesPossiveis(d.tipo))
                    adiciona({ graf, prefixoPotassioGraf(classeCtc) + digito(classe) });
            }
        } else {
            for (int classe : classesPossiveis(d.tipo))
                adiciona({ graf, QString::fromLatin1(d.prefixo) + digito(classe) });
        }
    }
    return lista;
}

} // namespace lavra
