#pragma once

#include <QString>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace SPECTRUM_OVERVIEW {

/// Who has sent a datagram.
struct Sender
{
    std::string address; ///< as ZelkoCommon::plainAddress has it
    quint16 port = 0;

    bool operator==(const Sender&) const = default;
};

/// Where the lines of one overview come in: a port that nobody else has. Never blocks; for one thread at a time.
class OverviewSocket
{
public:
    /// How the lines of a recorder come.
    struct Way
    {
        std::string own;                  ///< what the recorder is told; empty: it takes that from which it is called
        std::vector<std::string> senders; ///< from where they can come; empty: from anywhere

        bool operator==(const Way&) const = default;
    };

    /// The way of the lines of the recorder at that address (empty: not known) to a host that has `own` on the way to
    /// it (empty: there is none).
    static Way wayTo(const std::string& recorder, const std::string& own);

    /// `recorder` is the address of the recorder in numbers; anything else means that it is not known. Null if there is
    /// no socket to be had.
    static std::unique_ptr<OverviewSocket> open(const QString& recorder);
    ~OverviewSocket();
    OverviewSocket(const OverviewSocket&) = delete;
    OverviewSocket& operator=(const OverviewSocket&) = delete;

    /// What the recorder is told: the address of this host on the way to it. Empty where the recorder is to take the
    /// one from which it is called, as it knows better.
    QString ownAddress() const { return QString::fromStdString(m_way.own); }
    quint16 port() const;

    /// From where the lines of that recorder can come; empty: from anywhere.
    const std::vector<std::string>& senders() const { return m_way.senders; }

    /// To be polled for reading.
    int descriptor() const { return m_socket; }

    /// The next datagram, into `buffer`; false if none waits. `size` is the size that it had: greater than `room` for
    /// one that did not fit.
    bool read(char* buffer, std::size_t room, std::size_t* size, Sender* sender) const;

private:
    OverviewSocket(int socket, Way way);

    const int m_socket;
    const Way m_way;
};

} // namespace SPECTRUM_OVERVIEW
