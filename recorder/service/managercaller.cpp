#include <recorder/service/managercaller.h>

#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/corbatext.h>

#include <omniORB4/omniORB.h>

namespace ZelkoRecorder {

using QD_ZLK::IF_ZLK_c_ChanMan;
using ManagerPtr = QD_ZLK::IF_ZLK_c_ChanMan_ptr;

namespace {

constexpr int mostUnanswered = 2;

CORBA::Boolean neverAgain(void*, CORBA::ULong, const CORBA::TRANSIENT&)
{
    return false;
}

bool is(const CORBA::Exception& exception, const char* name)
{
    return std::string_view(exception._name()) == name;
}

} // namespace

ManagerCaller::ManagerCaller(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager, std::chrono::milliseconds limit,
                             std::function<void(const QString&)> lost)
    : m_limit(limit)
    , m_lost(std::move(lost))
{
    setManager(manager);
}

ManagerCaller::~ManagerCaller() = default;

// Nobody is there who could wait for a second try, and the first one tells enough.
void ManagerCaller::setManager(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager)
{
    const QD_ZLK::IF_ZLK_c_ChanMan_var kept = IF_ZLK_c_ChanMan::_duplicate(manager);
    ZelkoCommon::setCallTimeout(kept, m_limit);
    omniORB::installTransientExceptionHandler(kept, nullptr, neverAgain);
    m_thread.enqueue([this, kept] {
        m_manager = kept;
        m_unanswered = 0;
    });
}

void ManagerCaller::call(Call call, Then then)
{
    ++m_waiting;
    m_thread.enqueue([this, call = std::move(call), then = std::move(then)] {
        const Outcome outcome = make(call);
        --m_waiting;
        if (then) {
            m_news.post([then, outcome] { then(outcome); });
        }
    });
}

void ManagerCaller::ping()
{
    if (!isBusy()) {
        call(
            [](ManagerPtr manager) {
                if (manager->_non_existent()) {
                    throw CORBA::OBJECT_NOT_EXIST();
                }
                return true;
            },
            nullptr);
    }
}

ManagerCaller::Outcome ManagerCaller::make(const Call& call)
{
    if (m_isLost) {
        return {false, QStringLiteral("the channel manager is gone")};
    }
    try {
        const bool agreed = call(m_manager);
        m_unanswered = 0;
        return {agreed, agreed ? QString() : QStringLiteral("the channel manager declined")};
    } catch (const IF_ZLK_c_ChanMan::exChanMan& refusal) {
        m_unanswered = 0;
        return {false, ZelkoCommon::fromCorba(refusal.text)};
    } catch (const CORBA::SystemException& exception) {
        return failed(exception);
    } catch (const CORBA::Exception& exception) {
        return {false, ZelkoCommon::describe(exception)};
    }
}

// A manager that answers with an exception of the ORB is there, whatever it means by it.
ManagerCaller::Outcome ManagerCaller::failed(const CORBA::SystemException& exception)
{
    const QString why = ZelkoCommon::describe(exception);
    const bool isGone = is(exception, "COMM_FAILURE") || is(exception, "OBJECT_NOT_EXIST");
    const bool isSilent = is(exception, "TIMEOUT") || is(exception, "TRANSIENT");
    m_unanswered = isSilent ? m_unanswered + 1 : 0;
    if (isGone || m_unanswered >= mostUnanswered) {
        tellLost(why);
    }
    return {false, why};
}

void ManagerCaller::tellLost(const QString& why)
{
    m_isLost = true;
    m_news.post([this, why] { m_lost(why); });
}

} // namespace ZelkoRecorder
