#include <resources/zelkoicons.h>

#include <QDirIterator>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QtTest>

namespace {

// What the windows of the library ask for.
const char* const paths[] = {
    ":/Filter/Icons/Filter.svg",
    ":/Filter/Icons/FilterActive.svg",
    ":/Filter/Icons/OpenFolder.svg",
    ":/Filter/Icons/Reset.svg",
    ":/Filter/Icons/Save.svg",
    ":/Zelko/Archive/AbortTransfer.svg",
    ":/Zelko/Archive/CancelTransfer.svg",
    ":/Zelko/Archive/Error.svg",
    ":/Zelko/Archive/OK.svg",
    ":/Zelko/Archive/OpenFolder.svg",
    ":/Zelko/Archive/Reload.svg",
    ":/Zelko/Bite/PrintBite.svg",
    ":/Zelko/Bite/SaveBite.svg",
    ":/Zelko/Bookmarks/Add.svg",
    ":/Zelko/Bookmarks/ApplyBookmarks.svg",
    ":/Zelko/Bookmarks/ApplyRange.svg",
    ":/Zelko/Bookmarks/Delete.svg",
    ":/Zelko/Bookmarks/Normalize.svg",
    ":/Zelko/Bookmarks/RefreshBookmarks.svg",
    ":/Zelko/Bookmarks/ResetBookmarks.svg",
    ":/Zelko/Cfg/Editable.svg",
    ":/Zelko/Cfg/Error.svg",
    ":/Zelko/Cfg/Folder.svg",
    ":/Zelko/Cfg/Info.svg",
    ":/Zelko/Cfg/OK.svg",
    ":/Zelko/Cfg/OpenedFolder.svg",
    ":/Zelko/Cfg/QX310_Device.ico",
    ":/Zelko/Cfg/ReadOnly.svg",
    ":/Zelko/Cfg/Reset.svg",
    ":/Zelko/Cfg/RunAutoDeletion.svg",
    ":/Zelko/Cfg/Warning.svg",
    ":/Zelko/Cfg/ZELKO_Device.ico",
    ":/Zelko/CopyRecord/ResetToEnd",
    ":/Zelko/CopyRecord/ResetToStart",
    ":/Zelko/CopyRecord/Save.svg",
    ":/Zelko/CopyRecord/SetCurrentPos.svg",
    ":/Zelko/History/AddHistory.svg",
    ":/Zelko/History/DeleteHistory.svg",
    ":/Zelko/History/EditHistory.svg",
    ":/Zelko/Management/Bite.svg",
    ":/Zelko/Management/Reboot.svg",
    ":/Zelko/Management/Shutdown.svg",
    ":/Zelko/RecordList/Bookmarks.svg",
    ":/Zelko/RecordList/Delete.svg",
    ":/Zelko/RecordList/Download.svg",
    ":/Zelko/RecordList/Edit.svg",
    ":/Zelko/RecordList/EditCopy.svg",
    ":/Zelko/RecordList/History.svg",
    ":/Zelko/RecordList/Rename.svg",
    ":/Zelko/RecordList/Reset.svg",
    ":/Zelko/RecordList/ResetDeletable.svg",
    ":/Zelko/RecordList/SelectMarker.svg",
    ":/Zelko/RecordList/SetDeletable.svg",
    ":/Zelko/RecordList/SpectrumOverview.svg",
    ":/Zelko/RecordList/Upload.svg",
};

QStringList registered()
{
    QStringList all;
    for (const char* const root : {":/Zelko", ":/Filter"}) {
        for (QDirIterator it(QLatin1String(root), QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
            all << it.next();
        }
    }
    all.sort();
    return all;
}

/// Pixels that differ clearly from the background.
int visiblePixels(const QIcon& icon, QColor background)
{
    QImage image(24, 24, QImage::Format_ARGB32);
    image.fill(background);
    QPainter painter(&image);
    icon.paint(&painter, image.rect());
    painter.end();
    int visible = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            visible += std::abs(qGray(image.pixel(x, y)) - qGray(background.rgb())) > 40 ? 1 : 0;
        }
    }
    return visible;
}

} // namespace

class ZelkoIconsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void holdsEachIconThatIsAskedForAndNoOther();
    void showsOnLightAndOnDark_data();
    void showsOnLightAndOnDark();
};

void ZelkoIconsTest::holdsEachIconThatIsAskedForAndNoOther()
{
    QStringList wanted;
    for (const char* const path : paths) {
        wanted << QLatin1String(path);
    }
    wanted.sort();
    QCOMPARE(registered(), wanted);
}

void ZelkoIconsTest::showsOnLightAndOnDark_data()
{
    QTest::addColumn<QString>("path");
    for (const char* const path : paths) {
        QTest::newRow(path) << QString::fromLatin1(path);
    }
}

void ZelkoIconsTest::showsOnLightAndOnDark()
{
    QFETCH(QString, path);
    const QIcon icon(path);
    QVERIFY(!icon.isNull());
    QVERIFY2(visiblePixels(icon, Qt::white) >= 20, qPrintable(QString::number(visiblePixels(icon, Qt::white))));
    QVERIFY2(visiblePixels(icon, QColor(40, 40, 44)) >= 20,
             qPrintable(QString::number(visiblePixels(icon, QColor(40, 40, 44)))));
}

QTEST_MAIN(ZelkoIconsTest)
#include "tst_zelkoicons.moc"
