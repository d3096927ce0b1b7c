#include <recorder/served/channelbranch.h>

#include <valuecore/node.h>
#include <valuecore/tree.h>
#include <zelkobase/data/admin.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace Qt::StringLiterals;
using ZELKO_XML::Admin;

namespace {

const QString path = u"/ZELKO/Channel/C1"_s;

template <typename Mode>
int key(Mode mode)
{
    return static_cast<int>(mode);
}

QStringList choicesOf(const ValueSelection& value)
{
    QStringList choices;
    for (const auto& choice : value.GetChoices()) {
        choices.append(u"%1 %2"_s.arg(choice.key).arg(choice.name));
    }
    return choices;
}

} // namespace

class TestChannelBranch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standsWhereClientsLookForIt();
    void hasAValueForEachName_data();
    void hasAValueForEachName();
    void hasNothingElse();
    void saysWhatItsStatesMean();
    void isAChannelAtRestWithoutARecord();
    void standsBesideOthers();
    void goesWithItsPath();

private:
    QStringList names() const
    {
        QStringList result;
        for (const TreeItem* const item : dynamic_cast<const Node&>(*m_tree.GetItem(path)).GetTreeItems()) {
            result.append(item->GetName());
        }
        return result;
    }

    Tree m_tree;
    const ChannelBranch m_branch{m_tree, u"C1"_s};
};

void TestChannelBranch::standsWhereClientsLookForIt()
{
    QCOMPARE(ChannelBranch::pathOf(u"C1"_s), path);
    QVERIFY(m_tree.GetItem(path));
    QCOMPARE(m_branch.recordingState->GetPathName(), path + u"/AllRecordReplayModes"_s);
}

void TestChannelBranch::hasAValueForEachName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<const ValueBase*>("value");
    const auto row = [](const char* name, const ValueBase* value) { QTest::newRow(name) << name << value; };
    row("AllRecordReplayModes", m_branch.recordingState);
    row("ReplayMode", m_branch.replayState);
    row("RecordReplayModes", m_branch.guiReplayState);
    row("ErrorCode", m_branch.errorCode);
    row("ChannelName", m_branch.channelName);
    row("RecordFlag", m_branch.recordFlag);
    row("ReplayFlag", m_branch.replayFlag);
    row("DataRateClass", m_branch.dataRateClass);
    row("DeviceID", m_branch.deviceId);
    row("RecordName", m_branch.recordName);
    row("RecordTimeout", m_branch.recordTimeout);
    row("FileSizeInKB", m_branch.fileSizeInKB);
    row("CurrentReplayPosition", m_branch.position);
    row("FileSize", m_branch.fileSize);
    row("StartTime", m_branch.startTime);
    row("StopTime", m_branch.stopTime);
    row("StartPosition", m_branch.startPosition);
    row("StopPosition", m_branch.stopPosition);
    row("LoopSize", m_branch.loopSize);
    row("RecordStatus", m_branch.recordStatus);
    row("ReplayDataRateClass", m_branch.replayDataRateClass);
    row("DataFormat", m_branch.dataFormat);
    row("IsDeletable", m_branch.isDeletable);
    row("RecordID", m_branch.recordId);
    row("Bookmarks", m_branch.bookmarks);
}

void TestChannelBranch::hasAValueForEachName()
{
    QFETCH(const QString, name);
    QFETCH(const ValueBase*, value);
    QVERIFY(value);
    QCOMPARE(m_tree.Find<ValueBase>(path + u'/' + name), value);
}

void TestChannelBranch::hasNothingElse()
{
    QCOMPARE(names().size(), 25);
}

// By the keys, which travel, and the words that people read.
void TestChannelBranch::saysWhatItsStatesMean()
{
    QCOMPARE(choicesOf(*m_branch.recordingState),
             (QStringList{"0 start requested", "1 recording", "2 continuous recording", "3 stopping", "4 stopped"}));
    const QStringList replay{"0 stopped", "1 replay started", "2 paused", "3 pausing", "4 running", "5 stopping"};
    QCOMPARE(choicesOf(*m_branch.replayState), replay);
    QCOMPARE(choicesOf(*m_branch.guiReplayState), replay);
}

void TestChannelBranch::isAChannelAtRestWithoutARecord()
{
    QCOMPARE(m_branch.recordingState->GetCurrentKey(), key(Admin::RecordReplayAllModes::Stopped));
    QCOMPARE(m_branch.replayState->GetCurrentKey(), key(Admin::RecordReplayMode::Stopped));
    QCOMPARE(m_branch.guiReplayState->GetCurrentKey(), key(Admin::RecordReplayMode::Stopped));
    QCOMPARE(m_branch.recordId->GetValue(), QString());
    QCOMPARE(m_branch.errorCode->GetValue(), QString());
    QCOMPARE(m_branch.recordTimeout->GetValue(), 0);
    QCOMPARE(m_branch.fileSizeInKB->GetValue(), 0);
    QCOMPARE(m_branch.position->GetValue(), 0.0);
    QCOMPARE(m_branch.stopPosition->GetValue(), qint64{0});
    QVERIFY(!m_branch.recordFlag->GetValue() && !m_branch.replayFlag->GetValue());
}

void TestChannelBranch::standsBesideOthers()
{
    const ChannelBranch other(m_tree, u"C2"_s);
    other.channelName->SetValue(u"Other"_s, nullptr);
    QCOMPARE(m_branch.channelName->GetValue(), QString());
    m_tree.Remove(ChannelBranch::pathOf(u"C2"_s));
    QVERIFY(m_tree.GetItem(path));
}

void TestChannelBranch::goesWithItsPath()
{
    const ChannelBranch other(m_tree, u"C3"_s);
    m_tree.Remove(ChannelBranch::pathOf(u"C3"_s));
    QVERIFY(!m_tree.GetItem(ChannelBranch::pathOf(u"C3"_s)));
    const ChannelBranch again(m_tree, u"C3"_s); // which may be there again
    QCOMPARE(again.recordId->GetPathName(), u"/ZELKO/Channel/C3/RecordID"_s);
    m_tree.Remove(ChannelBranch::pathOf(u"C3"_s));
}

QTEST_GUILESS_MAIN(TestChannelBranch)
#include "tst_channelbranch.moc"
