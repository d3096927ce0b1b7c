#pragma once

#include <recorder/store/recordpointer.h>

#include <zelkoidl/recorderservice.hh>

namespace ZelkoRecorder {

/// A record in the form in which the service's calls carry it. What does not fit into a number of the wire becomes the
/// largest that does. Any thread.
/// @{
QD_ZLK::RecordInfo recordInfo(const ZELKO_XML::ZELKO_RecordData& record);
QD_ZLK::RecordMetaData recordMetaData(const QString& device, const ZELKO_XML::ZELKO_RecordData& record);
/// @}

/// Bytes that `info` takes in an answer, about, and never less than it does.
std::size_t wireSize(const QD_ZLK::RecordInfo& info);

} // namespace ZelkoRecorder
