#pragma once

#include <QString>

namespace lavra {

// The failures of the engine a user can do something about.
enum class EngineFailure {
    Other,
    ReadOnly,      // the file or its folder cannot be written
    Busy,          // another program holds the file
    Damaged,       // not a database, or a damaged one
    DiskFull,
    CannotOpen,
    DiskError,
    MissingTable,
};

// Sorts a failure by the engine's result code (-1 when unknown) and, where the code is a generic
// one, by the engine's own words.
EngineFailure engineFailure(int code, const QString& engineText);

// The failure told in plain Portuguese, with what the user can do; the engine's own words when it
// is none of the common ones.
QString plainEngineText(int code, const QString& engineText);

} // namespace lavra
