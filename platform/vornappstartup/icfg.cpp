#include <vornappstartup/icfg.h>

ICfg::~ICfg() = default;
