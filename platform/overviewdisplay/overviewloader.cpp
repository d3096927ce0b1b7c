#include <overviewdisplay/overviewloader.h>

#include <overviewdisplay/overviewstream.h>

#include <zelkobase/connection/wakeup.h>

#include <QElapsedTimer>
#include <QPointer>

#include <algorithm>
#include <optional>
#include <utility>

namespace SPECTRUM_OVERVIEW {

using ZelkoCommon::OverviewPiece;

namespace {

// A window has 16 ms for a picture, and paints it in the rest.
constexpr qint64 sliceTime = 4; // milliseconds
constexpr std::size_t sliceStep = 32;

// The gaps that random losses leave are too many to be asked for one by one.
constexpr int mostRanges = 4;

} // namespace

struct OverviewLoader::Private
{
    explicit Private(OverviewLoader* theOwner)
        : owner(theOwner)
        , wakeUp([this] { takeSlice(); })
    {}

    void setState(State newState);
    void askForAll();
    void ask(const OverviewWish& wish);
    void watch(std::chrono::milliseconds delay, int number, void (Private::*then)());
    void look();
    void pauseEnded();
    void takeSlice();
    void takeSome(const std::vector<OverviewPiece>& pieces);
    void take(const OverviewPiece& piece);
    void tellArrived();
    bool isAnswered() const;
    int fruitlessSoFar() const;
    bool isOver() const;
    void answerEnded();
    void askForMissing();
    void giveUp();
    State outcome() const;

    OverviewLoader* const owner;
    SingleShot singleShot = Vorn::callLater;
    Recorder recorder;
    OverviewLevels levels;
    State state = State::Idle;
    std::optional<LineRange> part;  // what is asked for, if it is not all
    std::vector<LineRange> missing; // and will be asked for next
    std::optional<LineRange> arrived;
    int presentAsk = 0;    // its number, so that timers of others are known
    int asks = 0;          // for this wish
    int fruitlessAsks = 0; // the last ones before this
    int linesBefore = 0;   // that were complete when it was asked
    bool hasHeard = false; // since the last look
    std::chrono::milliseconds nextPause = FirstPause;
    ZelkoCommon::WakeUp wakeUp;
    std::unique_ptr<OverviewStream> stream; // goes first, as it calls the above
};

OverviewLoader::OverviewLoader(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{}

OverviewLoader::~OverviewLoader() = default;

void OverviewLoader::setSingleShot(SingleShot singleShot)
{
    d->singleShot = std::move(singleShot);
}

OverviewLoader::State OverviewLoader::state() const
{
    return d->state;
}

const OverviewLevels& OverviewLoader::levels() const
{
    return d->levels;
}

void OverviewLoader::begin(const Recorder& recorder, const OverviewWish& wish)
{
    const QPointer<OverviewLoader> self(this);
    d->recorder = recorder;
    d->asks = 0;
    d->fruitlessAsks = 0;
    d->nextPause = FirstPause;
    d->missing.clear();
    d->levels.begin(wish);
    d->stream.reset();
    d->state = State::Idle;
    const int before = ++d->presentAsk;
    Q_EMIT si_emptied();
    if (self && d->presentAsk == before) {
        d->askForAll();
    }
}

void OverviewLoader::end()
{
    if (isLoading()) {
        d->giveUp();
    }
}

void OverviewLoader::clear()
{
    const QPointer<OverviewLoader> self(this);
    const int before = ++d->presentAsk;
    const State stateBefore = std::exchange(d->state, State::Idle);
    d->stream.reset();
    d->levels.begin({});
    Q_EMIT si_emptied();
    if (self && d->presentAsk == before && stateBefore != State::Idle) {
        Q_EMIT si_stateChanged();
    }
}

void OverviewLoader::Private::setState(State newState)
{
    if (newState != state) {
        state = newState;
        Q_EMIT owner->si_stateChanged();
    }
}

void OverviewLoader::Private::askForAll()
{
    part.reset();
    ask(levels.wish());
}

// Whoever asks the recorder may wait for it, so the time that is waited for lines begins afterwards.
void OverviewLoader::Private::ask(const OverviewWish& wish)
{
    const QPointer<OverviewLoader> self(owner);
    const int number = ++presentAsk;
    ++asks;
    linesBefore = levels.completeLines();
    hasHeard = false;
    stream = std::make_unique<OverviewStream>(recorder.address, recorder.cookie, wish, [this] { wakeUp.call(); });
    if (stream->port() == 0) {
        stream.reset();
        setState(State::NoPort);
        return;
    }
    const auto isPresent = [&] { return self && number == presentAsk; };
    setState(levels.completeLines() == 0 ? State::Waiting : State::Arriving);
    if (isPresent()) {
        Q_EMIT owner->si_ask(wish, stream->ownAddress(), stream->port());
    }
    if (isPresent()) {
        watch(recorder.patience, number, &Private::look);
    }
}

void OverviewLoader::Private::watch(std::chrono::milliseconds delay, int number, void (Private::*then)())
{
    singleShot(delay, owner, [this, number, then] {
        if (number == presentAsk && stream) {
            (this->*then)();
        }
    });
}

void OverviewLoader::Private::look()
{
    if (std::exchange(hasHeard, false)) {
        watch(recorder.patience, presentAsk, &Private::look);
    } else if (isOver()) {
        giveUp();
    } else {
        watch(nextPause, presentAsk, &Private::pauseEnded);
        nextPause = std::min(2 * nextPause, LongestPause);
    }
}

// What is late is heard as long as nothing else is asked for.
void OverviewLoader::Private::pauseEnded()
{
    if (hasHeard) {
        look();
    } else {
        answerEnded();
    }
}

void OverviewLoader::Private::takeSlice()
{
    QElapsedTimer timer;
    timer.start();
    std::size_t taken = sliceStep;
    while (stream && taken == sliceStep && timer.elapsed() < sliceTime) {
        const std::vector<OverviewPiece> pieces = stream->take(sliceStep);
        taken = pieces.size();
        takeSome(pieces);
    }
    if (taken == sliceStep) {
        wakeUp.call();
    }
    tellArrived();
}

void OverviewLoader::Private::takeSome(const std::vector<OverviewPiece>& pieces)
{
    for (const OverviewPiece& piece : pieces) {
        take(piece);
    }
}

void OverviewLoader::Private::take(const OverviewPiece& piece)
{
    const int before = levels.completeLines();
    if (!levels.take(piece)) {
        return;
    }
    hasHeard = true;
    if (levels.completeLines() > before) {
        const int line = static_cast<int>(piece.line) + (part ? part->first : 0);
        arrived = {std::min(line, arrived ? arrived->first : line), std::max(line, arrived ? arrived->last : line)};
    }
    if (piece.isLast) {
        watch(Stragglers, presentAsk, &Private::answerEnded);
    }
}

void OverviewLoader::Private::tellArrived()
{
    const QPointer<OverviewLoader> self(owner);
    const int number = presentAsk;
    if (const auto lines = std::exchange(arrived, std::nullopt)) {
        Q_EMIT owner->si_linesArrived(lines->first, lines->last);
        if (self && number == presentAsk) {
            setState(State::Arriving);
        }
    }
    if (self && number == presentAsk && stream && isAnswered()) {
        answerEnded();
    }
}

bool OverviewLoader::Private::isAnswered() const
{
    if (!part) {
        return levels.isWhole();
    }
    for (int line = part->first; line <= part->last; ++line) {
        if (!levels.isComplete(line)) {
            return false;
        }
    }
    return true;
}

int OverviewLoader::Private::fruitlessSoFar() const
{
    return levels.completeLines() > linesBefore ? 0 : fruitlessAsks + 1;
}

bool OverviewLoader::Private::isOver() const
{
    return levels.isWhole() || fruitlessSoFar() >= MostFruitlessAsks || asks >= MostAsks;
}

void OverviewLoader::Private::answerEnded()
{
    if (isOver()) {
        giveUp();
    } else {
        fruitlessAsks = fruitlessSoFar();
        askForMissing();
    }
}

// One range after the other, so that one without an answer does not hold up the others.
void OverviewLoader::Private::askForMissing()
{
    if (missing.empty()) {
        missing = levels.missing(mostRanges);
    }
    if (missing.empty()) {
        askForAll();
        return;
    }
    const LineRange lines = levels.partAround(missing.back());
    missing.pop_back();
    levels.beginPart(lines);
    part = lines;
    ask(levels.partWish(lines));
}

OverviewLoader::State OverviewLoader::Private::outcome() const
{
    if (levels.isWhole()) {
        return State::Complete;
    }
    return levels.completeLines() == 0 ? State::Silent : State::Incomplete;
}

void OverviewLoader::Private::giveUp()
{
    stream.reset();
    ++presentAsk;
    setState(outcome());
}

} // namespace SPECTRUM_OVERVIEW
