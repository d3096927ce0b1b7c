#include <actiontest.h>
#include <ownconfiguration.h>
#include <samplebytes.h>
#include <shownoverview.h>

#include <overviewdisplay/spectrumoverviewwidget.h>
#include <overviewdisplay/waterfallview.h>

#include <QLabel>
#include <QToolBar>

#include <optional>

using namespace Qt::StringLiterals;
using namespace ZelkoTest;
using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
using SPECTRUM_OVERVIEW::WaterfallView;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::Role;

namespace {

const QString record = u"R1"_s;
constexpr qsizetype size = 40'000; // 10,000 samples, which are ten seconds

ZELKO_RecordData tenSeconds()
{
    ZELKO_RecordData data = finishedRecord(record);
    data.SetStopTime(20'000'000);
    data.SetSize(size);
    data.SetStopPosition(size);
    data.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(20'000'000, size)});
    return data;
}

} // namespace

/// What a user does in the overview of a record, on a real recorder.
class TestOverviewWindow : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup();

    void theSpectraOfTheRecordAreShown();
    void aPartHasFinerLines();
    void aBookmarkIsStored();
    void aRangeIsCopied();
    void aRecorderThatEndsLeavesThePicture();

private:
    WaterfallView& view() { return *m_window->findChild<WaterfallView*>(); }
    QString status() { return m_window->findChild<QLabel*>(u"StatusLabel"_s)->text(); }
    QAction& action(const char* name) { return *m_window->findChild<QAction*>(QLatin1String(name)); }
    void click(const char* name)
    {
        auto* const bar = m_window->findChild<QToolBar*>(u"ActionBar"_s);
        QTest::mouseClick(bar->widgetForAction(&action(name)), Qt::LeftButton);
    }
    QPoint place(double share) { return {view().width() / 2, static_cast<int>(view().height() * share)}; }
    void selectTheMiddle()
    {
        QTest::mousePress(&view(), Qt::LeftButton, {}, place(0.4));
        QTest::mouseMove(&view(), place(0.5));
        QTest::mouseMove(&view(), place(0.6));
        QTest::mouseRelease(&view(), Qt::LeftButton, {}, place(0.6));
        QVERIFY(view().selection());
    }

    std::optional<OwnConfiguration> m_configuration;
    SpectrumOverviewWidget* m_window = nullptr;
};

void TestOverviewWindow::init()
{
    m_configuration.emplace();
    makeSite();
    QVERIFY(storeSamples(m_site->deviceFolder(), tenSeconds(), sampleBytes(size)));
    QVERIFY(m_site->start());
    connectAs(Role::Operator);
    QVERIFY(m_site->click(Action::UserActionOverview, {record}));
    m_window = shownOverview();
    QVERIFY(m_window);
    m_window->resize(1500, 800);
    QTRY_COMPARE_WITH_TIMEOUT(status(), u"9 lines, each of 1.111 s"_s, patience);
}

void TestOverviewWindow::cleanup()
{
    qDeleteAll(openedOverviews());
    leaveSite();
    m_configuration.reset();
}

void TestOverviewWindow::theSpectraOfTheRecordAreShown()
{
    QTest::mouseMove(&view(), place(0.4));
    QTest::mouseMove(&view(), place(0.5));
    QVERIFY(view().cursor());
    QVERIFY(view().cursor()->level > -100 && view().cursor()->level <= 0);
    QVERIFY(std::abs(view().cursor()->frequency - 145e6) <= 500);
    QVERIFY(view().cursor()->time > 12'000'000 && view().cursor()->time < 18'000'000);
    QCOMPARE(m_site->takeMessages(), QStringList());
}

void TestOverviewWindow::aPartHasFinerLines()
{
    selectTheMiddle();
    const auto selection = *view().selection();
    click("ActionZoomIn");
    QCOMPARE(view().timeRange(), selection);
    const quint64 lines = (selection.stop - selection.start) / 1'024'000;
    QTRY_VERIFY_WITH_TIMEOUT(status().startsWith(u"%1 lines,"_s.arg(lines)), patience);
}

void TestOverviewWindow::aBookmarkIsStored()
{
    QTest::mouseMove(&view(), place(0.4));
    QTest::mouseMove(&view(), place(0.5));
    const quint64 time = view().cursor()->time;
    const ZelkoConsole::DialogAnswer answer(answers::type(u"burst"_s));
    click("ActionAddBookmark");
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->stored(record).GetBookmarkEntry().size(), 1, patience);
    const ZELKO_XML::BookmarkEntry stored = m_site->stored(record).GetBookmarkEntry().first();
    QCOMPARE(stored.GetBookmark(), u"burst"_s);
    QCOMPARE(stored.GetTimestamp(), time);
    QTRY_VERIFY_WITH_TIMEOUT(action("ActionRemoveBookmark").isEnabled(), patience);
    click("ActionRemoveBookmark");
    QTRY_COMPARE_WITH_TIMEOUT(m_site->stored(record).GetBookmarkEntry().size(), 0, patience);
}

void TestOverviewWindow::aRangeIsCopied()
{
    selectTheMiddle();
    const auto selection = *view().selection();
    const ZelkoConsole::DialogAnswer answer(answers::type(u"the middle"_s));
    click("ActionCopyRange");
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows().size(), 2, patience);
    QStringList added = m_site->rows();
    added.removeOne(record);
    const ZELKO_RecordData copy = m_site->row(added.constFirst());
    QCOMPARE(copy.GetRecordName(), u"the middle"_s);
    const QString samples = ZELKO_XML::sampleFileName(copy.GetRecordID(), copy.GetDataFormat());
    const QByteArray bytes = readBytes(m_site->recordFolder(copy.GetRecordID()) + u'/' + samples);
    const auto frame = [](quint64 time) { return qRound64(static_cast<double>(time - 10'000'000) / 1000) * 4; };
    QCOMPARE(bytes, sampleBytes(size).mid(frame(selection.start), frame(selection.stop) - frame(selection.start)));
    QVERIFY(!bytes.isEmpty());
}

void TestOverviewWindow::aRecorderThatEndsLeavesThePicture()
{
    const QImage before = view().image();
    m_site->recorder().kill();
    QTRY_COMPARE_WITH_TIMEOUT(status(), u"The record is not in the list at the moment."_s, patience);
    QCOMPARE(view().image(), before);
    QVERIFY(!action("ActionAskAgain").isEnabled());
    QVERIFY(m_site->start());
    QTRY_COMPARE_WITH_TIMEOUT(status(), u"9 lines, each of 1.111 s"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(action("ActionAskAgain").isEnabled(), patience);
}

QTEST_MAIN(TestOverviewWindow)
#include "tst_overviewwindow.moc"
