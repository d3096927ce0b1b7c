#include <recorder/users/userfile.h>

#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace ZelkoRecorder;
using ZelkoCommon::Role;
using ZelkoTest::writeBytes;

namespace {

QByteArray line(const QByteArray& name, const QByteArray& role = "viewer")
{
    return name + ':' + role + ":$argon2id$v=19$m=8,t=1,p=1$c29tZXNhbHR5c2FsdHRoZQ$" + QByteArray(43, 'A') + '\n';
}

QByteArray lines(int count)
{
    QByteArray bytes;
    for (int number = 0; number < count; ++number) {
        bytes += line("u" + QByteArray::number(number));
    }
    return bytes;
}

} // namespace

class TestUserFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasTheUsersOfItsLines();
    void countsWhatSaysNothingForNothing();
    void needsNoEndOfTheLastLine();
    void takesAsManyUsersAsTheBoundSays();
    void isRefusedWhole_data();
    void isRefusedWhole();
    void isReadFromDisk();
    void namesTheFileThatIsWrong();
    void isNotReadFromWhatIsNoFile();
    void warnsOfAFileThatOthersMayOpen_data();
    void warnsOfAFileThatOthersMayOpen();

private:
    QString path() const { return m_folder.filePath(QStringLiteral("users")); }

    const QTemporaryDir m_folder;
};

void TestUserFile::hasTheUsersOfItsLines()
{
    QString error;
    const auto file = UserFile::fromBytes(line("anna", "operator") + line("J\xc3\xbcrgen", "administrator"), &error);
    QVERIFY2(file, qPrintable(error));
    QCOMPARE(file->users().size(), std::size_t{2});
    QCOMPARE(file->find("anna")->role, Role::Operator);
    QCOMPARE(file->find(QStringLiteral("J\u00fcrgen"))->role, Role::Administrator);
    QVERIFY(!file->find("Anna"));
    QVERIFY(!file->find(QString()));
}

void TestUserFile::countsWhatSaysNothingForNothing()
{
    QString error;
    const auto file = UserFile::fromBytes("# who works here\n\n" + line("anna") + "#" + line("former") + "\n", &error);
    QVERIFY2(file, qPrintable(error));
    QCOMPARE(file->users().size(), std::size_t{1});
}

void TestUserFile::needsNoEndOfTheLastLine()
{
    QString error;
    QVERIFY(UserFile::fromBytes(line("anna").chopped(1), &error));
}

void TestUserFile::takesAsManyUsersAsTheBoundSays()
{
    QString error;
    QVERIFY(UserFile::fromBytes(lines(200), &error));
    QVERIFY(!UserFile::fromBytes(lines(201), &error));
    QCOMPARE(error, "line 201: there are more than 200 users");
}

void TestUserFile::isRefusedWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error");
    const QString control = "it has control characters, an end of line of another system perhaps";
    QTest::newRow("nothing") << QByteArray() << "it has no users";
    QTest::newRow("comments only") << QByteArray("# nobody\n") << "it has no users";
    QTest::newRow("too much") << QByteArray(64 * 1024 + 1, '\n') << "it is larger than 65536 bytes";
    QTest::newRow("a wrong line behind a good one") << line("anna") + "berta:viewer\n"
                                                    << "line 2: it is not of the form name:role:hash";
    QTest::newRow("two of one name") << line("anna") + line("berta") + line("anna", "operator")
                                     << "line 3: the user \"anna\" stands there twice";
    QTest::newRow("a byte order mark") << "\xef\xbb\xbf" + line("anna")
                                       << "line 1: it does not begin with what can be a name";
    QTest::newRow("ends of line of another system") << line("anna").replace("\n", "\r\n") << "line 1: " + control;
    QTest::newRow("a control character in a comment") << "# \x1b[2J\n" + line("anna") << "line 1: " + control;
    QTest::newRow("a zero") << line("anna") + QByteArray(1, '\0') << "line 2: " + control;
    QTest::newRow("blanks") << line("anna") + "  \n"
                            << "line 2: it is not of the form name:role:hash";
}

void TestUserFile::isRefusedWhole()
{
    QFETCH(const QByteArray, bytes);
    QString error;
    QVERIFY(!UserFile::fromBytes(bytes, &error));
    QTEST(error, "error");
}

void TestUserFile::isReadFromDisk()
{
    QVERIFY(writeBytes(path(), line("anna")));
    QString error;
    QStringList warnings;
    const auto file = UserFile::load(path(), &error, &warnings);
    QVERIFY2(file, qPrintable(error));
    QVERIFY(file->find("anna"));
}

void TestUserFile::namesTheFileThatIsWrong()
{
    QVERIFY(writeBytes(path(), "anna\n"));
    QString error;
    QStringList warnings;
    QVERIFY(!UserFile::load(path(), &error, &warnings));
    QCOMPARE(error, QStringLiteral("The users file \"%1\" cannot be used: line 1: it is not of the form name:role:hash")
                        .arg(path()));
}

void TestUserFile::isNotReadFromWhatIsNoFile()
{
    QString error;
    QStringList warnings;
    QVERIFY(!UserFile::load(m_folder.filePath("missing"), &error, &warnings));
    QVERIFY(error.contains("missing"));
    QVERIFY(!UserFile::load(m_folder.path(), &error, &warnings));
    const QString pipe = m_folder.filePath("pipe");
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!UserFile::load(pipe, &error, &warnings));
}

void TestUserFile::warnsOfAFileThatOthersMayOpen_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("warnings");
    QTest::newRow("the owner's own") << 0600 << 0;
    QTest::newRow("read only") << 0400 << 0;
    QTest::newRow("read by the group") << 0640 << 1;
    QTest::newRow("written by the group") << 0620 << 1;
    QTest::newRow("read by all") << 0644 << 1;
}

void TestUserFile::warnsOfAFileThatOthersMayOpen()
{
    QFETCH(const int, mode);
    QVERIFY(writeBytes(path(), line("anna")));
    QCOMPARE(chmod(QFile::encodeName(path()).constData(), static_cast<mode_t>(mode)), 0);
    QString error;
    QStringList warnings;
    QVERIFY(UserFile::load(path(), &error, &warnings));
    QTEST(int(warnings.size()), "warnings");
    QVERIFY(QFile::remove(path()));
}

QTEST_APPLESS_MAIN(TestUserFile)
#include "tst_userfile.moc"
