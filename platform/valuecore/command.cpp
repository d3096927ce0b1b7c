#include <valuecore/command.h>

Command::~Command() = default;
