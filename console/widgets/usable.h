#pragma once

#include <QList>
#include <QString>

class QWidget;

namespace ZelkoConsole {

/// Something that a user may want to do with a widget.
struct Usability
{
    QWidget* widget = nullptr;
    QString tip;    ///< what it does
    QString whyNot; ///< why it cannot be done; empty where it can
};

/// Enables the widget or not, and has its status tip say what it does or why it cannot.
void setUsable(const Usability& usability);

/// The same for buttons that take turns: where the one with the focus goes, the focus goes to the first that is there.
void setUsable(const QList<Usability>& turns);

} // namespace ZelkoConsole
