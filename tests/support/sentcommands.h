#pragma once

#include <valuecore/command.h>
#include <valuecore/icommandtransmitter.h>

#include <string>
#include <vector>

/// Keeps what values pass on, in order, instead of sending it.
class SentCommands final : public ICommandTransmitter
{
public:
    struct Sent
    {
        ValueBase* value;
        int id;
        IObserver* origin;
    };

    void Transmit(ValueBase& value, const Command& command, IObserver* origin) override
    {
        m_sent.push_back({&value, command.GetCommandId(), origin});
        command.AddCommandString(m_stream);
    }

    const std::vector<Sent>& sent() const { return m_sent; }
    std::vector<int> ids() const
    {
        std::vector<int> result;
        for (const Sent& sent : m_sent) {
            result.push_back(sent.id);
        }
        return result;
    }

    /// All that was sent, as one stream.
    const std::string& stream() const { return m_stream; }

private:
    std::vector<Sent> m_sent;
    std::string m_stream;
};
