#include <widgetbase/qheaderviewcolumnhandler.h>

#include "ownconfiguration.h"

#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QStandardItemModel>
#include <QtTest>

#include <optional>

using guiHelper::QHeaderViewColumnHandler;

namespace {

/// A header of its own with a handler on it.
struct Header
{
    explicit Header(int columns = 4, const QString& key = QStringLiteral("Table"))
        : model(0, columns)
    {
        shown.setSourceModel(&model);
        view.setModel(&shown);
        handler = std::make_unique<QHeaderViewColumnHandler>(&view, key);
    }

    /// "number:size" in visual order, hidden ones in brackets.
    QString layout() const
    {
        QStringList parts;
        for (int visual = 0; visual < view.count(); ++visual) {
            const int logical = view.logicalIndex(visual);
            parts << (view.isSectionHidden(logical)
                          ? QStringLiteral("(%1)").arg(logical)
                          : QStringLiteral("%1:%2").arg(logical).arg(view.sectionSize(logical)));
        }
        return parts.join(u' ');
    }

    QStandardItemModel model;
    QIdentityProxyModel shown;
    QHeaderView view{Qt::Horizontal};
    std::unique_ptr<QHeaderViewColumnHandler> handler;
};

void arrange(Header& header)
{
    for (int column = 0; column < header.view.count(); ++column) {
        header.view.resizeSection(column, 50 + 10 * column);
    }
    header.view.moveSection(0, 2);
    header.view.setSectionHidden(1, true);
}

} // namespace

class QHeaderViewColumnHandlerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_configuration.emplace(); }
    void cleanup() { m_configuration.reset(); }

    void restoresOrderSizesAndVisibility();
    void aColumnThatWasHiddenHasItsSizeWhenItIsShownAgain();
    void aColumnThatIsHiddenIsKeptWithItsSize_data();
    void aColumnThatIsHiddenIsKeptWithItsSize();
    void aColumnBeyondTheLargestSizeIsKeptWithThat();
    void eachKeyHasALayoutOfItsOwn();
    void restoresNothingWhereNothingWasKept();
    void restoresNothingIntoAnotherNumberOfColumns();
    void restoresNothingThatIsNoLayout_data();
    void restoresNothingThatIsNoLayout();
    void aHeaderThatHasGoneKeepsTheOldLayout();
    void aHeaderWithoutColumnsKeepsTheOldLayout();
    void savesNothingWithoutAKey();
    void savesTheLayoutOfColumnsThatHaveGone();
    void givesTheLayoutToTheNextColumns();
    void leavesAnotherNumberOfColumnsAsItIs();
    void followsAModelThatComesLater();

private:
    std::optional<OwnConfiguration> m_configuration;
};

void QHeaderViewColumnHandlerTest::restoresOrderSizesAndVisibility()
{
    Header before;
    arrange(before);
    QCOMPARE(before.layout(), QStringLiteral("(1) 2:70 0:50 3:80"));
    QVERIFY(before.handler->saveColumnStatus());
    m_configuration->readAgain();
    Header after;
    QVERIFY(after.handler->restoreColumnStatus());
    QCOMPARE(after.layout(), before.layout());
    QVERIFY(after.handler->saveColumnStatus());
    Header again;
    QVERIFY(again.handler->restoreColumnStatus());
    QCOMPARE(again.layout(), before.layout());
}

void QHeaderViewColumnHandlerTest::aColumnThatWasHiddenHasItsSizeWhenItIsShownAgain()
{
    Header before;
    arrange(before);
    QVERIFY(before.handler->saveColumnStatus());
    Header after;
    QVERIFY(after.handler->restoreColumnStatus());
    QVERIFY(after.handler->saveColumnStatus());
    Header again;
    QVERIFY(again.handler->restoreColumnStatus());
    again.view.setSectionHidden(1, false);
    QCOMPARE(again.view.sectionSize(1), 60);
}

void QHeaderViewColumnHandlerTest::aColumnThatIsHiddenIsKeptWithItsSize_data()
{
    QTest::addColumn<bool>("stretches");
    QTest::addColumn<bool>("isSizedFirst");
    QTest::addRow("a size that it was given") << false << false;
    QTest::addRow("a size from before there was anybody to keep it") << false << true;
    QTest::addRow("a size that it was given where the last column stretches") << true << false;
    QTest::addRow("a size from before where the last column stretches") << true << true;
}

void QHeaderViewColumnHandlerTest::aColumnThatIsHiddenIsKeptWithItsSize()
{
    QFETCH(bool, stretches);
    QFETCH(bool, isSizedFirst);
    Header before;
    before.view.setStretchLastSection(stretches);
    before.view.resizeSection(0, 60);
    if (isSizedFirst) {
        before.handler = std::make_unique<QHeaderViewColumnHandler>(&before.view, QStringLiteral("Table"));
    }
    before.view.setSectionHidden(0, true);
    QVERIFY(before.handler->saveColumnStatus());
    Header after;
    QVERIFY(after.handler->restoreColumnStatus());
    QVERIFY(after.view.isSectionHidden(0));
    after.view.setSectionHidden(0, false);
    QCOMPARE(after.view.sectionSize(0), 60);
}

void QHeaderViewColumnHandlerTest::aColumnBeyondTheLargestSizeIsKeptWithThat()
{
    Header before;
    before.view.resizeSection(2, 20'000);
    QVERIFY(before.handler->saveColumnStatus());
    Header after;
    QVERIFY(after.handler->restoreColumnStatus());
    QCOMPARE(after.view.sectionSize(2), 10'000);
}

void QHeaderViewColumnHandlerTest::eachKeyHasALayoutOfItsOwn()
{
    Header one(4, QStringLiteral("One"));
    arrange(one);
    QVERIFY(one.handler->saveColumnStatus());
    Header two(4, QStringLiteral("Two"));
    QVERIFY(!two.handler->restoreColumnStatus());
    QVERIFY(two.handler->saveColumnStatus());
    Header oneAgain(4, QStringLiteral("One"));
    QVERIFY(oneAgain.handler->restoreColumnStatus());
    QCOMPARE(oneAgain.layout(), one.layout());
}

void QHeaderViewColumnHandlerTest::restoresNothingWhereNothingWasKept()
{
    Header header;
    const QString before = header.layout();
    QVERIFY(!header.handler->restoreColumnStatus());
    QCOMPARE(header.layout(), before);
}

void QHeaderViewColumnHandlerTest::restoresNothingIntoAnotherNumberOfColumns()
{
    Header four;
    arrange(four);
    QVERIFY(four.handler->saveColumnStatus());
    for (const int columns : {0, 3, 5}) {
        Header header(columns);
        const QString before = header.layout();
        QVERIFY(!header.handler->restoreColumnStatus());
        QCOMPARE(header.layout(), before);
    }
}

void QHeaderViewColumnHandlerTest::restoresNothingThatIsNoLayout_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("a word") << QStringLiteral("word");
    QTest::newRow("a column twice") << QStringLiteral("1:50:shown 1:50:shown");
    QTest::newRow("a column too many") << QStringLiteral("0:50:shown 2:50:shown");
    QTest::newRow("a column before the first") << QStringLiteral("0:50:shown -1:50:shown");
    QTest::newRow("a size below nothing") << QStringLiteral("0:50:shown 1:-5:shown");
    QTest::newRow("a size beyond all screens") << QStringLiteral("0:50:shown 1:2000000000:shown");
    QTest::newRow("another state") << QStringLiteral("0:50:shown 1:50:lost");
    QTest::newRow("a part too many") << QStringLiteral("0:50:shown 1:50:shown:1");
    QTest::newRow("a part too few") << QStringLiteral("0:50:shown 1:50");
}

void QHeaderViewColumnHandlerTest::restoresNothingThatIsNoLayout()
{
    QFETCH(QString, text);
    CfgCenter::GetAppCfg(ICfg::UserView)
        ->OpenGroup(QStringLiteral("ColumnStatus"), ICfg::Access::Write)
        ->SetString(QStringLiteral("Table"), text);
    Header header(2);
    const QString before = header.layout();
    QVERIFY(!header.handler->restoreColumnStatus());
    QCOMPARE(header.layout(), before);
}

void QHeaderViewColumnHandlerTest::aHeaderThatHasGoneKeepsTheOldLayout()
{
    Header before;
    arrange(before);
    QVERIFY(before.handler->saveColumnStatus());
    auto view = std::make_unique<QHeaderView>(Qt::Horizontal);
    QHeaderViewColumnHandler handler(view.get(), QStringLiteral("Table"));
    view.reset();
    QVERIFY(!handler.saveColumnStatus());
    QVERIFY(!handler.restoreColumnStatus());
    Header after;
    QVERIFY(after.handler->restoreColumnStatus());
    QCOMPARE(after.layout(), before.layout());
}

void QHeaderViewColumnHandlerTest::aHeaderWithoutColumnsKeepsTheOldLayout()
{
    Header before;
    arrange(before);
    QVERIFY(before.handler->saveColumnStatus());
    QVERIFY(!Header(0).handler->saveColumnStatus());
    Header after;
    QVERIFY(after.handler->restoreColumnStatus());
    QCOMPARE(after.layout(), before.layout());
}

void QHeaderViewColumnHandlerTest::savesNothingWithoutAKey()
{
    Header header(4, QString());
    QVERIFY(!header.handler->saveColumnStatus());
    QVERIFY(!header.handler->restoreColumnStatus());
}

void QHeaderViewColumnHandlerTest::savesTheLayoutOfColumnsThatHaveGone()
{
    Header before;
    arrange(before);
    const QString layout = before.layout();
    before.shown.setSourceModel(nullptr);
    QCOMPARE(before.layout(), QString());
    QVERIFY(before.handler->saveColumnStatus());
    Header after;
    QVERIFY(after.handler->restoreColumnStatus());
    QCOMPARE(after.layout(), layout);
}

void QHeaderViewColumnHandlerTest::givesTheLayoutToTheNextColumns()
{
    Header header;
    arrange(header);
    const QString layout = header.layout();
    header.shown.setSourceModel(nullptr);
    header.shown.setSourceModel(&header.model);
    QCOMPARE(header.layout(), layout);
    header.view.setSectionHidden(1, false);
    QCOMPARE(header.view.sectionSize(1), 60);
    header.view.moveSection(0, 3);
    const QString changed = header.layout();
    header.shown.setSourceModel(nullptr);
    header.shown.setSourceModel(&header.model);
    QCOMPARE(header.layout(), changed);
}

void QHeaderViewColumnHandlerTest::leavesAnotherNumberOfColumnsAsItIs()
{
    Header header;
    arrange(header);
    header.shown.setSourceModel(nullptr);
    QStandardItemModel three(0, 3);
    header.shown.setSourceModel(&three);
    QCOMPARE(header.layout(), Header(3).layout());
}

void QHeaderViewColumnHandlerTest::followsAModelThatComesLater()
{
    Header header;
    header.view.setModel(nullptr);
    header.handler = std::make_unique<QHeaderViewColumnHandler>(&header.view, QStringLiteral("Table"));
    header.view.setModel(&header.shown);
    arrange(header);
    const QString layout = header.layout();
    header.shown.setSourceModel(nullptr);
    header.shown.setSourceModel(&header.model);
    QCOMPARE(header.layout(), layout);
}

QTEST_MAIN(QHeaderViewColumnHandlerTest)
#include "tst_qheaderviewcolumnhandler.moc"
