#pragma once

#include <QLabel>

namespace ZelkoConsole {

/// The title of a part of a window.
class Heading : public QLabel
{
    Q_OBJECT

public:
    explicit Heading(const QString& text = QString(), QWidget* parent = nullptr);
};

} // namespace ZelkoConsole
