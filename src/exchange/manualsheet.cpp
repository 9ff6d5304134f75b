#include "manualsheet.h"

#include "base/numbers.h"
#include "workbook.h"
#include "xlsxfile.h"

#include <QFileInfo>
#include <QHash>
#include <QMap>

namespace lavra::manual {

namespace {

const QString kFonte = QStringLiteral("Fonte");
const QString kConfianca = QStringLiteral("Confiança");
const QString kFolhaColunas = QStringLiteral("Colunas");

// A cell as the text the user would type for it, numbers with the machine's decimal symbol, so
// that a cell goes through the same checks as a value typed in the window.
QString textoDaCelula(const Celula& celula)
{
    if (celula.tipo == Celula::Tipo::Numero)
        return numberText(celula.numero);
    return celula.comoTexto();
}

// A key cell as the column keeps it; nothing for one that cannot be a key.
std::optional<QVariant> valorDeChave(const Celula& celula, const ColumnDef& coluna)
{
    if (coluna.type == ColumnType::Text)
        return celula.vazia() ? std::nullopt : std::optional<QVariant>(celula.comoTexto().trimmed());
    const auto numero = celula.tipo == Celula::Tipo::Numero ? std::optional<double>(celula.numero) : parseNumber(celula.texto.trimmed());
    if (!numero)
        return std::nullopt;
    if (coluna.type == ColumnType::Single)
        return QVariant(widenShortest(toSingle(*numero)));
    return QVariant(qlonglong(*numero));
}

} // namespace

void exportaTabela(const Store& db, const QString& tabela, const QString& caminho)
{
    const TableDef& def = definicaoDe(tabela);
    const QList<LinhaManual> linhas = leTabela(db, tabela);

    FolhaEscrita dados{tabela, {}};
    QVector<QVariant> cabecalho;
    for (const ColumnDef& coluna : def.columns)
        cabecalho << coluna.name;
    cabecalho << kFonte << kConfianca;
    dados.linhas << cabecalho;
    for (const LinhaManual& linha : linhas)
        dados.linhas << (linha.valores + QVector<QVariant>{linha.fonte, textoConfianca(linha.confianca)});

    FolhaEscrita colunas{kFolhaColunas, {{QStringLiteral("Coluna"), QStringLiteral("Significado")}}};
    for (const ColumnDef& coluna : def.columns)
        colunas.linhas << QVector<QVariant>{coluna.name, tituloColuna(tabela, coluna.name)};
    colunas.linhas << QVector<QVariant>{kFonte, QStringLiteral("De onde vem o número (nota do programa; não é lida na importação)")}
                   << QVector<QVariant>{kConfianca, QStringLiteral("Quanto o número merece confiança (não é lida na importação)")};
    gravaXlsx(caminho, {dados, colunas});
}

void exportaHistorico(const Store& db, const QString& caminho)
{
    FolhaEscrita folha{QStringLiteral("Histórico"),
        {{QStringLiteral("Data e hora"), QStringLiteral("Tabela"), QStringLiteral("Chave"), QStringLiteral("Coluna"),
            QStringLiteral("Valor anterior"), QStringLiteral("Valor novo"), QStringLiteral("Motivo")}}};
    for (const RegistroHistorico& r : historico(db)) {
        folha.linhas << QVector<QVariant>{r.quando.toString(QStringLiteral("dd/MM/yyyy hh:mm:ss")), r.tabela, r.chave,
            r.coluna, r.anterior, r.novo, r.motivo};
    }
    gravaXlsx(caminho, {folha});
}

QString Importacao::texto() const
{
    QStringList linhas;
    if (correcoes.isEmpty())
        linhas << QStringLiteral("A planilha não muda nenhum valor da tabela %1.").arg(tabela);
    else
        linhas << QStringLiteral("Valores que mudam na tabela %1 (%2):").arg(tabela).arg(correcoes.size());
    for (const Correcao& c : correcoes)
        linhas << textoCorrecao(c);
    if (!recusas.isEmpty()) {
        linhas << QString() << QStringLiteral("Não importado (%1):").arg(recusas.size());
        linhas << recusas;
    }
    return linhas.join(QLatin1Char('\n'));
}

Importacao leImportacao(const Store& db, const QString& tabela, const QString& caminho)
{
    const TableDef& def = definicaoDe(tabela);
    const Pasta pasta = abrePasta(caminho);
    const Planilha* folha = pasta.planilha(tabela);
    if (!folha)
        throw ErroPasta(QStringLiteral("A pasta \"%1\" não tem a planilha \"%2\". Exporte a tabela pelo programa para ver "
                                       "a disposição que a importação espera.")
                            .arg(QFileInfo(caminho).fileName(), tabela));

    Importacao imp;
    imp.tabela = tabela;

    // The first row names the columns; the notes after them are the program's, not the user's.
    QMap<int, int> colunaDaCelula; // sheet column → table column, in sheet order
    for (int c = 1; c <= 256; ++c) {
        const Celula celula = folha->celula(1, c);
        if (celula.vazia())
            break;
        const QString nome = celula.comoTexto().trimmed();
        if (nome == kFonte || nome == kConfianca)
            continue;
        int encontrada = -1;
        for (int i = 0; i < def.columns.size(); ++i) {
            if (def.columns[i].name == nome)
                encontrada = i;
        }
        if (encontrada < 0)
            imp.recusas << QStringLiteral("Coluna \"%1\": a tabela %2 não tem esta coluna; nenhum valor dela foi lido.").arg(nome, tabela);
        else
            colunaDaCelula.insert(c, encontrada);
    }
    for (int k : colunasChave(tabela)) {
        if (colunaDaCelula.key(k, 0) == 0)
            throw ErroPasta(QStringLiteral("A planilha \"%1\" não tem a coluna \"%2\", pela qual as linhas são encontradas.")
                                .arg(tabela, def.columns[k].name));
    }

    QHash<QString, LinhaManual> atuais;
    for (const LinhaManual& linha : leTabela(db, tabela)) {
        if (!atuais.contains(linha.chave))
            atuais.insert(linha.chave, linha);
    }

    QHash<QString, int> vistas;
    for (int r = 2; r <= folha->linhasUsadas(); ++r) {
        bool vazia = true;
        for (auto it = colunaDaCelula.cbegin(); it != colunaDaCelula.cend() && vazia; ++it)
            vazia = folha->celula(r, it.key()).vazia();
        if (vazia)
            continue;
        ++imp.linhasLidas;

        QVector<QVariant> chave(def.columns.size());
        bool chaveLida = true;
        for (int k : colunasChave(tabela)) {
            const auto valor = valorDeChave(folha->celula(r, colunaDaCelula.key(k)), def.columns[k]);
            chaveLida = chaveLida && valor.has_value();
            if (valor)
                chave[k] = *valor;
        }
        const QString texto = textoChave(tabela, chave);
        if (!chaveLida || !atuais.contains(texto)) {
            imp.recusas << QStringLiteral("Linha %1: a tabela %2 não tem a chave \"%3\"; a linha não foi lida.").arg(r).arg(tabela, texto);
            continue;
        }
        if (vistas.contains(texto)) {
            imp.recusas << QStringLiteral("Linha %1: a chave \"%2\" já veio na linha %3; só aquela foi lida.").arg(r).arg(texto).arg(vistas.value(texto));
            continue;
        }
        vistas.insert(texto, r);

        const LinhaManual& atual = atuais[texto];
        QList<Correcao> daLinha;
        QStringList problemas;
        for (auto it = colunaDaCelula.cbegin(); it != colunaDaCelula.cend(); ++it) {
            const int c = it.value();
            if (colunasChave(tabela).contains(c))
                continue;
            const Celula celula = folha->celula(r, it.key());
            if (celula.vazia() && atual.valores.value(c).isNull())
                continue;
            const ValorLido lido = leValor(tabela, c, celula.vazia() ? QString() : textoDaCelula(celula));
            if (!lido.recusa.isEmpty()) {
                problemas << QStringLiteral("%1: %2").arg(def.columns[c].name, lido.recusa);
                continue;
            }
            if (!mesmoValor(atual.valores.value(c), lido.valor, def.columns[c].type))
                daLinha << Correcao{tabela, texto, c, atual.valores.value(c), lido.valor};
        }
        // A row is taken whole or not at all: half a row of the manual would be neither.
        if (!problemas.isEmpty()) {
            imp.recusas << QStringLiteral("Linha %1, \"%2\": %3; a linha não foi lida.").arg(r).arg(texto, problemas.join(QStringLiteral("; ")));
            continue;
        }
        imp.correcoes << daLinha;
    }
    return imp;
}

} // namespace lavra::manual
