#include "laudo.h"

#include "app/analise.h"
#include "app/session.h"
#include "base/numbers.h"
#include "base/validation.h"
#include "registers/analysis.h"
#include "registers/company.h"
#include "registers/interpretation.h"
#include "store/cursormodel.h"
#include "store/query.h"

#include <cmath>

namespace lavra::report {

namespace {

const QString kArrozIrrigado = QStringLiteral("Arroz irrigado (RS)");
const QString kIncremento = QStringLiteral("Incremento de rendim. (t/ha):");

// The columns of the forest plan's rows: planting, topdressing and replacement, five each.
constexpr int kPrimeiraFlorestal = 13;
constexpr int kUltimaFlorestal = 27;
constexpr int kCelulasFlorestais = 6;

// A slot no step wrote holds 0; so does an empty grid row.
bool vazia(const QVariant& celula)
{
    if (celula.isNull() || celula.toString().isEmpty())
        return true;
    const auto numero = toNumber(celula);
    return numero && *numero == 0;
}

QString formata(const QVariant& valor, Formato formato, int casas)
{
    switch (formato) {
    case Formato::Numero: return FormataNumero(valor, casas);
    case Formato::Classe: {
        const double classe = toNumber(valor).value_or(0);
        return TextoClasse(static_cast<int>(std::floor(classe)));
    }
    case Formato::Bruto: break;
    }
    return valor.typeId() == QMetaType::QString ? valor.toString() : cellText(valor);
}

// The first saved row with both keys; an empty cell matches no key.
std::optional<QVector<QVariant>> leLinha(const Store& db, const QString& tabela, const QString& codAnalise,
                                         const QString& codCultivo)
{
    return consulta::primeira(db, tabela,
                              {{QStringLiteral("CodAnalise"), codAnalise}, {QStringLiteral("CodCultivo"), codCultivo}});
}

QString escapa(QString texto)
{
    texto.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    texto.replace(QLatin1Char('\r'), QStringLiteral("\\r"));
    texto.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    return texto;
}

} // namespace

QString msgSemRecomendacao(const QString& codAnalise, const QString& codCultivo)
{
    return QStringLiteral("A recomendação [") + codCultivo + QStringLiteral("] da análise [") + codAnalise
        + QStringLiteral("] não foi encontrada no banco de dados.");
}

const TextoPosto* Pagina::texto(const QString& nome) const
{
    for (const TextoPosto& t : textos) {
        if (t.nome == nome)
            return &t;
    }
    return nullptr;
}

QStringList colunasFlorestais(const QVector<QVariant>& linha)
{
    QStringList colunas(kCelulasFlorestais);
    for (int c = kPrimeiraFlorestal; c <= kUltimaFlorestal; ++c) {
        const QVariant valor = linha.value(c);
        if (vazia(valor))
            continue;
        const QStringList celulas = valor.toString().split(QLatin1Char('#'));
        for (int j = 0; j < kCelulasFlorestais; ++j)
            colunas[j] += FormataNumero(celulas.value(j), 1) + QLatin1Char('\n');
    }
    return colunas;
}

Pagina montaPagina(TipoLaudo tipo, const QVector<QVariant>& linha, const QVector<QVariant>& analise,
                   const QStringList& empresa, const Tecnico& tecnico)
{
    const Layout& layout = layoutDe(tipo);
    Pagina pagina;
    pagina.tipo = tipo;
    pagina.titulo = definicao(tipo).titulo;
    // The body is narrower than the paper between its margins; it stands in the middle.
    pagina.origem = QPoint((kLarguraPapel - layout.largura) / 2, kMargem + kSecoesAcima);
    pagina.larguraCorpo = layout.largura;
    pagina.alturaDetalhe = layout.alturaDetalhe;
    pagina.tracos = layout.tracos;

    const bool arroz = layout.expectativaPorCultura && linha.value(2).toString().left(19) == kArrozIrrigado;
    const QStringList florestais = tipo == TipoLaudo::Florestais ? colunasFlorestais(linha) : QStringList();

    for (const Campo& campo : layout.campos) {
        QString texto;
        switch (campo.origem) {
        case Origem::Legenda:
            texto = arroz && campo.nome == QLatin1String("lblExpect") ? kIncremento : campo.texto;
            break;
        case Origem::Empresa: texto = empresa.value(campo.indice); break;
        case Origem::Analise: texto = formata(analise.value(campo.indice), campo.formato, campo.casas); break;
        case Origem::Coluna: texto = formata(linha.value(campo.indice), campo.formato, campo.casas); break;
        case Origem::Assinante: texto = tecnico.nome + QLatin1Char('/') + tecnico.profissao; break;
        case Origem::Crea: texto = QStringLiteral("CREA: ") + tecnico.crea; break;
        case Origem::Florestal: texto = florestais.value(campo.indice); break;
        }
        pagina.textos.append({campo.nome, QRect(campo.esquerda, campo.topo, campo.largura, campo.altura),
                              campo.alinhamento, campo.fonte, campo.quebraLinhas, campo.moldura, texto});
    }
    return pagina;
}

Laudo MontaLaudo(Session& session, TipoLaudo tipo, const QString& codAnalise, const QString& codCultivo)
{
    const DefinicaoLaudo& def = definicao(tipo);
    session.TipoLaudo = def.texto;
    session.LaudoAnalise = codAnalise;
    session.LaudoCultivo = codCultivo;

    const std::optional<QStringList> empresa = LeEmpresa(session.db);
    if (!empresa)
        return {std::nullopt, Desfecho::aviso(kMsgSemEmpresa)};
    const auto linha = leLinha(session.db, def.tabela, codAnalise, codCultivo);
    if (!linha)
        return {std::nullopt, Desfecho::aviso(msgSemRecomendacao(codAnalise, codCultivo))};
    // An old recommendation opened after another analysis was chosen must not print that one.
    if (session.Analise.value(analise::kCodigo).toString() != codAnalise)
        CarregaAnalise(session, codAnalise);

    const Tecnico tecnico{session.NomeTec, session.ProfTec, session.CreaTec};
    return {montaPagina(tipo, *linha, session.Analise, *empresa, tecnico), std::nullopt};
}

Laudo LaudoFormulas(Session& session, const QString& codAnalise, const QString& codCultivo)
{
    return MontaLaudo(session, TipoLaudo::Formulas, codAnalise, codCultivo);
}

Laudo LaudoFormulacao(Session& session, const QString& codAnalise, const QString& codCultivo)
{
    return MontaLaudo(session, TipoLaudo::Formulacao, codAnalise, codCultivo);
}

Laudo LaudoFlorest(Session& session, const QString& codAnalise, const QString& codCultivo)
{
    return MontaLaudo(session, TipoLaudo::Florestais, codAnalise, codCultivo);
}

QString textoPagina(const Pagina& pagina)
{
    QString saida;
    const auto linha = [&saida](const QString& nome, int x, int y, int w, int h, const QString& texto) {
        saida += QStringLiteral("%1|%2|%3|%4|%5|%6\n")
                     .arg(nome, QString::number(x), QString::number(y), QString::number(w), QString::number(h),
                          escapa(texto));
    };
    linha(QStringLiteral("page"), pagina.origem.x(), pagina.origem.y(), pagina.larguraCorpo, pagina.alturaDetalhe,
          pagina.titulo);
    for (const TextoPosto& t : pagina.textos)
        linha(t.nome, t.caixa.x(), t.caixa.y(), t.caixa.width(), t.caixa.height(), t.texto);
    for (const Traco& r : pagina.tracos)
        linha(QStringLiteral("rule"), r.esquerda, r.topo, r.largura, 0, {});
    return saida;
}

} // namespace lavra::report
