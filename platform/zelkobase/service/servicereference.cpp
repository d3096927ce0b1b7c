#include <zelkobase/service/servicereference_p.h>

#include <zelkobase/orb/hostname.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/service/hostlookup.h>
#include <zelkobase/service/referencetext.h>
#include <zelkobase/service/servicefailure_p.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace ZelkoCommon {
namespace {

[[noreturn]] void fail(ServiceStatus status, const QString& detail = {})
{
    throw ServiceFailure{.status = status, .detail = detail, .isNotExecuted = true};
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

// With addresses for the names of hosts, which the ORB would look up by itself for as long as the system takes. All of
// them share the limit, and one that nobody knows is no matter where there are others.
QString resolved(ReferenceText reference, std::chrono::milliseconds limit)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + limit;
    std::vector<ReferenceText::Place> found;
    std::optional<ServiceFailure> failure;
    for (const ReferenceText::Place& place : reference.places) {
        try {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
            for (const QString& address : reachableAddresses(place.host, std::max(left, left.zero()))) {
                found.push_back({place.head, address, place.port});
            }
        } catch (const ServiceFailure& thrown) {
            failure = thrown;
        }
    }
    if (found.empty()) {
        throw ServiceFailure(failure.value());
    }
    reference.places = found;
    return reference.text();
}

// With TLS the recorder has to prove that it is the host of that name, so the ORB is given the name once it is known to
// be one.
QString textOf(const ServiceAddress& address, bool usesTls, std::chrono::milliseconds limit)
{
    if (address.reference.isEmpty()) {
        const QStringList addresses = reachableAddresses(address.host, limit);
        return usesTls ? tlsServiceReference(address.host, address.port) : serviceReference(addresses, address.port);
    }
    if (address.reference.startsWith(QLatin1String("IOR:"))) {
        return address.reference;
    }
    const auto reference = ReferenceText::parse(address.reference);
    if (!reference) {
        fail(ServiceStatus::NotConfigured, address.reference);
    }
    const QString numbers = resolved(*reference, limit);
    return usesTls ? address.reference : numbers;
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
