#include <resources/zelkoicons.h>

#include <QDirIterator>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
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
int visiblePixels(const QIcon& icon, int size, QColor background)
{
    QImage image(size, size, QImage::Format_ARGB32);
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
    void drawsAllLinesInOneWidth();
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
    QTest::addColumn<int>("size");
    QTest::addColumn<QColor>("background");
    for (const char* const path : paths) {
        for (const int size : {16, 32}) {
            for (const auto& [name, background] :
                 {std::pair("light", QColor(Qt::white)), std::pair("dark", QColor(40, 40, 44))}) {
                QTest::addRow("%s at %d on %s", path, size, name) << QString::fromLatin1(path) << size << background;
            }
        }
    }
}

// A twentieth of the square is what a thin line through it covers.
void ZelkoIconsTest::showsOnLightAndOnDark()
{
    QFETCH(QString, path);
    QFETCH(int, size);
    QFETCH(QColor, background);
    const QIcon icon(path);
    QVERIFY(!icon.isNull());
    QCOMPARE(icon.actualSize(QSize(size, size)), QSize(size, size));
    const int visible = visiblePixels(icon, size, background);
    QVERIFY2(visible * 20 >= size * size, qPrintable(QString::number(visible)));
}

void ZelkoIconsTest::drawsAllLinesInOneWidth()
{
    static const QRegularExpression width(QStringLiteral("stroke-width=\"([^\"]*)\""));
    QStringList widths;
    for (const QString& path : registered().filter(QStringLiteral(".svg"))) {
        QFile drawing(path);
        QVERIFY(drawing.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(drawing.readAll());
        for (auto match = width.globalMatch(text); match.hasNext();) {
            widths << match.next().captured(1);
        }
    }
    widths.removeDuplicates();
    QCOMPARE(widths, QStringList("2"));
}

QTEST_MAIN(ZelkoIconsTest)
#include "tst_zelkoicons.moc"
