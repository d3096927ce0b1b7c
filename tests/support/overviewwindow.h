#pragma once

#include "handtimer.h"
#include "overviewpeer.h"
#include "ownconfiguration.h"
#include "patience.h"
#include "toldrecords.h"
#include "turns.h"

#include <overviewdisplay/spectrumoverviewwidget.h>
#include <overviewdisplay/waterfallview.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QTest>
#include <QToolBar>

namespace ZelkoTest {

/// A recorder, its record list, and the window of an overview that is shown. Time passes only when it is told to.
class OverviewWindow : public QObject
{
public:
    using Widget = SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
    using View = SPECTRUM_OVERVIEW::WaterfallView;

    static constexpr quint64 start = 1'700'000'000'000'000;
    static constexpr quint64 second = 1'000'000;
    static constexpr quint64 stop = start + 90 * second;
    static inline const QString device = QStringLiteral("D1");
    static inline const QString recordID = QStringLiteral("R1");
    static inline const QString address = QStringLiteral("127.0.0.1");

    /// What the window wants of the recorder.
    struct Ask
    {
        QString record;
        SPECTRUM_OVERVIEW::OverviewWish wish;
        QString address;
        uint port = 0;
        QString device;
    };

    OverviewWindow() { open(); }

    /// 90 seconds with 64 samples each, which are so few that a spectrum of 64 of them is a second.
    static std::shared_ptr<ZELKO_XML::ZELKO_RecordData> makeIndexed(const QString& id = recordID, quint64 end = stop)
    {
        const auto record = makeRecord(id, 5, 23'040);
        record->SetStopTime(end);
        record->SetIndexEntry({indexEntry(start, 0), indexEntry(end, 23'040)});
        return record;
    }
    static ZELKO_XML::IndexEntry indexEntry(quint64 time, quint64 offset, quint64 rate = 64)
    {
        ZELKO_XML::IndexEntry entry;
        entry.SetTimestamp(time);
        entry.SetRecordOffset(offset);
        entry.SetSampleRate(rate);
        return entry;
    }
    static ZELKO_XML::BookmarkEntry bookmark(quint64 time, const QString& text)
    {
        ZELKO_XML::BookmarkEntry entry;
        entry.SetTimestamp(time);
        entry.SetBookmark(text);
        return entry;
    }

    /// A new window in place of the one before.
    void open()
    {
        m_widget.reset();
        m_widget = std::make_unique<Widget>(QStringLiteral("Site"));
        m_widget->setSingleShot(timer.singleShot());
        connect(m_widget.get(), &Widget::si_overviewSpectrumStreamed, this,
                [this](const QString& record, qint64 from, qint64 to, uint lines, ulong length,
                       ZelkoDataTypes::eFFT_Window window, const QString& host, uint port, const QString& ofDevice) {
                    asks.push_back({record,
                                    {static_cast<quint64>(from), static_cast<quint64>(to), lines,
                                     static_cast<quint32>(length), window},
                                    host,
                                    port,
                                    ofDevice});
                });
        m_widget->resize(1500, 800);
    }
    void close() { m_widget.reset(); }

    /// Shows the record, and has it asked for.
    void showRecord(const std::shared_ptr<ZELKO_XML::ZELKO_RecordData>& record = makeIndexed())
    {
        records.store(record);
        widget().setRecord(device, record->GetRecordID(), &records, address);
        widget().show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget(), patience));
        ask();
    }

    /// Shows the record with all its lines.
    void showWhole(const std::shared_ptr<ZELKO_XML::ZELKO_RecordData>& record = makeIndexed())
    {
        showRecord(record);
        answer();
        QTRY_COMPARE_WITH_TIMEOUT(progress().isVisible(), false, patience);
    }

    /// Lets the time pass that the window takes to find out what is wanted.
    void ask() { timer.advance(std::chrono::milliseconds(1000)); }
    const Ask& lastAsk() const { return asks.back(); }
    void answer(const QSet<int>& lost = {}) { peer.answer(lastAsk().wish, lastAsk().port, lost); }

    Widget& widget() { return *m_widget; }
    View& view() { return *widget().findChild<View*>(); }
    QProgressBar& progress() { return *widget().findChild<QProgressBar*>(); }
    QString status() { return label("StatusLabel"); }
    QString label(const char* name) { return widget().findChild<QLabel*>(QLatin1String(name))->text(); }
    QAction& action(const char* name) { return *widget().findChild<QAction*>(QLatin1String(name)); }
    QComboBox& box(const char* name) { return *widget().findChild<QComboBox*>(QLatin1String(name)); }

    /// The actions that can be used, in the order of the bar.
    QStringList enabledActions()
    {
        QStringList names;
        for (const QAction* const one : widget().findChild<QToolBar*>(QStringLiteral("ActionBar"))->actions()) {
            if (one->isEnabled() && !one->isSeparator()) {
                names << one->objectName().mid(6);
            }
        }
        return names;
    }

    void click(const char* name)
    {
        auto* const bar = widget().findChild<QToolBar*>(QStringLiteral("ActionBar"));
        QTest::mouseClick(bar->widgetForAction(&action(name)), Qt::LeftButton);
    }

    /// Puts the cursor to the middle, as a share of the height. From elsewhere, or nothing would have moved.
    void point(double share)
    {
        QTest::mouseMove(&view(), place(share) - QPoint(20, 20));
        QTest::mouseMove(&view(), place(share));
    }

    /// Drags from one height to another.
    void select(double from, double to)
    {
        QTest::mousePress(&view(), Qt::LeftButton, {}, place(from));
        QTest::mouseMove(&view(), place((from + to) / 2));
        QTest::mouseMove(&view(), place(to));
        QTest::mouseRelease(&view(), Qt::LeftButton, {}, place(to));
    }

    OwnConfiguration configuration;
    HandTimer timer;
    ToldRecords records;
    OverviewPeer peer{ZelkoCommon::overviewCookie(device, recordID)};
    std::vector<Ask> asks;

private:
    QPoint place(double share) { return {view().width() / 2, static_cast<int>(view().height() * share)}; }

    std::unique_ptr<Widget> m_widget; // goes first
};

} // namespace ZelkoTest
