#include <actiontest.h>
#include <recorderclient.h>
#include <samplebytes.h>

#include <zelkobase/service/servicestatus.h>
#include <zelkobase/service/toolbarhelper.h>

#include <QApplication>
#include <QSignalSpy>

using namespace ZelkoTest;
using ZELKO_XML::BookmarkEntry;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::Role;
using ZelkoCommon::ServiceStatus;
using ZelkoGUI::IZelkoGUIController;
using Status = ZELKO_RecordData::RecordStatus;

namespace {

const QString first = QStringLiteral("R1");
const QString second = QStringLiteral("R2");
const QString isProtected = QStringLiteral("P1");
const QString damaged = QStringLiteral("X1");
const QStringList all{isProtected, first, second, damaged};
const QString newName = QStringLiteral("a new name");
constexpr qsizetype size = 4000;

QVector<BookmarkEntry> bookmarks()
{
    BookmarkEntry entry;
    entry.SetTimestamp(10'500'000);
    entry.SetBookmark(QStringLiteral("here it begins"));
    return {entry};
}

QString commentOf(const ZELKO_RecordData& record)
{
    const auto entries = record.GetHistoryEntry();
    return entries.isEmpty() ? QString() : entries.constLast().GetHistoryEntry();
}

QString refusalText()
{
    return ZelkoCommon::ToolbarHelper::Instance()->ErrorId2Text(ZelkoCommon::statusCode(ServiceStatus::NotAllowed), 1);
}

} // namespace

/// How a request that the recorder does not grant becomes known.
enum class Told {
    ByTheLink,  ///< as the refusal of a write to the tree
    InABox,     ///< as a message to the user
    ToTheCaller ///< as the last error of the handler
};

Q_DECLARE_METATYPE(Told)
Q_DECLARE_METATYPE(std::function<void(ActionSite&)>)

// What the actions and the slots of a controller do to the records of a real recorder: to its disk, and so to the rows
// of the list.
class TestRecorderActions : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup();
    void deletesWhatMayBeDeleted();
    void keepsWhatIsNotConfirmed();
    void putsARecordToRest();
    void renames();
    void turnsTheDeletableFlag();
    void synchronisesTheList();
    void synchronisesARecord();
    void readsARecordAnewForItsWindows_data();
    void readsARecordAnewForItsWindows();
    void copiesARange();
    void addsAndRemovesAComment();
    void storesBookmarks();
    void refusesAViewer_data();
    void refusesAViewer();

private:
    using Act = std::function<void(ActionSite&)>;

    void connectAs(Role role)
    {
        ActionTest::connectAs(role);
        QCOMPARE(m_site->rows(), all);
    }
    void changeBehindItsBack(const QString& id)
    {
        ZELKO_RecordData record = m_site->stored(id);
        record.SetRecordName(newName);
        QVERIFY(record.SaveXml(m_site->recordFolder(id) + QLatin1Char('/') + ZELKO_XML::metaDataFileName));
    }
    // Has a change of the protected record shown. All that the recorder took up before is done then.
    void waitForAnOperator()
    {
        RecorderClient client(*m_orb, m_site->recorder().port(), Role::Operator);
        QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
        client.write(client.values().command<Value<QString>>("SyncOneRecord"), isProtected);
        QTRY_COMPARE_WITH_TIMEOUT(rowName(isProtected), newName, patience);
    }
    qsizetype rowOf(const QString& id) const { return m_site->rows().indexOf(id); }
    QString rowName(const QString& id) const { return m_site->row(id).GetRecordName(); }
    QList<ZELKO_RecordData> rowData() const
    {
        QList<ZELKO_RecordData> data;
        for (const QString& id : m_site->rows()) {
            data.append(m_site->row(id));
        }
        return data;
    }
};

// Windows that stand by themselves outlive the controller that opened them.
void TestRecorderActions::cleanup()
{
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (!window->parent() && window->testAttribute(Qt::WA_DeleteOnClose)) {
            delete window;
        }
    }
    leaveSite();
}

void TestRecorderActions::init()
{
    makeSite();
    const QString folder = m_site->deviceFolder();
    QVERIFY(storeSamples(folder, finishedRecord(first), sampleBytes(size)));
    QVERIFY(storeRecord(folder, finishedRecord(second), size));
    ZELKO_RecordData record = finishedRecord(isProtected);
    record.SetDeletable(false);
    QVERIFY(storeRecord(folder, record, size));
    record = finishedRecord(damaged);
    record.SetRecordStatus(Status::Damaged);
    QVERIFY(storeRecord(folder, record, size));
    QVERIFY(m_site->start());
}

void TestRecorderActions::deletesWhatMayBeDeleted()
{
    connectAs(Role::Operator);
    deleteRecords(*m_site, {first, isProtected, second});
    const QStringList left{isProtected, damaged};
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows(), left, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->storedIds(), left, patience);
}

void TestRecorderActions::keepsWhatIsNotConfirmed()
{
    connectAs(Role::Operator);
    deleteRecords(*m_site, {first}, QMessageBox::No);
    deleteRecords(*m_site, {second}); // the recorder works commands off in order
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows(), (QStringList{isProtected, first, damaged}), patience);
    QVERIFY(m_site->storedIds().contains(first));
}

void TestRecorderActions::putsARecordToRest()
{
    connectAs(Role::Operator);
    QCOMPARE(m_site->row(damaged).GetRecordStatus(), Status::Damaged);
    QVERIFY(m_site->click(IZelkoGUIController::UserActionReset, {damaged}));
    QTRY_COMPARE_WITH_TIMEOUT(m_site->row(damaged).GetRecordStatus(), Status::Finished, patience);
    QCOMPARE(m_site->stored(damaged).GetRecordStatus(), Status::Finished);
}

void TestRecorderActions::renames()
{
    connectAs(Role::Operator);
    rename(*m_site, first, newName);
    QCOMPARE(m_site->stored(first).GetRecordName(), newName); // acknowledged is durable
    QTRY_COMPARE_WITH_TIMEOUT(rowName(first), newName, patience);
    QCOMPARE(m_site->takeMessages(), QStringList());
}

void TestRecorderActions::turnsTheDeletableFlag()
{
    connectAs(Role::Operator);
    const QStringList ids{first, second};
    for (const bool deletable : {false, true}) {
        QVERIFY(m_site->click(IZelkoGUIController::UserActionDeletable, ids));
        for (const QString& id : ids) {
            QCOMPARE(m_site->stored(id).GetDeletable(), deletable);
            QTRY_COMPARE_WITH_TIMEOUT(m_site->row(id).GetDeletable(), deletable, patience);
        }
    }
    m_site->controller().sl_setDeletableFlag(isProtected, true);
    QVERIFY(m_site->stored(isProtected).GetDeletable());
    QTRY_VERIFY_WITH_TIMEOUT(m_site->row(isProtected).GetDeletable(), patience);
    QCOMPARE(m_site->takeMessages(), QStringList());
}

void TestRecorderActions::synchronisesTheList()
{
    connectAs(Role::Operator);
    const QString third = QStringLiteral("R3");
    QVERIFY(storeRecord(m_site->deviceFolder(), finishedRecord(third), size));
    QVERIFY(QDir(m_site->recordFolder(second)).removeRecursively());
    changeBehindItsBack(first);
    m_site->controller().sl_resyncRecordList();
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows(), (QStringList{isProtected, first, third, damaged}), patience);
    QTRY_COMPARE_WITH_TIMEOUT(rowName(first), newName, patience);
}

void TestRecorderActions::synchronisesARecord()
{
    connectAs(Role::Operator);
    changeBehindItsBack(first);
    changeBehindItsBack(second);
    m_site->controller().sl_resyncRecord(second);
    QTRY_COMPARE_WITH_TIMEOUT(rowName(second), newName, patience);
    QCOMPARE(rowName(first), finishedRecord(first).GetRecordName());
}

void TestRecorderActions::readsARecordAnewForItsWindows_data()
{
    QTest::addColumn<IZelkoGUIController::enUserAction>("action");
    QTest::newRow("of the history") << IZelkoGUIController::UserActionHistory;
    QTest::newRow("of the bookmarks") << IZelkoGUIController::UserActionBookmarks;
    QTest::newRow("of a copy") << IZelkoGUIController::UserActionCopy;
    QTest::newRow("of an edit") << IZelkoGUIController::UserActionEdit;
    QTest::newRow("of a spectrum") << IZelkoGUIController::UserActionOverview;
}

void TestRecorderActions::readsARecordAnewForItsWindows()
{
    QFETCH(const IZelkoGUIController::enUserAction, action);
    connectAs(Role::Operator);
    changeBehindItsBack(first);
    QVERIFY(m_site->click(action, {first}));
    QTRY_COMPARE_WITH_TIMEOUT(rowName(first), newName, patience);
}

void TestRecorderActions::copiesARange()
{
    connectAs(Role::Operator);
    m_site->controller().sl_copyRecord(first, 10'250'000, 10'750'000, newName);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows().size(), all.size() + 1, patience);
    QStringList added = m_site->rows();
    for (const QString& id : all) {
        added.removeOne(id);
    }
    const QString id = added.constFirst();
    const ZELKO_RecordData copy = m_site->row(id);
    QCOMPARE(copy.GetRecordID(), id);
    QCOMPARE(copy.GetRecordName(), newName);
    QCOMPARE(copy.GetStartTime(), quint64{10'250'000});
    QCOMPARE(copy.GetStopTime(), quint64{10'750'000});
    QCOMPARE(m_site->stored(id), copy);
    const QString samples = ZELKO_XML::sampleFileName(id, copy.GetDataFormat());
    QCOMPARE(readBytes(m_site->recordFolder(id) + QLatin1Char('/') + samples),
             sampleBytes(size).mid(size / 4, size / 2));
}

void TestRecorderActions::addsAndRemovesAComment()
{
    connectAs(Role::Operator);
    const QString text = QStringLiteral("heard at the second antenna");
    m_site->controller().sl_addHistoryEntry(first, text);
    QCOMPARE(commentOf(m_site->stored(first)), text);
    QTRY_COMPARE_WITH_TIMEOUT(commentOf(m_site->row(first)), text, patience);
    const quint64 key = m_site->row(first).GetHistoryEntry().constLast().GetTimestamp();
    m_site->controller().sl_deleteHistoryEntry(first, key);
    QCOMPARE(commentOf(m_site->stored(first)), QString());
    QTRY_COMPARE_WITH_TIMEOUT(commentOf(m_site->row(first)), QString(), patience);
}

void TestRecorderActions::storesBookmarks()
{
    connectAs(Role::Operator);
    const auto rowBookmarks = [&] { return m_site->row(first).GetBookmarkEntry(); };
    for (const auto& wanted : {bookmarks(), QVector<BookmarkEntry>()}) {
        m_site->controller().sl_setBookmarkEntries(first, wanted);
        QCOMPARE(m_site->stored(first).GetBookmarkEntry(), wanted);
        QTRY_COMPARE_WITH_TIMEOUT(rowBookmarks(), wanted, patience);
    }
}

void TestRecorderActions::refusesAViewer_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<Told>("told");
    const auto add = [](const char* name, const Act& act, Told told) { QTest::newRow(name) << act << told; };
    add(
        "a deletion", [](ActionSite& site) { deleteRecords(site, {first}); }, Told::ByTheLink);
    add(
        "a reset", [](ActionSite& site) { QVERIFY(site.click(IZelkoGUIController::UserActionReset, {damaged})); },
        Told::ByTheLink);
    add(
        "a synchronisation of the list", [](ActionSite& site) { site.controller().sl_resyncRecordList(); },
        Told::ByTheLink);
    add(
        "a synchronisation of a record", [](ActionSite& site) { site.controller().sl_resyncRecord(first); },
        Told::ByTheLink);
    add(
        "a rename", [](ActionSite& site) { rename(site, first, newName); }, Told::InABox);
    add(
        "a toggle of the deletable flag",
        [](ActionSite& site) { QVERIFY(site.click(IZelkoGUIController::UserActionDeletable, {first})); }, Told::InABox);
    add(
        "a deletable flag", [](ActionSite& site) { site.controller().sl_setDeletableFlag(first, false); },
        Told::ToTheCaller);
    add(
        "a copy", [](ActionSite& site) { site.controller().sl_copyRecord(first, 10'250'000, 10'750'000, newName); },
        Told::ToTheCaller);
    add(
        "a comment", [](ActionSite& site) { site.controller().sl_addHistoryEntry(first, newName); }, Told::ToTheCaller);
    add(
        "the removal of a comment", [](ActionSite& site) { site.controller().sl_deleteHistoryEntry(first, 1); },
        Told::ToTheCaller);
    add(
        "bookmarks", [](ActionSite& site) { site.controller().sl_setBookmarkEntries(first, bookmarks()); },
        Told::ToTheCaller);
}

void TestRecorderActions::refusesAViewer()
{
    QFETCH(const Act, act);
    QFETCH(const Told, told);
    connectAs(Role::Viewer);
    for (const QString& id : all) {
        changeBehindItsBack(id); // which a synchronisation shows
    }
    const auto onDisk = contentOf(m_site->deviceFolder());
    auto inTheList = rowData();
    QSignalSpy refused(&m_site->data(), &ZelkoCommon::ServerConnectionData::writeRefused);
    act(*m_site);
    if (told == Told::ByTheLink) {
        QTRY_COMPARE_WITH_TIMEOUT(refused.size(), 1, patience);
        const QString reason = refused.constFirst().at(1).toString();
        QVERIFY2(reason.startsWith(QStringLiteral("user \"viewer\" may not write /ZELKO/Command/Recorder1/")),
                 qPrintable(reason));
    } else {
        QVERIFY2(m_site->handler()->lastErrorText().startsWith(refusalText()),
                 qPrintable(m_site->handler()->lastErrorText()));
    }
    QCOMPARE(m_site->takeMessages(), told == Told::InABox ? QStringList{refusalText()} : QStringList());
    waitForAnOperator();
    QCOMPARE(contentOf(m_site->deviceFolder()), onDisk);
    inTheList[rowOf(isProtected)].SetRecordName(newName);
    QCOMPARE(rowData(), inTheList);
}

QTEST_MAIN(TestRecorderActions)
#include "tst_recorderactions.moc"
