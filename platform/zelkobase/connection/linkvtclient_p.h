#pragma once

#include <valuecore/icommandtransmitter.h>
#include <valuecore/valueptr.h>
#include <zelkobase/connection/ivtclient.h>

#include <functional>
#include <string>
#include <vector>

namespace ZelkoCommon {

/// The writing end of one connection: turns the commands of its values into frames.
class LinkVtClient final : public IVtClient, public ICommandTransmitter
{
public:
    using HandleOf = std::function<std::uint32_t(const ValueBase&)>;
    using Send = std::function<void(const ValueBase& value, const std::string& frame)>;

    /// `origin` stands for the server: commands in its name came from there and are not sent back.
    LinkVtClient(IObserver* origin, HandleOf handleOf, Send send);
    ~LinkVtClient() override;

    void AddValue(ValueBase* value, int flags) override;
    void RemoveValue(ValueBase* value) override;

    /// Ends all that AddValue began; values that are added later are ignored.
    void close();

    void Transmit(ValueBase& value, const Command& command, IObserver* origin) override;

private:
    IObserver* const m_origin;
    HandleOf m_handleOf;
    Send m_send;
    std::vector<ValuePtr<ValueBase>> m_values;
};

} // namespace ZelkoCommon
