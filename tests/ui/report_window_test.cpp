#include "uitestsupport.h"
class ReportWindowTest : public QObject { Q_OBJECT };
QTEST_MAIN(ReportWindowTest)
#include "report_window_test.moc"
