#include <zelkoguibase/history/historydialog.h>

#include "commenttable.h"
#include "dialoganswers.h"
#include "ownconfiguration.h"
#include "patience.h"
#include "tracemask.h"
#include "tracetexts.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/history/historywidget.h>

#include <QLabel>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoConsole::DialogAnswer;
using ZelkoGUI::HistoryDialog;

/// The window of the comments on a record.
class HistoryDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_configuration.emplace();
        m_records.emplace(u"R"_s, twoComments);
        m_dialog = std::make_unique<HistoryDialog>();
        m_table = std::make_unique<CommentTable>(*m_dialog);
    }
    void cleanup()
    {
        m_table.reset();
        m_dialog.reset();
        m_records.reset();
        m_configuration.reset();
    }

    void itBeginsEmpty();
    void itsPartsStandOneBelowTheOther();
    void theLabelNamesTheRecord_data();
    void theLabelNamesTheRecord();
    void anOverlongNameDoesNotWidenTheWindow();
    void theLabelFollowsTheRecord();
    void whatTheTableAsksForIsPassedOn();
    void closeEndsIt();
    void escapeEndsIt();
    void returnInTheEditorDoesNotEndIt();
    void aDeletedRecordIsTold();
    void aDeletedRecordOfAHiddenWindowIsNotTold();
    void aDeletionOfAnotherRecordIsPassedOver();
    void itMayGoWhileTheMessageIsOpen();
    void anotherRecordMayBeSetWhileTheMessageIsOpen();
    void theRecordMayComeBackWhileTheMessageIsOpen();
    void theModelMayGoWhileTheMessageIsOpen();
    void theModelMayGo();
    void anotherModelIsFollowed();
    void aResetForgetsTheRecord();
    void itsEndIsTracedIfWanted_data();
    void itsEndIsTracedIfWanted();

private:
    QLabel& label() const { return *m_dialog->findChild<QLabel*>(u"RecordLabel"_s); }
    QDialogButtonBox& buttons() const { return *m_dialog->findChild<QDialogButtonBox*>(u"DialogButtonBox"_s); }
    int rows() const { return m_table->view.model()->rowCount(); }
    void open(const QString& id = u"R"_s)
    {
        m_dialog->setRecord(id, &*m_records);
        m_dialog->show();
        m_dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get(), patience));
    }
    void verifyEmpty() const
    {
        QCOMPARE(rows(), 0);
        QCOMPARE(label().text(), u"Record: "_s);
        QCOMPARE(label().toolTip(), u"no record set"_s);
    }

    std::optional<OwnConfiguration> m_configuration;
    std::optional<CommentedRecords> m_records;
    std::unique_ptr<HistoryDialog> m_dialog;
    std::unique_ptr<CommentTable> m_table;
};

void HistoryDialogTest::itBeginsEmpty()
{
    verifyEmpty();
    QCOMPARE(m_dialog->windowTitle(), u"Edit History Comments"_s);
    QCOMPARE(m_dialog->windowFlags(), Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
    QVERIFY(m_dialog->isSizeGripEnabled());
    QCOMPARE(m_dialog->size(), QSize(500, 500));
    QVERIFY(!m_dialog->isModal());
}

void HistoryDialogTest::itsPartsStandOneBelowTheOther()
{
    open();
    auto* const widget = m_dialog->findChild<ZelkoGUI::HistoryWidget*>(u"HistoryWidget"_s);
    QVERIFY(widget);
    QVERIFY(widget->geometry().bottom() < label().geometry().top());
    QVERIFY(label().geometry().bottom() < buttons().geometry().top());
    QVERIFY(widget->height() > 300);
    QCOMPARE(buttons().standardButtons(), QDialogButtonBox::Close);
}

void HistoryDialogTest::theLabelNamesTheRecord_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");
    QTest::newRow("a name") << u"R"_s << u"Tower"_s << u"Record: Tower"_s << u"Record ID:R"_s;
    QTest::newRow("no name") << u"R"_s << QString() << u"Record: n/a"_s << u"Record ID:R"_s;
    QTest::newRow("what looks like markup")
        << u"<b>R</b>"_s << u"<i>T</i>"_s << u"Record: <i>T</i>"_s << u"<qt>Record ID:&lt;b&gt;R&lt;/b&gt;</qt>"_s;
}

void HistoryDialogTest::theLabelNamesTheRecord()
{
    QFETCH(const QString, id);
    QFETCH(const QString, name);
    const auto record = makeRecord(id);
    record->SetRecordName(name);
    m_records->store(record);
    m_dialog->setRecord(id, &*m_records);
    QTEST(label().text(), "text");
    QTEST(label().toolTip(), "toolTip");
    QCOMPARE(label().textFormat(), Qt::PlainText);
}

void HistoryDialogTest::anOverlongNameDoesNotWidenTheWindow()
{
    const auto record = makeRecord(u"R"_s);
    record->SetRecordName(QString(10'000, u'x'));
    m_records->store(record);
    open();
    QCOMPARE(m_dialog->width(), 500);
}

void HistoryDialogTest::theLabelFollowsTheRecord()
{
    open();
    const auto record = makeRecord(u"R"_s);
    record->SetRecordName(u"renamed"_s);
    m_records->store(record);
    QCOMPARE(label().text(), u"Record: renamed"_s);
    m_records->replaceAll({});
    QCOMPARE(label().text(), u"Record: "_s);
    m_records->replaceAll({u"R"_s});
    QCOMPARE(label().text(), u"Record: name of R"_s);
}

void HistoryDialogTest::whatTheTableAsksForIsPassedOn()
{
    open();
    m_table->clickHeader(0);
    m_table->clickHeader(2);
    QVERIFY(m_table->editor());
    m_table->typeAndEnter(u"heard"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!m_table->editor(), patience);
    m_table->clickHeader(2);
    QCOMPARE(m_table->takeAsked(), QStringList({u"delete R 1000000"_s, u"add R heard"_s}));
}

void HistoryDialogTest::closeEndsIt()
{
    open();
    QTest::mouseClick(buttons().button(QDialogButtonBox::Close), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int{QDialog::Accepted});
}

void HistoryDialogTest::escapeEndsIt()
{
    open();
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    QVERIFY(!m_dialog->isVisible());
}

void HistoryDialogTest::returnInTheEditorDoesNotEndIt()
{
    open();
    m_table->clickHeader(2);
    m_table->typeAndEnter(u"heard"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!m_table->editor(), patience);
    QVERIFY(m_dialog->isVisible());
}

void HistoryDialogTest::aDeletedRecordIsTold()
{
    open();
    const DialogAnswer answer([this](QWidget* window) {
        auto* const box = qobject_cast<QMessageBox*>(window);
        QVERIFY(box);
        QCOMPARE(box->parentWidget(), m_dialog.get());
        QCOMPARE(box->icon(), QMessageBox::Warning);
        QCOMPARE(box->windowTitle(), u"Record Deleted"_s);
        QCOMPARE(box->text(), u"The record has been deleted"_s);
        QCOMPARE(box->standardButtons(), QMessageBox::Ok);
        answers::clickOn(box, QMessageBox::Ok);
    });
    m_records->drop(u"R"_s);
    QVERIFY(answer.wasGiven());
    verifyEmpty();
    QVERIFY(m_dialog->isVisible());
}

void HistoryDialogTest::aDeletedRecordOfAHiddenWindowIsNotTold()
{
    m_dialog->setRecord(u"R"_s, &*m_records);
    const DialogAnswer answer([](QWidget*) {});
    m_records->drop(u"R"_s);
    QVERIFY(!answer.wasGiven());
    verifyEmpty();
}

void HistoryDialogTest::aDeletionOfAnotherRecordIsPassedOver()
{
    m_records->add(makeRecord(u"S"_s));
    open();
    m_records->drop(u"S"_s);
    QCOMPARE(label().text(), u"Record: name of R"_s);
    QCOMPARE(rows(), 3);
}

void HistoryDialogTest::itMayGoWhileTheMessageIsOpen()
{
    open();
    const DialogAnswer answer([this](QWidget*) {
        m_table.reset();
        m_dialog.reset();
    });
    m_records->drop(u"R"_s);
    QVERIFY(answer.wasGiven());
}

void HistoryDialogTest::anotherRecordMayBeSetWhileTheMessageIsOpen()
{
    m_records->add(makeRecord(u"S"_s));
    open();
    const DialogAnswer answer([this](QWidget* window) {
        m_dialog->setRecord(u"S"_s, &*m_records);
        answers::clickOn(window, QMessageBox::Ok);
    });
    m_records->drop(u"R"_s);
    QVERIFY(answer.wasGiven());
    QCOMPARE(label().text(), u"Record: name of S"_s);
    QCOMPARE(rows(), 1);
}

// The one that the message was about is gone all the same.
void HistoryDialogTest::theRecordMayComeBackWhileTheMessageIsOpen()
{
    open();
    const DialogAnswer answer([this](QWidget* window) {
        m_records->store(u"R"_s, twoComments);
        answers::clickOn(window, QMessageBox::Ok);
    });
    m_records->drop(u"R"_s);
    QVERIFY(answer.wasGiven());
    verifyEmpty();
}

void HistoryDialogTest::theModelMayGoWhileTheMessageIsOpen()
{
    open();
    const DialogAnswer answer([this](QWidget* window) {
        m_records.reset();
        answers::clickOn(window, QMessageBox::Ok);
    });
    Q_EMIT m_records->si_recordDeleted(u"R"_s);
    QVERIFY(answer.wasGiven());
    verifyEmpty();
}

void HistoryDialogTest::theModelMayGo()
{
    open();
    m_records.reset();
    verifyEmpty();
}

void HistoryDialogTest::anotherModelIsFollowed()
{
    CommentedRecords others(u"S"_s, {});
    m_dialog->setRecord(u"R"_s, &*m_records);
    m_dialog->setRecord(u"S"_s, &others);
    m_records.reset();
    QCOMPARE(label().text(), u"Record: name of S"_s);
    others.drop(u"S"_s);
    verifyEmpty();
}

void HistoryDialogTest::aResetForgetsTheRecord()
{
    m_dialog->setRecord(u"R"_s, &*m_records);
    m_dialog->resetRecord();
    verifyEmpty();
    m_records->store(u"R"_s, {});
    verifyEmpty();
    m_dialog->setRecord(u"R"_s, &*m_records);
    QCOMPARE(rows(), 1);
}

void HistoryDialogTest::itsEndIsTracedIfWanted_data()
{
    QTest::addColumn<unsigned int>("mask");
    QTest::addColumn<bool>("traced");
    QTest::newRow("warnings") << 0x40U << true;
    QTest::newRow("errors alone") << 0x20U << false;
}

void HistoryDialogTest::itsEndIsTracedIfWanted()
{
    QFETCH(const unsigned int, mask);
    QFETCH(const bool, traced);
    const TraceMask traceMask(mask);
    const TraceTexts traces;
    m_table.reset();
    m_dialog.reset();
    QCOMPARE(traces.contain(u"HistoryDialog::~HistoryDialog"_s), traced);
}

QTEST_MAIN(HistoryDialogTest)
#include "tst_historydialog.moc"
