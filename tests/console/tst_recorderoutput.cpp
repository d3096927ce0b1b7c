#include <console/session/recorderoutput.h>

#include <QTest>

using ZelkoConsole::RecorderOutput;

class TestRecorderOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsThePortOfTheReadyLine_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("port"); // 0: none
        QTest::newRow("a usual port") << QByteArray("READY port=8004") << 8004;
        QTest::newRow("the highest port") << QByteArray("READY port=65535") << 65535;
        QTest::newRow("a port that is too high") << QByteArray("READY port=65536") << 0;
        QTest::newRow("port 0") << QByteArray("READY port=0") << 0;
        QTest::newRow("no number") << QByteArray("READY port=") << 0;
        QTest::newRow("a negative number") << QByteArray("READY port=-1") << 0;
        QTest::newRow("text behind the number") << QByteArray("READY port=80x") << 0;
        QTest::newRow("text before the word") << QByteArray("not READY port=80") << 0;
        QTest::newRow("nothing") << QByteArray() << 0;
    }

    void readsThePortOfTheReadyLine()
    {
        QFETCH(QByteArray, line);
        QFETCH(int, port);
        QCOMPARE(int{RecorderOutput::portOf(line).value_or(0)}, port);
    }

    void putsALineTogetherThatComesInPieces()
    {
        RecorderOutput output;
        QVERIFY(!output.takeOutput("some text\nREADY po"));
        QVERIFY(!output.takeOutput("rt=81"));
        QCOMPARE(output.takeOutput("23\n"), std::optional<quint16>(8123));
    }

    void tellsThePortOnce()
    {
        RecorderOutput output;
        QVERIFY(output.takeOutput("READY port=1\n"));
        QVERIFY(!output.takeOutput("READY port=2\n"));
        output.clear();
        QCOMPARE(output.takeOutput("READY port=3\n"), std::optional<quint16>(3));
    }

    void overlooksAnEndlessLine()
    {
        RecorderOutput output;
        QVERIFY(!output.takeOutput(QByteArray(1'000'000, 'x')));
        QVERIFY(!output.takeOutput("READY port=1\n"));
        QCOMPARE(output.takeOutput("READY port=2\n"), std::optional<quint16>(2));
    }

    void keepsTheLastLineOfTheErrors_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing came") << QByteArray() << QString();
        QTest::newRow("several lines") << QByteArray("one\ntwo\n") << QStringLiteral("two");
        QTest::newRow("empty lines at the end") << QByteArray("one\n\n \n") << QStringLiteral("one");
        QTest::newRow("a line without an end") << QByteArray("one\ntwo") << QStringLiteral("two");
        QTest::newRow("a line that is too long") << QByteArray(5000, 'x') + '\n'
                                                 << QString(int{RecorderOutput::maximumLine}, QLatin1Char('x'));
    }

    void keepsTheLastLineOfTheErrors()
    {
        QFETCH(QByteArray, bytes);
        RecorderOutput output;
        output.takeError(bytes);
        QTEST(output.lastError(), "text");
    }
};

QTEST_GUILESS_MAIN(TestRecorderOutput)
#include "tst_recorderoutput.moc"
