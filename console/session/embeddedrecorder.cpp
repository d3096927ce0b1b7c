#include <console/session/embeddedrecorder.h>

#include <console/session/backoff.h>
#include <console/session/recorderoutput.h>
#include <console/session/recorderusers.h>

#include <QDir>
#include <QProcess>
#include <QTimer>

#include <cstdio>

namespace ZelkoConsole {
namespace {

constexpr int stopTimeout = 5000;

} // namespace

struct EmbeddedRecorder::Private
{
    Private(EmbeddedRecorder* owner, const EmbeddedRecorderOptions& recorderOptions);

    void launch();
    QStringList arguments(const QString& usersFile) const;
    void takeOutput();
    void takeError();
    void ended(int exitCode, QProcess::ExitStatus exitStatus);
    QString endText(int exitCode, QProcess::ExitStatus exitStatus) const;
    void giveUp();
    void fail(const QString& reason);
    void enter(State newState, const QString& reason = {});

    EmbeddedRecorder* const q;
    const EmbeddedRecorderOptions options;
    QProcess process;
    RecorderOutput output;
    BackOff backOff;
    QTimer restart;
    QTimer patience;
    State state = State::Stopped;
    QString failure;
    quint16 port = 0;
    bool hasServed = false;
};

EmbeddedRecorder::Private::Private(EmbeddedRecorder* owner, const EmbeddedRecorderOptions& recorderOptions)
    : q(owner)
    , options(recorderOptions)
    , backOff(recorderOptions.firstRestart, recorderOptions.lastRestart)
{
    restart.setSingleShot(true);
    patience.setSingleShot(true);
    connect(&restart, &QTimer::timeout, q, [this] { launch(); });
    connect(&patience, &QTimer::timeout, q, [this] { giveUp(); });
    connect(&process, &QProcess::readyReadStandardOutput, q, [this] { takeOutput(); });
    connect(&process, &QProcess::readyReadStandardError, q, [this] { takeError(); });
    connect(&process, &QProcess::finished, q, [this](int code, QProcess::ExitStatus status) { ended(code, status); });
    connect(&process, &QProcess::errorOccurred, q, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            fail(EmbeddedRecorder::tr("%1 cannot be started").arg(options.program));
        }
    });
}

void EmbeddedRecorder::Private::launch()
{
    output.clear();
    enter(State::Starting);
    if (!QDir().mkpath(options.storeFolder)) {
        fail(EmbeddedRecorder::tr("the folder %1 cannot be made").arg(options.storeFolder));
        return;
    }
    const QString usersFile = options.users ? options.users->file(options.storeFolder) : QString();
    if (options.users && usersFile.isEmpty()) {
        fail(EmbeddedRecorder::tr("no users file can be written to %1").arg(options.storeFolder));
        return;
    }
    patience.start(options.readyTimeout);
    process.start(options.program, arguments(usersFile));
}

QStringList EmbeddedRecorder::Private::arguments(const QString& usersFile) const
{
    QStringList list{
        QStringLiteral("--store"), options.storeFolder, QStringLiteral("--sub-system"),      options.subSystem,
        QStringLiteral("--port"),  QStringLiteral("0"), QStringLiteral("--exit-with-parent")};
    for (const QString& device : options.devices) {
        list << QStringLiteral("--device") << device;
    }
    for (const QString& source : options.sources) {
        list << QStringLiteral("--source") << source;
    }
    for (const QString& channel : options.channels) {
        list << QStringLiteral("--channel") << channel;
    }
    if (!usersFile.isEmpty()) {
        list << QStringLiteral("--users") << usersFile;
    }
    if (hasServed) {
        list << QStringLiteral("--once"); // what was recorded before it died is not to be recorded a second time
    }
    return list;
}

void EmbeddedRecorder::Private::takeOutput()
{
    const auto served = output.takeOutput(process.readAllStandardOutput());
    if (served && state == State::Starting) {
        port = *served;
        hasServed = true;
        patience.stop();
        backOff.reset();
        enter(State::Running);
    }
}

// What the recorder logs belongs to whoever started the console from a terminal.
void EmbeddedRecorder::Private::takeError()
{
    const QByteArray bytes = process.readAllStandardError();
    output.takeError(bytes);
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
}

void EmbeddedRecorder::Private::ended(int exitCode, QProcess::ExitStatus exitStatus)
{
    takeError();
    if (state == State::Failed) {
        restart.start(backOff.next());
    } else if (state != State::Stopped) {
        fail(endText(exitCode, exitStatus));
    }
}

// The next one is started only when this one has ended: there is one process, and one lock on the store.
void EmbeddedRecorder::Private::giveUp()
{
    process.kill();
    enter(State::Failed, EmbeddedRecorder::tr("it does not get ready"));
}

QString EmbeddedRecorder::Private::endText(int exitCode, QProcess::ExitStatus exitStatus) const
{
    if (exitStatus == QProcess::CrashExit) {
        return EmbeddedRecorder::tr("it was killed");
    }
    QString text = output.lastError();
    if (text.endsWith(QLatin1Char('.'))) {
        text.chop(1); // it becomes a part of a sentence
    }
    return exitCode == 0 || text.isEmpty() ? EmbeddedRecorder::tr("it ended with code %1").arg(exitCode) : text;
}

void EmbeddedRecorder::Private::fail(const QString& reason)
{
    patience.stop();
    restart.start(backOff.next());
    enter(State::Failed, reason);
}

void EmbeddedRecorder::Private::enter(State newState, const QString& reason)
{
    state = newState;
    failure = reason;
    Q_EMIT q->changed();
}

EmbeddedRecorder::EmbeddedRecorder(const EmbeddedRecorderOptions& options, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, options))
{}

EmbeddedRecorder::~EmbeddedRecorder()
{
    blockSignals(true);
    stop();
}

void EmbeddedRecorder::start()
{
    if (d->state == State::Stopped) {
        d->launch();
    }
}

void EmbeddedRecorder::stop()
{
    d->restart.stop();
    d->patience.stop();
    d->enter(State::Stopped);
    if (d->process.state() == QProcess::NotRunning) {
        return;
    }
    d->process.terminate();
    if (!d->process.waitForFinished(stopTimeout)) {
        d->process.kill();
        d->process.waitForFinished(stopTimeout);
    }
}

EmbeddedRecorder::State EmbeddedRecorder::state() const
{
    return d->state;
}

QString EmbeddedRecorder::failure() const
{
    return d->failure;
}

quint16 EmbeddedRecorder::port() const
{
    return d->port;
}

qint64 EmbeddedRecorder::processId() const
{
    return d->process.processId();
}

} // namespace ZelkoConsole
