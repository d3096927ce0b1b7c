#include <zelkobase/connection/linkvtclient_p.h>

#include <zelkobase/connection/linkframe.h>

#include <utility>

namespace ZelkoCommon {

LinkVtClient::LinkVtClient(IObserver* origin, HandleOf handleOf, Send send)
    : m_origin(origin)
    , m_handleOf(std::move(handleOf))
    , m_send(std::move(send))
{}

LinkVtClient::~LinkVtClient()
{
    close();
}

void LinkVtClient::AddValue(ValueBase* value, int)
{
    if (!value || !m_send || value->GetTransmitter() == this || m_handleOf(*value) == 0) {
        return;
    }
    std::erase_if(m_values, [](const ValuePtr<ValueBase>& known) { return !known; });
    m_values.emplace_back(value);
    value->SetTransmitter(this);
}

void LinkVtClient::RemoveValue(ValueBase* value)
{
    if (value && value->GetTransmitter() == this) {
        value->SetTransmitter(nullptr);
    }
    std::erase_if(m_values, [value](const ValuePtr<ValueBase>& known) { return known.get() == value; });
}

void LinkVtClient::close()
{
    m_send = nullptr;
    m_handleOf = nullptr;
    for (const auto& value : std::exchange(m_values, {})) {
        if (value && value->GetTransmitter() == this) {
            value->SetTransmitter(nullptr);
        }
    }
}

void LinkVtClient::Transmit(ValueBase& value, const Command& command, IObserver* origin)
{
    const std::uint32_t handle = origin == m_origin || !m_handleOf ? 0 : m_handleOf(value);
    if (handle == 0) {
        return;
    }
    std::string bytes;
    command.AddCommandString(bytes);
    std::string frame;
    link::appendFrame(frame, link::FrameType::Commands, handle, bytes);
    m_send(value, frame);
}

} // namespace ZelkoCommon
