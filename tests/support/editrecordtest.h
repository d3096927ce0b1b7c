#pragma once

#include "copyablerecord.h"
#include "handtimer.h"
#include "patience.h"
#include "testbookmarks.h"
#include "toldrecords.h"

#include <resources/zelkoicons.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/editrecord/editrecorddialog.h>

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

#include <memory>
#include <optional>
#include <utility>

/// The base of tests of the window on a record: the record R of the device D, which has two bookmarks, and what the
/// window asks for. Its time passes only when it is told to.
class EditRecordTest : public QObject
{
protected:
    using BookmarkModel = ZelkoGUI::BookmarkModel;
    using EditRecordDialog = ZelkoGUI::EditRecordDialog;
    using Options = EditRecordDialog::Options;
    using State = BookmarkModel::enSynchState;

    static constexpr int bookmarkOptions = 30;
    static constexpr int copyOptions = 29;
    static constexpr int allOptions = 255;

    void makeRecords()
    {
        registerZelkoIcons();
        m_timer.emplace();
        m_records.emplace();
        store(twoBookmarks);
    }
    void dropAll()
    {
        m_dialog.reset();
        m_records.reset();
        m_timer.reset();
    }

    void store(const BookmarkModel::Entries& bookmarks, const QString& id = QStringLiteral("R"))
    {
        const auto record = makeCopyable(id);
        record->SetBookmarkEntry(bookmarks);
        m_records->store(record);
    }

    /// With bookmarks that can be edited at once.
    void open(int options)
    {
        m_dialog = std::make_unique<EditRecordDialog>(Options(QFlag(options)));
        model().setSingleShot(m_timer->singleShot());
        connect(m_dialog.get(), &EditRecordDialog::si_copyRecord, this,
                [this](const QString& id, quint64 from, quint64 to, const QString& name) {
                    m_told << QStringLiteral("copy %1 %2-%3 %4").arg(id).arg(from).arg(to).arg(name);
                });
        connect(m_dialog.get(), &EditRecordDialog::si_setBookmarkEntries, this,
                [this](const QString& id, const BookmarkModel::Entries& bookmarks, const QString& device) {
                    m_told << QStringLiteral("bookmarks %1 of %2: ").arg(id, device) +
                                  bookmarkTexts(bookmarks).join(QStringLiteral(", "));
                });
        m_dialog->setRecord(QStringLiteral("R"), &*m_records, false, QStringLiteral("D"));
        m_dialog->show();
        m_dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get(), patience));
        m_told.clear();
    }

    /// With a bookmark that was moved and is not sent yet.
    void openChanged(int options)
    {
        open(options);
        QVERIFY(model().changeEntry(0, bookmarkAt(5, QStringLiteral("moved"))));
    }

    template <typename Part>
    Part* part(const char* name) const
    {
        return m_dialog->findChild<Part*>(QLatin1String(name));
    }
    BookmarkModel& model() const { return *m_dialog->bookmarkModel(); }
    QTableView& table() const { return *part<QTableView>("BookmarkTableView"); }
    QDialogButtonBox& box() const { return *part<QDialogButtonBox>("DialogButtonBox"); }
    QPushButton* normalize() const { return part<QPushButton>("NormalizeButton"); }
    QPushButton* cut() const { return part<QPushButton>("ApplyRangeButton"); }
    QLabel* info() const
    {
        return m_dialog->findChild<QLabel*>(QStringLiteral("RecordInfoLabel"), Qt::FindDirectChildrenOnly);
    }
    void clickOk() const { QTest::mouseClick(box().button(QDialogButtonBox::Ok), Qt::LeftButton); }

    /// What the window asked for since the last time: "copy R 1000-901000 name", "bookmarks R of D: 5000000 moved".
    QStringList told() { return std::exchange(m_told, {}); }

    /// A window with the name of its record.
    void verifyEmpty() const
    {
        QCOMPARE(model().getSynchState(), State::SynchNoRecord);
        QCOMPARE(model().entryCount(), 0);
        QCOMPARE(info()->text(), QStringLiteral("Record:"));
        QCOMPARE(info()->toolTip(), QString());
    }

    std::optional<HandTimer> m_timer;
    std::optional<ToldRecords> m_records;
    std::unique_ptr<EditRecordDialog> m_dialog;

private:
    QStringList m_told;
};
