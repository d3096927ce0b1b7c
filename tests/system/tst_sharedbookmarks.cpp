#include <actiontest.h>
#include <barprocess.h>
#include <bookmarkedrecord.h>
#include <freeport.h>
#include <orbbehindproxy.h>
#include <recorderclient.h>
#include <wirelog.h>

#include <zelkobase/maps/bookmarkitemmap.h>

#include <QSignalSpy>

using namespace ZelkoTest;
using namespace Qt::StringLiterals;
using zelko::bookmarkmap::BookmarkItemMap;
using zelko::bookmarkmap::BookmarkMapData;

namespace {

const QString record = u"R1"_s;

/// Both ways of a client's link with the recorder, each through a proxy that keeps what goes there.
struct Wire
{
    explicit Wire(quint16 recorderPort)
    {
        there.setTarget(recorderPort);
        there.setKeeping(true);
        back.setKeeping(true);
    }

    FaultProxy there;
    FaultProxy back;
    WireLog sent{there};
    WireLog received{back};
};

QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

BookmarkMapData item(unsigned int key, const QString& text)
{
    return {key, bookmarkAt(static_cast<int>(key), text)};
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(BookmarkItemMap&)>)

/// The bookmarks of a model in another process, which a channel shows on the tree, and what of them goes over the wire:
/// what one side does the other one hears of once, and says nothing to that.
class TestSharedBookmarks : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theFirstListGoesOutOnce();
    void whatTheModelDoesGoesOutOnce_data();
    void whatTheModelDoesGoesOutOnce();
    void whatTheRecordBecomesGoesOutOnce();
    void whatAnotherDoesIsTakenWithoutAnAnswer_data();
    void whatAnotherDoesIsTakenWithoutAnAnswer();
    void whatAnotherDoesLeavesEachBookmarkItsKey();
    void whatStaysAsItIsIsNoNews_data();
    void whatStaysAsItIsIsNoNews();
    void whatIsRefusedIsTakenBackOnce_data();
    void whatIsRefusedIsTakenBackOnce();
    void whoMayNotEditBookmarksChangesNone();
    void whatNoRecordHasIsTakenBackByTheRecorder();
    void theListStaysWhenItsClientGoes();

private:
    using Deed = std::function<void(BookmarkItemMap&)>;

    void openOther();
    void openModel(const QStringList& more);
    void share(const QStringList& more = {});
    void settle();
    BookmarkItemMap& map() { return *m_other->channel(m_channel).find<BookmarkItemMap>("Bookmarks"); }
    QStringList itemsOfMap();
    quint64 changesOfModelsMap() { return m_model->tell("map-changes " + m_channel).toULongLong(); }
    void forget();

    // What went by since the last time, each of the way that its name says. A process that also calls the service may
    // have two connections to the recorder: what went through each does not tell the order, but what came of it does.
    QStringList fromModel() { return sorted(m_modelWire->sent.take(m_handle)); }
    QStringList toModel() { return m_modelWire->received.take(m_handle); }
    QStringList fromOther() { return m_otherWire->sent.take(m_handle); }
    QStringList toOther() { return m_otherWire->received.take(m_handle); }

    // What those heard who listen to the model.
    QStringList toListeners() { return m_model->tell("model-changes").split(QLatin1Char(','), Qt::SkipEmptyParts); }

    // So many changes were logged on either side.
    quint64 changesAtModel() { return changesOfModelsMap() - m_changesOfModel; }
    quint64 changesAtOther() { return map().GetChangeLog().NextNumber() - m_changesOfOther; }

    std::unique_ptr<Wire> m_otherWire; // outlives the ORB
    std::unique_ptr<Wire> m_modelWire;
    std::unique_ptr<PeerProcess> m_manager;
    std::unique_ptr<RecorderClient> m_other;
    std::unique_ptr<BarProcess> m_model;
    QString m_channel;
    quint32 m_handle = 0; // of the map
    quint64 m_changesOfModel = 0;
    quint64 m_changesOfOther = 0;
    int m_settled = 0;
};

void TestSharedBookmarks::init()
{
    registerZelkoIcons();
    m_otherWire = std::make_unique<Wire>(quint16{0});
    auto options = optionsBehind(m_otherWire->back);
    options.receiveTimeout = std::chrono::milliseconds(patience);
    m_orb = std::make_unique<ZelkoCommon::Orb>(options);
    m_otherWire->back.setTarget(m_orb->port());
    makeSite();
    QVERIFY(storeRecord(m_site->deviceFolder(), recordWithBookmarks(record, 90), 4000));
    QVERIFY(m_site->start());
    m_otherWire->there.setTarget(m_site->port());
    m_modelWire = std::make_unique<Wire>(m_site->port());
    m_manager = std::make_unique<PeerProcess>(QStringList{u"--recorder"_s, QString::number(m_site->port())}, 0,
                                              QStringLiteral(ZELKO_CHANNEL_MANAGER));
    m_channel = m_manager->ask("register Antenna1");
}

void TestSharedBookmarks::cleanup()
{
    m_model.reset();
    m_other.reset();
    m_manager.reset();
    leaveSite();
    closeOrb();
    m_modelWire.reset();
    m_otherWire.reset();
}

void TestSharedBookmarks::openOther()
{
    m_other = std::make_unique<RecorderClient>(*m_orb, m_otherWire->there.port());
    const auto seesMap = [this] {
        return m_other->isConnected() && m_other->values().isLoaded() &&
               m_other->channel(m_channel).find<BookmarkItemMap>("Bookmarks");
    };
    QTRY_VERIFY_WITH_TIMEOUT(seesMap(), patience);
    m_other->link().client()->AddValue(&map(), 0);
    const QString path = "/ZELKO/Channel/" + m_channel + "/Bookmarks";
    m_handle = m_otherWire->received.handleOf(path);
    QVERIFY(m_handle != 0);
}

void TestSharedBookmarks::openModel(const QStringList& more)
{
    const quint16 port = freePort();
    m_modelWire->back.setTarget(port);
    m_model = std::make_unique<BarProcess>(
        m_modelWire->there.port(), QStringList{u"--published-port"_s, QString::number(m_modelWire->back.port())} + more,
        port);
    QTRY_VERIFY_WITH_TIMEOUT(m_model->is("ready") && m_model->is("sees-channel " + m_channel), patience);
    QVERIFY(m_model->act("channel " + m_channel));
    QVERIFY(m_model->act("show " + record));
}

// The model shows the bookmarks of the record, and the other one sees them.
void TestSharedBookmarks::share(const QStringList& more)
{
    openOther();
    openModel(more);
    settle();
    forget();
    QVERIFY(m_model->act("share " + m_channel));
    settle();
}

// Whatever either of them had to say before has come, twice each way, since the model may think it over.
void TestSharedBookmarks::settle()
{
    for (int i = 0; i < 2; ++i) {
        const QString ofOther = u"other%1"_s.arg(++m_settled);
        m_other->write(m_other->channel(m_channel).find<Value<QString>>("RecordName"), ofOther);
        QTRY_COMPARE_WITH_TIMEOUT(m_model->tell("name"), ofOther, patience);
        const QString ofModel = u"model%1"_s.arg(m_settled);
        QVERIFY(m_model->act("rename " + ofModel));
        QTRY_COMPARE_WITH_TIMEOUT(m_other->channel(m_channel).text("RecordName"), ofModel, patience);
    }
}

void TestSharedBookmarks::forget()
{
    fromModel();
    toModel();
    fromOther();
    toOther();
    toListeners();
    m_changesOfModel = changesOfModelsMap();
    m_changesOfOther = map().GetChangeLog().NextNumber();
}

QStringList TestSharedBookmarks::itemsOfMap()
{
    QStringList texts;
    for (const auto& [key, held] : map().data()) {
        texts += QStringLiteral("%1: %2").arg(QString::number(key), bookmarkTexts({held.toEntry()}).constFirst());
    }
    return sorted(texts);
}

void TestSharedBookmarks::theFirstListGoesOutOnce()
{
    share();
    const QStringList sent{"set 0", "set 1"};
    QCOMPARE(fromModel(), sent);
    QCOMPARE(sorted(toOther()), sent);
    QCOMPARE(toModel(), QStringList());
    QCOMPARE(fromOther(), QStringList());
    QCOMPARE(changesAtModel(), 2U);
    QCOMPARE(changesAtOther(), 2U);
    QCOMPARE(itemsOfMap(), (QStringList{"0: 10000000 a", "1: 20000000 b"}));
}

void TestSharedBookmarks::whatTheModelDoesGoesOutOnce_data()
{
    QTest::addColumn<QStringList>("deeds");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<quint64>("changes");
    QTest::addColumn<QStringList>("items");
    const QString edited = u"changed 0 columns 1-1"_s;
    const QString removed = u"end remove 0-0"_s;
    const QString local = u"state 2"_s;
    const QString again = u"end reset"_s;
    const QStringList afresh{"state 4", again, "header changed", "state 1", "header changed"};
    const QString a = u"0: 10000000 a"_s;
    const QString b = u"1: 20000000 b"_s;
    QTest::newRow("a text is edited") << QStringList{"edit 0 x"} << QStringList{local, edited} << QStringList{"set 0"}
                                      << quint64{1} << QStringList{"0: 10000000 x", b};
    QTest::newRow("a text is edited to what it was")
        << QStringList{"edit 0 a"} << QStringList{edited} << QStringList() << quint64{0} << QStringList{a, b};
    QTest::newRow("a bookmark is added") << QStringList{"add"} << QStringList{"end insert 2-2", local}
                                         << QStringList{"set 2"} << quint64{1} << QStringList{a, b, "2: 0 "};
    QTest::newRow("a bookmark is removed") << QStringList{"remove 0"} << QStringList{removed, local}
                                           << QStringList{"erase 0"} << quint64{1} << QStringList{b};
    QTest::newRow("a bookmark is dragged on the bar")
        << QStringList{"drag 10 40"} << QStringList{local, again} << QStringList{"set 0"} << quint64{1}
        << QStringList{"0: 40000000 a", b};
    QTest::newRow("the list of the record is taken again after an edit")
        << QStringList{"edit 0 x", "reset"} << QStringList{local, edited} + afresh
        << QStringList{"set 0", "lock", "set 0", "open"} << quint64{2} << QStringList{a, b};
    QTest::newRow("the list of the record is taken again after a removal")
        << QStringList{"remove 0", "reset"} << QStringList{removed, local} + afresh
        << QStringList{"erase 0", "lock", "set 0", "open"} << quint64{2} << QStringList{a, b};
    QTest::newRow("the numbers of the rows become the keys again")
        << QStringList{"remove 0", "drag 20 30"} << QStringList{removed, local, again}
        << QStringList{"erase 0", "set 0", "erase 1"} << quint64{3} << QStringList{"0: 30000000 b"};
    QTest::newRow("a text is edited that stands in another row by now")
        << QStringList{"remove 0", "edit 0 x"} << QStringList{removed, local, edited} << QStringList{"erase 0", "set 1"}
        << quint64{2} << QStringList{"1: 20000000 x"};
    QTest::newRow("a bookmark is taken hold of and left where it was")
        << QStringList{"remove 0", "drag 20 20"} << QStringList{removed, local} << QStringList{"erase 0"} << quint64{1}
        << QStringList{b};
    QTest::newRow("the list is locked while it is sent, and opened again")
        << QStringList{"edit 0 x", "send", "unlock"}
        << QStringList{local, edited, "state 4", "header changed", "state 1", "header changed"}
        << QStringList{"set 0", "lock", "open"} << quint64{1} << QStringList{"0: 10000000 x", b};
}

void TestSharedBookmarks::whatTheModelDoesGoesOutOnce()
{
    QFETCH(const QStringList, deeds);
    QFETCH(const QStringList, sent);
    share();
    forget();
    for (const QString& deed : deeds) {
        QVERIFY(deed == "send" ? m_model->apply() : m_model->act(deed));
    }
    settle();
    QTEST(toListeners(), "shown");
    QCOMPARE(fromModel(), sorted(sent));
    QCOMPARE(toOther(), sent);
    QCOMPARE(toModel(), QStringList());
    QCOMPARE(fromOther(), QStringList());
    QTEST(changesAtModel(), "changes");
    QTEST(changesAtOther(), "changes");
    QTEST(itemsOfMap(), "items");
}

// Its model waits until somebody wants it.
void TestSharedBookmarks::whatTheRecordBecomesGoesOutOnce()
{
    share();
    BarProcess editor(m_site->port());
    QTRY_VERIFY_WITH_TIMEOUT(editor.is("ready"), patience);
    QVERIFY(editor.act("show " + record) && editor.act("edit 0 x"));
    forget();
    QVERIFY(editor.apply());
    QTRY_COMPARE_WITH_TIMEOUT(m_model->state(), "SynchExternalChange", patience);
    settle();
    QCOMPARE(toListeners(), QStringList{"state 3"});
    QCOMPARE(fromModel(), QStringList());
    QCOMPARE(changesAtModel(), 0U);

    QVERIFY(m_model->act("reset"));
    settle();
    QCOMPARE(toListeners(), (QStringList{"state 4", "end reset", "header changed", "state 1", "header changed"}));
    QCOMPARE(fromModel(), (QStringList{"lock", "open", "set 0"}));
    QCOMPARE(toOther(), (QStringList{"lock", "set 0", "open"}));
    QCOMPARE(toModel(), QStringList());
    QCOMPARE(fromOther(), QStringList());
    QCOMPARE(changesAtModel(), 1U);
    QCOMPARE(changesAtOther(), 1U);
    QCOMPARE(itemsOfMap(), (QStringList{"0: 10000000 x", "1: 20000000 b"}));
}

void TestSharedBookmarks::whatAnotherDoesIsTakenWithoutAnAnswer_data()
{
    QTest::addColumn<Deed>("deed");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QString>("list");
    const auto add = [](const Deed& deed, const char* name, const QStringList& sent, const QStringList& shown,
                        const QString& list) { QTest::newRow(name) << deed << sent << shown << list; };
    add([](BookmarkItemMap& map) { map.SetAt(7, item(7, u"new"_s), nullptr); }, "a bookmark under a new key", {"set 7"},
        {"end insert 2-2", "state 2"}, u"10000000 a,20000000 b,7000000 new"_s);
    add([](BookmarkItemMap& map) { map.SetAt(0, item(0, u"other"_s), nullptr); }, "another bookmark under a known key",
        {"set 0"}, {"state 2", "changed 0"}, u"0 other,20000000 b"_s);
    add([](BookmarkItemMap& map) { map.EraseAt(0, nullptr); }, "a bookmark goes", {"erase 0"},
        {"end remove 0-0", "state 2"}, u"20000000 b"_s);
    add([](BookmarkItemMap& map) { map.Clear(nullptr); }, "all bookmarks go", {"clear"}, {"state 2", "end reset"},
        QString());
    add(
        [](BookmarkItemMap& map) {
            map.Set({{0, map.At(0)}, {3, item(3, u"c"_s)}}, true, true, nullptr);
        },
        "another list", {"set 3", "erase 1"}, {"end insert 2-2", "state 2", "end remove 1-1"},
        u"10000000 a,3000000 c"_s);
}

void TestSharedBookmarks::whatAnotherDoesIsTakenWithoutAnAnswer()
{
    QFETCH(const Deed, deed);
    QFETCH(const QStringList, sent);
    QFETCH(const QString, list);
    share();
    forget();
    deed(map());
    settle();
    QTEST(toListeners(), "shown");
    QCOMPARE(fromOther(), sent);
    QCOMPARE(toModel(), sent);
    QCOMPARE(fromModel(), QStringList());
    QCOMPARE(toOther(), QStringList());
    QCOMPARE(changesAtModel(), static_cast<quint64>(sent.size()));
    QCOMPARE(changesAtOther(), static_cast<quint64>(sent.size()));
    QVERIFY2(m_model->shows(list), qPrintable(m_model->bar()));
    QCOMPARE(m_model->state(), "SynchLocalChange");
    const auto stored = m_site->stored(record); // until the list is sent
    QCOMPARE(bookmarkTexts(stored.GetBookmarkEntry()), textsOfTwo);
}

// What another has added and taken away leaves the model other keys than numbers of rows.
void TestSharedBookmarks::whatAnotherDoesLeavesEachBookmarkItsKey()
{
    share();
    map().SetAt(7, item(7, u"new"_s), nullptr);
    map().EraseAt(0, nullptr);
    settle();
    forget();
    QVERIFY(m_model->act("edit 1 x"));
    QVERIFY(m_model->act("remove 0"));
    settle();
    QCOMPARE(fromModel(), (QStringList{"erase 1", "set 7"}));
    QCOMPARE(toOther(), (QStringList{"set 7", "erase 1"}));
    QCOMPARE(toModel(), QStringList());
    QCOMPARE(fromOther(), QStringList());
    QCOMPARE(changesAtModel(), 2U);
    QCOMPARE(changesAtOther(), 2U);
    QCOMPARE(itemsOfMap(), QStringList{"7: 7000000 x"});
}

void TestSharedBookmarks::whatStaysAsItIsIsNoNews_data()
{
    QTest::addColumn<Deed>("deed");
    const auto add = [](const Deed& deed, const char* name) { QTest::newRow(name) << deed; };
    add([](BookmarkItemMap& map) { map.SetAt(0, BookmarkMapData(map.At(0)), nullptr); }, "the same bookmark again");
    add([](BookmarkItemMap& map) { map.EraseAt(7, nullptr); }, "a bookmark goes that is not there");
    add([](BookmarkItemMap& map) { map.Set(BookmarkItemMap::MapType(map.data()), true, true, nullptr); },
        "the same list again");
    add([](BookmarkItemMap& map) { map.SetState(map.GetState(), nullptr); }, "the same state again");
}

void TestSharedBookmarks::whatStaysAsItIsIsNoNews()
{
    QFETCH(const Deed, deed);
    share();
    forget();
    deed(map());
    settle();
    QCOMPARE(toListeners(), QStringList());
    QCOMPARE(fromOther(), QStringList());
    QCOMPARE(toModel(), QStringList());
    QCOMPARE(fromModel(), QStringList());
    QCOMPARE(toOther(), QStringList());
    QCOMPARE(changesAtModel(), 0U);
    QCOMPARE(changesAtOther(), 0U);
    QCOMPARE(m_model->state(), "SynchInSync");
}

void TestSharedBookmarks::whatIsRefusedIsTakenBackOnce_data()
{
    QTest::addColumn<Deed>("deed");
    QTest::addColumn<QString>("sent");
    QTest::addColumn<QStringList>("answer");
    const auto add = [](const Deed& deed, const char* name, const QString& sent, const QStringList& answer) {
        QTest::newRow(name) << deed << sent << answer;
    };
    add([](BookmarkItemMap& map) { map.SetAt(7, item(7, u"new"_s), nullptr); }, "a bookmark under a new key", "set 7",
        {"erase 7"});
    add([](BookmarkItemMap& map) { map.SetAt(0, item(0, u"other"_s), nullptr); }, "another bookmark under a known key",
        "set 0", {"set 0"});
    add([](BookmarkItemMap& map) { map.EraseAt(0, nullptr); }, "a bookmark goes", "erase 0", {"set 0"});
    add([](BookmarkItemMap& map) { map.Clear(nullptr); }, "all bookmarks go", "clear", {"set 0", "set 1"});
}

// The list of a model that only shows follows the record, and nobody else.
void TestSharedBookmarks::whatIsRefusedIsTakenBackOnce()
{
    QFETCH(const Deed, deed);
    QFETCH(const QString, sent);
    QFETCH(const QStringList, answer);
    share({u"--read-only"_s});
    QCOMPARE(map().GetState(), TValueState::Locked);
    forget();
    deed(map());
    settle();
    QCOMPARE(toListeners(), QStringList());
    QCOMPARE(fromOther(), QStringList{sent});
    QCOMPARE(toModel(), QStringList{sent});
    QCOMPARE(fromModel(), answer);
    QCOMPARE(sorted(toOther()), answer);
    QCOMPARE(changesAtModel(), static_cast<quint64>(1 + answer.size()));
    QCOMPARE(changesAtOther(), static_cast<quint64>(1 + answer.size()));
    QCOMPARE(itemsOfMap(), (QStringList{"0: 10000000 a", "1: 20000000 b"}));
    QVERIFY(m_model->shows(textsOfTwo.join(QLatin1Char(','))));
    QCOMPARE(m_model->state(), "SynchPending");
}

void TestSharedBookmarks::whoMayNotEditBookmarksChangesNone()
{
    share();
    RecorderClient viewer(*m_orb, m_site->port(), ZelkoCommon::Role::Viewer);
    const auto ofViewer = [&] { return viewer.channel(m_channel).find<BookmarkItemMap>("Bookmarks"); };
    QTRY_VERIFY_WITH_TIMEOUT(viewer.isConnected() && ofViewer() && ofViewer()->Size() == 2, patience);
    forget();
    QSignalSpy refused(&viewer.link(), &ZelkoCommon::TreeLink::writeRefused);
    viewer.link().client()->AddValue(ofViewer(), 0);
    ofViewer()->EraseAt(0, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(refused.size(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(ofViewer()->Size(), std::uint64_t{2}, patience);
    settle();
    QCOMPARE(toModel(), QStringList());
    QCOMPARE(changesAtOther(), 0U);
    QCOMPARE(itemsOfMap(), (QStringList{"0: 10000000 a", "1: 20000000 b"}));
}

// Also from who wrote it.
void TestSharedBookmarks::whatNoRecordHasIsTakenBackByTheRecorder()
{
    share();
    forget();
    map().SetAt(7, item(8, u"x"_s), nullptr); // under the key of another one
    settle();
    QCOMPARE(toListeners(), (QStringList{"end insert 2-2", "state 2", "end remove 2-2"}));
    QCOMPARE(toOther(), QStringList{"erase 7"});
    QCOMPARE(toModel(), (QStringList{"set 7", "erase 7"}));
    QCOMPARE(fromModel(), QStringList());
    QCOMPARE(itemsOfMap(), (QStringList{"0: 10000000 a", "1: 20000000 b"}));
    QVERIFY(m_model->shows(textsOfTwo.join(QLatin1Char(','))));
}

// The next one to show its list there begins with his own.
void TestSharedBookmarks::theListStaysWhenItsClientGoes()
{
    share();
    QVERIFY(m_model->act("edit 0 x"));
    settle();
    m_model.reset();
    openModel({});
    settle();
    forget();
    QVERIFY(m_model->act("share " + m_channel));
    settle();
    const QStringList sent{"clear", "set 0", "set 1"};
    QCOMPARE(fromModel(), sent);
    const QStringList heard = toOther();
    QCOMPARE(heard.value(0), "clear");
    QCOMPARE(sorted(heard), sent);
    QCOMPARE(itemsOfMap(), (QStringList{"0: 10000000 a", "1: 20000000 b"}));
}

QTEST_MAIN(TestSharedBookmarks)
#include "tst_sharedbookmarks.moc"
