#include <recorder/process/passwordinput.h>

#include <QTest>

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <future>

using ZelkoRecorder::readPassword;

namespace {

// Both ends of a pipe; the writing one is closed when everything is written.
struct Pipe
{
    explicit Pipe(const QByteArray& content)
    {
        if (::pipe(ends.data()) == 0) {
            written = ::write(ends[1], content.constData(), static_cast<std::size_t>(content.size())) == content.size();
            ::close(ends[1]);
        }
    }
    ~Pipe() { ::close(ends[0]); }

    std::array<int, 2> ends{-1, -1};
    bool written = false;
};

bool echoes(int terminal)
{
    termios settings = {};
    return ::tcgetattr(terminal, &settings) == 0 && (settings.c_lflag & ECHO) != 0;
}

} // namespace

class TestPasswordInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOneLine_data();
    void isOneLine();
    void leavesWhatStandsBehindTheLine();
    void isNoneWhereThereIsNothingToRead();
    void doesNotShowOnATerminal();
};

void TestPasswordInput::isOneLine_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("password");
    QTest::newRow("with its end") << QByteArray("secret\n") << QByteArray("secret");
    QTest::newRow("without its end") << QByteArray("secret") << QByteArray("secret");
    QTest::newRow("with blanks") << QByteArray(" se cret \n") << QByteArray(" se cret ");
    QTest::newRow("the longest") << QByteArray(1024, 'x') + '\n' << QByteArray(1024, 'x');
    QTest::newRow("longer than the longest") << QByteArray(1025, 'x') + '\n' << QByteArray();
    QTest::newRow("an empty one") << QByteArray("\nsecret\n") << QByteArray();
    QTest::newRow("nothing") << QByteArray() << QByteArray();
}

void TestPasswordInput::isOneLine()
{
    QFETCH(const QByteArray, input);
    QFETCH(const QByteArray, password);
    const Pipe pipe(input);
    QVERIFY(pipe.written);
    const auto read = readPassword(pipe.ends[0], {});
    QCOMPARE(read.has_value(), !password.isEmpty());
    QCOMPARE(read.value_or(QByteArray()), password);
}

void TestPasswordInput::leavesWhatStandsBehindTheLine()
{
    const Pipe pipe("first\nsecond\n");
    QCOMPARE(readPassword(pipe.ends[0], {}), QByteArray("first"));
    QCOMPARE(readPassword(pipe.ends[0], {}), QByteArray("second"));
    QVERIFY(!readPassword(pipe.ends[0], {}));
}

void TestPasswordInput::isNoneWhereThereIsNothingToRead()
{
    QVERIFY(!readPassword(-1, {}));
}

void TestPasswordInput::doesNotShowOnATerminal()
{
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    QVERIFY(master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0);
    const int terminal = ::open(::ptsname(master), O_RDWR | O_NOCTTY);
    QVERIFY(terminal >= 0);
    QVERIFY(echoes(terminal));
    auto read = std::async(std::launch::async, [&] { return readPassword(terminal, QStringLiteral("Password: ")); });
    QTRY_VERIFY_WITH_TIMEOUT(!echoes(terminal), 30'000);
    QCOMPARE(::write(master, "secret\n", 7), ssize_t{7});
    QCOMPARE(read.get(), QByteArray("secret"));
    QVERIFY(echoes(terminal));
    ::close(terminal);
    ::close(master);
}

QTEST_GUILESS_MAIN(TestPasswordInput)
#include "tst_passwordinput.moc"
