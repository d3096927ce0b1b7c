#include <actiontest.h>
#include <burstcapture.h>
#include <capturedsamples.h>
#include <ownconfiguration.h>
#include <shownoverview.h>
#include <testbookmarks.h>

#include <overviewdisplay/spectrumoverviewwidget.h>
#include <overviewdisplay/waterfallview.h>
#include <zelkobase/service/overviewline.h>

#include <QSignalSpy>
#include <QToolBar>
#include <QUdpSocket>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;
using namespace ZelkoTest;
using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
using SPECTRUM_OVERVIEW::WaterfallView;
using ZELKO_XML::IndexEntry;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::OverviewPiece;
using ZelkoCommon::Role;

namespace {

// So few that all datagrams of an overview wait in the buffer of a socket whatever its reader does meanwhile.
constexpr uint lineCount = 64;
constexpr std::size_t fftLength = 256;

// Where something is heard, and how loud.
struct Place
{
    qsizetype frame = 0; // in the middle of the spectrum
    std::size_t bin = 0;
    double level = -1000; // dB of full scale
};

// The strongest of all spectra of that length.
Place loudest(const CapturedSamples& samples, std::size_t length)
{
    Place found;
    const auto step = static_cast<qsizetype>(length / 4);
    for (qsizetype at = 0; at + static_cast<qsizetype>(length) <= samples.frames(); at += step) {
        const std::vector<double> levels = samples.levels(at, length);
        const auto strongest = std::max_element(levels.begin(), levels.end());
        if (*strongest > found.level) {
            found = {at + static_cast<qsizetype>(length / 2), static_cast<std::size_t>(strongest - levels.begin()),
                     *strongest};
        }
    }
    return found;
}

quint64 distance(quint64 a, quint64 b)
{
    return a < b ? b - a : a - b;
}

// The strongest that is heard in one bin near a line.
double loudestNear(const CapturedSamples& samples, std::size_t bin, qsizetype first, qsizetype end)
{
    constexpr auto length = static_cast<qsizetype>(fftLength);
    double found = -1000;
    for (qsizetype at = std::max<qsizetype>(first - length, 0); at < end && at + length <= samples.frames(); at += 16) {
        found = std::max(found, samples.levels(at, fftLength)[bin]);
    }
    return found;
}

} // namespace

/// What a recorder heard of a capture, as clients see it in the overview and cut it out. With the path of a metadata
/// file in ZELKO_CAPTURE, of that capture, too.
class TestOverview : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { closeOrb(); }
    void init() { m_configuration.emplace(); }
    void cleanup();
    void theSignalIsWhereItWasHeard_data() { addCaptures(); }
    void theSignalIsWhereItWasHeard();
    void theBurstIsCutOut_data() { addCaptures(); }
    void theBurstIsCutOut();
    void theWindowShowsTheBurstAndCopiesIt_data() { addCaptures(Those::OfferedByTheWindow); }
    void theWindowShowsTheBurstAndCopiesIt();

private:
    enum class Those { All, OfferedByTheWindow };

    void addCaptures(Those which = Those::All);
    void overviewOf(const QString& capture);
    void record();
    void askForOverview();
    std::pair<qsizetype, std::size_t> strongest() const;
    std::pair<qsizetype, qsizetype> linesOfBurst(qsizetype line, std::size_t bin) const;
    double level(qsizetype line, std::size_t bin) const;
    qsizetype frameAt(quint64 time) const;
    qsizetype lineOf(qsizetype frame) const;
    qsizetype firstFrame(qsizetype line) const;
    quint64 beginOf(qsizetype line) const;
    quint64 timeAt(qsizetype frame) const;
    quint64 frameTime() const { return static_cast<quint64>(1e6 / m_capture->sampleRate()) + 1; }
    void setBookmarks(quint64 before, quint64 inside, quint64 behind);
    ZELKO_RecordData copied() const;
    void verifyCut(const ZELKO_RecordData& copy, quint64 start, quint64 stop) const;
    void openWindow();
    QPoint pixelOf(quint64 time, std::size_t bin, std::size_t length) const;

    QTemporaryDir m_folder;
    std::optional<OwnConfiguration> m_configuration;
    std::optional<CapturedSamples> m_capture;
    ZELKO_RecordData m_record;
    QList<OverviewPiece> m_lines; // complete, in order
    SpectrumOverviewWidget* m_window = nullptr;
};

void TestOverview::initTestCase()
{
    openOrb();
    QVERIFY(BurstCapture::write(m_folder.filePath(u"burst"_s)));
}

void TestOverview::cleanup()
{
    delete std::exchange(m_window, nullptr);
    leaveSite();
    m_configuration.reset();
    m_capture.reset();
    m_lines.clear();
}

// The overview of a record is offered for IQ of 16 bits and with a point.
void TestOverview::addCaptures(Those which)
{
    QTest::addColumn<QString>("capture");
    QTest::newRow("a burst in noise") << m_folder.filePath(u"burst.sigmf-meta"_s);
    const QString other = qEnvironmentVariable("ZELKO_CAPTURE");
    const bool isOffered = which == Those::All || CapturedSamples(other).isIqOf16Bits();
    if (!other.isEmpty() && isOffered) {
        QTest::newRow("the capture of ZELKO_CAPTURE") << other;
    }
}

// Recorded by a recorder, and sent by it.
void TestOverview::overviewOf(const QString& capture)
{
    m_capture.emplace(capture);
    QVERIFY(m_capture->frames() > static_cast<qsizetype>(lineCount * fftLength));
    makeSite();
    QVERIFY(
        m_site->start({u"--once"_s, u"--speed"_s, u"0"_s, u"--index-interval"_s, u"0.1"_s, u"--source"_s, capture}));
    connectAs(Role::Operator);
    record();
    if (!QTest::currentTestFailed()) {
        askForOverview();
    }
}

// Leaves a record at rest in m_record, which has the capture's samples.
void TestOverview::record()
{
    const auto isAtRest = [this] {
        const QStringList rows = m_site->rows();
        m_record = rows.isEmpty() ? ZELKO_RecordData() : m_site->row(rows.first());
        return m_record.GetRecordStatus() == ZELKO_RecordData::RecordStatus::Finished;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAtRest(), patience);
    const QString id = m_record.GetRecordID();
    const QString samples = ZELKO_XML::sampleFileName(id, m_record.GetDataFormat());
    QVERIFY(readBytes(m_site->recordFolder(id) + u'/' + samples) == m_capture->bytes());
}

// Leaves its lines in m_lines.
void TestOverview::askForOverview()
{
    QUdpSocket socket;
    QVERIFY(socket.bind(QHostAddress::LocalHost));
    m_site->controller().sl_overviewSpectrumStreamed(m_record.GetRecordID(), 0, 0, lineCount, fftLength,
                                                     ZelkoDataTypes::eFFT_Window::Hann, u"127.0.0.1"_s,
                                                     socket.localPort(), ActionSite::device());
    const quint64 cookie = ZelkoCommon::overviewCookie(ActionSite::device(), m_record.GetRecordID());
    while (m_lines.isEmpty() || !m_lines.last().isLast) {
        QTRY_VERIFY_WITH_TIMEOUT(socket.hasPendingDatagrams(), patience);
        QByteArray datagram(socket.pendingDatagramSize(), '\0');
        socket.readDatagram(datagram.data(), datagram.size());
        const auto piece = ZelkoCommon::overviewPiece(datagram);
        QVERIFY(piece.has_value());
        QCOMPARE(piece->cookie, cookie);
        QCOMPARE(piece->lineCount, lineCount);
        QCOMPARE(qsizetype{piece->line}, m_lines.size());
        m_lines.append(*piece);
    }
    QCOMPARE(m_lines.size(), qsizetype{lineCount});
    for (const OverviewPiece& line : m_lines) {
        QCOMPARE(std::size_t{line.binCount}, m_capture->isReal() ? fftLength / 2 : fftLength);
        QCOMPARE(line.levels.size(), qsizetype{line.binCount});
        QCOMPARE(static_cast<double>(line.span), m_capture->sampleRate() / (m_capture->isReal() ? 2 : 1));
    }
}

double TestOverview::level(qsizetype line, std::size_t bin) const
{
    return m_lines.at(line).levels.at(static_cast<qsizetype>(bin)) / 100.0;
}

// Line and bin.
std::pair<qsizetype, std::size_t> TestOverview::strongest() const
{
    std::pair<qsizetype, std::size_t> found{0, 0};
    for (qsizetype line = 0; line < m_lines.size(); ++line) {
        for (std::size_t bin = 0; bin < m_lines.at(line).binCount; ++bin) {
            if (level(line, bin) > level(found.first, found.second)) {
                found = {line, bin};
            }
        }
    }
    return found;
}

// The lines around this one in which the bin is next to as strong, up to but without the second number.
std::pair<qsizetype, qsizetype> TestOverview::linesOfBurst(qsizetype line, std::size_t bin) const
{
    const double least = level(line, bin) - 10;
    qsizetype first = line;
    qsizetype end = line + 1;
    while (first > 1 && level(first - 1, bin) >= least) {
        --first;
    }
    while (end < m_lines.size() - 1 && level(end, bin) >= least) {
        ++end;
    }
    return {first, end};
}

qsizetype TestOverview::frameAt(quint64 time) const
{
    const auto since = static_cast<double>(time - m_record.GetStartTime());
    return static_cast<qsizetype>(std::llround(since * m_capture->sampleRate() / 1e6));
}

quint64 TestOverview::timeAt(qsizetype frame) const
{
    return m_record.GetStartTime() + static_cast<quint64>(static_cast<double>(frame) * 1e6 / m_capture->sampleRate());
}

quint64 TestOverview::beginOf(qsizetype line) const
{
    return line < m_lines.size() ? m_lines.at(line).time : m_record.GetStopTime();
}

qsizetype TestOverview::firstFrame(qsizetype line) const
{
    return frameAt(beginOf(line));
}

qsizetype TestOverview::lineOf(qsizetype frame) const
{
    qsizetype line = 0;
    while (line + 1 < m_lines.size() && firstFrame(line + 1) <= frame) {
        ++line;
    }
    return line;
}

// A capture may have several places that are next to as loud: the loudest one that the test hears must be seen, and the
// loudest one that is seen must be heard.
void TestOverview::theSignalIsWhereItWasHeard()
{
    QFETCH(const QString, capture);
    overviewOf(capture);
    if (QTest::currentTestFailed()) {
        return;
    }
    const auto [line, bin] = strongest();
    const Place heard = loudest(*m_capture, fftLength);
    const qsizetype lineHeard = lineOf(heard.frame);
    qInfo("seen: line %lld, bin %zu, %.2f dB; heard: line %lld, bin %zu, %.2f dB", static_cast<long long>(line), bin,
          level(line, bin), static_cast<long long>(lineHeard), heard.bin, heard.level);
    QVERIFY(std::abs(level(line, bin) - heard.level) < 1);
    QVERIFY(std::abs(level(lineHeard, heard.bin) - heard.level) < 1);
    const double there = loudestNear(*m_capture, bin, firstFrame(line), firstFrame(line + 1));
    QVERIFY(std::abs(there - level(line, bin)) < 1);
    if (capture.startsWith(m_folder.path())) {
        constexpr double binWidth = double{BurstCapture::sampleRate} / fftLength;
        QCOMPARE(bin, heard.bin);
        QCOMPARE(bin, static_cast<std::size_t>(fftLength / 2.0 + BurstCapture::toneFrequency / binWidth));
        QVERIFY(line >= lineOf(BurstCapture::burstBegin));
        QVERIFY(line <= lineOf(BurstCapture::burstBegin + BurstCapture::burstLength));
        QCOMPARE(m_lines.at(line).centreFrequency, quint64{145'000'000});
    }
}

// The new record as its row shows it.
ZELKO_RecordData TestOverview::copied() const
{
    ZELKO_RecordData copy;
    const auto isThere = [&] {
        for (const QString& id : m_site->rows()) {
            copy = id == m_record.GetRecordID() ? copy : m_site->row(id);
        }
        return !copy.GetRecordID().isEmpty();
    };
    return QTest::qWaitFor(isThere, patience) ? copy : ZELKO_RecordData();
}

// Samples, bookmarks and index of the record cut to this range, of which only the bookmark "inside" lies within.
void TestOverview::verifyCut(const ZELKO_RecordData& copy, quint64 start, quint64 stop) const
{
    const qsizetype begin = frameAt(start) * m_capture->bytesPerFrame();
    const qsizetype size = frameAt(stop) * m_capture->bytesPerFrame() - begin;
    const QString samples = ZELKO_XML::sampleFileName(copy.GetRecordID(), copy.GetDataFormat());
    const QByteArray bytes = readBytes(m_site->recordFolder(copy.GetRecordID()) + u'/' + samples);
    QCOMPARE(bytes.size(), size);
    QVERIFY(bytes == m_capture->bytes().mid(begin, size));
    QVERIFY(distance(copy.GetStartTime(), start) <= frameTime());
    QVERIFY(distance(copy.GetStopTime(), stop) <= frameTime());
    QCOMPARE(copy.GetBookmarkEntry().size(), 1);
    QCOMPARE(copy.GetBookmarkEntry().first().GetBookmark(), u"inside"_s);
    const QVector<IndexEntry> index = copy.GetIndexEntry();
    QVERIFY(index.size() >= 2);
    QCOMPARE(index.first().GetTimestamp(), copy.GetStartTime());
    QCOMPARE(index.first().GetRecordOffset(), copy.GetStartPosition());
    QCOMPARE(index.last().GetTimestamp(), copy.GetStopTime());
    QCOMPARE(static_cast<qsizetype>(index.last().GetRecordOffset() - index.first().GetRecordOffset()), size);
    QCOMPARE(static_cast<double>(index.first().GetSampleRate()), m_capture->sampleRate());
    QCOMPARE(index.first().GetTunerFrequency(), m_lines.first().centreFrequency);
}

void TestOverview::setBookmarks(quint64 before, quint64 inside, quint64 behind)
{
    m_site->controller().sl_setBookmarkEntries(
        m_record.GetRecordID(),
        {makeBookmark(before, u"before"_s), makeBookmark(inside, u"inside"_s), makeBookmark(behind, u"behind"_s)},
        ActionSite::device());
    QTRY_COMPARE_WITH_TIMEOUT(m_site->row(m_record.GetRecordID()).GetBookmarkEntry().size(), 3, patience);
}

void TestOverview::theBurstIsCutOut()
{
    QFETCH(const QString, capture);
    overviewOf(capture);
    if (QTest::currentTestFailed()) {
        return;
    }
    const auto [line, bin] = strongest();
    const auto [first, end] = linesOfBurst(line, bin);
    const quint64 start = beginOf(first);
    const quint64 stop = beginOf(end);
    setBookmarks(start - 1, start + 1, stop + 1);
    m_site->controller().sl_copyRecord(m_record.GetRecordID(), start, stop, u"burst"_s, ActionSite::device());
    const ZELKO_RecordData copy = copied();
    QCOMPARE(copy.GetStartTime(), start);
    QCOMPARE(copy.GetStopTime(), stop);
    verifyCut(copy, start, stop);
    QCOMPARE(m_site->takeMessages(), QStringList());
}

void TestOverview::openWindow()
{
    QVERIFY(m_site->click(Action::UserActionOverview, {m_record.GetRecordID()}));
    m_window = shownOverview();
    QVERIFY(m_window);
}

// Where a time and a bin of spectra of that length are painted.
QPoint TestOverview::pixelOf(quint64 time, std::size_t bin, std::size_t length) const
{
    const WaterfallView& view = *m_window->findChild<WaterfallView*>();
    const QRectF area = view.pictureArea();
    const auto shown = view.timeRange();
    const double across = (static_cast<double>(bin) + 0.5) / static_cast<double>(length);
    const double down = static_cast<double>(time - shown.start) / static_cast<double>(shown.stop - shown.start);
    return (area.topLeft() + QPointF(across * area.width(), down * area.height())).toPoint();
}

// What an operator does with the burst that he sees.
void TestOverview::theWindowShowsTheBurstAndCopiesIt()
{
    QFETCH(const QString, capture);
    overviewOf(capture);
    openWindow();
    if (QTest::currentTestFailed()) {
        return;
    }
    auto& view = *m_window->findChild<WaterfallView*>();
    QSignalSpy asked(m_window, &SpectrumOverviewWidget::si_overviewSpectrumStreamed);
    m_window->resize(1200, 900);
    QTRY_VERIFY_WITH_TIMEOUT(!asked.isEmpty(), patience);
    const auto length = static_cast<std::size_t>(asked.last().at(4).toULongLong());
    const Place heard = loudest(*m_capture, length);
    const quint64 time = timeAt(heard.frame);
    const auto levelAt = [&](std::size_t bin) {
        QTest::mouseMove(&view, pixelOf(time, bin, length) + QPoint(5, 5));
        QTest::mouseMove(&view, pixelOf(time, bin, length));
        return view.cursor() ? view.cursor()->level : qQNaN();
    };
    QTRY_VERIFY_WITH_TIMEOUT(std::abs(levelAt(heard.bin) - heard.level) < 1, patience);
    QVERIFY(distance(view.cursor()->time, time) <= (m_record.GetStopTime() - m_record.GetStartTime()) / 100);
    QVERIFY(levelAt((heard.bin + length / 2) % length) < heard.level - 10);

    setBookmarks(m_record.GetStartTime() + 1, time, m_record.GetStopTime() - 1);
    const auto [first, end] = linesOfBurst(lineOf(heard.frame), heard.bin * fftLength / length);
    const QPoint from = pixelOf(beginOf(first), 9, length) - QPoint(0, 3);
    const QPoint to = pixelOf(beginOf(end), 9, length) + QPoint(0, 3);
    QTest::mousePress(&view, Qt::LeftButton, {}, from);
    QTest::mouseMove(&view, (from + to) / 2);
    QTest::mouseMove(&view, to);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, to);
    QVERIFY(view.selection());
    const auto selected = *view.selection();
    QVERIFY(selected.start < time && time < selected.stop);
    QVERIFY(selected.start > m_record.GetStartTime() + 1 && selected.stop < m_record.GetStopTime() - 1);
    const ZelkoConsole::DialogAnswer answer(answers::type(u"burst"_s));
    auto* const copyRange = m_window->findChild<QAction*>(u"ActionCopyRange"_s);
    QTest::mouseClick(m_window->findChild<QToolBar*>(u"ActionBar"_s)->widgetForAction(copyRange), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    const ZELKO_RecordData copy = copied();
    QCOMPARE(copy.GetRecordName(), u"burst"_s);
    verifyCut(copy, selected.start, selected.stop);
    QCOMPARE(m_site->takeMessages(), QStringList());
}

QTEST_MAIN(TestOverview)
#include "tst_overview.moc"
