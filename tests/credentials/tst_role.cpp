#include <credentials/role.h>

#include <QTest>

using namespace ZelkoCommon;

class TestRole : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasANameThatLeadsBackToIt_data();
    void hasANameThatLeadsBackToIt();
    void isNotFoundUnderAnotherName_data();
    void isNotFoundUnderAnotherName();
    void isMoreThanTheOneBeforeIt();
};

void TestRole::hasANameThatLeadsBackToIt_data()
{
    QTest::addColumn<Role>("role");
    QTest::addColumn<QString>("name");
    QTest::newRow("a viewer") << Role::Viewer << "viewer";
    QTest::newRow("an operator") << Role::Operator << "operator";
    QTest::newRow("an administrator") << Role::Administrator << "administrator";
}

void TestRole::hasANameThatLeadsBackToIt()
{
    QFETCH(const Role, role);
    QFETCH(const QString, name);
    QCOMPARE(QString(roleName(role)), name);
    QCOMPARE(roleOfName(name), role);
}

void TestRole::isNotFoundUnderAnotherName_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("nothing") << QString();
    QTest::newRow("in capitals") << "Operator";
    QTest::newRow("with a blank") << "operator ";
    QTest::newRow("only its beginning") << "admin";
    QTest::newRow("another word") << "root";
}

void TestRole::isNotFoundUnderAnotherName()
{
    QFETCH(const QString, name);
    QVERIFY(!roleOfName(name));
}

void TestRole::isMoreThanTheOneBeforeIt()
{
    QVERIFY(Role::Viewer < Role::Operator);
    QVERIFY(Role::Operator < Role::Administrator);
}

QTEST_APPLESS_MAIN(TestRole)
#include "tst_role.moc"
