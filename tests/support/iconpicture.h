#pragma once

#include <QIcon>
#include <QImage>
#include <QString>

/// What an icon shows on a toolbar, to be compared with another one.
inline QImage picture(const QIcon& icon)
{
    return icon.pixmap(24).toImage();
}

/// Whether an icon is that of a resource, which must be there: icons of none are all alike.
inline bool isOf(const QIcon& icon, const QString& resource)
{
    const QImage expected = picture(QIcon(resource));
    return !expected.isNull() && picture(icon) == expected;
}
