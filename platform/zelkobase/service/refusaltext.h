#pragma once

#include <zelkobase/service/servicestatus.h>

#include <QString>
#include <QStringView>

namespace ZelkoCommon {

/// Why a recorder refuses, where an exception has no code for it but one that says "failed": its text begins with the
/// number of a status then, "[21] There is something...". To whoever does not know that it is still a text.
struct RefusalText
{
    ServiceStatus status = ServiceStatus::InternalError;
    QString words;

    bool operator==(const RefusalText&) const = default;
};

/// The text that says so. Words that are empty are those of the status.
ZELKOBASESERVICE_EXPORT QString toText(const RefusalText& refusal);

/// Reads such a text. One without a number, or with one that recorders do not send, is words of an `InternalError`.
/// The words are made presentable, and left out where they are no more than those of the status.
ZELKOBASESERVICE_EXPORT RefusalText refusalOf(QStringView text);

} // namespace ZelkoCommon
