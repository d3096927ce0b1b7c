#include <zelkoguibase/editrecord/positionwidget.h>

#include "iconpicture.h"
#include "patience.h"
#include "positionhands.h"
#include "testbookmarks.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QLabel>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;
using PositionWidget = ZelkoGUI::CopyRecordWidget::PositionWidget;
using Section = QDateTimeEdit::Section;

namespace {

constexpr quint64 second = 1'000'000;
constexpr quint64 recordEnd = recordBegin + 90 * second;

} // namespace

/// One end of a range of a record, as its user chooses it.
class PositionWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_bar = std::make_unique<ZelkoGUI::ReplayBarWidget>(nullptr);
        open(true);
    }
    void cleanup()
    {
        m_hands.reset();
        m_widget.reset();
        m_bar.reset();
    }

    void itBeginsEmpty();
    void eachEndHasItsTexts_data();
    void eachEndHasItsTexts();
    void itsPartsStandInARow();
    void withoutABarThereIsNoButtonForItsPosition();
    void aRangeTakesTheEndToItsOwn_data();
    void aRangeTakesTheEndToItsOwn();
    void theSameRangeIsToldAgain();
    void theDateIsShownWhereItMayChange_data();
    void theDateIsShownWhereItMayChange();
    void aTimeIsTyped();
    void aTimeStaysWithinTheRange();
    void aClickTakesTheEndBack_data();
    void aClickTakesTheEndBack();
    void aClickTakesThePositionOfTheBar();
    void thePositionOfTheBarCanBeTaken_data();
    void thePositionOfTheBarCanBeTaken();
    void bookmarksAreNumbered();
    void aBookmarkIsChosen();
    void ofTwoBookmarksAtATimeTheFirstMatches();
    void theSecondOfTwoBookmarksCanBeChosen();
    void aTypedTimeFindsItsBookmark();
    void aBookmarkOutsideOfTheRangeIsNotTaken();
    void aSilentChangeShowsEverywhere();
    void aChangeIsToldBetweenTheBookmarksAndTheButtons();
    void anOverlongBookmarkDoesNotWidenTheWindow();

private:
    void open(bool isStart, bool hasBar = true)
    {
        m_hands.reset();
        m_widget = std::make_unique<PositionWidget>(nullptr, isStart, hasBar ? m_bar.get() : nullptr);
        m_hands = std::make_unique<PositionHands>(*m_widget);
        connect(m_widget.get(), &PositionWidget::si_valueChanged, this,
                [this](quint64 value) { m_told << static_cast<qint64>(value - recordBegin) / 1000; });
        m_widget->setRange(recordBegin, recordEnd, true);
        m_widget->show();
        m_widget->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_widget.get(), patience));
        m_told.clear();
    }
    void openEmpty(bool isStart)
    {
        m_widget = std::make_unique<PositionWidget>(nullptr, isStart, nullptr);
        m_hands = std::make_unique<PositionHands>(*m_widget);
    }

    /// Milliseconds behind the begin of the record.
    QList<qint64> told() { return std::exchange(m_told, {}); }
    qint64 value() const { return static_cast<qint64>(m_widget->value() - recordBegin) / 1000; }
    static PositionWidget::Bookmark at(int seconds, const QString& text)
    {
        return {recordBegin + static_cast<quint64>(seconds) * second, text};
    }

    std::unique_ptr<ZelkoGUI::ReplayBarWidget> m_bar;
    std::unique_ptr<PositionWidget> m_widget;
    std::unique_ptr<PositionHands> m_hands;
    QList<qint64> m_told;
};

void PositionWidgetTest::itBeginsEmpty()
{
    openEmpty(true);
    QVERIFY(!m_widget->isEnabled());
    QCOMPARE(m_widget->value(), 0);
    QVERIFY(m_hands->combo.isHidden());
    QVERIFY(!m_hands->reset()->isEnabled());
}

void PositionWidgetTest::eachEndHasItsTexts_data()
{
    QTest::addColumn<bool>("isStart");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("reset");
    QTest::addColumn<QString>("icon");
    QTest::newRow("start") << true << u"Start:"_s << u"reset to record start position"_s
                           << u":/Zelko/CopyRecord/ResetToStart"_s;
    QTest::newRow("stop") << false << u"Stop:"_s << u"reset to record stop position"_s
                          << u":/Zelko/CopyRecord/ResetToEnd"_s;
}

void PositionWidgetTest::eachEndHasItsTexts()
{
    QFETCH(const bool, isStart);
    open(isStart);
    QTEST(m_widget->findChild<QLabel*>()->text(), "label");
    QCOMPARE(m_widget->findChild<QLabel*>()->buddy(), &m_hands->edit);
    QTEST(m_hands->reset()->toolTip(), "reset");
    QCOMPARE(m_hands->reset()->accessibleName(), m_hands->reset()->toolTip());
    QCOMPARE(m_hands->reset()->objectName(), isStart ? u"ResetToStartButton"_s : u"ResetToEndButton"_s);
    QCOMPARE(m_hands->current()->toolTip(), u"set to current record position"_s);
    QCOMPARE(m_hands->combo.toolTip(), u"select a bookmark position"_s);
    QCOMPARE(m_hands->combo.sizeAdjustPolicy(), QComboBox::AdjustToContents);
    for (const QToolButton* const button : {m_hands->reset(), m_hands->current()}) {
        QVERIFY(button->focusPolicy() & Qt::TabFocus);
    }
    QFETCH(const QString, icon);
    QVERIFY(isOf(m_hands->reset()->icon(), icon));
    QVERIFY(isOf(m_hands->current()->icon(), u":/Zelko/CopyRecord/SetCurrentPos.svg"_s));
}

void PositionWidgetTest::itsPartsStandInARow()
{
    m_widget->setBookmarks({at(10, u"a"_s)});
    m_widget->resize(1000, m_widget->height());
    const QList<const QWidget*> parts{m_widget->findChild<QLabel*>(), &m_hands->edit, m_hands->current(),
                                      m_hands->reset(), &m_hands->combo};
    for (int i = 1; i < parts.size(); ++i) {
        QVERIFY(parts[i - 1]->geometry().right() < parts[i]->geometry().left());
    }
    QVERIFY(m_hands->combo.width() > 500); // what there is room for
}

void PositionWidgetTest::withoutABarThereIsNoButtonForItsPosition()
{
    open(true, false);
    QVERIFY(!m_hands->current());
    QVERIFY(m_hands->reset());
}

void PositionWidgetTest::aRangeTakesTheEndToItsOwn_data()
{
    QTest::addColumn<bool>("isStart");
    QTest::addColumn<qint64>("value");
    QTest::newRow("start") << true << qint64{0};
    QTest::newRow("stop") << false << qint64{90'000};
}

void PositionWidgetTest::aRangeTakesTheEndToItsOwn()
{
    QFETCH(const bool, isStart);
    open(isStart);
    m_hands->press(Section::SecondSection, isStart ? Qt::Key_Up : Qt::Key_Down, 5);
    told();
    m_widget->setRange(recordBegin, recordEnd, false);
    QTEST(value(), "value");
    QCOMPARE(told(), QList<qint64>{value()});
    QVERIFY(!m_widget->isEnabled());
    QVERIFY(!m_hands->reset()->isEnabled());
}

void PositionWidgetTest::theSameRangeIsToldAgain()
{
    m_widget->setRange(recordBegin, recordEnd, true);
    QCOMPARE(told(), QList<qint64>{0});
}

void PositionWidgetTest::theDateIsShownWhereItMayChange_data()
{
    QTest::addColumn<quint64>("stop");
    QTest::addColumn<QString>("text");
    QTest::newRow("a moment") << recordBegin << u"23:13:20:000"_s;
    QTest::newRow("within a day") << recordEnd << u"23:13:20:000"_s;
    QTest::newRow("over midnight") << recordBegin + 3600 * second << u"2023-11-14 23:13:20:000"_s;
    QTest::newRow("over a year") << recordBegin + 370 * 24 * 3600 * second << u"2023-11-14 23:13:20:000"_s;
}

// Also after a record of another kind, and of another day.
void PositionWidgetTest::theDateIsShownWhereItMayChange()
{
    QFETCH(const quint64, stop);
    for (const quint64 otherStop : {recordBegin - 9 * second, recordBegin + 24 * 3600 * second}) {
        m_widget->setRange(recordBegin - 100 * 24 * 3600 * second, otherStop, true);
        m_widget->setRange(recordBegin - 10 * second, recordBegin - 9 * second, true);
        m_widget->setRange(recordBegin, stop, true);
        QTEST(m_hands->edit.text(), "text");
        QCOMPARE(m_hands->edit.minimumDateTime().toMSecsSinceEpoch(), qint64{recordBegin / 1000});
        QCOMPARE(m_hands->edit.maximumDateTime().toMSecsSinceEpoch(), static_cast<qint64>(stop / 1000));
    }
}

void PositionWidgetTest::aTimeIsTyped()
{
    m_hands->type(Section::SecondSection, u"41"_s);
    QCOMPARE(value(), 21'000);
    QCOMPARE(told().last(), 21'000);
    m_hands->press(Section::MSecSection, Qt::Key_Up, 3);
    QCOMPARE(told(), QList<qint64>({21'001, 21'002, 21'003}));
    QVERIFY(m_hands->reset()->isEnabled());
}

void PositionWidgetTest::aTimeStaysWithinTheRange()
{
    m_hands->press(Section::SecondSection, Qt::Key_Down, 3);
    QCOMPARE(value(), 0);
    m_hands->press(Section::HourSection, Qt::Key_Up, 3);
    QCOMPARE(value(), 0);
}

void PositionWidgetTest::aClickTakesTheEndBack_data()
{
    QTest::addColumn<bool>("isStart");
    QTest::newRow("start") << true;
    QTest::newRow("stop") << false;
}

void PositionWidgetTest::aClickTakesTheEndBack()
{
    QFETCH(const bool, isStart);
    open(isStart);
    const qint64 end = isStart ? 0 : 90'000;
    QVERIFY(!m_hands->reset()->isEnabled());
    m_hands->press(Section::SecondSection, isStart ? Qt::Key_Up : Qt::Key_Down);
    QVERIFY(m_hands->reset()->isEnabled());
    told();
    PositionHands::click(m_hands->reset());
    QCOMPARE(told(), QList<qint64>{end});
    QVERIFY(!m_hands->reset()->isEnabled());
}

void PositionWidgetTest::aClickTakesThePositionOfTheBar()
{
    Q_EMIT m_bar->si_currentPosChanged(recordBegin + 30 * second + 999);
    QCOMPARE(told(), QList<qint64>());
    QVERIFY(m_hands->current()->isEnabled());
    PositionHands::click(m_hands->current());
    QCOMPARE(told(), QList<qint64>{30'000});
    QVERIFY(!m_hands->current()->isEnabled());
}

void PositionWidgetTest::thePositionOfTheBarCanBeTaken_data()
{
    QTest::addColumn<qint64>("position"); // microseconds behind the begin of the record
    QTest::addColumn<bool>("canBeTaken");
    QTest::newRow("nowhere") << -static_cast<qint64>(recordBegin) << false;
    QTest::newRow("before the record") << qint64{-1} << false;
    QTest::newRow("the value") << qint64{0} << false;
    QTest::newRow("in the millisecond of the value") << qint64{999} << false;
    QTest::newRow("a millisecond later") << qint64{1'000} << true;
    QTest::newRow("the end") << qint64{90'000'000} << true;
    QTest::newRow("in the millisecond of the end") << qint64{90'000'999} << true;
    QTest::newRow("behind the record") << qint64{90'001'000} << false;
}

void PositionWidgetTest::thePositionOfTheBarCanBeTaken()
{
    QFETCH(const qint64, position);
    Q_EMIT m_bar->si_currentPosChanged(recordBegin + static_cast<quint64>(position));
    QTEST(m_hands->current()->isEnabled(), "canBeTaken");
}

void PositionWidgetTest::bookmarksAreNumbered()
{
    m_widget->setBookmarks({at(10, u"<b>a</b>"_s), at(20, u"%1 of %2"_s), at(30, QString())});
    QVERIFY(m_hands->combo.isVisible());
    QCOMPARE(m_hands->combo.count(), 3);
    QCOMPARE(m_hands->combo.itemText(0), u"1: <b>a</b>"_s);
    QCOMPARE(m_hands->combo.itemText(1), u"2: %1 of %2"_s);
    QCOMPARE(m_hands->combo.itemText(2), u"3: "_s);
    QCOMPARE(m_hands->combo.itemData(1).toDateTime().toMSecsSinceEpoch(), qint64{recordBegin / 1000 + 20'000});
    QCOMPARE(m_hands->combo.currentIndex(), -1);
    m_widget->setBookmarks({});
    QVERIFY(!m_hands->combo.isVisible());
    QCOMPARE(told(), QList<qint64>());
}

void PositionWidgetTest::aBookmarkIsChosen()
{
    m_widget->setBookmarks({at(10, u"a"_s), at(20, u"b"_s)});
    m_hands->choose(1);
    QCOMPARE(value(), 20'000);
    QCOMPARE(told(), QList<qint64>({10'000, 20'000}));
    QCOMPARE(m_hands->combo.currentIndex(), 1);
}

void PositionWidgetTest::ofTwoBookmarksAtATimeTheFirstMatches()
{
    m_widget->setBookmarks({at(0, u"a"_s), at(0, u"b"_s)});
    QCOMPARE(m_hands->combo.count(), 2);
    QCOMPARE(m_hands->combo.currentIndex(), 0);
}

void PositionWidgetTest::theSecondOfTwoBookmarksCanBeChosen()
{
    m_widget->setBookmarks({at(10, u"a"_s), at(10, u"b"_s)});
    m_hands->choose(1);
    QCOMPARE(m_hands->combo.currentIndex(), 1);
    QCOMPARE(told(), QList<qint64>{10'000});
}

void PositionWidgetTest::aTypedTimeFindsItsBookmark()
{
    m_widget->setBookmarks({at(1, u"a"_s), at(2, u"b"_s)});
    m_hands->press(Section::SecondSection, Qt::Key_Up, 2);
    QCOMPARE(told(), QList<qint64>({1'000, 2'000}));
    QCOMPARE(m_hands->combo.currentIndex(), 1);
    m_hands->press(Section::MSecSection, Qt::Key_Up);
    QCOMPARE(m_hands->combo.currentIndex(), -1);
    QCOMPARE(told(), QList<qint64>{2'001});
}

void PositionWidgetTest::aBookmarkOutsideOfTheRangeIsNotTaken()
{
    m_widget->setBookmarks({at(-5, u"early"_s), at(10, u"a"_s)});
    m_hands->choose(0);
    QCOMPARE(value(), 0);
    QCOMPARE(m_hands->combo.currentIndex(), -1);
}

void PositionWidgetTest::aSilentChangeShowsEverywhere()
{
    m_widget->setBookmarks({at(10, u"a"_s)});
    Q_EMIT m_bar->si_currentPosChanged(recordBegin + 10 * second);
    m_widget->setValueSilently(recordBegin + 10 * second);
    QCOMPARE(told(), QList<qint64>());
    QCOMPARE(value(), 10'000);
    QCOMPARE(m_hands->edit.text(), u"23:13:30:000"_s);
    QCOMPARE(m_hands->combo.currentIndex(), 0);
    QVERIFY(!m_hands->current()->isEnabled());
    QVERIFY(m_hands->reset()->isEnabled());
}

// Whoever hears of the value finds the bookmarks as they will be and the buttons as they were.
void PositionWidgetTest::aChangeIsToldBetweenTheBookmarksAndTheButtons()
{
    m_widget->setBookmarks({at(1, u"a"_s)});
    QStringList seen;
    connect(m_widget.get(), &PositionWidget::si_valueChanged, this, [&] {
        seen << m_hands->combo.currentText() + (m_hands->reset()->isEnabled() ? u" with button"_s : u" without"_s);
    });
    m_hands->press(Section::SecondSection, Qt::Key_Up);
    QCOMPARE(seen, QStringList{u"1: a without"_s});
    QVERIFY(m_hands->reset()->isEnabled());
    PositionHands::click(m_hands->reset());
    QCOMPARE(seen.last(), u" with button"_s);
    QVERIFY(!m_hands->reset()->isEnabled());
}

void PositionWidgetTest::anOverlongBookmarkDoesNotWidenTheWindow()
{
    m_widget->setBookmarks({at(10, u"a"_s)});
    const int before = m_widget->minimumSizeHint().width();
    m_widget->setBookmarks({at(10, QString(10'000, u'x'))});
    QCOMPARE(m_widget->minimumSizeHint().width(), before);
}

QTEST_MAIN(PositionWidgetTest)
#include "tst_positionwidget.moc"
