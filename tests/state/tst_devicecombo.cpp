#include <zelkoguibase/state/devicecombo.h>

#include "contrast.h"
#include "listeddevice.h"
#include "patience.h"
#include "statesite.h"
#include "tracemask.h"
#include "tracetexts.h"
#include "turns.h"
#include "updatecounter.h"

#include <zelkobase/state/devicehandler.h>

#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QStyleFactory>
#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoCommon::DeviceCombo;
using ZelkoCommon::DeviceHandler;

namespace {

const ListedDevice a1(u"north"_s, u"A1"_s);
const ListedDevice a2(u"north"_s, u"A2"_s);
const ListedDevice a3(u"north"_s, u"A3"_s);
const ListedDevice b1(u"south"_s, u"B1"_s);

/// Says of a box what it tells: "A1@north".
class ChoiceLog
{
public:
    explicit ChoiceLog(const DeviceCombo& combo)
    {
        QObject::connect(
            &combo, &DeviceCombo::signalItemChanged, &m_context,
            [this](const QString& device, const QString& subSystem) { m_texts.append(device + u'@' + subSystem); });
    }

    QStringList take() { return std::exchange(m_texts, {}); }

private:
    QStringList m_texts;
    QObject m_context;
};

/// A client of both sub systems, with the devices A1, A2 and A3 in north and B1 in south, and a box for them.
struct Setting
{
    explicit Setting(const QString& device = QString(), const QString& subSystem = QString())
        : handler(handlerOf(site))
        , combo(nullptr, &handler, device, subSystem)
        , tester(combo.model(), QAbstractItemModelTester::FailureReportingMode::QtTest)
        , log(combo)
    {}

    static std::shared_ptr<FakeConnectionData> handlerOf(const StateSite& site)
    {
        for (const ListedDevice* const device : {&a1, &a2, &a3, &b1}) {
            device->setAvailable(true);
        }
        site.data->setConnected(u"north"_s, true);
        site.data->setConnected(u"south"_s, true);
        return site.data;
    }

    QString chosen() const { return combo.GetSelectedDevice() + u'@' + combo.GetSelectedSubsystem(); }

    QStringList items() const
    {
        QStringList texts;
        for (int index = 0; index < combo.count(); ++index) {
            texts.append(combo.itemText(index));
        }
        return texts;
    }

    /// Ties the choice to the value "/Window/Device" with that content.
    Value<QString>& tie(const QString& content)
    {
        Value<QString>* const value = StateSite::putText(u"Device"_s, content);
        combo.SetDevice_ValuePath(u"/Window/Device"_s);
        return *value;
    }

    bool showActive()
    {
        combo.show();
        combo.activateWindow();
        combo.setFocus();
        return QTest::qWaitForWindowActive(&combo, patience);
    }

    const StateSite site;
    DeviceHandler handler;
    DeviceCombo combo;
    const QAbstractItemModelTester tester;
    ChoiceLog log;
};

/// A box of a class of its own, to reach and to count what is protected.
class OpenCombo final : public DeviceCombo
{
public:
    using DeviceCombo::DeviceCombo;
    using DeviceCombo::FillDeviceList;
    using DeviceCombo::GetIndex;
    using DeviceCombo::slotDeviceSelected;

    void clear() override
    {
        ++timesCleared;
        DeviceCombo::clear();
    }

    int timesCleared = 0;
    QStringList asked;

protected:
    void SetDeviceId(const QString& device) override
    {
        asked.append(device);
        DeviceCombo::SetDeviceId(device);
    }
};

/// Chooses from the list by the mouse. The box takes a release within the double click interval for that of the first
/// click, which opened the list.
void clickRow(QComboBox& combo, int row)
{
    QApplication::setDoubleClickInterval(0);
    QTest::mouseClick(&combo, Qt::LeftButton);
    QAbstractItemView* const list = combo.view();
    QTRY_VERIFY_WITH_TIMEOUT(list->isVisible(), patience);
    letTurnsPass();
    const QRect place = list->visualRect(combo.model()->index(row, 0)) & list->viewport()->rect();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, place.center());
    QTRY_VERIFY_WITH_TIMEOUT(!list->isVisible(), patience);
}

/// Between the lightest and the darkest pixel of where the text stands.
double contrastOfText(QComboBox& combo)
{
    const QSize text(combo.fontMetrics().horizontalAdvance(combo.currentText()), combo.height() - 12);
    const QImage image = combo.grab(QRect(QPoint(8, 6), text)).toImage();
    QColor lightest(Qt::black);
    QColor darkest(Qt::white);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            lightest = luminance(pixel) > luminance(lightest) ? pixel : lightest;
            darkest = luminance(pixel) < luminance(darkest) ? pixel : darkest;
        }
    }
    return contrast(lightest, darkest);
}

} // namespace

class TestDeviceCombo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsTheDevicesOfASubSystem();
    void listsAllDevices();
    void listsOnlyWhatCanBeUsed();
    void beginsWithTheFirstDevice();
    void beginsWithTheDeviceThatIsWanted();
    void isEmptyWithoutAHandler();
    void tracesWithoutAHandlerIfThatIsWanted();
    void isEmptyWithoutDevices();
    void followsTheHandler_data();
    void followsTheHandler();
    void followsTheTree();
    void choosesTheFirstWhenTheChosenOneGoes();
    void keepsTheChosenOneWhenOthersGo();
    void choosesNothingWhenTheListGoesEmpty();
    void choosesTheFirstWhenDevicesComeBack();
    void isSilentAboutTheChosenOne();
    void doesNotTellOfTheRefillItself();
    void isTiedToAValue();
    void isNotTiedWithoutAValue();
    void followsTheValue();
    void ignoresOtherChangesOfTheValue();
    void choosesTheFirstForADeviceOfAnotherSubSystem();
    void choosesTheFirstForADeviceThatIsNotThere();
    void doesNotHearOfItsOwnWrites();
    void outlivesTheValue();
    void outlivesTheHandler();
    void isDisabledByWhateverCameLast();
    void stopsWhereTextAndListDisagree();
    void looksForDevicesOfTheChosenSubSystem();
    void callsItsVirtuals();
    void isWorkedByMouse();
    void isWorkedByKeys();
    void takesNoMouseWhileRecording();
    void isAccessible();
    void tellsDevicesOfTheSameNameApart();
    void isLegible_data();
    void isLegible();
};

void TestDeviceCombo::listsTheDevicesOfASubSystem()
{
    const Setting setting(u"A2"_s, u"north"_s);
    QCOMPARE(setting.items(), (QStringList{u"A1"_s, u"A2"_s, u"A3"_s}));
    QVERIFY(!setting.combo.itemData(0).isValid());
}

void TestDeviceCombo::listsAllDevices()
{
    const Setting setting;
    QCOMPARE(setting.items(), (QStringList{u"A1"_s, u"A2"_s, u"A3"_s, u"B1"_s}));
}

void TestDeviceCombo::listsOnlyWhatCanBeUsed()
{
    const Setting setting;
    a2.setAvailable(false);
    letTurnsPass();
    QCOMPARE(setting.items(), (QStringList{u"A1"_s, u"A3"_s, u"B1"_s}));
}

void TestDeviceCombo::beginsWithTheFirstDevice()
{
    const Setting setting;
    QCOMPARE(setting.chosen(), u"A1@north"_s);
    QCOMPARE(setting.combo.currentIndex(), 0);
    QVERIFY(setting.combo.isEnabled());
}

void TestDeviceCombo::beginsWithTheDeviceThatIsWanted()
{
    const Setting setting(u"A3"_s, u"north"_s);
    QCOMPARE(setting.chosen(), u"A3@north"_s);
    QCOMPARE(setting.combo.currentText(), u"A3"_s);
}

void TestDeviceCombo::isEmptyWithoutAHandler()
{
    const TraceTexts traces;
    const DeviceCombo combo(nullptr, nullptr, u"A1"_s, u"north"_s);
    QCOMPARE(combo.count(), 0);
    QCOMPARE(combo.GetSelectedDevice(), QString());
    QCOMPARE(combo.GetSelectedSubsystem(), QString());
    QVERIFY(traces.contain(u"DeviceCombo::FillDeviceList m_pDeviceHandler is empty!!! No update will occur!"_s));
}

void TestDeviceCombo::tracesWithoutAHandlerIfThatIsWanted()
{
    const TraceMask mask(ErrorHandler::TraceWarning);
    const TraceTexts traces;
    const DeviceCombo combo(nullptr, nullptr, u"A1"_s, u"north"_s);
    QVERIFY(!traces.contain(u"DeviceCombo"_s));
}

void TestDeviceCombo::isEmptyWithoutDevices()
{
    const Setting setting(u"A1"_s, u"west"_s);
    QCOMPARE(setting.items(), QStringList());
    QCOMPARE(setting.chosen(), u"@"_s);
}

void TestDeviceCombo::followsTheHandler_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("a sub system was updated") << 0;
    QTest::newRow("other devices are allowed") << 1;
    QTest::newRow("devices were added") << 2;
    QTest::newRow("a device was removed") << 3;
}

void TestDeviceCombo::followsTheHandler()
{
    QFETCH(int, signal);
    Setting setting;
    OpenCombo combo(nullptr, &setting.handler, u"A1"_s, u"north"_s);
    combo.timesCleared = 0;
    if (signal == 0) {
        Q_EMIT setting.handler.signalDeviceHandlerSubsystemUpdated(u"north"_s);
    } else if (signal == 1) {
        Q_EMIT setting.handler.signalDeviceHandlerAllowedDeviceUpdated();
    } else if (signal == 2) {
        Q_EMIT setting.handler.signalDevicesAdded(u"north"_s, {u"A4"_s});
    } else {
        Q_EMIT setting.handler.signalDeviceRemoved(u"north"_s, u"A4"_s);
    }
    QCOMPARE(combo.timesCleared, 1);
    QCOMPARE(combo.asked, QStringList{u"A1"_s});
    QCOMPARE(combo.count(), 3);
}

void TestDeviceCombo::followsTheTree()
{
    Setting setting(u"A1"_s, u"north"_s);
    const ListedDevice a4(u"north"_s, u"A4"_s);
    a4.setAvailable(true);
    letTurnsPass();
    QCOMPARE(setting.items(), (QStringList{u"A1"_s, u"A2"_s, u"A3"_s, u"A4"_s}));
    setting.site.data->setConnected(u"north"_s, false);
    QCOMPARE(setting.items(), QStringList());
    QCOMPARE(setting.log.take(), QStringList{u"@"_s});
}

void TestDeviceCombo::choosesTheFirstWhenTheChosenOneGoes()
{
    Setting setting(u"A2"_s, u"north"_s);
    auto& value = setting.tie(u"A2"_s);
    a2.remove();
    letTurnsPass();
    QCOMPARE(setting.log.take(), QStringList{u"A1@north"_s});
    QCOMPARE(setting.chosen(), u"A1@north"_s);
    QCOMPARE(value.GetValue(), u"A1"_s);
}

void TestDeviceCombo::keepsTheChosenOneWhenOthersGo()
{
    Setting setting(u"A2"_s, u"north"_s);
    a1.remove();
    letTurnsPass();
    QCOMPARE(setting.log.take(), QStringList());
    QCOMPARE(setting.combo.currentIndex(), 0);
    QCOMPARE(setting.combo.currentText(), u"A2"_s);
    QCOMPARE(setting.chosen(), u"A2@north"_s);
}

void TestDeviceCombo::choosesNothingWhenTheListGoesEmpty()
{
    Setting setting(u"A2"_s, u"north"_s);
    auto& value = setting.tie(u"A2"_s);
    setting.site.data->setConnected(u"north"_s, false);
    QCOMPARE(setting.log.take(), QStringList{u"@"_s});
    QCOMPARE(setting.chosen(), u"@"_s);
    QCOMPARE(value.GetValue(), QString());
    QCOMPARE(setting.combo.currentIndex(), -1);
}

void TestDeviceCombo::choosesTheFirstWhenDevicesComeBack()
{
    Setting setting(u"A2"_s, u"north"_s);
    setting.site.data->setConnected(u"north"_s, false);
    setting.log.take();
    setting.site.data->setConnected(u"north"_s, true);
    QCOMPARE(setting.log.take(), QStringList{u"A1@north"_s});
}

void TestDeviceCombo::isSilentAboutTheChosenOne()
{
    UpdateCounter others; // outlives the value
    Setting setting(u"A2"_s, u"north"_s);
    auto& value = setting.tie(u"A2"_s);
    value.AddObserver(&others);
    value.HasChanged(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(others.take().size(), std::size_t(1));
    setting.combo.setCurrentIndex(1);
    QCOMPARE(others.take().size(), std::size_t(0));
    QCOMPARE(setting.log.take(), QStringList());
}

void TestDeviceCombo::doesNotTellOfTheRefillItself()
{
    Setting setting;
    OpenCombo combo(nullptr, &setting.handler, u"A2"_s, u"north"_s);
    ChoiceLog log(combo);
    QSignalSpy indexes(&combo, &QComboBox::currentIndexChanged);
    a2.remove();
    combo.FillDeviceList();
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(indexes.size(), 0);
    QVERIFY(!combo.signalsBlocked());
    QCOMPARE(combo.GetSelectedDevice(), u"A2"_s);
}

void TestDeviceCombo::isTiedToAValue()
{
    Setting setting(u"A2"_s, u"north"_s);
    Value<QString>* const value = StateSite::putText(u"Device"_s, u"A3"_s);
    QVERIFY(setting.combo.SetDevice_ValuePath(u"/Window/Device"_s));
    QCOMPARE(setting.log.take(), QStringList{u"A3@north"_s});
    setting.combo.setCurrentIndex(0);
    QCOMPARE(value->GetValue(), u"A1"_s);
    QCOMPARE(setting.log.take(), QStringList{u"A1@north"_s});
}

void TestDeviceCombo::isNotTiedWithoutAValue()
{
    Setting setting(u"A2"_s, u"north"_s);
    auto& value = setting.tie(u"A2"_s);
    QVERIFY(!setting.combo.SetDevice_ValuePath(u"/Window/Nothing"_s));
    value.SetValue(u"A3"_s, nullptr);
    QCOMPARE(setting.chosen(), u"A2@north"_s);
    QCOMPARE(setting.log.take(), QStringList());
}

void TestDeviceCombo::followsTheValue()
{
    Setting setting(u"A2"_s, u"north"_s);
    auto& value = setting.tie(u"A2"_s);
    value.SetValue(u"A3"_s, nullptr);
    QCOMPARE(setting.combo.currentText(), u"A3"_s);
    QCOMPARE(setting.log.take(), QStringList{u"A3@north"_s});
}

void TestDeviceCombo::ignoresOtherChangesOfTheValue()
{
    Setting setting;
    OpenCombo combo(nullptr, &setting.handler, u"A2"_s, u"north"_s);
    auto* const value = StateSite::putText(u"Device"_s, u"A2"_s);
    combo.SetDevice_ValuePath(u"/Window/Device"_s);
    combo.asked.clear();
    for (const auto code : {TChangeCode::StateChanged, TChangeCode::ValueRefreshed}) {
        value->HasChanged(code, nullptr);
    }
    QCOMPARE(combo.asked, QStringList());
}

void TestDeviceCombo::choosesTheFirstForADeviceOfAnotherSubSystem()
{
    Setting setting;
    auto& value = setting.tie(u"A2"_s);
    QCOMPARE(setting.log.take(), QStringList{u"A2@north"_s});
    value.SetValue(u"B1"_s, nullptr);
    QCOMPARE(setting.log.take(), QStringList{u"A1@north"_s});
    QCOMPARE(value.GetValue(), u"A1"_s);
}

void TestDeviceCombo::choosesTheFirstForADeviceThatIsNotThere()
{
    Setting setting(u"A1"_s, u"north"_s);
    auto& value = setting.tie(u"A1"_s);
    value.SetValue(u"A9"_s, nullptr);
    QCOMPARE(setting.log.take(), QStringList()); // the first one was chosen before
    QCOMPARE(value.GetValue(), u"A9"_s);
    QCOMPARE(setting.chosen(), u"A1@north"_s);
}

void TestDeviceCombo::doesNotHearOfItsOwnWrites()
{
    UpdateCounter others; // outlives the value
    Setting setting;
    OpenCombo combo(nullptr, &setting.handler, u"A1"_s, u"north"_s);
    auto* const value = StateSite::putText(u"Device"_s, u"A1"_s);
    combo.SetDevice_ValuePath(u"/Window/Device"_s);
    value->AddObserver(&others);
    combo.asked.clear();
    combo.setCurrentIndex(1);
    QCOMPARE(value->GetValue(), u"A2"_s);
    QCOMPARE(combo.asked, QStringList());
    QCOMPARE(others.take(), std::vector{TChangeCode::ValueChanged});
}

void TestDeviceCombo::outlivesTheValue()
{
    Setting setting(u"A1"_s, u"north"_s);
    setting.tie(u"A1"_s);
    Tree::Instance()->Remove(u"/Window"_s);
    setting.combo.setCurrentIndex(1);
    QCOMPARE(setting.log.take(), QStringList{u"A2@north"_s});
}

void TestDeviceCombo::outlivesTheHandler()
{
    const StateSite site;
    auto handler = std::make_unique<DeviceHandler>(Setting::handlerOf(site));
    OpenCombo combo(nullptr, handler.get(), u"A1"_s, u"north"_s);
    handler.reset();
    combo.FillDeviceList();
    QCOMPARE(combo.count(), 0);
}

void TestDeviceCombo::isDisabledByWhateverCameLast()
{
    Setting setting;
    setting.combo.SetReplayOn(true);
    QVERIFY(!setting.combo.isEnabled());
    setting.combo.SetRecordingOn(false);
    QVERIFY(setting.combo.isEnabled());
    setting.combo.SetRecordingOn(true);
    QVERIFY(!setting.combo.isEnabled());
    setting.combo.SetReplayOn(false);
    QVERIFY(setting.combo.isEnabled());
}

void TestDeviceCombo::stopsWhereTextAndListDisagree()
{
    Setting setting;
    OpenCombo combo(nullptr, &setting.handler, u"A2"_s, u"north"_s);
    ChoiceLog log(combo);
    combo.slotDeviceSelected(2);
    combo.slotDeviceSelected(3);
    combo.slotDeviceSelected(-2);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(combo.GetSelectedDevice(), u"A2"_s);
    combo.slotDeviceSelected(-1);
    QCOMPARE(log.take(), QStringList{u"@"_s});
}

void TestDeviceCombo::looksForDevicesOfTheChosenSubSystem()
{
    Setting setting;
    OpenCombo combo(nullptr, &setting.handler, QString(), QString());
    QCOMPARE(combo.GetIndex(u"A3"_s), 2);
    QCOMPARE(combo.GetIndex(u"B1"_s), -1);
    combo.setCurrentIndex(3);
    QCOMPARE(combo.GetIndex(u"B1"_s), 3);
    QCOMPARE(combo.GetIndex(u"A3"_s), -1);
    combo.clear();
    QCOMPARE(combo.GetIndex(u"B1"_s), -1);
}

void TestDeviceCombo::callsItsVirtuals()
{
    Setting setting;
    OpenCombo combo(nullptr, &setting.handler, u"A2"_s, u"north"_s);
    StateSite::putText(u"Device"_s, u"A3"_s);
    combo.SetDevice_ValuePath(u"/Window/Device"_s);
    QCOMPARE(combo.asked, QStringList{u"A3"_s});
    static_cast<DeviceCombo&>(combo).clear();
    QCOMPARE(combo.timesCleared, 1);
    QCOMPARE(combo.count(), 0);
}

void TestDeviceCombo::isWorkedByMouse()
{
    Setting setting;
    auto& value = setting.tie(u"A1"_s);
    QVERIFY(setting.showActive());
    clickRow(setting.combo, 3);
    QCOMPARE(setting.chosen(), u"B1@south"_s);
    QCOMPARE(setting.log.take(), QStringList{u"B1@south"_s});
    QCOMPARE(value.GetValue(), u"B1"_s);
}

void TestDeviceCombo::isWorkedByKeys()
{
    Setting setting(u"A1"_s, u"north"_s);
    auto& value = setting.tie(u"A1"_s);
    QVERIFY(setting.showActive());
    QTest::keyClick(&setting.combo, Qt::Key_Down);
    QCOMPARE(setting.chosen(), u"A2@north"_s);
    QTest::keyClick(&setting.combo, Qt::Key_End);
    QTest::keyClick(&setting.combo, Qt::Key_Down);
    QCOMPARE(setting.log.take(), (QStringList{u"A2@north"_s, u"A3@north"_s}));
    QCOMPARE(value.GetValue(), u"A3"_s);
}

void TestDeviceCombo::takesNoMouseWhileRecording()
{
    Setting setting(u"A1"_s, u"north"_s);
    QVERIFY(setting.showActive());
    setting.combo.SetRecordingOn(true);
    QTest::mouseClick(&setting.combo, Qt::LeftButton);
    QVERIFY(!setting.combo.view()->isVisible());
    QTest::keyClick(&setting.combo, Qt::Key_Down);
    QCOMPARE(setting.log.take(), QStringList());
}

void TestDeviceCombo::isAccessible()
{
    Setting setting(u"A2"_s, u"north"_s);
    QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(&setting.combo);
    QVERIFY(told);
    QCOMPARE(setting.combo.accessibleName(), u"Device"_s);
    QCOMPARE(told->text(QAccessible::Description), u"The device to work on"_s);
    QCOMPARE(told->text(QAccessible::Value), u"A2"_s);
    QVERIFY(setting.combo.focusPolicy() & Qt::TabFocus);
}

void TestDeviceCombo::tellsDevicesOfTheSameNameApart()
{
    const ListedDevice twin(u"south"_s, u"A1"_s);
    twin.setAvailable(true);
    const Setting setting;
    QCOMPARE(setting.items(), (QStringList{u"A1"_s, u"A2"_s, u"A3"_s, u"A1"_s, u"B1"_s}));
    QCOMPARE(setting.combo.itemData(0, Qt::ToolTipRole).toString(), u"north"_s);
    QCOMPARE(setting.combo.itemData(3, Qt::ToolTipRole).toString(), u"south"_s);
}

void TestDeviceCombo::isLegible_data()
{
    QTest::addColumn<QColor>("base");
    QTest::addColumn<QColor>("text");
    QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("dark") << QColor(35, 38, 41) << QColor(239, 240, 241);
}

void TestDeviceCombo::isLegible()
{
    QFETCH(QColor, base);
    QFETCH(QColor, text);
    Setting setting(u"A2"_s, u"north"_s);
    const std::unique_ptr<QStyle> style(QStyleFactory::create(u"Fusion"_s));
    setting.combo.setStyle(style.get());
    QPalette palette(base, base);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::WindowText, text);
    setting.combo.setPalette(palette);
    setting.combo.resize(160, 32);
    QVERIFY(contrastOfText(setting.combo) > 4.5);
    setting.combo.setStyle(nullptr);
}

QTEST_MAIN(TestDeviceCombo)
#include "tst_devicecombo.moc"
