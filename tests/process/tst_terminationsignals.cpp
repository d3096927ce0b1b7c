#include <process/terminationsignals.h>

#include "patience.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>

using ZelkoCommon::TerminationSignals;

class TestTerminationSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsOfASignalInTheEventLoop_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
    }

    void tellsOfASignalInTheEventLoop()
    {
        QFETCH(int, number);
        const TerminationSignals signals;
        const QSignalSpy received(&signals, &TerminationSignals::received);
        ::raise(number);
        QCOMPARE(received.count(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(received.count(), 1, patience);
    }

    void keepsASignalThatCameTooEarly()
    {
        TerminationSignals::hold();
        ::raise(SIGTERM);
        const TerminationSignals signals;
        const QSignalSpy received(&signals, &TerminationSignals::received);
        QTRY_COMPARE_WITH_TIMEOUT(received.count(), 1, patience);
    }
};

QTEST_GUILESS_MAIN(TestTerminationSignals)
#include "tst_terminationsignals.moc"
