#include "sampleobject.h"

#include <reportcore/rgexception.h>

#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

#include <functional>

using namespace REPORTGENERATOR;

namespace {

using Reading = std::function<bool(IRGObject&, const QString&)>;

bool readFromString(IRGObject& object, const QString& text)
{
    return object.SetXmlString(text, true);
}

bool readFromStream(IRGObject& object, const QString& text)
{
    QXmlStreamReader reader(text);
    return object.ProcessXml(reader);
}

bool readFromFile(IRGObject& object, const QString& text)
{
    QTemporaryFile file;
    if (!file.open())
        return false;
    file.write(text.toUtf8());
    file.seek(0);
    return object.LoadXml(&file);
}

const std::pair<const char*, Reading> readings[] = {
    {"string", readFromString}, {"stream", readFromStream}, {"file", readFromFile}};

/// A document of a small sample with `extra` inserted at its end.
QString documentWith(const QString& extra)
{
    return QStringLiteral("<SampleObject><Name>n</Name><Head><Number>1</Number></Head><Address>a</Address>") + extra +
           QStringLiteral("</SampleObject>");
}

QString streamed(const IRGObject& object)
{
    QString text;
    QXmlStreamWriter writer(&text);
    object.GetXml(writer);
    return text;
}

QString textOfUnits(std::initializer_list<char16_t> units)
{
    QString text;
    for (const char16_t unit : units)
        text.append(QChar(unit));
    return text;
}

QString everyCodeUnit()
{
    QString text;
    for (int unit = 0xFFFF; unit >= 0; --unit)
        text.append(QChar(static_cast<char16_t>(unit)));
    return text;
}

} // namespace

class IRGObjectTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentsOfAllFormsReadBackEqual();
    void resetLeavesANewObject();
    void hasDataOnceAFieldIsSet();
    void checkNamesTheMissingField();
    void checkWithoutThrowingAnswers();
    void checkFindsImpossibleValues_data();
    void checkFindsImpossibleValues();
    void writingChecksOnlyWithValidation();
    void readingWithoutValidationAcceptsWhatIsMissing();
    void refusesAndStaysAsItWas_data();
    void refusesAndStaysAsItWas();
    void refusesWhatIsNotWellFormed_data();
    void refusesWhatIsNotWellFormed();
    void refusesWhatIsNotWellFormedBeforeTheRoot_data();
    void refusesWhatIsNotWellFormedBeforeTheRoot();
    void refusesWhatFollowsTheRoot_data();
    void refusesWhatFollowsTheRoot();
    void accepts_data();
    void accepts();
    void textsSurvive_data();
    void textsSurvive();
    void plainTextsStayPlain();
    void skipsUnknownElementsWhereTheClassDoes();
    void refusesUnknownElementsWhereTheClassDoes();
    void streamStopsBehindTheElement();
    void streamWithDocumentTypeIsRefused();
    void stringThatIsNoDocumentOfTheClassGivesFalseOnRequest();
    void loadsAndSavesFiles();
    void loadingWhatCannotBeOpenedGivesFalse();
    void loadingFromAnOpenFileLeavesItOpen();
    void refusesFilesThatAreNotUtf8_data();
    void refusesFilesThatAreNotUtf8();
    void refusesFilesBeyondTheLimit();
    void readsEndlessDevicesToTheLimitOnly();
    void deepNestingIsRefusedByEveryWay_data();
    void deepNestingIsRefusedByEveryWay();
    void savingAnInvalidObjectLeavesTheFile();
    void savingWhereItCannotGivesFalse();
    void dataStreamReadsBackEqual();
    void dataStreamRefusesOtherVersions();
    void dataStreamThatEndsEarlyGivesFalse();
    void dataStreamWithForeignBytesThrows();
    void dataStreamChecksOnRequest();
};

void IRGObjectTest::documentsOfAllFormsReadBackEqual()
{
    for (const SampleObject& object : {smallSample(), fullSample()}) {
        for (const QString& text : {object.GetXmlString(), streamed(object)}) {
            for (const auto& [name, read] : readings) {
                SampleObject back;
                QVERIFY2(read(back, text), name);
                QVERIFY2(back == object, name);
            }
        }
    }
}

void IRGObjectTest::resetLeavesANewObject()
{
    SampleObject object = fullSample();
    object.Reset();
    QVERIFY(object == SampleObject());
    QVERIFY(!object.HasData());
}

void IRGObjectTest::hasDataOnceAFieldIsSet()
{
    SampleObject object;
    QVERIFY(!object.HasData());
    object.SetFlag(false);
    QVERIFY(object.HasData());
    object.Reset();
    object.AppendFigure(0);
    QVERIFY(object.HasData());
    object.ResetFigure();
    QVERIFY(!object.HasData());
}

void IRGObjectTest::checkNamesTheMissingField()
{
    SampleObject object = smallSample();
    object.Check();
    object.ResetAddress();
    try {
        object.Check();
        QFAIL("an address is required");
    } catch (const RGException& exception) {
        QCOMPARE(exception.GetOrigin(), QStringLiteral("SampleObject"));
        QCOMPARE(exception.GetMessage(), QStringLiteral("Address is missing"));
    }
}

void IRGObjectTest::checkWithoutThrowingAnswers()
{
    QVERIFY(smallSample().Check(false));
    QVERIFY(smallSample().Check(true));
    QVERIFY(!SampleObject().Check(false));
    QVERIFY_EXCEPTION_THROWN(SampleObject().Check(true), RGException);
}

void IRGObjectTest::checkFindsImpossibleValues_data()
{
    QTest::addColumn<SampleObject>("object");
    SampleObject object = smallSample();
    object.SetColour(static_cast<SampleObject::Colour>(3));
    QTest::newRow("an enumerator too high") << object;
    object.SetColour(SampleObject::NameToColour(QStringLiteral("Purple")));
    QTest::newRow("an unknown name's enumerator") << object;
    object = smallSample();
    object.AppendPalette(static_cast<SampleObject::Colour>(-1));
    QTest::newRow("an enumerator in a list") << object;
    object = smallSample();
    object.SetLevel(qQNaN());
    QTest::newRow("not a number") << object;
    object.SetLevel(qInf());
    QTest::newRow("infinity") << object;
    object = smallSample();
    object.SetTime(QDateTime());
    QTest::newRow("no time") << object;
    object.SetTime(QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC));
    QTest::newRow("a time that has no text") << object;
    object = smallSample();
    object.SetExtra(SamplePart());
    QTest::newRow("an empty part") << object;
    object = smallSample();
    object.AppendItem(SamplePart());
    QTest::newRow("an empty item") << object;
}

void IRGObjectTest::checkFindsImpossibleValues()
{
    QFETCH(SampleObject, object);
    QVERIFY(!object.Check(false));
    QVERIFY_EXCEPTION_THROWN(object.Check(), RGException);
    QVERIFY_EXCEPTION_THROWN(object.GetXmlString(), RGException);
}

void IRGObjectTest::writingChecksOnlyWithValidation()
{
    SampleObject object;
    object.SetName(QStringLiteral("n"));
    QVERIFY_EXCEPTION_THROWN(object.GetXmlString(), RGException);
    QVERIFY_EXCEPTION_THROWN(streamed(object), RGException);
    object.SetValidate(false);
    QCOMPARE(streamed(object), QStringLiteral("<SampleObject><Name>n</Name></SampleObject>"));
}

void IRGObjectTest::readingWithoutValidationAcceptsWhatIsMissing()
{
    SampleObject expected;
    expected.SetName(QStringLiteral("n"));
    for (const auto& [name, read] : readings) {
        SampleObject object;
        object.SetValidate(false);
        QVERIFY2(read(object, QStringLiteral("<SampleObject><Name>n</Name></SampleObject>")), name);
        QVERIFY2(object == expected, name);
        QVERIFY_EXCEPTION_THROWN(read(object, QStringLiteral("<SampleObject><Small>x</Small></SampleObject>")),
                                 RGException);
        QVERIFY2(object == expected, name);
    }
}

void IRGObjectTest::refusesAndStaysAsItWas_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, const QString& text) { QTest::newRow(name) << text; };
    const auto extra = [](const char* name, const char* text) {
        QTest::newRow(name) << documentWith(QLatin1String(text));
    };
    row("nothing", QString());
    row("blanks", QStringLiteral("  \n"));
    row("no XML", QStringLiteral("plain"));
    row("cut off", documentWith({}).chopped(3));
    row("a missing field", QStringLiteral("<SampleObject><Name>n</Name></SampleObject>"));
    row("an empty document", QStringLiteral("<SampleObject/>"));
    row("a document type", QStringLiteral("<!DOCTYPE SampleObject SYSTEM \"file:///etc/passwd\">") + documentWith({}));
    row("an entity of its own",
        QStringLiteral("<!DOCTYPE s [<!ENTITY e \"x\">]>") + documentWith(QStringLiteral("<Text>&e;</Text>")));
    extra("tags that cross", "<Text><a></Text></a>");
    extra("an unknown entity", "<Text>&foreign;</Text>");
    extra("a reference to no character", "<Text>&#0;</Text>");
    extra("a reference to a control character", "<Text>&#x1;</Text>");
    extra("a reference to a surrogate", "<Text>&#xD800;</Text>");
    extra("a reference beyond Unicode", "<Text>&#x110000;</Text>");
    extra("an ampersand alone", "<Text>a & b</Text>");
    extra("a control character", "<Text>\x01</Text>");
    extra("elements in a value", "<Text>a<b/></Text>");
    extra("a scalar twice", "<Small>1</Small><Small>1</Small>");
    extra("a part twice", "<Extra><Number>1</Number></Extra><Extra><Number>1</Number></Extra>");
    extra("text among the fields", "stray");
    extra("an empty number", "<Small></Small>");
    extra("letters behind a number", "<Small>12x</Small>");
    extra("a fraction for a whole number", "<Small>1.5</Small>");
    extra("a number too large", "<Small>2147483648</Small>");
    extra("a number too small", "<Small>-2147483649</Small>");
    extra("a negative count", "<Count>-1</Count>");
    extra("a count too large", "<Count>4294967296</Count>");
    extra("a negative total", "<Total>-1</Total>");
    extra("a total too large", "<Total>18446744073709551616</Total>");
    extra("a total in hexadecimal", "<Total>0x10</Total>");
    extra("a balance too large", "<Balance>9223372036854775808</Balance>");
    extra("not a number", "<Level>nan</Level>");
    extra("an infinite number", "<Level>inf</Level>");
    extra("a number beyond all doubles", "<Level>1e999</Level>");
    extra("a word for a flag", "<Choice>yes</Choice>");
    extra("a flag in capitals", "<Choice>TRUE</Choice>");
    extra("an unknown enumerator", "<Colour>Purple</Colour>");
    extra("an enumerator by its word", "<Colour>a green</Colour>");
    extra("a number for an enumerator", "<Colour>1</Colour>");
    extra("an impossible day", "<Time>2023-02-30T00:00:00.000Z</Time>");
    extra("a list item that is no number", "<Figure>1</Figure><Figure>two</Figure>");
    extra("a nested field missing", "<Extra><Note>n</Note></Extra>");
    extra("a nested value impossible", "<Item><Number>1</Number><Value>x</Value></Item>");
}

void IRGObjectTest::refusesAndStaysAsItWas()
{
    QFETCH(QString, text);
    for (const auto& [name, read] : readings) {
        SampleObject object = fullSample();
        bool refused = false;
        try {
            read(object, text);
        } catch (const RGException& exception) {
            refused = !exception.GetMessage().isEmpty() && exception.GetOrigin() == QStringLiteral("SampleObject");
        }
        QVERIFY2(refused, name);
        QVERIFY2(object == fullSample(), name);
    }
}

// In an element that is skipped, where a parser that reads for content alone would not look.
void IRGObjectTest::refusesWhatIsNotWellFormed_data()
{
    QTest::addColumn<QString>("markup");
    const auto row = [](const char* name, const char* markup) { QTest::newRow(name) << QString::fromUtf8(markup); };
    row("an attribute twice", "<a b='1' b='2'/>");
    row("an attribute twice by its namespace", "<a xmlns:p='u' xmlns:q='u' p:b='1' q:b='2'/>");
    row("a namespace twice", "<a xmlns:p='u' xmlns:p='v'/>");
    row("a default namespace twice", "<a xmlns='u' xmlns='v'/>");
    row("a prefix without a namespace", "<p:a/>");
    row("a prefix without a name", "<p: xmlns:p='u'/>");
    row("a name with two colons", "<p:a:b xmlns:p='u'/>");
    row("an attribute without a value", "<a b/>");
    row("an attribute without quotes", "<a b=1/>");
    row("an attribute that begins with the wrong quote", "<a b=\"1'/>");
    row("attributes without a blank between them", "<a b='1'c='2'/>");
    row("markup in an attribute", "<a b='<'/>");
    row("an ampersand in an attribute", "<a b='&'/>");
    row("an unknown entity in an attribute", "<a b='&foreign;'/>");
    row("a reference to no character in an attribute", "<a b='&#0;'/>");
    row("a control character in an attribute", "<a b='\x01'/>");
    QTest::newRow("a zero in an attribute's name") << QStringLiteral("<a b%1c='1'/>").arg(QChar(QChar::Null));
    QTest::newRow("a zero in a prefix") << QStringLiteral("<a xmlns:b%1='u'/>").arg(QChar(QChar::Null));
    QTest::newRow("a zero in a text") << QStringLiteral("<a>%1</a>").arg(QChar(QChar::Null));
    row("an attribute in an end tag", "<a></a b='1'>");
    row("an end tag of another name", "<a></b>");
    row("an end tag in another case", "<a></A>");
    row("an end tag too many", "</a>");
    row("a start tag too many", "<a>");
    row("a blank before a name", "< a/>");
    row("a blank within a tag's end", "<a / >");
    row("a tag without a name", "<>");
    row("an end tag without a name", "</>");
    row("a tag in a tag", "<a <b/>");
    row("a name that begins with a digit", "<1a/>");
    row("a name that begins with a hyphen", "<-a/>");
    row("a name with a sign in it", "<a+b/>");
    row("a name with a no-break space", "<a\xC2\xA0/>");
    row("a name that begins with a combining mark", "<\xCC\x80/>");
    row("an ampersand in a text", "<a>b & c</a>");
    row("an unknown entity in a text", "<a>&foreign;</a>");
    row("an entity without its end", "<a>&lt</a>");
    row("an entity in capitals", "<a>&LT;</a>");
    row("an empty entity", "<a>&;</a>");
    row("an empty reference", "<a>&#;</a>");
    row("a reference in capitals", "<a>&#X41;</a>");
    row("a reference with a letter", "<a>&#6x;</a>");
    row("a reference to a control character", "<a>&#x1;</a>");
    row("a reference to a surrogate", "<a>&#xD800;</a>");
    row("a reference to no character", "<a>&#xFFFE;</a>");
    row("a reference beyond all numbers", "<a>&#99999999999999999999;</a>");
    row("the end of character data in a text", "<a>]]></a>");
    row("the end of character data behind a bracket", "<a>]]]></a>");
    row("a control character in a text", "<a>\x01</a>");
    row("a form feed", "<a>\f</a>");
    row("no character", "<a>\xEF\xBF\xBE</a>");
    row("no character among others", "<a>b\xEF\xBF\xBF\xEF\xBF\xBD</a>");
    row("two hyphens in a comment", "<!-- a -- b -->");
    row("three hyphens at the end of a comment", "<!-- a --->");
    row("a comment that is too short", "<!-->");
    row("a control character in a comment", "<!-- \x01 -->");
    row("a comment without an end", "<!-- ");
    row("character data in small letters", "<![cdata[x]]>");
    row("character data with a blank", "<![CDATA [x]]>");
    row("character data without an end", "<![CDATA[x");
    row("a control character in character data", "<![CDATA[\x01]]>");
    row("an instruction without a name", "<?"
                                         "?>");
    row("an instruction with a blank before its name", "<? a?>");
    row("an instruction named xml", "<?xml version='1.0'?>");
    row("an instruction named xml in capitals", "<?XML a?>");
    row("an instruction without a blank behind its name", "<?a+b?>");
    row("an instruction without an end", "<?a ");
    row("a control character in an instruction", "<?a \x01?>");
    row("a document type within", "<!DOCTYPE a>");
    row("a declaration within", "<!ELEMENT a ANY>");
}

void IRGObjectTest::refusesWhatIsNotWellFormed()
{
    QFETCH(QString, markup);
    for (const auto& [name, read] : readings) {
        SampleObject object;
        QVERIFY_EXCEPTION_THROWN(read(object, documentWith(QStringLiteral("<New>%1</New>").arg(markup))), RGException);
        QVERIFY_EXCEPTION_THROWN(read(object, documentWith(markup)), RGException);
        QVERIFY2(object == SampleObject(), name);
    }
}

void IRGObjectTest::refusesWhatIsNotWellFormedBeforeTheRoot_data()
{
    QTest::addColumn<QString>("head");
    const auto row = [](const char* name, const char* head) { QTest::newRow(name) << QString::fromUtf8(head); };
    row("a word", "word");
    row("a reference", "&#32;");
    row("character data", "<![CDATA[]]>");
    row("a blank before the declaration", " <?xml version='1.0'?>");
    row("two declarations", "<?xml version='1.0'?><?xml version='1.0'?>");
    row("a declaration in capitals", "<?XML version='1.0'?>");
    row("a declaration without a version", "<?xml encoding='UTF-8'?>");
    row("a declaration of another version", "<?xml version='2.0'?>");
    row("a declaration in another order", "<?xml encoding='UTF-8' version='1.0'?>");
    row("a declaration with something else", "<?xml version='1.0' foreign='1'?>");
    row("a declaration that is undecided", "<?xml version='1.0' standalone='maybe'?>");
    row("a declaration of a malformed encoding", "<?xml version='1.0' encoding='UTF 8'?>");
    row("a declaration without an end", "<?xml version='1.0'>");
    row("a declaration cut short", "<?xml version=\"1.0\" encoding=\"UTF-8\"?");
    row("an end tag", "</SampleObject>");
    row("a control character", "\x01");
    row("a byte order mark that is not the first", " \xEF\xBB\xBF");
}

void IRGObjectTest::refusesWhatIsNotWellFormedBeforeTheRoot()
{
    QFETCH(QString, head);
    for (const auto& [name, read] : readings) {
        SampleObject object;
        QVERIFY_EXCEPTION_THROWN(read(object, head + documentWith({})), RGException);
        QVERIFY2(object == SampleObject(), name);
    }
}

void IRGObjectTest::refusesWhatFollowsTheRoot_data()
{
    QTest::addColumn<QString>("tail");
    QTest::newRow("one letter") << QStringLiteral("x");
    QTest::newRow("a word") << QStringLiteral(" word ");
    QTest::newRow("another root") << QStringLiteral("<SampleObject/>");
    QTest::newRow("an end tag") << QStringLiteral("</SampleObject>");
    QTest::newRow("half a tag") << QStringLiteral("<");
    QTest::newRow("a reference") << QStringLiteral("&#65;");
    QTest::newRow("a reference to a blank") << QStringLiteral("&#32;");
    QTest::newRow("character data") << QStringLiteral("<![CDATA[]]>");
    QTest::newRow("a declaration") << QStringLiteral("<?xml version='1.0'?>");
    QTest::newRow("a document type") << QStringLiteral("<!DOCTYPE SampleObject>");
    QTest::newRow("a malformed comment") << QStringLiteral("<!-- a -- b -->");
    QTest::newRow("a comment without an end") << QStringLiteral("<!-- a");
    QTest::newRow("a control character") << QStringLiteral("\x01");
    QTest::newRow("a byte order mark") << QString(QChar::ByteOrderMark);
    QTest::newRow("a zero") << QString(QChar::Null);
}

void IRGObjectTest::refusesWhatFollowsTheRoot()
{
    QFETCH(QString, tail);
    SampleObject object;
    QVERIFY_EXCEPTION_THROWN(readFromString(object, documentWith({}) + tail), RGException);
    QVERIFY_EXCEPTION_THROWN(readFromFile(object, documentWith({}) + tail), RGException);
    QVERIFY(object == SampleObject());
    QVERIFY(readFromString(object, documentWith({}) + QStringLiteral(" \n<!-- a comment -->\n")));
}

void IRGObjectTest::accepts_data()
{
    QTest::addColumn<QString>("extra");
    QTest::addColumn<QString>("field");
    const auto row = [](const char* name, const char* text, const char* field) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(field);
    };
    row("blanks around a number", "<Text>5</Text><Small> \n 5 </Small>", "5");
    row("references for characters", "<Text>&#65;&#x42;&lt;&gt;&amp;&quot;&apos;</Text>", "AB<>&\"'");
    row("a reference for an emoji", "<Text>&#x1F600;</Text>", "\xF0\x9F\x98\x80");
    row("character data", "<Text>a<![CDATA[<b>&amp;]]>c</Text>", "a<b>&amp;c");
    row("a comment in a value", "<Text>a<!-- no -->b</Text>", "ab");
    row("a processing instruction", "<?php no?><Text>a</Text>", "a");
    row("line ends of other systems", "<Text>a\r\nb\rc</Text>", "a\nb\nc");
    row("attributes", "<Text lang='de' other = \"&lt;'&gt;&#65;\">a</Text >", "a");
    row("an empty element with attributes", "<New a='1' A='2'/><Text>a</Text>", "a");
    row("names with a prefix", "<p:New xmlns:p='u' p:a='1' a='2'><p:New/></p:New><Text>a</Text>", "a");
    row("names in other scripts", "<\xC3\x84\xE3\x81\x82/><Text>a</Text>", "a");
    row("an attribute that holds brackets", "<New a=']]>'/><Text>a</Text>", "a");
    row("a bracket and two", "<Text>a]] ></Text>", "a]] >");
    row("character data with brackets", "<Text><![CDATA[a]]]]><![CDATA[>]]></Text>", "a]]>");
    row("instructions in a value", "<Text>a<?b c? d?>e</Text>", "ae");
    row("a value between comments", "<Small><!-- 4 --> 5 <!-- 6 --></Small><Text>a</Text>", "a");
    row("characters that few know", "<Text>\x7F\xC2\x85\xEF\xBF\xBD\xEF\xB7\x90</Text>",
        "\x7F\xC2\x85\xEF\xBF\xBD\xEF\xB7\x90");
    row("a byte order mark in a text", "<Text>_\xEF\xBB\xBF</Text>", "_\xEF\xBB\xBF");
    row("a text of blanks", "<Text>  </Text>", "  ");
    row("an empty text", "<Text/>", "");
    row("umlauts", "<Text>\xC3\xA4\xC3\xB6</Text>", "\xC3\xA4\xC3\xB6");
}

void IRGObjectTest::accepts()
{
    QFETCH(QString, extra);
    QFETCH(QString, field);
    for (const auto& [name, read] : readings) {
        SampleObject object;
        QVERIFY2(read(object, documentWith(extra)), name);
        QVERIFY2(object.IsTextSet(), name);
        QCOMPARE(object.GetText(), field);
    }
}

void IRGObjectTest::textsSurvive_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("every code unit") << everyCodeUnit();
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("only blanks") << QStringLiteral(" \t ");
    QTest::newRow("only line ends") << QStringLiteral("\n\r\n\r");
    QTest::newRow("blanks at both ends") << QStringLiteral("  a  ");
    QTest::newRow("markup") << QStringLiteral("<a href=\"x\">&amp;]]>'</a>");
    QTest::newRow("what looks like a group") << QStringLiteral("\\u0041 \\u005Cu0041 \\\\u0041 \\u00 \\U0041 \\");
    QTest::newRow("a backslash before a control character") << textOfUnits({u'\\', 1, u'\\', u'u', u'0', 0});
    QTest::newRow("emoji") << QString::fromUtf8("\xF0\x9F\x98\x80\xF0\x9F\x87\xA9");
    QTest::newRow("a high surrogate at the end") << textOfUnits({u'a', 0xD83D});
    QTest::newRow("surrogates the wrong way round") << textOfUnits({0xDE00, 0xD83D});
    QTest::newRow("two high surrogates and a low one") << textOfUnits({0xD83D, 0xD83D, 0xDE00});
    QTest::newRow("a byte order mark") << textOfUnits({0xFEFF, u'a', 0xFEFF});
    QTest::newRow("characters next to each other in memory") << textOfUnits({0, 0x100, 0x1});
}

void IRGObjectTest::textsSurvive()
{
    QFETCH(QString, text);
    SampleObject object = smallSample();
    object.SetText(text);
    object.AppendAddress(text);
    for (const QString& document : {object.GetXmlString(), streamed(object)}) {
        for (const auto& [name, read] : readings) {
            SampleObject back;
            QVERIFY2(read(back, document), name);
            QCOMPARE(back.GetText(), text);
            QVERIFY2(back == object, name);
        }
    }
    std::string bytes;
    object.appendBinary(bytes);
    SampleObject back;
    const char* begin = bytes.data();
    QVERIFY(back.readBinary(begin, bytes.data() + bytes.size()));
    QCOMPARE(back.GetText(), text);
}

void IRGObjectTest::plainTextsStayPlain()
{
    SampleObject object = smallSample();
    object.SetText(QString::fromUtf8("C:\\up\\new \xC3\xA4 \xF0\x9F\x98\x80\n\tend"));
    QVERIFY(streamed(object).contains(QStringLiteral("<Text>") + object.GetText() + QStringLiteral("</Text>")));
}

void IRGObjectTest::skipsUnknownElementsWhereTheClassDoes()
{
    for (const auto& [name, read] : readings) {
        SampleObject object;
        QVERIFY2(read(object, documentWith(QStringLiteral("<New><Deep>1</Deep></New><Small>4</Small><New/>"))), name);
        QCOMPARE(object.GetSmall(), 4);
    }
}

void IRGObjectTest::refusesUnknownElementsWhereTheClassDoes()
{
    const QString text = QStringLiteral("<SamplePart><Number>1</Number><New/></SamplePart>");
    for (const auto& [name, read] : readings) {
        SamplePart part;
        QVERIFY_EXCEPTION_THROWN(read(part, text), RGException);
        QVERIFY2(part == SamplePart(), name);
        part.SetValidate(false);
        QVERIFY2(read(part, text), name);
        QCOMPARE(part.GetNumber(), 1);
    }
    QVERIFY_EXCEPTION_THROWN(
        SampleObject().SetXmlString(documentWith(QStringLiteral("<Extra><Number>1</Number><New/></Extra>")), true),
        RGException);
}

void IRGObjectTest::streamStopsBehindTheElement()
{
    QXmlStreamReader reader(QStringLiteral("<all>%1<next/></all>").arg(documentWith({})));
    QVERIFY(reader.readNextStartElement());
    QVERIFY(reader.readNextStartElement());
    SampleObject object;
    QVERIFY(object.ProcessXml(reader));
    QVERIFY(reader.isEndElement());
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), QStringLiteral("next"));
    QVERIFY(!object.ProcessXml(reader));
}

void IRGObjectTest::streamWithDocumentTypeIsRefused()
{
    QXmlStreamReader reader(QStringLiteral("<!DOCTYPE SampleObject>") + documentWith({}));
    SampleObject object;
    QVERIFY_EXCEPTION_THROWN(object.ProcessXml(reader), RGException);
}

void IRGObjectTest::stringThatIsNoDocumentOfTheClassGivesFalseOnRequest()
{
    SampleObject object = fullSample();
    QVERIFY(!object.SetXmlString(QStringLiteral("<SampleObject>"), false));
    QVERIFY(!object.SetXmlString(QString(), false));
    QVERIFY(!object.SetXmlString(QStringLiteral("<Other/>"), false));
    QVERIFY_EXCEPTION_THROWN(object.SetXmlString(QStringLiteral("<Other/>"), true), RGException);
    QVERIFY_EXCEPTION_THROWN(object.SetXmlString(QStringLiteral("<SampleObject/>"), false), RGException);
    QVERIFY(object == fullSample());
    QVERIFY(object.SetXmlString(smallSample().GetXmlString(), false));
    QVERIFY(object == smallSample());
}

void IRGObjectTest::loadsAndSavesFiles()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sample.xml"));
    QVERIFY(fullSample().SaveXml(path));
    SampleObject object;
    QVERIFY(object.LoadXml(path));
    QVERIFY(object == fullSample());
    QFile closed(path);
    SampleObject again;
    QVERIFY(again.LoadXml(&closed));
    QVERIFY(again == fullSample());
    QVERIFY(!closed.isOpen());
}

void IRGObjectTest::loadingWhatCannotBeOpenedGivesFalse()
{
    const QTemporaryDir folder;
    SampleObject object = fullSample();
    QVERIFY(!object.LoadXml(folder.filePath(QStringLiteral("missing.xml"))));
    QVERIFY(!object.LoadXml(folder.path()));
    QVERIFY(!object.LoadXml(QString()));
    const QString other = folder.filePath(QStringLiteral("other.xml"));
    QVERIFY(sampleValue<SamplePart>().SaveXml(other));
    QVERIFY(!object.LoadXml(other));
    QVERIFY(object == fullSample());
}

void IRGObjectTest::loadingFromAnOpenFileLeavesItOpen()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("junk before" + documentWith({}).toUtf8());
    file.seek(11);
    SampleObject object;
    QVERIFY(object.LoadXml(&file));
    QCOMPARE(object.GetName(), QStringLiteral("n"));
    QVERIFY(file.isOpen());
}

void IRGObjectTest::refusesFilesThatAreNotUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("half a character") << documentWith(QStringLiteral("<Text>?</Text>")).toUtf8().replace('?', "\xC3");
    QTest::newRow("a surrogate in UTF-8")
        << documentWith(QStringLiteral("<Text>?</Text>")).toUtf8().replace('?', "\xED\xA0\x80");
    QTest::newRow("an overlong character")
        << documentWith(QStringLiteral("<Text>?</Text>")).toUtf8().replace('?', "\xC0\x80");
    QTest::newRow("half a character in what is skipped")
        << documentWith(QStringLiteral("<New>?</New>")).toUtf8().replace('?', "\xC3");
    QTest::newRow("half a character in an attribute")
        << documentWith(QStringLiteral("<New a='?'/>")).toUtf8().replace('?', "\xC3");
    QTest::newRow("a zero behind the end") << documentWith({}).toUtf8() + QByteArray("\0x", 2);
    QTest::newRow("a declared encoding") << "<?xml version='1.0' encoding='ISO-8859-1'?>" + documentWith({}).toUtf8();
    const QString wide = documentWith({});
    QTest::newRow("UTF-16") << QByteArray("\xFF\xFE", 2) +
                                   QByteArray(reinterpret_cast<const char*>(wide.utf16()), wide.size() * 2);
}

void IRGObjectTest::refusesFilesThatAreNotUtf8()
{
    QFETCH(QByteArray, bytes);
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(bytes);
    file.seek(0);
    SampleObject object;
    QVERIFY_EXCEPTION_THROWN(object.LoadXml(&file), RGException);
    QVERIFY(object == SampleObject());
}

void IRGObjectTest::refusesFilesBeyondTheLimit()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    const QByteArray document = documentWith({}).toUtf8();
    const QByteArray blanks(100 * 1024 * 1024 - document.size(), ' ');
    file.write(document + blanks);
    file.seek(0);
    SampleObject object;
    try {
        object.LoadXml(&file);
        QFAIL("a file of 100 MiB was read");
    } catch (const RGException& exception) {
        QVERIFY2(exception.GetMessage().contains(QStringLiteral("larger than 32 MiB")), exception.what());
    }
    file.resize(32 * 1024 * 1024);
    file.seek(0);
    QVERIFY(object.LoadXml(&file));
}

void IRGObjectTest::readsEndlessDevicesToTheLimitOnly()
{
    SampleObject object;
    QVERIFY_EXCEPTION_THROWN(object.LoadXml(QStringLiteral("/dev/zero")), RGException);
}

void IRGObjectTest::deepNestingIsRefusedByEveryWay_data()
{
    QTest::addColumn<QString>("opening");
    QTest::addColumn<QString>("closing");
    QTest::newRow("plain elements") << QStringLiteral("<a>") << QStringLiteral("</a>");
    QTest::newRow("elements with attributes") << QStringLiteral("<a b='1'>") << QStringLiteral("</a>");
}

void IRGObjectTest::deepNestingIsRefusedByEveryWay()
{
    QFETCH(QString, opening);
    QFETCH(QString, closing);
    const auto nested = [&](int depth) { return documentWith(opening.repeated(depth) + closing.repeated(depth)); };
    for (const auto& [name, read] : readings) {
        SampleObject object;
        QVERIFY2(read(object, nested(63)), name);
        QVERIFY_EXCEPTION_THROWN(read(object, nested(64)), RGException);
        QVERIFY_EXCEPTION_THROWN(read(object, nested(100'000)), RGException);
    }
}

void IRGObjectTest::savingAnInvalidObjectLeavesTheFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sample.xml"));
    QVERIFY(fullSample().SaveXml(path));
    QVERIFY_EXCEPTION_THROWN(SampleObject().SaveXml(path), RGException);
    SampleObject object;
    QVERIFY(object.LoadXml(path));
    QVERIFY(object == fullSample());
}

void IRGObjectTest::savingWhereItCannotGivesFalse()
{
    const QTemporaryDir folder;
    QVERIFY(!fullSample().SaveXml(folder.filePath(QStringLiteral("missing/sample.xml"))));
    QVERIFY(!fullSample().SaveXml(folder.path()));
}

void IRGObjectTest::dataStreamReadsBackEqual()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    fullSample().GetBinary(out, 1, true);
    smallSample().GetBinary(out, 1, false);
    QDataStream in(bytes);
    SampleObject object;
    QVERIFY(object.SetBinary(in, 1));
    QVERIFY(object == fullSample());
    QVERIFY(object.SetBinary(in, 1));
    QVERIFY(object == smallSample());
    QVERIFY(in.atEnd());
}

void IRGObjectTest::dataStreamRefusesOtherVersions()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    QVERIFY_EXCEPTION_THROWN(fullSample().GetBinary(out, 2, true), RGException);
    QCOMPARE(bytes.size(), 0);
    QDataStream in(bytes);
    QVERIFY_EXCEPTION_THROWN(SampleObject().SetBinary(in, 0), RGException);
}

void IRGObjectTest::dataStreamThatEndsEarlyGivesFalse()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    fullSample().GetBinary(out, 1, true);
    QDataStream in(bytes.chopped(1));
    SampleObject object = smallSample();
    QVERIFY(!object.SetBinary(in, 1));
    QCOMPARE(in.status(), QDataStream::ReadPastEnd);
    QVERIFY(object == smallSample());
}

void IRGObjectTest::dataStreamWithForeignBytesThrows()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << QByteArray("foreign") << QByteArray();
    QDataStream in(bytes);
    SampleObject object = smallSample();
    QVERIFY_EXCEPTION_THROWN(object.SetBinary(in, 1), RGException);
    QVERIFY_EXCEPTION_THROWN(object.SetBinary(in, 1), RGException);
    QVERIFY(object == smallSample());
}

void IRGObjectTest::dataStreamChecksOnRequest()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    QVERIFY_EXCEPTION_THROWN(SampleObject().GetBinary(out, 1, true), RGException);
    QVERIFY(bytes.isEmpty());
    SampleObject().GetBinary(out, 1, false);
    SampleObject object = smallSample();
    QDataStream validated(bytes);
    QVERIFY_EXCEPTION_THROWN(object.SetBinary(validated, 1), RGException);
    QVERIFY(object == smallSample());
    object.SetValidate(false);
    QDataStream in(bytes);
    QVERIFY(object.SetBinary(in, 1));
    QVERIFY(object == SampleObject());
}

QTEST_APPLESS_MAIN(IRGObjectTest)
#include "tst_irgobject.moc"
