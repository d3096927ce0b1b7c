#include <zelkobase/service/servicestatus.h>

#include <QSet>
#include <QTest>

using namespace ZelkoCommon;

namespace {

// The compiler names a status that is missing here.
bool isListed(ServiceStatus status)
{
    switch (status) {
    case ServiceStatus::None:
    case ServiceStatus::InternalError:
    case ServiceStatus::NoSuchDevice:
    case ServiceStatus::NoSuchRecord:
    case ServiceStatus::NoSuchEntry:
    case ServiceStatus::NoSuchExport:
    case ServiceStatus::NotAllowed:
    case ServiceStatus::RecordBusy:
    case ServiceStatus::NotSupported:
    case ServiceStatus::BadArgument:
    case ServiceStatus::NoSamples:
    case ServiceStatus::DiskFull:
    case ServiceStatus::DiskFailed:
    case ServiceStatus::LimitReached:
    case ServiceStatus::NameInUse:
    case ServiceStatus::ShuttingDown:
    case ServiceStatus::DamagedRecord:
    case ServiceStatus::TargetNotAllowed:
    case ServiceStatus::TargetExists:
    case ServiceStatus::NotReplaying:
    case ServiceStatus::SpeedNotOffered:
    case ServiceStatus::NotOffered:
    case ServiceStatus::AnswerTooLarge:
    case ServiceStatus::NotDurable:
    case ServiceStatus::Timeout:
    case ServiceStatus::NotReachable:
    case ServiceStatus::RecorderGone:
    case ServiceStatus::RecorderRestarted:
    case ServiceStatus::ServiceNotOffered:
    case ServiceStatus::NotConfigured:
    case ServiceStatus::NotStarted:
    case ServiceStatus::BadAnswer:
    case ServiceStatus::CallRefused:
    case ServiceStatus::NotUnderstood:
    case ServiceStatus::NotTransmittable:
    case ServiceStatus::RecorderFailed:
    case ServiceStatus::RecorderOverloaded:
    case ServiceStatus::ClientFailed:
        return true;
    }
    return false;
}

constexpr unsigned long beyondTheLast = 2000;

} // namespace

class tst_ServiceStatus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyStatusHasATextOfItsOwn();
    void successHasNoText();
    void anUnknownNumberIsNamed_data();
    void anUnknownNumberIsNamed();
    void theNumbersOnTheWireStay();
    void aForeignTextIsMadePresentable_data();
    void aForeignTextIsMadePresentable();
};

void tst_ServiceStatus::everyStatusHasATextOfItsOwn()
{
    QSet<QString> texts;
    for (unsigned long code = 1; code < beyondTheLast; ++code) {
        QCOMPARE(isServiceStatus(code), isListed(static_cast<ServiceStatus>(code)));
        if (isServiceStatus(code)) {
            const QString text = serviceStatusText(code);
            QVERIFY2(text.endsWith(QLatin1Char('.')), qPrintable(text));
            // What happened, and what to do.
            QVERIFY2(text.contains(QLatin1String(". ")) || text.contains(QLatin1String("; ")), qPrintable(text));
            QVERIFY2(!texts.contains(text), qPrintable(text));
            texts.insert(text);
        }
    }
    QVERIFY(!texts.isEmpty());
}

void tst_ServiceStatus::successHasNoText()
{
    QVERIFY(isServiceStatus(0));
    QCOMPARE(serviceStatusText(0), QString());
}

void tst_ServiceStatus::anUnknownNumberIsNamed_data()
{
    QTest::addColumn<unsigned long>("code");
    QTest::newRow("one that was never given") << 8UL;
    QTest::newRow("one behind the recorder's last") << 27UL;
    QTest::newRow("one before ours") << 999UL;
    QTest::newRow("one behind our last") << 1014UL;
    QTest::newRow("the largest") << 4294967295UL;
}

void tst_ServiceStatus::anUnknownNumberIsNamed()
{
    QFETCH(unsigned long, code);
    QVERIFY(!isServiceStatus(code));
    QVERIFY2(serviceStatusText(code).contains(QString::number(code)), qPrintable(serviceStatusText(code)));
}

// Recorders and clients of different days read each other's numbers.
void tst_ServiceStatus::theNumbersOnTheWireStay()
{
    QCOMPARE(statusCode(ServiceStatus::None), 0UL);
    QCOMPARE(statusCode(ServiceStatus::InternalError), 1UL);
    QCOMPARE(statusCode(ServiceStatus::NoSuchRecord), 3UL);
    QCOMPARE(statusCode(ServiceStatus::NotAllowed), 7UL);
    QCOMPARE(statusCode(ServiceStatus::RecordBusy), 9UL);
    QCOMPARE(statusCode(ServiceStatus::DamagedRecord), 19UL);
    QCOMPARE(statusCode(ServiceStatus::TargetNotAllowed), 20UL);
    QCOMPARE(statusCode(ServiceStatus::AnswerTooLarge), 25UL);
    QCOMPARE(statusCode(ServiceStatus::NotDurable), 26UL);
    QCOMPARE(statusCode(ServiceStatus::Timeout), static_cast<unsigned long>(firstClientStatus));
}

void tst_ServiceStatus::aForeignTextIsMadePresentable_data()
{
    QTest::addColumn<QString>("foreign");
    QTest::addColumn<QString>("shown");
    QTest::newRow("a plain one") << "the disk is full"
                                 << "the disk is full";
    QTest::newRow("an empty one") << ""
                                  << "";
    QTest::newRow("lines and tabs") << " one\ntwo\t three "
                                    << "one two three";
    QTest::newRow("control characters") << QStringLiteral("a\u0007\u001b[31mb\u202ec") << "a [31mb c";
    QTest::newRow("characters beyond the first plane")
        << QStringLiteral("\U0001F4FB on") << QStringLiteral("\U0001F4FB on");
    QTest::newRow("300 characters") << QString(300, 'x') << QString(300, 'x');
    QTest::newRow("301 characters") << QString(301, 'x') << QString(299, 'x') + QChar(0x2026);
}

void tst_ServiceStatus::aForeignTextIsMadePresentable()
{
    QFETCH(QString, foreign);
    QFETCH(QString, shown);
    QCOMPARE(presentable(foreign), shown);
}

QTEST_GUILESS_MAIN(tst_ServiceStatus)

#include "tst_servicestatus.moc"
