#include "uitestsupport.h"
class ChainWindowTest : public QObject { Q_OBJECT };
QTEST_MAIN(ChainWindowTest)
#include "chain_window_test.moc"
