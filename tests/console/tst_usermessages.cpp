#include "patience.h"

#include <console/window/usermessages.h>

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QWidget>

using namespace ZelkoConsole;

namespace {

void say(const char* text)
{
    ErrorHandler::Instance()->ShowMessage(QLatin1String(text));
}

struct Setting
{
    Setting()
        : messages(&window)
    {
        window.setWindowTitle(QStringLiteral("The window"));
        window.show();
    }

    QString shown() const { return messages.box() ? messages.box()->text() : QString(); }

    void accept() const { QTest::mouseClick(messages.box()->button(QMessageBox::Ok), Qt::LeftButton); }

    QWidget window;
    UserMessages messages;
};

} // namespace

class TestUserMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsAMessageInABoxOfTheWindow()
    {
        const Setting setting;
        say("It did not work.");
        QVERIFY(setting.messages.box());
        QTRY_VERIFY_WITH_TIMEOUT(setting.messages.box()->isVisible(), patience);
        QCOMPARE(setting.shown(), QStringLiteral("It did not work."));
        QCOMPARE(setting.messages.box()->parentWidget(), &setting.window);
        setting.accept();
        QVERIFY(!setting.messages.box());
    }

    void showsOneAfterTheOther()
    {
        const Setting setting;
        say("first");
        say("second");
        QCOMPARE(setting.shown(), QStringLiteral("first"));
        setting.accept();
        QCOMPARE(setting.shown(), QStringLiteral("second"));
        QTest::keyClick(setting.messages.box(), Qt::Key_Escape);
        QVERIFY(!setting.messages.box());
    }

    void showsTheSameMessageOnceWhileItWaitsOrIsShown()
    {
        const Setting setting;
        say("again");
        say("again");
        say("other");
        say("other");
        setting.accept();
        QCOMPARE(setting.shown(), QStringLiteral("other"));
        setting.accept();
        QVERIFY(!setting.messages.box());
        say("again");
        QCOMPARE(setting.shown(), QStringLiteral("again"));
        setting.accept();
    }

    void logsWhatIsTooMuchToRead()
    {
        const Setting setting;
        for (int number = 0; number <= UserMessages::mostWaiting; ++number) {
            say(QByteArray::number(number).constData());
        }
        QTest::ignoreMessage(QtWarningMsg, "one too many");
        say("one too many");
        int shown = 0;
        while (setting.messages.box()) {
            setting.accept();
            ++shown;
        }
        QCOMPARE(shown, UserMessages::mostWaiting + 1);
    }

    void showsATextJustAsItIs()
    {
        const Setting setting;
        say("<b>bold</b>");
        QCOMPARE(setting.messages.box()->textFormat(), Qt::PlainText);
        setting.accept();
    }

    void leavesMessagesToWhoeverHadThemBefore()
    {
        QStringList before;
        const auto sink = ErrorHandler::Instance()->SetMessageSink([&](const QString& text) { before.append(text); });
        {
            const Setting setting;
            say("to the box");
            QVERIFY(before.isEmpty());
        }
        say("to the one before");
        ErrorHandler::Instance()->SetMessageSink(sink);
        QCOMPARE(before, QStringList(QStringLiteral("to the one before")));
    }
};

QTEST_MAIN(TestUserMessages)
#include "tst_usermessages.moc"
