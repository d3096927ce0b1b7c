#include <reportcore/rgexception.h>

#include <QtTest>

using namespace REPORTGENERATOR;

class RGExceptionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesOriginAndMessageApart();
    void hasNoOriginIfNoneIsGiven();
    void isCaughtAsReportExceptionWithBothTexts();
    void isCaughtAsStandardException();
    void survivesCopying();
};

void RGExceptionTest::givesOriginAndMessageApart()
{
    const RGException exception(QStringLiteral("Class"), QStringLiteral("field is missing"));
    QCOMPARE(exception.GetOrigin(), QStringLiteral("Class"));
    QCOMPARE(exception.GetMessage(), QStringLiteral("field is missing"));
}

void RGExceptionTest::hasNoOriginIfNoneIsGiven()
{
    const RGException exception(QStringLiteral("filter file is not applicable"));
    QCOMPARE(exception.GetOrigin(), QString());
    QCOMPARE(exception.GetMessage(), QStringLiteral("filter file is not applicable"));
    QCOMPARE(QString::fromUtf8(exception.what()), exception.GetMessage());
}

void RGExceptionTest::isCaughtAsReportExceptionWithBothTexts()
{
    try {
        throw RGException(QStringLiteral("a"), QStringLiteral("b"));
    } catch (const ReportException& caught) {
        QCOMPARE(caught.GetOrigin() + caught.GetMessage(), QStringLiteral("ab"));
    }
}

void RGExceptionTest::isCaughtAsStandardException()
{
    try {
        throw RGException(QStringLiteral("Größe"), QStringLiteral("zu groß"));
    } catch (const std::exception& caught) {
        QCOMPARE(QString::fromUtf8(caught.what()), QStringLiteral("Größe: zu groß"));
    }
}

void RGExceptionTest::survivesCopying()
{
    RGException copy(QStringLiteral("other"));
    copy = RGException(QStringLiteral("Class"), QStringLiteral("text"));
    QCOMPARE(QByteArray(RGException(copy).what()), QByteArray("Class: text"));
}

QTEST_APPLESS_MAIN(RGExceptionTest)
#include "tst_rgexception.moc"
