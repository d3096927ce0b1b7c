#include <console/demo/appearance.h>

#include <QApplication>
#include <QPixmap>
#include <QWidget>

namespace ZelkoConsole {

QPalette darkPalette()
{
    QPalette palette(QColor(45, 48, 52));
    const QColor text(230, 233, 237);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Base, QColor(27, 30, 33));
    palette.setColor(QPalette::AlternateBase, QColor(35, 38, 42));
    palette.setColor(QPalette::ToolTipBase, QColor(27, 30, 33));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(150, 156, 163));
    palette.setColor(QPalette::Highlight, QColor(38, 105, 170));
    palette.setColor(QPalette::HighlightedText, QColor(255, 255, 255));
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(120, 125, 131));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, QColor(120, 125, 131));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(120, 125, 131));
    return palette;
}

bool savePicture(QWidget& widget, const QString& fileName)
{
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    return widget.grab().save(fileName, "PNG");
}

} // namespace ZelkoConsole
