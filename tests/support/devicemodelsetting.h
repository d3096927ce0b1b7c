#pragma once

#include "listeddevice.h"
#include "statesite.h"

#include <zelkoguibase/state/zelkodevicemodel.h>

#include <utility>

/// The signals of a device model, in order: "refreshed", "refreshed A1,A2", "current A1".
class DeviceSignalLog
{
public:
    explicit DeviceSignalLog(const ZelkoGUI::ZelkoDeviceModel& model)
    {
        const auto add = [this](const QString& text) { m_texts.append(text); };
        QObject::connect(&model, qOverload<>(&ZelkoGUI::ZelkoDeviceModel::devicesRefreshed), &m_context,
                         [=] { add(QStringLiteral("refreshed")); });
        QObject::connect(&model, qOverload<const QStringList&>(&ZelkoGUI::ZelkoDeviceModel::devicesRefreshed),
                         &m_context,
                         [=](const QStringList& devices) { add(QStringLiteral("refreshed ") + devices.join(u',')); });
        QObject::connect(&model, &ZelkoGUI::ZelkoDeviceModel::si_currentDeviceChanged, &m_context,
                         [=](const QString& device) { add(QStringLiteral("current ") + device); });
    }

    QStringList take() { return std::exchange(m_texts, {}); }

private:
    QStringList m_texts;
    QObject m_context;
};

/// Devices of the sub system "north".
/// @{
inline const ListedDevice a1(QStringLiteral("north"), QStringLiteral("A1"));
inline const ListedDevice a2(QStringLiteral("north"), QStringLiteral("A2"));
inline const ListedDevice a3(QStringLiteral("north"), QStringLiteral("A3"));
/// @}

/// What a refresh tells: the devices, separated by commas.
inline QStringList refreshed(const char* devices)
{
    return {QStringLiteral("refreshed"), QStringLiteral("refreshed ") + QLatin1String(devices)};
}

/// A model of the first kind with its signals.
struct Followed
{
    explicit Followed(const StateSite& site)
        : model(site.data)
        , log(model)
    {}

    ZelkoGUI::ZelkoDeviceModel model;
    DeviceSignalLog log;
};
