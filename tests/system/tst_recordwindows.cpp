#include <actiontest.h>
#include <commenttable.h>
#include <ownconfiguration.h>
#include <positionhands.h>
#include <samplebytes.h>
#include <testbookmarks.h>

#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/editrecord/editrecorddialog.h>
#include <zelkoguibase/history/historydialog.h>

#include <QInputMethodEvent>
#include <QTimer>
#include <QToolButton>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::Role;
using ZelkoGUI::BookmarkModel;
using ZelkoGUI::EditRecordDialog;
using ZelkoGUI::HistoryDialog;
using ZelkoGUI::IZelkoGUIController;

namespace {

const QString record = u"R1"_s;
constexpr qsizetype size = 4000;

/// A text as a keyboard of any language gives it, in place of what stands there.
void enter(QWidget* editor, const QString& text)
{
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_Delete);
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(editor, &event);
    QTest::keyClick(editor, Qt::Key_Return);
}

/// Texts of every kind, by a phrase for each.
QList<std::pair<const char*, QString>> texts()
{
    return {
        {"a word", u"heard"_s},
        {"of 10,000 characters", QString(10'000, u'x')},
        {"from right to left", u"هذا تعليق"_s},
        {"an emoji", u"heard 📡 twice"_s},
        {"empty", u""_s},
        {"from right to left, and back", u"قناة 7 \u200Fheard\u200E twice"_s},
        {"emoji of several characters", u"👩‍🚀🇩🇪"_s},
        {"two lines", u"first\nsecond"_s},
        {"two lines of another system", u"first\r\nsecond\r"_s},
        {"a tabulator", u"first\tsecond"_s},
        {"control characters", u"a\u0001b\u0007c\u001bd\u007fe\u0085f"_s},
        {"what looks like markup", u"<b>bold</b> &amp; ]]>"_s},
        {"blanks around it", u"  heard  "_s},
    };
}

void addTexts()
{
    QTest::addColumn<QString>("text");
    for (const auto& [name, text] : texts()) {
        QTest::newRow(name) << text;
    }
}

} // namespace

/// What a user does in the windows on a record, to the disk of a real recorder and back.
class TestRecordWindows : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup();
    void aCommentIsStored_data() { addTexts(); }
    void aCommentIsStored();
    void aCommentIsDeleted();
    void aBookmarkIsStored_data() { addTexts(); }
    void aBookmarkIsStored();
    void textsComeBackFromTheDisk();
    void aPartIsCopied();

private:
    template <typename Dialog>
    Dialog* open(IZelkoGUIController::enUserAction action, const QString& name = QString())
    {
        connectAs(Role::Operator);
        if (m_site->click(action, {record})) {
            return m_site->window().findChild<Dialog*>(name);
        }
        return nullptr;
    }
    static QStringList comments(const ZELKO_RecordData& data)
    {
        QStringList texts;
        for (const ZELKO_XML::HistoryEntry& entry : data.GetHistoryEntry()) {
            texts << entry.GetHistoryEntry();
        }
        return texts;
    }

    void add(const CommentTable& table, const QString& text);

    static QStringList bookmarks(const ZELKO_RecordData& data)
    {
        QStringList texts;
        for (const ZELKO_XML::BookmarkEntry& entry : data.GetBookmarkEntry()) {
            texts << entry.GetBookmark();
        }
        return texts;
    }

    std::optional<OwnConfiguration> m_configuration;
};

void TestRecordWindows::init()
{
    m_configuration.emplace();
    makeSite();
    ZELKO_RecordData data = finishedRecord(record);
    data.SetHistoryEntry({CommentedRecords::comment(1, u"old"_s)});
    data.SetBookmarkEntry({makeBookmark(10'500'000, u"inside"_s), makeBookmark(10'900'000, u"outside"_s)});
    QVERIFY(storeSamples(m_site->deviceFolder(), data, sampleBytes(size)));
    QVERIFY(m_site->start());
}

void TestRecordWindows::cleanup()
{
    leaveSite();
    m_configuration.reset();
}

// The window sends no empty comment; a program of somebody's own may.
void TestRecordWindows::add(const CommentTable& table, const QString& text)
{
    if (text.isEmpty()) {
        m_site->controller().sl_addHistoryEntry(record, text);
        return;
    }
    QTest::keyClick(&table.view, Qt::Key_Insert);
    QVERIFY(table.editor());
    enter(table.editor(), text);
    QTRY_VERIFY_WITH_TIMEOUT(!table.editor(), patience);
    table.clickHeader(1);
}

void TestRecordWindows::aCommentIsStored()
{
    QFETCH(const QString, text);
    auto* const dialog = open<HistoryDialog>(IZelkoGUIController::UserActionHistory);
    QVERIFY(dialog);
    const CommentTable table(*dialog);
    QCOMPARE(table.lastRow(), 1);
    add(table, text);
    const QStringList both{u"old"_s, text};
    QCOMPARE(comments(m_site->stored(record)), both); // acknowledged is durable
    QTRY_COMPARE_WITH_TIMEOUT(table.lastRow(), 2, patience);
    QCOMPARE(table.text(1), text);
    QCOMPARE(m_site->takeMessages(), QStringList());
    m_site->recorder().kill();
    QCOMPARE(comments(m_site->stored(record)), both);
}

void TestRecordWindows::aCommentIsDeleted()
{
    auto* const dialog = open<HistoryDialog>(IZelkoGUIController::UserActionHistory);
    QVERIFY(dialog);
    const CommentTable table(*dialog);
    table.clickHeader(0);
    QCOMPARE(comments(m_site->stored(record)), QStringList());
    QTRY_COMPARE_WITH_TIMEOUT(table.lastRow(), 0, patience);
}

void TestRecordWindows::aBookmarkIsStored()
{
    QFETCH(const QString, text);
    auto* const dialog = open<EditRecordDialog>(IZelkoGUIController::UserActionBookmarks, u"EditBookmarksDialog"_s);
    QVERIFY(dialog);
    BookmarkModel& model = *dialog->bookmarkModel();
    model.setSingleShot([](auto, QObject* context, const auto& call) { QTimer::singleShot(0, context, call); });
    QVERIFY(m_site->click(IZelkoGUIController::UserActionBookmarks, {record})); // without the usual delay
    QTRY_COMPARE_WITH_TIMEOUT(model.getSynchState(), BookmarkModel::SynchInSync, patience);
    auto& table = *dialog->findChild<QTableView*>(u"BookmarkTableView"_s);
    const QModelIndex cell = model.index(0, BookmarkModel::TextColumn);
    table.setCurrentIndex(cell);
    QTest::keyClick(&table, Qt::Key_F2);
    QVERIFY(table.indexWidget(cell));
    enter(table.indexWidget(cell), text);
    QTRY_COMPARE_WITH_TIMEOUT(model.getSynchState(), BookmarkModel::SynchLocalChange, patience);
    const QStringList both{text, u"outside"_s};
    QTest::mouseClick(dialog->findChild<QToolButton*>(u"ApplyBookmarks"_s), Qt::LeftButton);
    QCOMPARE(bookmarks(m_site->stored(record)), both);
    QTRY_COMPARE_WITH_TIMEOUT(bookmarks(m_site->row(record)), both, patience);
    QTRY_COMPARE_WITH_TIMEOUT(model.getSynchState(), BookmarkModel::SynchInSync, patience);
    QCOMPARE(model.entry(0).GetBookmark(), text);
    m_site->recorder().kill();
    QCOMPARE(bookmarks(m_site->stored(record)), both);
}

// What the next recorder shows, once nothing is shown any more of what the one that was killed has told.
void TestRecordWindows::textsComeBackFromTheDisk()
{
    connectAs(Role::Operator);
    QVector<ZELKO_XML::BookmarkEntry> entries;
    for (const auto& [name, text] : texts()) {
        m_site->controller().sl_addHistoryEntry(record, text);
        entries << makeBookmark(10'000'000 + static_cast<quint64>(entries.size()), text);
    }
    m_site->controller().sl_setBookmarkEntries(record, entries, QString());
    const QStringList all = bookmarks(m_site->stored(record));
    m_site->recorder().kill();
    QTRY_VERIFY_WITH_TIMEOUT(m_site->rows().isEmpty(), patience);
    QVERIFY(m_site->start());
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows(), QStringList{record}, patience);
    QCOMPARE(all.size(), texts().size());
    QCOMPARE(bookmarks(m_site->row(record)), all);
    QCOMPARE(comments(m_site->row(record)), QStringList{u"old"_s} + all);
}

void TestRecordWindows::aPartIsCopied()
{
    using Section = QDateTimeEdit::Section;
    auto* const dialog = open<EditRecordDialog>(IZelkoGUIController::UserActionCopy, u"CopyRecordDialog"_s);
    QVERIFY(dialog);
    const PositionHands start(*dialog->findChild<PositionHands::Widget*>(u"StartPosition"_s));
    const PositionHands stop(*dialog->findChild<PositionHands::Widget*>(u"StopPosition"_s));
    stop.press(Section::SecondSection, Qt::Key_Down);
    stop.type(Section::MSecSection, u"750"_s);
    start.type(Section::MSecSection, u"250"_s);
    QTest::mouseClick(dialog->findChild<QToolButton*>(u"SaveButton"_s), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows().size(), 2, patience);
    QStringList added = m_site->rows();
    added.removeOne(record);
    const QString id = added.constFirst();
    const ZELKO_RecordData copy = m_site->row(id);
    QCOMPARE(copy.GetRecordName(), u"Name of R1_Copy"_s);
    QCOMPARE(copy.GetStartTime(), quint64{10'250'000});
    QCOMPARE(copy.GetStopTime(), quint64{10'750'000});
    QCOMPARE(copy.GetBookmarkEntry().size(), 1);
    QCOMPARE(copy.GetBookmarkEntry().first().GetBookmark(), u"inside"_s);
    const QVector<ZELKO_XML::IndexEntry> index{indexEntry(10'250'000, 0), indexEntry(10'750'000, size / 2)};
    QCOMPARE(copy.GetIndexEntry(), index);
    QCOMPARE(m_site->stored(id).GetIndexEntry(), index);
    const QString samples = ZELKO_XML::sampleFileName(id, copy.GetDataFormat());
    QCOMPARE(readBytes(m_site->recordFolder(id) + u'/' + samples), sampleBytes(size).mid(size / 4, size / 2));
}

QTEST_MAIN(TestRecordWindows)
#include "tst_recordwindows.moc"
