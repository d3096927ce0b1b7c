#pragma once

#include <QToolBar>

namespace SPECTRUM_OVERVIEW {

/// What the user can do with an overview, as buttons. They decide nothing: whoever owns the bar enables them and
/// connects them.
class OverviewActions : public QToolBar
{
    Q_OBJECT

public:
    explicit OverviewActions(QWidget* parent = nullptr);
    ~OverviewActions() override;

    QAction* const zoomIn;
    QAction* const zoomOut;
    QAction* const whole;
    QAction* const addBookmark;
    QAction* const removeBookmark;
    QAction* const copyRange;
    QAction* const savePicture;
    QAction* const askAgain;

private:
    QAction* add(const char* name, const QString& text, const QString& help, const QString& icon,
                 const QKeySequence& key = QKeySequence());
};

} // namespace SPECTRUM_OVERVIEW
