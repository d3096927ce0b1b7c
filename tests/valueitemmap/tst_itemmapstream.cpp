#include "exactbytes.h"
#include "sentcommands.h"
#include "smallitemmap.h"

#include <valuecore/iobjectstatecursor.h>

#include <QTest>

#include <random>

namespace {

constexpr int randomRounds = 20000;

std::string keyBytes(const QString& key)
{
    std::string bytes;
    commandwriter::string(bytes, key);
    return bytes;
}

std::string setCommand(const QString& key, const TextItem& item)
{
    return "20;" + keyBytes(key) + ";" + SmallItemFormat<QString>::toStandardString(item) + ";";
}

std::string stateOf(ValueBase& value)
{
    std::string state;
    value.AddObjectStateStringForTransmission(state, 0);
    return state;
}

template <typename Map>
bool rebuildsFromItsState(Map& map)
{
    Map fresh;
    return fresh.SetCommandString(ExactBytes(stateOf(map)).view(), nullptr) && fresh.Compare(&map);
}

std::vector<std::string> oneOfEach()
{
    return {setCommand("a;", TextItem("a;", 0x3b3b)), "21;" + keyBytes("x") + ";", "22;"};
}

} // namespace

class tst_ItemMapStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesKeysAndItemsInBinary();
    void writesNumericKeysInTheirWidth();
    void everyCommandReadsBack_data();
    void everyCommandReadsBack();
    void stateIsAClearAndASetPerItem();
    void stateReplacesWhatAFreshMapHeld();
    void stateMakesRoomForItsItemsInAMapThatHeldOthers();
    void makesRoomForAnAnnouncedSize_data();
    void makesRoomForAnAnnouncedSize();
    void givesItsStateInPieces_data();
    void givesItsStateInPieces();
    void changesBetweenPiecesReachAnEqualMap();
    void changesBeforeTheFirstPieceReachAnEqualMap();
    void foldedCommandsMakeAnEqualMap();
    void aClearReplacesWhatWaits();
    void refusesCommandsWithoutAKey();
    void passesOtherIdsOn();
    void takesAnItemAsFarAsItWasRead();
    void refusesAnItemThatAnnouncesTooMuch_data();
    void refusesAnItemThatAnnouncesTooMuch();
    void aCommandCutOffAnywhereIsRefused();
    void refusesAStreamWholeWhenItsEndIsBroken();
    void mutatedStreamsAreReadWithinTheirBytes();
};

void tst_ItemMapStream::writesKeysAndItemsInBinary()
{
    SentCommands sent;
    TextItemMap map;
    map.SetTransmitter(&sent);
    map.Add(TextItem(QStringLiteral("aß"), 1), nullptr);
    map.EraseAt(QStringLiteral("aß"), nullptr);
    std::string key;
    commandwriter::number(key, std::uint32_t{2});
    commandwriter::number(key, char16_t{0x61});
    commandwriter::number(key, char16_t{0xdf});
    const std::string item = SmallItemFormat<QString>::toStandardString(TextItem(QStringLiteral("aß"), 1));
    QCOMPARE(sent.stream(), "20;" + key + ";" + item + ";" + "21;" + key + ";");
}

void tst_ItemMapStream::writesNumericKeysInTheirWidth()
{
    SentCommands sent;
    NumberItemMap map;
    map.SetTransmitter(&sent);
    map.Add(NumberItem(0x3b3b3b3b, 1), nullptr);
    map.EraseAt(0x3b3b3b3b, nullptr);
    QVERIFY(sent.stream().ends_with("21;;;;;;"));
    NumberItemMap mirror;
    QVERIFY(mirror.SetCommandString(sent.stream(), nullptr));
    QCOMPARE(mirror.GetChangeLog().NextNumber(), std::uint64_t{2});
}

void tst_ItemMapStream::everyCommandReadsBack_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<int>("id");
    int id = 20;
    for (const std::string& command : oneOfEach()) {
        QTest::addRow("command %d", id) << QByteArray::fromStdString(command) << id;
        ++id;
    }
}

void tst_ItemMapStream::everyCommandReadsBack()
{
    QFETCH(QByteArray, command);
    QFETCH(int, id);
    const ExactBytes bytes(command.toStdString());
    const char* stream = bytes.begin();
    CommandReader reader(&stream, command.size());
    QCOMPARE(reader.commandId(), id);
    TextItemMap map;
    const std::unique_ptr<Command> read(map.CreateNextCommand(id, &stream, nullptr, reader.remainingAsInt()));
    QVERIFY(read);
    QVERIFY(stream == bytes.end());
    QCOMPARE(read->GetCommandId(), id);
    const std::unique_ptr<Command> clone(read->Clone());
    std::string again;
    clone->AddCommandString(again);
    QCOMPARE(QByteArray::fromStdString(again), command);
    QVERIFY(map.Empty());
    QCOMPARE(map.GetChangeLog().NextNumber(), std::uint64_t{0});
}

// The command that announces how many items follow.
static std::string sizeCommand(std::uint64_t items)
{
    std::string command = "3;";
    commandwriter::number(command, items);
    return command + ';';
}

void tst_ItemMapStream::stateIsAClearAndASetPerItem()
{
    TextItemMap map("m", TValueState::Locked);
    QCOMPARE(stateOf(map), std::string("1;\2;22;"));
    map.Add(TextItem("a", 1), nullptr);
    QCOMPARE(stateOf(map), "1;\2;22;" + sizeCommand(1) + setCommand("a", TextItem("a", 1)));
    map.Add(TextItem("b", 2), nullptr);
    std::string expected = "1;\2;22;" + sizeCommand(2);
    for (const auto& [key, item] : map.data()) {
        expected += setCommand(key, item);
    }
    QCOMPARE(stateOf(map), expected);
    std::string recorded;
    map.AddObjectStateStringForRecording(recorded);
    QCOMPARE(recorded, expected);
}

void tst_ItemMapStream::stateReplacesWhatAFreshMapHeld()
{
    TextItemMap map;
    map.Add(TextItem("a", 1), nullptr);
    QVERIFY(rebuildsFromItsState(map));
    TextItemMap other;
    other.Add(TextItem("b", 2), nullptr);
    QVERIFY(other.SetCommandString(stateOf(map), nullptr));
    QVERIFY(other.Compare(&map));
    std::uint64_t position = 1;
    QCOMPARE(readLog(other.GetChangeLog(), position), QStringList({"3 ", "1 a"}));
}

void tst_ItemMapStream::stateMakesRoomForItsItemsInAMapThatHeldOthers()
{
    TextItemMap map;
    for (int i = 0; i < 500; ++i) {
        map.Add(TextItem(QString::number(i), i), nullptr);
    }
    TextItemMap other;
    other.Add(TextItem("b", 2), nullptr);
    const auto cursor = map.OpenObjectState();
    std::string piece;
    QVERIFY(cursor->AppendNext(piece, 0));
    QVERIFY(other.SetCommandString(piece, nullptr));
    QCOMPARE(other.Size(), std::uint64_t{1});
    QVERIFY(other.data().bucket_count() >= 500);
}

void tst_ItemMapStream::makesRoomForAnAnnouncedSize_data()
{
    QTest::addColumn<quint64>("announced");
    QTest::addColumn<quint64>("atLeast");
    QTest::addColumn<quint64>("atMost");
    QTest::newRow("what a list may have") << quint64{5000} << quint64{5000} << quint64{20'000};
    QTest::newRow("no more than the largest list")
        << std::numeric_limits<quint64>::max() << quint64{1'000'000} << quint64{4'000'000};
}

void tst_ItemMapStream::makesRoomForAnAnnouncedSize()
{
    QFETCH(quint64, announced);
    QFETCH(quint64, atLeast);
    QFETCH(quint64, atMost);
    TextItemMap map;
    map.Add(TextItem("a", 1), nullptr);
    QVERIFY(map.SetCommandString(sizeCommand(announced), nullptr));
    QVERIFY(map.data().bucket_count() >= atLeast);
    QVERIFY(map.data().bucket_count() <= atMost);
    QCOMPARE(map.Size(), std::uint64_t{1});
    QCOMPARE(map.GetChangeLog().NextNumber(), std::uint64_t{1});
}

void tst_ItemMapStream::givesItsStateInPieces_data()
{
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("fewestPieces");
    QTest::addColumn<int>("mostPieces");
    QTest::newRow("an empty map") << 0 << 100 << 1 << 1;
    QTest::newRow("an empty map and no bytes") << 0 << 0 << 1 << 1;
    QTest::newRow("one item and no bytes") << 1 << 0 << 1 << 1;
    QTest::newRow("no bytes, so one item per piece") << 5 << 0 << 5 << 5;
    QTest::newRow("fewer bytes than the beginning has") << 5 << 1 << 2 << 5;
    QTest::newRow("some items per piece") << 90 << 290 << 5 << 10;
    QTest::newRow("all in one piece") << 100 << 1000000 << 1 << 1;
}

void tst_ItemMapStream::givesItsStateInPieces()
{
    QFETCH(int, items);
    QFETCH(int, bytes);
    QFETCH(int, fewestPieces);
    QFETCH(int, mostPieces);
    TextItemMap map("m", TValueState::Locked);
    for (int i = 0; i < items; ++i) {
        const QString key(QChar('!' + i));
        map.Add(TextItem(key, i), nullptr); // 29 bytes in a command
    }
    const auto cursor = map.OpenObjectState();
    std::string state;
    int pieces = 0;
    for (bool more = true; more && pieces <= items; ++pieces) {
        more = cursor->AppendNext(state, static_cast<std::size_t>(bytes));
    }
    QVERIFY2(pieces >= fewestPieces && pieces <= mostPieces, qPrintable(QString::number(pieces)));
    QCOMPARE(state.size(), stateOf(map).size());
    TextItemMap receiver;
    QVERIFY(receiver.SetCommandString(state, nullptr));
    QVERIFY(receiver.Compare(&map));
}

// After each piece the map changes at random; commands and pieces go to the mirror in the order in which they came
// about.
void tst_ItemMapStream::changesBetweenPiecesReachAnEqualMap()
{
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        TextItemMap map;
        for (int i = 0; i < 40; ++i) {
            map.Add(TextItem(QString::number(i), i), nullptr);
        }
        TextItemMap mirror;
        mirror.Add(TextItem("stale", 1), nullptr);
        const auto cursor = map.OpenObjectState();
        for (bool more = true; more;) {
            std::string piece;
            more = cursor->AppendNext(piece, 100);
            QVERIFY(mirror.SetCommandString(piece, nullptr));
            SentCommands sent;
            map.SetTransmitter(&sent);
            const QString key = QString::number(random() % 60);
            map.SetAt(key, TextItem(key, round), nullptr);
            map.EraseAt(QString::number(random() % 60), nullptr);
            if (random() % 20 == 0) {
                map.Clear(nullptr);
            }
            map.SetTransmitter(nullptr);
            QVERIFY(mirror.SetCommandString(sent.stream(), nullptr));
        }
        QVERIFY(mirror == map);
    }
}

void tst_ItemMapStream::changesBeforeTheFirstPieceReachAnEqualMap()
{
    TextItemMap map;
    map.Add(TextItem("a", 1), nullptr);
    const auto cursor = map.OpenObjectState();
    SentCommands sent;
    map.SetTransmitter(&sent);
    map.Add(TextItem("b", 1), nullptr);
    TextItemMap mirror;
    QVERIFY(mirror.SetCommandString(sent.stream(), nullptr));
    std::string state;
    QVERIFY(!cursor->AppendNext(state, 1000));
    QVERIFY(mirror.SetCommandString(state, nullptr));
    QVERIFY(mirror == map);
}

// The same random operations, sent at once to one mirror and folded to another, end the same.
void tst_ItemMapStream::foldedCommandsMakeAnEqualMap()
{
    std::mt19937 random(5);
    TextItemMap map;
    SentCommands sent;
    map.SetTransmitter(&sent);
    map.SetUpdateTimerTime(60000);
    TextItemMap mirror;
    std::size_t done = 0;
    for (int step = 0; step < 5000; ++step) {
        const QString key(QChar('a' + static_cast<int>(random() % 20)));
        switch (random() % 50) {
        case 0:
            map.Clear(nullptr);
            break;
        case 1:
            map.HasChanged(TChangeCode::ValueChanged, nullptr);
            break;
        case 2:
            map.TriggerOptimization();
            QVERIFY(mirror.SetCommandString(std::string_view(sent.stream()).substr(done), nullptr));
            QVERIFY(mirror == map);
            done = sent.stream().size();
            break;
        default:
            if (random() % 3 == 0) {
                map.EraseAt(key, nullptr);
            } else {
                map.SetAt(key, TextItem(key, step), nullptr);
            }
        }
    }
    map.TriggerOptimization();
    QVERIFY(mirror.SetCommandString(std::string_view(sent.stream()).substr(done), nullptr));
    QVERIFY(mirror == map);
    QVERIFY(sent.sent().size() < 3000); // something was left out at all
}

void tst_ItemMapStream::aClearReplacesWhatWaits()
{
    SentCommands sent;
    TextItemMap map;
    map.SetTransmitter(&sent);
    map.SetUpdateTimerTime(60000);
    map.SetState(TValueState::Locked, nullptr);
    map.Add(TextItem("a", 1), nullptr);
    map.Add(TextItem("b", 1), nullptr);
    map.Add(TextItem("a", 2), nullptr);
    map.Clear(nullptr);
    map.Add(TextItem("c", 1), nullptr);
    map.EraseAt("c", nullptr);
    map.Add(TextItem("d", 1), nullptr);
    map.TriggerOptimization();
    QCOMPARE(sent.ids(), std::vector<int>({1, 22, 21, 20}));
}

void tst_ItemMapStream::refusesCommandsWithoutAKey()
{
    TextItemMap map;
    map.Add(TextItem("a", 1), nullptr);
    QVERIFY(!map.SetCommandString("22;" + setCommand(QString(), TextItem("a", 2)), nullptr));
    QVERIFY(!map.SetCommandString("22;21;" + keyBytes(QString()) + ";", nullptr));
    QCOMPARE(map.Size(), std::uint64_t{1});
    NumberItemMap numbers;
    QVERIFY(!numbers.SetCommandString("21;\xff\xff\xff\xff;", nullptr));
    QCOMPARE(numbers.GetChangeLog().NextNumber(), std::uint64_t{0});
}

void tst_ItemMapStream::passesOtherIdsOn()
{
    TextItemMap map;
    QVERIFY(map.SetCommandString("1;\2;", nullptr));
    QCOMPARE(map.GetState(), TValueState::Locked);
    for (const char* stream : {"10;", "19;", "23;", "0;"}) {
        QVERIFY(!map.SetCommandString(stream, nullptr));
    }
}

void tst_ItemMapStream::takesAnItemAsFarAsItWasRead()
{
    std::string item;
    commandwriter::number(item, std::uint32_t{6});
    commandwriter::string(item, "k"); // and no number
    TextItemMap map;
    QVERIFY(map.SetCommandString("20;" + keyBytes("a") + ";" + item + ";", nullptr));
    QVERIFY(map.At("a") == TextItem("k", 0));
    QVERIFY(rebuildsFromItsState(map));
}

void tst_ItemMapStream::refusesAnItemThatAnnouncesTooMuch_data()
{
    QTest::addColumn<quint32>("size");
    QTest::newRow("a byte too many") << quint32{12};
    QTest::newRow("the largest size") << quint32{0xffffffff};
    QTest::newRow("so little that the end is not where it should be") << quint32{3};
}

void tst_ItemMapStream::refusesAnItemThatAnnouncesTooMuch()
{
    QFETCH(quint32, size);
    std::string item;
    commandwriter::number(item, size);
    commandwriter::string(item, "k");
    commandwriter::number(item, std::int32_t{1});
    const ExactBytes bytes("20;" + keyBytes("a") + ";" + item + ";");
    TextItemMap map;
    QVERIFY(!map.SetCommandString(bytes.view(), nullptr));
    QVERIFY(map.Empty());
}

void tst_ItemMapStream::aCommandCutOffAnywhereIsRefused()
{
    TextItemMap map;
    map.Add(TextItem("kept", 1), nullptr);
    for (const std::string& command : oneOfEach()) {
        for (std::size_t length = 1; length < command.size(); ++length) {
            const ExactBytes bytes(std::string_view(command).substr(0, length));
            QVERIFY2(!map.SetCommandString(bytes.view(), nullptr), qPrintable(QString::number(length)));
        }
    }
    QCOMPARE(map.GetChangeLog().NextNumber(), std::uint64_t{1});
}

void tst_ItemMapStream::refusesAStreamWholeWhenItsEndIsBroken()
{
    TextItemMap map;
    map.Add(TextItem("kept", 1), nullptr);
    QVERIFY(!map.SetCommandString("22;" + setCommand("a", TextItem("a", 1)) + "20;", nullptr));
    QCOMPARE(map.IndexVector(), std::vector<QString>({"kept"}));
    QCOMPARE(map.GetChangeLog().NextNumber(), std::uint64_t{1});
}

void tst_ItemMapStream::mutatedStreamsAreReadWithinTheirBytes()
{
    std::mt19937 random(11);
    std::string stream;
    for (const std::string& command : oneOfEach()) {
        stream = command + stream;
    }
    int accepted = 0;
    for (int round = 0; round < randomRounds; ++round) {
        std::string mutated = stream.substr(0, 1 + random() % stream.size());
        for (auto left = random() % 4; left > 0; --left) {
            mutated[random() % mutated.size()] = static_cast<char>(random());
        }
        TextItemMap map;
        if (map.SetCommandString(ExactBytes(mutated).view(), nullptr)) {
            ++accepted;
            QVERIFY(rebuildsFromItsState(map));
        } else {
            QVERIFY(map == TextItemMap());
        }
        NumberItemMap numbers;
        if (numbers.SetCommandString(ExactBytes(mutated).view(), nullptr)) {
            QVERIFY(rebuildsFromItsState(numbers));
        }
    }
    QVERIFY(accepted > 0);
    QVERIFY(accepted < randomRounds);
}

QTEST_GUILESS_MAIN(tst_ItemMapStream)
#include "tst_itemmapstream.moc"
