#include "overviewwindow.h"

#include "dialoganswers.h"
#include "menuanswer.h"

#include <QFileDialog>
#include <QSignalSpy>
#include <QtTest>

using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
using ZELKO_XML::BookmarkEntry;
using ZelkoConsole::DialogAnswer;
using ZelkoTest::OverviewWindow;
using Bookmarks = QVector<BookmarkEntry>;

namespace {

constexpr quint64 start = OverviewWindow::start;
constexpr quint64 second = OverviewWindow::second;
constexpr quint64 stop = OverviewWindow::stop;
const QString device = OverviewWindow::device;
const QString recordID = OverviewWindow::recordID;

std::shared_ptr<ZELKO_XML::ZELKO_RecordData> recordWith(const Bookmarks& bookmarks)
{
    const auto record = OverviewWindow::makeIndexed();
    record->SetBookmarkEntry(bookmarks);
    return record;
}

Bookmarks bookmarksAround(quint64 middle)
{
    return {OverviewWindow::bookmark(start + 10 * second, QStringLiteral("first")),
            OverviewWindow::bookmark(middle, QStringLiteral("middle")),
            OverviewWindow::bookmark(start + 80 * second, QStringLiteral("last"))};
}

const Bookmarks threeBookmarks = bookmarksAround(start + 45 * second);

void clickSave(const QFileDialog* dialog)
{
    QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save), Qt::LeftButton);
}

QStringList texts(const Bookmarks& bookmarks)
{
    QStringList all;
    for (const BookmarkEntry& bookmark : bookmarks) {
        all << bookmark.GetBookmark();
    }
    return all;
}

} // namespace

/// What a user changes in the window of an overview, and the files that he saves.
class OverviewEditsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void bookmarksAreDrawn();
    void aBookmarkIsSetAtTheCursor();
    void aBookmarkIsSetByTheKey();
    void aBookmarkMayHaveNoText();
    void aQuestionThatIsCancelledSetsNothing();
    void nothingIsSetWhileTheLastListIsOnItsWay();
    void aListThatIsNotTakenLetsGoLater();
    void theBookmarkAtTheCursorIsDeleted();
    void theBookmarkAtTheCursorIsDeletedFromTheMenu();
    void noBookmarkIsDeletedFarFromTheCursor();
    void theSelectionIsCopied();
    void aCopyHasAName();
    void rawStreamsAreNotCopied();
    void anAnswerAfterTheRecordWentDoesNothing_data();
    void anAnswerAfterTheRecordWentDoesNothing();
    void aQuestionGoesWithItsRecord_data();
    void aQuestionGoesWithItsRecord();
    void aQuestionGoesWithItsWindow();
    void thePictureIsSaved();
    void aPictureThatCannotBeSavedIsTold();

private:
    OverviewWindow& site() { return *m_site; }
    SpectrumOverviewWidget& widget() { return site().widget(); }
    const QVariantList& lastList() const { return m_lists->last(); }
    QStringList lastTexts() const { return texts(lastList().at(1).value<Bookmarks>()); }

    /// Shows a record with these bookmarks, with the cursor in its middle.
    void show(const Bookmarks& bookmarks)
    {
        site().showWhole(recordWith(bookmarks));
        m_lists.emplace(&widget(), &SpectrumOverviewWidget::si_setBookmarkEntries);
        site().point(0.5);
        QVERIFY(site().view().cursor());
    }

    /// The same with three bookmarks, one of them at the cursor.
    void showAroundCursor()
    {
        show({});
        site().records.store(recordWith(bookmarksAround(site().view().cursor()->time)));
    }

    /// Answers the question that what is done brings.
    template <typename Done, typename Answer>
    void answering(Answer answer, Done done)
    {
        const DialogAnswer given(answer);
        done();
        QTRY_VERIFY_WITH_TIMEOUT(given.wasGiven(), patience);
        letTurnsPass();
    }

    const QTemporaryDir m_folder; // of the configuration
    std::unique_ptr<OverviewWindow> m_site;
    std::optional<QSignalSpy> m_lists;
};

void OverviewEditsTest::init()
{
    CfgCenter::SetFile(ICfg::ApplicationView, m_folder.filePath(QStringLiteral("application.ini")));
    CfgCenter::GetAppCfg(ICfg::ApplicationView)->SetBool(QStringLiteral("UseNativeDialogs"), false);
    m_site = std::make_unique<OverviewWindow>();
}

void OverviewEditsTest::cleanup()
{
    m_lists.reset();
    m_site.reset();
    CfgCenter::SetFile(ICfg::ApplicationView, QString());
}

void OverviewEditsTest::bookmarksAreDrawn()
{
    site().showWhole();
    const QImage without = site().view().image();
    site().records.store(recordWith(threeBookmarks));
    QVERIFY(site().view().image() != without);
    site().records.store(recordWith({}));
    QCOMPARE(site().view().image(), without);
}

void OverviewEditsTest::aBookmarkIsSetAtTheCursor()
{
    show(threeBookmarks);
    const quint64 time = site().view().cursor()->time;
    const QImage before = site().view().image();
    answering(answers::type(QStringLiteral("burst")), [this] { site().click("ActionAddBookmark"); });
    QCOMPARE(m_lists->size(), 1);
    QCOMPARE(lastList().at(0).toString(), recordID);
    QCOMPARE(lastList().at(2).toString(), device);
    const auto sent = lastList().at(1).value<Bookmarks>();
    QCOMPARE(sent.size(), 4);
    const auto set = std::find(sent.begin(), sent.end(), OverviewWindow::bookmark(time, QStringLiteral("burst")));
    QVERIFY(set != sent.end());
    QVERIFY(std::is_sorted(sent.begin(), sent.end(), [](const BookmarkEntry& a, const BookmarkEntry& b) {
        return a.GetTimestamp() < b.GetTimestamp();
    }));
    QCOMPARE(site().view().image(), before); // the recorder has not said so yet
    site().records.store(recordWith(sent));
    QVERIFY(site().view().image() != before);
}

void OverviewEditsTest::aBookmarkIsSetByTheKey()
{
    show({});
    site().view().setFocus();
    answering(answers::type(QStringLiteral("burst")), [this] { QTest::keyClick(&site().view(), Qt::Key_Insert); });
    QCOMPARE(lastTexts(), QStringList{"burst"});
}

void OverviewEditsTest::aBookmarkMayHaveNoText()
{
    show({});
    answering(answers::type(QString()), [this] { site().click("ActionAddBookmark"); });
    QCOMPARE(lastTexts(), QStringList{QString()});
}

void OverviewEditsTest::aQuestionThatIsCancelledSetsNothing()
{
    show({});
    answering([](QWidget* window) { QTest::keyClick(window, Qt::Key_Escape); },
              [this] { site().click("ActionAddBookmark"); });
    QCOMPARE(m_lists->size(), 0);
    QVERIFY(site().action("ActionAddBookmark").isEnabled());
}

void OverviewEditsTest::nothingIsSetWhileTheLastListIsOnItsWay()
{
    show({});
    answering(answers::type(QStringLiteral("one")), [this] { site().click("ActionAddBookmark"); });
    QVERIFY(!site().action("ActionAddBookmark").isEnabled());
    site().view().setFocus();
    QTest::keyClick(&site().view(), Qt::Key_Insert);
    letTurnsPass();
    QVERIFY(!QApplication::activeModalWidget());
    site().records.store(recordWith(lastList().at(1).value<Bookmarks>()));
    QVERIFY(site().action("ActionAddBookmark").isEnabled());
    answering(answers::type(QStringLiteral("two")), [this] { site().click("ActionAddBookmark"); });
    QCOMPARE(lastTexts(), (QStringList{"one", "two"}));
}

void OverviewEditsTest::aListThatIsNotTakenLetsGoLater()
{
    show({});
    answering(answers::type(QStringLiteral("one")), [this] { site().click("ActionAddBookmark"); });
    site().timer.advance(std::chrono::milliseconds(1900));
    QVERIFY(!site().action("ActionAddBookmark").isEnabled());
    site().timer.advance(std::chrono::milliseconds(200));
    QVERIFY(site().action("ActionAddBookmark").isEnabled());
}

void OverviewEditsTest::theBookmarkAtTheCursorIsDeleted()
{
    showAroundCursor();
    QVERIFY(site().action("ActionRemoveBookmark").isEnabled());
    QTest::keyClick(&site().view(), Qt::Key_Delete);
    QCOMPARE(m_lists->size(), 1);
    QCOMPARE(lastTexts(), (QStringList{"first", "last"}));
    QVERIFY(!site().action("ActionRemoveBookmark").isEnabled());
    site().records.store(recordWith(lastList().at(1).value<Bookmarks>()));
    QVERIFY(!site().action("ActionRemoveBookmark").isEnabled());
}

void OverviewEditsTest::theBookmarkAtTheCursorIsDeletedFromTheMenu()
{
    showAroundCursor();
    const MenuAnswer answer([this](QMenu& menu) {
        QVERIFY(menu.actions().contains(&site().action("ActionRemoveBookmark")));
        menu.setActiveAction(&site().action("ActionRemoveBookmark"));
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    const QPoint place(site().view().width() / 2, site().view().height() / 2);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, site().view().mapToGlobal(place));
    QCoreApplication::sendEvent(&site().view(), &event);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_lists->size(), 1, patience);
    QCOMPARE(lastTexts(), (QStringList{"first", "last"}));
}

void OverviewEditsTest::noBookmarkIsDeletedFarFromTheCursor()
{
    show(threeBookmarks);
    site().point(0.3);
    QVERIFY(!site().action("ActionRemoveBookmark").isEnabled());
    QTest::keyClick(&site().view(), Qt::Key_Delete);
    QCOMPARE(m_lists->size(), 0);
}

void OverviewEditsTest::theSelectionIsCopied()
{
    site().showWhole();
    QSignalSpy copied(&widget(), &SpectrumOverviewWidget::si_copyRecord);
    site().select(0.3, 0.7);
    const auto selection = site().view().selection();
    QVERIFY(selection);
    const auto answer = [](QWidget* window) {
        auto* const dialog = qobject_cast<QInputDialog*>(window);
        QVERIFY(dialog);
        QCOMPARE(dialog->textValue(), "name of R1_Copy");
        answers::typeInto(dialog, QStringLiteral("a burst"));
        answers::accept(dialog);
    };
    answering(answer, [this] { site().click("ActionCopyRange"); });
    QCOMPARE(copied, (QList<QVariantList>{{recordID, selection->start, selection->stop, "a burst", device}}));
    QVERIFY(selection->start > start && selection->start < selection->stop && selection->stop < stop);
}

void OverviewEditsTest::aCopyHasAName()
{
    site().showWhole();
    QSignalSpy copied(&widget(), &SpectrumOverviewWidget::si_copyRecord);
    site().select(0.3, 0.7);
    answering(answers::type(QString()), [this] { site().click("ActionCopyRange"); });
    QCOMPARE(copied.size(), 0);
}

void OverviewEditsTest::rawStreamsAreNotCopied()
{
    const auto record = OverviewWindow::makeIndexed();
    record->SetDataRate(ZELKO_XML::ZELKO_RecordData::DataRate::RawStream);
    site().showWhole(record);
    site().select(0.3, 0.7);
    QVERIFY(site().action("ActionZoomIn").isEnabled());
    QVERIFY(!site().action("ActionCopyRange").isEnabled());
}

void OverviewEditsTest::anAnswerAfterTheRecordWentDoesNothing_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<bool>("isDeleted");
    QTest::newRow("a bookmark in a deleted record") << "ActionAddBookmark" << true;
    QTest::newRow("a bookmark behind the record") << "ActionAddBookmark" << false;
    QTest::newRow("a copy of a deleted record") << "ActionCopyRange" << true;
    QTest::newRow("a copy of more than the record") << "ActionCopyRange" << false;
}

void OverviewEditsTest::anAnswerAfterTheRecordWentDoesNothing()
{
    QFETCH(QString, action);
    QFETCH(bool, isDeleted);
    show({});
    site().select(0.3, 0.7);
    site().point(0.5);
    QSignalSpy copied(&widget(), &SpectrumOverviewWidget::si_copyRecord);
    const auto answer = [this, isDeleted](QWidget* window) {
        if (isDeleted) {
            site().records.drop(recordID);
        } else {
            site().records.store(OverviewWindow::makeIndexed(recordID, start + 40 * second));
        }
        answers::type(QStringLiteral("late"))(window);
    };
    answering(answer, [&] { site().click(action.toLatin1().constData()); });
    QCOMPARE(m_lists->size(), 0);
    QCOMPARE(copied.size(), 0);
}

void OverviewEditsTest::aQuestionGoesWithItsRecord_data()
{
    QTest::addColumn<QString>("action");
    QTest::newRow("of a bookmark") << "ActionAddBookmark";
    QTest::newRow("of a copy") << "ActionCopyRange";
}

void OverviewEditsTest::aQuestionGoesWithItsRecord()
{
    QFETCH(QString, action);
    show({});
    site().select(0.3, 0.7);
    QSignalSpy copied(&widget(), &SpectrumOverviewWidget::si_copyRecord);
    site().click(action.toLatin1().constData());
    QPointer<QWidget> question;
    QTRY_VERIFY_WITH_TIMEOUT((question = QApplication::activeModalWidget()), patience);
    site().records.store(OverviewWindow::makeIndexed("R2"));
    widget().setRecord(device, "R2", &site().records, OverviewWindow::address);
    QVERIFY(!QApplication::activeModalWidget());
    QTRY_VERIFY_WITH_TIMEOUT(!question, patience);
    QCOMPARE(m_lists->size(), 0);
    QCOMPARE(copied.size(), 0);
}

void OverviewEditsTest::aQuestionGoesWithItsWindow()
{
    show({});
    site().click("ActionAddBookmark");
    QPointer<QWidget> question;
    QTRY_VERIFY_WITH_TIMEOUT((question = QApplication::activeModalWidget()), patience);
    m_lists.reset();
    site().close();
    QVERIFY(!question);
}

void OverviewEditsTest::thePictureIsSaved()
{
    const QTemporaryDir folder;
    const auto record = OverviewWindow::makeIndexed();
    record->SetRecordName(QStringLiteral("../a/b:c"));
    site().showWhole(record);
    const QString file = folder.filePath(QStringLiteral("overview.png"));
    const auto answer = [&file](QWidget* window) {
        auto* const dialog = qobject_cast<QFileDialog*>(window);
        QVERIFY(dialog);
        auto* const edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        QCOMPARE(edit->text(), "overview.png");
        edit->setText(QString(file).chopped(4));
        clickSave(dialog);
    };
    answering(answer, [this] { site().click("ActionSavePicture"); });
    const QImage saved(file);
    QCOMPARE(saved.size(), site().view().image().size());
    QCOMPARE(saved.convertToFormat(QImage::Format_RGB32), site().view().image().convertToFormat(QImage::Format_RGB32));
}

void OverviewEditsTest::aPictureThatCannotBeSavedIsTold()
{
    const QTemporaryDir folder;
    site().showWhole();
    QSignalSpy failed(&widget(), &SpectrumOverviewWidget::si_errorText);
    const QString file = folder.filePath(QStringLiteral("missing.png"));
    const auto answer = [&](QWidget* window) {
        auto* const dialog = qobject_cast<QFileDialog*>(window);
        QVERIFY(dialog);
        auto* const edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        edit->setText(file);
        QVERIFY(QDir(folder.path()).removeRecursively());
        clickSave(dialog);
    };
    answering(answer, [this] { site().click("ActionSavePicture"); });
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.first().first().toString(), "The picture could not be saved.");
    QVERIFY(failed.first().last().toString().startsWith(file));
    QVERIFY(!QFile::exists(file));
}

QTEST_MAIN(OverviewEditsTest)

#include "tst_overviewedits.moc"
