#include <recorder/process/parentwatch.h>

#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

namespace ZelkoRecorder {

bool endWithParent()
{
    const pid_t parent = ::getppid();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    return parent != 1 && ::getppid() == parent;
}

} // namespace ZelkoRecorder
