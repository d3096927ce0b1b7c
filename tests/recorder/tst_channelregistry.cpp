#include <recorder/service/channelregistry.h>

#include <onedevice.h>
#include <patience.h>
#include <publishedmanager.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using Reason = ChannelRegistry::Refusal::Reason;

Q_DECLARE_METATYPE(Reason)

class TestChannelRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void publishesWhatIsRegistered();
    void findsChannelsByTheirIds();
    void refusesWhatCannotBeRegistered_data();
    void refusesWhatCannotBeRegistered();
    void takesTheLongestName();
    void givesANameToOneChannelAtATime();
    void takesNoMoreThanItMay();
    void renamesAChannel();
    void keepsTheNameOfAChannelThatCannotHaveAnother_data();
    void keepsTheNameOfAChannelThatCannotHaveAnother();
    void forgetsAChannelThatIsRemoved();
    void forgetsTheChannelsOfAManagerThatIsGone();
    void tellsItsManagersThatItEnds();

private:
    void begin(int maxChannels = 64);
    static ChannelWish named(const QString& name, const QString& device = QString())
    {
        ChannelWish wish;
        wish.name = name;
        wish.preferredDevice = device;
        wish.canRecord = true;
        return wish;
    }
    ChannelRegistry::Entered entering(const ChannelWish& wish)
    {
        return m_registry->enter(wish, m_manager->reference());
    }
    QString enter(const QString& name) { return entering(named(name)).channelId; }
    Channel& channel(const QString& id) const { return *m_registry->find(id); }

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<PublishedManager> m_manager;
    std::unique_ptr<OneDevice> m_devices;
    QStringList m_published;
    std::unique_ptr<ChannelRegistry> m_registry;
};

void TestChannelRegistry::init()
{
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    m_manager = std::make_unique<PublishedManager>(*m_orb);
    m_devices = std::make_unique<OneDevice>();
    m_published.clear();
    begin();
}

void TestChannelRegistry::cleanup()
{
    m_manager->manager().release();
    m_registry.reset();
    m_orb.reset();
}

void TestChannelRegistry::begin(int maxChannels)
{
    ChannelRegistry::Options options;
    options.maxChannels = maxChannels;
    options.farewell = std::chrono::seconds(60);
    options.channel.pingInterval = std::chrono::milliseconds(20);
    options.channel.callLimit = std::chrono::seconds(60);
    m_registry.reset();
    m_registry = std::make_unique<ChannelRegistry>(
        *m_devices, options, [this](const QString& id) { m_published.append(id); },
        [this](const QString& id) { m_published.removeAll(id); });
}

void TestChannelRegistry::publishesWhatIsRegistered()
{
    const auto entered = entering(named("Antenne 1", "D1"));
    QVERIFY(!entered.refusal);
    QCOMPARE(m_published, QStringList(entered.channelId));
    QCOMPARE(m_registry->count(), 1);
    QCOMPARE(channel(entered.channelId).id(), entered.channelId);
    QCOMPARE(channel(entered.channelId).settings().name, QStringLiteral("Antenne 1"));
}

void TestChannelRegistry::findsChannelsByTheirIds()
{
    const QString first = enter("1");
    const QString second = enter("2");
    QVERIFY(first != second);
    QVERIFY(m_registry->contains(first) && m_registry->contains(second));
    QVERIFY(&channel(first) != &channel(second));
    for (const QString& id : {QString(), QStringLiteral("1"), first.toUpper() + 'x'}) {
        QVERIFY(!m_registry->find(id));
        QVERIFY(!m_registry->contains(id));
    }
}

void TestChannelRegistry::refusesWhatCannotBeRegistered_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("device");
    QTest::addColumn<Reason>("reason");
    QTest::newRow("an empty name") << QString() << QString() << Reason::BadParameter;
    QTest::newRow("a name of two lines") << "a\nb" << QString() << Reason::BadParameter;
    QTest::newRow("a name of blanks") << "  " << QString() << Reason::BadParameter;
    QTest::newRow("a name that is too long") << QString(129, QLatin1Char('a')) << QString() << Reason::BadParameter;
    QTest::newRow("a device that is none") << "a"
                                           << "D2" << Reason::BadParameter;
    QTest::newRow("a path in place of a device") << "a"
                                                 << "../D1" << Reason::BadParameter;
    QTest::newRow("a name that is used") << "used" << QString() << Reason::NameInUse;
    QTest::newRow("a bad device for a name that is used") << "used"
                                                          << "D2" << Reason::BadParameter;
}

void TestChannelRegistry::refusesWhatCannotBeRegistered()
{
    QFETCH(const QString, name);
    QFETCH(const QString, device);
    const QString used = enter("used");
    const auto entered = entering(named(name, device));
    QVERIFY(entered.refusal);
    QTEST(entered.refusal->reason, "reason");
    QVERIFY(!entered.refusal->text.isEmpty());
    QCOMPARE(entered.channelId, QString());
    QCOMPARE(m_published, QStringList(used));
}

void TestChannelRegistry::takesTheLongestName()
{
    const QString longest(128, QLatin1Char('a'));
    QCOMPARE(channel(enter(longest)).settings().name, longest);
}

void TestChannelRegistry::givesANameToOneChannelAtATime()
{
    const QString first = enter("1");
    QVERIFY(entering(named("1")).refusal);
    QCOMPARE(channel(first).remove(), Channel::Verdict::Done);
    QVERIFY(!entering(named("1")).refusal); // even before the first one is gone for good
}

void TestChannelRegistry::takesNoMoreThanItMay()
{
    begin(2);
    const QString first = enter("1");
    enter("2");
    QCOMPARE(entering(named("3")).refusal->reason, Reason::TooMany);
    channel(first).removeForced();
    QTRY_COMPARE_WITH_TIMEOUT(m_registry->count(), 1, patience);
    QVERIFY(!entering(named("3")).refusal);
}

void TestChannelRegistry::renamesAChannel()
{
    const QString id = enter("1");
    QVERIFY(m_registry->rename(id, "2"));
    QCOMPARE(channel(id).settings().name, QStringLiteral("2"));
    QVERIFY(m_registry->rename(id, "2")); // its own
    QVERIFY(!entering(named("1")).refusal);
    QVERIFY(!m_registry->rename(QStringLiteral("no channel"), "3"));
}

void TestChannelRegistry::keepsTheNameOfAChannelThatCannotHaveAnother_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("none") << QString();
    QTest::newRow("that of another") << "used";
    QTest::newRow("one of two lines") << "a\nb";
    QTest::newRow("one that is too long") << QString(100'000, QLatin1Char('a'));
}

void TestChannelRegistry::keepsTheNameOfAChannelThatCannotHaveAnother()
{
    QFETCH(const QString, name);
    enter("used");
    const QString id = enter("1");
    QVERIFY(!m_registry->rename(id, name));
    QCOMPARE(channel(id).settings().name, QStringLiteral("1"));
}

void TestChannelRegistry::forgetsAChannelThatIsRemoved()
{
    const QString id = enter("1");
    const QString other = enter("2");
    QCOMPARE(channel(id).remove(), Channel::Verdict::Done);
    QVERIFY(!m_registry->contains(id)); // at once, although its manager is still to hear of it
    QTRY_COMPARE_WITH_TIMEOUT(m_published, QStringList(other), patience);
    QCOMPARE(m_registry->count(), 1);
    QCOMPARE(m_manager->manager().calls(), QStringList("removed"));
}

void TestChannelRegistry::forgetsTheChannelsOfAManagerThatIsGone()
{
    enter("1");
    enter("2");
    m_manager->vanish();
    QTRY_COMPARE_WITH_TIMEOUT(m_registry->count(), 0, patience);
    QCOMPARE(m_published, QStringList());
}

void TestChannelRegistry::tellsItsManagersThatItEnds()
{
    enter("1");
    enter("2");
    m_registry.reset();
    QCOMPARE(m_manager->manager().calls(), QStringList({"going down", "going down"}));
    QCOMPARE(m_published, QStringList());
}

QTEST_GUILESS_MAIN(TestChannelRegistry)
#include "tst_channelregistry.moc"
