#include <host/activedevicecontrol.h>

#include <QtTest>

class ActiveDeviceControlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void hasNoDeviceAtFirst();
    void tellsOfEachChangeOnce();
    void aDeviceOfTheSameIDInAnotherSubSystemIsAnother();
    void noDeviceIsInNoSubSystem();
    void tellsAgainWhenTheConnectionChanges();
    void theActiveDeviceThatIsDeletedIsNotActiveAnyMore();
    void anotherDeviceThatIsDeletedLeavesTheActiveOne();

private:
    std::unique_ptr<ActiveDeviceControl> m_control;
    QStringList m_log;
};

void ActiveDeviceControlTest::init()
{
    m_log.clear();
    m_control = std::make_unique<ActiveDeviceControl>();
    connect(m_control.get(), &ActiveDeviceControl::si_activeDeviceChanged, this,
            [this](const QString& device, const QString& subSystem) {
                m_log << QStringLiteral("changed %1/%2").arg(subSystem, device);
            });
    connect(m_control.get(), &ActiveDeviceControl::si_activeDeviceDeleted, this,
            [this](const QString& device, const QString& subSystem) {
                m_log << QStringLiteral("deleted %1/%2, active %3/%4")
                             .arg(subSystem, device, m_control->activeSubSystem(), m_control->activeDevice());
            });
}

void ActiveDeviceControlTest::hasNoDeviceAtFirst()
{
    QCOMPARE(m_control->activeDevice(), QString());
    QCOMPARE(m_control->activeSubSystem(), QString());
}

void ActiveDeviceControlTest::tellsOfEachChangeOnce()
{
    m_control->setActiveDevice(QStringLiteral("A"), QStringLiteral("north"));
    m_control->setActiveDevice(QStringLiteral("A"), QStringLiteral("north"));
    m_control->setActiveDevice(QStringLiteral("B"), QStringLiteral("north"));
    QCOMPARE(m_log, (QStringList{"changed north/A", "changed north/B"}));
    QCOMPARE(m_control->activeDevice(), QStringLiteral("B"));
}

void ActiveDeviceControlTest::aDeviceOfTheSameIDInAnotherSubSystemIsAnother()
{
    m_control->setActiveDevice(QStringLiteral("A"), QStringLiteral("north"));
    m_control->setActiveDevice(QStringLiteral("A"), QStringLiteral("south"));
    m_control->deleteDevice(QStringLiteral("A"), QStringLiteral("north"));
    QCOMPARE(m_log, (QStringList{"changed north/A", "changed south/A", "deleted north/A, active south/A"}));
}

void ActiveDeviceControlTest::noDeviceIsInNoSubSystem()
{
    m_control->setActiveDevice(QString(), QStringLiteral("north"));
    QCOMPARE(m_log, QStringList());
    m_control->setActiveDevice(QStringLiteral("A"), QStringLiteral("north"));
    m_control->setActiveDevice(QString(), QStringLiteral("north"));
    QCOMPARE(m_log, (QStringList{"changed north/A", "changed /"}));
}

void ActiveDeviceControlTest::tellsAgainWhenTheConnectionChanges()
{
    m_control->setActiveDevice(QStringLiteral("A"), QStringLiteral("north"));
    m_control->refreshActiveDevice();
    QCOMPARE(m_log, (QStringList{"changed north/A", "changed north/A"}));
}

void ActiveDeviceControlTest::theActiveDeviceThatIsDeletedIsNotActiveAnyMore()
{
    m_control->setActiveDevice(QStringLiteral("A"), QStringLiteral("north"));
    m_control->deleteDevice(QStringLiteral("A"), QStringLiteral("north"));
    QCOMPARE(m_log, (QStringList{"changed north/A", "deleted north/A, active /"}));
}

void ActiveDeviceControlTest::anotherDeviceThatIsDeletedLeavesTheActiveOne()
{
    m_control->setActiveDevice(QStringLiteral("A"), QStringLiteral("north"));
    m_control->deleteDevice(QStringLiteral("B"), QStringLiteral("north"));
    QCOMPARE(m_log, (QStringList{"changed north/A", "deleted north/B, active north/A"}));
}

QTEST_APPLESS_MAIN(ActiveDeviceControlTest)
#include "tst_activedevicecontrol.moc"
