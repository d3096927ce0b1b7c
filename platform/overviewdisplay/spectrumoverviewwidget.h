#pragma once

#include <overviewdisplay/overviewdisplay_export.h>
#include <overviewdisplay/overviewloader.h>

#include <zelkobase/data/bookmarkentry.h>
#include <zelkobase/data/zelkodatatypes.h>

#include <QVector>
#include <QWidget>

#include <memory>

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace SPECTRUM_OVERVIEW {

/// The window with the spectra of one record as a waterfall over its time.
///
/// It changes nothing itself and asks nobody: what it wants is told by signals, which a controller carries out, and
/// what becomes of that comes back with the record, and as datagrams from the recorder to a port of this host. It
/// follows the record: one that grows is shown whole again, new bookmarks and names are taken over, and when the record
/// or its list goes the picture stays until it comes back. For a record that was deleted there is nothing to be seen
/// any more.
///
/// It knows no users: it offers to set bookmarks and to copy to whoever has it before him. An application whose users
/// may not all do that closes it before another one comes.
///
/// Its settings outlive it in the user's configuration: what the spectra are made of, the levels of the colours, the
/// place of the window and the folder of saved pictures. GUI thread.
class OVERVIEWDISPLAY_EXPORT SpectrumOverviewWidget : public QWidget
{
    Q_OBJECT

public:
    /// `cfgPath` is the group of the user's configuration in which its settings are; empty: its top. The window is
    /// empty at first.
    explicit SpectrumOverviewWidget(const QString& cfgPath, QWidget* parent = nullptr);

    /// Ends the stream of the recorder, and keeps the settings.
    ~SpectrumOverviewWidget() override;

    /// Shows a record of a device, in place of the one before. The model is not owned, may be null, and may go first.
    /// `ipAddress` is that of the recorder, from which the spectra come; where it is no address in numbers they are
    /// taken from whoever answers first.
    void setRecord(const QString& deviceID, const QString& recordID, ZelkoCommon::AbstractRecordListModel* model,
                   const QString& ipAddress);

    /// Replaces the timer behind the delays, so that a test need not wait. QTimer's is there from the start.
    void setSingleShot(const OverviewLoader::SingleShot& singleShot);

Q_SIGNALS:
    /// All that there is to know of the record is to be published once more.
    void si_resyncRecord(QString recordID, QString deviceID);

    /// The samples between these times, in microseconds since the epoch, are to become a record of that name.
    void si_copyRecord(QString recordID, quint64 start, quint64 stop, QString recordName, QString deviceID);

    /// These are to be the bookmarks of the record, in the order of their times.
    void si_setBookmarkEntries(QString recordID, QVector<ZELKO_XML::BookmarkEntry> bookmarks, QString deviceID);

    /// The recorder is to send `resolution` spectra of the samples between these times, in microseconds since the
    /// epoch, to that port. `ipAddress` is that of this host on the way to the recorder; empty: the one from which the
    /// recorder is called. Comes again for what was lost on the way.
    void si_overviewSpectrumStreamed(QString recordID, qint64 start, qint64 stop, uint resolution, ulong fftLength,
                                     ZelkoDataTypes::eFFT_Window windowType, QString ipAddress, uint port,
                                     QString deviceID);

    /// The user is to be told that something went wrong; `description` says what exactly.
    void si_errorText(QString text, QString description);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace SPECTRUM_OVERVIEW
