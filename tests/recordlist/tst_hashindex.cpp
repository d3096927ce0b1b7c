#include <zelkoguibase/recordlist/hashindex_p.h>

#include <QtTest>

#include <random>
#include <set>

using ZelkoGUI::HashIndex;

namespace {

const auto any = [](int) { return true; };

auto is(int wanted)
{
    return [wanted](int number) { return number == wanted; };
}

} // namespace

class TestHashIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyIndexFindsNothing() { QCOMPARE(HashIndex().find(0, any), -1); }

    void numbersOfOneHashAreToldApart()
    {
        HashIndex index;
        index.insert(7, 1);
        index.insert(7, 2);
        QCOMPARE(index.find(7, is(2)), 2);
        QCOMPARE(index.find(7, is(1)), 1);
        QCOMPARE(index.find(7, is(3)), -1);
    }

    void otherHashIsNotAskedWhetherItMatches()
    {
        HashIndex index;
        index.insert(7, 1);
        QCOMPARE(index.find(7 + 16, any), -1);
    }

    void indexDoesWhatASetOfPairsDoes_data()
    {
        QTest::addColumn<unsigned int>("hashes");
        QTest::newRow("all in one chain") << 1U;
        QTest::newRow("chains that run into each other and around the end") << 16U;
        QTest::newRow("hardly a chain") << 1000000U;
    }
    void indexDoesWhatASetOfPairsDoes()
    {
        QFETCH(const unsigned int, hashes);
        std::mt19937 random(3);
        HashIndex index;
        std::set<int> present;
        const auto hashOf = [&](int number) { return (static_cast<unsigned int>(number) * 2654435761U >> 4) % hashes; };
        for (int step = 0; step < 20000; ++step) {
            const int number = static_cast<int>(random() % 200);
            const bool known = index.find(hashOf(number), is(number)) == number;
            QCOMPARE(known, present.count(number) == 1);
            if (known) {
                index.erase(hashOf(number), number);
                present.erase(number);
            } else {
                index.insert(hashOf(number), number);
                present.insert(number);
            }
        }
        for (int number = 0; number < 200; ++number) {
            QCOMPARE(index.find(hashOf(number), is(number)) >= 0, present.count(number) == 1);
        }
    }
};

QTEST_GUILESS_MAIN(TestHashIndex)
#include "tst_hashindex.moc"
