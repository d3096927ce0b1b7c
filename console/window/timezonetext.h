#pragma once

#include <QString>

class QDateTime;
class QTimeZone;

namespace ZelkoConsole {

/// In which zone times are shown, with its offset at `when`, which other times need not have: "Times in Europe/Berlin
/// (now UTC+02:00)".
QString timeZoneText(const QTimeZone& zone, const QDateTime& when);

} // namespace ZelkoConsole
