#pragma once

#include <overviewdisplay/overviewdisplay_export.h>
#include <overviewdisplay/overviewwish.h>

#include <zelkobase/service/overviewline.h>

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace SPECTRUM_OVERVIEW {

/// Hears the answer to one wish, on a thread of its own, so that nothing is lost while windows have something else to
/// do. It has a port of its own, so the answer to an older wish is never taken for one to this. What does not come from
/// the recorder, or is not of that answer, is passed over.
///
/// The thread hands over by a queue, which is all that it shares. Who owns the stream is one thread; the answer ends
/// with the stream, as a recorder that finds the port closed sends no more.
class OVERVIEWDISPLAY_EXPORT OverviewStream
{
public:
    /// Pieces that wait to be taken. What comes beyond them is lost, as a datagram may be anyway.
    static constexpr std::size_t mostWaiting = 16'384;

    /// `recorder` is the address of the recorder in numbers. With anything else it is not known, and the first piece
    /// that can be of the answer says from where the others come. `cookie` is `overviewCookie` of device and record.
    /// `wakeUp` is called on the stream's thread when there is something to take and nothing was before; it must not
    /// call the stream.
    OverviewStream(const QString& recorder, quint64 cookie, const OverviewWish& wish, std::function<void()> wakeUp);

    /// Closes the port. `wakeUp` is not called any more from the return on.
    ~OverviewStream();
    OverviewStream(const OverviewStream&) = delete;
    OverviewStream& operator=(const OverviewStream&) = delete;

    /// Where the recorder is to send its answer to; 0: there is no port to be had, and nothing will come.
    quint16 port() const;

    /// The address of this host that the recorder is told; empty where it is to take the one from which it is called.
    QString ownAddress() const;

    /// The next pieces, as they came, at most so many. Does not block.
    std::vector<ZelkoCommon::OverviewPiece> take(std::size_t most);

    /// Datagrams that were not of the answer, or came while there was no room.
    quint64 refused() const;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace SPECTRUM_OVERVIEW
