#pragma once

#include <pugixml.hpp>

namespace REPORTGENERATOR {

class RGObject;

/// Fills a new object from the children of `element`. Throws RGException on an impossible value, a field that comes
/// twice and, with `validate`, on an unknown element where the class refuses them.
void readFields(const pugi::xml_node& element, RGObject& object, bool validate);

} // namespace REPORTGENERATOR
