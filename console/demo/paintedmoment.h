#pragma once

#include <controlwidgets/guicentral.h>

namespace ZelkoConsole {

/// A moment on the tree for as long as a picture is painted.
class PaintedMoment
{
public:
    /// In microseconds since the epoch.
    explicit PaintedMoment(long long moment)
        : m_path(GuiCentral::Instance().CreateUniqueValueFloat(static_cast<double>(moment), 0, 1.8e19, 1))
    {}
    ~PaintedMoment() { GuiCentral::Instance().RemoveValue(m_path); }
    PaintedMoment(const PaintedMoment&) = delete;
    PaintedMoment& operator=(const PaintedMoment&) = delete;

    const QString& path() const { return m_path; }

private:
    const QString m_path;
};

} // namespace ZelkoConsole
