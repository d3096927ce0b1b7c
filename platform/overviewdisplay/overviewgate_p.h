#pragma once

#include "overviewsocket_p.h"

#include <overviewdisplay/overviewwish.h>

#include <zelkobase/service/overviewline.h>

#include <optional>

namespace SPECTRUM_OVERVIEW {

/// Tells the datagrams that answer a wish from all others that come to the same port. For one thread at a time.
class OverviewGate
{
public:
    /// `senders`: from where the answer can come, empty: from anywhere. The first piece that can be of it fixes address
    /// and port. `cookie` is that of device and record.
    OverviewGate(std::vector<std::string> senders, quint64 cookie, const OverviewWish& wish);

    /// The piece in a datagram; nothing for one that is not of the answer.
    std::optional<ZelkoCommon::OverviewPiece> admit(QByteArrayView datagram, const Sender& sender);

private:
    bool canBeFrom(const Sender& sender) const;
    bool isWished(const ZelkoCommon::OverviewPiece& piece) const;

    const std::vector<std::string> m_senders;
    const quint64 m_cookie;
    const OverviewWish m_wish;
    std::optional<Sender> m_sender;
};

} // namespace SPECTRUM_OVERVIEW
