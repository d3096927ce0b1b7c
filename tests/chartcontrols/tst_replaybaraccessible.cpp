#include "microseconds.h"
#include "tiedbar.h"

#include <QAccessible>
#include <QtTest>

#include <functional>

namespace {

constexpr int first = VCReplayBar::FirstBookmarkMarker;

/// A bar that keeps what it tells programs that read the screen, in order: "value" and "description".
class HeardBar final : public VCReplayBar
{
public:
    using VCReplayBar::VCReplayBar;

    QStringList takeHeard() { return std::exchange(m_heard, {}); }

protected:
    void tellValue() override
    {
        VCReplayBar::tellValue();
        m_heard << QStringLiteral("value");
    }
    void tellDescription() override
    {
        VCReplayBar::tellDescription();
        m_heard << QStringLiteral("description");
    }

private:
    QStringList m_heard;
};

using Heard = TiedBarOf<HeardBar>;
using Use = std::function<void(Heard&)>;

} // namespace

Q_DECLARE_METATYPE(Use)

class ReplayBarAccessibleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isASliderWhoseTextIsTheTime();
    void standsForTheCurrentMarker();
    void setsWhatAUserMaySet();
    void aBarWithoutAPositionHasNoText();
    void tellsWhatBecameOfTheCurrentMarker_data();
    void tellsWhatBecameOfTheCurrentMarker();
};

void ReplayBarAccessibleTest::isASliderWhoseTextIsTheTime()
{
    TiedBar b;
    QAccessibleInterface& bar = *QAccessible::queryAccessibleInterface(&b.bar);
    QCOMPARE(bar.role(), QAccessible::Slider);
    QCOMPARE(bar.text(QAccessible::Name), QStringLiteral("Replay bar"));
    QCOMPARE(bar.text(QAccessible::Value), QStringLiteral("2023-11-14 23:14:10.000000 CET"));
    QVERIFY(bar.valueInterface());
    QCOMPARE(microseconds(bar.valueInterface()->minimumValue().toDouble()), TiedBar::begin);
    QCOMPARE(microseconds(bar.valueInterface()->maximumValue().toDouble()), TiedBar::begin + 100 * TiedBar::perPixel);
    QCOMPARE(bar.valueInterface()->minimumStepSize().toDouble(), 1.0);
    QVERIFY(bar.state().focusable);
}

void ReplayBarAccessibleTest::standsForTheCurrentMarker()
{
    TiedBar b;
    QAccessibleInterface& bar = *QAccessible::queryAccessibleInterface(&b.bar);
    b.bar.SetBookmarks({{TiedBar::begin + 123'456, QStringLiteral("Tower")}}, false);
    b.bar.SetCurrentMarker(first);
    QCOMPARE(bar.text(QAccessible::Value), QStringLiteral("2023-11-14 23:13:20.123456 CET"));
    QCOMPARE(bar.text(QAccessible::Description), QStringLiteral("Tower"));
    QCOMPARE(microseconds(bar.valueInterface()->currentValue().toDouble()), TiedBar::begin + 123'456);
}

void ReplayBarAccessibleTest::setsWhatAUserMaySet()
{
    TiedBar b;
    QAccessibleValueInterface& value = *QAccessible::queryAccessibleInterface(&b.bar)->valueInterface();
    value.setCurrentValue(double(TiedBar::begin));
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 50);
    b.bar.GetMarker(VCReplayBar::PositionMarker)->SetMoveable(true);
    value.setCurrentValue(double(TiedBar::begin + 30 * TiedBar::perPixel));
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 30);
    value.setCurrentValue(0.0);
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 0);
}

void ReplayBarAccessibleTest::aBarWithoutAPositionHasNoText()
{
    VCReplayBar bar(nullptr, "bar", true);
    QCOMPARE(QAccessible::queryAccessibleInterface(&bar)->text(QAccessible::Value), QString());
}

void ReplayBarAccessibleTest::tellsWhatBecameOfTheCurrentMarker_data()
{
    QTest::addColumn<Use>("use");
    QTest::addColumn<QStringList>("heard");
    const QStringList both{QStringLiteral("value"), QStringLiteral("description")};
    QTest::newRow("another one is chosen") << Use([](Heard& b) { b.bar.SetCurrentMarker(first + 1); }) << both;
    QTest::newRow("the next one is chosen") << Use([](Heard& b) { b.key(Qt::Key_Right, Qt::ControlModifier); }) << both;
    QTest::newRow("another one is clicked") << Use([](Heard& b) { b.drag(70, 70); }) << both;
    QTest::newRow("it is deleted") << Use([](Heard& b) { b.key(Qt::Key_Delete); }) << both;
    QTest::newRow("it is taken away") << Use([](Heard& b) { b.bar.SetBookmarks(TiedBar::bookmarks({70}), false); })
                                      << both;
    QTest::newRow("a new one is set") << Use([](Heard& b) { b.key(Qt::Key_Insert); }) << both;
    QTest::newRow("it moves") << Use([](Heard& b) { b.key(Qt::Key_Right); }) << both.mid(0, 1);
    QTest::newRow("it is renamed") << Use([](Heard& b) { b.bar.SetMarkerName(first, QStringLiteral("other")); })
                                   << both.mid(1);
    QTest::newRow("it gets another number") << Use([](Heard& b) {
        b.bar.SetBookmarks(TiedBar::bookmarks({20, 70, 30}), false);
    }) << QStringList();
    QTest::newRow("another one moves") << Use([](Heard& b) { TiedBar::set(b.position.path(), TiedBar::begin); })
                                       << QStringList();
}

void ReplayBarAccessibleTest::tellsWhatBecameOfTheCurrentMarker()
{
    QFETCH(Use, use);
    Heard b;
    b.bar.AllowCreationOfBookMarks(true);
    b.bar.SetBookmarks(TiedBar::bookmarks({30, 70}), false);
    b.bar.SetCurrentMarker(first);
    b.bar.takeHeard();
    use(b);
    QTEST(b.bar.takeHeard(), "heard");
}

QTEST_MAIN(ReplayBarAccessibleTest)
#include "tst_replaybaraccessible.moc"
