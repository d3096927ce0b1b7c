#include "dialoganswers.h"
#include "editrecordtest.h"

#include <QLineEdit>
#include <QToolButton>

using namespace Qt::StringLiterals;
using ZelkoConsole::DialogAnswer;

/// What becomes of the window on a record, and of what was changed there, when it is closed and when its record goes.
class EditRecordClosingTest : public EditRecordTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { makeRecords(); }
    void cleanup() { dropAll(); }

    void closingAsksAboutChanges_data();
    void closingAsksAboutChanges();
    void escapeAsksAboutChangesToo();
    void withoutChangesNothingIsAsked();
    void withoutPromptNothingIsAsked();
    void aReadOnlyWindowNeverAsks();
    void itMayGoWhileTheQuestionIsOpen();
    void itsRecordMayGoWhileTheQuestionIsOpen_data();
    void itsRecordMayGoWhileTheQuestionIsOpen();
    void aDeletedRecordEmptiesItWithoutAWord();
    void anotherRecordMayBeDeleted();
    void theModelMayGo();
    void anotherModelIsFollowed();
    void theSameWindowShowsAnotherRecord();
};

void EditRecordClosingTest::closingAsksAboutChanges_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("button");
    QTest::addColumn<bool>("stays");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<State>("state");
    const QStringList bookmarks{u"bookmarks R of D: 5000000 moved, 20000000 b"_s};
    QTest::newRow("yes") << QMessageBox::Yes << false << bookmarks << State::SynchPending;
    QTest::newRow("no") << QMessageBox::No << false << QStringList() << State::SynchLocalChange;
    QTest::newRow("cancel") << QMessageBox::Cancel << true << QStringList() << State::SynchLocalChange;
}

void EditRecordClosingTest::closingAsksAboutChanges()
{
    QFETCH(const QMessageBox::StandardButton, button);
    openChanged(bookmarkOptions);
    const DialogAnswer answer([&](QWidget* window) {
        auto* const question = qobject_cast<QMessageBox*>(window);
        QVERIFY(question);
        QCOMPARE(question->parentWidget(), m_dialog.get());
        QCOMPARE(question->icon(), QMessageBox::Question);
        QCOMPARE(question->windowTitle(), u"Save Bookmarks"_s);
        QCOMPARE(question->text(), u"The changes made to the bookmarks have not been saved. Do you want to save them "
                                   "before closing the window?"_s);
        QCOMPARE(question->standardButtons(), QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        QVERIFY(!question->defaultButton());
        answers::clickOn(question, button);
    });
    clickOk();
    QVERIFY(answer.wasGiven());
    QTEST(m_dialog->isVisible(), "stays");
    QTEST(told(), "sent");
    QTEST(model().getSynchState(), "state");
}

void EditRecordClosingTest::escapeAsksAboutChangesToo()
{
    openChanged(bookmarkOptions);
    {
        const DialogAnswer answer(answers::click(QMessageBox::Cancel));
        QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
        QVERIFY(answer.wasGiven());
        QVERIFY(m_dialog->isVisible());
    }
    const DialogAnswer answer(answers::click(QMessageBox::No));
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    QVERIFY(answer.wasGiven());
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(told(), QStringList());
}

void EditRecordClosingTest::withoutChangesNothingIsAsked()
{
    open(bookmarkOptions);
    clickOk();
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int{QDialog::Accepted});
    QCOMPARE(told(), QStringList());
}

void EditRecordClosingTest::withoutPromptNothingIsAsked()
{
    openChanged(bookmarkOptions);
    m_dialog->setPromptUnsavedChanged(false);
    QVERIFY(!m_dialog->promptUnsavedChanged());
    const DialogAnswer answer(answers::click(QMessageBox::Yes));
    clickOk();
    QVERIFY(!answer.wasGiven());
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(told(), QStringList());
}

void EditRecordClosingTest::aReadOnlyWindowNeverAsks()
{
    open(copyOptions);
    QVERIFY(!normalize() && !cut());
    const DialogAnswer answer(answers::click(QMessageBox::Yes));
    QTest::mouseClick(box().button(QDialogButtonBox::Close), Qt::LeftButton);
    QVERIFY(!answer.wasGiven());
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int{QDialog::Rejected});
}

void EditRecordClosingTest::itMayGoWhileTheQuestionIsOpen()
{
    openChanged(bookmarkOptions);
    EditRecordDialog& dialog = *m_dialog;
    const DialogAnswer answer([this](QWidget*) { m_dialog.reset(); });
    dialog.accept();
    QVERIFY(answer.wasGiven());
    QCOMPARE(told(), QStringList());
}

void EditRecordClosingTest::itsRecordMayGoWhileTheQuestionIsOpen_data()
{
    using Change = std::function<void(EditRecordClosingTest&)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<QMessageBox::StandardButton>("button");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<State>("state");
    const Change drop([](EditRecordClosingTest& test) { test.m_records->drop(u"R"_s); });
    const QStringList bookmarks{u"bookmarks R of D: 5000000 moved, 20000000 b"_s};
    QTest::newRow("deleted, and yes") << drop << QMessageBox::Yes << QStringList() << State::SynchNoRecord;
    QTest::newRow("deleted, and no") << drop << QMessageBox::No << QStringList() << State::SynchNoRecord;
    QTest::newRow("deleted, and cancel") << drop << QMessageBox::Cancel << QStringList() << State::SynchNoRecord;
    QTest::newRow("gone from the list") << Change([](EditRecordClosingTest& test) { test.m_records->replaceAll({}); })
                                        << QMessageBox::Yes << QStringList() << State::SynchNoRecord;
    QTest::newRow("still in the list") << Change([](EditRecordClosingTest& test) {
        test.m_records->replaceAll({u"R"_s});
    }) << QMessageBox::Yes << bookmarks << State::SynchPending;
    QTest::newRow("gone with its list") << Change([](EditRecordClosingTest& test) { test.m_records.reset(); })
                                        << QMessageBox::Yes << QStringList() << State::SynchNoRecord;
    QTest::newRow("taken out of the window")
        << Change([](EditRecordClosingTest& test) { test.m_dialog->resetRecord(); }) << QMessageBox::Yes
        << QStringList() << State::SynchNoRecord;
}

void EditRecordClosingTest::itsRecordMayGoWhileTheQuestionIsOpen()
{
    using Change = std::function<void(EditRecordClosingTest&)>;
    QFETCH(const Change, change);
    QFETCH(const QMessageBox::StandardButton, button);
    openChanged(allOptions);
    const DialogAnswer answer([&](QWidget* question) {
        change(*this);
        answers::clickOn(question, button);
    });
    clickOk();
    QVERIFY(answer.wasGiven());
    QTEST(told(), "sent");
    QTEST(model().getSynchState(), "state");
    QCOMPARE(m_dialog->isVisible(), button == QMessageBox::Cancel);
}

void EditRecordClosingTest::aDeletedRecordEmptiesItWithoutAWord()
{
    openChanged(allOptions);
    const DialogAnswer answer([](QWidget*) {});
    m_records->drop(u"R"_s);
    QVERIFY(!answer.wasGiven());
    verifyEmpty();
    QVERIFY(m_dialog->isVisible());
    QVERIFY(!part<QLineEdit>("RecordNameEdit")->isEnabled());
    QCOMPARE(told(), QStringList());
}

void EditRecordClosingTest::anotherRecordMayBeDeleted()
{
    store({}, u"S"_s);
    open(allOptions);
    m_records->drop(u"S"_s);
    QCOMPARE(info()->text(), u"Record: name of R"_s);
    QCOMPARE(model().entryCount(), 2);
}

void EditRecordClosingTest::theModelMayGo()
{
    open(allOptions);
    m_records.reset();
    verifyEmpty();
}

void EditRecordClosingTest::anotherModelIsFollowed()
{
    ToldRecords others;
    others.store(makeCopyable(u"S"_s));
    open(allOptions);
    m_dialog->setRecord(u"S"_s, &others, false, QString());
    m_records.reset();
    QCOMPARE(info()->text(), u"Record: name of S"_s);
    others.replaceAll({});
    QCOMPARE(info()->text(), u"Record:"_s);
    others.replaceAll({u"S"_s});
    QCOMPARE(info()->text(), u"Record: name of S"_s);
    others.drop(u"S"_s);
    verifyEmpty();
}

void EditRecordClosingTest::theSameWindowShowsAnotherRecord()
{
    store({bookmarkAt(30, u"c"_s)}, u"S"_s);
    open(allOptions);
    m_dialog->setRecord(u"S"_s, &*m_records, false, u"E"_s);
    QCOMPARE(bookmarkTexts(model().entries()), QStringList{u"30000000 c"_s});
    model().clear();
    QTest::mouseClick(part<QToolButton>("ApplyBookmarks"), Qt::LeftButton);
    QTest::mouseClick(part<QToolButton>("SaveButton"), Qt::LeftButton);
    QCOMPARE(told(), QStringList({u"bookmarks S of E: "_s, u"copy S 1000-901000 name of S_Copy"_s}));
}

QTEST_MAIN(EditRecordClosingTest)
#include "tst_editrecordclosing.moc"
