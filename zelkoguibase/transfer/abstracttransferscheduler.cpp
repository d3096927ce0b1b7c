#include <zelkoguibase/transfer/abstracttransferscheduler.h>

namespace ZelkoGUI {

AbstractTransferScheduler::AbstractTransferScheduler(QObject* parent)
    : QObject(parent)
{}

AbstractTransferScheduler::~AbstractTransferScheduler() = default;

} // namespace ZelkoGUI
