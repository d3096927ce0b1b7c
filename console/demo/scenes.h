#pragma once

#include <QString>
#include <QStringList>

namespace ZelkoConsole {

/// Writes a picture of each window and widget of the record list and its surroundings into `folder`, named
/// SCENE-`variant`.png, in the application's present look. The names of the files written, empty when one could not be.
QStringList paintScenes(const QString& folder, const QString& variant);

} // namespace ZelkoConsole
