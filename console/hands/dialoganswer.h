#pragma once

#include <console/hands/windowanswer.h>

namespace ZelkoConsole {

/// What the operator does with the next modal window that asks him something.
class DialogAnswer : public WindowAnswer
{
public:
    explicit DialogAnswer(std::function<void(QWidget*)> answer);
};

} // namespace ZelkoConsole
