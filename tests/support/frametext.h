#pragma once

#include <zelkobase/connection/linkframe.h>

#include <QStringList>

#include <string_view>

/// What a stream of frames says, a text per frame: "begin", "announce 3 /A/B int", "ready", "commands 3", "end",
/// "withdraw 3"; last "malformed" or "incomplete" where it does not end with a frame.
inline QStringList frameTexts(std::string_view bytes)
{
    using namespace ZelkoCommon::link;
    QStringList texts;
    Frame frame;
    while (!bytes.empty()) {
        const ReadResult result = readFrame(bytes, frame);
        if (result != ReadResult::Frame) {
            return texts << (result == ReadResult::Malformed ? QStringLiteral("malformed")
                                                             : QStringLiteral("incomplete"));
        }
        Announcement what;
        switch (frame.type) {
        case FrameType::StateBegin:
            texts << QStringLiteral("begin");
            break;
        case FrameType::Announce:
            readAnnouncement(frame.payload, what);
            texts << QStringLiteral("announce %1 %2 %3")
                         .arg(QString::number(frame.handle), what.path, QString::fromStdString(what.typeName))
                         .trimmed();
            break;
        case FrameType::Ready:
            texts << QStringLiteral("ready");
            break;
        case FrameType::Commands:
            texts << QStringLiteral("commands %1").arg(frame.handle);
            break;
        case FrameType::StateEnd:
            texts << QStringLiteral("end");
            break;
        case FrameType::Withdraw:
            texts << QStringLiteral("withdraw %1").arg(frame.handle);
            break;
        }
    }
    return texts;
}
