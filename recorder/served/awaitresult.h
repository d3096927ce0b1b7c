#pragma once

#include <atomic>
#include <chrono>
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

/// As above; `otherwise`, too, soon after `ending` has become true, whatever becomes of the promise.
template <typename Result>
Result resultOr(std::future<Result>& result, Result otherwise, const std::atomic<bool>& ending)
{
    constexpr std::chrono::milliseconds glance{20};
    while (result.wait_for(glance) != std::future_status::ready) {
        if (ending) {
            return otherwise;
        }
    }
    return resultOr(result, std::move(otherwise));
}

/// Runs `job` elsewhere and waits for its result. `post` hands a function over to whoever is to run it; `otherwise` is
/// the result if that one ends and forgets the function, or if `ending` becomes true first.
template <typename Result, typename Post, typename Job>
Result awaitResult(const Post& post, Job job, Result otherwise, const std::atomic<bool>& ending)
{
    auto promise = std::make_shared<std::promise<Result>>();
    std::future<Result> result = promise->get_future();
    post([promise = std::move(promise), job = std::move(job)] { promise->set_value(job()); });
    return resultOr(result, std::move(otherwise), ending);
}

/// As above, without such an end.
template <typename Result, typename Post, typename Job>
Result awaitResult(const Post& post, Job job, Result otherwise)
{
    static constexpr std::atomic<bool> never = false;
    return awaitResult(post, std::move(job), std::move(otherwise), never);
}

} // namespace ZelkoRecorder
