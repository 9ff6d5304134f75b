#include <QtTest>
class AnalysisWindowTest : public QObject { Q_OBJECT };
QTEST_MAIN(AnalysisWindowTest)
#include "analysis_window_test.moc"
