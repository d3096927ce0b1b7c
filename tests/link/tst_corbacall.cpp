#include <zelkobase/orb/corbacall.h>

#include <omniORB4/omniORB.h>

#include <QtTest>

using ZelkoCommon::describe;

class TestCorbaCall : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatAnExceptionMeans_data();
    void saysWhatAnExceptionMeans();
};

void TestCorbaCall::saysWhatAnExceptionMeans_data()
{
    QTest::addColumn<std::shared_ptr<CORBA::Exception>>("exception");
    QTest::addColumn<QString>("text");
    const auto row = [](auto exception, const char* text) {
        QTest::newRow(text) << std::shared_ptr<CORBA::Exception>(std::make_shared<decltype(exception)>(exception))
                            << QString::fromLatin1(text);
    };
    row(CORBA::TRANSIENT(), "nobody answers there, or not in time (TRANSIENT)");
    row(CORBA::TIMEOUT(), "the call took too long (TIMEOUT)");
    row(CORBA::COMM_FAILURE(), "the connection broke (COMM_FAILURE)");
    row(CORBA::OBJECT_NOT_EXIST(), "the other side runs, but does not offer this service (OBJECT_NOT_EXIST)");
    row(CORBA::MARSHAL(), "the other side speaks another version of this service (MARSHAL)");
    row(CORBA::INITIALIZE(), "the address or port cannot be used (INITIALIZE)");
    row(CORBA::NO_PERMISSION(), "the other side refused (NO_PERMISSION)");
    row(CORBA::BAD_PARAM(), "BAD_PARAM");
}

void TestCorbaCall::saysWhatAnExceptionMeans()
{
    QFETCH(std::shared_ptr<CORBA::Exception>, exception);
    QFETCH(QString, text);
    QCOMPARE(describe(*exception), text);
}

QTEST_APPLESS_MAIN(TestCorbaCall)
#include "tst_corbacall.moc"
