#pragma once

#include "connection.h"

#include <QString>

namespace lavra {

// The database file and the shared pair that the routines walking a whole table use in turn.
// Lookups by key go through query.h instead, each on a connection of its own.
class Store {
public:
    Store() = default;
    explicit Store(QString databasePath) : strConn(std::move(databasePath)) {}

    QString strConn;  // stands for the path of the database file
    Connection cn;
    Cursor rs;

    // Drops what cn held and opens a fresh connection.
    void AbreConexao();
    // AbreConexao, then a fresh cursor on the statement in rs.
    void AbreTabela(const QString& sql);
    // Whether any row of the table holds the text at the column of that ordinal, byte by byte,
    // through the column's index. Uses a connection of its own, so that it can be called while rs
    // is being walked.
    bool ExisteValor(const QString& tabela, const QString& valor, int campo) const;

    // Closes rs and cn if they are open: the end of every routine, and of every failed one.
    void fecha();
    // Drops both pairs without writing anything: the way out of a failed routine.
    void descarta() noexcept;
};

} // namespace lavra
