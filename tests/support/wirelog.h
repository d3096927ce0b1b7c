#pragma once

#include "faultproxy.h"

#include <zelkobase/connection/linkframe.h>
#include <zelkobase/maps/bookmarkitemmap.h>

#include <QStringList>

namespace ZelkoTest {

/// The commands on one bookmark map in what a proxy relays of a tree link. They are looked for in the bytes of the
/// messages, whatever else these are.
class WireLog
{
public:
    /// `proxy` keeps what it relays; it outlives the log.
    explicit WireLog(const FaultProxy& proxy)
        : m_proxy(proxy)
    {}

    /// The handle under which the value at that path of the recorder's tree was announced; 0 where it was not.
    quint32 handleOf(const QString& path) const
    {
        quint32 handle = 0;
        for (const QByteArray& bytes : m_proxy.relayed()) {
            forEachFrame(bytes, [&](const Frame& frame) {
                ZelkoCommon::link::Announcement what;
                const bool isAnnounced = frame.type == FrameType::Announce &&
                                         ZelkoCommon::link::readAnnouncement(frame.payload, what) && what.path == path;
                handle = isAnnounced ? frame.handle : handle;
                return isAnnounced;
            });
        }
        return handle;
    }

    /// Those on the map of that handle that came since the last time, in order: as "set 3", "erase 3", "clear", "lock"
    /// and "open".
    QStringList take(quint32 handle)
    {
        const QList<QByteArray> lanes = m_proxy.relayed();
        m_taken.resize(lanes.size());
        QStringList taken;
        for (qsizetype i = 0; i < lanes.size(); ++i) {
            const QStringList all = commandsIn(lanes[i], handle);
            taken += all.mid(m_taken[i]);
            m_taken[i] = all.size();
        }
        return taken;
    }

private:
    using Frame = ZelkoCommon::link::Frame;
    using FrameType = ZelkoCommon::link::FrameType;
    using Map = zelko::bookmarkmap::BookmarkItemMap;

    // `use` says whether it makes sense of what looks like a frame.
    template <typename Use>
    static void forEachFrame(const QByteArray& bytes, Use use)
    {
        std::string_view rest(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        while (!rest.empty()) {
            std::string_view behind = rest;
            Frame frame;
            const bool isFrame =
                ZelkoCommon::link::readFrame(behind, frame) == ZelkoCommon::link::ReadResult::Frame && use(frame);
            rest = isFrame ? behind : rest.substr(1);
        }
    }

    static QStringList commandsIn(const QByteArray& bytes, quint32 handle)
    {
        QStringList texts;
        forEachFrame(bytes, [&](const Frame& frame) {
            const bool isOnMap = frame.type == FrameType::Commands && frame.handle == handle;
            const QStringList commands = isOnMap ? textsOf(frame.payload) : QStringList();
            texts += commands;
            return !commands.isEmpty();
        });
        return texts;
    }

    // None where one of them is no command.
    static QStringList textsOf(std::string_view payload)
    {
        Map map;
        const char* position = payload.data();
        CommandReader reader(&position, static_cast<std::ptrdiff_t>(payload.size()));
        QStringList texts;
        while (reader.remaining() > 0) {
            const auto command = map.ReadCommand(reader, nullptr);
            if (!command) {
                return {};
            }
            command->Execute();
            texts += textOf(*command, map);
        }
        return texts;
    }

    static QString textOf(const Command& command, const Map& map)
    {
        if (const auto* const set = dynamic_cast<const Map::SetAtCommand*>(&command)) {
            return QStringLiteral("set %1").arg(set->key());
        }
        if (const auto* const erasure = dynamic_cast<const Map::EraseAtCommand*>(&command)) {
            return QStringLiteral("erase %1").arg(erasure->key());
        }
        if (dynamic_cast<const Map::ClearCommand*>(&command)) {
            return QStringLiteral("clear");
        }
        const bool isState = command.GetCommandId() == ValueBase::CommandIdState;
        return isState ? stateText(map) : QStringLiteral("command %1").arg(command.GetCommandId());
    }
    static QString stateText(const Map& map)
    {
        return map.GetState() == TValueState::Locked ? QStringLiteral("lock") : QStringLiteral("open");
    }

    const FaultProxy& m_proxy;
    QList<qsizetype> m_taken; // of each lane
};

} // namespace ZelkoTest
