#include "patience.h"
#include "recorderstart.h"

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <csignal>

using ZelkoConsole::EmbeddedRecorder;
using State = EmbeddedRecorder::State;

namespace {

void killHard(const EmbeddedRecorder& recorder)
{
    ::kill(static_cast<pid_t>(recorder.processId()), SIGKILL);
}

bool processExists(qint64 id)
{
    return ::kill(static_cast<pid_t>(id), 0) == 0;
}

// A program that does what a broken recorder might.
QString script(const QTemporaryDir& folder, const QByteArray& text)
{
    const QString path = folder.filePath(QStringLiteral("program"));
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + text) > 0;
    file.setPermissions(file.permissions() | QFile::ExeOwner);
    return written ? path : QString();
}

QByteArrayList linesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().split('\n') : QByteArrayList();
}

} // namespace

class TestEmbeddedRecorder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsARecorderOnAPortOfItsOwn()
    {
        const QTemporaryDir store;
        EmbeddedRecorder recorder(recorderStart(store));
        QCOMPARE(recorder.state(), State::Stopped);
        recorder.start();
        QCOMPARE(recorder.state(), State::Starting);
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Running, patience);
        QVERIFY(recorder.port() != 0);
        QVERIFY(processExists(recorder.processId()));
    }

    void startsItAgainWhenItWasKilled()
    {
        const QTemporaryDir store;
        EmbeddedRecorder recorder(recorderStart(store));
        recorder.start();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Running, patience);
        const qint64 process = recorder.processId();
        killHard(recorder);
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Failed, patience);
        QCOMPARE(recorder.failure(), QStringLiteral("it was killed"));
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Running, patience);
        QCOMPARE(recorder.failure(), QString());
        QVERIFY(recorder.processId() != process);
    }

    void endsTheProcessWhenItIsStopped()
    {
        const QTemporaryDir store;
        EmbeddedRecorder recorder(recorderStart(store));
        recorder.start();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Running, patience);
        const qint64 process = recorder.processId();
        recorder.stop();
        QCOMPARE(recorder.state(), State::Stopped);
        QVERIFY(!processExists(process));
    }

    void tellsWhyARecorderCannotBeStarted()
    {
        const QTemporaryDir store;
        auto options = recorderStart(store);
        options.program = QStringLiteral("/nowhere/zelko-recorder");
        EmbeddedRecorder recorder(options);
        recorder.start();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Failed, patience);
        QCOMPARE(recorder.failure(), QStringLiteral("/nowhere/zelko-recorder cannot be started"));
    }

    void tellsWhatTheRecorderSaidAtItsEnd_data()
    {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QString>("failure");
        QTest::newRow("a reason") << QByteArray("echo 'store is full' >&2; exit 1") << QStringLiteral("store is full");
        QTest::newRow("a sentence") << QByteArray("echo 'Store is full.' >&2; exit 1")
                                    << QStringLiteral("Store is full");
        QTest::newRow("nothing") << QByteArray("exit 3") << QStringLiteral("it ended with code 3");
        QTest::newRow("an end without being asked")
            << QByteArray("echo 'all is well' >&2; exit 0") << QStringLiteral("it ended with code 0");
    }

    void tellsWhatTheRecorderSaidAtItsEnd()
    {
        QFETCH(QByteArray, program);
        const QTemporaryDir folder;
        auto options = recorderStart(folder);
        options.program = script(folder, program);
        EmbeddedRecorder recorder(options);
        recorder.start();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Failed, patience);
        QTEST(recorder.failure(), "failure");
    }

    void triesAgainUntilItWorks()
    {
        const QTemporaryDir folder;
        auto options = recorderStart(folder);
        const QByteArray mark = folder.filePath(QStringLiteral("mark")).toUtf8();
        options.program = script(
            folder, "if [ -e " + mark + " ]; then echo READY port=4711; exec sleep 60; fi; touch " + mark + "; exit 1");
        EmbeddedRecorder recorder(options);
        QList<State> states;
        connect(&recorder, &EmbeddedRecorder::changed, this, [&] { states.append(recorder.state()); });
        recorder.start();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Running, patience);
        QCOMPARE(states, QList<State>({State::Starting, State::Failed, State::Starting, State::Running}));
        QCOMPARE(recorder.port(), quint16{4711});
    }

    void asksForAllSourcesUntilARecorderServedAndThenForTheMissingOnes()
    {
        const QTemporaryDir folder;
        auto options = recorderStart(folder, {QStringLiteral("generator:fm"), QStringLiteral("generator:noise")});
        const QString log = folder.filePath(QStringLiteral("log"));
        // Ends before it serves at the first start, and right after it served at the others.
        options.program = script(folder, "echo \"$@\" >> " + log.toUtf8() + "; if [ $(wc -l < " + log.toUtf8() +
                                             ") -gt 1 ]; then echo READY port=4711; fi; exit 1");
        EmbeddedRecorder recorder(options);
        recorder.start();
        const auto starts = [&log] { return linesOf(log); };
        QTRY_VERIFY_WITH_TIMEOUT(starts().size() >= 4, patience);
        recorder.stop();
        QList<bool> missingOnly;
        for (const QByteArray& start : starts().first(4)) {
            QCOMPARE(start.count("--source"), 2);
            missingOnly.append(start.contains("--once"));
        }
        QCOMPARE(missingOnly, QList<bool>({false, false, true, true}));
    }

    void asksForItsChannels()
    {
        const QTemporaryDir folder;
        auto options = recorderStart(folder);
        options.channels = QStringList{QStringLiteral("Channel 1=generator:fm"), QStringLiteral("B")};
        const QString log = folder.filePath(QStringLiteral("log"));
        options.program = script(folder, "printf '%s\\n' \"$@\" > " + log.toUtf8() + "; exit 1");
        EmbeddedRecorder recorder(options);
        recorder.start();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Failed, patience);
        const QByteArrayList given = linesOf(log);
        const qsizetype first = given.indexOf("--channel");
        QCOMPARE(given.mid(first, 4), QByteArrayList({"--channel", "Channel 1=generator:fm", "--channel", "B"}));
    }

    void givesUpOnARecorderThatDoesNotGetReady()
    {
        const QTemporaryDir folder;
        auto options = recorderStart(folder);
        options.readyTimeout = std::chrono::milliseconds(200);
        options.program = script(folder, "exec sleep 60");
        EmbeddedRecorder recorder(options);
        recorder.start();
        const qint64 process = recorder.processId();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), State::Failed, patience);
        QCOMPARE(recorder.failure(), QStringLiteral("it does not get ready"));
        QTRY_VERIFY_WITH_TIMEOUT(!processExists(process), patience);
    }

    void startsTheNextOneOnlyWhenTheOneThatWasGivenUpHasEnded()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral("already running")));
        const QTemporaryDir folder;
        auto options = recorderStart(folder);
        options.readyTimeout = std::chrono::milliseconds(50);
        options.firstRestart = options.lastRestart = std::chrono::milliseconds(0);
        const QString log = folder.filePath(QStringLiteral("log"));
        options.program = script(folder, "echo $$ >> " + log.toUtf8() + "; exec sleep 60");
        EmbeddedRecorder recorder(options);
        QList<State> states;
        connect(&recorder, &EmbeddedRecorder::changed, this, [&] { states.append(recorder.state()); });
        recorder.start();
        QTRY_VERIFY_WITH_TIMEOUT(linesOf(log).size() >= 3, patience);
        recorder.stop();
        states.removeLast();
        for (qsizetype i = 0; i < states.size(); ++i) {
            QCOMPARE(states[i], i % 2 == 0 ? State::Starting : State::Failed);
        }
    }

    void tellsThatTheStoreCannotBeMade()
    {
        const QTemporaryDir folder;
        auto options = recorderStart(folder);
        options.storeFolder = QStringLiteral("/proc/nothing/here");
        EmbeddedRecorder recorder(options);
        recorder.start();
        QCOMPARE(recorder.state(), State::Failed);
        QCOMPARE(recorder.failure(), QStringLiteral("the folder /proc/nothing/here cannot be made"));
    }
};

QTEST_GUILESS_MAIN(TestEmbeddedRecorder)
#include "tst_embeddedrecorder.moc"
