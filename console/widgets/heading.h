#pragma once

#include <console/widgets/elidedlabel.h>

namespace ZelkoConsole {

/// The title of a part of a window.
class Heading : public ElidedLabel
{
    Q_OBJECT

public:
    explicit Heading(const QString& text = QString(), QWidget* parent = nullptr);
};

} // namespace ZelkoConsole
