#include "uitestsupport.h"
class PlanWindowTest : public QObject { Q_OBJECT };
QTEST_MAIN(PlanWindowTest)
#include "plan_window_test.moc"
