#include <reportcore/irgobject.h>

namespace REPORTGENERATOR {

IRGObject::~IRGObject() = default;

} // namespace REPORTGENERATOR
