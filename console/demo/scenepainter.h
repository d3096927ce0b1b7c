#pragma once

#include <QDir>
#include <QString>
#include <QStringList>

class QMenu;
class QWidget;

namespace ZelkoConsole {

/// Writes the pictures of scenes into a folder, one look of the application at a time.
class ScenePainter
{
public:
    /// `variant` names the look and ends the name of each file.
    ScenePainter(const QString& folder, const QString& variant);

    /// Writes SCENE-VARIANT.png.
    void paint(QWidget& widget, const char* scene);

    /// The same of a menu, which is opened for it.
    void paintMenu(QMenu& menu, const char* scene);

    /// The files written, in that order; empty when one of them could not be.
    QStringList files() const;

private:
    const QDir m_folder;
    const QString m_variant;
    QStringList m_files;
    bool m_complete = true;
};

} // namespace ZelkoConsole
