#include "accessibilitylog.h"

#include <QAccessible>
#include <QAccessibleBridgePlugin>

#include <utility>

namespace {

QObject* loggedObject = nullptr;
QStringList lines;

QString lineOf(QAccessibleEvent& event)
{
    const QAccessibleInterface& object = *event.accessibleInterface();
    switch (event.type()) {
    case QAccessible::ValueChanged:
        return QStringLiteral("value ") + object.text(QAccessible::Value);
    case QAccessible::DescriptionChanged:
        return QStringLiteral("description ") + object.text(QAccessible::Description);
    case QAccessible::Focus:
        return QStringLiteral("focus");
    default:
        return {};
    }
}

class LoggingBridge final : public QAccessibleBridge
{
public:
    void setRootObject(QAccessibleInterface*) override {}
    void notifyAccessibilityUpdate(QAccessibleEvent* event) override
    {
        if (loggedObject == nullptr || event->object() != loggedObject) {
            return;
        }
        if (const QString line = lineOf(*event); !line.isEmpty()) {
            lines << line;
        }
    }
};

} // namespace

class LoggingBridgePlugin final : public QAccessibleBridgePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QAccessibleBridgeFactoryInterface_iid FILE "accessibilitylog.json")

public:
    // Qt asks once, owns what it gets, and forgets it at its end: known from here it is no leak.
    QAccessibleBridge* create(const QString&) override
    {
        static QAccessibleBridge* const bridge = new LoggingBridge;
        return bridge;
    }
};

Q_IMPORT_PLUGIN(LoggingBridgePlugin)

AccessibilityLog::AccessibilityLog(QObject& object)
{
    lines.clear();
    loggedObject = &object;
}

AccessibilityLog::~AccessibilityLog()
{
    loggedObject = nullptr;
}

QStringList AccessibilityLog::take()
{
    return std::exchange(lines, {});
}

#include "accessibilitylog.moc"
