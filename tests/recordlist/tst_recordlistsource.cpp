#include "listsite.h"

#include <resources/zelkoicons.h>

#include <QHeaderView>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

/// A list widget without parts, over a list that goes when it is told to.
struct Columns
{
    explicit Columns(bool hasList = true, ListSite::Options options = {})
        : list(std::make_unique<ListedRecords>(ListSite::ids(3)))
        , controller(std::in_place, hasList ? list.get() : nullptr)
        , widget(std::make_unique<RecordListWidget>(&*controller, options, ListSite::allColumns, nullptr, u"Records"_s))
    {}

    QHeaderView& header() const { return *widget->findChild<QTableView*>()->horizontalHeader(); }

    void arrange() const
    {
        header().resizeSection(3, 222);
        header().moveSection(0, 5);
        header().hideSection(4);
    }

    bool isArranged() const
    {
        return header().count() > 5 && header().sectionSize(3) == 222 && header().visualIndex(0) == 5 &&
               header().isSectionHidden(4);
    }

    /// The controller is told to have it, and tells of its device.
    void show(ListedRecords* other)
    {
        controller->list = other;
        Q_EMIT controller->si_activeDeviceChanged({}, {});
    }

    std::unique_ptr<ListedRecords> list;
    std::optional<ListController> controller;
    std::unique_ptr<RecordListWidget> widget;
};

} // namespace

/// What a record list does when the list of its controller goes, comes and is another one.
class RecordListSourceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init() { m_configuration.emplace(); }
    void cleanup() { m_configuration.reset(); }

    void keepsColumnsWhenTheListGoesFirst();
    void keepsColumnsWithAnotherListAfterOneThatDied();
    void keepsColumnsWithAnotherListAfterNone();
    void beginsWithoutAList();
    void hasItsColumnsOnceThereIsAList();
    void offersColumnsForTheClipboardOnceThereIsAList();
    void survivesAListThatBelongsToIt();

private:
    const UserLogin m_login;
    std::optional<OwnConfiguration> m_configuration;
};

void RecordListSourceTest::keepsColumnsWhenTheListGoesFirst()
{
    Columns columns;
    columns.arrange();
    columns.controller.reset();
    columns.list.reset();
    columns.widget.reset();
    QVERIFY(Columns().isArranged());
}

void RecordListSourceTest::keepsColumnsWithAnotherListAfterOneThatDied()
{
    ListedRecords other(ListSite::ids(2));
    Columns columns;
    columns.arrange();
    columns.list.reset();
    columns.show(&other);
    QVERIFY(columns.isArranged());
    columns.widget.reset();
    QVERIFY(Columns().isArranged());
}

void RecordListSourceTest::keepsColumnsWithAnotherListAfterNone()
{
    Columns columns;
    columns.arrange();
    columns.show(nullptr);
    QCOMPARE(columns.header().count(), 0);
    columns.show(columns.list.get());
    QVERIFY(columns.isArranged());
}

void RecordListSourceTest::beginsWithoutAList()
{
    QTest::failOnWarning(QRegularExpression(u"."_s)); // as of a connection to nothing
    const Columns columns(false, ListSite::everything);
    const auto* const count = columns.widget->findChild<QLabel*>(u"RecordCountLabel"_s);
    QCOMPARE(count->text(), u"0 recordings"_s);
}

void RecordListSourceTest::hasItsColumnsOnceThereIsAList()
{
    Columns before;
    before.arrange();
    before.widget.reset();
    QTest::failOnWarning(QRegularExpression(u"."_s));
    Columns columns(false, ListSite::everything);
    columns.show(columns.list.get());
    QVERIFY(columns.isArranged());
    const auto* const count = columns.widget->findChild<QLabel*>(u"RecordCountLabel"_s);
    QCOMPARE(count->text(), u"3 recordings"_s);
    columns.list->add(makeRecord(u"new"_s));
    QCOMPARE(count->text(), u"4 recordings"_s);
    columns.show(nullptr);
    QCOMPARE(count->text(), u"0 recordings"_s);
}

// Once only, however often lists come and go.
void RecordListSourceTest::offersColumnsForTheClipboardOnceThereIsAList()
{
    const Columns usual(true, RecordListWidget::OptionClipboardMenu);
    Columns columns(false, RecordListWidget::OptionClipboardMenu);
    const auto texts = [](const Columns& of) {
        return MenuAnswer::texts(*of.widget->findChild<QMenu*>(u"RecordListWidgetPopupMenu"_s));
    };
    QCOMPARE(texts(columns), (QStringList{u"Copy to Clipboard"_s, u"-"_s}));
    for (ListedRecords* const list : {columns.list.get(), static_cast<ListedRecords*>(nullptr), columns.list.get()}) {
        columns.show(list);
        QCOMPARE(texts(columns), texts(usual));
    }
}

void RecordListSourceTest::survivesAListThatBelongsToIt()
{
    Columns columns(true, ListSite::everything);
    const QPointer<ListedRecords> list = columns.list.release();
    list->setParent(columns.widget.get());
    columns.widget.reset();
    QVERIFY(list.isNull());
}

QTEST_MAIN(RecordListSourceTest)
#include "tst_recordlistsource.moc"
