#include "listsite.h"

#include <resources/zelkoicons.h>

#include <QHeaderView>

using namespace Qt::StringLiterals;

namespace {

/// A list widget without parts, over a list that goes when it is told to.
struct Columns
{
    explicit Columns(const QString& name = u"Records"_s)
        : list(std::make_unique<ListedRecords>(ListSite::ids(3)))
        , controller(std::in_place, list.get())
        , widget(std::make_unique<RecordListWidget>(&*controller, ListSite::Options(0), ListSite::Columns(), nullptr,
                                                    name))
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

QTEST_MAIN(RecordListSourceTest)
#include "tst_recordlistsource.moc"
