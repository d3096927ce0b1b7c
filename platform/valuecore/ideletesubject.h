#pragma once

/// Something that can tell its observers of its own end while it still exists.
class IDeleteSubject
{
public:
    virtual ~IDeleteSubject() = default;

    /// Called once by the owner right before the end.
    virtual void AnnounceDeletion() = 0;
};
