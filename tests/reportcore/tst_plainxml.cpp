#include "sampleobject.h"

#include <reportcore/plainxml_p.h>

#include <QBuffer>
#include <QXmlStreamWriter>
#include <QtTest>

using namespace REPORTGENERATOR;

class PlainXmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesWhatTheSystemWrites_data();
    void takesWhatTheSystemWrites();
    void takes_data();
    void takes();
    void leavesToOthers_data();
    void leavesToOthers();
    void leavesOutEveryByteThatDoesNotBelong();
    void takesElementsAsDeepAsTheLimit();
};

namespace {

bool isPlain(const QByteArray& document)
{
    return isPlainXml({document.constData(), static_cast<std::size_t>(document.size())});
}

QByteArray written(const SampleObject& object, bool formatted)
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(formatted);
    writer.writeStartDocument();
    object.GetXml(writer);
    writer.writeEndDocument();
    return bytes;
}

} // namespace

void PlainXmlTest::takesWhatTheSystemWrites_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("letters") << QStringLiteral("text");
    QTest::newRow("markup") << QStringLiteral("<a href=\"x\">&amp;]]>'</a>");
    QTest::newRow("control characters") << QStringLiteral("\x01\x7F\r\n\t");
    QTest::newRow("umlauts and emoji") << QString::fromUtf8("\xC3\xA4 \xF0\x9F\x98\x80");
    QTest::newRow("wide letters") << QString::fromUtf8("\xEF\xBC\xA1\xEF\xBF\xBD");
}

void PlainXmlTest::takesWhatTheSystemWrites()
{
    QFETCH(QString, text);
    SampleObject object = fullSample();
    object.SetText(text);
    QVERIFY(isPlain(written(object, true)));
    QVERIFY(isPlain(written(object, false)));
    QVERIFY(isPlain(object.GetXmlString().toUtf8()));
}

void PlainXmlTest::takes_data()
{
    QTest::addColumn<QByteArray>("document");
    const auto row = [](const char* name, const char* document) { QTest::newRow(name) << QByteArray(document); };
    row("an empty element", "<a/>");
    row("an element without content", "<a></a>");
    row("a text", "<a>b \n\tc</a>");
    row("nested elements", " <a><b>1</b>\n<c/></a>\n");
    row("the declaration", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>");
    row("the declaration of a text", "<?xml version=\"1.0\"?>\n<a/>");
    row("every entity", "<a>&lt;&gt;&amp;&quot;&apos;</a>");
    row("a name with all that a name may have", "<_a-Z.9/>");
    row("end tags that do not match, which are the parser's concern", "<a></b>");
}

void PlainXmlTest::takes()
{
    QFETCH(QByteArray, document);
    QVERIFY(isPlain(document));
}

void PlainXmlTest::leavesToOthers_data()
{
    QTest::addColumn<QByteArray>("document");
    const auto row = [](const char* name, const char* document) { QTest::newRow(name) << QByteArray(document); };
    row("nothing", "");
    row("blanks", " ");
    row("a text", "a");
    row("an attribute", "<a b='1'/>");
    row("a blank in a tag", "<a ></a>");
    row("a blank in an empty tag", "<a />");
    row("a prefix", "<a:b/>");
    row("a name in another script", "<\xC3\xA4/>");
    row("a name that begins with a digit", "<1/>");
    row("a tag without a name", "<></>");
    row("a tag that does not end", "<a");
    row("an end tag that does not end", "<a></a");
    row("an end tag first", "</a>");
    row("an element that does not end", "<a>b");
    row("two roots", "<a/><b/>");
    row("a text before the root", "b<a/>");
    row("a text behind the root", "<a/>b");
    row("an end tag behind the root", "<a/></a>");
    row("another declaration", "<?xml version='1.0'?><a/>");
    row("a blank before the declaration", " <?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>");
    row("a declaration alone", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    row("a comment", "<a><!-- b --></a>");
    row("character data", "<a><![CDATA[b]]></a>");
    row("an instruction", "<a><?b?></a>");
    row("a document type", "<!DOCTYPE a><a/>");
    row("a greater-than sign", "<a>]]></a>");
    row("a carriage return", "<a>\r</a>");
    row("a control character", "<a>\x01</a>");
    row("an ampersand", "<a>&</a>");
    row("an unknown entity", "<a>&b;</a>");
    row("an entity without its end", "<a>&lt</a>");
    row("a reference", "<a>&#65;</a>");
    row("a byte order mark", "\xEF\xBB\xBF<a/>");
    row("half a character", "<a>\xC3</a>");
    row("an overlong character", "<a>\xC0\x80</a>");
    row("a surrogate", "<a>\xED\xA0\x80</a>");
    row("no character", "<a>\xEF\xBF\xBE</a>");
}

void PlainXmlTest::leavesToOthers()
{
    QFETCH(QByteArray, document);
    QVERIFY(!isPlain(document));
}

void PlainXmlTest::leavesOutEveryByteThatDoesNotBelong()
{
    QByteArray allowed;
    for (int c = 0; c < 128; ++c) {
        const char byte = static_cast<char>(c);
        if (isPlain(QByteArray("<a>") + byte + "</a>")) {
            allowed += byte;
        }
    }
    QByteArray expected("\t\n");
    for (char c = ' '; c < 127; ++c) {
        if (!QByteArray("&<>").contains(c)) {
            expected += c;
        }
    }
    QCOMPARE(allowed, expected + '\x7F');
}

void PlainXmlTest::takesElementsAsDeepAsTheLimit()
{
    const auto nested = [](int depth) {
        return QByteArray("<a>").repeated(depth - 1) + "<a/>" + QByteArray("</a>").repeated(depth - 1);
    };
    QVERIFY(isPlain(nested(deepestElement)));
    QVERIFY(!isPlain(nested(deepestElement + 1)));
    QVERIFY(!isPlain(QByteArray("<a>").repeated(deepestElement + 1)));
}

QTEST_APPLESS_MAIN(PlainXmlTest)
#include "tst_plainxml.moc"
