#include "patience.h"

#include <console/demo/samplesite.h>
#include <console/hands/dialoganswer.h>
#include <console/session/consoleuser.h>
#include <console/window/usermenu.h>

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;
using ZelkoCommon::LinkCredentials;
using ZelkoCommon::Role;

namespace {

struct Setting
{
    explicit Setting(bool knowsUsers)
    {
        if (knowsUsers) {
            site.knowUsers();
        }
        user = std::make_unique<ConsoleUser>(site);
        window.show();
        menu = new UserMenu(
            user.get(), [this] { return mayLeave; }, &window);
    }

    QStringList entries() const
    {
        QStringList texts;
        for (const QAction* const action : menu->actions()) {
            texts.append(action->text());
        }
        return texts;
    }

    QStringList checked() const
    {
        QStringList texts;
        for (const QAction* const action : menu->actions()) {
            if (action->isChecked()) {
                texts.append(action->text());
            }
        }
        return texts;
    }

    void choose(int entry) const
    {
        menu->popup(window.mapToGlobal(QPoint(10, 10)));
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                          menu->actionGeometry(menu->actions().at(entry)).center());
    }

    void deny()
    {
        site.setStatus(QStringLiteral("north"), {LinkState::Denied, QStringLiteral("user or password are wrong")});
    }

    SampleSite site{{QStringLiteral("north")}};
    std::unique_ptr<ConsoleUser> user;
    QWidget window;
    UserMenu* menu = nullptr;
    bool mayLeave = true;
};

void enter(QWidget* dialog, const char* name, const char* text)
{
    auto* const field = dialog->findChild<QLineEdit*>(QLatin1String(name));
    QVERIFY(field);
    field->selectAll();
    QTest::keyClicks(field, QLatin1String(text));
}

} // namespace

class TestUserMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsWhoMayNotLeave()
    {
        Setting setting(true);
        setting.mayLeave = false;
        setting.choose(2);
        QCOMPARE(setting.user->name(), QStringLiteral("operator"));
        QCOMPARE(setting.checked(), QStringList(QStringLiteral("operator")));
        setting.mayLeave = true;
        setting.choose(2);
        QCOMPARE(setting.user->name(), QStringLiteral("administrator"));
    }

    void beginsAsTheOperatorOfARecorderOfTheConsolesOwn()
    {
        const Setting setting(true);
        QCOMPARE(setting.entries(),
                 QStringList({QStringLiteral("viewer"), QStringLiteral("operator"), QStringLiteral("administrator")}));
        QCOMPARE(setting.checked(), QStringList(QStringLiteral("operator")));
        QCOMPARE(setting.menu->userText(), QStringLiteral("operator"));
    }

    void switchesToTheUserWhoIsClicked()
    {
        const Setting setting(true);
        const QSignalSpy changed(setting.menu, &UserMenu::userTextChanged);
        setting.choose(0);
        QCOMPARE(setting.checked(), QStringList(QStringLiteral("viewer")));
        QCOMPARE(setting.menu->userText(), QStringLiteral("viewer"));
        QCOMPARE(setting.site.actsFor(), (LinkCredentials{QStringLiteral("viewer"), QStringLiteral("secret")}));
        QVERIFY(!UserRights::DeleteRecordsAllowed());
        QVERIFY(!changed.isEmpty());
        setting.choose(2);
        QCOMPARE(setting.menu->userText(), QStringLiteral("administrator"));
        QVERIFY(UserRights::AdminAllowed());
    }

    void switchesByKeys()
    {
        const Setting setting(true);
        setting.menu->popup(setting.window.mapToGlobal(QPoint(10, 10)));
        QTest::keyClick(setting.menu, Qt::Key_Down);
        QTest::keyClick(setting.menu, Qt::Key_Return);
        QCOMPARE(setting.menu->userText(), QStringLiteral("viewer"));
    }

    void logsInWhereItKnowsNobody()
    {
        const Setting setting(false);
        QCOMPARE(setting.entries(), QStringList({QStringLiteral("Log &In…"), QStringLiteral("Log &Out")}));
        QCOMPARE(setting.menu->userText(), QStringLiteral("not logged in"));
        QVERIFY(!setting.menu->actions().at(1)->isEnabled());
        const DialogAnswer login([](QWidget* dialog) {
            enter(dialog, "userName", "anna");
            enter(dialog, "password", "pass");
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        setting.choose(0);
        QVERIFY(login.wasGiven());
        QCOMPARE(setting.site.actsFor(), (LinkCredentials{QStringLiteral("anna"), QStringLiteral("pass")}));
        QCOMPARE(setting.menu->userText(), QStringLiteral("anna (viewer)"));
    }

    void showsWhatTheRecorderTakesTheUserFor()
    {
        Setting setting(false);
        setting.user->logIn({QStringLiteral("anna"), QStringLiteral("pass")});
        setting.site.setRole(QStringLiteral("north"), Role::Operator);
        setting.site.connectTo(QStringLiteral("north"));
        QCOMPARE(setting.menu->userText(), QStringLiteral("anna (operator)"));
        QVERIFY(UserRights::DeleteRecordsAllowed());
    }

    void asksOnlyForThePasswordOfAUserWhoIsNamed()
    {
        const Setting setting(false);
        const DialogAnswer login([](QWidget* dialog) {
            QCOMPARE(dialog->findChild<QLineEdit*>(QStringLiteral("userName"))->text(), QStringLiteral("berta"));
            enter(dialog, "password", "pass");
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        setting.menu->logIn(QStringLiteral("berta"));
        QVERIFY(login.wasGiven());
        QCOMPARE(setting.site.actsFor(), (LinkCredentials{QStringLiteral("berta"), QStringLiteral("pass")}));
    }

    void logsNobodyInWhenTheDialogIsLeft()
    {
        const Setting setting(false);
        const DialogAnswer cancel([](QWidget* dialog) {
            enter(dialog, "userName", "anna");
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        setting.choose(0);
        QVERIFY(cancel.wasGiven());
        QCOMPARE(setting.site.actsFor(), LinkCredentials());
        QCOMPARE(setting.menu->userText(), QStringLiteral("not logged in"));
    }

    void survivesTheEndOfItsWindowWhileTheDialogIsOpen()
    {
        Setting setting(false);
        auto* const window = new QWidget;
        auto* const menu = new UserMenu(
            setting.user.get(), [] { return true; }, window);
        const DialogAnswer end([window](QWidget*) { delete window; });
        menu->actions().at(0)->trigger();
        QVERIFY(end.wasGiven());
        QCOMPARE(setting.site.actsFor(), LinkCredentials());
    }

    void asksAgainWithTheReasonWhenAccessIsDenied()
    {
        Setting setting(false);
        setting.user->logIn({QStringLiteral("anna"), QStringLiteral("wrong")});
        const DialogAnswer login([](QWidget* dialog) {
            const auto* const reason = dialog->findChild<QLabel*>(QStringLiteral("reason"));
            QVERIFY(reason->isVisible());
            QCOMPARE(reason->text(), QStringLiteral("Access denied: user or password are wrong."));
            QCOMPARE(dialog->findChild<QLineEdit*>(QStringLiteral("userName"))->text(), QStringLiteral("anna"));
            enter(dialog, "password", "right");
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        setting.deny();
        QCOMPARE(setting.menu->userText(), QStringLiteral("anna (access denied)"));
        QTRY_VERIFY_WITH_TIMEOUT(login.wasGiven(), patience);
        QCOMPARE(setting.site.actsFor(), (LinkCredentials{QStringLiteral("anna"), QStringLiteral("right")}));
    }

    void asksOnceWhenTheDialogIsLeft()
    {
        Setting setting(false);
        setting.user->logIn({QStringLiteral("anna"), QStringLiteral("wrong")});
        int asked = 0;
        const DialogAnswer cancel([&asked](QWidget* dialog) {
            ++asked;
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        setting.deny();
        QTRY_COMPARE_WITH_TIMEOUT(asked, 1, patience);
        setting.deny(); // as with the next attempt of the connection
        QCoreApplication::processEvents();
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(setting.menu->userText(), QStringLiteral("anna (access denied)"));
    }

    // The answer was on its way to the menu when somebody else began to work here.
    void doesNotAskTheNextUserForTheDenialOfTheOneBefore()
    {
        Setting setting(false);
        setting.user->logIn({QStringLiteral("anna"), QStringLiteral("wrong")});
        const DialogAnswer unwanted([](QWidget* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        setting.deny();
        setting.user->logIn({QStringLiteral("berta"), QStringLiteral("right")});
        setting.site.setRole(QStringLiteral("north"), ZelkoCommon::Role::Operator);
        setting.site.connectTo(QStringLiteral("north"));
        QCoreApplication::processEvents(); // in which the dialog would come and block
        QVERIFY(!unwanted.wasGiven());
        QCOMPARE(setting.menu->userText(), QStringLiteral("berta (operator)"));
    }

    void logsOut()
    {
        const Setting setting(false);
        setting.user->logIn({QStringLiteral("anna"), QStringLiteral("pass")});
        setting.choose(1);
        QCOMPARE(setting.site.actsFor(), LinkCredentials());
        QCOMPARE(setting.menu->userText(), QStringLiteral("not logged in"));
    }

    void showsANameJustAsItIs()
    {
        const Setting setting(false);
        setting.user->logIn({QStringLiteral("R&D <i>"), QStringLiteral("pass")});
        QCOMPARE(setting.menu->userText(), QStringLiteral("R&D <i> (viewer)"));
    }
};

QTEST_MAIN(TestUserMenu)
#include "tst_usermenu.moc"
