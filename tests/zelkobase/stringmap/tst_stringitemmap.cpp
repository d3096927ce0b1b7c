#include "changelogger.h"
#include "exactbytes.h"
#include "patience.h"
#include "sentcommands.h"

#include <valuecore/tree.h>
#include <valuecore/valuefactory.h>
#include <valuecore/valueptr.h>
#include <zelkobase/stringmap/stringitemmap.h>

#include <QTest>

class tst_StringItemMap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemsReadBack_data();
    void itemsReadBack();
    void anItemOfWrongSizeIsNotWhole();
    void itemsCompareByKeyAndText();
    void isMadeByItsTypeName();
    void keepsALogLikeAnyMap();
    void sendsAtMostOncePerUpdateTime();
    void takesAnotherUpdateTime();
    void copiesWithTheUpdateTimeOfANewMap();
    void assignsOnlyItsOwnType();
    void rebuildsItselfFromItsState();
    void isFoundOnTheTreeByItsType();
};

void tst_StringItemMap::itemsReadBack_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("an announcement") << "10.0.0.1"
                                     << "<ZELKO_AvailableDevice>\n;ä</ZELKO_AvailableDevice>";
    QTest::newRow("no text") << "k" << QString();
    QTest::newRow("long") << QString(1000, 'k') << QString(100000, 't');
}

void tst_StringItemMap::itemsReadBack()
{
    QFETCH(QString, key);
    QFETCH(QString, text);
    const StringItem item(key, text);
    const ExactBytes bytes(StringItemFormat::toStandardString(item));
    const char* stream = bytes.begin();
    StringItem read("other", "content");
    QVERIFY(StringItemFormat::fromCharStream(&stream, read));
    QVERIFY(stream == bytes.end());
    QCOMPARE(read.GetKey(), key);
    QCOMPARE(read.GetString(), text);
    QCOMPARE(StringItemFormat::GetString(read), text);
    QCOMPARE(StringItemAdapter::toText(read), text);
}

void tst_StringItemMap::anItemOfWrongSizeIsNotWhole()
{
    const std::string whole = StringItemFormat::toStandardString(StringItem("k", "text"));
    const auto content = static_cast<std::uint32_t>(whole.size() - sizeof(std::uint32_t));
    for (std::uint32_t size = 0; size < content; ++size) {
        std::string cut;
        commandwriter::number(cut, size);
        cut += whole.substr(sizeof(size), size);
        const ExactBytes bytes(cut);
        const char* stream = bytes.begin();
        StringItem read;
        QVERIFY(!StringItemFormat::fromCharStream(&stream, read));
        QVERIFY(stream <= bytes.end());
        QCOMPARE(read.GetString(), QString());
    }
    std::string longer;
    commandwriter::number(longer, content + 1);
    longer += whole.substr(sizeof(content)) + "x";
    const ExactBytes bytes(longer);
    const char* stream = bytes.begin();
    StringItem read;
    QVERIFY(!StringItemFormat::fromCharStream(&stream, read));
}

void tst_StringItemMap::itemsCompareByKeyAndText()
{
    const StringItem item("a", "1");
    QVERIFY(item == StringItem("a", "1"));
    QVERIFY(!(item == StringItem("a", "2")));
    QVERIFY(!(item == StringItem("b", "1")));
    StringItem copy;
    QCOMPARE(copy.GetKey(), QString());
    copy = item;
    QVERIFY(copy == item);
}

void tst_StringItemMap::isMadeByItsTypeName()
{
    QVERIFY(!valuefactory::create("StringItemFrequencyMap"));
    registerStringItemMap();
    registerStringItemMap();
    const auto value = valuefactory::create("StringItemFrequencyMap");
    QVERIFY(value);
    QVERIFY(dynamic_cast<StringItemMap*>(value.get()));
    QCOMPARE(value->GetTypeName(), "StringItemFrequencyMap");
    QCOMPARE(value->GetType(), StringItemFormat::mapType);
    QVERIFY(StringItemFormat::mapType > 8); // the numbers of the plain kinds end there
}

void tst_StringItemMap::keepsALogLikeAnyMap()
{
    QStringList log;
    ChangeLogger observer("map", log);
    StringItemMap map("AvailableDevices", TValueState::Open);
    map.AddObserver(&observer);
    map.Add(StringItem("a", "1"), nullptr);
    map.Add(StringItem("a", "1"), nullptr);
    map.Add(StringItem("a", "2"), nullptr);
    map.EraseAt("a", nullptr);
    QCOMPARE(log, QStringList({"map 3", "map 3", "map 3"}));
    QStringList changes;
    std::uint64_t position = 0;
    char type = 0;
    QString key;
    while (map.GetChangeLog().ReadNext(position, type, key) == 1) {
        changes << QString::number(type) + key;
    }
    QCOMPARE(changes, QStringList({"1a", "1a", "2a"}));
    QCOMPARE(map.GetStringValue(), QString());
    map.Add(StringItem("a", "text"), nullptr);
    QCOMPARE(map.GetStringValue(), QStringLiteral("text - 0 more items..."));
    QVERIFY_EXCEPTION_THROWN(map.Add(StringItem(), nullptr), valueitemmap::NoUniqueKeyError);
}

void tst_StringItemMap::sendsAtMostOncePerUpdateTime()
{
    SentCommands sent;
    StringItemMap map;
    map.SetTransmitter(&sent);
    for (int i = 0; i < 100; ++i) {
        map.Add(StringItem("a", QString::number(i)), nullptr);
        map.Add(StringItem("b", QString::number(i)), nullptr);
    }
    QVERIFY(sent.sent().empty());
    QTRY_COMPARE_WITH_TIMEOUT(sent.ids(), std::vector<int>({20, 20}), patience);
    StringItemMap mirror;
    QVERIFY(mirror.SetCommandString(sent.stream(), nullptr));
    QVERIFY(mirror == map);
}

void tst_StringItemMap::takesAnotherUpdateTime()
{
    SentCommands sent;
    StringItemMap map;
    map.SetTransmitter(&sent);
    map.SetUpdateTimerTime(0);
    map.Add(StringItem("a", "1"), nullptr);
    QCOMPARE(sent.ids(), std::vector<int>({20}));
    map.SetUpdateTimerTime(60000);
    map.Clear(nullptr);
    QCOMPARE(sent.ids(), std::vector<int>({20}));
    map.OverrideTimer();
    QCOMPARE(sent.ids(), std::vector<int>({20, 22}));
}

void tst_StringItemMap::copiesWithTheUpdateTimeOfANewMap()
{
    StringItemMap map;
    map.SetUpdateTimerTime(0);
    map.Add(StringItem("a", "1"), nullptr);
    StringItemMap copy(map);
    QVERIFY(copy == map);
    SentCommands sent;
    copy.SetTransmitter(&sent);
    copy.Clear(nullptr);
    QVERIFY(sent.sent().empty());
    copy.TriggerOptimization();
    QCOMPARE(sent.ids(), std::vector<int>({22}));
}

void tst_StringItemMap::assignsOnlyItsOwnType()
{
    StringItemMap map;
    map.Add(StringItem("a", "1"), nullptr);
    StringItemMap other;
    other.Assign(map);
    QVERIFY(other.Compare(&map));
    const auto text = valuefactory::create("Text");
    QVERIFY_EXCEPTION_THROWN(map.Assign(*text), std::bad_cast);
    QVERIFY(!map.Compare(text.get()));
}

void tst_StringItemMap::rebuildsItselfFromItsState()
{
    StringItemMap map("m", TValueState::Locked);
    map.Add(StringItem("a", "1"), nullptr);
    map.Add(StringItem("b", QString()), nullptr);
    std::string state;
    map.AddObjectStateStringForTransmission(state, 0);
    StringItemMap fresh;
    QVERIFY(fresh.SetCommandString(ExactBytes(state).view(), nullptr));
    QVERIFY(fresh == map);
}

void tst_StringItemMap::isFoundOnTheTreeByItsType()
{
    registerStringItemMap();
    Tree tree;
    auto value = valuefactory::create("StringItemFrequencyMap");
    value->SetName("AvailableDevices");
    QVERIFY(tree.Emplace("/ZELKO/Command", std::move(value)));
    ValuePtr<StringItemMap> handle;
    QVERIFY(handle.GetFromTree("/ZELKO/Command/AvailableDevices", &tree));
    QVERIFY(tree.Find<valueitemmap::IHasChangeLogValueTemplate<QString>>("/ZELKO/Command/AvailableDevices"));
}

QTEST_GUILESS_MAIN(tst_StringItemMap)
#include "tst_stringitemmap.moc"
