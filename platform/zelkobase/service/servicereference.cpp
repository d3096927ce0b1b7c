#include <zelkobase/service/servicereference_p.h>

#include <zelkobase/orb/hostname.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/service/hostlookup.h>
#include <zelkobase/service/servicefailure_p.h>

namespace ZelkoCommon {
namespace {

[[noreturn]] void fail(ServiceStatus status, const QString& detail = {})
{
    ServiceFailure failure;
    failure.status = status;
    failure.detail = detail;
    failure.isNotExecuted = true;
    throw failure;
}

QStringList reachableAddresses(const QString& host, std::chrono::milliseconds limit)
{
    if (!canBeHost(host)) {
        fail(ServiceStatus::NotConfigured, host);
    }
    const auto addresses = addressesOf(host, limit);
    if (!addresses) {
        fail(ServiceStatus::Timeout, host);
    }
    if (addresses->isEmpty()) {
        fail(ServiceStatus::NotReachable, host);
    }
    return *addresses;
}

// With TLS the recorder has to prove that it is the host of that name, so the ORB is given the name once it is known to
// be one.
QString textOf(const ServiceAddress& address, bool usesTls, std::chrono::milliseconds limit)
{
    if (!address.reference.isEmpty()) {
        return address.reference;
    }
    const QStringList addresses = reachableAddresses(address.host, limit);
    return usesTls ? tlsServiceReference(address.host, address.port) : serviceReference(addresses, address.port);
}

CORBA::Object_ptr objectAt(const ServiceAddress& address, std::chrono::milliseconds limit)
{
    if (!address.isValid()) {
        fail(ServiceStatus::NotConfigured);
    }
    const Orb* const orb = Orb::current();
    if (!orb) {
        fail(ServiceStatus::NotStarted);
    }
    const QString text = textOf(address, orb->usesTls(), limit);
    try {
        return orb->reference(text);
    } catch (const CORBA::BAD_PARAM&) { // no reference at all, or a name that the naming service does not have
        fail(ServiceStatus::NotConfigured, text);
    } catch (const CORBA::MARSHAL&) {
        fail(ServiceStatus::NotConfigured, text);
    }
}

} // namespace

void ServiceReference::follow(const ServiceAddress& address)
{
    if (address != m_address) {
        forget();
        m_address = address;
    }
}

QD_ZLK::IF_ZLK_c_ZLK_ptr ServiceReference::root(const ServiceAddress& address, std::chrono::milliseconds limit)
{
    follow(address);
    if (CORBA::is_nil(m_root)) {
        const CORBA::Object_var object = objectAt(address, limit);
        m_root = QD_ZLK::IF_ZLK_c_ZLK::_narrow(object);
    }
    if (CORBA::is_nil(m_root)) {
        fail(ServiceStatus::ServiceNotOffered);
    }
    return m_root;
}

QD_ZLK::IF_ZELKO_Admin_ptr ServiceReference::admin(const ServiceAddress& address, std::chrono::milliseconds limit)
{
    follow(address);
    if (CORBA::is_nil(m_admin)) {
        m_admin = root(address, limit)->getZelkoAdminInterface();
    }
    if (CORBA::is_nil(m_admin)) {
        fail(ServiceStatus::ServiceNotOffered);
    }
    return m_admin;
}

bool ServiceReference::isKnown() const
{
    return !CORBA::is_nil(m_root);
}

void ServiceReference::forget()
{
    m_admin = QD_ZLK::IF_ZELKO_Admin::_nil();
    m_root = QD_ZLK::IF_ZLK_c_ZLK::_nil();
}

} // namespace ZelkoCommon
