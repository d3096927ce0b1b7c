#include <zelkoguibase/recordlist/headerlook_p.h>

#include <QIcon>
#include <QPixmap>
#include <QStandardItemModel>
#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoGUI::HeaderLook;

namespace {

QPixmap square(Qt::GlobalColor color)
{
    QPixmap result(16, 16);
    result.fill(color);
    return result;
}

} // namespace

class HeaderLookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatLooksDifferent_data();
    void tellsWhatLooksDifferent();
    void takesAnythingForDifferentAtFirst();
    void followsTheNumberOfColumns();
};

void HeaderLookTest::tellsWhatLooksDifferent_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("before");
    QTest::addColumn<QVariant>("after");
    QTest::addColumn<bool>("isDifferent");
    const QIcon icon(square(Qt::red));
    const QVariant none;
    QTest::newRow("another text") << int(Qt::DisplayRole) << QVariant(u"A"_s) << QVariant(u"B"_s) << true;
    QTest::newRow("the same text") << int(Qt::DisplayRole) << QVariant(u"A"_s) << QVariant(u"A"_s) << false;
    QTest::newRow("a first icon") << int(Qt::DecorationRole) << none << QVariant(icon) << true;
    QTest::newRow("the same icon") << int(Qt::DecorationRole) << QVariant(icon) << QVariant(icon) << false;
    QTest::newRow("another icon") << int(Qt::DecorationRole) << QVariant(icon) << QVariant(QIcon(square(Qt::red)))
                                  << true;
    QTest::newRow("no icon any more") << int(Qt::DecorationRole) << QVariant(icon) << none << true;
    QTest::newRow("another picture") << int(Qt::DecorationRole) << QVariant(square(Qt::red))
                                     << QVariant(square(Qt::green)) << true;
    QTest::newRow("another colour") << int(Qt::ForegroundRole) << QVariant(QColor(Qt::red))
                                    << QVariant(QColor(Qt::green)) << true;
    QTest::newRow("another font") << int(Qt::FontRole) << none << QVariant(QFont(u"Other"_s, 30)) << true;
    QTest::newRow("another tool tip") << int(Qt::ToolTipRole) << QVariant(u"A"_s) << QVariant(u"B"_s) << false;
}

void HeaderLookTest::tellsWhatLooksDifferent()
{
    QFETCH(int, role);
    QFETCH(QVariant, before);
    QFETCH(QVariant, after);
    QFETCH(bool, isDifferent);
    QStandardItemModel model(0, 3);
    model.setHeaderData(1, Qt::Horizontal, before, role);
    HeaderLook look;
    look.changes(model);
    model.setHeaderData(1, Qt::Horizontal, after, role);
    QCOMPARE(look.changes(model), isDifferent ? QList<int>{1} : QList<int>{});
    QCOMPARE(look.changes(model), QList<int>{});
}

void HeaderLookTest::takesAnythingForDifferentAtFirst()
{
    const QStandardItemModel model(0, 3);
    HeaderLook look;
    QCOMPARE(look.changes(model), (QList<int>{0, 1, 2}));
    look.forget();
    QCOMPARE(look.changes(model), (QList<int>{0, 1, 2}));
}

void HeaderLookTest::followsTheNumberOfColumns()
{
    QStandardItemModel model(0, 2);
    HeaderLook look;
    look.changes(model);
    model.setColumnCount(4);
    QCOMPARE(look.changes(model), (QList<int>{2, 3}));
    model.setColumnCount(0);
    QCOMPARE(look.changes(model), QList<int>{});
}

QTEST_MAIN(HeaderLookTest)
#include "tst_headerlook.moc"
