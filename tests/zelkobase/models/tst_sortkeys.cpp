#include <zelkobase/models/sortkeys_p.h>

#include <QtTest>

using ZelkoCommon::SortKeys;

namespace {

constexpr int rows = 4000;
constexpr int column = 2;

/// Keys of a list, read as often as `reads` says.
struct Keys
{
    std::vector<QVariant> list;
    int reads = 0;
    SortKeys keys{[this](int row, int number) {
        ++reads;
        return number == column ? list[static_cast<std::size_t>(row)] : QVariant(number);
    }};

    Keys()
    {
        for (int row = 0; row < rows; ++row) {
            list.emplace_back(quint64(3 * row));
        }
    }

    int count() const { return static_cast<int>(list.size()); }
    QVariant key(int row, int number = column)
    {
        return keys.keeps(row, number) ? keys.key(row) : keys.ask(row, number, count());
    }
    void askForMany()
    {
        for (int row = 0; row <= rows / 8; ++row) {
            key(row);
        }
    }
    bool areRight()
    {
        for (int row = 0; row < count(); ++row) {
            if (key(row) != list[static_cast<std::size_t>(row)]) {
                return false;
            }
        }
        return true;
    }
};

} // namespace

class TestSortKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatAFewQuestionsAskFor()
    {
        Keys asked;
        QCOMPARE(asked.key(7), QVariant(quint64{21}));
        QCOMPARE(asked.key(7), QVariant(quint64{21}));
        QCOMPARE(asked.reads, 2);
        QVERIFY(!asked.keys.keeps(7, column));
    }

    void readsEachKeyOnceForManyQuestions()
    {
        Keys asked;
        asked.askForMany();
        const int reads = std::exchange(asked.reads, 0);
        QVERIFY(reads > rows && reads < 2 * rows);
        QVERIFY(asked.areRight());
        QCOMPARE(asked.reads, 0);
        QCOMPARE(asked.key(0).metaType(), QMetaType::fromType<quint64>());
    }

    void keepsOneColumn()
    {
        Keys asked;
        asked.askForMany();
        QVERIFY(!asked.keys.keeps(0, column + 1));
        QCOMPARE(asked.key(0, column + 1), QVariant(column + 1));
        QVERIFY(!asked.keys.keeps(0, column));
    }

    void readsChangedCellsAgain()
    {
        Keys asked;
        asked.askForMany();
        asked.reads = 0;
        asked.list[9] = quint64{1};
        asked.keys.cellsChanged(8, 10, 0, column);
        asked.keys.cellsChanged(20, 30, 0, column - 1);
        asked.keys.cellsChanged(20, 30, column + 1, column + 2);
        asked.keys.cellsChanged(rows - 1, rows + 5, column, column);
        QCOMPARE(asked.reads, 4);
        QVERIFY(asked.areRight());
        QCOMPARE(asked.reads, 4);
    }

    void aChangeEndsTheCount()
    {
        Keys asked;
        for (int change = 0; change < 100; ++change) {
            for (int question = 0; question < 30; ++question) {
                asked.key(question);
            }
            asked.keys.cellsChanged(1, 1, 0, 9);
        }
        QCOMPARE(asked.reads, 3000);
        QVERIFY(!asked.keys.keeps(0, column));
    }

    void takesRowsThatCameBehind()
    {
        Keys asked;
        asked.askForMany();
        asked.list.emplace_back(quint64{5});
        asked.list.emplace_back(quint64{6});
        asked.keys.rowsInserted(rows, rows + 1);
        QVERIFY(asked.keys.keeps(rows + 1, column));
        QVERIFY(asked.areRight());
    }

    void forgetsWhenRowsCameBetween()
    {
        Keys asked;
        asked.askForMany();
        asked.list.insert(asked.list.begin(), quint64{5});
        asked.keys.rowsInserted(0, 0);
        QVERIFY(!asked.keys.keeps(0, column));
        QVERIFY(asked.areRight());
    }

    void keepsKeysOfOtherKinds_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("later");
        QTest::newRow("in the first row") << 0 << false;
        QTest::newRow("in the last row") << rows - 1 << false;
        QTest::newRow("in a row that changes") << 77 << true;
    }

    void keepsKeysOfOtherKinds()
    {
        QFETCH(int, row);
        QFETCH(bool, later);
        for (const QVariant& other : {QVariant(), QVariant(QStringLiteral("text")), QVariant(2.5), QVariant(-1)}) {
            Keys asked;
            const auto place = asked.list.begin() + row;
            *place = later ? *place : other;
            asked.askForMany();
            *place = other;
            asked.keys.cellsChanged(row, row, column, column);
            QVERIFY(asked.keys.keeps(row, column));
            QVERIFY(asked.areRight());
            QCOMPARE(asked.key(row).metaType(), other.metaType());
            *place = quint64{4};
            asked.keys.cellsChanged(row, row, column, column);
            QVERIFY(asked.areRight());
        }
    }

    void forgetsAll()
    {
        Keys asked;
        asked.askForMany();
        asked.keys.forget();
        QVERIFY(!asked.keys.keeps(0, column));
    }
};

QTEST_APPLESS_MAIN(TestSortKeys)

#include "tst_sortkeys.moc"
