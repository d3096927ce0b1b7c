#include "overviewwindow.h"

#include <QApplication>
#include <QSignalSpy>
#include <QtTest>

using SPECTRUM_OVERVIEW::OverviewLoader;
using SPECTRUM_OVERVIEW::OverviewWish;
using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
using SPECTRUM_OVERVIEW::TimeRange;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoTest::OverviewWindow;

Q_DECLARE_METATYPE(std::shared_ptr<ZELKO_RecordData>)

namespace {

constexpr quint64 start = OverviewWindow::start;
constexpr quint64 second = OverviewWindow::second;
constexpr quint64 stop = OverviewWindow::stop;
constexpr std::chrono::milliseconds growth{2100};
const QString recordID = OverviewWindow::recordID;

std::shared_ptr<ZELKO_RecordData> longer(int seconds)
{
    return OverviewWindow::makeIndexed(recordID, stop + static_cast<quint64>(seconds) * second);
}

} // namespace

/// What the window of an overview does when its record, or the list of it, changes.
class OverviewSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_site = std::make_unique<OverviewWindow>(); }
    void cleanup() { m_site.reset(); }

    void aNewNameIsInTheTitle();
    void aNameCannotPutAPlaceHolderIntoTheTitle();
    void aChangeOfOtherThingsAsksForNothing();
    void aGrownRecordIsAskedForOnce();
    void aRecordThatGrowsOnIsAskedForAgain();
    void growthWaitsForTheAnswerBefore();
    void aZoomStaysWhereItIsWhenTheRecordGrows();
    void aZoomIsCutWhenTheRecordShrinks();
    void aSelectionIsCutWhenTheRecordShrinks();
    void noBookmarkIsSetBehindARecordThatShrank();
    void aDeletedRecordLeavesNothing();
    void aDeletedRecordDoesNotComeBack();
    void otherRecordsAreNoneOfItsBusiness();
    void aRecordThatIsGoneLeavesItsPicture();
    void aRecordThatComesBackGoesOn();
    void anotherFftIsAskedForWhenTheRecordIsBack();
    void anAskThatTheRecordWentBeforeIsMadeWhenItIsBack();
    void aRecordThatWasSilentIsAskedAgainWhenItIsBack();
    void aRecordThatWentWhileItsLinesCameIsAskedForAgain();
    void aListThatGoesLeavesThePicture();
    void aRecordThatIsNotInTheListYetIsWaitedFor();
    void recordsThatCannotBeShownSayWhy_data();
    void recordsThatCannotBeShownSayWhy();
    void aHoleInARecordIsCalledOne();
    void aRecordThatCannotBeShownMayBecomeOneThatCan();
    void whatIsMissingOfTheRecordIsAskedForOnce();
    void whatComesByItselfIsNotAskedFor();
    void aListIsNotNeeded();

private:
    OverviewWindow& site() { return *m_site; }

    std::unique_ptr<OverviewWindow> m_site;
};

void OverviewSessionTest::aNewNameIsInTheTitle()
{
    site().showWhole();
    const auto renamed = OverviewWindow::makeIndexed();
    renamed->SetRecordName("beacon 7");
    site().records.store(renamed);
    QCOMPARE(site().widget().windowTitle(), "Spectrum Overview: beacon 7");
    const auto nameless = OverviewWindow::makeIndexed();
    nameless->SetRecordName(QString());
    site().records.store(nameless);
    QCOMPARE(site().widget().windowTitle(), "Spectrum Overview: R1");
}

void OverviewSessionTest::aNameCannotPutAPlaceHolderIntoTheTitle()
{
    const auto record = OverviewWindow::makeIndexed();
    record->SetRecordName("a[*]b");
    site().showRecord(record);
    QCOMPARE(site().widget().windowTitle(), "Spectrum Overview: a[*][*]b"); // one of which is shown
}

void OverviewSessionTest::aChangeOfOtherThingsAsksForNothing()
{
    site().showWhole();
    const auto renamed = OverviewWindow::makeIndexed();
    renamed->SetRecordName("beacon 7");
    renamed->SetBookmarkEntry({OverviewWindow::bookmark(start + second, "text")});
    site().records.store(renamed);
    site().timer.advance(10 * growth);
    QCOMPARE(site().asks.size(), 1u);
    QVERIFY(site().action("ActionSavePicture").isEnabled());
}

void OverviewSessionTest::aGrownRecordIsAskedForOnce()
{
    site().showWhole();
    site().records.store(longer(10));
    QCOMPARE(site().view().timeRange(), (TimeRange{start, stop + 10 * second}));
    site().records.store(longer(20));
    QCOMPARE(site().asks.size(), 1u);
    QVERIFY(site().action("ActionSavePicture").isEnabled());
    site().timer.advance(growth);
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE(site().lastAsk().wish.start, start);
    QCOMPARE(site().lastAsk().wish.stop, stop + 20 * second);
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().progress().isVisible(), false, patience);
    site().timer.advance(10 * growth);
    QCOMPARE(site().asks.size(), 2u);
}

// It grows each second, so that there is never a pause to wait for.
void OverviewSessionTest::aRecordThatGrowsOnIsAskedForAgain()
{
    site().showWhole();
    for (int i = 1; i <= 5; ++i) {
        site().records.store(longer(i));
        site().timer.advance(std::chrono::milliseconds(1000));
    }
    QVERIFY(site().asks.size() >= 2u);
}

void OverviewSessionTest::growthWaitsForTheAnswerBefore()
{
    site().showRecord();
    site().peer.sendLine(site().lastAsk().wish, site().lastAsk().port, 0);
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "1 of 5 lines", patience);
    site().records.store(longer(10));
    site().timer.advance(growth);
    QCOMPARE(site().asks.size(), 1u);
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().progress().isVisible(), false, patience);
    site().timer.advance(growth);
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE(site().lastAsk().wish.stop, stop + 10 * second);
}

void OverviewSessionTest::aZoomStaysWhereItIsWhenTheRecordGrows()
{
    site().showWhole();
    site().select(0.3, 0.7);
    site().click("ActionZoomIn");
    site().ask();
    const TimeRange zoomed = site().view().timeRange();
    site().records.store(longer(10));
    site().timer.advance(10 * growth);
    QCOMPARE(site().view().timeRange(), zoomed);
    site().click("ActionWhole");
    QCOMPARE(site().view().timeRange(), (TimeRange{start, stop + 10 * second}));
}

void OverviewSessionTest::aZoomIsCutWhenTheRecordShrinks()
{
    site().showWhole();
    site().select(0.5, 0.9);
    site().click("ActionZoomIn");
    site().ask();
    site().records.store(OverviewWindow::makeIndexed(recordID, start + 50 * second));
    QCOMPARE(site().view().timeRange().stop, start + 50 * second);
    const std::size_t asks = site().asks.size();
    site().ask();
    QCOMPARE(site().asks.size(), asks + 1);
    QCOMPARE(site().lastAsk().wish.stop, start + 50 * second);
}

void OverviewSessionTest::aSelectionIsCutWhenTheRecordShrinks()
{
    site().showWhole();
    site().select(0.3, 0.7);
    const auto before = site().view().selection();
    QVERIFY(before && before->stop > start + 50 * second);
    site().records.store(longer(10));
    QCOMPARE(site().view().selection(), before);
    site().records.store(longer(-40));
    QCOMPARE(site().view().selection(), std::optional(TimeRange{before->start, stop - 40 * second}));
    QVERIFY(site().action("ActionCopyRange").isEnabled());
    site().records.store(longer(-70));
    QVERIFY(!site().view().selection());
    QVERIFY(!site().action("ActionCopyRange").isEnabled());
}

void OverviewSessionTest::noBookmarkIsSetBehindARecordThatShrank()
{
    site().showWhole();
    site().point(0.8);
    QVERIFY(site().action("ActionAddBookmark").isEnabled());
    site().records.store(longer(-40));
    QVERIFY(!site().action("ActionAddBookmark").isEnabled());
    QTest::keyClick(&site().view(), Qt::Key_Insert);
    letTurnsPass();
    QVERIFY(!QApplication::activeModalWidget());
}

void OverviewSessionTest::aDeletedRecordLeavesNothing()
{
    site().showWhole();
    site().select(0.3, 0.7);
    site().records.drop(recordID);
    QCOMPARE(site().status(), "The record has been deleted.");
    QCOMPARE(site().enabledActions(), QStringList());
    QVERIFY(!site().view().selection());
    QCOMPARE(site().widget().windowTitle(), "Spectrum Overview: name of R1");
    site().timer.advance(10 * growth);
    QCOMPARE(site().asks.size(), 1u);
}

void OverviewSessionTest::aDeletedRecordDoesNotComeBack()
{
    site().showRecord();
    site().records.drop(recordID);
    QVERIFY(!site().progress().isVisible());
    site().records.store(OverviewWindow::makeIndexed());
    site().timer.advance(10 * growth);
    QCOMPARE(site().asks.size(), 1u);
    QCOMPARE(site().status(), "The record has been deleted.");
}

void OverviewSessionTest::otherRecordsAreNoneOfItsBusiness()
{
    site().showWhole();
    const QString before = site().status();
    site().records.store(OverviewWindow::makeIndexed("R2", stop + second));
    site().records.drop("R2");
    site().timer.advance(10 * growth);
    QCOMPARE(site().status(), before);
    QCOMPARE(site().asks.size(), 1u);
}

void OverviewSessionTest::aRecordThatIsGoneLeavesItsPicture()
{
    site().showWhole();
    const QImage before = site().view().image();
    site().records.replaceAll({});
    QCOMPARE(site().status(), "The record is not in the list at the moment.");
    QCOMPARE(site().enabledActions(), QStringList{"SavePicture"});
    QCOMPARE(site().view().image(), before);
    site().select(0.3, 0.7);
    QTest::keyClick(&site().view(), Qt::Key_Plus);
    site().timer.advance(10 * growth);
    QCOMPARE(site().enabledActions(), QStringList{"SavePicture"});
    QCOMPARE(site().asks.size(), 1u);
    const TimeRange zoomed = site().view().timeRange();
    QVERIFY(zoomed.stop - zoomed.start < stop - start);
    site().records.store(OverviewWindow::makeIndexed());
    QCOMPARE(site().view().timeRange(), zoomed);
    site().ask();
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE((TimeRange{site().lastAsk().wish.start, site().lastAsk().wish.stop}), zoomed);
}

void OverviewSessionTest::anotherFftIsAskedForWhenTheRecordIsBack()
{
    site().showWhole();
    site().records.replaceAll({});
    QTest::keyClick(&site().box("FftLengthBox"), Qt::Key_Up);
    site().ask();
    QCOMPARE(site().asks.size(), 1u);
    site().records.store(OverviewWindow::makeIndexed());
    site().ask();
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE(site().lastAsk().wish.fftLength, 512u);
}

void OverviewSessionTest::anAskThatTheRecordWentBeforeIsMadeWhenItIsBack()
{
    site().showWhole();
    QTest::keyClick(&site().view(), Qt::Key_Plus);
    site().records.replaceAll({});
    site().ask();
    QCOMPARE(site().asks.size(), 1u);
    site().records.store(OverviewWindow::makeIndexed());
    site().ask();
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE(site().lastAsk().wish.start, site().view().timeRange().start);
}

void OverviewSessionTest::aRecordThatWasSilentIsAskedAgainWhenItIsBack()
{
    site().showRecord();
    site().timer.advance(std::chrono::minutes(10));
    QVERIFY(!site().progress().isVisible());
    const std::size_t asks = site().asks.size();
    site().records.replaceAll({});
    site().records.store(OverviewWindow::makeIndexed());
    site().ask();
    QCOMPARE(site().asks.size(), asks + 1);
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "5 lines, each of 18 s", patience);
}

void OverviewSessionTest::aRecordThatComesBackGoesOn()
{
    site().showWhole();
    site().records.replaceAll({});
    site().records.store(OverviewWindow::makeIndexed());
    QCOMPARE(site().status(), "5 lines, each of 18 s");
    site().timer.advance(10 * growth);
    QCOMPARE(site().asks.size(), 1u);
    site().select(0.3, 0.7);
    site().click("ActionZoomIn");
    site().ask();
    QCOMPARE(site().asks.size(), 2u);
}

void OverviewSessionTest::aRecordThatWentWhileItsLinesCameIsAskedForAgain()
{
    site().showRecord();
    site().peer.sendLine(site().lastAsk().wish, site().lastAsk().port, 0);
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "1 of 5 lines", patience);
    site().records.replaceAll({});
    QVERIFY(!site().progress().isVisible());
    site().timer.advance(10 * growth);
    QCOMPARE(site().asks.size(), 1u);
    site().records.store(OverviewWindow::makeIndexed());
    site().ask();
    QCOMPARE(site().asks.size(), 2u);
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "5 lines, each of 18 s", patience);
}

void OverviewSessionTest::aListThatGoesLeavesThePicture()
{
    auto records = std::make_unique<ToldRecords>();
    records->store(OverviewWindow::makeIndexed());
    site().showWhole();
    site().widget().setRecord(OverviewWindow::device, recordID, records.get(), OverviewWindow::address);
    site().ask();
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "5 lines, each of 18 s", patience);
    records.reset();
    QCOMPARE(site().status(), "The record is not in the list at the moment.");
    QCOMPARE(site().enabledActions(), QStringList{"SavePicture"});
}

void OverviewSessionTest::aRecordThatIsNotInTheListYetIsWaitedFor()
{
    site().widget().setRecord(OverviewWindow::device, recordID, &site().records, OverviewWindow::address);
    site().widget().show();
    site().ask();
    QCOMPARE(site().status(), "The record is not in the list at the moment.");
    QCOMPARE(site().asks.size(), 0u);
    site().records.store(OverviewWindow::makeIndexed());
    site().ask();
    QCOMPARE(site().asks.size(), 1u);
}

void OverviewSessionTest::recordsThatCannotBeShownSayWhy_data()
{
    QTest::addColumn<std::shared_ptr<ZELKO_RecordData>>("record");
    QTest::addColumn<QString>("reason");
    const auto unindexed = OverviewWindow::makeIndexed();
    unindexed->SetIndexEntry({});
    QTest::newRow("without an index") << unindexed << "The sample rate of the record is not known.";
    const auto rateless = OverviewWindow::makeIndexed();
    rateless->SetIndexEntry({OverviewWindow::indexEntry(start, 0, 0), OverviewWindow::indexEntry(stop, 23'040, 0)});
    QTest::newRow("without a sample rate") << rateless << "The sample rate of the record is not known.";
    QTest::newRow("empty") << OverviewWindow::makeIndexed(recordID, start) << "The record has no samples.";
    const auto endless = OverviewWindow::makeIndexed();
    endless->SetStopTime(0);
    endless->SetIndexEntry({OverviewWindow::indexEntry(start, 0)});
    QTest::newRow("without an end") << endless << "The record has no samples.";
    QTest::newRow("shorter than any spectrum")
        << OverviewWindow::makeIndexed(recordID, start + second / 2) << "The record is too short for a spectrum.";
    QTest::newRow("shorter than one spectrum") << OverviewWindow::makeIndexed(recordID, start + 2 * second)
                                               << "The record is shorter than one FFT of this length.";
}

void OverviewSessionTest::recordsThatCannotBeShownSayWhy()
{
    QFETCH(std::shared_ptr<ZELKO_RecordData>, record);
    QFETCH(QString, reason);
    site().showRecord(record);
    const QImage before = site().view().image();
    site().timer.advance(10 * growth);
    QCOMPARE(site().status(), reason);
    QCOMPARE(site().view().image(), before);
    site().view().setEmptyText(QStringLiteral("another reason"));
    QVERIFY(site().view().image() != before); // the reason stands in its place
    QCOMPARE(site().asks.size(), 0u);
    QVERIFY(!site().progress().isVisible());
}

// From 20 to 60 seconds behind the start.
void OverviewSessionTest::aHoleInARecordIsCalledOne()
{
    const auto record = OverviewWindow::makeIndexed();
    record->SetSize(12'800);
    record->SetIndexEntry({OverviewWindow::indexEntry(start, 0), OverviewWindow::indexEntry(start + 60 * second, 5'120),
                           OverviewWindow::indexEntry(stop, 12'800)});
    site().showWhole(record);
    QCOMPARE(site().lastAsk().wish.lineCount, 3u); // of 1,024 samples
    site().select(0.4, 0.5);
    site().click("ActionZoomIn");
    site().timer.advance(growth);
    QCOMPARE(site().asks.size(), 1u);
    QCOMPARE(site().status(), "The record has a hole at this time: it has no samples there.");
    site().click("ActionWhole");
    QVERIFY(!site().status().contains("hole") && !site().status().contains("shorter"));
    site().timer.advance(growth);
    QCOMPARE(site().asks.size(), 2u);
    QVERIFY(site().status() != "The record has a hole at this time: it has no samples there.");
}

void OverviewSessionTest::aRecordThatCannotBeShownMayBecomeOneThatCan()
{
    site().showRecord(OverviewWindow::makeIndexed(recordID, start));
    QCOMPARE(site().asks.size(), 0u);
    site().records.store(OverviewWindow::makeIndexed());
    site().ask();
    QCOMPARE(site().asks.size(), 1u);
    QCOMPARE(site().lastAsk().wish.stop, stop);
}

void OverviewSessionTest::whatIsMissingOfTheRecordIsAskedForOnce()
{
    QSignalSpy resynced(&site().widget(), &SpectrumOverviewWidget::si_resyncRecord);
    const auto unindexed = OverviewWindow::makeIndexed();
    unindexed->SetIndexEntry({});
    site().showRecord(unindexed);
    QCOMPARE(resynced.size(), 0); // who has opened the window may have asked
    site().timer.advance(growth);
    QCOMPARE(resynced, (QList<QVariantList>{{recordID, OverviewWindow::device}}));
    site().records.store(unindexed);
    site().timer.advance(10 * growth);
    QCOMPARE(resynced.size(), 1);
    site().records.store(OverviewWindow::makeIndexed());
    site().ask();
    QCOMPARE(site().asks.size(), 1u);
}

void OverviewSessionTest::whatComesByItselfIsNotAskedFor()
{
    QSignalSpy resynced(&site().widget(), &SpectrumOverviewWidget::si_resyncRecord);
    const auto unindexed = OverviewWindow::makeIndexed();
    unindexed->SetIndexEntry({});
    site().showRecord(unindexed);
    site().records.store(OverviewWindow::makeIndexed());
    site().timer.advance(10 * growth);
    QCOMPARE(resynced.size(), 0);
    QVERIFY(!site().asks.empty());
}

void OverviewSessionTest::aListIsNotNeeded()
{
    site().widget().setRecord(OverviewWindow::device, recordID, nullptr, OverviewWindow::address);
    site().ask();
    QCOMPARE(site().status(), "The record is not in the list at the moment.");
    QCOMPARE(site().enabledActions(), QStringList());
}

QTEST_MAIN(OverviewSessionTest)

#include "tst_overviewsession.moc"
