#include "tiedbar.h"

#include <QAccessible>
#include <QtTest>

namespace {

constexpr int first = VCReplayBar::FirstBookmarkMarker;

} // namespace

class ReplayBarAccessibleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isASliderWhoseTextIsTheTime();
    void standsForTheCurrentMarker();
    void setsWhatAUserMaySet();
    void aBarWithoutAPositionHasNoText();
};

void ReplayBarAccessibleTest::isASliderWhoseTextIsTheTime()
{
    TiedBar b;
    QAccessibleInterface& bar = *QAccessible::queryAccessibleInterface(&b.bar);
    QCOMPARE(bar.role(), QAccessible::Slider);
    QCOMPARE(bar.text(QAccessible::Name), QStringLiteral("Replay bar"));
    QCOMPARE(bar.text(QAccessible::Value), QStringLiteral("2023-11-14 23:14:10.000000 CET"));
    QVERIFY(bar.valueInterface());
    QCOMPARE(bar.valueInterface()->minimumValue().toDouble(), b.bar.axisStart());
    QCOMPARE(bar.valueInterface()->maximumValue().toDouble(), b.bar.axisStop());
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
    QCOMPARE(bar.valueInterface()->currentValue().toDouble(), double(TiedBar::begin + 123'456));
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

QTEST_MAIN(ReplayBarAccessibleTest)
#include "tst_replaybaraccessible.moc"
