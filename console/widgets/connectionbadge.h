#pragma once

#include <console/session/subsystemstatus.h>

#include <QWidget>

class QLabel;

namespace guiHelper {
class ElidedLabel;
}

namespace ZelkoConsole {

/// Sign and words for the connection of one sub system, for a status bar. The reason of a failure is its tool tip.
class ConnectionBadge : public QWidget
{
    Q_OBJECT

public:
    explicit ConnectionBadge(QWidget* parent = nullptr);

    /// An empty name shows nothing.
    void show(const QString& subSystem, const SubSystemStatus& status);

    /// What it says: "north: connected".
    QString text() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    void paintSign();

    QLabel* m_sign;
    guiHelper::ElidedLabel* m_text;
    bool m_empty = true;
    SubSystemStatus m_status;
};

} // namespace ZelkoConsole
