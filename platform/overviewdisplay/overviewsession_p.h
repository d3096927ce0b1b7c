#pragma once

#include "followedrecord_p.h"
#include "overviewsettings_p.h"

#include <overviewdisplay/overviewloader.h>

#include <QObject>

namespace SPECTRUM_OVERVIEW {

/// Decides what of a record is shown and what a recorder is asked for: the whole record first, finer lines of the range
/// that the user wants to see, and again what has changed of it. GUI thread.
class OverviewSession : public QObject
{
    Q_OBJECT

public:
    /// So long after the last of some changes in a row is asked for what they want.
    static constexpr std::chrono::milliseconds AskDelay{200};

    /// So long after a record has begun to grow, and not before the last answer is there, it is asked for all of it.
    static constexpr std::chrono::milliseconds GrowthDelay{2000};

    /// So long a record without a sample rate may take to tell it, before it is asked for.
    static constexpr std::chrono::milliseconds ResyncDelay{2000};

    explicit OverviewSession(QObject* parent = nullptr);
    ~OverviewSession() override;

    void setSingleShot(const OverviewLoader::SingleShot& singleShot);

    /// The record of a device in a list, which may be null or go first; `address` is that of its recorder.
    void setRecord(const QString& deviceID, const QString& recordID, ZelkoCommon::AbstractRecordListModel* model,
                   const QString& address);

    void setSettings(const OverviewSettings& settings);

    /// For how many lines the view has room.
    void setRoom(int lines);

    const FollowedRecord& record() const { return m_record; }
    const OverviewFacts& facts() const { return m_record.facts(); }
    const OverviewLoader& loader() const { return m_loader; }

    /// Whether the record can be worked with now.
    bool isUsable() const;

    /// Why there can be no spectrum, for people; empty if there can be one.
    QString problem() const;

    /// What of the record is shown; the same twice without a record.
    TimeRange range() const { return m_range; }
    bool isWhole() const { return m_isWhole; }

    /// Shows a part, as far as it lies in the record. Nothing without a record that has a spectrum.
    void show(const TimeRange& range);
    void showWhole();

    /// Once more, at once.
    void askAgain();

Q_SIGNALS:
    /// What is known of the record is not enough.
    void si_resyncRecord(QString recordID);

    /// The recorder is to be asked for these spectra.
    void si_ask(const SPECTRUM_OVERVIEW::OverviewWish& wish, const QString& address, uint port);

    /// Of the record, of its state, or of what can be asked for.
    void si_recordChanged();
    void si_rangeChanged();

    /// @name As OverviewLoader has them
    /// @{
    void si_emptied();
    void si_linesArrived(int first, int last);
    void si_loaderChanged();
    /// @}

private:
    void connectParts();
    void look();
    void lookAtFacts();
    void resync(int recordNumber);
    void takeExtent(const TimeRange& extent);
    void setRange(const TimeRange& range, bool isWhole);
    void schedule(std::chrono::milliseconds delay);
    void scheduleGrowth();
    void growthDue();
    void ask(bool isForced);

    OverviewLoader m_loader;
    FollowedRecord m_record;
    OverviewLoader::SingleShot m_singleShot;
    OverviewSettings m_settings;
    QString m_deviceID;
    QString m_address;
    TimeRange m_extent; // of the record, when it was looked at last
    TimeRange m_range;
    int m_room = 512;
    int m_recordNumber = 0; // counts the records that were set
    int m_scheduled = 0;    // number of the last wish that waits, so that those before it are forgotten
    bool m_isWhole = true;
    bool m_isTooShort = false; // the range, for the length of the spectra
    bool m_isGrowing = false;
    bool m_wasAway = false; // the record could not be worked with, and nothing that was wanted was asked for
    bool m_hasResynced = false;
};

} // namespace SPECTRUM_OVERVIEW
