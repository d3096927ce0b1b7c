#include <credentials/passwordhash.h>

#include <QTest>

using namespace ZelkoCommon;

namespace {

// Fit the form, and are nobody's.
const QByteArray salt = "c29tZXNhbHR5c2FsdHRoZQ";
const QByteArray body(42, 'A');

QByteArray hashText(const QByteArray& memory, const QByteArray& passes)
{
    return "$argon2id$v=19$m=" + memory + ",t=" + passes + ",p=1$" + salt + '$' + body + 'A';
}

} // namespace

class TestPasswordHash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matchesItsPasswordOnly_data();
    void matchesItsPasswordOnly();
    void isAnotherOneEachTime();
    void saysWhatItCosts();
    void costsWhatIsUsualForPeople();
    void isNotMadeOfWhatIsNoPassword();
    void isNotMadeBeyondTheBounds();
    void takesOverItsText();
    void matchesAHashThatWasMadeBefore();
    void refusesATextThatIsNone_data();
    void refusesATextThatIsNone();
};

void TestPasswordHash::matchesItsPasswordOnly_data()
{
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<QByteArray>("tried");
    QTest::addColumn<bool>("matches");
    QTest::newRow("the same") << QByteArray("secret") << QByteArray("secret") << true;
    QTest::newRow("longer") << QByteArray("secret") << QByteArray("secret ") << false;
    QTest::newRow("shorter") << QByteArray("secret") << QByteArray("secre") << false;
    QTest::newRow("nothing") << QByteArray("secret") << QByteArray() << false;
    QTest::newRow("UTF-8") << QByteArray("s\xc3\xa9same") << QByteArray("s\xc3\xa9same") << true;
    QTest::newRow("behind a zero") << QByteArray("a\0b", 3) << QByteArray("a\0c", 3) << false;
    QTest::newRow("the longest") << QByteArray(1024, 'x') << QByteArray(1024, 'x') << true;
    QTest::newRow("longer than the longest") << QByteArray(1024, 'x') << QByteArray(1025, 'x') << false;
}

void TestPasswordHash::matchesItsPasswordOnly()
{
    QFETCH(const QByteArray, password);
    QFETCH(const QByteArray, tried);
    const auto hash = PasswordHash::make(password, HashCost::least());
    QVERIFY(hash);
    QTEST(hash->matches(tried), "matches");
}

void TestPasswordHash::isAnotherOneEachTime()
{
    const auto first = PasswordHash::make("secret", HashCost::least());
    const auto second = PasswordHash::make("secret", HashCost::least());
    QVERIFY(first->text() != second->text());
    QVERIFY(!first->text().contains("secret"));
}

void TestPasswordHash::saysWhatItCosts()
{
    const auto hash = PasswordHash::make("secret", {3, 32 * 1024});
    QVERIFY(hash->text().startsWith("$argon2id$v=19$m=32,t=3,p=1$"));
    QCOMPARE(hash->cost().passes, 3ULL);
    QCOMPARE(hash->cost().memoryBytes, std::size_t{32 * 1024});
}

void TestPasswordHash::costsWhatIsUsualForPeople()
{
    const auto hash = PasswordHash::make("secret");
    QVERIFY(hash->text().startsWith("$argon2id$v=19$m=65536,t=2,p=1$"));
    QVERIFY(hash->matches("secret"));
}

void TestPasswordHash::isNotMadeOfWhatIsNoPassword()
{
    QVERIFY(!PasswordHash::make({}, HashCost::least()));
    QVERIFY(!PasswordHash::make(QByteArray(1025, 'x'), HashCost::least()));
}

void TestPasswordHash::isNotMadeBeyondTheBounds()
{
    QVERIFY(!PasswordHash::make("secret", {11, 8 * 1024}));
    QVERIFY(!PasswordHash::make("secret", {1, std::size_t{512} * 1024 * 1024}));
    QVERIFY(!PasswordHash::make("secret", {1, 1024}));
}

void TestPasswordHash::takesOverItsText()
{
    const auto made = PasswordHash::make("secret", HashCost::least());
    const auto read = PasswordHash::fromText(made->text());
    QVERIFY(read);
    QCOMPARE(read->text(), made->text());
    QVERIFY(read->matches("secret"));
    QVERIFY(!read->matches("Secret"));
}

// Users files outlive programs.
void TestPasswordHash::matchesAHashThatWasMadeBefore()
{
    const auto hash = PasswordHash::fromText(
        "$argon2id$v=19$m=32,t=2,p=1$SYlMT5om6PxbM3v86LQ2Rw$v8gWNZs1pP2YJXcZAQNHpw1aXv30qXhSZ6F/lew3EKc");
    QVERIFY(hash);
    QVERIFY(hash->matches("secret"));
    QVERIFY(!hash->matches("secreT"));
}

void TestPasswordHash::refusesATextThatIsNone_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray good = hashText("8", "1");
    QVERIFY(PasswordHash::fromText(good));
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a password") << QByteArray("secret");
    QTest::newRow("another kind") << QByteArray(good).replace("argon2id", "argon2i");
    QTest::newRow("another version") << QByteArray(good).replace("v=19", "v=16");
    QTest::newRow("several lanes") << QByteArray(good).replace("p=1", "p=2");
    QTest::newRow("more memory than the bound") << hashText("262145", "1");
    QTest::newRow("less memory than there can be") << hashText("7", "1");
    QTest::newRow("more passes than the bound") << hashText("8", "11");
    QTest::newRow("no passes") << hashText("8", "0");
    QTest::newRow("a number that overflows") << hashText("18446744073709551624", "1");
    QTest::newRow("a number with zeros before it") << hashText("08", "1");
    QTest::newRow("a short salt") << QByteArray(good).replace(salt, salt.left(20));
    QTest::newRow("a short hash") << good.chopped(2);
    QTest::newRow("bits behind the hash") << good.chopped(1) + 'B';
    QTest::newRow("something behind it") << good + ' ';
    QTest::newRow("an end of line behind it") << good + '\n';
    QTest::newRow("a zero behind it") << good + '\0';
    QTest::newRow("no ASCII") << good.chopped(1) + '\xe4';
}

void TestPasswordHash::refusesATextThatIsNone()
{
    QFETCH(const QByteArray, text);
    QVERIFY(!PasswordHash::fromText(text));
}

QTEST_APPLESS_MAIN(TestPasswordHash)
#include "tst_passwordhash.moc"
