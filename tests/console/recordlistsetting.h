#pragma once

#include "ownconfiguration.h"

#include <console/demo/samplesite.h>
#include <console/treepaths.h>

#include <QAbstractItemModel>
#include <QStringList>

/// One sub system with one device and some finished records: "r00", "r01" and so on, the later the newer. There may be
/// more sub systems, not connected and without devices.
struct RecordListSetting
{
    explicit RecordListSetting(int count = 0, const QStringList& moreSubSystems = {})
        : site(QStringList(QStringLiteral("north")) + moreSubSystems)
    {
        fill(count);
        site.connectTo(north);
    }

    static ZelkoConsole::SampleSite::RecordPtr record(int number, int status = 5)
    {
        constexpr quint64 second = 1'000'000;
        return ZelkoConsole::sampleRecord(id(number), QStringLiteral("name %1").arg(number),
                                          static_cast<ZelkoConsole::SampleSite::Record::RecordStatus>(status),
                                          (1'700'000'000 + static_cast<quint64>(number)) * second,
                                          static_cast<quint64>(number + 1) * second, 100'000'000);
    }

    static QString id(int number) { return QStringLiteral("r%1").arg(number, 2, 10, QLatin1Char('0')); }

    /// The device with its records, as after a start of the recorder.
    void fill(int count)
    {
        site.addDevice(north, device);
        site.setLoad(north, device, count, true);
        for (int number = 0; number < count; ++number) {
            site.setRecord(north, device, record(number));
        }
    }

    /// The recorder dies.
    void lose() { site.lose(north, QStringLiteral("it was killed")); }

    /// The recorder is back, with so many of its records.
    void comeBack(int count)
    {
        fill(count);
        site.connectTo(north);
    }

    /// The recorder is back and has loaded a part of its records so far.
    void comeBackInPart(int count, int outOf)
    {
        comeBack(count);
        site.setLoad(north, device, outOf, false);
    }

    /// A recorder that gave up a backlog sends its records afresh.
    void beginAfresh() { site.clearRecords(north, device); }

    const QString north = QStringLiteral("north");
    const QString device = QStringLiteral("A1");
    ZelkoConsole::SampleSite site;

private:
    const OwnConfiguration m_configuration; // of what the list keeps of its columns
};
