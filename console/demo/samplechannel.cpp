#include <console/demo/samplechannel.h>

#include <console/treepaths.h>

#include <valuecore/tree.h>
#include <valuecore/valueselection.h>
#include <valuecore/valuetypes.h>

namespace ZelkoConsole {

namespace names = zelko::names;

namespace {

std::vector<ValueSelection::Choice> choicesOf(const QStringList& words)
{
    std::vector<ValueSelection::Choice> choices;
    for (const QString& word : words) {
        choices.push_back({static_cast<int>(choices.size()), word});
    }
    return choices;
}

} // namespace

SampleChannel::SampleChannel(const QString& subSystem, const QString& id, const QString& name)
    : m_path(names::channelBasePath(ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem)) + id)
{
    using ZELKO_XML::Admin;
    put<ValueSelection>({names::allRecordReplayModes, names::replayMode, names::recordReplayModes});
    put<Value<bool>>({names::recordFlag, names::replayFlag, names::isDeletable});
    put<Value<int>>({names::recordTimeout, names::fileSizeInKB});
    put<Value<double>>({names::currentReplayPosition});
    put<Value<qint64>>({names::fileSize, names::startTime, names::stopTime, names::startPosition, names::stopPosition,
                        names::loopSize});
    put<Value<QString>>({names::channelName, names::errorCode, names::deviceId, names::recordName, names::dataRateClass,
                         names::recordStatus, names::replayDataRateClass, names::dataFormat, names::recordId});
    value<ValueSelection>(names::allRecordReplayModes)
        .SetChoices(choicesOf(Admin::RecordReplayAllModesInfo().words()), nullptr);
    for (const QLatin1String state : {names::replayMode, names::recordReplayModes}) {
        value<ValueSelection>(state).SetChoices(choicesOf(Admin::RecordReplayModeInfo().words()), nullptr);
    }
    value<Value<QString>>(names::channelName).SetValue(name, nullptr);
    setRecording(Recording::Stopped);
    setMayRecord(true);
    setMayReplay(true);
}

template <typename T>
T& SampleChannel::value(QLatin1String name) const
{
    return *Tree::Instance()->Find<T>(names::join(m_path, name));
}

template <typename T>
void SampleChannel::put(std::initializer_list<QLatin1String> valueNames) const
{
    for (const QLatin1String name : valueNames) {
        Tree::Instance()->Emplace(m_path, std::make_unique<T>(name, TValueState::Open));
    }
}

void SampleChannel::setRecording(Recording state) const
{
    value<ValueSelection>(names::allRecordReplayModes).SetCurrentKey(static_cast<int>(state), nullptr);
}

void SampleChannel::setReplay(Replay state) const
{
    value<ValueSelection>(names::recordReplayModes).SetCurrentKey(static_cast<int>(state), nullptr);
    value<ValueSelection>(names::replayMode).SetCurrentKey(static_cast<int>(state), nullptr);
}

void SampleChannel::setError(const QString& error) const
{
    value<Value<QString>>(names::errorCode).SetValue(error, nullptr);
}

void SampleChannel::setMayRecord(bool may) const
{
    value<Value<bool>>(names::recordFlag).SetValue(may, nullptr);
}

void SampleChannel::setMayReplay(bool may) const
{
    value<Value<bool>>(names::replayFlag).SetValue(may, nullptr);
}

void SampleChannel::setPosition(quint64 position) const
{
    value<Value<double>>(names::currentReplayPosition).SetValue(static_cast<double>(position), nullptr);
}

void SampleChannel::setRecordName(const QString& name) const
{
    value<Value<QString>>(names::recordName).SetValue(name, nullptr);
}

void SampleChannel::setRecordTimeout(int seconds) const
{
    value<Value<int>>(names::recordTimeout).SetValue(seconds, nullptr);
}

void SampleChannel::setFileSizeInKB(int size) const
{
    value<Value<int>>(names::fileSizeInKB).SetValue(size, nullptr);
}

SampleChannel::Recording SampleChannel::recording() const
{
    return static_cast<Recording>(value<ValueSelection>(names::allRecordReplayModes).GetCurrentKey());
}

SampleChannel::Replay SampleChannel::replay() const
{
    return static_cast<Replay>(value<ValueSelection>(names::replayMode).GetCurrentKey());
}

quint64 SampleChannel::position() const
{
    return static_cast<quint64>(value<Value<double>>(names::currentReplayPosition).GetValue());
}

QString SampleChannel::device() const
{
    return value<Value<QString>>(names::deviceId).GetValue();
}

QString SampleChannel::record() const
{
    return value<Value<QString>>(names::recordId).GetValue();
}

QString SampleChannel::recordName() const
{
    return value<Value<QString>>(names::recordName).GetValue();
}

int SampleChannel::recordTimeout() const
{
    return value<Value<int>>(names::recordTimeout).GetValue();
}

int SampleChannel::fileSizeInKB() const
{
    return value<Value<int>>(names::fileSizeInKB).GetValue();
}

void SampleChannel::remove() const
{
    Tree::Instance()->Remove(m_path);
}

} // namespace ZelkoConsole
