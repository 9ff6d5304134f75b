#include "uitestsupport.h"
class GrainsWindowTest : public QObject { Q_OBJECT };
QTEST_MAIN(GrainsWindowTest)
#include "grains_window_test.moc"
