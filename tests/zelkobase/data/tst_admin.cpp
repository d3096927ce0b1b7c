#include <zelkobase/data/admin.h>

#include <QtTest>

using ZELKO_XML::Admin;

class AdminTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void healthStatesHaveTheirNumbersAndWords();
    void replayModesHaveTheirKeys();
    void recordingModesHaveTheirKeys();
};

void AdminTest::healthStatesHaveTheirNumbersAndWords()
{
    QCOMPARE(Admin::GetGUIHealthStates(), (QStringList{QStringLiteral("OK"), QStringLiteral("Warning"),
                                                       QStringLiteral("Critical"), QStringLiteral("Offline")}));
    QCOMPARE(static_cast<int>(Admin::HealthState::OK), 0);
    QCOMPARE(static_cast<int>(Admin::HealthState::Offline), 3);
}

void AdminTest::replayModesHaveTheirKeys()
{
    using Mode = Admin::RecordReplayMode;
    const Mode inOrder[] = {Mode::Stopped, Mode::Started, Mode::Paused, Mode::Pausing, Mode::Running, Mode::Stopping};
    for (int key = 0; key < static_cast<int>(std::size(inOrder)); ++key)
        QCOMPARE(static_cast<int>(inOrder[key]), key);
    QCOMPARE(Admin::GetRecordReplayModes().size(), qsizetype{6});
}

void AdminTest::recordingModesHaveTheirKeys()
{
    using Mode = Admin::RecordReplayAllModes;
    const Mode inOrder[] = {Mode::StartRequested, Mode::NormalRecording, Mode::ContinuousRecording, Mode::Stopping,
                            Mode::Stopped};
    for (int key = 0; key < static_cast<int>(std::size(inOrder)); ++key)
        QCOMPARE(static_cast<int>(inOrder[key]), key);
    QCOMPARE(Admin::NameToRecordReplayAllModes(QStringLiteral("Stopped")), Mode::Stopped);
}

QTEST_APPLESS_MAIN(AdminTest)
#include "tst_admin.moc"
