#pragma once

#include <zelkobase/connection/linkframe.h>

#include <valuecore/valuebase.h>

#include <string>

/// Writes the stream of a server, one call per frame.
class FrameStream
{
public:
    using FrameType = ZelkoCommon::link::FrameType;

    FrameStream& begin() { return frame(FrameType::StateBegin); }
    FrameStream& ready() { return frame(FrameType::Ready); }
    FrameStream& end() { return frame(FrameType::StateEnd); }
    FrameStream& withdraw(std::uint32_t handle) { return frame(FrameType::Withdraw, handle); }

    /// Without a type a node.
    FrameStream& announce(std::uint32_t handle, const QString& path, const std::string& typeName = {})
    {
        ZelkoCommon::link::appendAnnouncement(m_bytes, handle, {path, typeName});
        return *this;
    }

    FrameStream& commands(std::uint32_t handle, const std::string& commands)
    {
        return frame(FrameType::Commands, handle, commands);
    }

    /// The state of `value`.
    FrameStream& state(std::uint32_t handle, ValueBase& value)
    {
        std::string commands;
        value.AddObjectStateStringForTransmission(commands, 0);
        return frame(FrameType::Commands, handle, commands);
    }

    FrameStream& frame(FrameType type, std::uint32_t handle = 0, const std::string& payload = {})
    {
        ZelkoCommon::link::appendFrame(m_bytes, type, handle, payload);
        return *this;
    }

    const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};
