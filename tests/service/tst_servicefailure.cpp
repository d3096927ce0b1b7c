#include <zelkobase/service/recorderends.h>
#include <zelkobase/service/servicefailure_p.h>

#include <zelkoidl/recorderservice.hh>

#include <omniORB4/CORBA.h>
#include <omniORB4/minorCode.h>

#include <QTest>

#include <stdexcept>

using namespace ZelkoCommon;
using Status = ServiceStatus;
using Action = std::function<void()>;

namespace {

ServiceFailure failureOf(const Action& action)
{
    try {
        action();
    } catch (...) {
        return failureInFlight();
    }
    return {};
}

template <typename Exception>
Action raise(CORBA::CompletionStatus completed, CORBA::ULong minor = 0)
{
    return [=] { throw Exception(minor, completed); };
}

Action gen(QD_ZLK::GenCode code)
{
    return [=] { throw QD_ZLK::exGen(code, "its words"); };
}

Action failed(const char* text)
{
    return [=] { throw QD_ZLK::IF_ZLK_c_ZLK::exZLK(QD_ZLK::IF_ZLK_c_ZLK::ZLK_FAILED, text); };
}

Action adminFailed(const char* text)
{
    return [=] { throw QD_ZLK::IF_ZELKO_Admin::exAdmin(QD_ZLK::IF_ZELKO_Admin::ADMIN_FAILED, text); };
}

} // namespace

class tst_ServiceFailure : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatEveryEndMeans_data();
    void whatEveryEndMeans();
    void theWordsOfTheRecorderAreKept();
    void aFailureIsItself();
    void onlyABrokenWayIsLookedForAgain_data();
    void onlyABrokenWayIsLookedForAgain();
};

void tst_ServiceFailure::whatEveryEndMeans_data()
{
    using namespace CORBA;
    QTest::addColumn<Action>("action");
    QTest::addColumn<Status>("status");
    QTest::newRow("nobody there") << raise<TRANSIENT>(COMPLETED_NO) << Status::NotReachable;
    QTest::newRow("gone in the middle") << raise<COMM_FAILURE>(COMPLETED_MAYBE) << Status::RecorderGone;
    QTest::newRow("gone before the call") << raise<COMM_FAILURE>(COMPLETED_NO) << Status::NotReachable;
    QTest::newRow("too late") << raise<TIMEOUT>(COMPLETED_MAYBE) << Status::Timeout;
    QTest::newRow("too late, by another name")
        << raise<TRANSIENT>(COMPLETED_MAYBE, omni::TRANSIENT_CallTimedout) << Status::Timeout;
    QTest::newRow("an object that is gone") << raise<OBJECT_NOT_EXIST>(COMPLETED_NO) << Status::RecorderRestarted;
    QTest::newRow("an answer that does not parse") << raise<MARSHAL>(COMPLETED_MAYBE) << Status::BadAnswer;
    QTest::newRow("a call that cannot be sent") << raise<MARSHAL>(COMPLETED_NO) << Status::NotTransmittable;
    QTest::newRow("a text that cannot be sent") << raise<DATA_CONVERSION>(COMPLETED_NO) << Status::NotTransmittable;
    QTest::newRow("not let in") << raise<NO_PERMISSION>(COMPLETED_NO) << Status::CallRefused;
    QTest::newRow("an unknown operation") << raise<BAD_OPERATION>(COMPLETED_NO) << Status::NotUnderstood;
    QTest::newRow("no room") << raise<NO_RESOURCES>(COMPLETED_NO) << Status::RecorderOverloaded;
    QTest::newRow("an ORB that has ended")
        << raise<BAD_INV_ORDER>(COMPLETED_NO, omni::BAD_INV_ORDER_ORBHasShutdown) << Status::NotStarted;
    QTest::newRow("texts of which the recorder does not know what they are")
        << raise<BAD_INV_ORDER>(COMPLETED_NO, omni::BAD_INV_ORDER_CodeSetNotKnownYet) << Status::NotTransmittable;
    QTest::newRow("a recorder that ends")
        << raise<BAD_INV_ORDER>(COMPLETED_NO, recorderEndsMinor) << Status::ShuttingDown;
    QTest::newRow("another exception of that number")
        << raise<NO_PERMISSION>(COMPLETED_NO, recorderEndsMinor) << Status::CallRefused;
    QTest::newRow("an undeclared exception") << raise<UNKNOWN>(COMPLETED_MAYBE) << Status::RecorderFailed;
    QTest::newRow("anything else of the ORB") << raise<CORBA::INTERNAL>(COMPLETED_MAYBE) << Status::RecorderFailed;
    QTest::newRow("exGen without a reason") << gen(QD_ZLK::GEN_INTERNAL) << Status::InternalError;
    QTest::newRow("exGen for a parameter") << gen(QD_ZLK::GEN_BAD_PARAMETER) << Status::BadArgument;
    QTest::newRow("exGen for a right") << gen(QD_ZLK::GEN_NOT_PERMITTED) << Status::NotAllowed;
    QTest::newRow("exGen for room") << gen(QD_ZLK::GEN_NO_RESOURCES) << Status::LimitReached;
    QTest::newRow("exGen for a name") << gen(QD_ZLK::GEN_NAME_IN_USE) << Status::NameInUse;
    QTest::newRow("exZLK without a reason") << failed("its words") << Status::InternalError;
    QTest::newRow("exZLK with the number of a status") << failed("[6] its words") << Status::NoSuchExport;
    QTest::newRow("exZLK with a number of ours") << failed("[1000] its words") << Status::InternalError;
    QTest::newRow("exZLK with a code, whatever the text says")
        << Action([] { throw QD_ZLK::IF_ZLK_c_ZLK::exZLK(QD_ZLK::IF_ZLK_c_ZLK::ZLK_UNKNOWN_RECORD, "[6] x"); })
        << Status::NoSuchRecord;
    QTest::newRow("exAdmin without a reason") << adminFailed("its words") << Status::InternalError;
    QTest::newRow("exAdmin with the number of a status") << adminFailed("[25] its words") << Status::AnswerTooLarge;
    QTest::newRow("a user exception of another part")
        << Action([] { throw QD_ZLK::IF_ZLK_c_Chan::exChan(QD_ZLK::IF_ZLK_c_Chan::CHAN_BUSY, ""); })
        << Status::RecorderFailed;
    QTest::newRow("an exception of the library")
        << Action([] { throw std::runtime_error("x"); }) << Status::ClientFailed;
    QTest::newRow("something that is no exception") << Action([] { throw 3; }) << Status::ClientFailed;
}

void tst_ServiceFailure::whatEveryEndMeans()
{
    QFETCH(Action, action);
    QTEST(failureOf(action).status, "status");
}

void tst_ServiceFailure::theWordsOfTheRecorderAreKept()
{
    QCOMPARE(failureOf(gen(QD_ZLK::GEN_INTERNAL)).detail, "its words");
    QCOMPARE(failureOf(failed("[6] its words")).detail, "its words");
    QCOMPARE(failureOf(failed("[6, its words")).detail, "[6, its words");
    QVERIFY(failureOf(raise<CORBA::TRANSIENT>(CORBA::COMPLETED_NO)).detail.contains("TRANSIENT"));
}

void tst_ServiceFailure::aFailureIsItself()
{
    ServiceFailure failure;
    failure.status = Status::NotConfigured;
    failure.detail = "why";
    failure.isNotExecuted = true;
    const ServiceFailure caught = failureOf([&] { throw failure; });
    QCOMPARE(caught.status, Status::NotConfigured);
    QCOMPARE(caught.detail, "why");
    QVERIFY(caught.isNotExecuted);
}

void tst_ServiceFailure::onlyABrokenWayIsLookedForAgain_data()
{
    using namespace CORBA;
    QTest::addColumn<Action>("action");
    QTest::addColumn<bool>("isReferenceLost");
    QTest::addColumn<bool>("isNotExecuted");
    QTest::newRow("nobody there") << raise<TRANSIENT>(COMPLETED_NO) << true << true;
    QTest::newRow("gone in the middle") << raise<COMM_FAILURE>(COMPLETED_MAYBE) << true << false;
    QTest::newRow("gone after it was done") << raise<COMM_FAILURE>(COMPLETED_YES) << true << false;
    QTest::newRow("an object that is gone") << raise<OBJECT_NOT_EXIST>(COMPLETED_NO) << true << true;
    QTest::newRow("too late before it was sent") << raise<TIMEOUT>(COMPLETED_NO) << true << false;
    QTest::newRow("a refusal in words") << gen(QD_ZLK::GEN_NOT_PERMITTED) << false << false;
    QTest::newRow("a refusal of the ORB") << raise<NO_PERMISSION>(COMPLETED_NO) << false << true;
}

void tst_ServiceFailure::onlyABrokenWayIsLookedForAgain()
{
    QFETCH(Action, action);
    const ServiceFailure failure = failureOf(action);
    QTEST(failure.isReferenceLost, "isReferenceLost");
    QTEST(failure.isNotExecuted, "isNotExecuted");
}

QTEST_GUILESS_MAIN(tst_ServiceFailure)

#include "tst_servicefailure.moc"
