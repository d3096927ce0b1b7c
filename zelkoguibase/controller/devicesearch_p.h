#pragma once

#include <QString>
#include <QTimer>

namespace ZelkoGUI {

/// The looks for a device on the tree, one every 100 ms until it is ended: whoever looks follows the timer.
class DeviceSearch
{
public:
    /// `owner` becomes the parent of the timer.
    explicit DeviceSearch(QObject* owner);

    const QTimer& timer() const { return m_timer; }

    /// Begins, or begins anew. `again`: what is looked for was there before, under the same path.
    void begin(bool again);
    void end() { m_timer.stop(); }
    bool isOn() const { return m_timer.isActive(); }

    /// A look has not found everything below `path`. Traced as a warning each time for a new device, and the first time
    /// only for one that was there before.
    void stillMisses(const QString& path);

private:
    QTimer m_timer;
    bool m_isAgain = false;
    bool m_tellsMissing = false; // at the next look
};

} // namespace ZelkoGUI
