#pragma once

namespace lavra::ui {

// Loads Qt's own Brazilian Portuguese texts, so that the file, print and colour dialogs and
// the standard buttons speak the language of the rest of the program, whatever the machine's
// language. Returns false when the translations are not installed; the dialogs then stay as
// Qt ships them.
bool carregaTraducoes();

} // namespace lavra::ui
