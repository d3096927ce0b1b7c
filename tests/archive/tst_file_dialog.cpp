#include "filedialogasked.h"

#include <vornappstartup/cfgcenter.h>
#include <zelkoguibase/archive/file_dialog.h>

#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

using namespace ZelkoGUI;
using ZelkoTest::askedBy;
using ZelkoTest::FileDialogAsked;

/// The configuration of this process says nothing about the dialogs when the first one is opened.
class FileDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void theNativeDialogIsUsedWhereNothingIsSaid();
    void theWishOfTheCallerIsOverruled_data();
    void theWishOfTheCallerIsOverruled();
    void aLaterChangeOfTheSettingHasNoEffect();
    void asksForAFolder();
    void asksForAFileToOpen();
    void asksForFilesToOpen();
    void asksForAFileToSave();
    void aCancelledDialogGivesNothing();
    void givesTheFileThatWasChosen();

private:
    QString folder() const { return m_folder.path(); }

    const QTemporaryDir m_folder;
    const QString m_title = QStringLiteral("Choose one");
    const QString m_filter = QStringLiteral("XML Files (*.xml);;All Files (*)");
};

void FileDialogTest::initTestCase()
{
    CfgCenter::SetFile(ICfg::ApplicationView, m_folder.filePath(QStringLiteral("application.ini")));
    CfgCenter::SetFile(ICfg::UserView, m_folder.filePath(QStringLiteral("user.ini")));
    // The user has no say in it.
    CfgCenter::GetAppCfg(ICfg::UserView)->SetBool(QStringLiteral("UseNativeDialogs"), false);
}

void FileDialogTest::theNativeDialogIsUsedWhereNothingIsSaid()
{
    const auto asked = askedBy([] { file_dialog::getOpenFileName(); });
    QVERIFY(asked);
    QVERIFY(asked->isNative());
}

void FileDialogTest::theWishOfTheCallerIsOverruled_data()
{
    QTest::addColumn<std::function<void()>>("call");

    constexpr auto own = QFileDialog::DontUseNativeDialog;
    QTest::newRow("a folder") << std::function<void()>([] { file_dialog::getExistingDirectory({}, {}, {}, own); });
    QTest::newRow("a file") << std::function<void()>([] { file_dialog::getOpenFileName({}, {}, {}, {}, {}, own); });
    QTest::newRow("files") << std::function<void()>([] { file_dialog::getOpenFileNames({}, {}, {}, {}, {}, own); });
    QTest::newRow("saving") << std::function<void()>([] { file_dialog::getSaveFileName({}, {}, {}, {}, {}, own); });
}

void FileDialogTest::theWishOfTheCallerIsOverruled()
{
    QFETCH(std::function<void()>, call);
    const auto asked = askedBy(call);
    QVERIFY(asked);
    QVERIFY(asked->isNative());
}

void FileDialogTest::aLaterChangeOfTheSettingHasNoEffect()
{
    CfgCenter::GetAppCfg(ICfg::ApplicationView)->SetBool(QStringLiteral("UseNativeDialogs"), false);
    const auto asked = askedBy([] { file_dialog::getOpenFileName(); });
    QVERIFY(asked);
    QVERIFY(asked->isNative());
}

void FileDialogTest::asksForAFolder()
{
    QWidget parent;
    const auto asked = askedBy([&] {
        file_dialog::getExistingDirectory(&parent, m_title, folder(),
                                          QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
    });
    QVERIFY(asked);
    QCOMPARE(asked->parent, &parent);
    QCOMPARE(asked->title, m_title);
    QCOMPARE(asked->folder, folder());
    QCOMPARE(asked->fileMode, QFileDialog::Directory);
    QCOMPARE(asked->options, QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
}

void FileDialogTest::asksForAFileToOpen()
{
    QWidget parent;
    QString selected = QStringLiteral("All Files (*)");
    const auto asked = askedBy(
        [&] { file_dialog::getOpenFileName(&parent, m_title, folder(), m_filter, &selected, QFileDialog::ReadOnly); });
    QVERIFY(asked);
    QCOMPARE(asked->parent, &parent);
    QCOMPARE(asked->title, m_title);
    QCOMPARE(asked->folder, folder());
    QCOMPARE(asked->nameFilters.join(QStringLiteral(";;")), m_filter);
    QCOMPARE(asked->selectedNameFilter, selected);
    QCOMPARE(asked->fileMode, QFileDialog::ExistingFile);
    QCOMPARE(asked->acceptMode, QFileDialog::AcceptOpen);
    QCOMPARE(asked->options, QFileDialog::Options(QFileDialog::ReadOnly));
}

void FileDialogTest::asksForFilesToOpen()
{
    QWidget parent;
    const auto asked = askedBy([&] { file_dialog::getOpenFileNames(&parent, m_title, folder(), m_filter, nullptr); });
    QVERIFY(asked);
    QCOMPARE(asked->parent, &parent);
    QCOMPARE(asked->title, m_title);
    QCOMPARE(asked->folder, folder());
    QCOMPARE(asked->nameFilters.join(QStringLiteral(";;")), m_filter);
    QCOMPARE(asked->fileMode, QFileDialog::ExistingFiles);
    QCOMPARE(asked->acceptMode, QFileDialog::AcceptOpen);
    QCOMPARE(asked->options, QFileDialog::Options());
}

void FileDialogTest::asksForAFileToSave()
{
    QWidget parent;
    const auto asked = askedBy([&] {
        file_dialog::getSaveFileName(&parent, m_title, folder(), m_filter, nullptr, QFileDialog::DontConfirmOverwrite);
    });
    QVERIFY(asked);
    QCOMPARE(asked->parent, &parent);
    QCOMPARE(asked->title, m_title);
    QCOMPARE(asked->folder, folder());
    QCOMPARE(asked->nameFilters.join(QStringLiteral(";;")), m_filter);
    QCOMPARE(asked->fileMode, QFileDialog::AnyFile);
    QCOMPARE(asked->acceptMode, QFileDialog::AcceptSave);
    QCOMPARE(asked->options, QFileDialog::Options(QFileDialog::DontConfirmOverwrite));
}

void FileDialogTest::aCancelledDialogGivesNothing()
{
    QString name = QStringLiteral("untouched");
    QStringList names(name);
    QVERIFY(askedBy([&] { name = file_dialog::getOpenFileName(); }));
    QVERIFY(name.isNull());
    QVERIFY(askedBy([&] { names = file_dialog::getOpenFileNames(); }));
    QVERIFY(names.isEmpty());
    name = QStringLiteral("untouched");
    QVERIFY(askedBy([&] { name = file_dialog::getSaveFileName(); }));
    QVERIFY(name.isNull());
    name = QStringLiteral("untouched");
    QVERIFY(askedBy([&] { name = file_dialog::getExistingDirectory(); }));
    QVERIFY(name.isNull());
}

void FileDialogTest::givesTheFileThatWasChosen()
{
    const ZelkoConsole::DialogAnswer answer([](QWidget* window) {
        auto* const edit = window->findChild<QLineEdit*>();
        QVERIFY(edit);
        QTest::keyClicks(edit, QStringLiteral("filter.xml"));
        QTest::keyClick(edit, Qt::Key_Return);
    });
    const QString name = file_dialog::getSaveFileName(nullptr, m_title, folder(), m_filter);
    QVERIFY(answer.wasGiven());
    QCOMPARE(name, m_folder.filePath(QStringLiteral("filter.xml")));
}

QTEST_MAIN(FileDialogTest)
#include "tst_file_dialog.moc"
