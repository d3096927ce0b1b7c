#include <recorder/served/channelbranch.h>

#include <recorder/served/putvalue.h>

#include <zelkobase/data/admin.h>
#include <zelkobase/names/valuenames.h>

namespace ZelkoRecorder {

namespace names = zelko::names;
using ZELKO_XML::Admin;

namespace {

// The keys are the numbers of the enumerators.
ValueSelection* putStates(Tree& tree, const QString& path, const QStringList& words, int first)
{
    std::vector<ValueSelection::Choice> choices;
    for (const QString& word : words) {
        choices.push_back({static_cast<int>(choices.size()), word});
    }
    auto* const value = putValue<ValueSelection>(tree, path);
    value->SetChoices(choices, nullptr);
    value->SetCurrentKey(first, nullptr);
    return value;
}

ValueSelection* putReplayState(Tree& tree, const QString& path)
{
    return putStates(tree, path, Admin::RecordReplayModeInfo().words(),
                     static_cast<int>(Admin::RecordReplayMode::Stopped));
}

template <typename Path>
void putStates(ChannelBranch& branch, Tree& tree, const Path& at)
{
    branch.recordingState = putStates(tree, at(names::allRecordReplayModes), Admin::RecordReplayAllModesInfo().words(),
                                      static_cast<int>(Admin::RecordReplayAllModes::Stopped));
    branch.replayState = putReplayState(tree, at(names::replayMode));
    branch.guiReplayState = putReplayState(tree, at(names::recordReplayModes));
    branch.errorCode = putValue<TextValue>(tree, at(names::errorCode));
    branch.channelName = putValue<TextValue>(tree, at(names::channelName));
    branch.recordFlag = putValue<BoolValue>(tree, at(names::recordFlag));
    branch.replayFlag = putValue<BoolValue>(tree, at(names::replayFlag));
    branch.dataRateClass = putValue<TextValue>(tree, at(names::dataRateClass));
}

template <typename Path>
void putWishes(ChannelBranch& branch, Tree& tree, const Path& at)
{
    branch.deviceId = putValue<TextValue>(tree, at(names::deviceId));
    branch.recordName = putValue<TextValue>(tree, at(names::recordName));
    branch.recordTimeout = putValue<IntValue>(tree, at(names::recordTimeout));
    branch.fileSizeInKB = putValue<IntValue>(tree, at(names::fileSizeInKB));
    branch.position = putValue<Value<double>>(tree, at(names::currentReplayPosition));
}

} // namespace

QString ChannelBranch::pathOf(const QString& channelId)
{
    return names::channelBasePath(QString()) + channelId;
}

ChannelBranch::ChannelBranch(Tree& tree, const QString& channelId)
{
    const auto at = [node = pathOf(channelId)](QLatin1String name) { return names::join(node, name); };
    putStates(*this, tree, at);
    putWishes(*this, tree, at);

    fileSize = putValue<Value<qint64>>(tree, at(names::fileSize));
    startTime = putValue<Value<qint64>>(tree, at(names::startTime));
    stopTime = putValue<Value<qint64>>(tree, at(names::stopTime));
    startPosition = putValue<Value<qint64>>(tree, at(names::startPosition));
    stopPosition = putValue<Value<qint64>>(tree, at(names::stopPosition));
    loopSize = putValue<Value<qint64>>(tree, at(names::loopSize));
    recordStatus = putValue<TextValue>(tree, at(names::recordStatus));
    replayDataRateClass = putValue<TextValue>(tree, at(names::replayDataRateClass));
    dataFormat = putValue<TextValue>(tree, at(names::dataFormat));
    isDeletable = putValue<BoolValue>(tree, at(names::isDeletable));
    recordId = putValue<TextValue>(tree, at(names::recordId));
    // Last: to a new client a map comes late, and with it what stands behind it.
    bookmarks = putValue<zelko::bookmarkmap::BookmarkItemMap>(tree, at(names::bookmarks));
}

} // namespace ZelkoRecorder
