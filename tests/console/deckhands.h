#pragma once

#include "channelconsole.h"
#include "replaybarhands.h"

#include <console/hands/dialoganswer.h>
#include <console/hands/operatorhands.h>
#include <console/window/usermenu.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QMessageBox>

#include <optional>

/// What the operator does with the records of a console and with the bar below them.
namespace deckhands {

inline VCReplayBar& barOf(const DeckConsole& console)
{
    return *console.deck().bar()->findChild<VCReplayBar*>(QStringLiteral("ZelkoReplayBar"));
}

inline void clickRecord(const DeckConsole& console, int number, Qt::KeyboardModifiers modifiers = {})
{
    QTableView& table = *console.window->records()->table();
    const QModelIndexList found =
        table.model()->match(table.model()->index(0, ZelkoCommon::AbstractRecordListModel::RecordIDColumn),
                             Qt::DisplayRole, RecordListSetting::id(number), 1, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    ZelkoConsole::operatorhands::clickRow(table, found.constFirst().row(), modifiers);
}

inline bool isShown(const DeckConsole& console, int number)
{
    return QTest::qWaitFor(
        [&] { return barOf(console).GetRecordingStart() == static_cast<double>(DeckConsole::beginOf(number)); },
        patience);
}

inline void choose(const DeckConsole& console, int number)
{
    clickRecord(console, number);
    QVERIFY(isShown(console, number));
}

/// Sets a bookmark at the begin of a record.
inline void bookmark(const DeckConsole& console, int number)
{
    choose(console, number);
    barOf(console).setFocus();
    QTest::keyClick(&barOf(console), Qt::Key_Insert);
    QCOMPARE(console.deck().bookmarks()->getSynchState(), ZelkoGUI::BookmarkModel::SynchLocalChange);
}

/// Chooses the user of that number in the menu; the viewer is 0, the operator 1, the administrator 2.
inline void clickUser(const DeckConsole& console, int number)
{
    QMenu& menu = *console.window->userMenu();
    menu.popup(console.window->mapToGlobal(QPoint(0, 0)));
    QTRY_VERIFY_WITH_TIMEOUT(menu.isVisible(), patience);
    QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier, menu.actionGeometry(menu.actions().at(number)).center());
}

/// The texts of the buttons of a message box.
inline QStringList buttonsOf(const QWidget* box)
{
    QStringList texts;
    for (const QAbstractButton* const button : qobject_cast<const QMessageBox*>(box)->buttons()) {
        texts.append(button->text().remove(QLatin1Char('&')));
    }
    return texts;
}

/// Clicks on the button with that text.
inline void press(const QWidget* box, const QString& text)
{
    const auto number = buttonsOf(box).indexOf(text);
    QVERIFY2(number >= 0, "there is no such button");
    QTest::mouseClick(qobject_cast<const QMessageBox*>(box)->buttons().at(number), Qt::LeftButton);
}

inline void escape(QWidget* box)
{
    QTest::keyClick(box, Qt::Key_Escape);
}

/// Answers a question, and escapes from the box behind it, whose text it keeps.
class TwoAnswers
{
public:
    explicit TwoAnswers(const QString& button)
        : m_first([this, button](QWidget* dialog) {
            m_second.emplace([this](QWidget* box) {
                m_said = qobject_cast<QMessageBox*>(box)->text();
                escape(box);
            });
            press(dialog, button);
        })
    {}

    const QString& said() const { return m_said; }

private:
    QString m_said;
    std::optional<ZelkoConsole::DialogAnswer> m_second;
    const ZelkoConsole::DialogAnswer m_first;
};

} // namespace deckhands
