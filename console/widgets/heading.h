#pragma once

#include <widgetbase/elidedlabel.h>

namespace ZelkoConsole {

/// The title of a part of a window.
class Heading : public guiHelper::ElidedLabel
{
    Q_OBJECT

public:
    explicit Heading(const QString& text = QString(), QWidget* parent = nullptr);
};

} // namespace ZelkoConsole
