#include "overviewgate_p.h"

#include <algorithm>
#include <utility>

namespace SPECTRUM_OVERVIEW {

using ZelkoCommon::OverviewPiece;

OverviewGate::OverviewGate(std::vector<std::string> senders, quint64 cookie, const OverviewWish& wish)
    : m_senders(std::move(senders))
    , m_cookie(cookie)
    , m_wish(wish)
{}

std::optional<OverviewPiece> OverviewGate::admit(QByteArrayView datagram, const Sender& sender)
{
    if (!canBeFrom(sender)) {
        return std::nullopt;
    }
    std::optional<OverviewPiece> piece = ZelkoCommon::overviewPiece(datagram);
    if (!piece || !isWished(*piece)) {
        return std::nullopt;
    }
    m_sender = sender;
    return piece;
}

bool OverviewGate::canBeFrom(const Sender& sender) const
{
    if (m_sender) {
        return sender == *m_sender;
    }
    return m_senders.empty() || std::find(m_senders.begin(), m_senders.end(), sender.address) != m_senders.end();
}

bool OverviewGate::isWished(const OverviewPiece& piece) const
{
    return piece.cookie == m_cookie && m_wish.canHave(piece.lineCount, piece.binCount);
}

} // namespace SPECTRUM_OVERVIEW
