#pragma once

#include <recorder/service/callgate.h>
#include <recorder/service/callrights.h>
#include <recorder/service/channelregistry.h>
#include <recorder/service/devicedirectory.h>
#include <recorder/service/errands.h>
#include <recorder/store/storestatus.h>
#include <recorder/users/turnstile.h>

#include <zelkoidl/recorderservice.hh>

#include <functional>
#include <memory>
#include <string>

namespace ZelkoRecorder {

/// The entry point of the recorder's service as the ORB sees it. Served on threads of the ORB; all it knows it asks the
/// recorder's thread for.
class ZlkServant final : public POA_QD_ZLK::IF_ZLK_c_ZLK, public PortableServer::RefCountServantBase
{
public:
    /// What it asks. Devices and channels on the recorder's thread only, and outlive the errands; the functions on any
    /// thread, within the gate.
    struct Sources
    {
        const DeviceDirectory& devices;
        ChannelRegistry& channels;
        /// The object under a key.
        std::function<CORBA::Object_ptr(const std::string& key)> reference;
        /// Begins to write a record out and gives the ID of the export; empty, and in `status` why, if it cannot.
        std::function<QString(const QString& device, const QString& recordID, const QString& target,
                              StoreStatus* status)>
            beginExport;
        /// Ends an export; `removeTarget`: what it wrote goes too.
        std::function<StoreStatus(const QString& exportId, bool removeTarget)> cancelExport;
    };

    /// What lists of all records may take.
    struct ListBounds
    {
        std::size_t largest;       ///< bytes beyond which one is refused; to be less than what the ORB sends
        std::size_t recordsAtOnce; ///< about how many are taken from the recorder's thread at a time
        Turnstile::Options lists;  ///< that are made and sent at once
    };

    ZlkServant(std::shared_ptr<Errands> errands, std::shared_ptr<CallGate> gate, CallRights rights, Sources sources,
               const ListBounds& bounds);

    /// A list keeps its place until it is sent.
    _CORBA_Boolean _dispatch(omniCallHandle& call) override;

    QD_ZLK::IF_ZLK_c_Chan_ptr registerChannel(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager, QD_ZLK::DataRateClass dataRate,
                                              QD_ZLK::DataFormat format, CORBA::Boolean canRecord,
                                              CORBA::Boolean canReplay, const char* name,
                                              CORBA::String_out channelId) override;
    QD_ZLK::IF_ZLK_c_Chan_ptr registerChannelEx(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager, QD_ZLK::DataRateClass dataRate,
                                                QD_ZLK::DataFormat format, CORBA::Boolean canRecord,
                                                CORBA::Boolean canReplay, const char* name, const char* preferredDevice,
                                                CORBA::String_out channelId) override;
    QD_ZLK::IF_ZLK_c_Chan_ptr registerReceiverChannel(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager,
                                                      QD_ZLK::DataRateClass dataRate, QD_ZLK::DataFormat format,
                                                      CORBA::Boolean canRecord, CORBA::Boolean canReplay,
                                                      const char* name, const char* preferredDevice,
                                                      CORBA::String_out channelId, QD_ZLK::EndpointKind receiverKind,
                                                      const char* receiver) override;

    QD_ZLK::IF_ZELKO_Replay_ptr getZelkoReplayInterface(const char* device) override;
    QD_ZLK::IF_ZLK_c_Chan_ptr getZelkoChannelInterface(const char* channelId) override;
    QD_ZLK::IF_ZELKO_Admin_ptr getZelkoAdminInterface() override;

    QD_ZLK::StringSeq* getAllDevices() override;
    char* mapDeviceIdToAddress(const char* device) override;
    char* mapAddressToDeviceId(const char* address) override;
    void getDeviceInformation(const char* device, CORBA::String_out deviceName, CORBA::Long& deviceState) override;
    QD_ZLK::RecordMetaData* getMetaDataForRecord(const char* device, const char* record) override;
    QD_ZLK::RecordInfoSeq* getAllRecords(const char* device) override;
    char* getWorkstationName() override;
    char* exportRecording(const char* device, const char* record, const char* target) override;
    void cancelExport(const char* exportId, CORBA::Boolean removeTarget) override;

private:
    QD_ZLK::IF_ZLK_c_Chan_ptr enter(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager, const ChannelWish& wish,
                                    CORBA::String_out channelId);
    void require(Action action) const;
    RecordPointers allRecords(const QString& device) const;
    QD_ZLK::RecordInfoSeq* listOf(const RecordPointers& records) const;

    const std::shared_ptr<Errands> m_errands;
    const std::shared_ptr<CallGate> m_gate;
    const CallRights m_rights;
    const Sources m_sources;
    const std::size_t m_largestList;
    const std::size_t m_recordsAtOnce;
    Turnstile m_lists;
};

} // namespace ZelkoRecorder
