#include "uitestsupport.h"
class SavedReportsWindowTest : public QObject { Q_OBJECT };
QTEST_MAIN(SavedReportsWindowTest)
#include "saved_reports_window_test.moc"
