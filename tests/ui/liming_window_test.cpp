#include "uitestsupport.h"
class LimingWindowTest : public QObject { Q_OBJECT };
QTEST_MAIN(LimingWindowTest)
#include "liming_window_test.moc"
