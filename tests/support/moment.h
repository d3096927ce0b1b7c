#pragma once

#include <controlwidgets/guicentral.h>

/// A value of the tree for a moment, in microseconds, for as long as a test runs.
class Moment
{
public:
    explicit Moment(long long moment)
        : m_path(GuiCentral::Instance().CreateUniqueValueFloat(static_cast<double>(moment), 0, 1.8e19, 1))
    {}
    ~Moment() { GuiCentral::Instance().RemoveValue(m_path); }
    Moment(const Moment&) = delete;
    Moment& operator=(const Moment&) = delete;

    const QString& path() const { return m_path; }

private:
    const QString m_path;
};
