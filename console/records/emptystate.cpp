#include <console/records/emptystate.h>

#include <QCoreApplication>

namespace ZelkoConsole {
namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("ZelkoConsole::EmptyState", text);
}

} // namespace

EmptyState emptyState(const QString& subSystem, const SubSystemStatus& status, const QString& device, bool recordsFound,
                      bool loading)
{
    if (subSystem.isEmpty()) {
        return {Glyph::Empty, tr("Select a device")};
    }
    if (!status.isConnected()) {
        return {glyphOf(status), longText(subSystem, status)};
    }
    if (device.isEmpty()) {
        return {Glyph::Empty, tr("Select a device of %1").arg(subSystem)};
    }
    if (!recordsFound || loading) {
        return {Glyph::Busy, tr("Waiting for the recordings of %1…").arg(device)};
    }
    return {Glyph::Empty, tr("No recordings on this device")};
}

} // namespace ZelkoConsole
