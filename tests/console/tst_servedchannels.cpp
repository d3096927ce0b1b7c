#include "channelsite.h"

#include <console/channel/servedchannels.h>

#include <valuecore/tree.h>

#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;

namespace {

QStringList shown(const ServedChannels& served)
{
    QStringList texts;
    for (const auto& [id, name] : served.channels()) {
        texts.append(id + u' ' + name);
    }
    return texts;
}

void rename(const QString& name)
{
    Tree::Instance()
        ->Find<Value<QString>>(u"/SubSystems/north/ZELKO/Channel/C1/ChannelName"_s)
        ->SetValue(name, nullptr);
}

} // namespace

class TestServedChannels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seesWhatStandsThereAtOnce();
    void seesTheFirstThatComes();
    void looksForTheBranchWhenItIsAskedTo();
    void tellsOnceOfWhatComesTogether();
    void tellsOfAnotherName();
    void namesAChannelWithoutANameByItsId();
    void losesAChannelThatGoes();
    void findsAChannelById();
};

void TestServedChannels::seesWhatStandsThereAtOnce()
{
    const ChannelSite site;
    site.addChannel("C1", "Antenna");
    site.addChannel("C2", "Mast");
    const ServedChannels served(site.north);
    QCOMPARE(shown(served), (QStringList{u"C1 Antenna"_s, u"C2 Mast"_s}));
}

void TestServedChannels::seesTheFirstThatComes()
{
    const ChannelSite site;
    const ServedChannels served(site.north);
    QCOMPARE(shown(served), QStringList());
    site.addChannel("C1", "Antenna");
    QTRY_COMPARE_WITH_TIMEOUT(shown(served), QStringList(u"C1 Antenna"_s), patience);
}

void TestServedChannels::looksForTheBranchWhenItIsAskedTo()
{
    ChannelSite site;
    site.site.lose(site.north, QString());
    ServedChannels served(site.north);
    const QSignalSpy changed(&served, &ServedChannels::changed);
    site.addChannel("C1", "Antenna");
    letTurnsPass();
    QCOMPARE(shown(served), QStringList()); // there was nothing that could have told of it
    served.lookSoon();
    served.lookSoon();
    QTRY_COMPARE_WITH_TIMEOUT(shown(served), QStringList(u"C1 Antenna"_s), patience);
    letTurnsPass();
    QCOMPARE(changed.size(), 1);
}

void TestServedChannels::tellsOnceOfWhatComesTogether()
{
    const ChannelSite site;
    const ServedChannels served(site.north);
    const QSignalSpy changed(&served, &ServedChannels::changed);
    site.addChannel("C1", "Antenna");
    site.addChannel("C2", "Mast");
    QCOMPARE(changed.size(), 0);
    letTurnsPass();
    QCOMPARE(changed.size(), 1);
    QCOMPARE(shown(served), (QStringList{u"C1 Antenna"_s, u"C2 Mast"_s}));
}

void TestServedChannels::tellsOfAnotherName()
{
    const ChannelSite site;
    site.addChannel("C1", "Antenna");
    const ServedChannels served(site.north);
    const QSignalSpy changed(&served, &ServedChannels::changed);
    rename(u"Mast"_s);
    QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 1, patience);
    QCOMPARE(shown(served), QStringList(u"C1 Mast"_s));
}

void TestServedChannels::namesAChannelWithoutANameByItsId()
{
    const ChannelSite site;
    site.addChannel("C1", "");
    const ServedChannels served(site.north);
    QCOMPARE(shown(served), QStringList(u"C1 C1"_s));
}

void TestServedChannels::losesAChannelThatGoes()
{
    const ChannelSite site;
    const SampleChannel antenna = site.addChannel("C1", "Antenna");
    site.addChannel("C2", "Mast");
    const ServedChannels served(site.north);
    antenna.remove();
    QTRY_COMPARE_WITH_TIMEOUT(shown(served), QStringList(u"C2 Mast"_s), patience);
}

void TestServedChannels::findsAChannelById()
{
    const ChannelSite site;
    site.addChannel("C1", "Antenna");
    const ServedChannels served(site.north);
    QVERIFY(served.find(u"C1"_s));
    QCOMPARE(served.find(u"C1"_s)->name, u"Antenna"_s);
    QVERIFY(!served.find(u"Antenna"_s));
    QVERIFY(!served.find(QString()));
}

QTEST_MAIN(TestServedChannels)
#include "tst_servedchannels.moc"
