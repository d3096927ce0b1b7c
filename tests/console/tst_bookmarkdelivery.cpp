#include "recordpanesetting.h"
#include "testbookmarks.h"

#include <console/replay/bookmarkdelivery.h>

#include <QGuiApplication>
#include <QSignalSpy>

#include <functional>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using Entries = ZelkoGUI::BookmarkModel::Entries;
using Outcome = BookmarkDelivery::Outcome;
using ZelkoGUI::BookmarkModel;

namespace {

constexpr std::chrono::milliseconds aMoment(20);
constexpr std::chrono::hours asLongAsItTakes(1);

/// A record with two bookmarks that were changed and not sent, and are not in order.
struct Setting : RecordPaneSetting
{
    Setting()
        : RecordPaneSetting(1)
    {
        model->setRecord(id(0), pane.controller()->recordListModel(), false, device);
        model->setEntries(changed);
    }

    /// Once, when the bookmarks have gone out and the answer is waited for.
    void whileItWaits(std::function<void()> happens)
    {
        QObject::connect(
            model.get(), &BookmarkModel::si_updateBookmarks, &m_context, [happens] { happens(); },
            Qt::QueuedConnection);
    }
    void store(const Entries& bookmarks)
    {
        const auto stored = record(0);
        stored->SetBookmarkEntry(bookmarks);
        site.setRecord(north, device, stored);
    }
    Outcome send(std::chrono::milliseconds limit)
    {
        return BookmarkDelivery(model.get(), pane.controller()).send(limit);
    }
    bool isUnsent() const
    {
        return model->getSynchState() == BookmarkModel::SynchLocalChange && model->entries() == changed;
    }

    const Entries inOrder{bookmarkAt(0, u"first"_s), bookmarkAt(1, u"last"_s)};
    const Entries changed{inOrder.at(1), inOrder.at(0)};
    std::unique_ptr<BookmarkModel> model = std::make_unique<BookmarkModel>(false);

private:
    QObject m_context;
};

} // namespace

class TestBookmarkDelivery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waitsUntilTheRecordHasThem();
    void neverWaitsForWhatIsThere();
    void waitsForWhatWasSentAndNothingElse();
    void leavesThemAsTheyWereWhenTheyAreNotTaken();
    void endsWithTheConnection();
    void sendsNothingWithoutAConnection();
    void outlivesItsModel();
    void showsThatItWaits();
};

void TestBookmarkDelivery::waitsUntilTheRecordHasThem()
{
    Setting setting;
    setting.whileItWaits([&] { setting.store(setting.inOrder); });
    QCOMPARE(setting.send(asLongAsItTakes), Outcome::Taken);
    QCOMPARE(setting.model->entries(), setting.inOrder);
}

void TestBookmarkDelivery::neverWaitsForWhatIsThere()
{
    Setting setting;
    setting.store(setting.inOrder); // somebody else had the same idea
    QVERIFY(setting.isUnsent());
    QCOMPARE(setting.send(asLongAsItTakes), Outcome::Taken);
}

void TestBookmarkDelivery::waitsForWhatWasSentAndNothingElse()
{
    Setting setting;
    setting.whileItWaits([&] { setting.store({bookmarkAt(0, u"theirs"_s)}); });
    QCOMPARE(setting.send(aMoment), Outcome::NotTaken);
    QVERIFY(setting.isUnsent());
}

void TestBookmarkDelivery::leavesThemAsTheyWereWhenTheyAreNotTaken()
{
    Setting setting;
    QCOMPARE(setting.send(aMoment), Outcome::NotTaken);
    QVERIFY(setting.isUnsent());
}

void TestBookmarkDelivery::endsWithTheConnection()
{
    Setting setting;
    setting.whileItWaits([&] { setting.lose(); });
    QCOMPARE(setting.send(asLongAsItTakes), Outcome::NoConnection);
}

void TestBookmarkDelivery::sendsNothingWithoutAConnection()
{
    Setting setting;
    const QSignalSpy sent(setting.model.get(), &BookmarkModel::si_updateBookmarks);
    setting.lose();
    QCOMPARE(setting.send(asLongAsItTakes), Outcome::NoConnection);
    QCOMPARE(sent.size(), 0);
}

void TestBookmarkDelivery::outlivesItsModel()
{
    Setting setting;
    setting.whileItWaits([&] { setting.model.reset(); });
    QCOMPARE(setting.send(aMoment), Outcome::NotTaken);
}

void TestBookmarkDelivery::showsThatItWaits()
{
    Setting setting;
    bool isShown = false;
    setting.whileItWaits([&] {
        const QCursor* const cursor = QGuiApplication::overrideCursor();
        isShown = cursor && cursor->shape() == Qt::BusyCursor;
        setting.store(setting.inOrder);
    });
    QCOMPARE(setting.send(asLongAsItTakes), Outcome::Taken);
    QVERIFY(isShown);
    QVERIFY(!QGuiApplication::overrideCursor());
}

QTEST_MAIN(TestBookmarkDelivery)
#include "tst_bookmarkdelivery.moc"
