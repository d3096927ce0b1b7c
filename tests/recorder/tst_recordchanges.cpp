#include <recorder/store/recordchanges.h>

#include <filesizelimit.h>
#include <foldersyncs.h>
#include <readonlyfolder.h>
#include <storedrecord.h>
#include <testbookmarks.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::BookmarkEntry;
using ZELKO_XML::HistoryEntry;
using ZELKO_XML::ZELKO_RecordData;

namespace {

const QString id = QStringLiteral("R1");

constexpr auto* bookmark = makeBookmark;

QString textOf(const QVector<BookmarkEntry>& bookmarks)
{
    QStringList lines;
    for (const BookmarkEntry& entry : bookmarks) {
        lines.append(QString::number(entry.GetTimestamp()) + QLatin1Char(' ') + entry.GetBookmark());
    }
    return lines.join(QLatin1String(", "));
}

} // namespace

class TestRecordChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void makesTheCommentTheName();
    void setsTheDeletableFlag();
    void replacesTheBookmarks();
    void takesAwayAllBookmarksWithAnEmptyList();
    void deletesBookmarks_data();
    void deletesBookmarks();
    void addsToTheHistory();
    void givesEachCommentAKeyOfItsOwn();
    void removesFromTheHistory();
    void keepsEveryCharacter_data();
    void keepsEveryCharacter();
    void refusesWhatIsTooLong();
    void refusesWhatIsTooMany();
    void staysReadableWhateverIsAdded();
    void changesNothingWhenTheFolderIsNotSynced();
    void saysSoWhenAChangeMayNotLast();
    void refusesARecordThatIsNotThere();
    void refusesARecordThatIsBeingRecorded();
    void keepsTheRecordOnAFullDisk();
    void keepsTheRecordInAFolderThatCannotBeWritten();
    void touchesNothingBesides();
    void savesNothingThatStaysAsItIs();

private:
    ZELKO_RecordData stored() const
    {
        QString error;
        const RecordPointer record = m_store->read(id, &error);
        return record ? *record : ZELKO_RecordData();
    }
    RecordChanges changes() const { return RecordChanges(*m_store); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DeviceStore> m_store;
};

void TestRecordChanges::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<DeviceStore>(m_folder->path());
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(id), 4000));
}

void TestRecordChanges::makesTheCommentTheName()
{
    const RecordChange change = changes().make(id, commentEdit(QStringLiteral("Harbour")));
    QCOMPARE(change.status, StoreStatus::Done);
    QCOMPARE(stored().GetRecordName(), QStringLiteral("Harbour"));
    QVERIFY(*change.record == stored());
    QCOMPARE(changes().make(id, commentEdit(QString())).status, StoreStatus::Done);
    QCOMPARE(stored().GetRecordName(), QString());
}

void TestRecordChanges::setsTheDeletableFlag()
{
    QCOMPARE(changes().make(id, deletableEdit(false)).status, StoreStatus::Done);
    QVERIFY(!stored().GetDeletable());
    QCOMPARE(changes().make(id, deletableEdit(true)).status, StoreStatus::Done);
    QVERIFY(stored().GetDeletable());
}

void TestRecordChanges::replacesTheBookmarks()
{
    QCOMPARE(changes().make(id, bookmarksEdit({bookmark(1, QStringLiteral("a"))})).status, StoreStatus::Done);
    QCOMPARE(
        changes().make(id, bookmarksEdit({bookmark(3, QStringLiteral("c")), bookmark(2, QStringLiteral("b"))})).status,
        StoreStatus::Done);
    QCOMPARE(textOf(stored().GetBookmarkEntry()), QStringLiteral("3 c, 2 b"));
}

void TestRecordChanges::takesAwayAllBookmarksWithAnEmptyList()
{
    QCOMPARE(changes().make(id, bookmarksEdit({bookmark(1, QStringLiteral("a"))})).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, bookmarksEdit({})).status, StoreStatus::Done);
    QCOMPARE(textOf(stored().GetBookmarkEntry()), QString());
}

void TestRecordChanges::deletesBookmarks_data()
{
    QTest::addColumn<QVector<BookmarkEntry>>("gone");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("left");
    const QString all = QStringLiteral("1 a, 2 b, 2 b, 3 c");
    const auto done = static_cast<int>(StoreStatus::Done);
    const auto unknown = static_cast<int>(StoreStatus::UnknownEntry);
    QTest::newRow("none") << QVector<BookmarkEntry>() << done << all;
    QTest::newRow("some") << QVector{bookmark(3, QStringLiteral("c")), bookmark(1, QStringLiteral("a"))} << done
                          << QStringLiteral("2 b, 2 b");
    QTest::newRow("one of two that are equal")
        << QVector{bookmark(2, QStringLiteral("b"))} << done << QStringLiteral("1 a, 2 b, 3 c");
    QTest::newRow("both of two that are equal")
        << QVector{bookmark(2, QStringLiteral("b")), bookmark(2, QStringLiteral("b"))} << done
        << QStringLiteral("1 a, 3 c");
    QTest::newRow("of another text") << QVector{bookmark(1, QStringLiteral("b"))} << unknown << all;
    QTest::newRow("at another time") << QVector{bookmark(4, QStringLiteral("a"))} << unknown << all;
    QTest::newRow("one that is there and one that is not")
        << QVector{bookmark(1, QStringLiteral("a")), bookmark(9, QStringLiteral("z"))} << unknown << all;
}

void TestRecordChanges::deletesBookmarks()
{
    QFETCH(const QVector<BookmarkEntry>, gone);
    QCOMPARE(changes()
                 .make(id, bookmarksEdit({bookmark(1, QStringLiteral("a")), bookmark(2, QStringLiteral("b")),
                                          bookmark(2, QStringLiteral("b")), bookmark(3, QStringLiteral("c"))}))
                 .status,
             StoreStatus::Done);
    QTEST(static_cast<int>(changes().make(id, bookmarksDeletion(gone)).status), "status");
    QTEST(textOf(stored().GetBookmarkEntry()), "left");
}

void TestRecordChanges::addsToTheHistory()
{
    QCOMPARE(changes().make(id, historyAddition(QStringLiteral("first"), 100)).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, historyAddition(QString(), 50)).status, StoreStatus::Done);
    const QVector<HistoryEntry> history = stored().GetHistoryEntry();
    QCOMPARE(history.size(), 2);
    QCOMPARE(history.at(0).GetHistoryEntry(), QStringLiteral("first"));
    QCOMPARE(history.at(0).GetTimestamp(), quint64{100});
    QCOMPARE(history.at(1).GetTimestamp(), quint64{50});
}

void TestRecordChanges::givesEachCommentAKeyOfItsOwn()
{
    for (const quint64 now : QList<quint64>{100, 101, 100, 100}) {
        QCOMPARE(changes().make(id, historyAddition(QStringLiteral("text"), now)).status, StoreStatus::Done);
    }
    QList<quint64> keys;
    const ZELKO_RecordData record = stored();
    for (const HistoryEntry& comment : record.GetHistoryEntry()) {
        keys.append(comment.GetTimestamp());
    }
    QCOMPARE(keys, (QList<quint64>{100, 101, 102, 103}));
}

void TestRecordChanges::removesFromTheHistory()
{
    QCOMPARE(changes().make(id, historyAddition(QStringLiteral("first"), 100)).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, historyAddition(QStringLiteral("second"), 200)).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, historyRemoval(150)).status, StoreStatus::UnknownEntry);
    QCOMPARE(changes().make(id, historyRemoval(100)).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, historyRemoval(100)).status, StoreStatus::UnknownEntry);
    const ZELKO_RecordData record = stored();
    QCOMPARE(record.GetHistoryEntry().size(), 1);
    QCOMPARE(record.GetHistoryEntry().at(0).GetHistoryEntry(), QStringLiteral("second"));
}

void TestRecordChanges::keepsEveryCharacter_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("signs of XML") << QStringLiteral("<a href=\"x\">&amp;]]></a>");
    QTest::newRow("control characters") << QStringLiteral("a\u0001b\r\n\tc\u001f");
    QTest::newRow("a null character") << QString(QChar(u'\0'));
    QTest::newRow("half of a pair") << QString(QChar(0xD800));
    QTest::newRow("blanks around it") << QStringLiteral("  text  ");
    QTest::newRow("letters of the world") << QStringLiteral("Šibenik ångström 東京 😀");
}

void TestRecordChanges::keepsEveryCharacter()
{
    QFETCH(const QString, text);
    QCOMPARE(changes().make(id, commentEdit(text)).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, bookmarksEdit({bookmark(1, text)})).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, historyAddition(text, 1)).status, StoreStatus::Done);
    const ZELKO_RecordData record = stored();
    QCOMPARE(record.GetRecordName(), text);
    QCOMPARE(record.GetBookmarkEntry().at(0).GetBookmark(), text);
    QCOMPARE(record.GetHistoryEntry().at(0).GetHistoryEntry(), text);
}

void TestRecordChanges::refusesWhatIsTooLong()
{
    const QString longest(longestRecordText, QLatin1Char('x'));
    const QString tooLong = longest + QLatin1Char('x');
    QCOMPARE(changes().make(id, historyAddition(longest, 1)).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, historyAddition(tooLong, 1)).status, StoreStatus::TooLong);
    QCOMPARE(changes().make(id, bookmarksEdit({bookmark(1, longest)})).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, bookmarksEdit({bookmark(1, QStringLiteral("a")), bookmark(1, tooLong)})).status,
             StoreStatus::TooLong);
    const QString longestName(longestRecordName, QLatin1Char('x'));
    QCOMPARE(changes().make(id, commentEdit(longestName)).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, commentEdit(longestName + QLatin1Char('x'))).status, StoreStatus::TooLong);
    QCOMPARE(stored().GetRecordName(), longestName);
}

void TestRecordChanges::refusesWhatIsTooMany()
{
    const QVector<BookmarkEntry> most(mostBookmarks, bookmark(1, QStringLiteral("a")));
    QCOMPARE(changes().make(id, bookmarksEdit(most)).status, StoreStatus::Done);
    QVector<BookmarkEntry> tooMany = most;
    tooMany.append(most.constFirst());
    QCOMPARE(changes().make(id, bookmarksEdit(tooMany)).status, StoreStatus::TooMany);
    QCOMPARE(changes().make(id, bookmarksDeletion(tooMany)).status, StoreStatus::TooMany);
    QCOMPARE(stored().GetBookmarkEntry().size(), most.size());

    ZELKO_RecordData record = finishedRecord(id);
    HistoryEntry comment;
    comment.SetTimestamp(1);
    comment.SetHistoryEntry(QStringLiteral("a"));
    record.SetHistoryEntry(QVector<HistoryEntry>(mostComments, comment));
    QVERIFY(m_store->save(record));
    QCOMPARE(changes().make(id, historyAddition(QStringLiteral("b"), 2)).status, StoreStatus::TooMany);
}

// Each character that the file cannot hold as it is makes six of it.
void TestRecordChanges::staysReadableWhateverIsAdded()
{
    const QString worst(longestRecordText, QChar(1));
    QCOMPARE(changes().make(id, bookmarksEdit(QVector<BookmarkEntry>(400, bookmark(1, worst)))).status,
             StoreStatus::Done);
    QCOMPARE(changes().make(id, bookmarksEdit(QVector<BookmarkEntry>(800, bookmark(1, worst)))).status,
             StoreStatus::TooMany);
    QCOMPARE(stored().GetBookmarkEntry().size(), 400);
}

void TestRecordChanges::changesNothingWhenTheFolderIsNotSynced()
{
    const auto before = contentOf(m_folder->path());
    const FolderSyncs disk(m_store->recordFolder(id));
    QCOMPARE(changes().make(id, commentEdit(QStringLiteral("new"))).status, StoreStatus::DiskRefused);
    QCOMPARE(contentOf(m_folder->path()), before);
}

void TestRecordChanges::saysSoWhenAChangeMayNotLast()
{
    std::optional<FileSizeLimit> full;
    const FolderSyncs disk(m_store->recordFolder(id), [&] { return full.emplace(1), true; });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("R1 .*is not known")));
    const StoreStatus status = changes().make(id, commentEdit(QStringLiteral("new"))).status;
    full.reset();
    QCOMPARE(status, StoreStatus::Uncertain);
    QCOMPARE(stored().GetRecordName(), QStringLiteral("new"));
}

void TestRecordChanges::refusesARecordThatIsNotThere()
{
    const QString unknown = QStringLiteral("R2");
    QCOMPARE(changes().make(unknown, commentEdit(QStringLiteral("a"))).status, StoreStatus::UnknownRecord);
    QCOMPARE(changes().make(unknown, deletableEdit(true)).status, StoreStatus::UnknownRecord);
    QCOMPARE(changes().make(unknown, bookmarksEdit({})).status, StoreStatus::UnknownRecord);
    QCOMPARE(changes().make(unknown, bookmarksDeletion({})).status, StoreStatus::UnknownRecord);
    QCOMPARE(changes().make(unknown, historyAddition(QStringLiteral("a"), 1)).status, StoreStatus::UnknownRecord);
    QCOMPARE(changes().make(unknown, historyRemoval(1)).status, StoreStatus::UnknownRecord);
    QVERIFY(!changes().make(unknown, deletableEdit(true)).record);
}

void TestRecordChanges::refusesARecordThatIsBeingRecorded()
{
    QVERIFY(storeRecord(m_folder->path(), unfinishedRecord(id), 4000));
    QCOMPARE(changes().make(id, commentEdit(QStringLiteral("a"))).status, StoreStatus::InUse);
    QVERIFY(stored() == unfinishedRecord(id));
}

void TestRecordChanges::keepsTheRecordOnAFullDisk()
{
    {
        const FileSizeLimit limit(600);
        QCOMPARE(changes().make(id, historyAddition(QString(1000, QLatin1Char('x')), 1)).status,
                 StoreStatus::DiskRefused);
    }
    QVERIFY(stored() == finishedRecord(id));
    QCOMPARE(contentOf(m_folder->path()).size(), 2);
}

void TestRecordChanges::keepsTheRecordInAFolderThatCannotBeWritten()
{
    {
        const ReadOnlyFolder readOnly(m_folder->filePath(id));
        QCOMPARE(changes().make(id, commentEdit(QStringLiteral("a"))).status, StoreStatus::DiskRefused);
    }
    QVERIFY(stored() == finishedRecord(id));
    QCOMPARE(changes().make(id, commentEdit(QStringLiteral("a"))).status, StoreStatus::Done);
}

void TestRecordChanges::touchesNothingBesides()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R2")), 4000));
    const auto before = contentOf(m_folder->path());
    QCOMPARE(changes().make(id, commentEdit(QStringLiteral("a"))).status, StoreStatus::Done);
    auto after = contentOf(m_folder->path());
    after[QStringLiteral("R1/RecordData.xml")] = before[QStringLiteral("R1/RecordData.xml")];
    QCOMPARE(after, before);
    ZELKO_RecordData expected = finishedRecord(id);
    expected.SetRecordName(QStringLiteral("a"));
    QVERIFY(stored() == expected);
}

void TestRecordChanges::savesNothingThatStaysAsItIs()
{
    const FileSizeLimit nothing(0);
    QCOMPARE(changes().make(id, deletableEdit(true)).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, bookmarksDeletion({})).status, StoreStatus::Done);
    QCOMPARE(changes().make(id, deletableEdit(false)).status, StoreStatus::DiskRefused);
}

QTEST_GUILESS_MAIN(TestRecordChanges)
#include "tst_recordchanges.moc"
