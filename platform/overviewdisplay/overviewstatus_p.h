#pragma once

#include <QWidget>

class QProgressBar;

namespace guiHelper {
class ElidedLabel;
}

namespace SPECTRUM_OVERVIEW {

class OverviewSession;

/// The line below an overview: what there is or is waited for, how much of it has come, and what is at the cursor.
class OverviewStatus : public QWidget
{
    Q_OBJECT

public:
    explicit OverviewStatus(QWidget* parent = nullptr);
    ~OverviewStatus() override;

    void showSession(const OverviewSession& session);
    void showCursor(const QString& text);

    /// What it says of the session.
    QString text() const;

private:
    void showProgress(const OverviewSession& session);

    guiHelper::ElidedLabel* m_text;
    guiHelper::ElidedLabel* m_cursor;
    QProgressBar* m_progress;
};

} // namespace SPECTRUM_OVERVIEW
