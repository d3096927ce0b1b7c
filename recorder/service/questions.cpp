#include <recorder/service/questions.h>

#include <zelkobase/service/recorderends.h>

namespace ZelkoRecorder {

// Not TRANSIENT, which the ORB of the client would take for a wish to try again.
void throwUnanswered(Errands::Failure failure)
{
    switch (failure) {
    case Errands::Failure::GoingDown:
        throw CORBA::BAD_INV_ORDER(ZelkoCommon::recorderEndsMinor, CORBA::COMPLETED_NO);
    case Errands::Failure::NotBegun:
        throw CORBA::TIMEOUT(0, CORBA::COMPLETED_NO);
    case Errands::Failure::NoAnswer:
        break;
    }
    throw CORBA::TIMEOUT(0, CORBA::COMPLETED_MAYBE);
}

} // namespace ZelkoRecorder
