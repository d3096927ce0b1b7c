#include "followedrecord_p.h"

#include <utility>

namespace SPECTRUM_OVERVIEW {

using Records = ZelkoCommon::AbstractRecordListModel;

FollowedRecord::FollowedRecord(QObject* parent)
    : QObject(parent)
{}

FollowedRecord::~FollowedRecord() = default;

void FollowedRecord::follow(const QString& recordID, Records* model)
{
    if (m_model) {
        disconnect(m_model, nullptr, this, nullptr);
    }
    m_model = model;
    m_recordID = recordID;
    m_facts = OverviewFacts();
    m_state = State::None;
    if (m_model) {
        connectModel();
    }
    if (!recordID.isEmpty()) {
        look();
    }
}

void FollowedRecord::connectModel()
{
    connect(m_model, &Records::si_recordChanged, this, &FollowedRecord::recordChanged);
    connect(m_model, &Records::si_recordDeleted, this, &FollowedRecord::recordDeleted);
    connect(m_model, &Records::si_allRecordsChanged, this, [this] { recordChanged(m_recordID); });
    connect(m_model, &QObject::destroyed, this, &FollowedRecord::modelDestroyed);
}

void FollowedRecord::look()
{
    const auto record = m_model ? m_model->getRecordData(m_recordID) : nullptr;
    m_state = record ? State::Listed : State::Gone;
    if (record) {
        m_facts = OverviewFacts(*record);
    }
}

// A record that was deleted does not come back; one that has its ID is another one.
void FollowedRecord::recordChanged(const QString& recordID)
{
    if (recordID == m_recordID && m_state != State::None && m_state != State::Deleted) {
        look();
        Q_EMIT si_changed();
    }
}

void FollowedRecord::recordDeleted(const QString& recordID)
{
    if (recordID == m_recordID && m_state != State::None) {
        m_state = State::Deleted;
        Q_EMIT si_changed();
    }
}

void FollowedRecord::modelDestroyed()
{
    m_model = nullptr;
    recordChanged(m_recordID);
}

} // namespace SPECTRUM_OVERVIEW
