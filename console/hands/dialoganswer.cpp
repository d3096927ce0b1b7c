#include <console/hands/dialoganswer.h>

#include <QApplication>

namespace ZelkoConsole {

DialogAnswer::DialogAnswer(std::function<void(QWidget*)> answer)
    : WindowAnswer(&QApplication::activeModalWidget, std::move(answer))
{}

} // namespace ZelkoConsole
