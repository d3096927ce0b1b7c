#include <resources/zelkoicons.h>

#include <QDir>

void registerZelkoIcons()
{
    Q_INIT_RESOURCE(zelkoicons);
}
