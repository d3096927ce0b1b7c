#pragma once

#include <overviewdisplay/overviewdisplay_export.h>
#include <overviewdisplay/overviewlevels.h>

#include <observerbase/singleshot.h>

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

namespace SPECTRUM_OVERVIEW {

/// Gets the answer to a wish: has it asked for, takes what comes in slices that no window notices, and has what does
/// not come asked for again, a bounded number of times. A recorder serves one wish of a client at a time, so there is
/// one. For the GUI thread.
class OVERVIEWDISPLAY_EXPORT OverviewLoader : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Idle,       ///< nothing is asked for
        Waiting,    ///< asked for, and nothing has come
        Arriving,   ///< some lines have come
        Complete,   ///< all lines have come
        Incomplete, ///< some lines are missing, and are not waited for any more
        Silent,     ///< no line has come, and none is waited for any more
        NoPort      ///< this host has no port to hear at
    };

    /// After so long without a line, unless more is said, nothing more is expected.
    static constexpr std::chrono::milliseconds Silence{5000};

    struct Recorder
    {
        QString address;    ///< in numbers; anything else: not known
        quint64 cookie = 0; ///< of device and record

        /// How long a line may take.
        std::chrono::milliseconds patience = Silence;
    };

    /// How often one wish is asked for: in all, and in a row without a line.
    static constexpr int MostAsks = 16;
    static constexpr int MostFruitlessAsks = 3;

    /// So long the recorder is left alone after an answer that broke off, before it is asked again; each further time
    /// it is twice as long. It serves a few at once, and may have ended this stream for that of another window.
    static constexpr std::chrono::milliseconds FirstPause{2000};
    static constexpr std::chrono::milliseconds LongestPause{32000};

    /// How long lines that overtook one another are waited for behind the last one.
    static constexpr std::chrono::milliseconds Stragglers{500};

    using SingleShot = Vorn::SingleShot;

    explicit OverviewLoader(QObject* parent = nullptr);
    ~OverviewLoader() override;

    /// Replaces the timer behind the delays, so that a test need not wait. QTimer's is there from the start.
    void setSingleShot(SingleShot singleShot);

    /// Empties the levels and asks; what was asked for before is over. A slot of the signals may begin again, end, or
    /// delete the loader.
    void begin(const Recorder& recorder, const OverviewWish& wish);

    /// Waits no more; the levels stay. What has come is Complete or not, as before.
    void end();

    /// The same, and forgets the levels.
    void clear();

    State state() const;

    /// Whether something is waited for.
    bool isLoading() const { return state() == State::Waiting || state() == State::Arriving; }

    /// Lives as long as the loader.
    const OverviewLevels& levels() const;

Q_SIGNALS:
    /// Somebody is to ask the recorder for this, which may be a part of what is wanted, to be sent to that address and
    /// port of this host; the address is empty where the recorder is to take the one from which it is called.
    void si_ask(const SPECTRUM_OVERVIEW::OverviewWish& wish, const QString& address, uint port);

    /// All levels are gone. The state is Idle, of which nothing else is told where Waiting follows.
    void si_emptied();

    /// These lines and perhaps others between them are complete now. Once for a slice of what came.
    void si_linesArrived(int first, int last);

    void si_stateChanged();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace SPECTRUM_OVERVIEW
