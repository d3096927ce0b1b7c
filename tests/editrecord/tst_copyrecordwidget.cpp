#include <zelkoguibase/editrecord/copyrecordwidget.h>

#include "bookmarksite.h"
#include "copyablerecord.h"
#include "iconpicture.h"
#include "patience.h"
#include "positionhands.h"
#include "toldrecords.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using Section = QDateTimeEdit::Section;
using ZelkoGUI::CopyRecordWidget;

namespace {

constexpr quint64 second = 1'000'000;

} // namespace

/// A part of a record is chosen, and asked for as a record of its own.
class CopyRecordWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_bookmarks.emplace();
        m_records.emplace();
        m_records->store(makeCopyable());
        open(true);
    }
    void cleanup()
    {
        m_start.reset();
        m_stop.reset();
        m_widget.reset();
        m_records.reset();
        m_bookmarks.reset();
    }

    void itBeginsEmpty();
    void itsPartsStandInTheirPlaces();
    void theWarningAndSaveHaveTheirTexts();
    void aRecordIsShownWhole();
    void aRecordOverMidnightIsShownWithItsDates();
    void theCopyIsNamedAfterTheRecord_data();
    void theCopyIsNamedAfterTheRecord();
    void aRecordThatCannotBeCutIsMarked_data();
    void aRecordThatCannotBeCutIsMarked();
    void onlyARecordAtRestIsSaved_data();
    void onlyARecordAtRestIsSaved();
    void anEmptyNameIsSavedIfAllowed_data();
    void anEmptyNameIsSavedIfAllowed();
    void aPartIsChosen();
    void aStartAtTheStopSendsItToTheEnd_data();
    void aStartAtTheStopSendsItToTheEnd();
    void aStopAtTheStartSendsItToTheBegin_data();
    void aStopAtTheStartSendsItToTheBegin();
    void equalPositionsAreNoRange();
    void thePartIsAskedForByPositions();
    void aStartBelowTheFirstMicrosecondIsRaised();
    void aChangeTakesTheWholeRecordAgain();
    void aChangeTellsTheRangeOnce();
    void aChangeOfAnotherRecordIsPassedOver();
    void aDeletedRecordLeavesNothing();
    void allRecordsMayGoAndComeBack();
    void theModelMayGo();
    void anotherModelIsFollowed();
    void withABarTheRangeIsShownThere();
    void bookmarksOfTheModelCanBeChosen();
    void bookmarksFollowTheModel();
    void aStartChosenBehindTheStopSendsItToTheEnd();
    void aStopChosenBeforeTheStartSendsItToTheBegin();
    void itNeedsNoBookmarks();
    void itWorksWithoutAMouse();

private:
    void open(bool allowEmptyName, ZelkoGUI::ReplayBarWidget* bar = nullptr)
    {
        open(std::make_unique<CopyRecordWidget>(bar, &m_bookmarks->model, allowEmptyName));
    }
    void open(std::unique_ptr<CopyRecordWidget> widget)
    {
        m_widget = std::move(widget);
        m_start.emplace(*m_widget->findChild<PositionHands::Widget*>(u"StartPosition"_s));
        m_stop.emplace(*m_widget->findChild<PositionHands::Widget*>(u"StopPosition"_s));
        const auto offset = [](quint64 time) {
            return QString::number(static_cast<qint64>(time - recordBegin) / 1000);
        };
        connect(m_widget.get(), &CopyRecordWidget::si_setRange, this,
                [=, this](quint64 from, quint64 to) { m_told << u"range %1-%2"_s.arg(offset(from), offset(to)); });
        connect(m_widget.get(), &CopyRecordWidget::si_resetRange, this, [this] { m_told << u"no range"_s; });
        connect(m_widget.get(), &CopyRecordWidget::si_copyRecord, this,
                [this](const QString& id, quint64 from, quint64 to, const QString& name) {
                    m_told << u"copy %1 %2-%3 %4"_s.arg(id).arg(from).arg(to).arg(name);
                });
        m_widget->show();
        m_widget->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_widget.get(), patience));
        m_told.clear();
    }
    void show(const QString& id = u"R"_s)
    {
        m_widget->setRecord(id, &*m_records);
        m_told.clear();
    }
    QStringList told() { return std::exchange(m_told, {}); }
    QLabel& label(const char* name) const { return *m_widget->findChild<QLabel*>(QLatin1String(name)); }
    QString info() const { return label("RecordInfoLabel").text(); }
    QString duration() const { return label("DurationInfoLabel").text(); }
    bool isMarked() const { return label("RecordWarningLabel").isVisible(); }
    QLineEdit& name() const { return *m_widget->findChild<QLineEdit*>(u"RecordNameEdit"_s); }
    QToolButton& save() const { return *m_widget->findChild<QToolButton*>(u"SaveButton"_s); }
    void verifyEmpty() const
    {
        QCOMPARE(info(), u"n/a"_s);
        QCOMPARE(label("RecordInfoLabel").toolTip(), QString());
        QCOMPARE(duration(), u"n/a"_s);
        QCOMPARE(name().text(), u"Copy"_s);
        QVERIFY(!name().isEnabled());
        QVERIFY(!isMarked());
        QVERIFY(!m_start->widget.isEnabled());
        QVERIFY(!m_stop->widget.isEnabled());
        QVERIFY(!save().isEnabled());
    }

    std::optional<BookmarkSite> m_bookmarks;
    std::optional<ToldRecords> m_records;
    std::unique_ptr<CopyRecordWidget> m_widget;
    std::optional<PositionHands> m_start;
    std::optional<PositionHands> m_stop;
    QStringList m_told;
};

void CopyRecordWidgetTest::itBeginsEmpty()
{
    verifyEmpty();
    QCOMPARE(m_widget->objectName(), u"CopyRecordWidget"_s);
    QVERIFY(!m_start->current());
    m_widget->setRecord(u"S"_s, &*m_records);
    verifyEmpty();
    m_widget->setRecord(u"R"_s, nullptr);
    verifyEmpty();
}

void CopyRecordWidgetTest::itsPartsStandInTheirPlaces()
{
    show();
    QCOMPARE(m_start->reset()->objectName(), u"ResetToStartButton"_s);
    QCOMPARE(m_stop->reset()->objectName(), u"ResetToEndButton"_s);
    QVERIFY(m_start->widget.geometry().bottom() < m_stop->widget.geometry().top());
    QVERIFY(m_start->widget.geometry().right() < name().geometry().left());
    auto* const grid = m_widget->findChild<QGridLayout*>();
    const auto textAt = [grid](int row) {
        return qobject_cast<QLabel*>(grid->itemAtPosition(row, 0)->widget())->text();
    };
    QCOMPARE(textAt(0), u"Record Range:"_s);
    QCOMPARE(textAt(1), u"Selected Range:"_s);
    QCOMPARE(textAt(2), u"Record Name:"_s);
    const auto nameAt = [grid](int row, int column) {
        return grid->itemAtPosition(row, column)->widget()->objectName();
    };
    QCOMPARE(nameAt(0, 2), u"RecordInfoLabel"_s);
    QCOMPARE(nameAt(0, 3), u"RecordWarningLabel"_s);
    QCOMPARE(nameAt(1, 3), u"DurationInfoLabel"_s);
    QCOMPARE(nameAt(2, 1), u"RecordNameEdit"_s);
    QCOMPARE(nameAt(2, 2), u"SaveButton"_s);
}

void CopyRecordWidgetTest::theWarningAndSaveHaveTheirTexts()
{
    QCOMPARE(
        label("RecordWarningLabel").toolTip(),
        u"the current record has invalid record parameter (offsets,timestamps) - saving a new record is not possible"_s);
    const int side = m_widget->style()->pixelMetric(QStyle::PM_SmallIconSize);
    const QPixmap sign = m_widget->style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(side);
    QVERIFY(!sign.isNull());
    QCOMPARE(label("RecordWarningLabel").pixmap(Qt::ReturnByValue).toImage(), sign.toImage());
    QCOMPARE(save().toolTip(), u"Save selected range as new record"_s);
    QCOMPARE(save().accessibleName(), save().toolTip());
    QVERIFY(isOf(save().icon(), u":/Zelko/CopyRecord/Save.svg"_s));
}

void CopyRecordWidgetTest::aRecordIsShownWhole()
{
    m_widget->setRecord(u"R"_s, &*m_records);
    QCOMPARE(told(), QStringList{u"range 0-90000"_s});
    QCOMPARE(info(), u"23:13:20:000 ... 23:14:50:000"_s);
    QCOMPARE(label("RecordInfoLabel").toolTip(), u" duration: 00:01:30.000"_s);
    QCOMPARE(duration(), u"00:01:30.000"_s);
    QCOMPARE(name().text(), u"name of R_Copy"_s);
    QVERIFY(name().isEnabled());
    QVERIFY(!isMarked());
    QVERIFY(save().isEnabled());
}

void CopyRecordWidgetTest::aRecordOverMidnightIsShownWithItsDates()
{
    const auto record = makeCopyable();
    record->SetStopTime(recordBegin + 3'600 * second);
    m_records->store(record);
    show();
    QCOMPARE(info(), u"2023-11-14 23:13:20:000 ... 2023-11-15 00:13:20:000"_s);
    QCOMPARE(m_stop->edit.text(), u"2023-11-15 00:13:20:000"_s);
}

void CopyRecordWidgetTest::theCopyIsNamedAfterTheRecord_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("copy");
    QTest::newRow("a name") << u"S"_s << u"Tower"_s << u"Tower_Copy"_s;
    QTest::newRow("no name") << u"S"_s << QString() << u"S_Copy"_s;
    QTest::newRow("neither name nor ID") << QString() << QString() << u"Copy"_s;
}

void CopyRecordWidgetTest::theCopyIsNamedAfterTheRecord()
{
    QFETCH(const QString, id);
    const auto record = makeCopyable(id);
    QFETCH(const QString, name);
    record->SetRecordName(name);
    m_records->store(record);
    show(id);
    QTEST(this->name().text(), "copy");
    QCOMPARE(save().isEnabled(), !id.isEmpty());
}

void CopyRecordWidgetTest::aRecordThatCannotBeCutIsMarked_data()
{
    QTest::addColumn<quint64>("stopTime"); // seconds behind the begin
    QTest::addColumn<quint64>("stopOffset");
    QTest::addColumn<bool>("canBeCut");
    QTest::newRow("a record as it should be") << quint64{90} << quint64{901'000} << true;
    QTest::newRow("no time") << quint64{0} << quint64{901'000} << false;
    QTest::newRow("no positions") << quint64{90} << quint64{1'000} << false;
    QTest::newRow("falling positions") << quint64{90} << quint64{0} << false;
}

void CopyRecordWidgetTest::aRecordThatCannotBeCutIsMarked()
{
    QFETCH(const quint64, stopTime);
    QFETCH(const quint64, stopOffset);
    QFETCH(const bool, canBeCut);
    const auto record = makeCopyable();
    record->SetStopTime(recordBegin + stopTime * second);
    record->SetStopPosition(stopOffset);
    m_records->store(record);
    show();
    QCOMPARE(isMarked(), !canBeCut);
    QCOMPARE(save().isEnabled(), canBeCut);
    m_widget->resetRecord();
    QVERIFY(!isMarked());
}

void CopyRecordWidgetTest::onlyARecordAtRestIsSaved_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("isSaved");
    for (int status = 0; status <= 8; ++status) {
        QTest::addRow("status %d", status) << status << (status == 5);
    }
}

void CopyRecordWidgetTest::onlyARecordAtRestIsSaved()
{
    QFETCH(const int, status);
    const auto record = makeCopyable();
    record->SetRecordStatus(static_cast<ZELKO_XML::ZELKO_RecordData::RecordStatus>(status));
    m_records->store(record);
    show();
    QTEST(save().isEnabled(), "isSaved");
    QVERIFY(!isMarked());
}

void CopyRecordWidgetTest::anEmptyNameIsSavedIfAllowed_data()
{
    QTest::addColumn<bool>("allowed");
    QTest::newRow("allowed") << true;
    QTest::newRow("not allowed") << false;
}

void CopyRecordWidgetTest::anEmptyNameIsSavedIfAllowed()
{
    QFETCH(const bool, allowed);
    open(allowed);
    show();
    QVERIFY(save().isEnabled());
    name().selectAll();
    QTest::keyClick(&name(), Qt::Key_Delete);
    QCOMPARE(save().isEnabled(), allowed);
    QTest::keyClicks(&name(), u"x"_s);
    QVERIFY(save().isEnabled());
}

void CopyRecordWidgetTest::aPartIsChosen()
{
    show();
    m_start->press(Section::SecondSection, Qt::Key_Up, 2);
    QCOMPARE(told(), QStringList({u"range 1000-90000"_s, u"range 2000-90000"_s}));
    m_stop->press(Section::SecondSection, Qt::Key_Down);
    m_stop->press(Section::MSecSection, Qt::Key_Up);
    QCOMPARE(told(), QStringList({u"range 2000-89000"_s, u"range 2000-89001"_s}));
    QCOMPARE(duration(), u"00:01:27.001"_s);
    QVERIFY(save().isEnabled());
}

void CopyRecordWidgetTest::aStartAtTheStopSendsItToTheEnd_data()
{
    QTest::addColumn<int>("steps");
    QTest::newRow("at the stop") << 20;
    QTest::newRow("past it") << 21;
}

void CopyRecordWidgetTest::aStartAtTheStopSendsItToTheEnd()
{
    QFETCH(const int, steps);
    show();
    m_stop->widget.setValueSilently(recordBegin + 20 * second);
    m_start->press(Section::SecondSection, Qt::Key_Up, 19);
    QCOMPARE(told().last(), u"range 19000-20000"_s);
    m_start->type(Section::SecondSection, QString::number(20 + steps));
    QCOMPARE(told().last(), u"range %1-90000"_s.arg(steps * 1000));
    QCOMPARE(m_stop->edit.text(), u"23:14:50:000"_s);
    QVERIFY(!m_stop->reset()->isEnabled());
}

void CopyRecordWidgetTest::aStopAtTheStartSendsItToTheBegin_data()
{
    QTest::addColumn<int>("steps");
    QTest::newRow("at the start") << 5;
    QTest::newRow("before it") << 6;
}

void CopyRecordWidgetTest::aStopAtTheStartSendsItToTheBegin()
{
    QFETCH(const int, steps);
    show();
    m_start->widget.setValueSilently(recordBegin + 85 * second);
    m_stop->press(Section::SecondSection, Qt::Key_Down, 4);
    QCOMPARE(told().last(), u"range 85000-86000"_s);
    m_stop->press(Section::SecondSection, Qt::Key_Down, steps - 4);
    QCOMPARE(told().last(), u"range 0-%1"_s.arg(90'000 - steps * 1000));
    QVERIFY(!m_start->reset()->isEnabled());
}

void CopyRecordWidgetTest::equalPositionsAreNoRange()
{
    show();
    m_start->press(Section::MinuteSection, Qt::Key_Up);
    told();
    m_start->type(Section::SecondSection, u"50"_s);
    QCOMPARE(m_start->edit.text(), u"23:14:50:000"_s);
    QCOMPARE(told().last(), u"no range"_s);
    QCOMPARE(duration(), u"n/a"_s);
    QVERIFY(!save().isEnabled());
    m_start->press(Section::SecondSection, Qt::Key_Down);
    QCOMPARE(told(), QStringList{u"range 89000-90000"_s});
    QVERIFY(save().isEnabled());
}

void CopyRecordWidgetTest::thePartIsAskedForByPositions()
{
    show();
    PositionHands::click(&save());
    QCOMPARE(told(), QStringList{u"copy R 1000-901000 name of R_Copy"_s});
    m_start->press(Section::SecondSection, Qt::Key_Up, 9);
    m_stop->press(Section::SecondSection, Qt::Key_Down, 30);
    name().selectAll();
    QTest::keyClicks(&name(), u"Burst"_s);
    told();
    PositionHands::click(&save());
    QCOMPARE(told(), QStringList{u"copy R 91000-601000 Burst"_s});
}

void CopyRecordWidgetTest::aStartBelowTheFirstMicrosecondIsRaised()
{
    const auto record = makeCopyable();
    record->SetStartTime(recordBegin + 999);
    record->SetStopTime(recordBegin + 10'999);
    m_records->store(record);
    show();
    PositionHands::click(&save());
    QCOMPARE(told(), QStringList{u"copy R 1000-811090 name of R_Copy"_s}); // the stop is that of its millisecond
}

void CopyRecordWidgetTest::aChangeTakesTheWholeRecordAgain()
{
    show();
    m_start->press(Section::SecondSection, Qt::Key_Up, 9);
    QTest::keyClicks(&name(), u"mine"_s);
    const auto record = makeCopyable();
    record->SetRecordName(u"renamed"_s);
    m_records->store(record);
    QCOMPARE(told().last(), u"range 0-90000"_s);
    QCOMPARE(name().text(), u"renamed_Copy"_s);
    QVERIFY(!m_start->reset()->isEnabled());
}

// Also where the range is the same, since all else may be another.
void CopyRecordWidgetTest::aChangeTellsTheRangeOnce()
{
    show();
    const auto record = makeCopyable();
    record->SetRecordStatus(ZELKO_XML::ZELKO_RecordData::RecordStatus::Replaying);
    m_records->store(record);
    QCOMPARE(told(), QStringList{u"range 0-90000"_s});
    QVERIFY(!save().isEnabled());
    m_records->store(makeCopyable());
    QVERIFY(save().isEnabled());
}

void CopyRecordWidgetTest::aChangeOfAnotherRecordIsPassedOver()
{
    show();
    m_records->store(makeCopyable(u"S"_s));
    m_records->drop(u"S"_s);
    QCOMPARE(told(), QStringList());
}

void CopyRecordWidgetTest::aDeletedRecordLeavesNothing()
{
    show();
    m_records->drop(u"R"_s);
    QCOMPARE(told(), QStringList{u"no range"_s});
    verifyEmpty();
    m_records->store(makeCopyable());
    verifyEmpty();
}

void CopyRecordWidgetTest::allRecordsMayGoAndComeBack()
{
    show();
    m_records->replaceAll({});
    verifyEmpty();
    m_records->replaceAll({u"R"_s});
    QCOMPARE(info(), u"23:13:20:000 ... 23:14:50:000"_s);
    QVERIFY(isMarked()); // this one has no positions
}

void CopyRecordWidgetTest::theModelMayGo()
{
    show();
    m_records.reset();
    verifyEmpty();
}

void CopyRecordWidgetTest::anotherModelIsFollowed()
{
    ToldRecords others;
    others.store(makeCopyable(u"S"_s));
    show();
    m_widget->setRecord(u"S"_s, &others);
    m_records.reset();
    QCOMPARE(name().text(), u"name of S_Copy"_s);
    others.drop(u"S"_s);
    verifyEmpty();
}

void CopyRecordWidgetTest::withABarTheRangeIsShownThere()
{
    ZelkoGUI::ReplayBarWidget bar(nullptr);
    open(true, &bar);
    QVERIFY(m_start->current());
    show();
    Q_EMIT bar.si_currentPosChanged(recordBegin + 30 * second);
    PositionHands::click(m_start->current());
    Q_EMIT bar.si_currentPosChanged(recordBegin + 60 * second);
    PositionHands::click(m_stop->current());
    QCOMPARE(told(), QStringList({u"range 30000-90000"_s, u"range 30000-60000"_s}));
}

void CopyRecordWidgetTest::bookmarksOfTheModelCanBeChosen()
{
    m_bookmarks->show({bookmarkAt(20, u"b"_s), bookmarkAt(10, u"z"_s), bookmarkAt(10, u"a"_s)});
    show();
    for (const PositionHands* const end : {&*m_start, &*m_stop}) {
        QCOMPARE(end->combo.count(), 3);
        QCOMPARE(end->combo.itemText(0), u"1: a"_s);
        QCOMPARE(end->combo.itemText(1), u"2: z"_s);
        QCOMPARE(end->combo.itemText(2), u"3: b"_s);
    }
    m_stop->choose(2);
    m_start->choose(0);
    QCOMPARE(told().last(), u"range 10000-20000"_s);
}

void CopyRecordWidgetTest::bookmarksFollowTheModel()
{
    m_bookmarks->show({bookmarkAt(10, u"a"_s)});
    m_bookmarks->model.appendEntry(bookmarkAt(20, u"b"_s));
    QCOMPARE(m_start->combo.count(), 2);
    m_bookmarks->model.changeEntry(1, bookmarkAt(20, u"c"_s));
    QCOMPARE(m_start->combo.itemText(1), u"2: c"_s);
    m_bookmarks->model.removeEntry(0);
    QCOMPARE(m_stop->combo.itemText(0), u"1: c"_s);
    m_bookmarks->model.clear();
    QVERIFY(!m_stop->combo.isVisible());
    m_bookmarks->model.setEntries({bookmarkAt(10, u"a"_s)});
    open(true); // one that comes later than the bookmarks
    QCOMPARE(m_start->combo.count(), 1);
}

void CopyRecordWidgetTest::aStartChosenBehindTheStopSendsItToTheEnd()
{
    m_bookmarks->show({bookmarkAt(60, u"late"_s)});
    show();
    m_stop->widget.setValueSilently(recordBegin + 20 * second);
    m_start->choose(0);
    QCOMPARE(told(), QStringList{u"range 60000-90000"_s});
    QCOMPARE(m_stop->edit.text(), u"23:14:50:000"_s);
}

void CopyRecordWidgetTest::aStopChosenBeforeTheStartSendsItToTheBegin()
{
    m_bookmarks->show({bookmarkAt(10, u"early"_s)});
    show();
    m_start->widget.setValueSilently(recordBegin + 85 * second);
    m_stop->choose(0);
    QCOMPARE(told(), QStringList{u"range 0-10000"_s});
    QCOMPARE(m_start->edit.text(), u"23:13:20:000"_s);
}

void CopyRecordWidgetTest::itNeedsNoBookmarks()
{
    open(std::make_unique<CopyRecordWidget>(nullptr, nullptr, true));
    verifyEmpty();
    show();
    QVERIFY(!m_start->combo.isVisible() && !m_stop->combo.isVisible());
    m_start->press(Section::SecondSection, Qt::Key_Up);
    QCOMPARE(told(), QStringList{u"range 1000-90000"_s});
    PositionHands::click(&save());
    QCOMPARE(told(), QStringList{u"copy R 11000-901000 name of R_Copy"_s});
    m_records->drop(u"R"_s);
    verifyEmpty();
}

void CopyRecordWidgetTest::itWorksWithoutAMouse()
{
    show();
    m_start->press(Section::SecondSection, Qt::Key_Up);
    QStringList reached;
    m_start->edit.setFocus();
    for (int i = 0; i < 20 && QApplication::focusWidget() != &save(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached << QApplication::focusWidget()->objectName();
    }
    QVERIFY2(reached.contains(u"ResetToStartButton"_s), qPrintable(reached.join(u' ')));
    QVERIFY2(reached.contains(u"RecordNameEdit"_s), qPrintable(reached.join(u' ')));
    told();
    QVERIFY(save().hasFocus());
    QTest::keyClick(&save(), Qt::Key_Space);
    QCOMPARE(told(), QStringList{u"copy R 11000-901000 name of R_Copy"_s});
}

QTEST_MAIN(CopyRecordWidgetTest)
#include "tst_copyrecordwidget.moc"
