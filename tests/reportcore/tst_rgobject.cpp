#include "sampleobject.h"

#include <QtTest>

#include <string>
#include <vector>

namespace {

#define SET_Value(name, type) object.Set##name(sampleValue<type>());
#define SET_Required(name, type) SET_Value(name, type)
#define SET_Defaulted(name, type) SET_Value(name, type)
#define SET_Optional(name, type) SET_Value(name, type)
#define SET_RequiredPart(name, type) SET_Value(name, type)
#define SET_Part(name, type) SET_Value(name, type)
#define SET_RequiredList(name, type) object.Append##name(sampleValue<type>());
#define SET_List(name, type) object.Append##name(sampleValue<type>());

struct Change
{
    const char* name;
    void (*apply)(SampleObject& object);
};

using Colour = SampleObject::Colour;

#define CHANGE(kind, type, name) {#name, [](SampleObject& object) { SET_##kind(name, type) }},
const Change changes[] = {SAMPLE_OBJECT_FIELDS(CHANGE)};

std::string binaryOf(const SampleObject& object)
{
    std::string bytes;
    object.appendBinary(bytes);
    return bytes;
}

/// Reads a copy on the heap to the byte, so that the address sanitizer sees a step past its end. Gives the bytes
/// consumed, -1 if they were refused.
std::ptrdiff_t readCopy(SampleObject& object, const std::string& bytes)
{
    const std::vector<char> copy(bytes.begin(), bytes.end());
    const char* begin = copy.data();
    return object.readBinary(begin, copy.data() + copy.size()) ? begin - copy.data() : -1;
}

bool readExactly(SampleObject& object, const std::string& bytes)
{
    return readCopy(object, bytes) == static_cast<std::ptrdiff_t>(bytes.size());
}

} // namespace

class RGObjectTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFieldCounts_data();
    void everyFieldCounts();
    void optionalFieldsTellIfTheyAreSet();
    void listsAreSetWhenTheyAreNotEmpty();
    void partsBecomePresentWhenTakenForWriting();
    void defaultedFieldsEqualTheirDefault();
    void fieldsReadAsText();
    void enumerationsKnowTheirNames();
    void copiesAreApart();
    void binaryIsAppendedAndConsumed();
    void binaryCutAnywhereIsRefused();
    void binaryWithOneByteChangedNeverHarms();
    void binaryOfAnotherVersionIsRefused();
    void binaryWithUnknownFieldsIsRefused();
    void binaryWithHugeCountsIsRefusedAtOnce();
};

void RGObjectTest::everyFieldCounts_data()
{
    QTest::addColumn<int>("number");
    for (int i = 0; i < static_cast<int>(std::size(changes)); ++i)
        QTest::newRow(changes[i].name) << i;
}

void RGObjectTest::everyFieldCounts()
{
    QFETCH(int, number);
    SampleObject object;
    object.SetValidate(false);
    changes[number].apply(object);
    QVERIFY(object.HasData());
    QVERIFY(object.AnyData());
    QVERIFY(object != SampleObject());
    QVERIFY(SampleObject(object) == object);

    SampleObject fromXml;
    fromXml.SetValidate(false);
    QVERIFY(fromXml.SetXmlString(object.GetXmlString(), true));
    QVERIFY(fromXml == object);

    SampleObject fromBinary;
    QVERIFY(readExactly(fromBinary, binaryOf(object)));
    QVERIFY(fromBinary == object);
}

void RGObjectTest::optionalFieldsTellIfTheyAreSet()
{
    SampleObject object;
    QVERIFY(!object.IsSmallSet());
    object.SetSmall(0);
    QVERIFY(object.IsSmallSet());
    QVERIFY(object != SampleObject());
    object.SetSmall(5);
    object.ResetSmall();
    QVERIFY(!object.IsSmallSet());
    QCOMPARE(object.GetSmall(), 0);
    QVERIFY(object == SampleObject());
}

void RGObjectTest::listsAreSetWhenTheyAreNotEmpty()
{
    SampleObject object;
    object.SetFigure({});
    QVERIFY(!object.IsFigureSet());
    object.AppendFigure(1);
    object.GetFigure().append(2);
    QVERIFY(object.IsFigureSet());
    QCOMPARE(std::as_const(object).GetFigure(), (QVector<int>{1, 2}));
    object.ResetFigure();
    QVERIFY(!object.IsFigureSet());
}

void RGObjectTest::partsBecomePresentWhenTakenForWriting()
{
    SampleObject object;
    QCOMPARE(std::as_const(object).GetExtra().GetNumber(), 0);
    QVERIFY(!object.IsExtraSet());
    object.GetExtra().SetNumber(9);
    QVERIFY(object.IsExtraSet());
    QCOMPARE(std::as_const(object).GetExtra().GetNumber(), 9);
    object.ResetExtra();
    QVERIFY(!object.IsExtraSet());
    QVERIFY(object == SampleObject());
}

void RGObjectTest::defaultedFieldsEqualTheirDefault()
{
    SampleObject object = smallSample();
    object.SetFlag(false);
    QVERIFY(object == smallSample());
}

void RGObjectTest::fieldsReadAsText()
{
    const SampleObject object = fullSample();
    QCOMPARE(object.GetNameAsString(), QStringLiteral("small"));
    QCOMPARE(object.GetColourAsString(), QStringLiteral("Blue"));
    QCOMPARE(object.GetChoiceAsString(), QStringLiteral("false"));
    QCOMPARE(object.GetTotalAsString(), QStringLiteral("18446744073709551615"));
    QCOMPARE(object.GetTimeAsString(), QStringLiteral("2009-02-13T23:31:30.123Z"));
}

void RGObjectTest::enumerationsKnowTheirNames()
{
    QCOMPARE(SampleObject::GetColours(),
             (QStringList{QStringLiteral("Red"), QStringLiteral("Green"), QStringLiteral("Blue")}));
    QCOMPARE(SampleObject::GetGUIColours().at(2), QStringLiteral("a cold blue"));
    QCOMPARE(SampleObject::NameToColour(QStringLiteral("Green")), Colour::Green);
    QCOMPARE(static_cast<int>(SampleObject::NameToColour(QStringLiteral("green"))), -1);
    QCOMPARE(SampleObject::ColourToName(Colour::Blue), QStringLiteral("Blue"));
    QCOMPARE(SampleObject::ColourToName(static_cast<Colour>(3)), QString());
}

void RGObjectTest::copiesAreApart()
{
    const SampleObject object = fullSample();
    SampleObject copy = object;
    copy.AppendFigure(4);
    copy.GetExtra().SetNumber(1);
    QVERIFY(object == fullSample());
    QVERIFY(copy != object);
    SampleObject moved = std::move(copy);
    moved = object;
    QVERIFY(moved == object);
}

void RGObjectTest::binaryIsAppendedAndConsumed()
{
    std::string bytes = "before";
    fullSample().appendBinary(bytes);
    smallSample().appendBinary(bytes);
    const char* begin = bytes.data() + 6;
    const char* const end = bytes.data() + bytes.size();
    SampleObject object;
    QVERIFY(object.readBinary(begin, end));
    QVERIFY(object == fullSample());
    QVERIFY(object.readBinary(begin, end));
    QVERIFY(object == smallSample());
    QCOMPARE(begin, end);
    QVERIFY(!object.readBinary(begin, end));
}

void RGObjectTest::binaryCutAnywhereIsRefused()
{
    const std::string whole = binaryOf(fullSample());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SampleObject object = smallSample();
        QCOMPARE(readCopy(object, whole.substr(0, length)), -1);
        QVERIFY(object == smallSample());
    }
}

void RGObjectTest::binaryWithOneByteChangedNeverHarms()
{
    const std::string whole = binaryOf(fullSample());
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string changed = whole;
            changed[at] = static_cast<char>(changed[at] ^ (1 << bit));
            SampleObject object = smallSample();
            const bool read = readCopy(object, changed) >= 0;
            SampleObject again;
            const bool same = read ? readExactly(again, binaryOf(object)) && again == object : object == smallSample();
            QVERIFY2(same, qPrintable(QStringLiteral("bit %1 of byte %2").arg(bit).arg(at)));
        }
    }
}

void RGObjectTest::binaryOfAnotherVersionIsRefused()
{
    std::string bytes = binaryOf(smallSample());
    QCOMPARE(bytes[0], '\1');
    bytes[0] = '\2';
    SampleObject object;
    QVERIFY(!readExactly(object, bytes));
}

void RGObjectTest::binaryWithUnknownFieldsIsRefused()
{
    SampleObject object;
    QVERIFY(readExactly(object, std::string("\1\0\0\0\0", 5)));
    QVERIFY(!readExactly(object, std::string("\1\0\0\0\x80", 5)));
}

void RGObjectTest::binaryWithHugeCountsIsRefusedAtOnce()
{
    SampleObject object;
    const std::string huge = "\xFF\xFF\xFF\xFF";
    QVERIFY(!readExactly(object, std::string("\1\1\0\0\0", 5) + huge + "name"));
    QVERIFY(!readExactly(object, std::string("\1\4\0\0\0", 5) + huge + "list"));
    QVERIFY(!readExactly(object, std::string("\1\0\0\1\0", 5) + huge + std::string(1000, '\0')));
}

QTEST_APPLESS_MAIN(RGObjectTest)
#include "tst_rgobject.moc"
