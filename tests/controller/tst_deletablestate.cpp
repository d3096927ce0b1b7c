#include <zelkoguibase/controller/deletablestate_p.h>

#include "fixedrecordmodel.h"
#include "testrecords.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoGUI::deletableState;
using ZelkoGUI::notDeletable;

class DeletableStateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isThatOfAllRecordsTogether_data();
    void isThatOfAllRecordsTogether();
    void isNoneForOneThatIsNotAtRest_data();
    void isNoneForOneThatIsNotAtRest();
    void findsWhatIsKnownAndNotDeletable_data();
    void findsWhatIsKnownAndNotDeletable();

private:
    // "P" is write protected, "D" and "E" can be deleted, of "N" no data is known, and "X" is not there.
    const FixedRecordModel m_model{{{u"P"_s, makeDeletable(u"P"_s, false)},
                                    {u"Q"_s, makeDeletable(u"Q"_s, false)},
                                    {u"D"_s, makeDeletable(u"D"_s, true)},
                                    {u"E"_s, makeDeletable(u"E"_s, true)},
                                    {u"N"_s, nullptr}}};
};

void DeletableStateTest::isThatOfAllRecordsTogether_data()
{
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<int>("state");
    QTest::newRow("no records") << QStringList{} << 0;
    QTest::newRow("a protected one") << QStringList{u"P"_s} << 1;
    QTest::newRow("protected ones") << QStringList{u"Q"_s, u"P"_s} << 1;
    QTest::newRow("a deletable one") << QStringList{u"D"_s} << 2;
    QTest::newRow("deletable ones") << QStringList{u"D"_s, u"E"_s} << 2;
    QTest::newRow("of both kinds") << QStringList{u"D"_s, u"P"_s} << 0;
    QTest::newRow("of both kinds, the other way round") << QStringList{u"P"_s, u"D"_s} << 0;
    QTest::newRow("one that is not there") << QStringList{u"D"_s, u"X"_s} << 0;
    QTest::newRow("one without data") << QStringList{u"N"_s} << 0;
}

void DeletableStateTest::isThatOfAllRecordsTogether()
{
    QFETCH(const QStringList, ids);
    QTEST(static_cast<int>(deletableState(m_model, ids)), "state");
}

void DeletableStateTest::isNoneForOneThatIsNotAtRest_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("state");
    for (int status = 0; status <= 8; ++status) {
        QTest::addRow("status %d", status) << status << (status == 5 ? 1 : 0);
    }
}

void DeletableStateTest::isNoneForOneThatIsNotAtRest()
{
    QFETCH(const int, status);
    const FixedRecordModel model({{u"P"_s, makeDeletable(u"P"_s, false)}, {u"S"_s, makeRecord(u"S"_s, status)}});
    QTEST(static_cast<int>(deletableState(model, {u"P"_s, u"S"_s})), "state");
}

void DeletableStateTest::findsWhatIsKnownAndNotDeletable_data()
{
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<QStringList>("found");
    QTest::newRow("no records") << QStringList{} << QStringList{};
    QTest::newRow("deletable ones") << QStringList{u"D"_s, u"E"_s} << QStringList{};
    QTest::newRow("in the order given") << QStringList{u"Q"_s, u"D"_s, u"P"_s} << QStringList{u"Q"_s, u"P"_s};
    QTest::newRow("of what is not known nothing") << QStringList{u"X"_s, u"N"_s} << QStringList{};
}

void DeletableStateTest::findsWhatIsKnownAndNotDeletable()
{
    QFETCH(const QStringList, ids);
    QTEST(notDeletable(m_model, ids), "found");
}

QTEST_MAIN(DeletableStateTest)
#include "tst_deletablestate.moc"
