#include <widgetbase/warningbox.h>

#include "patience.h"

#include <console/hands/dialoganswer.h>

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

#include <memory>

using ZelkoConsole::DialogAnswer;

/// The box that warns, as its user sees it.
class WarningBoxTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theAnswerIsTheButtonThatWasPressed();
    void textsAreShownAsTheyAre();
    void withoutAnExplanationThereIsNone();
    void theParentMayGoWhileTheBoxIsOpen();
    void aQuestionIsAskedTheSameWay();

private:
    static QMessageBox* boxIn(QWidget* window)
    {
        auto* const box = qobject_cast<QMessageBox*>(window);
        [box] { QVERIFY(box); }();
        return box;
    }
    static void press(QWidget* window, QMessageBox::StandardButton button)
    {
        QTest::mouseClick(boxIn(window)->button(button), Qt::LeftButton);
    }
};

void WarningBoxTest::theAnswerIsTheButtonThatWasPressed()
{
    QWidget parent;
    const QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No;
    for (const QMessageBox::StandardButton button : {QMessageBox::Yes, QMessageBox::No}) {
        const DialogAnswer answer([&](QWidget* window) {
            QCOMPARE(window->parentWidget(), &parent);
            QCOMPARE(boxIn(window)->icon(), QMessageBox::Warning);
            QCOMPARE(boxIn(window)->standardButtons(), buttons);
            QCOMPARE(window->windowTitle(), QStringLiteral("Title"));
            press(window, button);
        });
        QCOMPARE(guiHelper::warn(&parent, QStringLiteral("Title"), QStringLiteral("Text"), buttons), button);
        QVERIFY(answer.wasGiven());
    }
}

// Markup that was escaped, read as markup, is the text that was given.
void WarningBoxTest::textsAreShownAsTheyAre()
{
    const QString markup = QStringLiteral("<b>bold</b> & <u>more</u>");
    const DialogAnswer answer([&](QWidget* window) {
        QCOMPARE(boxIn(window)->text(), markup);
        QCOMPARE(boxIn(window)->textFormat(), Qt::PlainText);
        auto* const shown = window->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"));
        QVERIFY(shown);
        QVERIFY(Qt::mightBeRichText(shown->text()));
        QVERIFY2(shown->text().contains(markup.toHtmlEscaped()), qPrintable(shown->text()));
        press(window, QMessageBox::Ok);
    });
    guiHelper::warn(nullptr, QStringLiteral("Title"), markup, QMessageBox::Ok, markup);
    QVERIFY(answer.wasGiven());
}

void WarningBoxTest::withoutAnExplanationThereIsNone()
{
    const DialogAnswer answer([&](QWidget* window) {
        QVERIFY(!window->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")));
        press(window, QMessageBox::Ok);
    });
    guiHelper::warn(nullptr, QStringLiteral("Title"), QStringLiteral("Text"), QMessageBox::Ok);
    QVERIFY(answer.wasGiven());
}

void WarningBoxTest::theParentMayGoWhileTheBoxIsOpen()
{
    auto parent = std::make_unique<QWidget>();
    const DialogAnswer answer([&](QWidget*) { parent.reset(); });
    QCOMPARE(guiHelper::warn(parent.get(), QStringLiteral("Title"), QStringLiteral("Text"), QMessageBox::Ok),
             QMessageBox::NoButton);
    QVERIFY(answer.wasGiven());
    QVERIFY(!parent);
}

void WarningBoxTest::aQuestionIsAskedTheSameWay()
{
    QWidget parent;
    const DialogAnswer answer([&](QWidget* window) {
        QCOMPARE(window->parentWidget(), &parent);
        QCOMPARE(boxIn(window)->icon(), QMessageBox::Question);
        QCOMPARE(boxIn(window)->text(), QStringLiteral("<b>Sure?</b>"));
        QCOMPARE(boxIn(window)->textFormat(), Qt::PlainText);
        QVERIFY(!window->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")));
        press(window, QMessageBox::No);
    });
    QCOMPARE(guiHelper::ask(&parent, QStringLiteral("Title"), QStringLiteral("<b>Sure?</b>"),
                            QMessageBox::Yes | QMessageBox::No),
             QMessageBox::No);
    QVERIFY(answer.wasGiven());
}

QTEST_MAIN(WarningBoxTest)
#include "tst_warningbox.moc"
