#pragma once

#include <zelkobase/service/zelkobaseservice_export.h>

#include <QString>

#include <optional>
#include <vector>

namespace ZelkoCommon {

/// A corbaloc or corbaname, taken apart as far as its hosts.
struct ZELKOBASESERVICE_EXPORT ReferenceText
{
    struct Place
    {
        QString head; ///< protocol and version, with their separators
        QString host; ///< name or address, without brackets
        QString port; ///< with its colon; empty for the ORB's own

        bool operator==(const Place&) const = default;
    };

    QString scheme; ///< with its colon
    std::vector<Place> places;
    QString rest; ///< key and name, with their separators

    /// Nothing for a text of another kind, or with a place that does not say its host, "rir:" for instance.
    static std::optional<ReferenceText> parse(const QString& text);

    /// The reference in one piece.
    QString text() const;
};

} // namespace ZelkoCommon
