#include <vornappstartup/initext_p.h>

#include <QtTest>

class IniTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesGroupByGroup();
    void readsWhatPeopleWrite();
    void anyKeyAndValueComeBack_data();
    void anyKeyAndValueComeBack();
    void refusesWhatMakesNoSense_data();
    void refusesWhatMakesNoSense();
};

void IniTextTest::writesGroupByGroup()
{
    const IniValues values{{"Zoo", "1"}, {"Dialog/Header/Width", "3"}, {"Dialog/Text", " a"}, {"Empty", ""}};
    QCOMPARE(iniText(values),
             QByteArray("[General]\nEmpty=\nZoo=1\n[Dialog]\nText=\" a\"\n[Dialog/Header]\nWidth=3\n"));
    QCOMPARE(iniText({}), QByteArray());
}

void IniTextTest::readsWhatPeopleWrite()
{
    const QByteArray text(
        "\xef\xbb\xbf# remark\r\nFirst = a, b \r\n\r\n; remark\r\n[ Group ]\r\nKey=\"x\\ty\"\r\nLast=a=b");
    const IniValues values{{"First", "a, b"}, {" Group /Key", "x\ty"}, {" Group /Last", "a=b"}};
    QCOMPARE(parseIni(text), std::optional(values));
    QCOMPARE(parseIni(QByteArray()), std::optional(IniValues()));
}

void IniTextTest::anyKeyAndValueComeBack_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("a key") << QStringLiteral("Key");
    QTest::newRow("one of a group") << QStringLiteral("a/b");
    QTest::newRow("a slash") << QStringLiteral("/");
    QTest::newRow("slashes at both ends") << QStringLiteral("/a//");
    QTest::newRow("a group that is called as none") << QStringLiteral("General/General");
    QTest::newRow("signs of the file") << QStringLiteral("[a]=\";#%41\\/ b ");
    QTest::newRow("a nothing") << QString(QChar());
}

void IniTextTest::anyKeyAndValueComeBack()
{
    QFETCH(QString, key);
    QString value;
    for (const char16_t code :
         {u'\0', u'\x1f', u' ', u'"', u'\\', u'%', u'\x85', u'\xd800', u'\x2028', u'\xfeff', u' '}) {
        value += QChar(code);
        const IniValues values{{key, value}, {QStringLiteral("Other"), key}};
        QCOMPARE(parseIni(iniText(values)), std::optional(values));
    }
}

void IniTextTest::refusesWhatMakesNoSense_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("a word") << QByteArray("word");
    QTest::newRow("a group without an end") << QByteArray("[Group");
    QTest::newRow("a bracket alone") << QByteArray("[");
    QTest::newRow("a group without a name") << QByteArray("[]");
    QTest::newRow("a value without a key") << QByteArray("=a");
    QTest::newRow("a quote alone") << QByteArray("a=\"");
    QTest::newRow("a quote within quotes") << QByteArray("a=\"b\"c\"");
    QTest::newRow("a backslash before the last quote") << QByteArray("a=\"b\\\"");
    QTest::newRow("an escape that means nothing") << QByteArray("a=\"\\q\"");
    QTest::newRow("half an escape") << QByteArray("a=\"\\u00\"");
    QTest::newRow("an escape that is no number") << QByteArray("a=\"\\uzzzz\"");
    QTest::newRow("no UTF-8") << QByteArray("a=\xc3");
    QTest::newRow("a nothing") << QByteArray("a=b\0", 4);
}

void IniTextTest::refusesWhatMakesNoSense()
{
    QFETCH(QByteArray, text);
    QVERIFY(!parseIni(text));
}

QTEST_GUILESS_MAIN(IniTextTest)
#include "tst_initext.moc"
