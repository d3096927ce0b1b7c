#pragma once

#include <zelkobase/data/zelko_recorddata.h>

#include <QString>

#include <string>

namespace ZelkoRecorder {

/// What a channel manager wants of a channel, as it said it: any text may stand here.
struct ChannelWish
{
    using DataRate = ZELKO_XML::ZELKO_RecordData::DataRate;
    using DataFormat = ZELKO_XML::ZELKO_RecordData::DataFormat;

    QString name;
    QString preferredDevice; ///< empty: any
    DataRate dataRate = DataRate::NotSet;
    DataFormat format = DataFormat::Unknown;
    bool canRecord = false;
    bool canReplay = false; ///< its manager takes the samples of replays
    std::string peer;       ///< address that it called from; empty: this process
    bool isOwn = false;     ///< of the recorder itself: it keeps its manager and its format, and nobody removes it
};

} // namespace ZelkoRecorder
