#pragma once

#include <QString>

class XMarkerTop;

/// The tool tip of a marker, as rich text: date, time, zone and name of each marker on its pixel, a line for each; from
/// some number on it only tells how many there are more. Names are plain text, whatever stands in them.
QString replayBarToolTip(const XMarkerTop& markers, int number);
