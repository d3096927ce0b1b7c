#pragma once

#include <QIcon>
#include <QImage>

/// What an icon shows on a toolbar, to be compared with another one.
inline QImage picture(const QIcon& icon)
{
    return icon.pixmap(24).toImage();
}
