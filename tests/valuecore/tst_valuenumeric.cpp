#include "changelogger.h"
#include "sentcommands.h"

#include <valuecore/commandoptimizer.h>
#include <valuecore/valuenumeric.h>

#include <QTest>

#include <limits>

using Frequency = ValueNumeric<double>;
using Counter = ValueNumeric<qint64>;

class tst_ValueNumeric : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void hasTheWholeRangeAtFirst();
    void takesNumbersWithinItsLimits_data();
    void takesNumbersWithinItsLimits();
    void refusesLimitsTheWrongWayRound();
    void movesItsContentIntoNewLimits_data();
    void movesItsContentIntoNewLimits();
    void tellsOnceWhenLimitsDiffer();
    void comparesItsLimits();
    void sendsLimitsAndContent();
    void refusesLimitsOfAStreamTheWrongWayRound();
    void ignoresAContentOfAStreamOutsideOfItsLimits();
    void keepsEveryLimitOfALongList();
    void rebuildsALimitedContent_data();
    void rebuildsALimitedContent();

private:
    QStringList m_log;
    ChangeLogger m_observer{"a", m_log};
};

void tst_ValueNumeric::init()
{
    m_log.clear();
}

void tst_ValueNumeric::hasTheWholeRangeAtFirst()
{
    QCOMPARE(Counter().GetMinimum(), std::numeric_limits<qint64>::min());
    QCOMPARE(Counter().GetMaximum(), std::numeric_limits<qint64>::max());
    QCOMPARE(Frequency().GetMinimum(), std::numeric_limits<double>::lowest());
    QCOMPARE(Frequency().GetMaximum(), std::numeric_limits<double>::max());
}

void tst_ValueNumeric::takesNumbersWithinItsLimits_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<bool>("taken");
    QTest::newRow("lower limit") << -1.5 << true;
    QTest::newRow("upper limit") << 20.0 << true;
    QTest::newRow("in between") << 7.25 << true;
    QTest::newRow("just below") << std::nextafter(-1.5, -2.0) << false;
    QTest::newRow("just above") << std::nextafter(20.0, 21.0) << false;
    QTest::newRow("endless") << qInf() << false;
    QTest::newRow("not a number") << qQNaN() << false;
}

void tst_ValueNumeric::takesNumbersWithinItsLimits()
{
    QFETCH(double, number);
    QFETCH(bool, taken);
    Frequency value;
    QVERIFY(value.SetLimits(-1.5, 20.0, nullptr));
    QVERIFY(value.SetValue(3.0, nullptr));
    QCOMPARE(value.SetValue(number, nullptr), taken);
    QCOMPARE(value.GetValue(), taken ? number : 3.0);
}

void tst_ValueNumeric::refusesLimitsTheWrongWayRound()
{
    Frequency value;
    QVERIFY(value.SetLimits(1.0, 2.0, nullptr));
    value.AddObserver(&m_observer);
    QVERIFY(!value.SetLimits(2.0, 1.0, nullptr));
    QVERIFY(!value.SetLimits(qQNaN(), 5.0, nullptr));
    QVERIFY(!value.SetLimits(1.0, qQNaN(), nullptr));
    QCOMPARE(value.GetMinimum(), 1.0);
    QCOMPARE(value.GetMaximum(), 2.0);
    QVERIFY(value.SetLimits(1.5, 1.5, nullptr));
    QCOMPARE(value.GetValue(), 1.5);
    QCOMPARE(m_log, QStringList({"a 3"}));
}

void tst_ValueNumeric::movesItsContentIntoNewLimits_data()
{
    QTest::addColumn<qint64>("minimum");
    QTest::addColumn<qint64>("maximum");
    QTest::addColumn<qint64>("content");
    QTest::newRow("stays") << Q_INT64_C(0) << Q_INT64_C(100) << Q_INT64_C(50);
    QTest::newRow("moves up") << Q_INT64_C(60) << Q_INT64_C(100) << Q_INT64_C(60);
    QTest::newRow("moves down") << Q_INT64_C(-5) << Q_INT64_C(40) << Q_INT64_C(40);
}

void tst_ValueNumeric::movesItsContentIntoNewLimits()
{
    QFETCH(qint64, minimum);
    QFETCH(qint64, maximum);
    Counter value;
    value.SetValue(50, nullptr);
    QVERIFY(value.SetLimits(minimum, maximum, nullptr));
    QTEST(value.GetValue(), "content");
}

void tst_ValueNumeric::tellsOnceWhenLimitsDiffer()
{
    Counter value;
    value.AddObserver(&m_observer);
    value.SetLimits(0, 10, nullptr); // the content stays
    QCOMPARE(m_log, QStringList({"a 3"}));
    value.SetLimits(5, 10, nullptr); // the content moves
    QCOMPARE(m_log, QStringList({"a 3", "a 3"}));
    value.SetLimits(5, 10, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "a 3"}));
    value.SetLimits(6, 10, &m_observer);
    QCOMPARE(m_log, QStringList({"a 3", "a 3"}));
}

void tst_ValueNumeric::comparesItsLimits()
{
    Counter one;
    Counter other;
    QVERIFY(one.Compare(&other));
    other.SetLimits(-10, 10, nullptr);
    QVERIFY(!one.Compare(&other));
    one.Assign(other);
    QVERIFY(one.Compare(&other));
    QCOMPARE(one.GetMaximum(), Q_INT64_C(10));
    QVERIFY(Counter(one) == other);
    const Value<qint64> plain;
    QVERIFY(!one.Compare(&plain));
    QVERIFY(!plain.Compare(&one));
}

void tst_ValueNumeric::sendsLimitsAndContent()
{
    SentCommands sent;
    Counter value;
    value.SetTransmitter(&sent);
    value.SetLimits(5, 10, nullptr);
    value.SetValue(7, nullptr);
    QCOMPARE(sent.ids(), std::vector<int>({11, 10, 10}));
    Counter peer;
    QVERIFY(peer.SetCommandString(sent.stream(), nullptr));
    QVERIFY(peer == value);
}

void tst_ValueNumeric::refusesLimitsOfAStreamTheWrongWayRound()
{
    std::string stream = "11;";
    commandwriter::number(stream, qint64{3});
    commandwriter::number(stream, qint64{2});
    stream += ';';
    Counter value;
    value.AddObserver(&m_observer);
    QVERIFY(!value.SetCommandString(stream, nullptr));
    QVERIFY(value == Counter());
    QCOMPARE(m_log, QStringList());
}

void tst_ValueNumeric::ignoresAContentOfAStreamOutsideOfItsLimits()
{
    SentCommands sent;
    Counter free;
    free.SetTransmitter(&sent);
    free.SetValue(11, nullptr);
    free.HasChanged(TChangeCode::ValueChanged, nullptr);
    Counter limited;
    limited.SetLimits(0, 10, nullptr);
    limited.AddObserver(&m_observer);
    QVERIFY(limited.SetCommandString(sent.stream(), nullptr));
    QCOMPARE(limited.GetValue(), Q_INT64_C(0));
    QCOMPARE(m_log, QStringList());
}

// A content that was possible within earlier limits alone would be refused on the other side.
void tst_ValueNumeric::keepsEveryLimitOfALongList()
{
    SentCommands sent;
    Counter value;
    Counter peer;
    for (Counter* each : {&value, &peer}) {
        each->SetLimits(0, 10, nullptr);
    }
    value.SetTransmitter(&sent);
    value.SetUpdateTimerTime(60000);
    value.SetLimits(0, 100, nullptr);
    value.SetValue(50, nullptr);
    value.SetLimits(0, 60, nullptr);
    value.TriggerOptimization();
    QCOMPARE(sent.ids(), std::vector<int>({11, 10, 11}));
    QVERIFY(peer.SetCommandString(sent.stream(), nullptr));
    QVERIFY(peer == value);
}

void tst_ValueNumeric::rebuildsALimitedContent_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("content");
    QTest::newRow("zero outside, below") << 5.0 << 10.0 << 7.0;
    QTest::newRow("zero outside, above") << -10.0 << -5.0 << -10.0;
    QTest::newRow("endless limits") << -qInf() << qInf() << qInf();
    QTest::newRow("one number only") << 3.0 << 3.0 << 3.0;
}

void tst_ValueNumeric::rebuildsALimitedContent()
{
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, content);
    Frequency value("f", TValueState::Locked);
    QVERIFY(value.SetLimits(minimum, maximum, nullptr));
    QVERIFY(value.SetValue(content, nullptr));
    std::string state;
    value.AddObjectStateStringForTransmission(state, 0);
    Frequency fresh;
    QVERIFY(fresh.SetCommandString(state, nullptr));
    QVERIFY(fresh == value);
}

QTEST_GUILESS_MAIN(tst_ValueNumeric)
#include "tst_valuenumeric.moc"
