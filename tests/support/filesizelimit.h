#pragma once

#include <csignal>

#include <sys/resource.h>

namespace ZelkoTest {

/// While it lives this process cannot write behind so many bytes of any file, as if the disk were full there.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limited{bytes, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_old = {};
    void (*m_oldHandler)(int);
};

} // namespace ZelkoTest
