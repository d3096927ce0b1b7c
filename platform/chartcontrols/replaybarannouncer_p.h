#pragma once

#include <QString>

class VCReplayBar;

/// Tells programs that read the screen what has become of a replay bar: that it has another value, or another
/// description. Nobody is told anything twice.
class ReplayBarAnnouncer
{
public:
    /// `bar` outlives this object.
    explicit ReplayBarAnnouncer(VCReplayBar& bar);

    /// Looks at the current marker and tells what of it is new.
    void tell();

private:
    VCReplayBar& m_bar;
    double m_position = 0;
    QString m_name;
};
