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

#include <algorithm>
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

// What a list shows of its place: the first record in sight, and how far its row is cut off.
struct Place
{
    QStringList selected;
    QString current;
    QString top;
    int offset = 0;

    bool operator==(const Place&) const = default;
};

char* toString(const Place& place)
{
    return QTest::toString(QStringLiteral("%1 selected, %2 current, %3 at the top, at %4")
                               .arg(place.selected.join(u' '), place.current, place.top)
                               .arg(place.offset));
}

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
    int topRow() const { return m_view->rowAt(0); }
    int rowsInSight() const { return m_view->rowAt(m_view->viewport()->height() - 1) - topRow() + 1; }
    QString idAt(int row) const { return idOf(m_view->model()->index(row, 0)); }
    bool isNeeded(const QString& id) const;
    QStringList othersFrom(int row, int count) const;
    bool areAllChanged() const;
    void deleteByAnother(const QStringList& ids);
    QString copyOf(int row);
    QString idNamed(const QString& name) const;
    int rowOf(const QString& id) const;

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

// Filters the names for a digit, goes to where records are of a few megabytes, and selects three of them. The first one
// of those in sight is none of the three.
void TestRecordList::chooseSome()
{
    auto* const filter = m_list->findChild<QWidget*>(QStringLiteral("RecordNameFilterWidget"));
    auto* const edit = filter->findChild<QLineEdit*>(QStringLiteral("TextEdit"));
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_7);
    const int shown = m_view->model()->rowCount();
    QVERIFY(shown > 1000 && shown < count);
    const int first = shown * 4 / 5;
    m_list->setFocusOnList();
    clickRow(*m_view, first + 4);
    clickRow(*m_view, first + 7, Qt::ControlModifier);
    clickRow(*m_view, first + 5, Qt::ControlModifier);
    QCOMPARE(m_list->selectedRecords().size(), 3);
    m_view->verticalScrollBar()->setValue(first);
    QCOMPARE(topRow(), first);
    QVERIFY(rowsInSight() > 12);
}

Place TestRecordList::place() const
{
    QStringList selected = m_list->selectedRecords();
    selected.sort();
    return {selected, idOf(m_view->currentIndex()), idAt(topRow()), m_view->rowViewportPosition(topRow())};
}

// What stays where it is, or is looked at in the end.
bool TestRecordList::isNeeded(const QString& id) const
{
    const Place now = place();
    return now.selected.contains(id) || id == now.current || id == now.top || id == m_prepared.recordId(0) ||
           id == m_prepared.recordId(count / 2) || id == m_prepared.recordId(count - 1);
}

// The first ones from a row on that may be deleted and are not needed.
QStringList TestRecordList::othersFrom(int row, int number) const
{
    QStringList ids;
    for (; ids.size() < number; ++row) {
        const QString id = idAt(row);
        if (m_site->row(id).GetDeletable() && !isNeeded(id)) {
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

// Copies a record that stands in that row or, if it cannot be copied, in one behind it. The name of the copy, which
// passes the filter; its row will be right behind that of the original, which has grown since it was recorded.
QString TestRecordList::copyOf(int row)
{
    using Format = ActionSite::Record::DataFormat;
    ActionSite::Record original = m_site->row(idAt(row));
    while (original.GetDataFormat() == Format::Symbols || original.GetRecordID().isEmpty()) {
        original = m_site->row(idAt(++row));
    }
    const QString name = QStringLiteral("7 as ") + original.GetRecordID();
    m_site->controller().sl_copyRecord(original.GetRecordID(), original.GetStartTime(),
                                       m_prepared.record(m_prepared.numberOf(original.GetRecordID())).GetStopTime(),
                                       name);
    return name;
}

QString TestRecordList::idNamed(const QString& name) const
{
    const QStringList ids = m_site->rows();
    const auto found = std::find_if(ids.begin(), ids.end(),
                                    [&](const QString& id) { return m_site->row(id).GetRecordName() == name; });
    return found == ids.end() ? QString() : *found;
}

int TestRecordList::rowOf(const QString& id) const
{
    int row = 0;
    while (row < m_view->model()->rowCount() && idAt(row) != id) {
        ++row;
    }
    return row;
}

void TestRecordList::staysWhereItIsWhileOtherRowsComeChangeAndGo()
{
    const Place before = place();
    const int rowBefore = topRow();
    const QSignalSpy told(&*m_list, &RecordListWidget::si_selectedRecordsChanged);
    const QStringList above = othersFrom(0, 5) + othersFrom(rowBefore - 20, 5);
    const QStringList inSight = othersFrom(rowBefore + 1, 2);
    const QStringList below = othersFrom(rowBefore + 100, 5);
    QVERIFY(rowOf(above.constLast()) < rowBefore && rowOf(inSight.constLast()) < rowBefore + rowsInSight());
    const QString comesAbove = copyOf(rowBefore - 60);
    const QString comesInSight = copyOf(rowBefore + 2);
    const QString comesBelow = copyOf(rowBefore + 200);
    deleteByAnother(above + inSight + below);
    for (const QString& name : {comesAbove, comesInSight, comesBelow}) {
        QTRY_VERIFY_WITH_TIMEOUT(!idNamed(name).isEmpty(), longPatience);
    }
    QTRY_VERIFY_WITH_TIMEOUT(areAllChanged(), longPatience);
    QTRY_COMPARE_WITH_TIMEOUT(place(), before, longPatience);
    QCOMPARE(told.size(), 0);
    QCOMPARE(m_site->controller().selectedRecords(), m_list->selectedRecords());
    QVERIFY(topRow() != rowBefore);
    const int first = topRow();
    QVERIFY(rowOf(idNamed(comesAbove)) < first);
    const int rowInSight = rowOf(idNamed(comesInSight));
    QVERIFY2(rowInSight > first && rowInSight < first + rowsInSight(), qPrintable(QString::number(rowInSight - first)));
    QVERIFY(rowOf(idNamed(comesBelow)) >= first + rowsInSight());
}

void TestRecordList::bringsItsSelectionBackWithTheRecorder()
{
    QTRY_VERIFY_WITH_TIMEOUT(areAllChanged(), longPatience);
    const Place before = place();
    m_site->recorder().kill();
    QTRY_COMPARE_WITH_TIMEOUT(m_view->model()->rowCount(), 0, longPatience);
    QTRY_COMPARE_WITH_TIMEOUT(m_list->selectedRecords(), QStringList(), longPatience);
    QVERIFY(m_site->start(load));
    QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady() && m_site->controller().recordListModel()->rowCount() >= count,
                             longPatience);
    QTRY_VERIFY_WITH_TIMEOUT(areAllChanged(), longPatience);
    QTRY_COMPARE_WITH_TIMEOUT(place(), before, longPatience);
    QStringList ofController = m_site->controller().selectedRecords();
    ofController.sort();
    QCOMPARE(ofController, before.selected);
}

QTEST_MAIN(TestRecordList)
#include "tst_recordlist.moc"
