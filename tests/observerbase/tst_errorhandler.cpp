#include <observerbase/errorhandler.h>

#include <QStringList>
#include <QTest>

class tst_ErrorHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void isOnePerProcess();
    void wantsErrorsAndWarningsFromTheStart();
    void asksTheMaskForEachBit_data();
    void asksTheMaskForEachBit();
    void givesMessagesToTheSinkInOrder();
    void givesBackTheSinkThatWasSetBefore();
    void logsAMessageThatNobodyShows();
    void letsTheSinkReplaceItself();
};

void tst_ErrorHandler::cleanup()
{
    ErrorHandler::Instance()->SetTraceMask(ErrorHandler::TraceError | ErrorHandler::TraceWarning);
    ErrorHandler::Instance()->SetMessageSink({});
}

void tst_ErrorHandler::isOnePerProcess()
{
    QVERIFY(ErrorHandler::Instance());
    QCOMPARE(ErrorHandler::Instance(), ErrorHandler::Instance());
}

void tst_ErrorHandler::wantsErrorsAndWarningsFromTheStart()
{
    QCOMPARE(ErrorHandler::Instance()->GetTraceMask(), 96u);
}

void tst_ErrorHandler::asksTheMaskForEachBit_data()
{
    QTest::addColumn<unsigned int>("mask");
    QTest::addColumn<bool>("errors");
    QTest::addColumn<bool>("warnings");
    QTest::newRow("nothing wanted") << 0u << false << false;
    QTest::newRow("errors only") << 32u << true << false;
    QTest::newRow("warnings only") << 64u << false << true;
    QTest::newRow("both") << 96u << true << true;
    QTest::newRow("all but both") << ~96u << false << false;
}

void tst_ErrorHandler::asksTheMaskForEachBit()
{
    QFETCH(unsigned int, mask);
    ErrorHandler::Instance()->SetTraceMask(mask);
    QCOMPARE(ErrorHandler::Instance()->GetTraceMask(), mask);
    QTEST(ErrorHandler::Instance()->traces(ErrorHandler::TraceError), "errors");
    QTEST(ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning), "warnings");
}

void tst_ErrorHandler::givesMessagesToTheSinkInOrder()
{
    QStringList shown;
    ErrorHandler::Instance()->SetMessageSink([&](const QString& text) { shown << text; });
    ErrorHandler::Instance()->ShowMessage("The device is busy.");
    ErrorHandler::Instance()->ShowMessage("The device is gone.");
    QCOMPARE(shown, QStringList({"The device is busy.", "The device is gone."}));
}

void tst_ErrorHandler::givesBackTheSinkThatWasSetBefore()
{
    QStringList shown;
    QVERIFY(!ErrorHandler::Instance()->SetMessageSink([&](const QString& text) { shown << "first: " + text; }));
    const auto first =
        ErrorHandler::Instance()->SetMessageSink([&](const QString& text) { shown << "second: " + text; });
    QVERIFY(first);
    first("one");
    ErrorHandler::Instance()->ShowMessage("two");
    QCOMPARE(shown, QStringList({"first: one", "second: two"}));
}

void tst_ErrorHandler::logsAMessageThatNobodyShows()
{
    QTest::ignoreMessage(QtWarningMsg, "Disk \"A\" is full.");
    ErrorHandler::Instance()->ShowMessage("Disk \"A\" is full.");
}

void tst_ErrorHandler::letsTheSinkReplaceItself()
{
    QStringList shown;
    ErrorHandler::Instance()->SetMessageSink([&shown](const QString& text) {
        auto& kept = shown; // what the function holds must live on after it was replaced
        ErrorHandler::Instance()->SetMessageSink({});
        kept << text;
    });
    ErrorHandler::Instance()->ShowMessage("once");
    QTest::ignoreMessage(QtWarningMsg, "twice");
    ErrorHandler::Instance()->ShowMessage("twice");
    QCOMPARE(shown, QStringList({"once"}));
}

QTEST_GUILESS_MAIN(tst_ErrorHandler)
#include "tst_errorhandler.moc"
