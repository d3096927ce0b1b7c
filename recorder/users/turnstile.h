#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>

namespace ZelkoRecorder {

/// Lets few threads at once do what is expensive, fewer still for one host, and has a bounded number of others wait.
/// Any thread.
class Turnstile
{
public:
    struct Options
    {
        int atOnce = 2;
        int atOncePerHost = 1;
        int waitingPerHost = 4;
        std::chrono::milliseconds patience{3000};
    };

    explicit Turnstile(const Options& options);

    /// A place inside, left by its destructor; outlived by the turnstile.
    class Place
    {
    public:
        /// Waits for a place. It is none when too many of the host wait already, or it takes too long.
        Place(Turnstile& turnstile, const std::string& host);
        ~Place();
        Place(const Place&) = delete;
        Place& operator=(const Place&) = delete;

        explicit operator bool() const { return m_inside; }

    private:
        Turnstile& m_turnstile;
        const std::string m_host;
        const bool m_inside;
    };

private:
    struct Host
    {
        int inside = 0;
        int waiting = 0;
    };

    bool enter(const std::string& host);
    void leave(const std::string& host);
    bool hasPlaceFor(const Host& host) const;
    void forgetIfIdle(const std::string& host);

    const Options m_options;
    std::mutex m_mutex;
    std::condition_variable m_left;
    std::map<std::string, Host> m_hosts;
    int m_inside = 0;
};

} // namespace ZelkoRecorder
