#pragma once

#include <QIcon>

class QToolButton;

namespace ZelkoConsole {

/// A button with nothing but an icon, flat, that the keyboard reaches too. Whoever takes it into a layout owns it.
QToolButton* makeToolButton(const char* objectName, const QIcon& icon);

/// Says what it does to who points at it and to who cannot see it.
void nameToolButton(QToolButton* button, const QString& text);

} // namespace ZelkoConsole
