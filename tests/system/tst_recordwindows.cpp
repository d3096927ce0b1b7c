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
#include <QToolButton>

#include <optional>

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

/// A text as a keyboard of any language gives it.
void enter(QWidget* editor, const QString& text)
{
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(editor, &event);
    QTest::keyClick(editor, Qt::Key_Return);
}

void addTexts()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("a word") << u"heard"_s;
    QTest::newRow("of 10,000 characters") << QString(10'000, u'x');
    QTest::newRow("from right to left") << u"هذا تعليق"_s;
    QTest::newRow("an emoji") << u"heard 📡 twice"_s;
    QTest::newRow("two lines") << u"first\nsecond"_s;
    QTest::newRow("a tabulator") << u"first\tsecond"_s;
    QTest::newRow("what looks like markup") << u"<b>bold</b> &amp; ]]>"_s;
    QTest::newRow("blanks around it") << u"  heard  "_s;
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

void TestRecordWindows::aCommentIsStored()
{
    QFETCH(const QString, text);
    auto* const dialog = open<HistoryDialog>(IZelkoGUIController::UserActionHistory);
    QVERIFY(dialog);
    const CommentTable table(*dialog);
    QCOMPARE(table.lastRow(), 1);
    QTest::keyClick(&table.view, Qt::Key_Insert);
    QVERIFY(table.editor());
    enter(table.editor(), text);
    QTRY_VERIFY_WITH_TIMEOUT(!table.editor(), patience);
    table.clickHeader(1);
    QCOMPARE(comments(m_site->stored(record)), QStringList({u"old"_s, text})); // acknowledged is durable
    QTRY_COMPARE_WITH_TIMEOUT(table.lastRow(), 2, patience);
    QCOMPARE(table.text(1), text);
    QCOMPARE(m_site->takeMessages(), QStringList());
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
    QTRY_COMPARE_WITH_TIMEOUT(model.getSynchState(), BookmarkModel::SynchInSync, patience);
    auto& table = *dialog->findChild<QTableView*>(u"BookmarkTableView"_s);
    const QModelIndex cell = model.index(0, BookmarkModel::TextColumn);
    table.setCurrentIndex(cell);
    QTest::keyClick(&table, Qt::Key_F2);
    QVERIFY(table.indexWidget(cell));
    enter(table.indexWidget(cell), text);
    QTRY_COMPARE_WITH_TIMEOUT(model.getSynchState(), BookmarkModel::SynchLocalChange, patience);
    QTest::mouseClick(dialog->findChild<QToolButton*>(u"ApplyBookmarks"_s), Qt::LeftButton);
    const ZELKO_RecordData stored = m_site->stored(record);
    QCOMPARE(stored.GetBookmarkEntry().first().GetBookmark(), text);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->row(record).GetBookmarkEntry().first().GetBookmark(), text, patience);
    QTRY_COMPARE_WITH_TIMEOUT(model.getSynchState(), BookmarkModel::SynchInSync, patience);
    QCOMPARE(model.entry(0).GetBookmark(), text);
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
    const QString samples = ZELKO_XML::sampleFileName(id, copy.GetDataFormat());
    QCOMPARE(readBytes(m_site->recordFolder(id) + u'/' + samples), sampleBytes(size).mid(size / 4, size / 2));
}

QTEST_MAIN(TestRecordWindows)
#include "tst_recordwindows.moc"
