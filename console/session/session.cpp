#include <console/session/session.h>

namespace ZelkoConsole {

Session::Session(QObject* parent)
    : QObject(parent)
{}

Session::~Session() = default;

} // namespace ZelkoConsole
