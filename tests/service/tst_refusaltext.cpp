#include <zelkobase/service/refusaltext.h>

#include <QTest>

using namespace ZelkoCommon;

class tst_RefusalText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrittenIsRead_data();
    void whatIsWrittenIsRead();
    void theNumberStandsInFront();
    void theWordsOfTheStatusAreNotSaidTwice();
    void anyOtherTextIsWords_data();
    void anyOtherTextIsWords();
    void theWordsAreMadePresentable();
};

void tst_RefusalText::whatIsWrittenIsRead_data()
{
    QTest::addColumn<ServiceStatus>("status");
    QTest::addColumn<QString>("words");
    QTest::newRow("one digit") << ServiceStatus::NoSuchExport << "it has ended";
    QTest::newRow("two digits") << ServiceStatus::TargetExists << "/srv/Ausgänge";
    QTest::newRow("words with brackets") << ServiceStatus::DiskFull << "[1] [2] ] x";
    QTest::newRow("no words") << ServiceStatus::DiskFull << "";
}

void tst_RefusalText::whatIsWrittenIsRead()
{
    QFETCH(const ServiceStatus, status);
    QFETCH(const QString, words);
    const RefusalText read = refusalOf(toText({status, words}));
    QCOMPARE(read.status, status);
    QCOMPARE(read.words, words);
}

// Recorders and clients of different days read each other's texts.
void tst_RefusalText::theNumberStandsInFront()
{
    QCOMPARE(toText({ServiceStatus::TargetExists, QStringLiteral("why")}), QStringLiteral("[21] why"));
}

void tst_RefusalText::theWordsOfTheStatusAreNotSaidTwice()
{
    const QString sentence = serviceStatusText(statusCode(ServiceStatus::NoSuchExport));
    QCOMPARE(toText({ServiceStatus::NoSuchExport, {}}), QStringLiteral("[6] ") + sentence);
    QCOMPARE(refusalOf(QStringLiteral("[6] ") + sentence).words, QString());
}

void tst_RefusalText::anyOtherTextIsWords_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << "";
    QTest::newRow("without a number") << "the disk is full";
    QTest::newRow("a number somewhere else") << "why [6] it is";
    QTest::newRow("no number") << "[] x";
    QTest::newRow("a name") << "[six] x";
    QTest::newRow("a number with a sign") << "[+6] x";
    QTest::newRow("a number that is not ended") << "[6";
    QTest::newRow("no blank behind it") << "[6]x";
    QTest::newRow("digits of another script") << QStringLiteral("[\u0666] x");
    QTest::newRow("the number of success") << "[0] x";
    QTest::newRow("a number that nobody knows") << "[999] x";
    QTest::newRow("a number of a client") << "[1000] x";
    QTest::newRow("a number without an end") << '[' + QString(5000, '6') + "] x";
}

void tst_RefusalText::anyOtherTextIsWords()
{
    QFETCH(const QString, text);
    const RefusalText read = refusalOf(text);
    QCOMPARE(read.status, ServiceStatus::InternalError);
    QCOMPARE(read.words, presentable(text));
}

void tst_RefusalText::theWordsAreMadePresentable()
{
    QCOMPARE(refusalOf(QStringLiteral("[21] a\nb\u001bc")).words, QStringLiteral("a b c"));
    QCOMPARE(refusalOf(QStringLiteral("[21] ") + QString(400, 'x')).words.size(), 300);
}

QTEST_GUILESS_MAIN(tst_RefusalText)

#include "tst_refusaltext.moc"
