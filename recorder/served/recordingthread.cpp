#include <recorder/served/recordingthread.h>

#include <recorder/source/sourcefactory.h>
#include <recorder/store/recorderlog.h>
#include <recorder/store/recordid.h>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;

namespace {

ZELKO_RecordData::Interface interfaceOf(const QString& source)
{
    return source.startsWith(QLatin1String("generator:")) ? ZELKO_RecordData::Interface::AnalogueIF
                                                          : ZELKO_RecordData::Interface::FileImport;
}

} // namespace

RecordingThread::RecordingThread(const QString& device, const Surroundings& surroundings, const QStringList& sources,
                                 const RecordingPace& pace, Repeat repeat, QObject* parent)
    : QObject(parent)
    , m_device(device)
    , m_store(surroundings.store)
    , m_uses(surroundings.uses)
    , m_clock(surroundings.clock)
    , m_sources(sources)
    , m_pace(pace)
    , m_repeat(repeat)
{}

RecordingThread::~RecordingThread()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        m_stop.request_stop();
    }
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void RecordingThread::start()
{
    if (!m_sources.isEmpty() && !m_thread.joinable()) {
        m_thread = std::thread([this] { recordAll(); });
    }
}

void RecordingThread::stopRecording(const QString& recordID)
{
    const std::lock_guard lock(m_mutex);
    if (m_recordID == recordID) {
        m_stop.request_stop();
    }
}

bool RecordingThread::edit(const QString& recordID, const EditQueue::Entry& entry)
{
    const std::lock_guard lock(m_mutex);
    return m_recordID == recordID && m_edits && m_edits->post(entry);
}

void RecordingThread::recordAll()
{
    RecordedSources recorded(m_store.folder());
    for (const QString& source : m_sources) {
        if (!m_ending) {
            recordOne(source, recorded);
        }
    }
}

void RecordingThread::recordOne(const QString& source, RecordedSources& recorded)
{
    const QString fingerprint = SourceFactory::fingerprint(source);
    if (m_repeat == Repeat::Unfinished && recorded.contains(fingerprint)) {
        qCInfo(recorderLog).noquote() << m_device << ": passing over" << source << ", it was recorded before";
    } else if (record(source) && !recorded.add(fingerprint)) {
        qCWarning(recorderLog).noquote() << m_device << ": cannot note that" << source << "was recorded";
    }
}

// True if it was recorded to its end.
bool RecordingThread::record(const QString& source)
{
    QString error;
    const auto signal = SourceFactory::create(source, &error);
    if (!signal) {
        qCWarning(recorderLog).noquote() << m_device << ": cannot record" << source << ":" << error;
        return false;
    }
    const auto now = static_cast<quint64>(m_clock.now());
    const QString id = createRecordId(now);
    ZELKO_RecordData birth = recordOf(signal->description(), now);
    birth.SetRecordID(id);
    birth.SetInterface(interfaceOf(source));
    if (birth.GetRecordName().isEmpty()) {
        birth.SetRecordName(QStringLiteral("Recording of %1").arg(m_device));
    }
    const auto tell = [this](const RecordPointer& record) {
        m_news.post([this, record] { Q_EMIT recordChanged(record); });
    };
    const auto use = m_uses.begin(id, RecordUses::Kind::Recording);
    const auto edits = std::make_shared<EditQueue>();
    const std::stop_token stop = begin(id, edits);
    qCInfo(recorderLog).noquote() << m_device << ": recording" << id << "from" << source;
    Recording recording(m_store, *signal, birth, m_pace, tell);
    recording.takeEditsFrom(*edits);
    if (!recording.run(stop, &error)) {
        qCWarning(recorderLog).noquote() << m_device << ": recording" << id << "failed:" << error;
    }
    qCInfo(recorderLog).noquote() << m_device << ": ended" << id;
    m_news.post([this, id] { Q_EMIT recordEnded(id); });
    return recording.isComplete();
}

std::stop_token RecordingThread::begin(const QString& recordID, const std::shared_ptr<EditQueue>& edits)
{
    m_news.post([this, recordID] { Q_EMIT recordBegins(recordID); });
    const std::lock_guard lock(m_mutex);
    m_recordID = recordID;
    m_edits = edits;
    m_stop = std::stop_source();
    if (m_ending) {
        m_stop.request_stop();
    }
    return m_stop.get_token();
}

} // namespace ZelkoRecorder
