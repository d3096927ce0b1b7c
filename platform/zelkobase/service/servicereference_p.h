#pragma once

#include <zelkobase/service/serviceaddress.h>

#include <zelkoidl/recorderservice.hh>

#include <chrono>

namespace ZelkoCommon {

/// The references to the service of one recorder, found when they are asked for and kept until they are let go.
///
/// What finds them blocks and throws ServiceFailure or CORBA::Exception; it changes nothing on the recorder, so it may
/// be repeated whatever came of it. The references stay the owner's.
class ServiceReference
{
public:
    /// The entry point, whose type the recorder itself has confirmed. `limit` is for looking a host's name up; calls
    /// have the limit of their thread.
    QD_ZLK::IF_ZLK_c_ZLK_ptr root(const ServiceAddress& address, std::chrono::milliseconds limit);

    /// The administration; finds the entry point first.
    QD_ZLK::IF_ZELKO_Admin_ptr admin(const ServiceAddress& address, std::chrono::milliseconds limit);

    bool isKnown() const;
    void forget();

private:
    void follow(const ServiceAddress& address);

    ServiceAddress m_address; // of the references
    QD_ZLK::IF_ZLK_c_ZLK_var m_root;
    QD_ZLK::IF_ZELKO_Admin_var m_admin;
};

} // namespace ZelkoCommon
