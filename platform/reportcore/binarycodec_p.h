#pragma once

#include <reportcore/bytereader.h>

namespace REPORTGENERATOR {

class RGObject;

/// Version of the binary form, its first byte.
constexpr quint8 binaryVersion = 1;

/// The fields of an object: a mask of those that are set, then these in their order. A list is a count and its items.
void appendFields(const RGObject& object, std::string& out);

/// Reads them into a new object; false, with an object that is fit for the bin only, if the bytes are not of its class.
bool readFields(ByteReader& reader, RGObject& object);

} // namespace REPORTGENERATOR
