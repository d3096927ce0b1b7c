#include "overviewsession_p.h"

#include <utility>

namespace SPECTRUM_OVERVIEW {

using State = FollowedRecord::State;
using Lack = OverviewFacts::Lack;

namespace {

// Fewer lines more than that are not worth to ask for all of them again.
constexpr double worthwhile = 1.25;

} // namespace

OverviewSession::OverviewSession(QObject* parent)
    : QObject(parent)
    , m_singleShot(Vorn::callLater)
{
    connectParts();
}

OverviewSession::~OverviewSession() = default;

void OverviewSession::connectParts()
{
    connect(&m_record, &FollowedRecord::si_changed, this, &OverviewSession::look);
    connect(&m_loader, &OverviewLoader::si_ask, this, &OverviewSession::si_ask);
    connect(&m_loader, &OverviewLoader::si_emptied, this, &OverviewSession::si_emptied);
    connect(&m_loader, &OverviewLoader::si_linesArrived, this, &OverviewSession::si_linesArrived);
    connect(&m_loader, &OverviewLoader::si_stateChanged, this, &OverviewSession::si_loaderChanged);
}

void OverviewSession::setSingleShot(const OverviewLoader::SingleShot& singleShot)
{
    m_singleShot = singleShot;
    m_loader.setSingleShot(singleShot);
}

void OverviewSession::setRecord(const QString& deviceID, const QString& recordID,
                                ZelkoCommon::AbstractRecordListModel* model, const QString& address)
{
    ++m_scheduled;
    ++m_recordNumber;
    m_deviceID = deviceID;
    m_address = address;
    m_extent = {};
    m_isGrowing = false;
    m_wasAway = false;
    m_hasResynced = false;
    m_isTooShort = false;
    m_loader.clear();
    m_record.follow(recordID, model);
    setRange({}, true);
    look();
}

void OverviewSession::setSettings(const OverviewSettings& settings)
{
    const OverviewSettings before = std::exchange(m_settings, settings);
    const bool isOther = before.fftLength != settings.fftLength || before.window != settings.window ||
                         before.lineCount != settings.lineCount;
    if (isOther && isUsable()) {
        show(m_range);
    }
}

void OverviewSession::setRoom(int lines)
{
    m_room = lines;
    const auto wish = isUsable() ? facts().wish(m_range, m_settings, m_room) : std::nullopt;
    if (wish && wish->lineCount > worthwhile * m_loader.levels().wish().lineCount) {
        schedule(AskDelay);
    }
}

bool OverviewSession::isUsable() const
{
    return m_record.state() == State::Listed && facts().lack() == Lack::Nothing;
}

QString OverviewSession::problem() const
{
    switch (m_record.state()) {
    case State::None:
        return tr("No record");
    case State::Deleted:
        return tr("The record has been deleted.");
    case State::Gone:
        return tr("The record is not in the list at the moment.");
    case State::Listed:
        break;
    }
    switch (facts().lack()) {
    case Lack::Samples:
        return tr("The record has no samples.");
    case Lack::SampleRate:
        return tr("The sample rate of the record is not known.");
    case Lack::Length:
        return tr("The record is too short for a spectrum.");
    case Lack::Nothing:
        break;
    }
    if (!m_isTooShort) {
        return {};
    }
    if (isWhole()) {
        return tr("The record is shorter than one FFT of this length.");
    }
    return facts().samplesIn(m_range) > 0
               ? tr("There are fewer samples at this time than one FFT of this length takes.")
               : tr("The record has a hole at this time: it has no samples there.");
}

void OverviewSession::look()
{
    switch (m_record.state()) {
    case State::Listed:
        lookAtFacts();
        break;
    case State::Deleted:
        ++m_scheduled;
        m_loader.clear();
        break;
    case State::None:
    case State::Gone:
        m_wasAway = true;
        m_loader.end();
        break;
    }
    Q_EMIT si_recordChanged();
}

void OverviewSession::lookAtFacts()
{
    if (facts().lack() == Lack::SampleRate && !std::exchange(m_hasResynced, true)) {
        m_singleShot(ResyncDelay, this, [this, number = m_recordNumber] { resync(number); });
    }
    if (!isUsable()) {
        m_wasAway = true;
        return;
    }
    takeExtent(facts().extent);
    if (std::exchange(m_wasAway, false)) {
        show(m_range); // with the settings that were chosen meanwhile
    }
}

// The index, which has the sample rate, comes when somebody asks for the record. Whoever opened the window may have
// done so.
void OverviewSession::resync(int recordNumber)
{
    const bool isMissing = m_record.state() == State::Listed && facts().lack() == Lack::SampleRate;
    if (recordNumber == m_recordNumber && isMissing) {
        Q_EMIT si_resyncRecord(m_record.recordID());
    }
}

void OverviewSession::takeExtent(const TimeRange& extent)
{
    const TimeRange before = std::exchange(m_extent, extent);
    if (before == extent) {
        return;
    }
    if (before == TimeRange()) {
        setRange(extent, true);
        schedule(AskDelay);
    } else if (m_isWhole) {
        setRange(extent, true);
        scheduleGrowth();
    } else {
        show(m_range);
    }
}

void OverviewSession::setRange(const TimeRange& range, bool isWhole)
{
    m_isWhole = isWhole;
    if (std::exchange(m_range, range) != range) {
        Q_EMIT si_rangeChanged();
    }
}

void OverviewSession::show(const TimeRange& range)
{
    if (facts().lack() != Lack::Nothing) {
        return;
    }
    const TimeRange shown = facts().within(range, m_settings.fftLength);
    m_isTooShort = false; // until it is asked for
    setRange(shown, shown == m_extent);
    schedule(AskDelay);
}

void OverviewSession::showWhole()
{
    show(m_extent);
}

void OverviewSession::askAgain()
{
    ++m_scheduled;
    ask(true);
}

void OverviewSession::schedule(std::chrono::milliseconds delay)
{
    const int number = ++m_scheduled;
    m_singleShot(delay, this, [this, number] {
        if (number == m_scheduled) {
            ask(false);
        }
    });
}

// One that grows each second would never be asked for if each growth put it off.
void OverviewSession::scheduleGrowth()
{
    if (!std::exchange(m_isGrowing, true)) {
        m_singleShot(GrowthDelay, this, [this] { growthDue(); });
    }
}

void OverviewSession::growthDue()
{
    if (!std::exchange(m_isGrowing, false)) {
        return;
    }
    if (m_loader.isLoading()) {
        scheduleGrowth();
    } else {
        ask(false);
    }
}

void OverviewSession::ask(bool isForced)
{
    if (!isUsable()) {
        return;
    }
    const auto wish = facts().wish(m_range, m_settings, m_room);
    const bool isThere = m_loader.isLoading() || m_loader.state() == OverviewLoader::State::Complete;
    if (std::exchange(m_isTooShort, !wish) != !wish) {
        Q_EMIT si_recordChanged();
    }
    if (!wish) {
        m_loader.clear();
    } else if (isForced || !isThere || *wish != m_loader.levels().wish()) {
        m_loader.begin(
            {m_address, ZelkoCommon::overviewCookie(m_deviceID, m_record.recordID()), facts().patience(*wish)}, *wish);
    }
}

} // namespace SPECTRUM_OVERVIEW
