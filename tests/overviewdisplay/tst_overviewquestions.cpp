#include <overviewdisplay/overviewquestions_p.h>

#include "patience.h"

#include <console/hands/dialoganswer.h>
#include <vornappstartup/cfgcenter.h>

#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

using namespace SPECTRUM_OVERVIEW;

/// What an overview asks its user, and how it saves a picture. Its texts and files are tested with the window.
class OverviewQuestionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void namesOfRecordsBecomeNamesOfFiles_data();
    void namesOfRecordsBecomeNamesOfFiles();
    void theLastFolderIsOffered();
    void aPictureTakesThePlaceOfTheOneBefore();
    void whatCannotBeSavedLeavesTheOneBefore();

private:
    const QTemporaryDir m_folder;
};

void OverviewQuestionsTest::initTestCase()
{
    CfgCenter::SetFile(ICfg::ApplicationView, m_folder.filePath(QStringLiteral("application.ini")));
    CfgCenter::GetAppCfg(ICfg::ApplicationView)->SetBool(QStringLiteral("UseNativeDialogs"), false);
}

void OverviewQuestionsTest::cleanupTestCase()
{
    CfgCenter::SetFile(ICfg::ApplicationView, QString());
}

void OverviewQuestionsTest::namesOfRecordsBecomeNamesOfFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("fileName");
    QTest::newRow("plain") << "beacon 7"
                           << "beacon 7.png";
    QTest::newRow("letters of any language")
        << QStringLiteral("Funkfeuer Höhe") << QStringLiteral("Funkfeuer Höhe.png");
    QTest::newRow("a path") << "/etc/passwd"
                            << "_etc_passwd.png";
    QTest::newRow("a path upwards") << "../up"
                                    << "overview.png";
    QTest::newRow("a hidden file") << ".hidden"
                                   << "overview.png";
    QTest::newRow("signs") << "a:b*c?d|e<f>g\nh"
                           << "a_b_c_d_e_f_g_h.png";
    QTest::newRow("nothing") << QString() << "overview.png";
    QTest::newRow("blanks") << "   "
                            << "overview.png";
    QTest::newRow("long") << QString(10'000, u'x') << QString(240, u'x') + ".png";
    QTest::newRow("long in letters of three bytes") << QString(100, u'録') << QString(80, u'録') + ".png";
    QTest::newRow("a letter across the end") << QString(119, u'é') + "x録" << QString(119, u'é') + "x.png";
}

void OverviewQuestionsTest::namesOfRecordsBecomeNamesOfFiles()
{
    QFETCH(QString, name);
    QWidget window;
    window.show();
    QString offered;
    const ZelkoConsole::DialogAnswer answer([&offered](QWidget* dialog) {
        offered = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
    });
    askPictureFile(&window, m_folder.path(), name, [](const QString&) { QFAIL("nothing was chosen"); });
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QTEST(offered, "fileName");
    QImage picture(20, 10, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QCOMPARE(savePicture(picture, m_folder.filePath(offered)), QString());
}

void OverviewQuestionsTest::theLastFolderIsOffered()
{
    QWidget window;
    window.show();
    QStringList offered;
    for (const QString& folder : {m_folder.path(), m_folder.filePath(QStringLiteral("missing"))}) {
        const ZelkoConsole::DialogAnswer answer(
            [&offered](QWidget* dialog) { offered << qobject_cast<QFileDialog*>(dialog)->directory().absolutePath(); });
        askPictureFile(&window, folder, QString(), [](const QString&) {});
        QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    }
    QCOMPARE(offered.size(), 2);
    QCOMPARE(offered.first(), m_folder.path());
    QVERIFY(offered.last() != m_folder.filePath(QStringLiteral("missing")));
}

void OverviewQuestionsTest::aPictureTakesThePlaceOfTheOneBefore()
{
    const QString file = m_folder.filePath(QStringLiteral("picture.png"));
    QImage picture(20, 10, QImage::Format_RGB32);
    for (const QRgb colour : {qRgb(255, 0, 0), qRgb(0, 0, 255)}) {
        picture.fill(colour);
        QCOMPARE(savePicture(picture, file), QString());
        QCOMPARE(QImage(file).convertToFormat(QImage::Format_RGB32), picture);
    }
}

void OverviewQuestionsTest::whatCannotBeSavedLeavesTheOneBefore()
{
    const QString file = m_folder.filePath(QStringLiteral("kept.png"));
    QImage picture(20, 10, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QCOMPARE(savePicture(picture, file), QString());
    QVERIFY(savePicture(QImage(), file).startsWith(file));
    QCOMPARE(QImage(file).convertToFormat(QImage::Format_RGB32), picture);
    QVERIFY(!savePicture(picture, m_folder.path()).isEmpty());
    QVERIFY(!savePicture(picture, m_folder.filePath(QStringLiteral("missing/picture.png"))).isEmpty());
}

QTEST_MAIN(OverviewQuestionsTest)

#include "tst_overviewquestions.moc"
