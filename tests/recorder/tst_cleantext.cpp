#include <recorder/source/cleantext.h>

#include <QTest>

using ZelkoRecorder::cleanText;

class TestCleanText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatXmlCanCarry_data();
    void keepsWhatXmlCanCarry();
    void cutsLongTextsWithoutHalfACharacter();
};

void TestCleanText::keepsWhatXmlCanCarry_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cleaned");
    const QString violin = QString::fromUtf8("\xF0\x9D\x84\x9E");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("ordinary text") << "Burst 1"
                                   << "Burst 1";
    QTest::newRow("blanks around and between") << "  a \t  b "
                                               << "a b";
    QTest::newRow("several lines") << "a\r\nb\nc"
                                   << "a b c";
    QTest::newRow("a zero inside") << QString(u'a') + QChar(QChar::Null) + u'b' << "a b";
    QTest::newRow("an escape sequence") << QStringLiteral("a\u001b[31mb") << "a [31mb";
    QTest::newRow("no character at all") << QString(QChar(0xFFFF)) + u'a' + QChar(0xFFFE) << "a";
    QTest::newRow("beyond the base plane") << violin << violin;
    QTest::newRow("first half of a pair") << QString(violin.at(0)) + u'a' << "a";
    QTest::newRow("second half of a pair") << u'a' + QString(violin.at(1)) << "a";
    QTest::newRow("markup") << "<a&b>"
                            << "<a&b>";
}

void TestCleanText::keepsWhatXmlCanCarry()
{
    QFETCH(const QString, text);
    QTEST(cleanText(text), "cleaned");
}

void TestCleanText::cutsLongTextsWithoutHalfACharacter()
{
    const QString violin = QString::fromUtf8("\xF0\x9D\x84\x9E");
    QCOMPARE(cleanText(QString(2000, u'x')), QString(1000, u'x'));
    QCOMPARE(cleanText(QStringLiteral("abcdef"), 3), QStringLiteral("abc"));
    QCOMPARE(cleanText(QStringLiteral("ab") + violin, 3), QStringLiteral("ab"));
}

QTEST_APPLESS_MAIN(TestCleanText)
#include "tst_cleantext.moc"
