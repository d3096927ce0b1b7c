#pragma once

#include <future>
#include <memory>
#include <utility>

namespace ZelkoRecorder {

/// Waits for what was promised; `otherwise` if the promise was given up.
template <typename Result>
Result resultOr(std::future<Result>& result, Result otherwise)
{
    try {
        return result.get();
    } catch (const std::future_error&) {
        return otherwise;
    }
}

/// Runs `job` elsewhere and waits for its result. `post` hands a function over to whoever is to run it; `otherwise` is
/// the result if that one ends and forgets the function.
template <typename Result, typename Post, typename Job>
Result awaitResult(const Post& post, Job job, Result otherwise)
{
    auto promise = std::make_shared<std::promise<Result>>();
    std::future<Result> result = promise->get_future();
    post([promise = std::move(promise), job = std::move(job)] { promise->set_value(job()); });
    return resultOr(result, std::move(otherwise));
}

} // namespace ZelkoRecorder
