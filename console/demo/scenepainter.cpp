#include <console/demo/scenepainter.h>

#include <console/demo/appearance.h>

#include <QMenu>

namespace ZelkoConsole {

ScenePainter::ScenePainter(const QString& folder, const QString& variant)
    : m_folder(folder)
    , m_variant(variant)
{}

void ScenePainter::paint(QWidget& widget, const char* scene)
{
    const QString name = QStringLiteral("%1-%2.png").arg(QLatin1String(scene), m_variant);
    m_complete = savePicture(widget, m_folder.filePath(name)) && m_complete;
    m_files.append(m_folder.filePath(name));
}

void ScenePainter::paintMenu(QMenu& menu, const char* scene)
{
    menu.popup(QPoint(200, 100));
    paint(menu, scene);
    menu.close();
}

QStringList ScenePainter::files() const
{
    return m_complete ? m_files : QStringList();
}

} // namespace ZelkoConsole
