#include "formulation.h"

#include "app/analise.h"
#include "app/session.h"
#include "app/slots.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "store/cursormodel.h"
#include "store/query.h"
#include "store/store.h"

#include <initializer_list>

namespace lavra {

namespace {

// The last row a name matches, as a later row of the same name hides an earlier one. The
// product list names formulas by their grades, the sources by their names.
int linhaDoProduto(const TabelaFormulacao& tabela, const QString& nome)
{
    int achada = -1;
    for (int i = 0; i < tabela.linhas.size(); ++i) {
        if (tabela.linhas[i].especificacao == nome || tabela.linhas[i].formula == nome)
            achada = i;
    }
    return achada;
}

int linhaDaFonte(const TabelaFormulacao& tabela, const QString& nome)
{
    int achada = -1;
    for (int i = 0; i < tabela.linhas.size(); ++i) {
        if (tabela.linhas[i].especificacao == nome)
            achada = i;
    }
    return achada;
}

float preco(const Insumo& f)
{
    return toSingle(toNumber(f.preco).value_or(0));
}

QString inteiro(double valor)
{
    return QString::number(roundHalfEven(valor));
}

float indice(const QString& texto, float seNaoSeAplica)
{
    return Num_Ponto_Virgula(texto).value_or(seNaoSeAplica);
}

// What one single source gives: its dose and the nutrients it brings, in kg/ha.
struct Fonte {
    float dose = 0;
    float n = 0;
    float suprido = 0; // the nutrient the source is chosen for
    std::int64_t custo = 0;
};

// A source for what the product leaves of the need of its nutrient, with the N it brings. A
// product that covers the need leaves nothing: the dose is 0, and so is what it brings.
Fonte completa(const Insumo& f, float teor, float nec, float doProduto)
{
    Fonte fonte;
    fonte.dose = (nec - doProduto) / (teor / 100.0f);
    if (fonte.dose <= 0.0f) {
        fonte.dose = 0;
    } else {
        fonte.n = f.teor.n / 100.0f * fonte.dose;
        fonte.suprido = nec - doProduto;
    }
    fonte.custo = roundHalfEven(fonte.dose * preco(f) / 1000.0f);
    return fonte;
}

QString semNutriente(const QString& fonte, const QString& nome, const QString& nutriente)
{
    return QStringLiteral("A fonte de %1 escolhida (%2) não contém %3 no cadastro de fertilizantes. "
                          "Escolha outra fonte.")
        .arg(fonte, nome, nutriente);
}

} // namespace

std::optional<float> Num_Ponto_Virgula(const QString& texto)
{
    const QString aparado = texto.trimmed();
    QString numero;
    int sinais = 0;
    bool digito = false;
    for (const QChar c : aparado) {
        if (c.isDigit()) {
            numero += c;
            digito = true;
        } else {
            numero += QLatin1Char('.');
            ++sinais;
        }
    }
    if (!digito || sinais > 1)
        return std::nullopt;
    bool ok = false;
    const double valor = numero.toDouble(&ok);
    if (!ok)
        return std::nullopt;
    return toSingle(valor);
}

bool Insumo::organico() const
{
    return Num_Ponto_Virgula(eficN).has_value();
}

QString Insumo::nomeNaLista() const
{
    return organico() ? especificacao : formula;
}

TabelaFormulacao LeTabelaFormulacao(Store& db)
{
    TabelaFormulacao tabela;
    Cursor rs = consulta::sql(db, kConsultaFormulacao);
    for (int c = 0; c < rs.columnCount(); ++c)
        tabela.colunas << rs.columnName(c);
    const auto teor = [&rs](int coluna) { return toSingle(toNumber(rs.value(coluna)).value_or(0)); };
    for (; !rs.atEnd(); rs.moveNext()) {
        Insumo f;
        f.formula = cellText(rs.value(0));
        f.especificacao = cellText(rs.value(1));
        f.teor = { teor(2), teor(3), teor(4) };
        f.relacaoPK = rs.value(5);
        f.preco = rs.value(7);
        f.ms = cellText(rs.value(8));
        f.eficN = cellText(rs.value(9));
        f.eficP = cellText(rs.value(10));
        f.eficK = cellText(rs.value(11));
        tabela.linhas << f;
    }
    return tabela;
}

ListasFormulacao ListasDaTabela(const TabelaFormulacao& tabela)
{
    ListasFormulacao listas;
    for (const Insumo& f : tabela.linhas) {
        const NPKkg& t = f.teor;
        if (t.p > 0.0f && t.k > 0.0f)
            listas.produtos << f.nomeNaLista();
        if (t.p == 0.0f && t.k == 0.0f && t.n != 0.0f)
            listas.fontesN << f.especificacao;
        if (t.k == 0.0f && t.p != 0.0f)
            listas.fontesP << f.especificacao;
        if (t.p == 0.0f && t.k != 0.0f)
            listas.fontesK << f.especificacao;
    }
    return listas;
}

Escolha Escolha::daLista(int posicao, const QString& texto)
{
    if (posicao <= 0)
        return {};
    if (posicao == 1)
        return { Estado::Nenhuma, {} };
    return { Estado::Produto, texto };
}

QString Escolha::texto() const
{
    switch (estado) {
    case Estado::Selecione:
        return kSelecione;
    case Estado::Nenhuma:
        return kNenhuma;
    case Estado::Produto:
        break;
    }
    return nome;
}

ResultadoFormulacao Calcula_Formulacao(const TabelaFormulacao& tabela, const EntradaFormulacao& e)
{
    using Estado = Escolha::Estado;
    ResultadoFormulacao r;
    r.quantidade = e.quantidade.trimmed();
    const std::initializer_list<std::pair<const Escolha*, const char*>> listas
        = { { &e.produto, "cboFml" }, { &e.fonteN, "cboFtN" }, { &e.fonteP, "cboFtP" }, { &e.fonteK, "cboFtK" } };
    const auto primeiraEm = [&](Estado estado, bool comProduto) -> const char* {
        for (const auto& [escolha, nome] : listas) {
            if ((comProduto || escolha != &e.produto) && escolha->estado == estado)
                return nome;
        }
        return nullptr;
    };

    if (e.produto.estado == Estado::Nenhuma) {
        if (const char* lista = primeiraEm(Estado::Selecione, false)) {
            r.desfecho = Desfecho::aviso(kMsgEscolhaFontes, QString::fromLatin1(lista));
            return r;
        }
        r.quantidade = QStringLiteral("0");
    }
    if (const char* lista = primeiraEm(Estado::Selecione, true)) {
        r.desfecho = Desfecho::aviso(kMsgEscolhaTodas, QString::fromLatin1(lista));
        return r;
    }
    const QString campoQuantidade = QStringLiteral("txtkgF2");
    if (e.produto.produto() && r.quantidade.isEmpty()) {
        r.desfecho = Desfecho::aviso(kMsgInformeQuantidade, campoQuantidade);
        return r;
    }
    if (!e.produto.produto() && !e.fonteN.produto() && !e.fonteP.produto() && !e.fonteK.produto()) {
        r.desfecho = Desfecho::aviso(kMsgImpossivel, QStringLiteral("cboFml"));
        return r;
    }

    // The product: its supply through the dry matter and the efficiency indices.
    float q = 0;
    NPKkg doProduto;
    std::int64_t custoProduto = 0;
    if (e.produto.produto()) {
        if (const std::optional<QString> recusa = RecusaNumero(r.quantidade, Grandeza::DoseFertilizante)) {
            r.desfecho = Desfecho::aviso(*recusa, campoQuantidade);
            return r;
        }
        q = toSingle(*parseNumber(r.quantidade));
        const int linha = linhaDoProduto(tabela, e.produto.nome);
        if (linha < 0) {
            r.desfecho = Desfecho::aviso(QStringLiteral("O fertilizante \"%1\" não está mais cadastrado.").arg(e.produto.nome),
                QStringLiteral("cboFml"));
            return r;
        }
        const Insumo& f = tabela.linhas[linha];
        const float ms = indice(f.ms, 100);
        doProduto.n = q * ms / 100.0f * f.teor.n / 100.0f * indice(f.eficN, 1);
        doProduto.p = q * ms / 100.0f * f.teor.p / 100.0f * indice(f.eficP, 1);
        doProduto.k = q * ms / 100.0f * f.teor.k / 100.0f * indice(f.eficK, 1);
        custoProduto = roundHalfEven(q * preco(f) / 1000.0f);
    }

    // A source is looked up by its name; a row of that name without the nutrient can't complete it.
    const auto fonte = [&](const Escolha& escolha, float NPKkg::*nutriente, const QString& nomeFonte,
                           const QString& oxido, const char* lista) -> const Insumo* {
        const int linha = linhaDaFonte(tabela, escolha.nome);
        if (linha < 0 || !(tabela.linhas[linha].teor.*nutriente > 0.0f)) {
            r.desfecho = Desfecho::aviso(semNutriente(nomeFonte, escolha.nome, oxido), QString::fromLatin1(lista));
            return nullptr;
        }
        return &tabela.linhas[linha];
    };

    Fonte p;
    if (e.fonteP.produto()) {
        const Insumo* f = fonte(e.fonteP, &NPKkg::p, QStringLiteral("P"), QStringLiteral("P₂O₅"), "cboFtP");
        if (!f)
            return r;
        p = completa(*f, f->teor.p, e.nec.p, doProduto.p);
    }
    Fonte k;
    if (e.fonteK.produto()) {
        const Insumo* f = fonte(e.fonteK, &NPKkg::k, QStringLiteral("K"), QStringLiteral("K₂O"), "cboFtK");
        if (!f)
            return r;
        k = completa(*f, f->teor.k, e.nec.k, doProduto.k);
    }
    // N last: what the product and the P and K sources leave of the need.
    float restoN = e.nec.n - (p.n + doProduto.n + k.n);
    float qN = 0;
    std::int64_t custoN = 0;
    if (e.fonteN.produto()) {
        const Insumo* f = fonte(e.fonteN, &NPKkg::n, QStringLiteral("N"), QStringLiteral("N"), "cboFtN");
        if (!f)
            return r;
        if (restoN <= 0.0f)
            restoN = 0;
        else
            qN = restoN / (f->teor.n / 100.0f);
        custoN = roundHalfEven(qN * preco(*f) / 1000.0f);
    } else {
        restoN = 0;
    }
    const float totalN = p.n + doProduto.n + k.n + restoN;

    const double doseTotal = widenShortest(q) + static_cast<double>(roundHalfEven(qN) + roundHalfEven(p.dose) + roundHalfEven(k.dose));
    const std::int64_t custoTotal = custoProduto + custoN + p.custo + k.custo;
    const QString zero = QStringLiteral("0");
    r.grade[res::kProduto] = { e.produto.texto(), r.quantidade, inteiro(doProduto.n), inteiro(doProduto.p),
        inteiro(doProduto.k), QString::number(custoProduto) };
    r.grade[res::kFonteN] = { e.fonteN.texto(), inteiro(qN), inteiro(restoN), zero, zero, QString::number(custoN) };
    r.grade[res::kFonteP]
        = { e.fonteP.texto(), inteiro(p.dose), inteiro(p.n), inteiro(p.suprido), zero, QString::number(p.custo) };
    r.grade[res::kFonteK]
        = { e.fonteK.texto(), inteiro(k.dose), inteiro(k.n), zero, inteiro(k.suprido), QString::number(k.custo) };
    r.grade[res::kTotais] = { kTotais, numberText(doseTotal), inteiro(totalN), inteiro(doProduto.p + p.suprido),
        inteiro(doProduto.k + k.suprido), QString::number(custoTotal) };
    return r;
}

Parada VerificaFormulacao(const GradeResultado& grade, const NPKkg& nec)
{
    if (grade[res::kProduto][res::kFonte].isEmpty())
        return Desfecho::aviso(kMsgSemCalculo);
    const LinhaResultado& totais = grade[res::kTotais];
    return PerguntaFornecimento(nec, FornecimentoDasCaixas({ totais[res::kN], totais[res::kP], totais[res::kK] }));
}

DestinoFormula GravaFormulacao(Session& session, const TabelaFormulacao& tabela, const GradeResultado& grade)
{
    using namespace slot::produto;
    const QVariant area = session.Analise.value(analise::kArea);
    float somaCustos = 0;
    for (int r = res::kProduto; r <= res::kFonteK; ++r) {
        const LinhaResultado& linha = grade[r];
        const int b = slot::kBase + r * kTamanho;
        const QString& nome = linha[res::kFonte];
        const float dose = toSingle(parseNumber(linha[res::kAplicar]).value_or(0));
        const float custo = toSingle(parseNumber(linha[res::kCusto]).value_or(0));
        somaCustos += custo;

        QVariant precoDaLinha = 0;
        if (nome != kNenhuma) {
            const int achada = r == res::kProduto ? linhaDoProduto(tabela, nome) : linhaDaFonte(tabela, nome);
            if (achada >= 0) {
                const Insumo& f = tabela.linhas[achada];
                // The product's price goes as the grid shows it; the sources' as numbers.
                precoDaLinha = r == res::kProduto ? QVariant(cellText(f.preco)) : QVariant(preco(f));
            }
        }
        QVariant quantidade = ProdutoVariant(area, dose);
        // Only the product's quantity is kept as a whole number.
        if (r == res::kProduto && quantidade.isValid())
            quantidade = static_cast<std::int32_t>(roundHalfEven(toNumber(quantidade).value_or(0)));

        QVector<QVariant>& dados = session.Dados;
        dados[b + kFonte] = nome;
        dados[b + kPreco] = precoDaLinha;
        dados[b + kDose] = dose;
        dados[b + kCusto] = custo;
        dados[b + kQuant] = quantidade;
        dados[b + kCustoTotal] = ProdutoVariant(area, custo);
    }
    session.CustoBase = toNumber(ProdutoVariant(area, somaCustos)).value_or(0);
    return ConcluiBase(session, 2, QStringLiteral("Formulação"));
}

QList<QStringList> LinhasFlorestFormulacao(const Session& session)
{
    return LinhasFlorest(session, QStringLiteral("Fontes"), res::kFonteK + 1);
}

} // namespace lavra
