#include "patience.h"

#include <console/window/logindialog.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace ZelkoConsole;
using ZelkoCommon::LinkCredentials;

namespace {

struct Setting
{
    explicit Setting(const QString& user = QString())
        : dialog(user)
    {
        dialog.show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog, patience));
    }

    QLineEdit& name() const { return *dialog.findChild<QLineEdit*>(QStringLiteral("userName")); }
    QLineEdit& password() const { return *dialog.findChild<QLineEdit*>(QStringLiteral("password")); }

    QPushButton& button(const char* text) const
    {
        for (QPushButton* const button : dialog.findChildren<QPushButton*>()) {
            if (button->text().remove(QLatin1Char('&')) == QLatin1String(text)) {
                return *button;
            }
        }
        qFatal("there is no such button");
    }

    LoginDialog dialog;
};

} // namespace

class TestLoginDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesWhatIsEntered()
    {
        Setting setting;
        QVERIFY(setting.name().hasFocus());
        QTest::keyClicks(&setting.name(), QStringLiteral(" anna "));
        QTest::keyClick(&setting.name(), Qt::Key_Tab);
        QVERIFY(setting.password().hasFocus());
        QTest::keyClicks(&setting.password(), QStringLiteral(" secret "));
        QTest::keyClick(&setting.password(), Qt::Key_Return);
        QCOMPARE(setting.dialog.result(), int(QDialog::Accepted));
        QVERIFY(!setting.dialog.isVisible());
        QCOMPARE(setting.dialog.credentials(), (LinkCredentials{QStringLiteral("anna"), QStringLiteral(" secret ")}));
    }

    void takesNobodyWithoutAName()
    {
        const Setting setting;
        QVERIFY(!setting.button("Log In").isEnabled());
        QTest::keyClicks(&setting.name(), QStringLiteral("  "));
        QVERIFY(!setting.button("Log In").isEnabled());
        QTest::keyClick(&setting.name(), Qt::Key_Return);
        QVERIFY(setting.dialog.isVisible());
        QTest::keyClicks(&setting.name(), QStringLiteral("b"));
        QTest::mouseClick(&setting.button("Log In"), Qt::LeftButton);
        QCOMPARE(setting.dialog.result(), int(QDialog::Accepted));
    }

    void goesOnWithThePasswordOfAKnownName()
    {
        const Setting setting(QStringLiteral("anna"));
        QVERIFY(setting.password().hasFocus());
        QCOMPARE(setting.name().text(), QStringLiteral("anna"));
        QCOMPARE(setting.password().text(), QString());
    }

    void hidesThePassword()
    {
        const Setting setting;
        QTest::keyClicks(&setting.password(), QStringLiteral("secret"));
        QVERIFY(!setting.password().displayText().contains(QLatin1Char('s')));
    }

    void saysWhyItAsksAgain()
    {
        Setting setting(QStringLiteral("anna"));
        const auto* const reason = setting.dialog.findChild<QLabel*>(QStringLiteral("reason"));
        QVERIFY(!reason->isVisible());
        setting.dialog.showReason(QStringLiteral("no <b>such</b> user"));
        QVERIFY(reason->isVisible());
        QCOMPARE(reason->text(), QStringLiteral("Access denied: no <b>such</b> user."));
        QCOMPARE(reason->textFormat(), Qt::PlainText);
    }

    void canBeLeft()
    {
        const Setting setting(QStringLiteral("anna"));
        QTest::mouseClick(&setting.button("Cancel"), Qt::LeftButton);
        QCOMPARE(setting.dialog.result(), int(QDialog::Rejected));
        QVERIFY(!setting.dialog.isVisible());
    }
};

QTEST_MAIN(TestLoginDialog)
#include "tst_logindialog.moc"
