#pragma once

#include <widgetbase/elidedlabel.h>

namespace ZelkoConsole {

/// The title of a part of a window: as high as a box that may stand beside it, so that parts side by side are level
/// with and without one.
class Heading : public guiHelper::ElidedLabel
{
    Q_OBJECT

public:
    explicit Heading(const QString& text = QString(), QWidget* parent = nullptr);
};

} // namespace ZelkoConsole
