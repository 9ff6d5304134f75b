#pragma once

#include <QWidget>

namespace lavra {
struct Session;
} // namespace lavra

namespace lavra::ui {

class WindowRegistry;

// "Sobre o Lavra": name, version, purpose and the database in use.
QWidget* criaFrmSobre(Session& session, WindowRegistry& registry);
// "Contatos": the maker's addresses in a read-only text.
QWidget* criaFrmContatos();

} // namespace lavra::ui
