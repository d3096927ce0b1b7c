#pragma once

#include <QtGlobal>

namespace ZelkoCommon {

/// The minor code of the BAD_INV_ORDER with which a recorder that ends refuses calls. An ORB that has ended raises the
/// same exception with codes of its own, in the process of the caller too; this one never does.
inline constexpr quint32 recorderEndsMinor = 0x5a4b'0001;

} // namespace ZelkoCommon
