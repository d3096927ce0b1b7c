#pragma once

#include "overviewfacts_p.h"

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QObject>

namespace SPECTRUM_OVERVIEW {

/// One record of a record list, whatever becomes of the two. GUI thread.
class FollowedRecord : public QObject
{
    Q_OBJECT

public:
    enum class State {
        None,    ///< no record is followed
        Listed,  ///< it is in the list, and something is known of it
        Gone,    ///< it is not in the list, or nothing is known of it; it may come back
        Deleted, ///< it was deleted, which is for good
    };

    explicit FollowedRecord(QObject* parent = nullptr);
    ~FollowedRecord() override;

    /// Follows a record of that list, which may be null or go first. Tells nothing by itself.
    void follow(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model);

    State state() const { return m_state; }
    QString recordID() const { return m_recordID; }

    /// As the list had them last.
    const OverviewFacts& facts() const { return m_facts; }

Q_SIGNALS:
    /// The state, or what is known of the record.
    void si_changed();

private:
    void connectModel();
    void look();
    void recordChanged(const QString& recordID);
    void recordDeleted(const QString& recordID);
    void modelDestroyed();

    ZelkoCommon::AbstractRecordListModel* m_model = nullptr;
    QString m_recordID;
    OverviewFacts m_facts;
    State m_state = State::None;
};

} // namespace SPECTRUM_OVERVIEW
