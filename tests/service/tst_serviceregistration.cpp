#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <omniORB4/CORBA.h>

#include <omniORB4/proxyFactory.h>

#include <QtTest>

#include <dlfcn.h>

namespace {

// The classes of a skeleton have no registry; this is the one that the name of an interface ends up in.
QByteArray skeletonTable(const QByteArray& name)
{
    const QByteArray skeleton = "_impl_" + name;
    return "_ZTVN6QD_ZLK" + QByteArray::number(skeleton.size()) + skeleton + 'E';
}

} // namespace

class TestServiceRegistration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void comesWithTheLibrary_data();
    void comesWithTheLibrary();
    void knowsNoInterfaceThatIsNotThere();
};

// The one use of the library here: that it is loaded, and that nothing of this program refers to the service.
void TestServiceRegistration::initTestCase()
{
    QCOMPARE(ZelkoGUI::RecordItemMapModel(nullptr).rowCount(), 0);
}

void TestServiceRegistration::comesWithTheLibrary_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char* name : {"IF_ZELKO_Admin", "IF_ZELKO_Replay", "IF_ZLK_c_ZLK", "IF_ZLK_c_Chan", "IF_ZLK_c_ChanMan",
                             "IF_RecordStateChangeCallback", "IF_ZelkoStatusCallback"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

void TestServiceRegistration::comesWithTheLibrary()
{
    QFETCH(QByteArray, name);
    const QByteArray repositoryId = "IDL:QD_ZLK/" + name + ":1.0";
    auto* const factory = omni::proxyObjectFactory::lookup(repositoryId.constData());
    QVERIFY(factory);
    QCOMPARE(QByteArray(factory->irRepoId()), repositoryId);
    QVERIFY(factory->is_a(repositoryId.constData()));
    QVERIFY(dlsym(RTLD_DEFAULT, skeletonTable(name).constData()));
}

void TestServiceRegistration::knowsNoInterfaceThatIsNotThere()
{
    QVERIFY(!omni::proxyObjectFactory::lookup("IDL:QD_ZLK/IF_ZLK_c_Other:1.0"));
    QVERIFY(!dlsym(RTLD_DEFAULT, skeletonTable("IF_ZLK_c_Other").constData()));
}

QTEST_APPLESS_MAIN(TestServiceRegistration)
#include "tst_serviceregistration.moc"
