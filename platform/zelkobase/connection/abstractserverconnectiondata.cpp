#include <zelkobase/connection/abstractserverconnectiondata.h>

namespace ZelkoCommon {

AbstractServerConnectionData::AbstractServerConnectionData(QObject* parent)
    : QObject(parent)
{}

AbstractServerConnectionData::~AbstractServerConnectionData() = default;

} // namespace ZelkoCommon
