#include <zelkobase/orb/corbareference_p.h>

#include <omniORB4/CORBA.h>

#include <omniORB4/IIOP.h>
#include <omniORB4/codeSets.h>
#include <omniORB4/omniIOR.h>

#include <memory>

namespace ZelkoCommon {
namespace {

constexpr _CORBA_Octet minorVersion = 2;

bool namesCodeSets(const IOP::MultipleComponentProfile& components)
{
    for (CORBA::ULong i = 0; i < components.length(); ++i) {
        if (components[i].tag == IOP::TAG_CODE_SETS) {
            return true;
        }
    }
    return false;
}

// What every recorder and every client of this service can read.
void addCodeSets(IOP::MultipleComponentProfile& components)
{
    omni::CONV_FRAME::CodeSetComponentInfo codeSets;
    codeSets.ForCharData.native_code_set = omni::omniCodeSet::ID_UTF_8;
    codeSets.ForWcharData.native_code_set = omni::omniCodeSet::ID_UTF_16;
    cdrEncapsulationStream stream;
    codeSets >>= stream;
    IOP::TaggedComponent& component = omniIOR::newIIOPtaggedComponent(components);
    component.tag = IOP::TAG_CODE_SETS;
    stream.setOctetSeq(component.component_data);
}

void raise(IOP::TaggedProfile& profile)
{
    IIOP::ProfileBody body;
    IIOP::unmarshalProfile(profile, body);
    body.version.minor = std::max(body.version.minor, minorVersion);
    if (!namesCodeSets(body.components)) {
        addCodeSets(body.components);
    }
    IOP::TaggedProfile raised;
    IIOP::encodeProfile(body, raised);
    profile = raised;
}

} // namespace

CORBA::Object_ptr withCodeSets(CORBA::Object_ptr object)
{
    if (CORBA::is_nil(object)) {
        return CORBA::Object::_nil();
    }
    const omniIOR_var reference = object->_PR_getobj()->_getIOR();
    auto profiles = std::make_unique<IOP::TaggedProfileList>(reference->iopProfiles());
    for (CORBA::ULong i = 0; i < profiles->length(); ++i) {
        if ((*profiles)[i].tag == IOP::TAG_INTERNET_IOP) {
            raise((*profiles)[i]);
        }
    }
    auto* const raised = new omniIOR(CORBA::string_dup(reference->repositoryID()), profiles.release());
    omniObjRef* const made = omni::createObjRef(CORBA::Object::_PD_repoId, raised, false);
    return static_cast<CORBA::Object_ptr>(made->_ptrToObjRef(CORBA::Object::_PD_repoId));
}

} // namespace ZelkoCommon
