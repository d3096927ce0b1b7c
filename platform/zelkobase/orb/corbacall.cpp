#include <zelkobase/orb/corbacall.h>

#include <omniORB4/omniORB.h>

#include <map>
#include <string_view>

namespace ZelkoCommon {
namespace {

QString meaning(std::string_view name)
{
    static const std::map<std::string_view, const char*> meanings{
        {"TRANSIENT", "nobody answers there, or not in time"},
        {"TIMEOUT", "the call took too long"},
        {"COMM_FAILURE", "the connection broke"},
        {"OBJECT_NOT_EXIST", "the other side runs, but does not offer this service"},
        {"MARSHAL", "the other side speaks another version of this service"},
        {"INITIALIZE", "the address or port cannot be used"},
        {"NO_PERMISSION", "the other side refused"},
    };
    const auto found = meanings.find(name);
    return found == meanings.end() ? QString() : QString::fromLatin1(found->second);
}

} // namespace

QString describe(const CORBA::Exception& exception)
{
    const QString name = QString::fromLatin1(exception._name());
    const QString text = meaning(exception._name());
    return text.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(text, name);
}

void setCallTimeout(CORBA::Object_ptr object, std::chrono::milliseconds limit)
{
    omniORB::setClientCallTimeout(object, static_cast<CORBA::ULong>(limit.count()));
}

} // namespace ZelkoCommon
