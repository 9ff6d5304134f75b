#include "uitestsupport.h"
class RegistersWindowTest : public QObject { Q_OBJECT };
QTEST_MAIN(RegistersWindowTest)
#include "registers_window_test.moc"
