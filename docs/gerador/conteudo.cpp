#include "conteudo.h"

#include "registers/interpretation.h"
#include "store/manualtables.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <cmath>

namespace lavra::docs {

namespace {

// The documents are written in Portuguese, whatever machine builds them.
const QLocale& ptBR()
{
    static const QLocale locale(QLocale::Portuguese, QLocale::Brazil);
    return locale;
}

QString numero(double valor)
{
    return ptBR().toString(valor, 'g', 6);
}

QString linha(const QStringList& celulas)
{
    return QStringLiteral("| ") + celulas.join(QStringLiteral(" | ")) + QStringLiteral(" |\n");
}

QString cabecalho(const QStringList& titulos)
{
    return linha(titulos) + linha(QStringList(titulos.size(), QStringLiteral("---")));
}

const QStringList& nomesDasClasses()
{
    static const QStringList nomes{QStringLiteral("Muito baixo"), QStringLiteral("Baixo"), QStringLiteral("Médio"),
                                   QStringLiteral("Alto"), QStringLiteral("Muito alto")};
    return nomes;
}

// "2/3#80#120" as the table shows it: "2/3 (80)", and "sem correção" for nothing applied.
QString parcela(const QString& correcao)
{
    const QStringList campos = correcao.split(QLatin1Char('#'));
    if (campos.size() != 3)
        return QStringLiteral("—");
    if (campos[0] == QLatin1String("sem"))
        return QStringLiteral("sem correção");
    if (campos[0] == QLatin1String("todo"))
        return QStringLiteral("toda (%1)").arg(campos[1]);
    return QStringLiteral("%1 (%2)").arg(campos[0], campos[1]);
}

QString totalDe(const QString& correcao)
{
    const QStringList campos = correcao.split(QLatin1Char('#'));
    return campos.size() == 3 ? campos[2] : QStringLiteral("—");
}

QString correcaoOficial()
{
    QString texto = cabecalho({QStringLiteral("Classe do teor"), QStringLiteral("Correção total (kg/ha)"),
                               QStringLiteral("1º cultivo: fração (kg/ha)"), QStringLiteral("2º cultivo: fração (kg/ha)")});
    for (int classe = 1; classe <= 5; ++classe)
        texto += linha({nomesDasClasses()[classe - 1], totalDe(CorrecaoPorClasse(1, classe)),
                        parcela(CorrecaoPorClasse(1, classe)), parcela(CorrecaoPorClasse(2, classe))});
    return texto;
}

QString divisaoGradual()
{
    QString texto = cabecalho({QStringLiteral("Dose calculada (kg/ha de P₂O₅)"), QStringLiteral("1º cultivo: fração (kg/ha)"),
                               QStringLiteral("2º cultivo: fração (kg/ha)")});
    for (float dose : {120.0f, 90.0f, 60.0f, 45.0f, 20.0f, 0.0f})
        texto += linha({numero(dose), parcela(CorrecaoPorDose(1, dose)), parcela(CorrecaoPorDose(2, dose))});
    return texto;
}

QString doseGradualFosforo()
{
    const QList<double> teores{2, 4, 6, 8, 10, 12, 15};
    QStringList titulos{QStringLiteral("Argila (%)")};
    for (double teor : teores)
        titulos << QStringLiteral("P %1").arg(numero(teor));
    QString texto = cabecalho(titulos);
    for (double argila : {15.0, 25.0, 35.0, 45.0, 55.0, 65.0}) {
        QStringList celulas{numero(argila)};
        for (double teor : teores)
            celulas << numero(std::trunc(DoseCorrecao(argila, teor, QStringLiteral("P"))));
        texto += linha(celulas);
    }
    return texto;
}

// "tabela GRAOPC1: Milho; Soja": the rows of those keys as the program delivers them, under the
// worded headings of their columns.
QString tabelaDoManual(const QString& especificacao, QString* erro)
{
    const qsizetype doisPontos = especificacao.indexOf(QLatin1Char(':'));
    const QString tabela = especificacao.left(doisPontos).trimmed();
    if (!manual::ehTabelaDoManual(tabela)) {
        *erro = QStringLiteral("a tabela %1 não é uma das tabelas do manual").arg(tabela);
        return {};
    }
    const TableDef& definicao = manual::definicaoDe(tabela);
    QStringList titulos;
    for (const ColumnDef& coluna : definicao.columns)
        titulos << manual::tituloColuna(tabela, coluna.name);
    QString texto = cabecalho(titulos);
    const QStringList chaves = doisPontos < 0 ? QStringList() : especificacao.mid(doisPontos + 1).split(QLatin1Char(';'));
    for (const QString& chave : chaves) {
        const manual::LinhaEntregue* entregue = manual::dadosDoPrograma().linha(tabela, chave.trimmed());
        if (!entregue) {
            *erro = QStringLiteral("a tabela %1 não tem a linha \"%2\"").arg(tabela, chave.trimmed());
            return {};
        }
        QStringList celulas;
        for (const QVariant& valor : entregue->valores)
            celulas << (valor.typeId() == QMetaType::QString ? valor.toString() : numero(valor.toDouble()));
        texto += linha(celulas);
    }
    return texto;
}

} // namespace

QString tabelaGerada(const QString& pedido, QString* erro)
{
    const QString nome = pedido.section(QLatin1Char(' '), 0, 0);
    if (nome == QLatin1String("correcao-oficial"))
        return correcaoOficial();
    if (nome == QLatin1String("correcao-gradual-fosforo"))
        return doseGradualFosforo();
    if (nome == QLatin1String("correcao-gradual-divisao"))
        return divisaoGradual();
    if (nome == QLatin1String("tabela"))
        return tabelaDoManual(pedido.section(QLatin1Char(' '), 1), erro);
    *erro = QStringLiteral("não há tabela gerada com o nome \"%1\"").arg(nome);
    return {};
}

Texto preparaTexto(const QStringList& arquivos)
{
    static const QRegularExpression nota(QStringLiteral("^\\s*<!--.*-->\\s*$"));
    static const QRegularExpression gerada(QStringLiteral("^\\s*\\{\\{(.+)\\}\\}\\s*$"));
    static const QRegularExpression imagem(QStringLiteral("^\\s*!\\[([^\\]]*)\\]\\(([^)]+)\\)\\s*$"));
    Texto texto;
    for (const QString& caminho : arquivos) {
        QFile arquivo(caminho);
        if (!arquivo.open(QIODevice::ReadOnly | QIODevice::Text)) {
            texto.erros << QStringLiteral("%1: não foi possível ler o arquivo").arg(caminho);
            continue;
        }
        const QString nomeCurto = QFileInfo(caminho).fileName();
        int numeroDaLinha = 0;
        const QStringList linhas = QString::fromUtf8(arquivo.readAll()).split(QLatin1Char('\n'));
        for (const QString& linhaDoArquivo : linhas) {
            ++numeroDaLinha;
            if (nota.match(linhaDoArquivo).hasMatch())
                continue;
            if (const QRegularExpressionMatch m = gerada.match(linhaDoArquivo); m.hasMatch()) {
                QString erro;
                const QString tabela = tabelaGerada(m.captured(1).trimmed(), &erro);
                if (!erro.isEmpty())
                    texto.erros << QStringLiteral("%1:%2: %3").arg(nomeCurto).arg(numeroDaLinha).arg(erro);
                texto.markdown += tabela;
                continue;
            }
            if (const QRegularExpressionMatch m = imagem.match(linhaDoArquivo); m.hasMatch()) {
                texto.figuras.append({m.captured(2).trimmed(), m.captured(1).trimmed()});
                texto.markdown += QStringLiteral("![%1](%2)\n\n*Figura %3. %1*\n")
                                      .arg(m.captured(1).trimmed(), m.captured(2).trimmed())
                                      .arg(texto.figuras.size());
                continue;
            }
            texto.markdown += linhaDoArquivo + QLatin1Char('\n');
        }
        texto.markdown += QLatin1Char('\n');
    }
    return texto;
}

} // namespace lavra::docs
