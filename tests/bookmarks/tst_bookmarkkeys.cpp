#include <zelkoguibase/bookmarks/bookmarkkeys_p.h>

#include <QtTest>

#include <random>

using ZelkoGUI::BookmarkKeys;
using Keys = QList<BookmarkKeys::Key>;

namespace {

Keys keysOf(const BookmarkKeys& keys)
{
    Keys all;
    for (int row = 0; row < keys.count(); ++row) {
        all.append(keys.keyOf(row));
    }
    return all;
}

BookmarkKeys made(const Keys& all)
{
    BookmarkKeys keys;
    keys.assign(all);
    return keys;
}

/// Does to a list and to keys the same at random.
class RandomChanges
{
public:
    explicit RandomChanges(unsigned int seed)
        : m_random(seed)
    {}

    void insert()
    {
        const int row = below(m_plain.size() + 1);
        m_plain.insert(row, ++m_lastKey);
        m_keys.insert(row, m_lastKey);
    }
    void remove()
    {
        if (!m_plain.isEmpty()) {
            const int row = below(m_plain.size());
            m_plain.removeAt(row);
            m_keys.remove(row);
        }
    }
    void move()
    {
        const int first = below(m_plain.size() + 1);
        const int rows = below(m_plain.size() + 1 - first);
        const int destination = below(m_plain.size() + 1);
        m_keys.move(first, rows, destination);
        if (destination < first || destination > first + rows) {
            const Keys block = m_plain.mid(first, rows);
            m_plain.remove(first, rows);
            const int place = destination < first ? destination : destination - rows;
            for (int i = 0; i < rows; ++i) {
                m_plain.insert(place + i, block[i]);
            }
        }
    }

    /// Looks one key up, which is what has the others numbered.
    bool lookUp()
    {
        const BookmarkKeys::Key key = static_cast<BookmarkKeys::Key>(below(m_lastKey + 2));
        return m_keys.rowOf(key) == static_cast<int>(m_plain.indexOf(key));
    }
    bool isEqual() const { return keysOf(m_keys) == m_plain; }
    int below(qsizetype end) { return static_cast<int>(m_random() % static_cast<unsigned int>(end)); }

private:
    std::mt19937 m_random;
    Keys m_plain;
    BookmarkKeys m_keys;
    BookmarkKeys::Key m_lastKey = 0;
};

} // namespace

class BookmarkKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKeyOfNoRowHasNone();
    void keysAreWhatWasAssigned();
    void aNewRowMovesThoseBehindIt();
    void aRowThatGoesMovesThoseBehindIt();
    void rowsMoveTogether_data();
    void rowsMoveTogether();
    void keysAndRowsFitWhateverHappens();
};

void BookmarkKeysTest::aKeyOfNoRowHasNone()
{
    BookmarkKeys keys;
    QCOMPARE(keys.rowOf(0), -1);
    keys = made({5, 3});
    QCOMPARE(keys.rowOf(0), -1);
    keys.remove(0);
    QCOMPARE(keys.rowOf(5), -1);
    QCOMPARE(keys.rowOf(3), 0);
}

void BookmarkKeysTest::keysAreWhatWasAssigned()
{
    BookmarkKeys keys = made({5, 3, 8});
    QCOMPARE(keysOf(keys), Keys({5, 3, 8}));
    QCOMPARE(keys.rowOf(8), 2);
    keys.assign({8, 1});
    QCOMPARE(keysOf(keys), Keys({8, 1}));
    QCOMPARE(keys.rowOf(8), 0);
    QCOMPARE(keys.rowOf(5), -1);
}

void BookmarkKeysTest::aNewRowMovesThoseBehindIt()
{
    BookmarkKeys keys = made({5, 3, 8});
    keys.insert(1, 9);
    keys.insert(4, 2);
    QCOMPARE(keysOf(keys), Keys({5, 9, 3, 8, 2}));
    QCOMPARE(keys.rowOf(5), 0);
    QCOMPARE(keys.rowOf(3), 2);
    QCOMPARE(keys.rowOf(2), 4);
}

void BookmarkKeysTest::aRowThatGoesMovesThoseBehindIt()
{
    BookmarkKeys keys = made({5, 3, 8, 7});
    keys.remove(1);
    QCOMPARE(keysOf(keys), Keys({5, 8, 7}));
    QCOMPARE(keys.rowOf(7), 2);
    QCOMPARE(keys.rowOf(8), 1);
    QCOMPARE(keys.rowOf(3), -1);
}

void BookmarkKeysTest::rowsMoveTogether_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("destination");
    QTest::addColumn<Keys>("after");
    const Keys before{0, 1, 2, 3, 4};
    QTest::newRow("one to the front") << 3 << 1 << 0 << Keys{3, 0, 1, 2, 4};
    QTest::newRow("a block to the front") << 2 << 3 << 0 << Keys{2, 3, 4, 0, 1};
    QTest::newRow("a block by one to the front") << 2 << 2 << 1 << Keys{0, 2, 3, 1, 4};
    QTest::newRow("one to the end") << 1 << 1 << 5 << Keys{0, 2, 3, 4, 1};
    QTest::newRow("a block to the end") << 0 << 2 << 5 << Keys{2, 3, 4, 0, 1};
    QTest::newRow("a block by one to the end") << 1 << 2 << 4 << Keys{0, 3, 1, 2, 4};
    QTest::newRow("to where it is") << 1 << 2 << 1 << before;
    QTest::newRow("into itself") << 1 << 3 << 2 << before;
    QTest::newRow("right behind itself") << 1 << 2 << 3 << before;
    QTest::newRow("nothing") << 1 << 0 << 4 << before;
    QTest::newRow("less than nothing") << 1 << -1 << 4 << before;
    QTest::newRow("from before the first") << -1 << 2 << 4 << before;
    QTest::newRow("more than there is") << 3 << 3 << 0 << before;
    QTest::newRow("more than can be counted") << 1 << std::numeric_limits<int>::max() << 0 << before;
    QTest::newRow("in front of the first") << 3 << 1 << -1 << before;
    QTest::newRow("far behind the last") << 0 << 1 << 6 << before;
}

void BookmarkKeysTest::rowsMoveTogether()
{
    QFETCH(const int, first);
    QFETCH(const int, rows);
    QFETCH(const int, destination);
    QFETCH(const Keys, after);
    BookmarkKeys keys = made({0, 1, 2, 3, 4});
    keys.move(first, rows, destination);
    QCOMPARE(keysOf(keys), after);
    for (int row = 0; row < keys.count(); ++row) {
        QCOMPARE(keys.rowOf(after[row]), row);
    }
}

// The numbers of the rows are written down late, so what counts is the order of changes and questions.
void BookmarkKeysTest::keysAndRowsFitWhateverHappens()
{
    for (unsigned int seed = 0; seed < 50; ++seed) {
        RandomChanges changes(seed);
        for (int i = 0; i < 300; ++i) {
            switch (changes.below(7)) {
            case 0:
            case 1:
            case 2:
                changes.insert();
                break;
            case 3:
            case 4:
                changes.remove();
                break;
            case 5:
                changes.move();
                break;
            default:
                QVERIFY2(changes.lookUp(), qPrintable(QStringLiteral("seed %1, step %2").arg(seed).arg(i)));
            }
        }
        QVERIFY(changes.isEqual());
    }
}

QTEST_GUILESS_MAIN(BookmarkKeysTest)
#include "tst_bookmarkkeys.moc"
