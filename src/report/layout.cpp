#include "layout.h"

#include "app/slots.h"

#include <array>

namespace lavra::report {

namespace {

const Fonte kFonteEmpresa{14, true};
const Fonte kFonteTitulo{10, true};
const Fonte kFonteLegenda{8, true};
const Fonte kFonteCampo{8};
const Fonte kFonteCabecalho{7.5, true};
const Fonte kFonteUnidade{7};
const Fonte kFonteNota{7, false, true};
const Fonte kFonteObs{8, false, true};
const Fonte kFonteTotal{10, true};

// The height of one line of fields: the step between the rows of every block.
constexpr int kLinha = 226;
// Second column of the identification block and of the parcels.
constexpr int kColunaDireita = 4974;

// The columns of the product blocks; the forest plan prints its six columns at the same places.
constexpr std::array<int, 6> kEsqProduto = {0, 2172, 3754, 5336, 6918, 8500};
constexpr std::array<int, 6> kLargProduto = {2172, 1582, 1582, 1582, 1582, 1582};

struct Coluna {
    const char* cabecalho;
    Formato formato;
    int casas;
};

// Name, price, dose, cost per hectare, quantity, cost in the field.
const std::array<Coluna, 6> kColunasProduto = {{{nullptr, Formato::Bruto, 0},
                                                {"Preço (R$/t)", Formato::Numero, 2},
                                                {"Dosagem (kg/ha)", Formato::Numero, 0},
                                                {"Custo (R$/ha)", Formato::Numero, 2},
                                                {"Quantidade (kg)", Formato::Numero, 0},
                                                {"Custo total (R$)", Formato::Numero, 2}}};

// Places of the lower part of the page, which moves down when the plan has more rows.
struct Rodape {
    int traco, custo, traco2, obs, orientacoes, info, traco3, assinatura, tecnico, crea, responsavel;
    int colunaCusto;  // CustoTotal; Aviso and Info follow it
};

QString utf8(const char* texto) { return QString::fromUtf8(texto); }

// Adds the fields and rules of one layout, in the order they are read on the page.
class Montador {
public:
    explicit Montador(Layout& layout) : m_layout(layout) {}

    int largura() const { return m_layout.largura; }

    Campo& legenda(const QString& nome, int x, int y, int w, const QString& texto, const Fonte& fonte,
                   Alinhamento alinhamento = Alinhamento::Esquerda, int h = kLinha)
    {
        Campo c;
        c.nome = nome;
        c.esquerda = x;
        c.topo = y;
        c.largura = w;
        c.altura = h;
        c.alinhamento = alinhamento;
        c.fonte = fonte;
        c.texto = texto;
        m_layout.campos.append(c);
        return m_layout.campos.last();
    }

    Campo& campo(const QString& nome, int x, int y, int w, Origem origem, int indice, const Fonte& fonte,
                 Alinhamento alinhamento = Alinhamento::Esquerda, Formato formato = Formato::Bruto, int casas = 0,
                 int h = kLinha)
    {
        Campo& c = legenda(nome, x, y, w, {}, fonte, alinhamento, h);
        c.origem = origem;
        c.indice = indice;
        c.formato = formato;
        c.casas = casas;
        return c;
    }

    void traco(int y, double espessura = 0.5) { m_layout.tracos.append({0, y, largura(), espessura}); }
    void traco(int x, int y, int w, double espessura) { m_layout.tracos.append({x, y, w, espessura}); }

    void titulo(const QString& nome, int y, const QString& texto)
    {
        legenda(nome, 0, y, largura(), texto, kFonteTitulo, Alinhamento::Centro);
    }

    void cabecalhoEmpresa();
    void identificacao();
    void diagnostico();
    void calagem(int cabecalhos, int valores);
    void produtos(const QString& prefixo, const char* primeiro, int cabecalhos, const QVector<int>& linhas,
                  int primeiraColuna);
    void parcelas(int cabecalhos, int primeiraLinha, int primeiraColuna, bool sextaEpocaComoNumero);
    void florestal(int topo, int altura);
    void rodape(const Rodape& r);

private:
    Layout& m_layout;
};

void Montador::cabecalhoEmpresa()
{
    campo(QStringLiteral("lblEmp"), 0, 0, largura(), Origem::Empresa, 0, kFonteEmpresa, Alinhamento::Centro,
          Formato::Bruto, 0, 341);

    // Caption and field side by side; a width of 0 runs the field to the right edge.
    struct Par {
        int linha;
        int numero;
        const char* legenda;
        int coluna;
        int x;
        int larguraLegenda;
        int larguraCampo;
    };
    // The two address lines share their column starts, so that captions stand one under the other.
    static const Par pares[] = {
        {341, 1, "Rua:", 1, 0, 450, 3150},          {341, 2, "Nº:", 2, 3700, 480, 1270},
        {341, 3, "Cidade:", 4, 5550, 650, 1400},    {341, 4, "Estado:", 6, 7650, 650, 0},
        {680, 5, "Bairro:", 5, 0, 650, 2950},        {680, 6, "CEP:", 3, 3700, 480, 1270},
        {680, 7, "Telefone:", 7, 5550, 800, 1250},   {680, 8, "E-mail:", 8, 7650, 650, 0},
        {1020, 9, "Visite nossa empresa no seguinte endereço eletrônico:", 9, 0, 4500, 0},
    };
    for (const Par& p : pares) {
        const int xCampo = p.x + p.larguraLegenda;
        const int w = p.larguraCampo > 0 ? p.larguraCampo : largura() - xCampo;
        legenda(QStringLiteral("legCabc%1").arg(p.numero), p.x, p.linha, p.larguraLegenda, utf8(p.legenda),
                kFonteLegenda);
        campo(QStringLiteral("lblCabc%1").arg(p.numero), xCampo, p.linha, w, Origem::Empresa, p.coluna, kFonteCampo);
    }
    traco(1473, 1.5);
    titulo(QStringLiteral("titIndicacao"), 1583, QStringLiteral("INDICAÇÃO DE ADUBAÇÃO E CALAGEM"));
}

void Montador::identificacao()
{
    struct Linha {
        const char* legenda;
        Origem origem;
        int indice;
    };
    static const std::array<int, 5> topos = {1923, 2149, 2375, 2601, 2827};
    static const Linha esquerda[] = {{"Proprietário:", Origem::Analise, 1},
                                     {"Local:", Origem::Analise, 2},
                                     {"Fazenda:", Origem::Analise, 3},
                                     {"Gleba:", Origem::Analise, 4},
                                     {"Cultura:", Origem::Coluna, slot::coluna(slot::kCultura)}};
    static const Linha direita[] = {{"Área da gleba (ha):", Origem::Analise, 6},
                                    {"Cultivo após análise:", Origem::Coluna, slot::coluna(slot::kCultivoOrdem)},
                                    {"Expectativa de rendim. (t/ha):", Origem::Coluna, slot::coluna(slot::kExpectativa)},
                                    {"Registro da análise de solo:", Origem::Analise, 7},
                                    {"Data de semeadura ou plantio:", Origem::Coluna, slot::coluna(slot::kDataPlantio)}};
    constexpr int larguraLegenda = 1250;
    constexpr int larguraLegendaDireita = 2900;
    for (int k = 0; k < 5; ++k) {
        const int y = topos[k];
        legenda(QStringLiteral("legDadCult%1").arg(k + 1), 0, y, larguraLegenda, utf8(esquerda[k].legenda),
                kFonteLegenda);
        campo(QStringLiteral("lblDadCult%1").arg(k + 1), larguraLegenda, y, kColunaDireita - 100 - larguraLegenda,
              esquerda[k].origem, esquerda[k].indice, kFonteCampo);
        // The yield caption has a name of its own: irrigated rice rewrites it.
        const QString nome = k == 2 ? QStringLiteral("lblExpect") : QStringLiteral("legDadCult%1").arg(k + 6);
        legenda(nome, kColunaDireita, y, larguraLegendaDireita, utf8(direita[k].legenda), kFonteLegenda);
        const int x = kColunaDireita + larguraLegendaDireita;
        campo(QStringLiteral("lblDadCult%1").arg(k + 6), x, y, largura() - x, direita[k].origem, direita[k].indice,
              kFonteCampo);
    }
    traco(3168);
    titulo(QStringLiteral("titDiagnostico"), 3278, QStringLiteral("DIAGNÓSTICO PARA ADUBAÇÃO E CALAGEM"));
}

void Montador::diagnostico()
{
    struct Determinacao {
        const char* cabecalho;
        int valor;   // element of the analysis
        int classe;  // element of its class; -1 where the manual gives none
    };
    static const Determinacao determinacoes[13] = {
        {"pH", 8, 27},      {"Ca", 9, 28},  {"Mg", 10, 29}, {"Al", 11, -1},     {"H+Al", 12, -1},
        {"CTCpH7", 15, 33}, {"Al", 13, 34}, {"V", 14, 35},  {"SMP", 16, -1},    {"MO", 17, 30},
        {"Argila", 18, -1}, {"P", 19, 31},  {"K", 20, 32},
    };
    // The unit stands once over the columns that share it.
    struct Unidade {
        int primeira;
        int colunas;
        const char* texto;
    };
    static const Unidade unidades[] = {
        {0, 1, "---"},
        {1, 5, "-------------------- cmolc/dm³ --------------------"},
        {6, 2, "----- % ------"},
        {8, 1, "---"},
        {9, 2, "------ % ------"},
        {11, 2, "--- mg/dm³ ---"},
    };
    constexpr int w = 784;
    for (int k = 0; k < 13; ++k) {
        const Determinacao& d = determinacoes[k];
        legenda(QStringLiteral("cabDiag%1").arg(k + 1), k * w, 3616, w, utf8(d.cabecalho), kFonteLegenda,
                Alinhamento::Centro);
    }
    for (const Unidade& u : unidades)
        legenda(QStringLiteral("uniDiag%1").arg(u.primeira + 1), u.primeira * w, 3842, u.colunas * w, utf8(u.texto),
                kFonteUnidade, Alinhamento::Centro);
    for (int k = 0; k < 13; ++k)
        campo(QStringLiteral("lblDiag%1").arg(k + 1), k * w, 4068, w, Origem::Analise, determinacoes[k].valor,
              kFonteCampo, Alinhamento::Centro, Formato::Numero, 1);
    for (int k = 0; k < 13; ++k) {
        const QString nome = QStringLiteral("lblDiag%1").arg(k + 14);
        if (determinacoes[k].classe < 0)
            legenda(nome, k * w, 4294, w, QStringLiteral("---"), kFonteLegenda, Alinhamento::Centro);
        else
            campo(nome, k * w, 4294, w, Origem::Analise, determinacoes[k].classe, kFonteLegenda, Alinhamento::Centro,
                  Formato::Classe);
    }
    static const char* const classes[] = {"MB = Muito Baixo", "B = Baixo", "M = Médio", "A = Alto",
                                          "MA = Muito Alto"};
    constexpr int wLegenda = 1600;
    const int x0 = (largura() - 5 * wLegenda) / 2;
    for (int k = 0; k < 5; ++k)
        legenda(QStringLiteral("legClasse%1").arg(k + 1), x0 + k * wLegenda, 4648, wLegenda, utf8(classes[k]),
                kFonteNota, Alinhamento::Centro);
    traco(4976);
    titulo(QStringLiteral("titCalagem"), 5086, QStringLiteral("CALAGEM"));
}

void Montador::calagem(int cabecalhos, int valores)
{
    static const std::array<Coluna, 7> colunas = {{{"Fonte", Formato::Bruto, 0},
                                                   {"PRNT (%)", Formato::Bruto, 0},
                                                   {"Preço (R$/t)", Formato::Numero, 2},
                                                   {"Dosagem (t/ha)", Formato::Numero, 1},
                                                   {"Custo (R$/ha)", Formato::Numero, 2},
                                                   {"Quantidade (t)", Formato::Numero, 1},
                                                   {"Custo total (R$)", Formato::Numero, 2}}};
    // The material's name takes the wide first column.
    constexpr int primeira = 1800;
    const int w = (largura() - primeira) / 6;
    for (int k = 0; k < 7; ++k) {
        const int x = k == 0 ? 0 : primeira + (k - 1) * w;
        const int wk = k == 0 ? primeira : w;
        legenda(QStringLiteral("cabCalcr%1").arg(k + 1), x, cabecalhos, wk, utf8(colunas[k].cabecalho), kFonteCabecalho,
                Alinhamento::Centro);
        campo(QStringLiteral("lblCalcr%1").arg(k + 1), x, valores, wk, Origem::Coluna, slot::coluna(slot::kCalcFonte) + k, kFonteCampo,
              Alinhamento::Centro, colunas[k].formato, colunas[k].casas);
    }
}

void Montador::produtos(const QString& prefixo, const char* primeiro, int cabecalhos, const QVector<int>& linhas,
                        int primeiraColuna)
{
    for (int k = 0; k < 6; ++k) {
        const char* texto = k == 0 ? primeiro : kColunasProduto[k].cabecalho;
        legenda(QStringLiteral("cab%1%2").arg(prefixo).arg(k + 1), kEsqProduto[k], cabecalhos, kLargProduto[k],
                utf8(texto), kFonteCabecalho, Alinhamento::Centro);
    }
    int n = 0;
    for (const int y : linhas) {
        for (int k = 0; k < 6; ++k, ++n)
            campo(QStringLiteral("lbl%1%2").arg(prefixo).arg(n + 1), kEsqProduto[k], y, kLargProduto[k],
                  Origem::Coluna, primeiraColuna + n, kFonteCampo, Alinhamento::Centro, kColunasProduto[k].formato,
                  kColunasProduto[k].casas);
    }
}

void Montador::parcelas(int cabecalhos, int primeiraLinha, int primeiraColuna, bool sextaEpocaComoNumero)
{
    static const char* const textos[] = {"Parcela", "kg/ha", "Época de aplicação"};
    static const std::array<int, 3> esq = {0, 900, 2200};
    static const std::array<int, 3> larg = {900, 1300, 2700};
    for (int g = 0; g < 2; ++g) {
        for (int k = 0; k < 3; ++k)
            legenda(QStringLiteral("cabNparc%1").arg(g * 3 + k + 1), g * kColunaDireita + esq[k], cabecalhos, larg[k],
                    utf8(textos[k]), kFonteCabecalho, Alinhamento::Centro);
    }
    for (int p = 0; p < 8; ++p) {
        const int x = p / 4 * kColunaDireita;
        const int y = primeiraLinha + p % 4 * kLinha;
        legenda(QStringLiteral("legNparc%1").arg(p + 1), x + esq[0], y, larg[0],
                QString::number(p + 1) + QStringLiteral("ª"), kFonteLegenda, Alinhamento::Centro);
        campo(QStringLiteral("lblNparc%1").arg(2 * p + 1), x + esq[1], y, larg[1], Origem::Coluna,
              primeiraColuna + 2 * p, kFonteCampo, Alinhamento::Centro, Formato::Numero, 0);
        // The sixth time of the formulation report has always been printed as a number; kept so.
        const bool comoNumero = sextaEpocaComoNumero && p == 5;
        campo(QStringLiteral("lblNparc%1").arg(2 * p + 2), x + esq[2], y, larg[2], Origem::Coluna,
              primeiraColuna + 2 * p + 1, kFonteCampo, Alinhamento::Centro,
              comoNumero ? Formato::Numero : Formato::Bruto, comoNumero ? 2 : 0);
    }
}

void Montador::florestal(int topo, int altura)
{
    for (int k = 0; k < 6; ++k) {
        Campo& c = campo(QStringLiteral("lblFlo%1").arg(k + 1), kEsqProduto[k], topo, kLargProduto[k],
                         Origem::Florestal, k, kFonteCampo, Alinhamento::Centro, Formato::Bruto, 0, altura);
        c.quebraLinhas = true;
    }
}

void Montador::rodape(const Rodape& r)
{
    traco(r.traco);
    constexpr int xValor = 8500;
    legenda(QStringLiteral("legCustoTot"), kColunaDireita, r.custo, xValor - 100 - kColunaDireita,
            QStringLiteral("Custo total da gleba (R$)"), kFonteTotal, Alinhamento::Direita, 300);
    campo(QStringLiteral("lblCustoTot"), xValor, r.custo, largura() - xValor, Origem::Coluna, r.colunaCusto,
          kFonteTotal, Alinhamento::Direita, Formato::Numero, 2, 300);
    traco(r.traco2);
    legenda(QStringLiteral("legAvAjust"), 0, r.obs, 550, QStringLiteral("OBS:"), kFonteLegenda);
    campo(QStringLiteral("lblAvAjust"), 550, r.obs, largura() - 550, Origem::Coluna, r.colunaCusto + slot::fim::kAviso,
          kFonteObs);
    legenda(QStringLiteral("legInfo"), 0, r.orientacoes, 4000, QStringLiteral("Orientações do técnico:"),
            kFonteLegenda);
    Campo& info = campo(QStringLiteral("lblInfo"), 0, r.info, largura(), Origem::Coluna, r.colunaCusto + slot::fim::kInfo,
                        kFonteCampo, Alinhamento::Esquerda, Formato::Bruto, 0, 675);
    info.quebraLinhas = true;
    info.moldura = true;
    traco(r.traco3);

    constexpr int xAssinatura = 2938;
    constexpr int wAssinatura = 4309;
    traco(xAssinatura, r.assinatura, wAssinatura, 0.75);
    campo(QStringLiteral("lblDadTec2"), xAssinatura, r.tecnico, wAssinatura, Origem::Assinante, 0, kFonteCampo,
          Alinhamento::Centro);
    campo(QStringLiteral("lblDadTec3"), xAssinatura, r.crea, wAssinatura, Origem::Crea, 0, kFonteCampo,
          Alinhamento::Centro);
    legenda(QStringLiteral("legDadTec"), xAssinatura, r.responsavel, wAssinatura,
            QStringLiteral("Responsável Técnico"), kFonteLegenda, Alinhamento::Centro);
}

// The common head: company, identification, diagnosis and the liming title.
Layout inicio(TipoLaudo tipo, int largura, int alturaDetalhe)
{
    Layout l;
    l.tipo = tipo;
    l.largura = largura;
    l.alturaDetalhe = alturaDetalhe;
    Montador m(l);
    m.cabecalhoEmpresa();
    m.identificacao();
    m.diagnostico();
    return l;
}

// The lower part of the two longer pages.
constexpr Rodape rodapeLongo(int colunaCusto)
{
    return {9609, 9738, 10174, 10304, 10530, 10757, 11551, 12118, 12206, 12432, 12658, colunaCusto};
}

Layout formulas()
{
    Layout l = inicio(TipoLaudo::Formulas, 10200, 12657);
    Montador m(l);
    m.calagem(5424, 5650);
    m.traco(5993);
    m.titulo(QStringLiteral("titBase"), 6223, QStringLiteral("ADUBAÇÃO DE BASE"));
    m.produtos(QStringLiteral("Base"), "Fórmula", 6554, {6780}, slot::coluna(slot::kBase));
    m.traco(7123);
    m.titulo(QStringLiteral("titCobertura"), 7240, QStringLiteral("ADUBAÇÃO DE COBERTURA"));
    m.produtos(QStringLiteral("Cob"), "Fonte", 7571, {7797}, slot::coluna(slot::kCobFormulas));
    m.parcelas(8138, 8364, slot::coluna(slot::kCobFormulas + slot::kParcelas), false);
    m.rodape({9383, 9512, 9948, 10078, 10304, 10545, 11325, 11892, 11980, 12206, 12432,
              slot::coluna(slot::kTotalFormulas)});
    return l;
}

Layout formulacao()
{
    Layout l = inicio(TipoLaudo::Formulacao, 10185, 12885);
    Montador m(l);
    m.calagem(5311, 5537);
    m.traco(5880);
    m.titulo(QStringLiteral("titBase"), 5997, QStringLiteral("ADUBAÇÃO DE BASE"));
    m.produtos(QStringLiteral("Base"), "Fonte", 6215, {6441, 6667, 6893, 7119}, slot::coluna(slot::kBase));
    m.traco(7462);
    m.titulo(QStringLiteral("titCobertura"), 7579, QStringLiteral("ADUBAÇÃO DE COBERTURA"));
    m.produtos(QStringLiteral("Cob"), "Fonte", 7797, {8023}, slot::coluna(slot::kCobFormulacao));
    m.parcelas(8364, 8590, slot::coluna(slot::kCobFormulacao + slot::kParcelas), true);
    m.rodape(rodapeLongo(slot::coluna(slot::kTotalFormulacao)));
    return l;
}

Layout florest()
{
    Layout l = inicio(TipoLaudo::Florestais, 10335, 12885);
    l.expectativaPorCultura = false;
    Montador m(l);
    m.calagem(5311, 5537);
    m.traco(5880);
    m.titulo(QStringLiteral("titFlorest"), 5997,
             QStringLiteral("ADUBAÇÃO DE PLANTIO, COBERTURA E REPOSIÇÃO (APRESNTADAS NESSA ÓRDEM)"));
    m.florestal(6328, 9609 - 6328);
    m.rodape(rodapeLongo(slot::coluna(slot::kTotalFlorest)));
    return l;
}

} // namespace

const Layout& layoutDe(TipoLaudo tipo)
{
    static const std::array<Layout, 3> todos = {formulas(), formulacao(), florest()};
    return todos[static_cast<int>(tipo)];
}

} // namespace lavra::report
