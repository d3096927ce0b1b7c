#include <zelkobase/service/hostlookup.h>

#include <QSemaphore>
#include <QTest>

#include <memory>

using namespace ZelkoCommon;
using namespace std::chrono_literals;

class tst_HostLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anAddressIsItsOwnAnswer_data();
    void anAddressIsItsOwnAnswer();
    void theNameOfThisMachine();
    void aNameThatNobodyKnows();
    void aNameServiceThatIsSilentCostsTheLimit();
    void anAnswerInTimeIsGivenOn();
};

void tst_HostLookup::anAddressIsItsOwnAnswer_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("of the short kind") << "192.0.2.7";
    QTest::newRow("of the long kind") << "2001:db8::1";
}

// Also without any time, since nobody has to be asked.
void tst_HostLookup::anAddressIsItsOwnAnswer()
{
    QFETCH(QString, address);
    const auto found = addressesOf(address, 0ms);
    QVERIFY(found);
    QCOMPARE(*found, QStringList(address));
}

void tst_HostLookup::theNameOfThisMachine()
{
    const auto found = addressesOf("localhost", 60s);
    QVERIFY(found);
    QVERIFY2(found->contains("127.0.0.1"), qPrintable(found->join(' ')));
}

// A name that is too long to be one is refused without a name server.
void tst_HostLookup::aNameThatNobodyKnows()
{
    const auto found = addressesOf(QString(300, 'x'), 60s);
    QVERIFY(found);
    QVERIFY(found->isEmpty());
}

// The query ends when the test has its answer, and not before.
void tst_HostLookup::aNameServiceThatIsSilentCostsTheLimit()
{
    const auto answer = std::make_shared<QSemaphore>();
    const auto found = addressesOf("recorder", 1ms, [answer](const std::string&) {
        answer->acquire();
        return QStringList("192.0.2.7");
    });
    answer->release();
    QVERIFY(!found);
}

void tst_HostLookup::anAnswerInTimeIsGivenOn()
{
    const auto found = addressesOf("recorder", 60s, [](const std::string& name) {
        return QStringList{QString::fromStdString(name), "192.0.2.7"};
    });
    QVERIFY(found);
    QCOMPARE(*found, (QStringList{"recorder", "192.0.2.7"}));
}

QTEST_GUILESS_MAIN(tst_HostLookup)

#include "tst_hostlookup.moc"
