#pragma once

#include <zelkoguibase/state/zelkochannelmodel.h>

#include <QStringList>

#include <utility>

/// The signals of a channel model, in order: "recording stopped", "error E7", "state 0", "reconnected 4",
/// "replay running", "connection 2 fine" and so on.
class ChannelSignalLog
{
public:
    using Model = ZelkoGUI::ZelkoChannelModel;

    explicit ChannelSignalLog(const Model& model)
    {
        logName(model, &Model::si_recordingStopped, QStringLiteral("recording stopped"));
        logName(model, &Model::si_recordingStopping, QStringLiteral("recording stopping"));
        logName(model, &Model::si_recordingNormal, QStringLiteral("recording normal"));
        logName(model, &Model::si_recordingContinuous, QStringLiteral("recording continuous"));
        logName(model, &Model::si_replayRunning, QStringLiteral("replay running"));
        logName(model, &Model::si_replayPausing, QStringLiteral("replay pausing"));
        logName(model, &Model::si_replayPaused, QStringLiteral("replay paused"));
        logName(model, &Model::si_replayStopping, QStringLiteral("replay stopping"));
        logName(model, &Model::si_replayStopped, QStringLiteral("replay stopped"));
        logTexts(model);
    }

    QStringList take() { return std::exchange(m_texts, {}); }

private:
    template <typename Signal>
    void logName(const Model& model, Signal signal, const QString& name)
    {
        QObject::connect(&model, signal, &m_context, [this, name] { m_texts.append(name); });
    }

    void logTexts(const Model& model)
    {
        const auto add = [this](const QString& text) { m_texts.append(text); };
        QObject::connect(&model, &Model::si_errorCode, &m_context,
                         [=](const QString& text) { add(QStringLiteral("error ") + text); });
        QObject::connect(&model, &Model::si_availableChannelState, &m_context,
                         [=](int state) { add(QStringLiteral("state %1").arg(state)); });
        QObject::connect(&model, &Model::channelReconnected, &m_context,
                         [=](auto mode) { add(QStringLiteral("reconnected %1").arg(static_cast<int>(mode))); });
        QObject::connect(&model, &Model::si_ccoConnectionState, &m_context, [=](int state, const QString& result) {
            add(QStringLiteral("connection %1 ").arg(state) + result);
        });
    }

    QStringList m_texts;
    QObject m_context;
};
