#include <zelkobase/orb/tlsrefusal.h>

#include <zelkobase/orb/tlsrefusal_p.h>

#include <utility>

namespace ZelkoCommon {
namespace {

thread_local QString refusal;

} // namespace

QString takeTlsRefusal()
{
    return std::exchange(refusal, {});
}

void noteTlsRefusal(const QString& reason)
{
    if (refusal.isEmpty()) {
        refusal = reason;
    }
}

} // namespace ZelkoCommon
