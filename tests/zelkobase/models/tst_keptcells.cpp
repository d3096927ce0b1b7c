#include <zelkobase/models/keptcells_p.h>

#include <QtTest>

using ZelkoCommon::KeptCells;

namespace {

constexpr int rows = 4000;
constexpr int column = 2;
constexpr int columns = 4;

/// Cells of a list, read as often as `reads` says.
struct Cells
{
    std::vector<QVariant> list; // of `column`; the others have their number in each cell
    int reads = 0;
    KeptCells cells{columns, [this](int row, int number) {
                        ++reads;
                        return number == column ? list[static_cast<std::size_t>(row)] : QVariant(number);
                    }};

    Cells()
    {
        for (int row = 0; row < rows; ++row) {
            list.emplace_back(quint64(3 * row));
        }
    }

    int count() const { return static_cast<int>(list.size()); }
    QVariant cell(int row, int number = column)
    {
        return cells.keeps(row, number) ? cells.cell(row, number) : cells.ask(row, number, count());
    }
    void askForMany(int number = column)
    {
        for (int row = 0; row <= rows / 8; ++row) {
            cell(row, number);
        }
    }
    bool areRight()
    {
        for (int row = 0; row < count(); ++row) {
            if (cell(row) != list[static_cast<std::size_t>(row)]) {
                return false;
            }
        }
        return true;
    }
};

} // namespace

class TestKeptCells : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatAFewQuestionsAskFor()
    {
        Cells asked;
        QCOMPARE(asked.cell(7), QVariant(quint64{21}));
        QCOMPARE(asked.cell(7), QVariant(quint64{21}));
        QCOMPARE(asked.reads, 2);
        QVERIFY(!asked.cells.keeps(7, column));
    }

    void readsEachCellOnceForManyQuestions()
    {
        Cells asked;
        asked.askForMany();
        const int reads = std::exchange(asked.reads, 0);
        QVERIFY(reads > rows && reads < 2 * rows);
        QVERIFY(asked.areRight());
        QCOMPARE(asked.reads, 0);
        QCOMPARE(asked.cell(0).metaType(), QMetaType::fromType<quint64>());
    }

    void keepsEachColumnByItself()
    {
        Cells asked;
        asked.askForMany();
        QVERIFY(!asked.cells.keeps(0, column + 1));
        asked.askForMany(column + 1);
        QVERIFY(asked.cells.keeps(rows - 1, column + 1));
        QCOMPARE(asked.cell(rows - 1, column + 1), QVariant(column + 1));
        QVERIFY(asked.areRight());
    }

    void keepsATextOfItsOwn()
    {
        Cells asked;
        const QString text = QStringLiteral("a text that is shared").repeated(2);
        std::fill(asked.list.begin(), asked.list.end(), QVariant(text));
        asked.askForMany();
        const QVariant kept = asked.cell(5);
        QCOMPARE(kept, QVariant(text));
        QVERIFY(static_cast<const QString*>(kept.constData())->constData() != text.constData());
    }

    void keepsTextsThatAreEmptyOrNull()
    {
        Cells asked;
        std::fill(asked.list.begin(), asked.list.end(), QVariant(QString()));
        asked.list.back() = QStringLiteral("");
        asked.askForMany();
        QVERIFY(asked.cell(0).toString().isNull());
        QVERIFY(!asked.cell(rows - 1).toString().isNull());
        QVERIFY(asked.areRight());
    }

    void givesWhoWalksDownTheRowsTheSame_data()
    {
        QTest::addColumn<QVariant>("content");
        QTest::newRow("numbers") << QVariant(quint64{7});
        QTest::newRow("texts") << QVariant(QStringLiteral("text"));
        QTest::newRow("texts that are null") << QVariant(QString());
        QTest::newRow("nothing") << QVariant();
    }

    void givesWhoWalksDownTheRowsTheSame()
    {
        QFETCH(QVariant, content);
        Cells asked;
        std::fill(asked.list.begin(), asked.list.end(), content);
        asked.askForMany();
        for (int row = 0; row < rows; ++row) {
            QCOMPARE(asked.cells.cellOfWalk(row, column), content);
        }
    }

    void readsChangedCellsAgain()
    {
        Cells asked;
        asked.askForMany();
        asked.reads = 0;
        asked.list[9] = quint64{1};
        asked.cells.cellsChanged(8, 10, 0, column);
        asked.cells.cellsChanged(20, 30, 0, column - 1);
        asked.cells.cellsChanged(20, 30, column + 1, column + 2);
        asked.cells.cellsChanged(rows - 1, rows + 5, column, column);
        QCOMPARE(asked.reads, 4);
        QVERIFY(asked.areRight());
        QCOMPARE(asked.reads, 4);
    }

    void aChangeEndsTheCount()
    {
        Cells asked;
        for (int change = 0; change < 100; ++change) {
            for (int question = 0; question < 30; ++question) {
                asked.cell(question);
            }
            asked.cells.cellsChanged(1, 1, 0, 9);
        }
        QCOMPARE(asked.reads, 3000);
        QVERIFY(!asked.cells.keeps(0, column));
    }

    void takesRowsThatCameBehind()
    {
        Cells asked;
        asked.askForMany();
        asked.list.emplace_back(quint64{5});
        asked.list.emplace_back(quint64{6});
        asked.cells.rowsInserted(rows, rows + 1);
        QVERIFY(asked.cells.keeps(rows + 1, column));
        QVERIFY(!asked.cells.keeps(0, column + 1));
        QVERIFY(asked.areRight());
    }

    void forgetsWhenRowsCameBetween()
    {
        Cells asked;
        asked.askForMany();
        asked.list.insert(asked.list.begin(), quint64{5});
        asked.cells.rowsInserted(0, 0);
        QVERIFY(!asked.cells.keeps(0, column));
        QVERIFY(asked.areRight());
    }

    void keepsCellsOfOtherKinds_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("later");
        QTest::newRow("in the first row") << 0 << false;
        QTest::newRow("in the last row") << rows - 1 << false;
        QTest::newRow("in a row that changes") << 77 << true;
    }

    void keepsCellsOfOtherKinds()
    {
        QFETCH(int, row);
        QFETCH(bool, later);
        for (const QVariant& other : {QVariant(), QVariant(QStringLiteral("text")), QVariant(2.5), QVariant(-1)}) {
            Cells asked;
            const auto place = asked.list.begin() + row;
            *place = later ? *place : other;
            asked.askForMany();
            *place = other;
            asked.cells.cellsChanged(row, row, column, column);
            QVERIFY(asked.cells.keeps(row, column));
            QVERIFY(asked.areRight());
            QCOMPARE(asked.cell(row).metaType(), other.metaType());
            *place = quint64{4};
            asked.cells.cellsChanged(row, row, column, column);
            QVERIFY(asked.areRight());
        }
    }

    void forgetsAll()
    {
        Cells asked;
        asked.askForMany();
        asked.cells.forget();
        QVERIFY(!asked.cells.keeps(0, column));
    }
};

QTEST_APPLESS_MAIN(TestKeptCells)

#include "tst_keptcells.moc"
