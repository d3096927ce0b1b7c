#include <valuecore/command.h>

Command::~Command() = default;

std::optional<std::size_t> Command::TargetHash() const
{
    return std::nullopt;
}
