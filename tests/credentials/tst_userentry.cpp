#include <credentials/userentry.h>

#include <QTest>

using namespace ZelkoCommon;

namespace {

const QByteArray hash = "$argon2id$v=19$m=8,t=1,p=1$c29tZXNhbHR5c2FsdHRoZQ$" + QByteArray(43, 'A');

} // namespace

class TestUserEntry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void becomesItsLineAgain_data();
    void becomesItsLineAgain();
    void refusesAWrongLine_data();
    void refusesAWrongLine();
    void hasANameThatPeopleCanTellApart_data();
    void hasANameThatPeopleCanTellApart();
};

void TestUserEntry::becomesItsLineAgain_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("role");
    QTest::newRow("a viewer") << QByteArray("anna") << QByteArray("viewer");
    QTest::newRow("an operator with a blank in his name") << QByteArray("Anna Berg") << QByteArray("operator");
    QTest::newRow("an administrator in UTF-8") << QByteArray("J\xc3\xbcrgen") << QByteArray("administrator");
    QTest::newRow("the longest name") << QByteArray(64, 'a') << QByteArray("viewer");
}

void TestUserEntry::becomesItsLineAgain()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QByteArray, role);
    const QByteArray line = name + ':' + role + ':' + hash;
    QString error;
    const auto user = UserEntry::fromLine(line, &error);
    QVERIFY2(user, qPrintable(error));
    QCOMPARE(user->name, QString::fromUtf8(name));
    QCOMPARE(user->role, *roleOfName(QString::fromUtf8(role)));
    QCOMPARE(user->toLine(), line);
}

void TestUserEntry::refusesAWrongLine_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("error");
    const QByteArray rest = ":viewer:" + hash;
    const QString form = "it is not of the form name:role:hash";
    const QString name = "it does not begin with what can be a name";
    const QString noHash = "the hash is none, or costs more than a recorder spends";
    QTest::newRow("nothing") << QByteArray() << form;
    QTest::newRow("two fields") << QByteArray("anna:viewer") << form;
    QTest::newRow("four fields") << "anna" + rest + ":x" << form;
    QTest::newRow("too long") << QByteArray(257, 'a') << "it is longer than 256 bytes";
    QTest::newRow("no name") << rest << name;
    QTest::newRow("a name that is no UTF-8") << "J\xfcrgen" + rest << name;
    QTest::newRow("a name that is too long") << QByteArray(65, 'a') + rest << name;
    QTest::newRow("a byte order mark") << "\xef\xbb\xbf"
                                          "anna" +
                                              rest
                                       << name;
    QTest::newRow("no role") << "anna::" + hash << "the role is not viewer, operator or administrator";
    QTest::newRow("another role") << "anna:root:" + hash << "the role is not viewer, operator or administrator";
    QTest::newRow("a password") << QByteArray("anna:viewer:secret") << noHash;
    QTest::newRow("a blank behind it") << "anna" + rest + ' ' << noHash;
    QTest::newRow("an end of line") << "anna" + rest + '\r' << noHash;
}

void TestUserEntry::refusesAWrongLine()
{
    QFETCH(const QByteArray, line);
    QString error;
    QVERIFY(!UserEntry::fromLine(line, &error));
    QTEST(error, "error");
    QVERIFY(!UserEntry::fromLine(line, nullptr));
}

void TestUserEntry::hasANameThatPeopleCanTellApart_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("can");
    QTest::newRow("letters") << "anna" << true;
    QTest::newRow("signs") << "anna.berg@north-1" << true;
    QTest::newRow("beyond the first plane") << QString::fromUtf8("\xf0\x9f\x8e\x99") << true;
    QTest::newRow("half a character") << QString(QChar(0xd83c)) << false;
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("blanks before it") << " anna" << false;
    QTest::newRow("blanks behind it") << "anna " << false;
    QTest::newRow("like a comment") << "#anna" << false;
    QTest::newRow("a colon") << "an:na" << false;
    QTest::newRow("a tab") << "an\tna" << false;
    QTest::newRow("a zero") << QString("an\0na").append(QChar(0)) << false;
    QTest::newRow("a character of no width") << QStringLiteral("an\u200bna") << false;
    QTest::newRow("a change of direction") << QStringLiteral("an\u202ena") << false;
    QTest::newRow("an accent of its own") << QStringLiteral("Ju\u0308rgen") << false;
    QTest::newRow("32 times two bytes") << QString(32, QChar(0xfc)) << true;
    QTest::newRow("33 times two bytes") << QString(33, QChar(0xfc)) << false;
}

void TestUserEntry::hasANameThatPeopleCanTellApart()
{
    QFETCH(const QString, name);
    QTEST(UserEntry::canBeName(name), "can");
}

QTEST_APPLESS_MAIN(TestUserEntry)
#include "tst_userentry.moc"
