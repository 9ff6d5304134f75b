#pragma once

// What a window's factory needs to be declared: every window is built on the session and the
// registry of windows.
class QWidget;

namespace lavra {
struct Session;
}

namespace lavra::ui {
class WindowRegistry;
}
