#pragma once

// What both benchmarks share: a database of an office with years of work in it, and the way each
// operation is timed and printed.

#include <QString>

#include <functional>
#include <vector>

namespace lavra::bench {

constexpr int kClientes = 5000;
constexpr int kAnalises = 100000;
constexpr int kRecomendacoes = 20000;
constexpr int kRodadas = 5;

QString nomeCliente(int i);
QString dataAnalise(int i);
QString codigoAnalise(int i);
QString codigoCultivo(int i);

// Creates the database at path with its starting rows, then fills it; returns the peak memory, in
// KiB, of the empty database's creation, for comparison.
long criaBanco(const QString& caminho);

struct Medida {
    QString operacao;
    qint64 linhas = 0;
    double ms = 0;
    long picoKb = 0;
};

// The peak resident memory of this process since the last reset, in KiB. A reset also clears what a
// process inherits from the one that started it.
void zeraPico();
long picoKb();

// The median of a few runs, and the peak memory while they ran.
Medida mede(const QString& operacao, qint64 linhas, const std::function<void(int)>& acao);
void imprime(const std::vector<Medida>& medidas, long picoVazio);

} // namespace lavra::bench
