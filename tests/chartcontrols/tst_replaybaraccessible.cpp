#include "accessibilitylog.h"
#include "microseconds.h"
#include "tiedbar.h"

#include <QAccessible>
#include <QtTest>

namespace {

constexpr int first = VCReplayBar::FirstBookmarkMarker;

/// What is read at a second of the bar.
QString valueAt(int second, const QString& fraction = QStringLiteral("000000"))
{
    const QTime time = QTime(23, 13, 20).addSecs(second);
    return QStringLiteral("value 2023-11-14 %1.%2 CET").arg(time.toString(Qt::ISODate), fraction);
}

/// A bar whose position a user may move, and what is told of it.
struct ToldBar : TiedBar
{
    ToldBar()
    {
        bar.GetMarker(VCReplayBar::PositionMarker)->SetMoveable(true);
        bar.GetMarker(VCReplayBar::PositionMarker)->SetName(QStringLiteral("Position"));
        told.take();
    }

    QAccessibleInterface& interface() { return *QAccessible::queryAccessibleInterface(&bar); }
    QAccessibleActionInterface& actions() { return *interface().actionInterface(); }

    AccessibilityLog told{bar};
};

} // namespace

class ReplayBarAccessibleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isASliderWhoseTextIsTheTime();
    void standsForTheCurrentMarker();
    void setsWhatAUserMaySet();
    void setsNothingThatIsNoNumber_data();
    void setsNothingThatIsNoNumber();
    void aBarWithoutAPositionHasNoText();
    void tellsWhatAKeyMoves_data();
    void tellsWhatAKeyMoves();
    void tellsEachStepOfADrag();
    void tellsWhatAnEditorMoves();
    void tellsOfAnotherMarker();
    void tellsOfANewName();
    void tellsWhatIsReadWhenABookmarkWent();
    void tellsNewBookmarksInOneGo();
    void saysNothingOfABookmarkThatGetsAnotherNumber();
    void saysNothingOfWhatIsNotCurrent();
    void saysNothingWhenNothingMoved();
    void tellsThatItHasTheFocus();
    void offersTheStepsOfTheArrowKeys();
    void takesTheFocusAsAnAction();
    void actsOnlyWhereAUserMay();
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

void ReplayBarAccessibleTest::setsNothingThatIsNoNumber_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("nothing") << QVariant();
    QTest::newRow("a text") << QVariant(QStringLiteral("Tower"));
    QTest::newRow("no number") << QVariant(qQNaN());
    QTest::newRow("at no end") << QVariant(qInf());
    QTest::newRow("at no beginning") << QVariant(-qInf());
}

void ReplayBarAccessibleTest::setsNothingThatIsNoNumber()
{
    QFETCH(const QVariant, value);
    ToldBar b;
    b.interface().valueInterface()->setCurrentValue(value);
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 50);
    QCOMPARE(b.told.take(), QStringList());
}

void ReplayBarAccessibleTest::aBarWithoutAPositionHasNoText()
{
    VCReplayBar bar(nullptr, "bar", true);
    QCOMPARE(QAccessible::queryAccessibleInterface(&bar)->text(QAccessible::Value), QString());
}

void ReplayBarAccessibleTest::tellsWhatAKeyMoves_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("told");
    const Qt::KeyboardModifiers none;
    QTest::newRow("a step") << Qt::Key_Right << none << valueAt(51);
    QTest::newRow("a step back") << Qt::Key_Left << none << valueAt(49);
    QTest::newRow("a tenth of a step") << Qt::Key_Right << Qt::KeyboardModifiers(Qt::ShiftModifier)
                                       << valueAt(50, QStringLiteral("100000"));
    QTest::newRow("a page") << Qt::Key_PageUp << none << valueAt(60);
    QTest::newRow("to the start") << Qt::Key_Home << none << valueAt(0);
    QTest::newRow("to the end") << Qt::Key_End << none << valueAt(100);
}

void ReplayBarAccessibleTest::tellsWhatAKeyMoves()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, told);
    ToldBar b;
    b.key(key, modifiers);
    QCOMPARE(b.told.take(), QStringList{told});
}

void ReplayBarAccessibleTest::tellsEachStepOfADrag()
{
    ToldBar b;
    b.press(50);
    QCOMPARE(b.told.take(), QStringList());
    b.moveTo(55);
    b.moveTo(60);
    QCOMPARE(b.told.take(), QStringList({valueAt(55), valueAt(60)}));
    b.release(60);
    QCOMPARE(b.told.take(), QStringList());
}

void ReplayBarAccessibleTest::tellsWhatAnEditorMoves()
{
    ToldBar b;
    TiedBar::set(b.position.path(), TiedBar::begin + 7 * TiedBar::perPixel);
    QCOMPARE(b.told.take(), QStringList{valueAt(7)});
}

void ReplayBarAccessibleTest::tellsOfAnotherMarker()
{
    ToldBar b;
    b.bar.SetBookmarks(TiedBar::bookmarks({20, 70}), false);
    b.key(Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(b.told.take(), QStringList({QStringLiteral("description b70"), valueAt(70)}));
    b.press(20);
    QCOMPARE(b.told.take(), QStringList({QStringLiteral("description b20"), valueAt(20)}));
}

void ReplayBarAccessibleTest::tellsOfANewName()
{
    ToldBar b;
    b.bar.SetMarkerName(VCReplayBar::PositionMarker, QStringLiteral("Here"));
    QCOMPARE(b.told.take(), QStringList{QStringLiteral("description Here")});
}

void ReplayBarAccessibleTest::tellsWhatIsReadWhenABookmarkWent()
{
    ToldBar b;
    b.bar.AllowCreationOfBookMarks(true);
    b.bar.SetBookmarks(TiedBar::bookmarks({20}), false);
    b.bar.SetCurrentMarker(first);
    b.told.take();
    b.key(Qt::Key_Delete);
    QCOMPARE(b.told.take(), QStringList({QStringLiteral("description Position"), valueAt(50)}));
}

// The markers of bookmarks are taken over one by one: what they stand for in between is nothing to read out.
void ReplayBarAccessibleTest::tellsNewBookmarksInOneGo()
{
    ToldBar b;
    b.bar.SetBookmarks(TiedBar::bookmarks({20, 40, 60}), false);
    b.bar.SetCurrentMarker(first + 1);
    b.told.take();
    b.bar.SetBookmarks(TiedBar::bookmarks({30, 35}), false);
    QCOMPARE(b.told.take(), QStringList({QStringLiteral("description Position"), valueAt(50)}));
    b.bar.SetBookmarks(TiedBar::bookmarks({10, 35}), false);
    QCOMPARE(b.told.take(), QStringList());
}

void ReplayBarAccessibleTest::saysNothingOfABookmarkThatGetsAnotherNumber()
{
    ToldBar b;
    b.bar.SetBookmarks(TiedBar::bookmarks({30, 70}), false);
    b.bar.SetCurrentMarker(first);
    b.told.take();
    b.bar.SetBookmarks(TiedBar::bookmarks({20, 70, 30}), false);
    QCOMPARE(b.told.take(), QStringList());
    QCOMPARE(b.bar.GetCurrentMarker(), first + 2);
}

void ReplayBarAccessibleTest::saysNothingOfWhatIsNotCurrent()
{
    ToldBar b;
    b.bar.SetBookmarks(TiedBar::bookmarks({20}), false);
    TiedBar::set(b.bar.GetValueTreePath(first), TiedBar::begin);
    b.bar.SetMarkerName(first, QStringLiteral("Tower"));
    QCOMPARE(b.told.take(), QStringList());
}

void ReplayBarAccessibleTest::saysNothingWhenNothingMoved()
{
    ToldBar b;
    b.key(Qt::Key_Home);
    b.told.take();
    b.key(Qt::Key_Home);
    b.key(Qt::Key_Left);
    b.bar.SetEnableMarker(VCReplayBar::PositionMarker, false);
    b.key(Qt::Key_End);
    QCOMPARE(b.told.take(), QStringList());
}

void ReplayBarAccessibleTest::tellsThatItHasTheFocus()
{
    ToldBar b;
    b.bar.activateWindow();
    b.bar.setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(b.bar.hasFocus(), 30'000);
    QVERIFY(b.told.take().contains(QStringLiteral("focus")));
    QVERIFY(b.interface().state().focused);
}

void ReplayBarAccessibleTest::offersTheStepsOfTheArrowKeys()
{
    ToldBar b;
    QVERIFY(b.actions().actionNames().contains(QAccessibleActionInterface::increaseAction()));
    QVERIFY(b.actions().actionNames().contains(QAccessibleActionInterface::decreaseAction()));
    b.actions().doAction(QAccessibleActionInterface::increaseAction());
    QCOMPARE(b.told.take(), QStringList{valueAt(51)});
    b.actions().doAction(QAccessibleActionInterface::decreaseAction());
    b.actions().doAction(QAccessibleActionInterface::decreaseAction());
    QCOMPARE(b.told.take(), QStringList({valueAt(50), valueAt(49)}));
    QCOMPARE(b.actions().keyBindingsForAction(QAccessibleActionInterface::increaseAction()),
             QStringList{QStringLiteral("Right")});
    QCOMPARE(b.actions().keyBindingsForAction(QAccessibleActionInterface::decreaseAction()),
             QStringList{QStringLiteral("Left")});
}

void ReplayBarAccessibleTest::takesTheFocusAsAnAction()
{
    ToldBar b;
    b.bar.activateWindow();
    b.bar.clearFocus();
    QVERIFY(b.actions().actionNames().contains(QAccessibleActionInterface::setFocusAction()));
    b.actions().doAction(QAccessibleActionInterface::setFocusAction());
    QTRY_VERIFY_WITH_TIMEOUT(b.bar.hasFocus(), 30'000);
}

void ReplayBarAccessibleTest::actsOnlyWhereAUserMay()
{
    ToldBar b;
    b.bar.SetEnableMarker(VCReplayBar::PositionMarker, false);
    b.actions().doAction(QAccessibleActionInterface::increaseAction());
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 50);
    b.bar.SetEnableMarker(VCReplayBar::PositionMarker, true);
    b.bar.setEnabled(false);
    QVERIFY(!b.actions().actionNames().contains(QAccessibleActionInterface::increaseAction()));
    b.actions().doAction(QAccessibleActionInterface::increaseAction());
    b.interface().valueInterface()->setCurrentValue(double(TiedBar::begin));
    QCOMPARE(b.secondOf(VCReplayBar::PositionMarker), 50);
    QCOMPARE(b.told.take(), QStringList());
}

QTEST_MAIN(ReplayBarAccessibleTest)
#include "tst_replaybaraccessible.moc"
