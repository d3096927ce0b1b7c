#pragma once

#include <recorder/service/errands.h>

#include <omniORB4/CORBA.h>

namespace ZelkoRecorder {

/// What a call that was not answered ends with. TIMEOUT says whether what it asked for may have been begun; a recorder
/// that ends says so by BAD_INV_ORDER with `ZelkoCommon::recorderEndsMinor`.
[[noreturn]] void throwUnanswered(Errands::Failure failure);

/// `Errands::ask` for the threads of the ORB.
template <typename Question>
auto askRecorder(Errands& errands, Question&& question)
{
    using Answer = decltype(question());
    try {
        return errands.ask<Answer>(std::function<Answer()>(std::forward<Question>(question)));
    } catch (Errands::Failure failure) {
        throwUnanswered(failure);
    }
}

/// `Errands::askFor` for the threads of the ORB.
template <typename Answer, typename Question>
Answer askRecorderFor(Errands& errands, Question&& question)
{
    try {
        return errands.askFor<Answer>(std::function<void(const Reply<Answer>&)>(std::forward<Question>(question)));
    } catch (Errands::Failure failure) {
        throwUnanswered(failure);
    }
}

} // namespace ZelkoRecorder
