#include "cdrbytes.h"
#include "checkedrecords.h"
#include "largestallocation.h"
#include "servicevalues.h"

#include <zelkobase/orb/orb.h>

#include <QtTest>

#include <dlfcn.h>

#include <functional>

using namespace QD_ZLK;
using namespace servicevalues;

namespace {

// A value and its bytes, whatever its type is.
struct Example
{
    QByteArray golden;
    std::function<QByteArray()> encoded;
    std::function<QByteArray(const QByteArray&)> decodedAndEncoded;
};

template <typename T>
void row(const char* name, const T& value, const char* hex)
{
    const auto encoded = [value] { return cdr::encoded(value); };
    const auto decodedAndEncoded = [](const QByteArray& bytes) {
        T read;
        cdr::decode(read, bytes);
        return cdr::encoded(read);
    };
    QTest::newRow(name) << Example{cdr::bytes(hex), encoded, decodedAndEncoded};
}

void addStructures()
{
    row("TimeRange", range(), "0807060504030201 1817161514131211");
    row("RecordBookmark", bookmark(), "2827262524232221 08000000 fffe c400 3dd8 e1dc");
    row("RecordHistoryEntry", historyEntry(), "3837363534333231 04000000 fffe 6800");
    row("RecordIndexEntry", indexEntry(), "0807060504030201 1817161514131211 2827262524232221 34333231 44434241");
    row("RecordInfo", info(),
        "03000000 696400 00 04000000 fffe6e00"                                 // ID, padding, name
        "0807060504030201 1817161514131211 2827262524232221"                   // start, stop, size
        "08000000 17000000"                                                    // kind, format
        "3837363534333231 4847464544434241 5857565554535251"                   // positions, loop
        "0f000000 01 000000"                                                   // rate, deletable, padding
        "01000000 00000000 0807060504030201 1817161514131211 2827262524232221" // index entries, padding behind the
                                                                               // length
        "34333231 44434241"                                                    //
        "01000000 00000000 2827262524232221 08000000 fffec4003dd8e1dc"         // bookmarks, the same padding
        "01000000 3837363534333231 04000000 fffe6800");                        // history, without padding
    row("RecordMetaData", metaData(),
        "07000000 64657669636500 00 02000000 7200 0000 04000000 fffe6e00 00000000" // IDs and name, padding behind each
        "0807060504030201 1817161514131211 17000000 0f000000"                      // start, stop, format, rate
        "2827262524232221 3837363534333231 4847464544434241 5857565554535251"      // size, positions, loop
        "6867666564636261 7877767574737271 04030201 14131211"                      // frequency, rate, bandwidth, count
        "11100f0e0d0c0b0a 21201f1e1d1c1b1a");                                      // first and last entry
    row("DataEndpoint", endpoint(), "04000000 04030201 14131211 00000000 2827262524232221");
    row("DataEndpointNG", namedEndpoint(), "02000000 05000000 6d61737400 000000 14131211 00000000 2827262524232221");
}

void addSequences()
{
    row("TimeRangeSeq", sequenceOf<TimeRangeSeq>(range()), "01000000 00000000 0807060504030201 1817161514131211");
    row("RecordBookmarkSeq", sequenceOf<RecordBookmarkSeq>(bookmark(), bookmark()),
        "02000000 00000000 2827262524232221 08000000 fffec4003dd8e1dc"
        "00000000 2827262524232221 08000000 fffec4003dd8e1dc");
    row("RecordHistoryEntrySeq", sequenceOf<RecordHistoryEntrySeq>(historyEntry()),
        "01000000 00000000 3837363534333231 04000000 fffe6800");
    row("RecordIndexEntrySeq", sequenceOf<RecordIndexEntrySeq>(indexEntry()),
        "01000000 00000000 0807060504030201 1817161514131211 2827262524232221 34333231 44434241");
    row("RecordInfoSeq", sequenceOf<RecordInfoSeq>(RecordInfo()),
        "01000000 01000000 00 000000 00000000" // count, ID, padding, name
        "0000000000000000 0000000000000000 0000000000000000 00000000 00000000"
        "0000000000000000 0000000000000000 0000000000000000 00000000 00 000000"
        "00000000 00000000 00000000");
    row("DataEndpointSeq", sequenceOf<DataEndpointSeq>(endpoint()),
        "01000000 04000000 04030201 14131211 2827262524232221");
    row("DataEndpointNGSeq", sequenceOf<DataEndpointNGSeq>(namedEndpoint()),
        "01000000 02000000 05000000 6d61737400 000000 14131211 2827262524232221");
    row("LongSeq", sequenceOf<LongSeq>(1, -1), "02000000 01000000 ffffffff");
    row("StringSeq", sequenceOf<StringSeq>("a", ""), "02000000 02000000 6100 0000 01000000 00");
    row("StringSeqSeq", sequenceOf<StringSeqSeq>(sequenceOf<StringSeq>("a"), StringSeq()),
        "02000000 01000000 02000000 6100 0000 00000000");
}

void addExceptions()
{
    row("exGen", exGen(GEN_NAME_IN_USE, "x"), "04000000 02000000 7800");
    row("exAdmin", IF_ZELKO_Admin::exAdmin(IF_ZELKO_Admin::ADMIN_FAILED, "x"), "00000000 02000000 7800");
    row("exChan", IF_ZLK_c_Chan::exChan(IF_ZLK_c_Chan::CHAN_NO_SPACE, "x"), "05000000 02000000 7800");
    row("exChanMan", IF_ZLK_c_ChanMan::exChanMan(IF_ZLK_c_ChanMan::CHANMAN_GOING_DOWN, "x"), "08000000 02000000 7800");
    row("exZLK", IF_ZLK_c_ZLK::exZLK(IF_ZLK_c_ZLK::ZLK_NOT_PERMITTED, "x"), "03000000 02000000 7800");
}

void addEmptyOnes()
{
    row("RecordBookmark without a text", RecordBookmark{7, {}}, "0700000000000000 00000000");
    row("DataEndpointNG without an address", DataEndpointNG{ENDPOINT_NONE, {}, 1, 2},
        "00000000 01000000 00 000000 01000000 0200000000000000");
    row("TimeRangeSeq of nothing", TimeRangeSeq(), "00000000");
    row("RecordBookmarkSeq of nothing", RecordBookmarkSeq(), "00000000");
    row("RecordInfoSeq of nothing", RecordInfoSeq(), "00000000");
    row("StringSeqSeq of nothing", StringSeqSeq(), "00000000");
    row("exGen without a text", exGen(GEN_INTERNAL, ""), "00000000 01000000 00");
}

// Whether reading `bytes` as T ends as it does for bytes that are no T.
template <typename T>
bool isRefused(const QByteArray& bytes)
{
    T read;
    try {
        cdr::decode(read, bytes);
    } catch (const CORBA::MARSHAL&) {
        return true;
    }
    return false;
}

constexpr CORBA::ULong refused = 1000; // added to what a variable holds when reading into it was refused

struct Enumeration
{
    CORBA::ULong last;
    std::function<CORBA::ULong(CORBA::ULong)> valueAfterReading; // into a variable that has the first value
};

template <typename E>
void enumeration(const char* name, E last)
{
    const auto read = [](CORBA::ULong number) {
        E value = static_cast<E>(0);
        try {
            cdr::decode(value, cdr::encoded(number));
        } catch (const CORBA::MARSHAL&) {
            return static_cast<CORBA::ULong>(value) + refused;
        }
        return static_cast<CORBA::ULong>(value);
    };
    QTest::newRow(name) << Enumeration{last, read};
}

using Refusal = std::function<bool(const QByteArray&)>;

} // namespace

Q_DECLARE_METATYPE(Example)
Q_DECLARE_METATYPE(Enumeration)
Q_DECLARE_METATYPE(Refusal)

class TestServiceWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void hasTheseBytes_data();
    void hasTheseBytes();
    void refusesWhatEndsTooEarly_data() { hasTheseBytes_data(); }
    void refusesWhatEndsTooEarly();
    void padsInFrontOfALongLongWhereverItStands_data();
    void padsInFrontOfALongLongWhereverItStands();
    void readsWhatHasItsBigEndFirst();
    void readsWideTextsOfOtherOrbs_data();
    void readsWideTextsOfOtherOrbs();
    void keepsAnEmptyStringOfARecord();
    void refusesAnEnumerationBeyondItsLast_data();
    void refusesAnEnumerationBeyondItsLast();
    void refusesASequenceThatTheStreamCannotHold_data();
    void refusesASequenceThatTheStreamCannotHold();
    void namesItsInterfaces_data();
    void namesItsInterfaces();
    void namesItsExceptions_data();
    void namesItsExceptions();
    void hasNoTypeCodes_data();
    void hasNoTypeCodes();

private:
    std::unique_ptr<ZelkoCommon::Orb> m_orb; // sets the code sets
};

void TestServiceWire::initTestCase()
{
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
}

void TestServiceWire::hasTheseBytes_data()
{
    QTest::addColumn<Example>("example");
    addStructures();
    addSequences();
    addExceptions();
    addEmptyOnes();
}

void TestServiceWire::hasTheseBytes()
{
    QFETCH(Example, example);
    QCOMPARE(example.encoded().toHex(), example.golden.toHex());
    QCOMPARE(example.decodedAndEncoded(example.golden).toHex(), example.golden.toHex());
}

void TestServiceWire::refusesWhatEndsTooEarly()
{
    QFETCH(Example, example);
    for (qsizetype size = 0; size < example.golden.size(); ++size) {
        QVERIFY_EXCEPTION_THROWN(example.decodedAndEncoded(example.golden.first(size)), CORBA::MARSHAL);
    }
}

void TestServiceWire::padsInFrontOfALongLongWhereverItStands_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("padding");
    for (int offset = 0; offset <= 8; ++offset) {
        QTest::addRow("behind %d bytes", offset) << offset << (8 - offset % 8) % 8;
    }
}

void TestServiceWire::padsInFrontOfALongLongWhereverItStands()
{
    QFETCH(int, offset);
    QFETCH(int, padding);
    const QByteArray bytes = cdr::encoded(range(), offset);
    QCOMPARE(bytes.toHex(), (QByteArray(padding, '\0') + cdr::encoded(range())).toHex());
}

void TestServiceWire::readsWhatHasItsBigEndFirst()
{
    DataEndpoint read;
    cdr::decode(read, cdr::bytes("00000004 01020304 11121314 00000000 2122232425262728"), true);
    QCOMPARE(cdr::encoded(read).toHex(), cdr::encoded(endpoint()).toHex());
}

// The ORB marks which end is first; one that does not mark it has the big one first, whatever the rest of the message
// has.
void TestServiceWire::readsWideTextsOfOtherOrbs_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("marked, little end first") << cdr::bytes("2827262524232221 08000000 fffe c400 3dd8 e1dc");
    QTest::newRow("marked, big end first") << cdr::bytes("2827262524232221 08000000 feff 00c4 d83d dce1");
    QTest::newRow("not marked") << cdr::bytes("2827262524232221 06000000 00c4 d83d dce1");
}

void TestServiceWire::readsWideTextsOfOtherOrbs()
{
    QFETCH(QByteArray, bytes);
    RecordBookmark read;
    cdr::decode(read, bytes);
    QCOMPARE(ZelkoCommon::fromCorba(read.text.in()), QStringLiteral("Ä\U0001F4E1"));
}

void TestServiceWire::keepsAnEmptyStringOfARecord()
{
    RecordInfo read = info();
    cdr::decode(read, cdr::encoded(RecordInfo()));
    QVERIFY(read.recordId.in());
    QCOMPARE(read.recordId.in(), "");
    QVERIFY(read.recordName.in());
    QCOMPARE(read.recordName.in()[0], L'\0');
    QCOMPARE(read.bookmarks.length(), CORBA::ULong{0});
}

void TestServiceWire::refusesAnEnumerationBeyondItsLast_data()
{
    QTest::addColumn<Enumeration>("enumeration");
    enumeration("DataRateClass", static_cast<DataRateClass>(15));
    enumeration("DataFormat", static_cast<DataFormat>(23));
    enumeration("FftWindow", static_cast<FftWindow>(4));
    enumeration("RecordKind", static_cast<RecordKind>(8));
    enumeration("EndpointKind", static_cast<EndpointKind>(4));
    enumeration("ChannelFault", static_cast<ChannelFault>(3));
    enumeration("code of exGen", static_cast<GenCode>(4));
    enumeration("code of exAdmin", static_cast<IF_ZELKO_Admin::AdminCode>(0));
    enumeration("code of exChan", static_cast<IF_ZLK_c_Chan::ChanCode>(5));
    enumeration("code of exChanMan", static_cast<IF_ZLK_c_ChanMan::ChanManCode>(8));
    enumeration("code of exZLK", static_cast<IF_ZLK_c_ZLK::ZLKCode>(3));
}

void TestServiceWire::refusesAnEnumerationBeyondItsLast()
{
    QFETCH(Enumeration, enumeration);
    for (CORBA::ULong number = 0; number <= enumeration.last; ++number) {
        QCOMPARE(enumeration.valueAfterReading(number), number);
    }
    QCOMPARE(enumeration.valueAfterReading(enumeration.last + 1), refused);
    QCOMPARE(enumeration.valueAfterReading(0xffffffff), refused);
}

void TestServiceWire::refusesASequenceThatTheStreamCannotHold_data()
{
    QTest::addColumn<Refusal>("isRefused");
    QTest::newRow("TimeRangeSeq") << Refusal(isRefused<TimeRangeSeq>);
    QTest::newRow("RecordBookmarkSeq") << Refusal(isRefused<RecordBookmarkSeq>);
    QTest::newRow("RecordHistoryEntrySeq") << Refusal(isRefused<RecordHistoryEntrySeq>);
    QTest::newRow("RecordIndexEntrySeq") << Refusal(isRefused<RecordIndexEntrySeq>);
    QTest::newRow("RecordInfoSeq") << Refusal(isRefused<RecordInfoSeq>);
    QTest::newRow("DataEndpointSeq") << Refusal(isRefused<DataEndpointSeq>);
    QTest::newRow("DataEndpointNGSeq") << Refusal(isRefused<DataEndpointNGSeq>);
    QTest::newRow("LongSeq") << Refusal(isRefused<LongSeq>);
    QTest::newRow("StringSeq") << Refusal(isRefused<StringSeq>);
    QTest::newRow("StringSeqSeq") << Refusal(isRefused<StringSeqSeq>);
}

void TestServiceWire::refusesASequenceThatTheStreamCannotHold()
{
    QFETCH(Refusal, isRefused);
    for (const CORBA::ULong length : {0xffffffffU, 0x80000000U, 0x40000001U, 0x20000000U, 1000000U, 61U}) {
        const QByteArray bytes = cdr::encoded(length) + QByteArray(60, '\0');
        largestAllocation = 0;
        QVERIFY(isRefused(bytes));
        QVERIFY2(largestAllocation < 1024, "memory was taken for elements that are not there");
    }
}

void TestServiceWire::namesItsInterfaces_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char* id, const char* expected) {
        QTest::newRow(expected) << QByteArray(id) << QByteArray(expected);
    };
    row(IF_ZELKO_Admin::_PD_repoId, "IDL:QD_ZLK/IF_ZELKO_Admin:1.0");
    row(IF_ZELKO_Replay::_PD_repoId, "IDL:QD_ZLK/IF_ZELKO_Replay:1.0");
    row(IF_ZLK_c_ZLK::_PD_repoId, "IDL:QD_ZLK/IF_ZLK_c_ZLK:1.0");
    row(IF_ZLK_c_Chan::_PD_repoId, "IDL:QD_ZLK/IF_ZLK_c_Chan:1.0");
    row(IF_ZLK_c_ChanMan::_PD_repoId, "IDL:QD_ZLK/IF_ZLK_c_ChanMan:1.0");
    row(IF_RecordStateChangeCallback::_PD_repoId, "IDL:QD_ZLK/IF_RecordStateChangeCallback:1.0");
    row(IF_ZelkoStatusCallback::_PD_repoId, "IDL:QD_ZLK/IF_ZelkoStatusCallback:1.0");
}

void TestServiceWire::namesItsInterfaces()
{
    QFETCH(QByteArray, id);
    QTEST(id, "expected");
}

void TestServiceWire::namesItsExceptions_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<QByteArray>("typeId");
    QTest::addColumn<QByteArray>("scope");
    const auto row = [](const char* id, const char* typeId, const char* scope) {
        QTest::newRow(scope) << QByteArray(id) << QByteArray(typeId) << QByteArray(scope);
    };
    row(exGen::_PD_repoId, exGen::_PD_typeId, "exGen");
    row(IF_ZELKO_Admin::exAdmin::_PD_repoId, IF_ZELKO_Admin::exAdmin::_PD_typeId, "IF_ZELKO_Admin::exAdmin");
    row(IF_ZLK_c_Chan::exChan::_PD_repoId, IF_ZLK_c_Chan::exChan::_PD_typeId, "IF_ZLK_c_Chan::exChan");
    row(IF_ZLK_c_ChanMan::exChanMan::_PD_repoId, IF_ZLK_c_ChanMan::exChanMan::_PD_typeId,
        "IF_ZLK_c_ChanMan::exChanMan");
    row(IF_ZLK_c_ZLK::exZLK::_PD_repoId, IF_ZLK_c_ZLK::exZLK::_PD_typeId, "IF_ZLK_c_ZLK::exZLK");
}

void TestServiceWire::namesItsExceptions()
{
    QFETCH(QByteArray, id);
    QFETCH(QByteArray, typeId);
    QFETCH(QByteArray, scope);
    QCOMPARE(typeId, "Exception/UserException/QD_ZLK::" + scope);
    QCOMPARE(id, "IDL:QD_ZLK/" + scope.replace("::", "/") + ":1.0");
}

void TestServiceWire::hasNoTypeCodes_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char* name : {"TimeRange",
                             "RecordBookmark",
                             "RecordHistoryEntry",
                             "RecordIndexEntry",
                             "RecordInfo",
                             "RecordMetaData",
                             "DataEndpoint",
                             "DataEndpointNG",
                             "DataRateClass",
                             "DataFormat",
                             "FftWindow",
                             "RecordKind",
                             "EndpointKind",
                             "ChannelFault",
                             "TimeRangeSeq",
                             "RecordBookmarkSeq",
                             "RecordHistoryEntrySeq",
                             "RecordIndexEntrySeq",
                             "RecordInfoSeq",
                             "DataEndpointSeq",
                             "DataEndpointNGSeq",
                             "LongSeq",
                             "StringSeq",
                             "StringSeqSeq"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

// A TypeCode would be a variable of the library that holds the stubs.
void TestServiceWire::hasNoTypeCodes()
{
    QFETCH(QByteArray, name);
    const QByteArray variable = "_tc_" + name;
    const QByteArray symbol = "_ZN6QD_ZLK" + QByteArray::number(variable.size()) + variable + 'E';
    QVERIFY(!dlsym(RTLD_DEFAULT, symbol.constData()));
    QVERIFY(dlsym(RTLD_DEFAULT, "_ZN6QD_ZLK14IF_ZELKO_Admin10_PD_repoIdE")); // others of it are found in this way
}

QTEST_GUILESS_MAIN(TestServiceWire)
#include "tst_servicewire.moc"
