#pragma once

#include <QString>

class QDateTime;
class QTimeZone;

namespace ZelkoConsole {

/// In which zone times are shown: "Times in Europe/Berlin (UTC+02:00)", with the offset at `when`.
QString timeZoneText(const QTimeZone& zone, const QDateTime& when);

} // namespace ZelkoConsole
