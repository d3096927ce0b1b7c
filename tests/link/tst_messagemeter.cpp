#include <zelkobase/orb/messagemeter_p.h>

#include <QTest>

#include <algorithm>

using ZelkoCommon::MessageMeter;

namespace {

constexpr std::size_t bound = 100;

enum Kind : char { Request, Locate = 3, Fragment = 7 };

struct Message
{
    Kind kind;
    int bytes;
    bool hasMore = false;
};

// The head of a message of GIOP 1.2 and as many bytes as it says.
QByteArray written(const Message& message, bool isLittle)
{
    QByteArray head("GIOP\x01\x02", 6);
    head += static_cast<char>((isLittle ? 1 : 0) | (message.hasMore ? 2 : 0));
    head += message.kind;
    for (int i = 0; i < 4; ++i) {
        head += static_cast<char>(message.bytes >> 8 * (isLittle ? i : 3 - i));
    }
    return head + QByteArray(message.bytes, 'G');
}

QByteArray written(const QVector<Message>& messages, bool isLittle)
{
    QByteArray bytes;
    for (const Message& message : messages) {
        bytes += written(message, isLittle);
    }
    return bytes;
}

// Whether the bytes pass, in pieces of a size.
bool passes(const QByteArray& bytes, qsizetype piece, std::size_t most = bound)
{
    MessageMeter meter(most);
    bool passed = true;
    for (qsizetype at = 0; at < bytes.size(); at += piece) {
        passed = meter.take(bytes.constData() + at, static_cast<std::size_t>(std::min(piece, bytes.size() - at)));
    }
    return passed;
}

} // namespace

Q_DECLARE_METATYPE(QVector<Message>)

class TestMessageMeter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addsUpWhatBelongsTogether_data();
    void addsUpWhatBelongsTogether();
    void knowsAMessageByItsHead();
    void staysAtItsVerdict();
    void leavesToTheOrbWhatIsNoMessage_data();
    void leavesToTheOrbWhatIsNoMessage();
    void takesTheOldestVersionAsOneWithoutFragments();
};

void TestMessageMeter::addsUpWhatBelongsTogether_data()
{
    QTest::addColumn<QVector<Message>>("messages");
    QTest::addColumn<bool>("pass");
    QTest::newRow("nothing") << QVector<Message>{} << true;
    QTest::newRow("a head alone") << QVector<Message>{{Request, 0}} << true;
    QTest::newRow("as large as may be") << QVector<Message>{{Request, 100}} << true;
    QTest::newRow("a byte larger") << QVector<Message>{{Request, 101}} << false;
    QTest::newRow("one after the other") << QVector<Message>(5, {Request, 100}) << true;
    QTest::newRow("too large behind others") << QVector<Message>{{Request, 100}, {Locate, 20}, {Request, 101}} << false;
    QTest::newRow("fragments as large as may be")
        << QVector<Message>{{Request, 40, true}, {Fragment, 40, true}, {Fragment, 20}} << true;
    QTest::newRow("fragments that are too large together")
        << QVector<Message>{{Request, 40, true}, {Fragment, 40, true}, {Fragment, 21}} << false;
    QTest::newRow("fragments one after the other")
        << QVector<Message>{{Request, 60, true}, {Fragment, 40}, {Request, 60, true}, {Fragment, 40}} << true;
    QTest::newRow("others between fragments")
        << QVector<Message>{{Request, 60, true}, {Locate, 10}, {Locate, 10}, {Fragment, 21}} << false;
    QTest::newRow("two at once, the first complete")
        << QVector<Message>{{Request, 30, true}, {Request, 30, true}, {Fragment, 10}, {Fragment, 31}} << false;
    QTest::newRow("two at once, both complete")
        << QVector<Message>{{Request, 30, true}, {Request, 30, true}, {Fragment, 20}, {Fragment, 20}, {Request, 100}}
        << true;
    QTest::newRow("a fragment of nothing") << QVector<Message>{{Fragment, 10}, {Request, 100}} << true;
}

void TestMessageMeter::addsUpWhatBelongsTogether()
{
    QFETCH(const QVector<Message>, messages);
    for (const bool isLittle : {true, false}) {
        const QByteArray bytes = written(messages, isLittle);
        for (const qsizetype piece : {1, 5, 12, 13, 10000}) {
            QTEST(passes(bytes, piece), "pass");
        }
    }
}

void TestMessageMeter::knowsAMessageByItsHead()
{
    const QByteArray head = written({Request, 101}, true).left(12);
    QVERIFY(passes(head.left(11), 1));
    QVERIFY(!passes(head, 1));
    QVERIFY(!passes(QByteArray("GIOP\x01\x02\x01\0\xff\xff\xff\xff", 12), 12));
}

void TestMessageMeter::staysAtItsVerdict()
{
    const QByteArray bytes = written({{Request, 101}, {Request, 1}}, true);
    QVERIFY(!passes(bytes, bytes.size()));
    QVERIFY(!passes(bytes, 1));
}

void TestMessageMeter::leavesToTheOrbWhatIsNoMessage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("text") << QByteArray("GET / HTTP/1.1\r\n\r\n");
    QTest::newRow("a head with another beginning") << QByteArray("ZIOP\x01\x02\x01\0\xff\xff\xff\xff", 12);
    QTest::newRow("something behind a message") << written({Request, 3}, true) + QByteArray(1000, '\xff');
}

void TestMessageMeter::leavesToTheOrbWhatIsNoMessage()
{
    QFETCH(const QByteArray, bytes);
    QVERIFY(passes(bytes, 1));
    QVERIFY(passes(bytes, bytes.size()));
}

// What says that more fragments come has no meaning in it.
void TestMessageMeter::takesTheOldestVersionAsOneWithoutFragments()
{
    QByteArray bytes = written({Request, 90, true}, true);
    bytes[5] = 0;
    QVERIFY(passes(bytes + bytes, 7));
}

QTEST_APPLESS_MAIN(TestMessageMeter)
#include "tst_messagemeter.moc"
