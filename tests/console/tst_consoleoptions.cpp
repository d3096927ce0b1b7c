#include <console/session/consoleoptions.h>

#include <observerbase/errorhandler.h>

#include <QTest>

using ZelkoConsole::ConsoleOptions;

class TestConsoleOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsASiteFile()
    {
        const auto options = ConsoleOptions::parse({QStringLiteral("--site"), QStringLiteral("a.json")}, nullptr);
        QVERIFY(options);
        QCOMPARE(options->siteFile, QStringLiteral("a.json"));
    }

    void readsStoreAndAllSources()
    {
        const auto options =
            ConsoleOptions::parse({QStringLiteral("--record"), QStringLiteral("generator:noise"),
                                   QStringLiteral("--store=/tmp/s"), QStringLiteral("--record=x.sigmf-meta")},
                                  nullptr);
        QVERIFY(options);
        QCOMPARE(options->storeFolder, QStringLiteral("/tmp/s"));
        QCOMPARE(options->sources, QStringList({QStringLiteral("generator:noise"), QStringLiteral("x.sigmf-meta")}));
    }

    void tracesErrorsAloneUnlessItIsAsked()
    {
        const auto usual = ConsoleOptions::parse({}, nullptr);
        QVERIFY(usual);
        QCOMPARE(usual->traceMask(), unsigned(ErrorHandler::TraceError));
        const auto tracing = ConsoleOptions::parse({QStringLiteral("--trace")}, nullptr);
        QVERIFY(tracing);
        QCOMPARE(tracing->traceMask(), unsigned(ErrorHandler::TraceError | ErrorHandler::TraceWarning));
        QVERIFY(ConsoleOptions::helpText().contains(QStringLiteral("--trace")));
    }

    void refusesWhatItDoesNotKnow_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("named");
        QTest::newRow("an unknown option") << QStringList(QStringLiteral("--colour")) << QStringLiteral("colour");
        QTest::newRow("an option without its value") << QStringList(QStringLiteral("--site")) << QStringLiteral("site");
        QTest::newRow("traces with a value") << QStringList(QStringLiteral("--trace=64")) << QStringLiteral("--trace");
        QTest::newRow("traces with an empty value")
            << QStringList(QStringLiteral("--trace=")) << QStringLiteral("--trace");
        QTest::newRow("traces with a value behind a blank")
            << QStringList({QStringLiteral("--trace"), QStringLiteral("64")}) << QStringLiteral("64");
        QTest::newRow("half of the word for traces") << QStringList(QStringLiteral("--tra")) << QStringLiteral("tra");
        QTest::newRow("a word") << QStringList(QStringLiteral("word")) << QStringLiteral("word");
        QTest::newRow("a site and sources")
            << QStringList({QStringLiteral("--site=a"), QStringLiteral("--record=b")}) << QStringLiteral("--record");
        QTest::newRow("a site and a store")
            << QStringList({QStringLiteral("--site=a"), QStringLiteral("--store=b")}) << QStringLiteral("--store");
    }

    void refusesWhatItDoesNotKnow()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, named);
        QString error;
        QVERIFY(!ConsoleOptions::parse(arguments, &error));
        QVERIFY2(error.contains(named), qPrintable(error));
    }

    void startsARecorderOfItsOwnWithSomethingToShow()
    {
        const auto recorder = ConsoleOptions().recorderOptions(QStringLiteral("/opt/bin"));
        QCOMPARE(recorder.program, QStringLiteral("/opt/bin/zelko-recorder"));
        QCOMPARE(recorder.sources, ConsoleOptions::defaultSources());
        QCOMPARE(recorder.channels, ConsoleOptions::defaultChannels());
        QVERIFY(!recorder.storeFolder.isEmpty());
        for (const QString& source : recorder.sources) {
            QVERIFY2(recorder.devices.contains(source.section(QLatin1Char('='), 0, 0)), qPrintable(source));
        }
    }

    void recordsNothingElseThanWhatWasAskedFor()
    {
        ConsoleOptions options;
        options.sources = QStringList(QStringLiteral("generator:noise"));
        options.storeFolder = QStringLiteral("/tmp/here");
        const auto recorder = options.recorderOptions(QString());
        QCOMPARE(recorder.sources, options.sources);
        QCOMPARE(recorder.storeFolder, QStringLiteral("/tmp/here"));
    }

    void namesEveryOptionInTheHelp()
    {
        const QString help = ConsoleOptions::helpText();
        for (const char* option : {"--site <FILE>", "--store <DIR>", "--record <SOURCE>", "--trace"}) {
            QVERIFY2(help.contains(QLatin1String(option)), option);
        }
    }
};

QTEST_GUILESS_MAIN(TestConsoleOptions)
#include "tst_consoleoptions.moc"
