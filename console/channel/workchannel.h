#pragma once

#include <console/channel/channelsituation.h>
#include <console/channel/servedchannels.h>
#include <console/soon.h>

#include <zelkobase/state/localzelkovalues.h>

#include <QObject>

#include <memory>

namespace ZelkoCommon {
class AbstractServerConnectionData;
}

namespace ZelkoGUI {
class ZelkoChannelModel;
}

namespace ZelkoConsole {

/// The channel of a sub system that the workstation records and replays on, by its model. Which one it is stands in the
/// local values of the sub system: the first that the recorder serves until somebody chooses another. A channel that
/// went comes back when the recorder serves it again, or one of the same name, as after a start of the recorder.
///
/// The console shows no waterfall, so what of a replay is seen is where the channel stands: that is kept in the local
/// value for it. GUI thread.
class WorkChannel : public QObject
{
    Q_OBJECT

public:
    using Connection = std::shared_ptr<ZelkoCommon::AbstractServerConnectionData>;

    WorkChannel(const QString& subSystem, const Connection& connection, QObject* parent = nullptr);
    ~WorkChannel() override;

    const ZelkoCommon::LocalZelkoValues& localValues() const { return m_local; }
    ZelkoGUI::ZelkoChannelModel* model() const { return m_model.get(); }
    const ServedChannels::Channels& channels() const { return m_served.channels(); }

    /// Whether there is anything to work with or to tell: not where the recorder serves no channel at all.
    bool isOffered() const;

    /// ID of the channel; empty: none so far.
    QString id() const;

    /// Works on another one from here on.
    void choose(const QString& id);

    ChannelSituation situation() const;

    /// Settings of the next recording; empty and 0 where they are not there.
    QString recordName() const;
    int recordTimeout() const; ///< seconds; 0: none
    int fileSizeInKB() const;  ///< 0: no limit

    /// Records on the device that the workstation works on.
    void startRecording();

Q_SIGNALS:
    /// Something of all this may be another; once per turn of the event loop.
    void changed();

private:
    void look();
    void chooseServed();
    void takeUp();
    void observe();
    void mirrorPosition();
    void rightsChanged();

    const QString m_subSystem;
    const Connection m_connection; // for what is written
    const ZelkoCommon::LocalZelkoValues m_local;
    ServedChannels m_served;
    ValuePtr<Value<QString>> m_id;
    QString m_name; // of the channel when it was last seen
    bool m_mayUse;
    std::unique_ptr<ZelkoGUI::ZelkoChannelModel> m_model;
    Soon m_soon{[this] { Q_EMIT changed(); }};
    TreeObserver m_stateObserver;
    TreeObserver m_positionObserver;
    ValueObservingPtr<ValueSelection> m_recording;
    ValueObservingPtr<ValueSelection> m_replay;
    ValueObservingPtr<Value<QString>> m_error;
    ValueObservingPtr<Value<bool>> m_recordFlag;
    ValueObservingPtr<Value<bool>> m_replayFlag;
    ValueObservingPtr<Value<QString>> m_recordName;
    ValueObservingPtr<Value<int>> m_recordTimeout;
    ValueObservingPtr<Value<int>> m_fileSize;
    ValueObservingPtr<Value<double>> m_position;
};

} // namespace ZelkoConsole
