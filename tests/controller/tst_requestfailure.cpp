#include <zelkoguibase/controller/requestfailure_p.h>

#include "controllersite.h"
#include "servicesite.h"

#include <zelkobase/service/recorderservice.h>

#include <QTest>

using namespace Qt::StringLiterals;
using namespace ZelkoCommon;

/// What the user is told of a request that failed.
class RequestFailureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTextIsFollowedByTheWordsOfTheRecorder_data();
    void theTextIsFollowedByTheWordsOfTheRecorder();
    void successIsNotTold();
};

void RequestFailureTest::theTextIsFollowedByTheWordsOfTheRecorder_data()
{
    using Zlk = QD_ZLK::IF_ZLK_c_ZLK;
    using Answer = std::function<unsigned long()>;
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<ServiceStatus>("status");
    QTest::addColumn<QString>("words");
    QTest::newRow("a refusal with words")
        << Answer([]() -> unsigned long { throw Zlk::exZLK(Zlk::ZLK_UNKNOWN_DEVICE, "D1 is in repair"); })
        << ServiceStatus::NoSuchDevice << u" (D1 is in repair)"_s;
    QTest::newRow("a refusal without words")
        << Answer([]() -> unsigned long { throw Zlk::exZLK(Zlk::ZLK_UNKNOWN_DEVICE, ""); })
        << ServiceStatus::NoSuchDevice << QString();
    QTest::newRow("a number alone") << Answer([] { return statusCode(ServiceStatus::RecordBusy); })
                                    << ServiceStatus::RecordBusy << QString();
    QTest::newRow("what the connection says is for developers")
        << Answer([]() -> unsigned long { throw CORBA::NO_PERMISSION(); }) << ServiceStatus::CallRefused << QString();
}

void RequestFailureTest::theTextIsFollowedByTheWordsOfTheRecorder()
{
    QFETCH(const std::function<unsigned long()>, answer);
    QFETCH(const ServiceStatus, status);
    QFETCH(const QString, words);
    ServiceSite site;
    const ShownMessages messages;
    RecorderService& service = site.handler->service();
    const unsigned long code = service.ask([&](QD_ZLK::IF_ZLK_c_ZLK_ptr) { return answer(); });
    QCOMPARE(code, statusCode(status));
    ZelkoGUI::showFailure(code, service);
    QCOMPARE(messages.texts(), QStringList{serviceStatusText(code) + words});
}

void RequestFailureTest::successIsNotTold()
{
    ServiceSite site;
    const ShownMessages messages;
    ZelkoGUI::showFailure(0, site.handler->service());
    QCOMPARE(messages.texts(), QStringList());
}

QTEST_MAIN(RequestFailureTest)
#include "tst_requestfailure.moc"
