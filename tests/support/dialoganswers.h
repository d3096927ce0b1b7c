#pragma once

#include <console/hands/dialoganswer.h>

#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

/// Answers of a user to the questions of actions, with mouse and keys.
namespace answers {

/// Clicks on a button of a message box.
inline void clickOn(QWidget* window, QMessageBox::StandardButton button)
{
    auto* const box = qobject_cast<QMessageBox*>(window);
    QVERIFY(box);
    QTest::mouseClick(box->button(button), Qt::LeftButton);
}
inline std::function<void(QWidget*)> click(QMessageBox::StandardButton button)
{
    return [button](QWidget* window) { clickOn(window, button); };
}

/// Types a text in place of the one that is offered.
inline void typeInto(QInputDialog* dialog, const QString& text)
{
    auto* const edit = dialog->findChild<QLineEdit*>();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

/// Takes the text that stands there.
inline void accept(QInputDialog* dialog)
{
    QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

/// Types a text in place of the one that is offered, and takes it.
inline std::function<void(QWidget*)> type(const QString& text)
{
    return [text](QWidget* window) {
        auto* const dialog = qobject_cast<QInputDialog*>(window);
        QVERIFY(dialog);
        typeInto(dialog, text);
        accept(dialog);
    };
}

} // namespace answers
