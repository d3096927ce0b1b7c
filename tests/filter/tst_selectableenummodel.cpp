#include "signallog.h"

#include <zelkoguibase/filter/selectableenummodel.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QFont>
#include <QtTest>

using namespace ZelkoGUI::Filter;
using Rate = ZELKO_XML::ZELKO_RecordData::DataRate;
using Model = SelectableEnumModel<Rate>;

namespace {

const QList<QPair<Rate, QString>> someRates{{Rate::UpTo64kB, QStringLiteral("slow")},
                                            {Rate::UpTo1MB, QStringLiteral("medium")},
                                            {Rate::NotSet, QStringLiteral("none")},
                                            {Rate::UpTo16MB, QStringLiteral("fast")}};

/// What a view shows: a cross before checked rows, brackets around rows that cannot be clicked.
QString shown(const QAbstractItemModel& model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        const QString text = (checked ? QStringLiteral("x ") : QString()) + index.data().toString();
        rows << (index.flags() & Qt::ItemIsEnabled ? text : u'[' + text + u']');
    }
    return rows.join(QStringLiteral(", "));
}

bool check(QAbstractItemModel& model, int row, Qt::CheckState state)
{
    return model.setData(model.index(row, 0), state, Qt::CheckStateRole);
}

} // namespace

class SelectableEnumModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsWithNothingSelected();
    void selectsAValue();
    void saysThatAllAreSelected();
    void selectsAll();
    void selectsNone();
    void anyStateOfACommandGivesTheCommand();
    void halfCheckedCountsAsUnchecked();
    void takesCheckStatesOnly();
    void takesNothingForNoRow();
    void commandsStandOut();
    void rowsCanBeCheckedButNotSelected();
    void hasNoRowsBelowRows();
    void hasNoHeaders();
    void setAllReportsAllRowsOnce();
    void setSelectedReportsNothing();
    void ignoresValuesThatItDoesNotHave_data();
    void ignoresValuesThatItDoesNotHave();
    void givesTheSelectionInItsOwnOrder();
    void takesASelection();
    void withoutValuesBothCommandsAreDone();

private:
    std::unique_ptr<Model> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::unique_ptr<SignalLog> m_log;
};

void SelectableEnumModelTest::init()
{
    m_model = std::make_unique<Model>(someRates, nullptr);
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get());
    m_log = std::make_unique<SignalLog>(m_model.get());
}

void SelectableEnumModelTest::cleanup()
{
    m_log.reset();
    m_tester.reset();
    m_model.reset();
}

void SelectableEnumModelTest::startsWithNothingSelected()
{
    QCOMPARE(shown(*m_model), QStringLiteral("Select All, [x Nothing], slow, medium, none, fast"));
    QCOMPARE(m_model->valueCount(), 4);
    QVERIFY(m_model->selectedValues().isEmpty());
}

void SelectableEnumModelTest::selectsAValue()
{
    QVERIFY(check(*m_model, 3, Qt::Checked));
    QCOMPARE(shown(*m_model), QStringLiteral("Select All, Clear All, slow, x medium, none, fast"));
    QCOMPARE(m_log->take(), QStringList(QStringLiteral("changed 3")));
    QVERIFY(check(*m_model, 3, Qt::Unchecked));
    QCOMPARE(shown(*m_model), QStringLiteral("Select All, [x Nothing], slow, medium, none, fast"));
    QCOMPARE(m_log->take(), QStringList(QStringLiteral("changed 3")));
}

void SelectableEnumModelTest::saysThatAllAreSelected()
{
    for (int row = 2; row < 6; ++row) {
        QVERIFY(check(*m_model, row, Qt::Checked));
    }
    QCOMPARE(shown(*m_model), QStringLiteral("[x All], Clear All, x slow, x medium, x none, x fast"));
    QVERIFY(check(*m_model, 5, Qt::Unchecked));
    QCOMPARE(shown(*m_model), QStringLiteral("Select All, Clear All, x slow, x medium, x none, fast"));
}

void SelectableEnumModelTest::selectsAll()
{
    QVERIFY(check(*m_model, 0, Qt::Checked));
    QCOMPARE(shown(*m_model), QStringLiteral("[x All], Clear All, x slow, x medium, x none, x fast"));
    QCOMPARE(m_log->take(), QStringList(QStringLiteral("changed 0-5")));
}

void SelectableEnumModelTest::selectsNone()
{
    m_model->setAll(true);
    m_log->take();
    QVERIFY(check(*m_model, 1, Qt::Checked));
    QCOMPARE(shown(*m_model), QStringLiteral("Select All, [x Nothing], slow, medium, none, fast"));
    QCOMPARE(m_log->take(), QStringList(QStringLiteral("changed 0-5")));
}

void SelectableEnumModelTest::anyStateOfACommandGivesTheCommand()
{
    QVERIFY(check(*m_model, 0, Qt::Unchecked));
    QCOMPARE(m_model->selectedValues().size(), 4);
    QVERIFY(check(*m_model, 1, Qt::Unchecked));
    QCOMPARE(m_model->selectedValues().size(), 0);
}

void SelectableEnumModelTest::halfCheckedCountsAsUnchecked()
{
    m_model->setAll(true);
    QVERIFY(check(*m_model, 2, Qt::PartiallyChecked));
    QVERIFY(!m_model->isSelected(0));
}

void SelectableEnumModelTest::takesCheckStatesOnly()
{
    for (const int role : {Qt::EditRole, Qt::DisplayRole, Qt::UserRole}) {
        QVERIFY(!m_model->setData(m_model->index(0), Qt::Checked, role));
        QVERIFY(!m_model->setData(m_model->index(2), Qt::Checked, role));
    }
    QVERIFY(m_model->selectedValues().isEmpty());
    QCOMPARE(m_log->take(), QStringList());
}

void SelectableEnumModelTest::takesNothingForNoRow()
{
    QVERIFY(!m_model->setData({}, Qt::Checked, Qt::CheckStateRole));
    QVERIFY(!m_model->data({}, Qt::DisplayRole).isValid());
    QVERIFY(m_model->selectedValues().isEmpty());
}

void SelectableEnumModelTest::commandsStandOut()
{
    for (const int row : {0, 1}) {
        const auto font = m_model->index(row).data(Qt::FontRole).value<QFont>();
        QCOMPARE(font, QFont(QApplication::font().family(), -1, QFont::Bold, true));
    }
    QVERIFY(!m_model->index(2).data(Qt::FontRole).isValid());
    QVERIFY(!m_model->index(2).data(Qt::ToolTipRole).isValid());
}

void SelectableEnumModelTest::rowsCanBeCheckedButNotSelected()
{
    const Qt::ItemFlags checkable = Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
    QCOMPARE(m_model->flags(m_model->index(0)), checkable);
    QCOMPARE(m_model->flags(m_model->index(1)), Qt::NoItemFlags);
    QCOMPARE(m_model->flags(m_model->index(2)), checkable);
    QCOMPARE(m_model->flags({}), Qt::NoItemFlags);
    m_model->setAll(true);
    QCOMPARE(m_model->flags(m_model->index(0)), Qt::NoItemFlags);
    QCOMPARE(m_model->flags(m_model->index(1)), checkable);
}

void SelectableEnumModelTest::hasNoRowsBelowRows()
{
    QCOMPARE(m_model->rowCount(), 6);
    QCOMPARE(m_model->rowCount(m_model->index(2)), 0);
}

void SelectableEnumModelTest::hasNoHeaders()
{
    for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
        QVERIFY(!m_model->headerData(0, orientation).isValid());
    }
}

void SelectableEnumModelTest::setAllReportsAllRowsOnce()
{
    m_model->setAll(true);
    m_model->setAll(true);
    m_model->setAll(false);
    QCOMPARE(m_log->take(), QStringList(3, QStringLiteral("changed 0-5")));
}

void SelectableEnumModelTest::setSelectedReportsNothing()
{
    m_model->setSelected(1, true);
    QVERIFY(m_model->isSelected(1));
    QCOMPARE(m_log->take(), QStringList());
}

void SelectableEnumModelTest::ignoresValuesThatItDoesNotHave_data()
{
    QTest::addColumn<int>("value");
    QTest::newRow("before the first") << -1;
    QTest::newRow("behind the last") << 4;
    QTest::newRow("far away") << std::numeric_limits<int>::max();
}

void SelectableEnumModelTest::ignoresValuesThatItDoesNotHave()
{
    QFETCH(int, value);
    m_model->setSelected(value, true);
    QVERIFY(!m_model->isSelected(value));
    QCOMPARE(m_model->valueName(value), QString());
    QVERIFY(m_model->selectedValues().isEmpty());
}

void SelectableEnumModelTest::givesTheSelectionInItsOwnOrder()
{
    m_model->setSelected(3, true);
    m_model->setSelected(0, true);
    QCOMPARE(m_model->selectedValues(), (QList<Rate>{Rate::UpTo64kB, Rate::UpTo16MB}));
    QCOMPARE(m_model->selectedNames(), (QStringList{QStringLiteral("slow"), QStringLiteral("fast")}));
}

void SelectableEnumModelTest::takesASelection()
{
    m_model->setSelected(0, true);
    m_model->setSelectedValues({Rate::RawStream, Rate::NotSet, Rate::UpTo1MB, static_cast<Rate>(12345)});
    QCOMPARE(m_model->selectedNames(), (QStringList{QStringLiteral("medium"), QStringLiteral("none")}));
    QCOMPARE(m_log->take(), (QStringList{QStringLiteral("begin reset"), QStringLiteral("end reset")}));
}

void SelectableEnumModelTest::withoutValuesBothCommandsAreDone()
{
    Model empty({}, nullptr);
    const QAbstractItemModelTester tester(&empty);
    QCOMPARE(shown(empty), QStringLiteral("[x All], [x Nothing]"));
    empty.setAll(true);
    QVERIFY(empty.selectedNames().isEmpty());
}

QTEST_MAIN(SelectableEnumModelTest)
#include "tst_selectableenummodel.moc"
