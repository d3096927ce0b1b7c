#pragma once

#include <reportcore/bytereader.h>
#include <zelkobase/connection/linkframe.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// Turns the bytes of a fuzzer into a stream of the tree link. Bytes as they come hardly ever get past the size of the
/// first frame, so most of them are taken as a script: a byte for the type of a frame and one for its handle, then what
/// the type needs, with a size of one byte where the frame has one of four.
class FrameScript
{
public:
    explicit FrameScript(std::string_view script)
        : m_reader(script.data(), script.data() + script.size())
    {}

    std::string frames()
    {
        std::string stream;
        while (m_reader.left() > 0) {
            appendNext(stream);
        }
        return stream;
    }

    /// The same for what a client may send: commands only, on items of a small tree.
    std::string writes()
    {
        std::string stream;
        while (m_reader.left() > 0) {
            const std::uint32_t handle = next() % 16U;
            ZelkoCommon::link::appendFrame(stream, FrameType::Commands, handle, bytes());
        }
        return stream;
    }

private:
    using FrameType = ZelkoCommon::link::FrameType;

    static constexpr std::array<const char*, 8> paths{"/A", "/A/B", "/A/B/C", "/B", "/A/Map", "/B/Map", "/A/", "//"};
    static constexpr std::array<const char*, 13> types{
        "",          "Text",          "Integer",         "Boolean",
        "Number",    "Integer64",     "NumericDouble",   "NumericInteger64",
        "Selection", "RecordItemMap", "BookmarkItemMap", "StringItemFrequencyMap",
        "Foreign"};

    std::uint8_t next()
    {
        std::uint8_t byte = 0;
        m_reader.read(byte);
        return byte;
    }

    // As many as it says, or as there are.
    std::string_view bytes()
    {
        const std::size_t size = std::min<std::size_t>(next(), m_reader.left());
        return {m_reader.take(size), size};
    }

    void appendNext(std::string& stream)
    {
        const auto type = static_cast<FrameType>(1 + next() % 6);
        const std::uint32_t handle = next() % 8U;
        if (type == FrameType::Announce) {
            const QString path = QString::fromLatin1(paths[next() % paths.size()]);
            ZelkoCommon::link::appendAnnouncement(stream, handle, {path, types[next() % types.size()]});
        } else if (type == FrameType::Commands) {
            ZelkoCommon::link::appendFrame(stream, type, handle, bytes());
        } else {
            ZelkoCommon::link::appendFrame(stream, type, handle);
        }
    }

    REPORTGENERATOR::ByteReader m_reader;
};
