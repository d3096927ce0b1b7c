#include <zelkobase/models/abstractrecordlistmodel.h>

#include "fixedrecordmodel.h"
#include "listedrecords.h"
#include "signallog.h"
#include "testrecords.h"

#include <QAbstractItemModelTester>
#include <QSortFilterProxyModel>
#include <QtTest>

using Model = ZelkoCommon::AbstractRecordListModel;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr quint64 start = 1700000000123456; // 2023-11-14 22:13:20.123 UTC
constexpr quint64 hour = 3600000000;

void addTuning(Record& record, quint64 frequency, quint64 bandwidth, quint64 sampleRate)
{
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(start);
    entry.SetRecordOffset(0);
    entry.SetTunerFrequency(frequency);
    entry.SetBandwidth(bandwidth);
    entry.SetSampleRate(sampleRate);
    record.AppendIndexEntry(entry);
}

std::shared_ptr<Record> fullRecord()
{
    auto record = makeRecord(QStringLiteral("id-1"), 2, 1536);
    record->SetRecordName(QStringLiteral("Harbour"));
    record->SetStartTime(start);
    record->SetStopTime(start + 90000000);
    record->SetDataRate(static_cast<Record::DataRate>(4));
    record->SetDataFormat(static_cast<Record::DataFormat>(6));
    record->SetDeletable(true);
    record->SetInterface(static_cast<Record::Interface>(1));
    addTuning(*record, 1, 1, 1);
    addTuning(*record, 433920000, 25000, 48000);
    return record;
}

FixedRecordModel modelOf(const std::shared_ptr<Record>& record)
{
    return FixedRecordModel({{record->GetRecordID(), record}});
}

} // namespace

class TestAbstractRecordListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsStandInTheirOrder()
    {
        const FixedRecordModel model({});
        QStringList headers;
        for (int column = 0; column < model.columnCount(); ++column) {
            headers.append(model.headerData(column, Qt::Horizontal).toString());
        }
        QCOMPARE(headers,
                 (QStringList{QStringLiteral("Name"), QStringLiteral("Size"), QStringLiteral("Start Time"),
                              QStringLiteral("Stop Time"), QStringLiteral("Duration"), QStringLiteral("Data Rate"),
                              QStringLiteral("Data Format"), QStringLiteral("Record ID"), QStringLiteral("Status"),
                              QStringLiteral("Frequency"), QStringLiteral("Bandwidth"), QStringLiteral("Sample Rate"),
                              QStringLiteral("Deletable"), QStringLiteral("Interface")}));
        QVERIFY(!model.headerData(14, Qt::Horizontal).isValid() || model.headerData(14, Qt::Horizontal).toInt() == 15);
    }

    void peopleReadUnitsTimesAndWords()
    {
        const FixedRecordModel model = modelOf(fullRecord());
        QCOMPARE(
            rowText(model, 0),
            QStringLiteral(
                "Harbour | 1.5 kByte | 2023-11-14 23:13:20 | 2023-11-14 23:14:50 | 00:01:30 | %1 | %2 | id-1 | %3 | "
                "433.92 MHz | 25 kHz | 48 kHz | yes | %4")
                .arg(Record::GetGUIDataRates().at(4), Record::GetGUIDataFormats().at(6),
                     Record::GetGUIRecordStatuss().at(2), Record::GetGUIInterfaces().at(1)));
    }

    void whatIsNotKnownIsNotShown()
    {
        const auto record = makeRecord(QStringLiteral("A"), 2);
        record->SetStopTime(0);
        const FixedRecordModel model = modelOf(record);
        for (const int column : {Model::StopTimeColumn, Model::DurationColumn, Model::FrequencyColumn,
                                 Model::BandwidthColumn, Model::SampleRateColumn}) {
            QCOMPARE(model.index(0, column).data().toString(), QString());
        }
    }

    void filtersReadTypedValues_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        const auto dateTime = [](qint64 milliseconds) {
            return QVariant(QDateTime::fromMSecsSinceEpoch(milliseconds));
        };
        QTest::newRow("name") << int{Model::NameColumn} << QVariant(QStringLiteral("Harbour"));
        QTest::newRow("size in bytes") << int{Model::SizeColumn} << QVariant(1536.0);
        QTest::newRow("start time") << int{Model::StartTimeColumn} << dateTime(1700000000123);
        QTest::newRow("stop time") << int{Model::StopTimeColumn} << dateTime(1700000090123);
        QTest::newRow("duration") << int{Model::DurationColumn} << QVariant(QTime(0, 1, 30));
        QTest::newRow("data rate") << int{Model::DataRateColumn}
                                   << QVariant::fromValue(static_cast<Record::DataRate>(4));
        QTest::newRow("data format") << int{Model::DataFormatColumn}
                                     << QVariant::fromValue(static_cast<Record::DataFormat>(6));
        QTest::newRow("record ID") << int{Model::RecordIDColumn} << QVariant(QStringLiteral("id-1"));
        QTest::newRow("status") << int{Model::StatusColumn}
                                << QVariant::fromValue(static_cast<Record::RecordStatus>(2));
        QTest::newRow("frequency in hertz, of the last index entry")
            << int{Model::FrequencyColumn} << QVariant(433920000.0);
        QTest::newRow("bandwidth in hertz") << int{Model::BandwidthColumn} << QVariant(25000.0);
        QTest::newRow("sample rate in hertz") << int{Model::SampleRateColumn} << QVariant(48000.0);
        QTest::newRow("deletable") << int{Model::DeletableColumn} << QVariant(true);
        QTest::newRow("interface") << int{Model::InterfaceColumn}
                                   << QVariant::fromValue(static_cast<Record::Interface>(1));
    }
    void filtersReadTypedValues()
    {
        QFETCH(const int, column);
        QFETCH(const QVariant, value);
        const FixedRecordModel model = modelOf(fullRecord());
        const QVariant read = model.index(0, column).data(33);
        QCOMPARE(read.typeName(), value.typeName());
        QCOMPARE(read, value);
        QCOMPARE(model.index(0, column).data(Qt::UserRole + 1), value);
        QCOMPARE(model.index(0, column).data(Qt::UserRole), model.index(0, column).data(32));
    }

    void enumerationsAreRegisteredUnderTheirFullNames_data()
    {
        QTest::addColumn<int>("column");
        QTest::newRow("ZELKO_XML::ZELKO_RecordData::DataRate") << int{Model::DataRateColumn};
        QTest::newRow("ZELKO_XML::ZELKO_RecordData::DataFormat") << int{Model::DataFormatColumn};
        QTest::newRow("ZELKO_XML::ZELKO_RecordData::RecordStatus") << int{Model::StatusColumn};
        QTest::newRow("ZELKO_XML::ZELKO_RecordData::Interface") << int{Model::InterfaceColumn};
    }
    void enumerationsAreRegisteredUnderTheirFullNames()
    {
        QFETCH(const int, column);
        const FixedRecordModel model = modelOf(makeRecord(QStringLiteral("A")));
        const QMetaType type = QMetaType::fromName(QTest::currentDataTag());
        QVERIFY(type.isValid());
        QCOMPARE(model.index(0, column).data(Model::ValueRole).metaType(), type);
    }

    void valuesOfARecordWithoutDetailsKeepTheirTypes()
    {
        const FixedRecordModel bare = modelOf(makeRecord(QStringLiteral("A")));
        const FixedRecordModel full = modelOf(fullRecord());
        for (int column = 0; column < bare.columnCount(); ++column) {
            for (const int role : {int{Model::SortRole}, int{Model::ValueRole}}) {
                QCOMPARE(bare.index(0, column).data(role).metaType(), full.index(0, column).data(role).metaType());
            }
        }
    }

    void durationOfADayAndMoreWraps()
    {
        const auto record = makeRecord(QStringLiteral("A"));
        record->SetStopTime(record->GetStartTime() + 26 * hour);
        const FixedRecordModel model = modelOf(record);
        QCOMPARE(model.index(0, Model::DurationColumn).data(Model::ValueRole).toTime(), QTime(2, 0));
        QCOMPARE(model.index(0, Model::DurationColumn).data(Model::SortRole).toULongLong(), 26 * hour);
        QCOMPARE(model.index(0, Model::DurationColumn).data().toString(), QStringLiteral("1 d 02:00:00"));
    }

    void stopBeforeStartIsNoDuration()
    {
        const auto record = makeRecord(QStringLiteral("A"));
        record->SetStopTime(record->GetStartTime() - 1);
        const FixedRecordModel model = modelOf(record);
        QCOMPARE(model.index(0, Model::DurationColumn).data(Model::SortRole).toULongLong(), quint64{0});
        QCOMPARE(model.index(0, Model::DurationColumn).data(Model::ValueRole).toTime(), QTime(0, 0));
    }

    void sortKeyOrdersNumbersNotTexts_data()
    {
        QTest::addColumn<int>("column");
        for (int column = 0; column < Model::ColumnCount; ++column) {
            QTest::newRow(qPrintable(QStringLiteral("column %1").arg(column))) << column;
        }
    }
    void sortKeyOrdersNumbersNotTexts()
    {
        QFETCH(const int, column);
        const auto low = makeRecord(QStringLiteral("A"), 2, 900);
        low->SetStopTime(low->GetStartTime() + 9000000);
        low->SetDataRate(static_cast<Record::DataRate>(2));
        low->SetDataFormat(static_cast<Record::DataFormat>(2));
        addTuning(*low, 900000, 9000, 9000);
        const auto high = makeRecord(QStringLiteral("B"), 5, 1048576);
        high->SetStartTime(low->GetStartTime() + 1);
        high->SetStopTime(low->GetStopTime() + 80000000);
        high->SetDataRate(static_cast<Record::DataRate>(10));
        high->SetDataFormat(static_cast<Record::DataFormat>(10));
        high->SetInterface(static_cast<Record::Interface>(2));
        high->SetDeletable(true);
        addTuning(*high, 1000000, 10000, 10000);
        FixedRecordModel model({{QStringLiteral("B"), high}, {QStringLiteral("A"), low}});

        QSortFilterProxyModel proxy;
        proxy.setSortRole(Model::SortRole);
        proxy.setSourceModel(&model);
        proxy.sort(column, Qt::AscendingOrder);
        QCOMPARE(columnTexts(proxy, Model::RecordIDColumn), (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
        proxy.sort(column, Qt::DescendingOrder);
        QCOMPARE(columnTexts(proxy, Model::RecordIDColumn), (QStringList{QStringLiteral("B"), QStringLiteral("A")}));
    }

    void sortKeysAndValuesMakeNoTexts()
    {
        const auto record = fullRecord();
        const FixedRecordModel model = modelOf(record);
        for (const int role : {int{Model::SortRole}, int{Model::ValueRole}}) {
            QCOMPARE(model.index(0, Model::NameColumn).data(role).toString().constData(),
                     record->GetRecordName().constData());
            QCOMPARE(model.index(0, Model::RecordIDColumn).data(role).toString().constData(),
                     record->GetRecordID().constData());
            for (int column = 0; column < model.columnCount(); ++column) {
                if (column != Model::NameColumn && column != Model::RecordIDColumn) {
                    QVERIFY(model.index(0, column).data(role).metaType() != QMetaType::fromType<QString>());
                }
            }
        }
    }

    void quantitiesStandToTheRight()
    {
        const FixedRecordModel model = modelOf(fullRecord());
        QList<int> right;
        for (int column = 0; column < model.columnCount(); ++column) {
            if (model.index(0, column).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight) {
                right.append(column);
            }
        }
        QCOMPARE(right, (QList<int>{1, 4, 9, 10, 11}));
    }

    void headersStandAsTheCellsBelowThem()
    {
        const FixedRecordModel model = modelOf(fullRecord());
        for (int column = 0; column < model.columnCount(); ++column) {
            QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole),
                     model.index(0, column).data(Qt::TextAlignmentRole));
        }
        QVERIFY(!model.headerData(1, Qt::Vertical, Qt::TextAlignmentRole).isValid());
    }

    void rowWithoutDataShowsItsIDAlone()
    {
        const FixedRecordModel model({{QStringLiteral("A"), nullptr}});
        QCOMPARE(rowText(model, 0), QStringLiteral(" |  |  |  |  |  |  | A |  |  |  |  |  | "));
        QVERIFY(!model.index(0, Model::StatusColumn).data(Model::ValueRole).isValid());
        QVERIFY(model.hasRecord(QStringLiteral("A")));
        QVERIFY(!model.getRecordData(QStringLiteral("A")));
    }

    void recordsAreFoundByIDAndByIndex()
    {
        const auto record = makeRecord(QStringLiteral("B"));
        const FixedRecordModel model(
            {{QStringLiteral("A"), makeRecord(QStringLiteral("A"))}, {QStringLiteral("B"), record}});
        QVERIFY(model.hasRecord(QStringLiteral("B")));
        QCOMPARE(model.getRecordData(QStringLiteral("B")).get(), record.get());
        QCOMPARE(model.recordIndex(QStringLiteral("B")), model.index(1, 0));
        QCOMPARE(model.getRecordID(model.index(1, 5)), QStringLiteral("B"));
    }

    void unknownIDsAndForeignIndexesGiveNothing()
    {
        const FixedRecordModel model({{QStringLiteral("A"), makeRecord(QStringLiteral("A"))}});
        const FixedRecordModel other({{QStringLiteral("A"), makeRecord(QStringLiteral("A"))}});
        QVERIFY(!model.hasRecord(QString()));
        QVERIFY(!model.hasRecord(QStringLiteral("B")));
        QVERIFY(!model.getRecordData(QStringLiteral("B")));
        QVERIFY(!model.recordIndex(QStringLiteral("B")).isValid());
        QVERIFY(model.getRecordID(QModelIndex()).isEmpty());
        QVERIFY(model.getRecordID(other.index(0, 0)).isEmpty());
        QVERIFY(!model.data(QModelIndex()).isValid());
        QVERIFY(!model.index(0, 0).data(Qt::EditRole).isValid());
    }

    void aSortedListStaysSortedOverEveryChange()
    {
        const auto idOf = [](int number) { return QStringLiteral("r%1").arg(number); };
        const auto sizeOf = [](int number) { return static_cast<quint64>(number * 7919 % 10007); };
        ListedRecords model;
        QSortFilterProxyModel sorted;
        sorted.setSortRole(Model::SortRole);
        sorted.setSourceModel(&model);
        for (int number = 0; number < 2000; ++number) {
            model.add(makeRecord(idOf(number), 2, sizeOf(number)));
        }
        const auto isSorted = [&] {
            QList<quint64> sizes;
            for (int row = 0; row < sorted.rowCount(); ++row) {
                const QString id = sorted.index(row, Model::RecordIDColumn).data().toString();
                sizes.append(model.getRecordData(id)->GetSize());
            }
            return sizes.size() == model.recordCount() && std::is_sorted(sizes.begin(), sizes.end());
        };
        sorted.sort(Model::SizeColumn); // from here on many keys have been asked for
        QVERIFY(isSorted());
        model.change(makeRecord(idOf(1000), 2, 1));
        QVERIFY(isSorted());
        model.add(makeRecord(idOf(5000), 2, 5000));
        QVERIFY(isSorted());
        Q_EMIT model.dataChanged({}, {}); // something, somewhere
        QVERIFY(isSorted());
        model.remove(idOf(3));
        sorted.invalidate();
        QVERIFY(isSorted());
        model.replace({idOf(1), idOf(2)});
        model.change(makeRecord(idOf(1), 2, 9));
        QVERIFY(isSorted());
    }

    void valuesAreThoseOfTheRecordsAfterEveryChange()
    {
        const auto idOf = [](int number) { return QStringLiteral("r%1").arg(number); };
        ListedRecords model;
        for (int number = 0; number < 2000; ++number) {
            model.add(makeRecord(idOf(number), 2, static_cast<quint64>(number)));
        }
        const auto areRight = [&] { // asked so often that the columns are kept
            for (int row = 0; row < model.recordCount(); ++row) {
                const auto record = model.recordData(row);
                const auto value = [&](int column) { return model.index(row, column).data(Model::ValueRole); };
                if (value(Model::RecordIDColumn) != QVariant(record->GetRecordID()) ||
                    value(Model::SizeColumn) != QVariant(static_cast<double>(record->GetSize()))) {
                    return false;
                }
            }
            return true;
        };
        QVERIFY(areRight());
        model.change(makeRecord(idOf(1000), 2, 1));
        QVERIFY(areRight());
        model.add(makeRecord(idOf(5000), 2, 5000));
        QVERIFY(areRight());
        model.remove(idOf(3));
        QVERIFY(areRight());
        model.replace({idOf(2), idOf(1)});
        QVERIFY(areRight());
    }

    void aChangeNobodyKnowsWhereIsNoneOfAnUnsortedList()
    {
        ListedRecords model({QStringLiteral("A")});
        Q_EMIT model.dataChanged({}, {});
        QCOMPARE(model.index(0, 0).data(Model::SortRole), model.index(0, 0).data());
    }

    void modelIsConsistent()
    {
        FixedRecordModel model({{QStringLiteral("A"), fullRecord()}, {QStringLiteral("B"), nullptr}});
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(model.index(0, 0)), 0);
        QCOMPARE(model.columnCount(model.index(0, 0)), 0);
    }
};

QTEST_GUILESS_MAIN(TestAbstractRecordListModel)
#include "tst_abstractrecordlistmodel.moc"
