#include <actiontest.h>
#include <ownconfiguration.h>
#include <recorderclient.h>

#include <console/hands/operatorhands.h>
#include <recorder/store/preparedrecords.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>

#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>

#include <optional>

using namespace ZelkoTest;
using ZelkoCommon::AbstractRecordListModel;
using ZelkoCommon::Role;
using ZelkoConsole::operatorhands::clickRow;
using ZelkoGUI::RecordListWidget;

namespace {

constexpr int count = 10'000;
constexpr int changesOfEach = 3;

// Their records end later than those that are prepared, and so does what is said of them.
const QStringList load{QStringLiteral("--populate"),      QString::number(count),
                       QStringLiteral("--churn"),         QStringLiteral("4000"),
                       QStringLiteral("--churn-changes"), QString::number(changesOfEach* count),
                       QStringLiteral("--source"),        QStringLiteral("generator:carrier,seconds=0.5")};

// What a list shows of its place.
struct Place
{
    QStringList selected;
    QString current;
    int scrolled = 0;

    bool operator==(const Place&) const = default;
};

} // namespace

// A record list in front of a real recorder whose records change all the time, sorted by what changes, and filtered.
class TestRecordList : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup();
    void staysWhereItIsWhileOtherRowsComeChangeAndGo();
    void bringsItsSelectionBackWithTheRecorder();

private:
    static constexpr int longPatience = 120'000;

    void openList();
    void chooseSome();
    QString idOf(const QModelIndex& index) const
    {
        return index.siblingAtColumn(AbstractRecordListModel::RecordIDColumn).data().toString();
    }
    Place place() const;
    QString topId() const { return idOf(m_view->indexAt(QPoint(0, 0))); }
    QStringList othersAtTheEnd(int rows) const;
    bool areAllChanged() const;
    void deleteByAnother(const QStringList& ids);

    const ZelkoRecorder::PreparedRecords m_prepared{ActionSite::device(), count};
    std::optional<OwnConfiguration> m_configuration;
    std::optional<RecordListWidget> m_list;
    QTableView* m_view = nullptr;
};

void TestRecordList::init()
{
    m_configuration.emplace();
    makeSite();
    QVERIFY(m_site->start(load));
    m_site->connectAs(Role::Operator);
    openList();
    QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady(), longPatience);
    QTRY_VERIFY_WITH_TIMEOUT(m_site->controller().recordListModel()->rowCount() >= count, longPatience);
    chooseSome();
}

void TestRecordList::cleanup()
{
    m_list.reset();
    leaveSite();
    m_configuration.reset();
}

void TestRecordList::openList()
{
    constexpr RecordListWidget::Options everything(QFlag(1023));
    m_list.emplace(&m_site->controller(), everything, ZelkoGUI::Filter::ExtendedFilterDialog::NameColumn, nullptr,
                   QStringLiteral("list"));
    m_view = m_list->findChild<QTableView*>(QStringLiteral("RecordTableView"));
    m_view->sortByColumn(AbstractRecordListModel::SizeColumn, Qt::DescendingOrder);
    m_list->resize(1000, 500);
    m_list->show();
    m_list->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&*m_list, longPatience));
}

// Filters the names for a digit, goes to the middle of the list, and selects three records there.
void TestRecordList::chooseSome()
{
    auto* const filter = m_list->findChild<QWidget*>(QStringLiteral("RecordNameFilterWidget"));
    auto* const edit = filter->findChild<QLineEdit*>(QStringLiteral("TextEdit"));
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_7);
    const int shown = m_view->model()->rowCount();
    QVERIFY(shown > 100 && shown < count);
    m_list->setFocusOnList();
    clickRow(*m_view, shown / 2);
    clickRow(*m_view, shown / 2 + 3, Qt::ControlModifier);
    clickRow(*m_view, shown / 2 + 1, Qt::ControlModifier);
    QCOMPARE(m_list->selectedRecords().size(), 3);
    QVERIFY(m_view->verticalScrollBar()->value() > 0);
}

Place TestRecordList::place() const
{
    QStringList selected = m_list->selectedRecords();
    selected.sort();
    return {selected, idOf(m_view->currentIndex()), m_view->verticalScrollBar()->value()};
}

// Those of the last rows that may be deleted, which are far from what is selected.
QStringList TestRecordList::othersAtTheEnd(int rows) const
{
    QStringList ids;
    for (int row = 1; row <= rows; ++row) {
        const QString id = idOf(m_view->model()->index(m_view->model()->rowCount() - row, 0));
        if (m_site->row(id).GetDeletable()) {
            ids << id;
        }
    }
    return ids;
}

bool TestRecordList::areAllChanged() const
{
    for (int number : {0, count / 2, count - 1}) {
        const auto before = m_prepared.record(number);
        const auto now = m_site->row(m_prepared.recordId(number));
        if (now.GetSize() != before.GetSize() + 4096 * changesOfEach) {
            return false;
        }
    }
    return true;
}

void TestRecordList::deleteByAnother(const QStringList& ids)
{
    RecorderClient client(*m_orb, m_site->recorder().port(), Role::Operator);
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), longPatience);
    client.write(client.values().command<Value<QString>>("DeleteRecordingList"), ids.join(QLatin1Char('@')));
    for (const QString& id : ids) {
        QTRY_VERIFY_WITH_TIMEOUT(!m_site->controller().recordListModel()->hasRecord(id), longPatience);
    }
}

void TestRecordList::staysWhereItIsWhileOtherRowsComeChangeAndGo()
{
    const Place before = place();
    const QSignalSpy told(&*m_list, &RecordListWidget::si_selectedRecordsChanged);
    const QSignalSpy scrolled(m_view->verticalScrollBar(), &QScrollBar::valueChanged);
    const QStringList gone = othersAtTheEnd(20);
    deleteByAnother(gone);
    QTRY_VERIFY_WITH_TIMEOUT(areAllChanged(), longPatience);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->controller().recordListModel()->rowCount(),
                              count + 1 - static_cast<int>(gone.size()), longPatience);
    QCOMPARE(place(), before);
    QCOMPARE(told.size(), 0);
    QCOMPARE(scrolled.size(), 0);
    QCOMPARE(m_site->controller().selectedRecords(), m_list->selectedRecords());
}

void TestRecordList::bringsItsSelectionBackWithTheRecorder()
{
    QTRY_VERIFY_WITH_TIMEOUT(areAllChanged(), longPatience);
    const Place before = place();
    const QString top = topId();
    m_site->recorder().kill();
    QTRY_COMPARE_WITH_TIMEOUT(m_view->model()->rowCount(), 0, longPatience);
    QVERIFY(m_site->start(load));
    QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady() && m_site->controller().recordListModel()->rowCount() >= count,
                             longPatience);
    QTRY_COMPARE_WITH_TIMEOUT(place().selected, before.selected, longPatience);
    QTRY_COMPARE_WITH_TIMEOUT(place().current, before.current, longPatience);
    QStringList ofController = m_site->controller().selectedRecords();
    ofController.sort();
    QCOMPARE(ofController, before.selected);
    QVERIFY(m_view->verticalScrollBar()->value() > 0);
    QVERIFY(!top.isEmpty());
}

QTEST_MAIN(TestRecordList)
#include "tst_recordlist.moc"
