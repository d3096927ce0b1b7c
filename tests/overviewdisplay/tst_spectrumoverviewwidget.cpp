#include "overviewwindow.h"

#include <QCheckBox>
#include <QSignalSpy>
#include <QSpinBox>
#include <QtTest>

using SPECTRUM_OVERVIEW::OverviewLoader;
using SPECTRUM_OVERVIEW::OverviewWish;
using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
using SPECTRUM_OVERVIEW::TimeRange;
using ZelkoDataTypes::eFFT_Window;
using ZelkoTest::OverviewWindow;

namespace {

constexpr quint64 start = OverviewWindow::start;
constexpr quint64 second = OverviewWindow::second;
constexpr quint64 stop = OverviewWindow::stop;
constexpr std::chrono::milliseconds silence = OverviewLoader::Silence + std::chrono::seconds(1);
constexpr std::chrono::milliseconds manySilences = 10 * silence; // more than are waited for

} // namespace

class SpectrumOverviewWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isEmptyWithoutARecord();
    void asksForTheWholeRecord();
    void asksARecorderWhoseAddressIsAName();
    void showsLinesAsTheyArrive();
    void whatIsMissingIsAskedForAgain();
    void saysThatNothingComes();
    void saysThatLinesAreMissing();
    void whatIsOfAnotherRecordIsNotShown();
    void thePictureIsInTheColoursOfItsLevels();
    void showsWhatIsAtTheCursor();
    void zoomsIntoTheSelection();
    void zoomsByTheKeyboardToo();
    void manyZoomsAreAskedForOnce();
    void aZoomIsNoShorterThanASpectrum();
    void anotherFftIsAskedFor();
    void anotherWindowFunctionIsAskedFor();
    void anotherNumberOfLinesIsAskedFor();
    void aHigherWindowHasMoreLines();
    void levelsAreFoundAutomatically();
    void levelsAreChosen();
    void oneLevelPushesTheOther();
    void aLevelThatIsTypedHalfIsTakenWhenTheWindowGoes();
    void noMnemonicStandsTwice();
    void settingsOutliveTheWindow();
    void badSettingsFallBack();
    void closingEndsTheStream();
    void anotherRecordTakesItsPlace();
    void aRecordWithoutSamplesHasNoTimes();

private:
    OverviewWindow& site() { return *m_site; }
    void chooseByKeys(const char* box, int steps)
    {
        for (int step = 0; step < std::abs(steps); ++step) {
            QTest::keyClick(&site().box(box), steps < 0 ? Qt::Key_Up : Qt::Key_Down);
        }
    }

    std::unique_ptr<OverviewWindow> m_site;
};

void SpectrumOverviewWidgetTest::init()
{
    m_site = std::make_unique<OverviewWindow>();
}

void SpectrumOverviewWidgetTest::cleanup()
{
    m_site.reset();
}

void SpectrumOverviewWidgetTest::isEmptyWithoutARecord()
{
    site().widget().show();
    site().ask();
    QCOMPARE(site().status(), "No record");
    QCOMPARE(site().widget().windowTitle(), "Spectrum Overview");
    QCOMPARE(site().enabledActions(), QStringList());
    QVERIFY(!site().progress().isVisible());
    QVERIFY(site().asks.empty());
}

void SpectrumOverviewWidgetTest::asksForTheWholeRecord()
{
    QSignalSpy resynced(&site().widget(), &SpectrumOverviewWidget::si_resyncRecord);
    site().showRecord();
    QCOMPARE(site().asks.size(), 1u);
    QCOMPARE(site().lastAsk().record, OverviewWindow::recordID);
    QCOMPARE(site().lastAsk().device, OverviewWindow::device);
    QCOMPARE(site().lastAsk().address, OverviewWindow::address);
    QVERIFY(site().lastAsk().port != 0);
    QCOMPARE(site().lastAsk().wish, (OverviewWish{start, stop, 5, 1024, eFFT_Window::Hann}));
    QCOMPARE(site().widget().windowTitle(), "Spectrum Overview: name of R1");
    QCOMPARE(site().status(), "Waiting for the recorder...");
    QVERIFY(site().progress().isVisible());
    QCOMPARE(site().progress().maximum(), 0);
    QCOMPARE(resynced.size(), 0);
}

void SpectrumOverviewWidgetTest::asksARecorderWhoseAddressIsAName()
{
    site().records.store(OverviewWindow::makeIndexed());
    site().widget().setRecord(OverviewWindow::device, OverviewWindow::recordID, &site().records, "recorder.example");
    site().ask();
    QCOMPARE(site().asks.size(), 1u);
    QCOMPARE(site().lastAsk().address, QString());
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "5 lines, each of 18 s", patience);
}

void SpectrumOverviewWidgetTest::showsLinesAsTheyArrive()
{
    site().showRecord();
    site().peer.sendLine(site().lastAsk().wish, site().lastAsk().port, 1);
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "1 of 5 lines", patience);
    QVERIFY(site().progress().isVisible());
    QCOMPARE(site().progress().maximum(), 5);
    QCOMPARE(site().progress().value(), 1);
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "5 lines, each of 18 s", patience);
    QVERIFY(!site().progress().isVisible());
    site().timer.advance(10 * silence);
    QCOMPARE(site().asks.size(), 1u);
}

void SpectrumOverviewWidgetTest::whatIsMissingIsAskedForAgain()
{
    site().showRecord();
    site().answer({2});
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "4 of 5 lines", patience);
    letTurnsPass();
    site().timer.advance(OverviewLoader::Stragglers);
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE(site().lastAsk().wish.lineCount, 2u);
    QCOMPARE(site().lastAsk().wish.start, start + 18 * second);
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "5 lines, each of 18 s", patience);
}

void SpectrumOverviewWidgetTest::saysThatNothingComes()
{
    site().showRecord();
    site().timer.advance(manySilences);
    QCOMPARE(site().status(),
             "The recorder has sent nothing: it may be busy, or refuse. \"Ask Again\" asks it once more.");
    const QImage shown = site().view().image();
    site().view().setEmptyText(site().status());
    QCOMPARE(site().view().image(), shown);
    QVERIFY(!site().progress().isVisible());
    const std::size_t asks = site().asks.size();
    site().click("ActionAskAgain");
    QCOMPARE(site().asks.size(), asks + 1);
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "5 lines, each of 18 s", patience);
}

void SpectrumOverviewWidgetTest::saysThatLinesAreMissing()
{
    site().showRecord();
    site().answer({0, 2});
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "3 of 5 lines", patience);
    site().timer.advance(manySilences);
    QCOMPARE(site().status(), "2 of 5 lines have not come. \"Ask Again\" asks for all of them once more.");
    QTest::keyClick(&site().widget(), Qt::Key_F5);
    QCOMPARE(site().lastAsk().wish.lineCount, 5u);
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "5 lines, each of 18 s", patience);
}

void SpectrumOverviewWidgetTest::whatIsOfAnotherRecordIsNotShown()
{
    site().showRecord();
    ZelkoTest::OverviewPeer other(ZelkoCommon::overviewCookie(OverviewWindow::device, "R2"));
    other.answer(site().lastAsk().wish, site().lastAsk().port);
    site().peer.sendLine(site().lastAsk().wish, site().lastAsk().port, 4);
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "1 of 5 lines", patience);
}

void SpectrumOverviewWidgetTest::thePictureIsInTheColoursOfItsLevels()
{
    site().showRecord();
    const QImage before = site().view().image();
    site().answer();
    QTRY_VERIFY_WITH_TIMEOUT(!site().progress().isVisible(), patience);
    QVERIFY(site().view().image() != before);
}

void SpectrumOverviewWidgetTest::showsWhatIsAtTheCursor()
{
    site().showWhole();
    QCOMPARE(site().label("CursorLabel"), QString());
    site().point(0.5);
    QVERIFY(site().view().cursor());
    QVERIFY(!site().view().cursorText().isEmpty());
    QCOMPARE(site().label("CursorLabel"), site().view().cursorText());
}

void SpectrumOverviewWidgetTest::zoomsIntoTheSelection()
{
    site().showWhole();
    QCOMPARE(site().enabledActions(), (QStringList{"SavePicture", "AskAgain"}));
    site().select(0.3, 0.7);
    const auto selection = site().view().selection();
    QVERIFY(selection);
    QVERIFY(site().action("ActionZoomIn").isEnabled());
    site().click("ActionZoomIn");
    QCOMPARE(site().view().timeRange(), *selection);
    QVERIFY(!site().view().selection());
    site().ask();
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE(site().lastAsk().wish.start, selection->start);
    QCOMPARE(site().lastAsk().wish.stop, selection->stop);
    site().answer();
    QTRY_VERIFY_WITH_TIMEOUT(!site().progress().isVisible(), patience);
    site().click("ActionZoomOut");
    const quint64 length = selection->stop - selection->start;
    QCOMPARE(site().view().timeRange(), (TimeRange{selection->start - length / 2, selection->stop + length / 2}));
    site().click("ActionWhole");
    QCOMPARE(site().view().timeRange(), (TimeRange{start, stop}));
    QVERIFY(!site().action("ActionWhole").isEnabled());
    QVERIFY(!site().action("ActionZoomOut").isEnabled());
}

void SpectrumOverviewWidgetTest::zoomsByTheKeyboardToo()
{
    site().showWhole();
    site().view().setFocus();
    QTest::keyClick(&site().view(), Qt::Key_Plus);
    const TimeRange zoomed = site().view().timeRange();
    QVERIFY(zoomed.stop - zoomed.start < stop - start);
    site().ask();
    QCOMPARE(site().lastAsk().wish.start, zoomed.start);
    QTest::keyClick(&site().view(), Qt::Key_Home);
    QCOMPARE(site().view().timeRange(), (TimeRange{start, stop}));
}

void SpectrumOverviewWidgetTest::manyZoomsAreAskedForOnce()
{
    site().showWhole();
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(&site().view(), Qt::Key_Plus);
    }
    QCOMPARE(site().asks.size(), 1u);
    site().ask();
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE(site().lastAsk().wish.start, site().view().timeRange().start);
}

// 1024 samples are 16 s.
void SpectrumOverviewWidgetTest::aZoomIsNoShorterThanASpectrum()
{
    site().showWhole();
    for (int i = 0; i < 20; ++i) {
        QTest::keyClick(&site().view(), Qt::Key_Plus);
    }
    site().ask();
    const OverviewWish wish = site().lastAsk().wish;
    QCOMPARE(wish.lineCount, 1u);
    QCOMPARE(wish.stop - wish.start, 16 * second + 1);
    QCOMPARE(site().view().timeRange(), (TimeRange{wish.start, wish.stop}));
}

void SpectrumOverviewWidgetTest::anotherFftIsAskedFor()
{
    site().showWhole();
    chooseByKeys("FftLengthBox", -4);
    site().ask();
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE(site().lastAsk().wish, (OverviewWish{start, stop, 90, 64, eFFT_Window::Hann}));
    site().answer();
    QTRY_COMPARE_WITH_TIMEOUT(site().status(), "90 lines, each of 1 s", patience);
    chooseByKeys("FftLengthBox", 7);
    site().ask();
    QCOMPARE(site().asks.size(), 2u);
    QCOMPARE(site().status(), "The record is shorter than one FFT of this length.");
    QVERIFY(!site().action("ActionSavePicture").isEnabled());
    chooseByKeys("FftLengthBox", -1);
    site().ask();
    QCOMPARE(site().lastAsk().wish, (OverviewWish{start, stop, 1, 4096, eFFT_Window::Hann}));
    QCOMPARE(site().status(), "Waiting for the recorder...");
}

void SpectrumOverviewWidgetTest::anotherWindowFunctionIsAskedFor()
{
    site().showWhole();
    chooseByKeys("WindowBox", 3);
    site().ask();
    QCOMPARE(site().lastAsk().wish, (OverviewWish{start, stop, 5, 1024, eFFT_Window::FlatTop}));
}

void SpectrumOverviewWidgetTest::anotherNumberOfLinesIsAskedFor()
{
    const auto longRecord = OverviewWindow::makeIndexed(OverviewWindow::recordID, start + 3600 * second);
    site().showRecord(longRecord);
    chooseByKeys("FftLengthBox", -4);
    site().ask();
    QVERIFY(site().lastAsk().wish.lineCount > 300);
    chooseByKeys("LineCountBox", 1);
    site().ask();
    QCOMPARE(site().lastAsk().wish.lineCount, 256u);
    chooseByKeys("LineCountBox", 4);
    site().ask();
    QCOMPARE(site().lastAsk().wish.lineCount, 3600u);
}

void SpectrumOverviewWidgetTest::aHigherWindowHasMoreLines()
{
    const auto longRecord = OverviewWindow::makeIndexed(OverviewWindow::recordID, start + 3600 * second);
    site().widget().resize(1500, 400);
    site().showRecord(longRecord);
    chooseByKeys("FftLengthBox", -4);
    site().ask();
    const quint32 lines = site().lastAsk().wish.lineCount;
    QCOMPARE(lines, quint32(site().view().height()));
    const std::size_t asks = site().asks.size();
    site().widget().resize(1500, 410);
    site().ask();
    QCOMPARE(site().asks.size(), asks);
    site().widget().resize(1500, 900);
    site().ask();
    QCOMPARE(site().asks.size(), asks + 1);
    QCOMPARE(site().lastAsk().wish.lineCount, quint32(site().view().height()));
    QVERIFY(site().lastAsk().wish.lineCount > 2 * lines);
}

void SpectrumOverviewWidgetTest::levelsAreFoundAutomatically()
{
    auto* const lowest = site().widget().findChild<QSpinBox*>("LowestLevelBox");
    auto* const highest = site().widget().findChild<QSpinBox*>("HighestLevelBox");
    QCOMPARE(lowest->value(), -120);
    QCOMPARE(highest->value(), 0);
    QVERIFY(!lowest->isEnabled());
    site().showWhole(); // its levels are from -5 to 0 dB
    QCOMPARE(highest->value(), 5);
    QCOMPARE(lowest->value(), -25);
}

void SpectrumOverviewWidgetTest::levelsAreChosen()
{
    auto* const automatic = site().widget().findChild<QCheckBox*>("AutomaticLevelsBox");
    auto* const lowest = site().widget().findChild<QSpinBox*>("LowestLevelBox");
    site().showWhole();
    const QImage before = site().view().image();
    QTest::mouseClick(automatic, Qt::LeftButton, {}, QPoint(8, automatic->height() / 2));
    QVERIFY(!automatic->isChecked());
    QVERIFY(lowest->isEnabled());
    lowest->selectAll();
    QTest::keyClicks(lowest, "-90");
    QTest::keyClick(lowest, Qt::Key_Return);
    QCOMPARE(lowest->value(), -90);
    QVERIFY(site().view().image() != before);
    site().click("ActionAskAgain");
    site().answer();
    QTRY_VERIFY_WITH_TIMEOUT(!site().progress().isVisible(), patience);
    QCOMPARE(lowest->value(), -90);
}

void SpectrumOverviewWidgetTest::oneLevelPushesTheOther()
{
    auto* const automatic = site().widget().findChild<QCheckBox*>("AutomaticLevelsBox");
    auto* const lowest = site().widget().findChild<QSpinBox*>("LowestLevelBox");
    auto* const highest = site().widget().findChild<QSpinBox*>("HighestLevelBox");
    site().widget().show();
    QTest::keyClick(automatic, Qt::Key_Space);
    const auto type = [](QSpinBox* box, const char* text) {
        box->selectAll();
        QTest::keyClicks(box, QLatin1String(text));
        QTest::keyClick(box, Qt::Key_Return);
    };
    type(lowest, "20");
    QCOMPARE(highest->value(), 21);
    type(highest, "-150");
    QCOMPARE(lowest->value(), -151);
    type(highest, "-200");
    QCOMPARE(highest->value(), -199);
    QCOMPARE(lowest->value(), -200);
    type(lowest, "100");
    QCOMPARE(lowest->value(), 99);
    QCOMPARE(highest->value(), 100);
}

// A box takes what was typed when it is hidden, which the end of the window does too.
void SpectrumOverviewWidgetTest::aLevelThatIsTypedHalfIsTakenWhenTheWindowGoes()
{
    site().showRecord();
    QTest::keyClick(site().widget().findChild<QCheckBox*>("AutomaticLevelsBox"), Qt::Key_Space);
    auto* const lowest = site().widget().findChild<QSpinBox*>("LowestLevelBox");
    lowest->selectAll();
    QTest::keyClicks(lowest, "-8");
    QCOMPARE(lowest->value(), -120);
    site().close();
    site().configuration.readAgain();
    site().open();
    QCOMPARE(site().widget().findChild<QSpinBox*>("LowestLevelBox")->value(), -8);
}

void SpectrumOverviewWidgetTest::noMnemonicStandsTwice()
{
    QStringList keys;
    for (const QLabel* const label : site().widget().findChildren<QLabel*>()) {
        keys << (label->buddy() ? QKeySequence::mnemonic(label->text()).toString() : QString());
    }
    for (const QCheckBox* const box : site().widget().findChildren<QCheckBox*>()) {
        keys << QKeySequence::mnemonic(box->text()).toString();
    }
    keys.removeAll(QString());
    QCOMPARE(keys.size(), 6);
    QCOMPARE(QSet<QString>(keys.begin(), keys.end()).size(), keys.size());
}

void SpectrumOverviewWidgetTest::settingsOutliveTheWindow()
{
    site().showRecord();
    chooseByKeys("FftLengthBox", 1);
    chooseByKeys("WindowBox", 1);
    chooseByKeys("LineCountBox", 2);
    auto* const automatic = site().widget().findChild<QCheckBox*>("AutomaticLevelsBox");
    QTest::keyClick(automatic, Qt::Key_Space);
    site().widget().findChild<QSpinBox*>("HighestLevelBox")->setValue(-10);
    site().widget().resize(1234, 567);
    site().close();
    site().configuration.readAgain();
    site().open();
    QCOMPARE(site().box("FftLengthBox").currentText(), "2048");
    QCOMPARE(site().box("WindowBox").currentText(), "Hamming");
    QCOMPARE(site().box("LineCountBox").currentText(), "512");
    QVERIFY(!site().widget().findChild<QCheckBox*>("AutomaticLevelsBox")->isChecked());
    QCOMPARE(site().widget().findChild<QSpinBox*>("HighestLevelBox")->value(), -10);
    const SpectrumOverviewWidget again("Site");
    QCOMPARE(again.size(), QSize(1234, 567));
    const SpectrumOverviewWidget elsewhere("Other Site");
    QCOMPARE(elsewhere.findChild<QComboBox*>("FftLengthBox")->currentText(), "1024");
}

void SpectrumOverviewWidgetTest::badSettingsFallBack()
{
    site().close();
    const auto group = CfgCenter::GetAppCfg(ICfg::UserView)
                           ->OpenGroup("Site", ICfg::Access::Write)
                           ->OpenGroup("SpectrumOverview", ICfg::Access::Write);
    group->SetInteger("FftLength", 1000);
    group->SetInteger("Window", 9);
    group->SetString("Lines", "many");
    group->SetString("AutomaticLevels", "perhaps");
    group->SetInteger("LowestLevel", 10);
    group->SetInteger("HighestLevel", -10);
    group->SetString("Geometry", "????");
    site().open();
    site().showRecord();
    QCOMPARE(site().lastAsk().wish, (OverviewWish{start, stop, 5, 1024, eFFT_Window::Hann}));
    QCOMPARE(site().box("LineCountBox").currentText(), "Automatic");
    QCOMPARE(site().widget().findChild<QSpinBox*>("LowestLevelBox")->value(), -120);
    QCOMPARE(site().widget().findChild<QSpinBox*>("HighestLevelBox")->value(), 0);
    QVERIFY(site().widget().findChild<QCheckBox*>("AutomaticLevelsBox")->isChecked());
}

void SpectrumOverviewWidgetTest::closingEndsTheStream()
{
    site().showRecord();
    const auto port = static_cast<quint16>(site().lastAsk().port);
    QUdpSocket same;
    QVERIFY(!same.bind(QHostAddress::LocalHost, port, QUdpSocket::DontShareAddress));
    site().close();
    QVERIFY(same.bind(QHostAddress::LocalHost, port, QUdpSocket::DontShareAddress));
}

void SpectrumOverviewWidgetTest::anotherRecordTakesItsPlace()
{
    site().showWhole();
    site().select(0.3, 0.7);
    site().point(0.5);
    QVERIFY(site().action("ActionAddBookmark").isEnabled());
    site().records.store(OverviewWindow::makeIndexed("R2", stop + 60 * second));
    site().widget().setRecord(OverviewWindow::device, "R2", &site().records, OverviewWindow::address);
    QCOMPARE(site().widget().windowTitle(), "Spectrum Overview: name of R2");
    QVERIFY(!site().view().selection());
    QVERIFY(!site().view().cursor());
    QCOMPARE(site().label("CursorLabel"), QString());
    QVERIFY(!site().action("ActionAddBookmark").isEnabled());
    QVERIFY(!site().action("ActionSavePicture").isEnabled());
    site().ask();
    QCOMPARE(site().lastAsk().record, "R2");
    QCOMPARE(site().lastAsk().wish.stop, stop + 60 * second);
    site().widget().setRecord(QString(), QString(), nullptr, QString());
    QCOMPARE(site().status(), "No record");
    QCOMPARE(site().enabledActions(), QStringList());
    QCOMPARE(site().view().timeRange(), TimeRange());
}

void SpectrumOverviewWidgetTest::aRecordWithoutSamplesHasNoTimes()
{
    site().showWhole();
    site().records.store(makeRecord("R2", 5, 0));
    site().widget().setRecord(OverviewWindow::device, "R2", &site().records, OverviewWindow::address);
    QCOMPARE(site().view().timeRange(), TimeRange());
    QVERIFY(!site().view().cursor());
    site().widget().setRecord(OverviewWindow::device, OverviewWindow::recordID, &site().records,
                              OverviewWindow::address);
    QCOMPARE(site().view().timeRange(), (TimeRange{start, stop}));
}

QTEST_MAIN(SpectrumOverviewWidgetTest)

#include "tst_spectrumoverviewwidget.moc"
