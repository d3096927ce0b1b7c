#pragma once

#include <QMetaType>

namespace ZelkoDataTypes {

/// The window function of a spectrum. The numbers are those of the recorder's service.
enum class eFFT_Window : int { Rectangular = 0, Hann = 1, Hamming = 2, Blackman = 3, FlatTop = 4 };

} // namespace ZelkoDataTypes

Q_DECLARE_METATYPE(ZelkoDataTypes::eFFT_Window)
