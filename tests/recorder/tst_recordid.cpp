#include <recorder/store/recordid.h>

#include <QSet>
#include <QTest>

using namespace ZelkoRecorder;

class TestRecordId : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheStartInUtc();
    void isNeverMadeTwice();
    void tellsIdsFromOtherTexts_data();
    void tellsIdsFromOtherTexts();
};

void TestRecordId::namesTheStartInUtc()
{
    const QString id = createRecordId(1'624'058'271'163'959);
    QVERIFY2(id.startsWith(QLatin1String("20210618-231751163-")), qPrintable(id));
    QVERIFY(isRecordId(id));
}

void TestRecordId::isNeverMadeTwice()
{
    constexpr int count = 10'000;
    QSet<QString> ids;
    for (int i = 0; i < count; ++i) {
        ids.insert(createRecordId(1'000'000));
    }
    QCOMPARE(ids.size(), count);
}

void TestRecordId::tellsIdsFromOtherTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isId");
    QTest::newRow("letters, digits and signs") << QStringLiteral("Rec_2021-06.b") << true;
    QTest::newRow("one character") << QStringLiteral("7") << true;
    QTest::newRow("the longest") << QString(128, QLatin1Char('x')) << true;
    QTest::newRow("too long") << QString(129, QLatin1Char('x')) << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("a hidden file") << QStringLiteral(".new-1") << false;
    QTest::newRow("the parent folder") << QStringLiteral("..") << false;
    QTest::newRow("a path") << QStringLiteral("a/b") << false;
    QTest::newRow("what parts IDs in a list") << QStringLiteral("a@b") << false;
    QTest::newRow("a blank") << QStringLiteral("a b") << false;
    QTest::newRow("not ASCII") << QStringLiteral("ä") << false;
}

void TestRecordId::tellsIdsFromOtherTexts()
{
    QFETCH(const QString, text);
    QTEST(isRecordId(text), "isId");
}

QTEST_GUILESS_MAIN(TestRecordId)
#include "tst_recordid.moc"
