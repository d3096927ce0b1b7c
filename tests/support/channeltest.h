#pragma once

#include "callending.h"
#include "frames.h"
#include "publishedmanager.h"
#include "servicerecorder.h"
#include "storedbytes.h"

#include <QTest>
#include <QUdpSocket>

namespace ZelkoTest {

/// The base of tests of a recorder's channels: a recorder with its service, a manager that registers channels there and
/// is called back, and the data that it sends.
class ChannelTest : public QObject
{
protected:
    struct Registered
    {
        QD_ZLK::IF_ZLK_c_Chan_var channel;
        QString id;
    };

    void begin(const ZelkoRecorder::ServiceHost::Options& options = {}, const ServiceRecorder::Fill& fill = {})
    {
        m_recorder.reset();
        m_recorder = ServiceRecorder::loaded(fill, options);
        QVERIFY(m_recorder);
        m_published = std::make_unique<PublishedManager>(m_recorder->orb);
        m_manager = &m_published->manager();
    }
    void end()
    {
        m_manager->release();
        m_recorder.reset();
    }

    /// With a manager whose sign of life is asked for so often that a test can wait for that.
    static ZelkoRecorder::ServiceHost::Options watchful()
    {
        ZelkoRecorder::ServiceHost::Options options;
        options.channels.channel.pingInterval = std::chrono::milliseconds(20);
        return options;
    }

    QD_ZLK::IF_ZLK_c_ZLK_var entry() const { return m_recorder->entry(); }

    /// Registers a channel of the manager, which is reached at `port`; 0: at its own.
    Registered enter(const char* name, const char* device = "", quint16 port = 0, bool canReplay = false) const
    {
        return onCallerThread([&] {
            CORBA::String_var id;
            Registered result;
            result.channel = entry()->registerChannelEx(m_published->reference(port), QD_ZLK::RATE_16_KB,
                                                        QD_ZLK::FORMAT_IQ16, true, canReplay, name, device, id.out());
            result.id = ZelkoCommon::fromCorba(id.in());
            return result;
        });
    }
    QString entering(const char* name, const char* device = "") const
    {
        return endingOf([&] {
            CORBA::String_var id;
            QD_ZLK::IF_ZLK_c_Chan_var(entry()->registerChannelEx(m_published->reference(), QD_ZLK::RATE_16_KB,
                                                                 QD_ZLK::FORMAT_IQ16, true, false, name, device,
                                                                 id.out()));
        });
    }

    void startRecording(const Registered& registered, int seconds = 0) const
    {
        QCOMPARE(
            endingOf([&] { registered.channel->startRecording(seconds, ZelkoCommon::toWideCorba("Aufnahme"), 0); }),
            QStringLiteral("done"));
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("start"), patience);
    }
    static QString stopping(const Registered& registered, const QString& name = {})
    {
        return endingOf([&] { registered.channel->stopRecording(ZelkoCommon::toWideCorba(name)); });
    }

    bool write(const QByteArray& datagram)
    {
        return m_sender.writeDatagram(datagram, QHostAddress::LocalHost, m_manager->port()) == datagram.size();
    }

    void send(std::initializer_list<quint32> frames)
    {
        for (const quint32 number : frames) {
            const auto sends = [&] { return write(wire(frameOf(number))); };
            QVERIFY(sendUntilStored(m_recorder->folder.path(), sends));
        }
    }

    /// Of all records of both devices.
    qint64 storedBytes() const { return ZelkoTest::storedBytes(m_recorder->folder.path()); }

    /// Of the device D1; null if it has none, or more.
    std::shared_ptr<ZELKO_XML::ZELKO_RecordData> onlyRecord() const
    {
        const QStringList ids = m_recorder->values("D1").ids();
        return ids.size() == 1 ? m_recorder->values("D1").record(ids.first()) : nullptr;
    }
    bool isFinished() const
    {
        const auto record = onlyRecord();
        return record && record->GetRecordStatus() == ZELKO_XML::ZELKO_RecordData::RecordStatus::Finished;
    }

    std::unique_ptr<ServiceRecorder> m_recorder;
    std::unique_ptr<PublishedManager> m_published;
    ChannelManager* m_manager = nullptr;
    QUdpSocket m_sender;
};

} // namespace ZelkoTest
