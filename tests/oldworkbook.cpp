#include "oldworkbook.h"

namespace lavra::test {

PastaAnterior::PastaAnterior()
{
    poe(34, QStringLiteral("AF"), QStringLiteral("Empresa"));
    poe(35, QStringLiteral("AF"), QStringLiteral("Rua"));
    poe(36, QStringLiteral("AF"), QStringLiteral("Número"));
    poe(37, QStringLiteral("AF"), QStringLiteral("Bairro"));
    poe(38, QStringLiteral("AF"), QStringLiteral("CEP"));
    poe(39, QStringLiteral("AF"), QStringLiteral("Cidade"));
    poe(40, QStringLiteral("AF"), QStringLiteral("Estado"));
    poe(43, QStringLiteral("AF"), QStringLiteral("Telefone"));
    poe(1, QStringLiteral("A"), QStringLiteral("Código"));
}

int PastaAnterior::coluna(const QString& letras)
{
    int n = 0;
    for (const QChar c : letras)
        n = n * 26 + (c.unicode() - 'A' + 1);
    return n;
}

QString PastaAnterior::letras(int coluna)
{
    QString r;
    for (; coluna > 0; coluna = (coluna - 1) / 26)
        r.prepend(QChar('A' + (coluna - 1) % 26));
    return r;
}

void PastaAnterior::poe(int linha, const QString& col, const QVariant& valor)
{
    if (valor.isValid())
        m_celulas[linha][coluna(col)] = valor;
    else
        m_celulas[linha].remove(coluna(col));
}

QVariant PastaAnterior::valor(int linha, const QString& col) const
{
    return m_celulas.value(linha).value(coluna(col));
}

QList<PlanilhaXls> PastaAnterior::planilhas() const
{
    PlanilhaXls lavra{QStringLiteral("Lavra"), {}};
    const int ultima = m_celulas.isEmpty() ? 0 : m_celulas.lastKey();
    lavra.linhas.resize(ultima);
    for (auto l = m_celulas.cbegin(); l != m_celulas.cend(); ++l) {
        if (l.value().isEmpty())
            continue;
        QVector<QVariant>& linha = lavra.linhas[l.key() - 1];
        linha.resize(l.value().lastKey());
        for (auto c = l.value().cbegin(); c != l.value().cend(); ++c)
            linha[c.key() - 1] = c.value();
    }
    return {PlanilhaXls{QStringLiteral("Graficos"), {{QStringLiteral("Classe"), 1.5}}}, lavra};
}

} // namespace lavra::test
