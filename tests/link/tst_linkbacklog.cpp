#include <recorder/link/linkbacklog.h>

#include <QtTest>

using ZelkoRecorder::LinkBacklog;

namespace {

LinkBacklog::SharedFrame frame(const char* text)
{
    return std::make_shared<const std::string>(text);
}

} // namespace

class TestLinkBacklog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dropsAllWhenItIsFull();
    void takesAFrameOfAnySizeWhenItIsEmpty();
    void keepsTheRestOfAFrameThatWasBegun();
    void keepsAStateThatIsLargerThanTheBound();
    void takesChangesBehindAStateThatIsLargerThanTheBound();
    void sharesFrames();
};

void TestLinkBacklog::dropsAllWhenItIsFull()
{
    LinkBacklog backlog(10, 4);
    QVERIFY(backlog.append(frame("12345")));
    QVERIFY(backlog.append(frame("67890")));
    QVERIFY(!backlog.append(frame("x")));
    QVERIFY(backlog.isEmpty());
    QVERIFY(backlog.append(frame("new")));
    QCOMPARE(backlog.takeBatch(), std::string("new"));
}

void TestLinkBacklog::takesAFrameOfAnySizeWhenItIsEmpty()
{
    LinkBacklog backlog(4, 8);
    QVERIFY(backlog.append(frame("larger than the bound")));
    QVERIFY(!backlog.append(frame("x")));
}

void TestLinkBacklog::keepsTheRestOfAFrameThatWasBegun()
{
    LinkBacklog backlog(12, 4);
    QVERIFY(backlog.append(frame("0123456789")));
    QCOMPARE(backlog.takeBatch(), std::string("0123"));
    QVERIFY(backlog.append(frame("abcdef")));
    QVERIFY(!backlog.append(frame("x")));
    QCOMPARE(backlog.bytes(), std::size_t{6});
    QVERIFY(backlog.append(frame("new")));
    QCOMPARE(backlog.takeBatch(), std::string("4567"));
    QCOMPARE(backlog.takeBatch(), std::string("89"));
    QCOMPARE(backlog.takeBatch(), std::string("new"));
}

// A state that was dropped would be made again, and dropped again, for ever.
void TestLinkBacklog::keepsAStateThatIsLargerThanTheBound()
{
    LinkBacklog backlog(10, 100);
    QVERIFY(backlog.append(frame("change")));
    backlog.appendState(frame("a state of more bytes than the bound"));
    QCOMPARE(backlog.bytes(), std::size_t{42});
    QCOMPARE(backlog.takeBatch(), std::string("changea state of more bytes than the bound"));
}

void TestLinkBacklog::takesChangesBehindAStateThatIsLargerThanTheBound()
{
    LinkBacklog backlog(10, 8);
    backlog.appendState(frame("0123456789abcdef"));
    QVERIFY(backlog.append(frame("change")));
    QCOMPARE(backlog.takeBatch(), std::string("01234567"));
    QVERIFY(backlog.append(frame("more")));
    QCOMPARE(backlog.takeBatch(), std::string("89abcdef"));
    QVERIFY(!backlog.append(frame("x")));
    QVERIFY(backlog.isEmpty());
}

void TestLinkBacklog::sharesFrames()
{
    const auto shared = frame("shared");
    LinkBacklog first(100, 10);
    LinkBacklog second(100, 10);
    first.append(shared);
    second.append(shared);
    QCOMPARE(shared.use_count(), 3L);
    first.takeBatch();
    second.takeBatch();
    QCOMPARE(shared.use_count(), 1L);
}

QTEST_APPLESS_MAIN(TestLinkBacklog)
#include "tst_linkbacklog.moc"
