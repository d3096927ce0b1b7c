#pragma once

#include <zelkobase/data/bookmarkentry.h>
#include <zelkobase/data/zelko_recorddata.h>
#include <zelkobase/data/zelkodatatypes.h>
#include <zelkobase/service/zelkobaseservice_export.h>

#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

namespace ZelkoGUI {

class ZelkoGuiToServerCorbaHandler;

/// Changes what a recorder stores of its records.
///
/// Each operation asks the recorder and waits for the answer, at most the limit of the connection. It returns 0, or a
/// ZelkoCommon::ServiceStatus that ToolbarHelper::ErrorId2Text(code, 1) turns into a text; what it gives out by
/// reference is touched on success only. Nothing throws. `device` and `record` are IDs; times are microseconds since
/// the epoch. What changes comes back over the value tree. GUI thread only.
class ZELKOBASESERVICE_EXPORT GuiToServerAdminCorbaHandler : public QObject
{
    Q_OBJECT

public:
    /// A null `server` is allowed: every operation then returns ServiceStatus::NotConfigured.
    explicit GuiToServerAdminCorbaHandler(std::shared_ptr<ZelkoGuiToServerCorbaHandler> server,
                                          QObject* parent = nullptr);
    ~GuiToServerAdminCorbaHandler() override;

    unsigned long addHistory(const QString& device, const QString& record, const QString& entry);

    /// `timestamp` is the moment of the entry, which is its key.
    unsigned long removeHistoryEntry(const QString& device, const QString& record, const qint64& timestamp);

    /// Copies the samples from `start` to `stop` into a new record, whose ID comes out in `newRecord` where that is
    /// given. Both are moments, or both places in the record as its start and stop positions count them: the recorder
    /// tells them apart.
    unsigned long copyRecord(const QString& device, const QString& record, qint64 start, qint64 stop,
                             const QString& name, QString* newRecord = nullptr);

    /// An empty list is a request like others.
    unsigned long addBookmarkEntries(const QString& device, const QString& record,
                                     const QVector<ZELKO_XML::BookmarkEntry>& entries);

    /// Deletes those that equal a given one in moment and text.
    unsigned long deleteBookmarkEntries(const QString& device, const QString& record,
                                        const QVector<ZELKO_XML::BookmarkEntry>& entries);

    unsigned long SetRecordDeletableFlag(const QString& device, const QString& record, bool deletable);

    /// The comment is the name under which people know the record.
    unsigned long SetRecordComment(const QString& device, const QString& record, const QString& comment);

    /// Has the record's lists published once more on the value tree.
    unsigned long requestRecordDataDetail(const QString& device, const QString& record);

    /// Has `resolution` spectra over the given time sent by UDP, 0: as many as fit without overlap. A spectrum is made
    /// of `fftLength` samples, a power of two from 16 to 65536. `ip` is empty or this host's own address in numbers, as
    /// the recorder sees it; to any other it sends nothing.
    unsigned long overviewSpectrumStreamed(const QString& device, const QString& record, qint64 start, qint64 stop,
                                           unsigned int resolution, unsigned long fftLength,
                                           ZelkoDataTypes::eFFT_Window window, QString ip, unsigned int port);

    /// The device's clock, in microseconds since the epoch, UTC. `synchronised`: it follows a reference.
    unsigned long getDeviceTime(const QString& device, qint64& time, bool& synchronised);

    /// `time` in microseconds since the epoch, UTC.
    unsigned long setDeviceTime(const QString& device, qint64 time);

    unsigned long getRecord(const QString& device, const QString& record, ZELKO_XML::ZELKO_RecordData& data);

    /// Why the last operation failed, for people, with what the recorder itself said about it.
    QString lastErrorText() const;

public Q_SLOTS:
    /// The host works on another device. The next operation finds the recorder of `subSystem` afresh if it is not that
    /// of the last device.
    void sl_activeDeviceChanged(const QString& device, const QString& subSystem);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
