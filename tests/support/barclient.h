#pragma once

#include "handtimer.h"
#include "shownchannel.h"
#include "shownmessages.h"
#include "shownreplaybar.h"
#include "watch.h"
#include "workplace.h"

#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/maps/bookmarkitemmap.h>
#include <zelkobase/state/channelvalues.h>
#include <zelkobase/state/localzelkovalues.h>
#include <zelkoguibase/state/zelkochannelmodel.h>

#include <QAbstractItemModelTester>

namespace ZelkoTest {

/// What an operator has in front of him who works on one record of a recorder: a replay bar beside a channel, with the
/// bookmarks of the record. Of a record of 90 seconds a second is six pixels.
class BarClient
{
public:
    /// At the recorder on that port; `isReady` follows. `isSending` is called when bookmarks are about to be sent.
    BarClient(ZelkoCommon::Orb& orb, quint16 port, bool readOnly, const std::function<void()>& isSending)
        : m_workplace(orb, port, ZelkoCommon::Role::Operator)
        , bookmarks(readOnly)
    {
        using Model = ZelkoGUI::BookmarkModel;
        using Controller = Workplace::Controller;
        bookmarks.setSingleShot(m_timer.singleShot());
        QObject::connect(&bookmarks, &Model::si_updateBookmarks, &bookmarks, isSending);
        QObject::connect(&bookmarks, &Model::si_updateBookmarks, &m_workplace.controller(),
                         &Controller::sl_setBookmarkEntries);
        fit();
    }

    bool isReady() const { return m_workplace.isReady(); }

    void show(const QString& record) { shown.widget->setRecord(record, records(), Workplace::device()); }

    /// What the list of records says.
    ZELKO_XML::ZELKO_RecordData row(const QString& record)
    {
        const auto data = records()->getRecordData(record);
        return data ? *data : ZELKO_XML::ZELKO_RecordData();
    }

    /// So that nobody waits for a model that has locked itself.
    void unlock() { m_timer.advance(ZelkoGUI::BookmarkModel::UnlockDelay); }

    static bool seesChannel(const QString& id) { return shownChannel(id).isThere() && map(id); }

    /// Has the channel, which it sees, show others the bookmarks, and sends what changes of them.
    void shareBookmarks(const QString& id)
    {
        const auto client =
            m_workplace.data()->getVtClient(Workplace::subSystem(), ZelkoCommon::ConnectionType::Client);
        client->AddValue(map(id), 0);
        bookmarks.createItemMap(map(id)->GetPathName());
    }
    static zelko::bookmarkmap::BookmarkItemMap* map(const QString& id)
    {
        return shownChannel(id).find<zelko::bookmarkmap::BookmarkItemMap>("Bookmarks");
    }

    /// Works on a channel that it sees. What the channel replays the waterfall shows at once.
    void takeChannel(const QString& id)
    {
        m_channelId->SetValue(id, nullptr);
        m_position.on(channel.channelValues()->valueCurrentReplayPosition().get());
    }

    QStringList messages() const { return m_messages.texts(); }

private:
    static ShownChannel shownChannel(const QString& id)
    {
        const QString root = ZelkoCommon::ZelkoConfiguration::MakeRootPath(Workplace::subSystem());
        return {*Tree::Instance(), root, id};
    }
    static Value<QString>* putChannelId()
    {
        return Tree::Instance()->Emplace(QStringLiteral("/Window"), std::make_unique<Value<QString>>("Channel"));
    }
    ZelkoCommon::AbstractRecordListModel* records() { return m_workplace.controller().recordListModel(); }
    std::unique_ptr<ZelkoGUI::ReplayBarWidget> makeBar()
    {
        return std::make_unique<ZelkoGUI::ReplayBarWidget>(m_local, &channel, &bookmarks);
    }

    // As wide as makes drags end on whole seconds.
    void fit()
    {
        constexpr int offsets = 20;
        constexpr int wanted = 90 * 6 + 1 + offsets;
        ZelkoGUI::ReplayBarWidget& widget = *shown.widget;
        widget.resize(widget.width() + wanted - shown.bar().width(), widget.height());
    }
    void showMoment()
    {
        m_local.valueWaterfallTimestamp()->SetValue(channel.channelValues()->valueCurrentReplayPosition()->GetValue(),
                                                    nullptr);
    }

    const ShownMessages m_messages;
    HandTimer m_timer;
    Workplace m_workplace;
    Value<QString>* const m_channelId = putChannelId();
    const ZelkoCommon::LocalZelkoValues m_local{Workplace::subSystem()};

public:
    ZelkoGUI::BookmarkModel bookmarks;
    ZelkoGUI::ZelkoChannelModel channel{m_local, m_channelId->GetPathName(), m_workplace.data()};
    ShownReplayBar shown{makeBar()};

private:
    Watch m_position{[this] { showMoment(); }};
    const QAbstractItemModelTester m_tester{&bookmarks, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

} // namespace ZelkoTest
