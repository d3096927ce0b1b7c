#include "tracetexts.h"

#include <observerbase/errorhandler.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/service/errordescriptor.h>

#include <QScopeGuard>
#include <QTest>

class tst_ErrorDescriptor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsItsPath();
    void tellsTheUserWhatIsForHim_data();
    void tellsTheUserWhatIsForHim();
};

void tst_ErrorDescriptor::keepsItsPath()
{
    QCOMPARE(ErrorDescriptor(zelko::names::errorDescriptorPath("north")).path(), "/SubSystems/north");
}

void tst_ErrorDescriptor::tellsTheUserWhatIsForHim_data()
{
    QTest::addColumn<int>("classifier");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("an error") << 2 << "Not done."
                              << "The disk is full." << QStringList("Not done.\nThe disk is full.");
    QTest::newRow("a warning") << 1 << "Done, but."
                               << "Late." << QStringList("Done, but.\nLate.");
    QTest::newRow("an information") << 0 << "Done."
                                    << "In time." << QStringList();
    QTest::newRow("an unknown classifier") << 9 << "What?"
                                           << "" << QStringList("What?");
    QTest::newRow("without a description") << 2 << "Not done."
                                           << "" << QStringList("Not done.");
    QTest::newRow("without a text") << 2 << ""
                                    << "The disk is full." << QStringList("The disk is full.");
    QTest::newRow("without anything") << 2 << ""
                                      << "" << QStringList();
}

void tst_ErrorDescriptor::tellsTheUserWhatIsForHim()
{
    QFETCH(int, classifier);
    QFETCH(QString, text);
    QFETCH(QString, description);
    QFETCH(QStringList, messages);
    const TraceTexts traces;
    QStringList shown;
    const auto previous = ErrorHandler::Instance()->SetMessageSink([&](const QString& message) { shown << message; });
    const auto restore = qScopeGuard([&] { ErrorHandler::Instance()->SetMessageSink(previous); });
    ErrorDescriptor descriptor("/SubSystems/north");
    descriptor.WriteCommandResponse(static_cast<ErrorClassifier>(classifier), text, description);
    QCOMPARE(shown, messages);
    QCOMPARE(traces.contain("ErrorDescriptor: /SubSystems/north: "), !(text + description).isEmpty());
}

QTEST_GUILESS_MAIN(tst_ErrorDescriptor)

#include "tst_errordescriptor.moc"
