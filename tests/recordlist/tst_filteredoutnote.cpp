#include "patience.h"

#include <zelkoguibase/recordlist/filteredoutnote_p.h>

#include <QListView>
#include <QSortFilterProxyModel>
#include <QStringListModel>
#include <QtTest>

using ZelkoGUI::FilteredOutNote;

namespace {

/// A list with a filter, shown in a view with a note over it.
struct Filtered
{
    explicit Filtered(const QStringList& texts)
        : list(texts)
    {
        proxy.setSourceModel(&list);
        view.setModel(&proxy);
        view.resize(300, 200);
        view.show();
    }

    /// What the note says, "-" if it is hidden.
    QString said() const { return note.isVisible() ? note.text() : QStringLiteral("-"); }

    QStringListModel list;
    QSortFilterProxyModel proxy;
    QListView view;
    FilteredOutNote& note = *new FilteredOutNote(&view, &proxy);
};

QString all(int count)
{
    return QStringLiteral("The filter hides all %1 recordings of this list.").arg(count);
}

const QString nothing = QStringLiteral("-");

} // namespace

class FilteredOutNoteTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysNothingWhileThereIsARow();
    void saysNothingOfAnEmptyList();
    void saysHowManyRowsAreHidden();
    void followsRowsThatAreHiddenAtOnce();
    void followsAnotherList();
    void keepsAwayFromTheSidesInALargerFont();
};

void FilteredOutNoteTest::saysNothingWhileThereIsARow()
{
    Filtered filtered({"a", "b"});
    QCOMPARE(filtered.said(), nothing);
    filtered.proxy.setFilterFixedString(QStringLiteral("b"));
    QCOMPARE(filtered.said(), nothing);
}

void FilteredOutNoteTest::saysNothingOfAnEmptyList()
{
    Filtered filtered({});
    filtered.proxy.setFilterFixedString(QStringLiteral("no such text"));
    QCOMPARE(filtered.said(), nothing);
    filtered.proxy.setSourceModel(nullptr);
    QCOMPARE(filtered.said(), nothing);
}

void FilteredOutNoteTest::saysHowManyRowsAreHidden()
{
    Filtered filtered({"a", "b"});
    filtered.proxy.setFilterFixedString(QStringLiteral("no such text"));
    QCOMPARE(filtered.said(), all(2));
    filtered.list.removeRow(0);
    QCOMPARE(filtered.said(), QStringLiteral("The filter hides the one recording of this list."));
    filtered.proxy.setFilterFixedString(QStringLiteral("b"));
    QCOMPARE(filtered.said(), nothing);
}

void FilteredOutNoteTest::followsRowsThatAreHiddenAtOnce()
{
    Filtered filtered({});
    filtered.proxy.setFilterFixedString(QStringLiteral("no such text"));
    filtered.list.setStringList({"a", "b", "c"});
    QCOMPARE(filtered.said(), all(3));
    filtered.list.insertRow(0);
    QCOMPARE(filtered.said(), all(4));
    filtered.list.setStringList({});
    QCOMPARE(filtered.said(), nothing);
}

void FilteredOutNoteTest::followsAnotherList()
{
    Filtered filtered({"a", "b"});
    filtered.proxy.setFilterFixedString(QStringLiteral("no such text"));
    QStringListModel other({"c", "d", "e"});
    filtered.proxy.setSourceModel(&other);
    QCOMPARE(filtered.said(), all(3));
    filtered.list.insertRow(0);
    QCOMPARE(filtered.said(), all(3));
    other.insertRow(0);
    QCOMPARE(filtered.said(), all(4));
}

void FilteredOutNoteTest::keepsAwayFromTheSidesInALargerFont()
{
    Filtered filtered({});
    QFont large = filtered.view.font();
    large.setPointSizeF(large.pointSizeF() * 2);
    const int before = filtered.note.margin();
    filtered.view.setFont(large);
    QVERIFY(filtered.note.margin() > before);
    QCOMPARE(filtered.note.margin(), filtered.note.fontMetrics().height());
}

QTEST_MAIN(FilteredOutNoteTest)
#include "tst_filteredoutnote.moc"
