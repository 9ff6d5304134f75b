#pragma once

namespace lavra {
struct Session;
}

namespace lavra::ui {

class WindowRegistry;

// The frame of the charts, the four chart windows and their selections, and the answer to a
// selection window asking for a chart.
void registraGraficos(Session& session, WindowRegistry& windows);

} // namespace lavra::ui
