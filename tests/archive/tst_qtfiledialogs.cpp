#include "filedialogasked.h"

#include <vornappstartup/cfgcenter.h>
#include <zelkoguibase/archive/file_dialog.h>

#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace ZelkoGUI;
using ZelkoTest::askedBy;

/// The configuration of this process asks for the dialogs of Qt.
class QtFileDialogsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void allDialogsAreThoseOfQt_data();
    void allDialogsAreThoseOfQt();
    void otherOptionsStay();
    void aLaterChangeOfTheSettingHasNoEffect();
    void theParentMayGoWhileADialogIsOpen_data();
    void theParentMayGoWhileADialogIsOpen();

private:
    const QTemporaryDir m_folder;
};

void QtFileDialogsTest::initTestCase()
{
    CfgCenter::SetFile(ICfg::ApplicationView, m_folder.filePath(QStringLiteral("application.ini")));
    CfgCenter::GetAppCfg(ICfg::ApplicationView)->SetBool(QStringLiteral("UseNativeDialogs"), false);
}

void QtFileDialogsTest::allDialogsAreThoseOfQt_data()
{
    QTest::addColumn<std::function<void()>>("call");

    QTest::newRow("a folder") << std::function<void()>([] { file_dialog::getExistingDirectory(); });
    QTest::newRow("a file") << std::function<void()>([] { file_dialog::getOpenFileName(); });
    QTest::newRow("files") << std::function<void()>([] { file_dialog::getOpenFileNames(); });
    QTest::newRow("saving") << std::function<void()>([] { file_dialog::getSaveFileName(); });
}

void QtFileDialogsTest::allDialogsAreThoseOfQt()
{
    QFETCH(std::function<void()>, call);
    const auto asked = askedBy(call);
    QVERIFY(asked);
    QVERIFY(!asked->isNative());
}

void QtFileDialogsTest::otherOptionsStay()
{
    const auto asked = askedBy([] {
        file_dialog::getSaveFileName(nullptr, {}, {}, {}, nullptr,
                                     QFileDialog::ReadOnly | QFileDialog::DontConfirmOverwrite);
    });
    QVERIFY(asked);
    QCOMPARE(asked->options,
             QFileDialog::ReadOnly | QFileDialog::DontConfirmOverwrite | QFileDialog::DontUseNativeDialog);
}

void QtFileDialogsTest::aLaterChangeOfTheSettingHasNoEffect()
{
    CfgCenter::GetAppCfg(ICfg::ApplicationView)->SetBool(QStringLiteral("UseNativeDialogs"), true);
    const auto asked = askedBy([] { file_dialog::getOpenFileName(); });
    QVERIFY(asked);
    QVERIFY(!asked->isNative());
}

using Ask = std::function<QStringList(QWidget*)>;

void QtFileDialogsTest::theParentMayGoWhileADialogIsOpen_data()
{
    QTest::addColumn<Ask>("ask");

    QTest::newRow("a folder") << Ask(
        [](QWidget* parent) { return QStringList(file_dialog::getExistingDirectory(parent)); });
    QTest::newRow("a file") << Ask([](QWidget* parent) { return QStringList(file_dialog::getOpenFileName(parent)); });
    QTest::newRow("files") << Ask([](QWidget* parent) { return file_dialog::getOpenFileNames(parent); });
    QTest::newRow("saving") << Ask([](QWidget* parent) { return QStringList(file_dialog::getSaveFileName(parent)); });
}

void QtFileDialogsTest::theParentMayGoWhileADialogIsOpen()
{
    QFETCH(Ask, ask);
    auto window = std::make_unique<QWidget>();
    const QPointer<QWidget> parent = new QWidget(window.get());
    const ZelkoConsole::DialogAnswer answer([&window](QWidget* dialog) {
        QVERIFY(qobject_cast<QFileDialog*>(dialog));
        window.reset();
    });
    QCOMPARE(ask(parent).join(QString()), QString());
    QVERIFY(answer.wasGiven());
    QVERIFY(!parent);
}

QTEST_MAIN(QtFileDialogsTest)
#include "tst_qtfiledialogs.moc"
