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
    bool canReplay = false;
    int receiverKind = 0; ///< kind of endpoint of the receiver behind it; 0: none was named
    QString receiver;     ///< empty: none was named
    std::string peer;     ///< address that it called from; empty: this process
};

} // namespace ZelkoRecorder
