#pragma once

#include <QWidget>

namespace lavra::ui {

// "Sobre o Lavra": name, version and purpose.
QWidget* criaFrmSobre();
// "Contatos": the maker's addresses in a read-only text.
QWidget* criaFrmContatos();

} // namespace lavra::ui
