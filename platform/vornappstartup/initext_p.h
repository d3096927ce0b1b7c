#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

/// Texts by key; a key in a group is "GROUP/KEY", in a group of a group "GROUP/GROUP/KEY".
using IniValues = QMap<QString, QString>;

/// The text of an INI file in UTF-8. Any value and any key that is not empty can be read back.
QByteArray iniText(const IniValues& values);

/// What an INI file holds: lines "KEY=VALUE" below "[GROUP]", or below "[General]" or nothing for keys without a group,
/// and remarks behind ";" or "#". None if there is a line that is nothing of that, or if it is no text in UTF-8.
std::optional<IniValues> parseIni(const QByteArray& bytes);
