#include <zelkobase/data/recordfiles.h>
#include <zelkobase/data/zelko_recorddata.h>

#include <reportcore/rgexception.h>

#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

#include <limits>
#include <memory>

using namespace ZELKO_XML;

namespace {

using RecordStatus = ZELKO_RecordData::RecordStatus;
using DataRate = ZELKO_RecordData::DataRate;
using DataFormat = ZELKO_RecordData::DataFormat;
using Interface = ZELKO_RecordData::Interface;

template <typename T>
T anyValue()
{
    return static_cast<T>(1);
}

template <>
QString anyValue<QString>()
{
    return QStringLiteral("text");
}

template <>
BookmarkEntry anyValue<BookmarkEntry>()
{
    BookmarkEntry entry;
    entry.SetTimestamp(5);
    entry.SetBookmark(QStringLiteral("mark"));
    return entry;
}

template <>
HistoryEntry anyValue<HistoryEntry>()
{
    HistoryEntry entry;
    entry.SetTimestamp(6);
    entry.SetHistoryEntry(QStringLiteral("comment"));
    return entry;
}

template <>
IndexEntry anyValue<IndexEntry>()
{
    IndexEntry entry;
    entry.SetTimestamp(7);
    entry.SetRecordOffset(8);
    return entry;
}

#define PUT_Required Set
#define PUT_Defaulted Set
#define PUT_Optional Set
#define PUT_List Append
#define JOIN_AGAIN(a, b) a##b
#define JOIN(a, b) JOIN_AGAIN(a, b)
#define CHANGE(kind, type, name)                                                                                       \
    {#name, [](ZELKO_RecordData& record) { record.JOIN(PUT_##kind, name)(anyValue<type>()); }},

struct Change
{
    const char* field;
    void (*apply)(ZELKO_RecordData& record);
};

const Change changes[] = {ZELKO_RECORDDATA_FIELDS(CHANGE)};

ZELKO_RecordData bornRecord()
{
    ZELKO_RecordData record;
    record.SetRecordID(QStringLiteral("20240101-0001"));
    record.SetRecordName(QStringLiteral("beacon"));
    record.SetStartTime(1'704'067'200'000'000);
    record.SetRecordStatus(RecordStatus::Recording);
    return record;
}

ZELKO_RecordData fullRecord()
{
    ZELKO_RecordData record;
    for (const Change& change : changes)
        change.apply(record);
    return record;
}

QString streamed(const ZELKO_RecordData& record)
{
    QString text;
    QXmlStreamWriter writer(&text);
    record.GetXml(writer);
    return text;
}

ZELKO_RecordData fromStream(const QString& text)
{
    QXmlStreamReader reader(text);
    ZELKO_RecordData record;
    record.ProcessXml(reader);
    return record;
}

ZELKO_RecordData fromString(const QString& text)
{
    ZELKO_RecordData record;
    record.SetXmlString(text, true);
    return record;
}

} // namespace

class RecordDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFieldMakesADifference_data();
    void everyFieldMakesADifference();
    void formsCrossAndStayEqual();
    void aNewRecordHoldsNothing();
    void aRecordJustBornIsComplete();
    void aConvertedRecordIsComplete();
    void whatARecordNeeds_data();
    void whatARecordNeeds();
    void anEmptyIDIsNoID();
    void unknownElementsAreSkipped();
    void impossibleFilesLeaveTheRecord_data();
    void impossibleFilesLeaveTheRecord();
    void finishedTellsUnsetFromFalse();
    void interfaceTellsUnsetFromNone();
    void indexCanBeReset();
    void copiesShareNothingThatCanChange();
    void namedNumbersStand();
    void displayListsHaveTheirLengths();
    void everyInterfaceButTheFirstIsOne();
    void namesLeadToNumbers();
    void statusReadsAsText();
    void fileSurvivesAFailedSave();
    void travelsInAVariant();
    void isSmall();
};

void RecordDataTest::everyFieldMakesADifference_data()
{
    QTest::addColumn<int>("number");
    for (int i = 0; i < static_cast<int>(std::size(changes)); ++i)
        QTest::newRow(changes[i].field) << i;
}

void RecordDataTest::everyFieldMakesADifference()
{
    QFETCH(int, number);
    ZELKO_RecordData record;
    record.SetValidate(false);
    QVERIFY(!record.AnyData());
    changes[number].apply(record);
    QVERIFY(record.AnyData());
    QVERIFY(record != ZELKO_RecordData());
    QVERIFY(ZELKO_RecordData(record) == record);
    QVERIFY(streamed(record).contains(QLatin1String(changes[number].field)));

    ZELKO_RecordData back;
    back.SetValidate(false);
    QVERIFY(back.SetXmlString(record.GetXmlString(), true));
    QVERIFY(back == record);

    std::string bytes;
    record.appendBinary(bytes);
    const char* begin = bytes.data();
    QVERIFY(back.readBinary(begin, bytes.data() + bytes.size()));
    QVERIFY(back == record);

    record.Reset();
    QVERIFY(record == ZELKO_RecordData());
}

void RecordDataTest::formsCrossAndStayEqual()
{
    for (const ZELKO_RecordData& record : {bornRecord(), fullRecord()}) {
        QVERIFY(fromString(record.GetXmlString()) == record);
        QVERIFY(fromString(streamed(record)) == record);
        QVERIFY(fromStream(record.GetXmlString()) == record);
        QVERIFY(fromStream(streamed(record)) == record);
        const QTemporaryDir folder;
        QVERIFY(record.SaveXml(folder.filePath(metaDataFileName)));
        ZELKO_RecordData loaded;
        QVERIFY(loaded.LoadXml(folder.filePath(metaDataFileName)));
        QVERIFY(loaded == record);
    }
}

void RecordDataTest::aNewRecordHoldsNothing()
{
    const ZELKO_RecordData record;
    QVERIFY(!record.AnyData());
    QVERIFY(!record.HasData());
    QVERIFY(!record.IsInterfaceSet());
    QVERIFY(!record.IsFinishedSet());
    QVERIFY(!record.IsBookmarkEntrySet());
    QVERIFY(!record.IsHistoryEntrySet());
    QVERIFY(!record.IsIndexEntrySet());
    QCOMPARE(record.GetRecordID(), QString());
    QCOMPARE(record.GetStartTime(), quint64{0});
    QCOMPARE(record.GetDeletable(), false);
}

void RecordDataTest::aRecordJustBornIsComplete()
{
    bornRecord().Check();
    fullRecord().Check();
}

void RecordDataTest::aConvertedRecordIsComplete()
{
    ZELKO_RecordData record;
    record.SetRecordStatus(RecordStatus::Finished);
    record.SetRecordID(QStringLiteral("old"));
    record.SetSize(0);
    record.SetStartTime(0);
    record.SetStopTime(0);
    record.SetDataFormat(static_cast<DataFormat>(0));
    record.SetRecordingLoopSize(0);
    record.SetStopPosition(0);
    record.SetStartPosition(0);
    record.SetDataRate(static_cast<DataRate>(0));
    record.SetDeletable(false);
    record.SetRecordName(QString());
    record.SetValidate(true);
    record.Check();
}

void RecordDataTest::whatARecordNeeds_data()
{
    QTest::addColumn<QString>("element");
    QTest::addColumn<bool>("needed");
    for (const Change& change : changes) {
        const QString element = QLatin1String(change.field);
        const bool needed = QStringList{QStringLiteral("RecordID"), QStringLiteral("RecordName"),
                                        QStringLiteral("StartTime"), QStringLiteral("RecordStatus")}
                                .contains(element);
        QTest::newRow(change.field) << element << needed;
    }
}

void RecordDataTest::whatARecordNeeds()
{
    QFETCH(QString, element);
    QFETCH(bool, needed);
    QString text = streamed(fullRecord());
    const qsizetype start = text.indexOf(QLatin1Char('<') + element + QLatin1Char('>'));
    const QString end = QStringLiteral("</") + element + QLatin1Char('>');
    // The entries' comments have the name of their element, so the last end tag is the one that belongs to the start.
    text.remove(start, text.lastIndexOf(end) + end.size() - start);
    bool refused = false;
    try {
        fromString(text);
    } catch (const RGException&) {
        refused = true;
    }
    QCOMPARE(refused, needed);
}

void RecordDataTest::anEmptyIDIsNoID()
{
    ZELKO_RecordData record = bornRecord();
    record.SetRecordID(QString());
    QVERIFY_EXCEPTION_THROWN(record.Check(), RGException);
}

void RecordDataTest::unknownElementsAreSkipped()
{
    QString text = streamed(bornRecord());
    text.replace(QStringLiteral("</ZELKO_RecordData>"), QStringLiteral("<Later>1</Later></ZELKO_RecordData>"));
    QVERIFY(fromString(text) == bornRecord());
    QVERIFY(fromStream(text) == bornRecord());
}

void RecordDataTest::impossibleFilesLeaveTheRecord_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    const auto row = [](const char* name, const char* before, const char* after) {
        QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(after);
    };
    row("an unknown status", "<RecordStatus>Prepared<", "<RecordStatus>Lost<");
    row("a status by number", "<RecordStatus>Prepared<", "<RecordStatus>1<");
    row("an unknown format", "<DataFormat>IQ16<", "<DataFormat>IQ17<");
    row("a negative size", "<Size>1<", "<Size>-1<");
    row("a size with a unit", "<Size>1<", "<Size>1 kB<");
    row("two sizes", "<Size>1<", "<Size>1</Size><Size>1<");
    row("two IDs", "<RecordID>text<", "<RecordID>text</RecordID><RecordID>text<");
    row("an empty ID", "<RecordID>text<", "<RecordID><");
    row("a flag that is none", "<Deletable>true<", "<Deletable>maybe<");
    row("a bookmark without its text", "<Bookmark>mark</Bookmark>", "");
    row("an index entry without its offset", "<RecordOffset>8</RecordOffset>", "");
    row("a time beyond 64 bits", "<StartTime>1<", "<StartTime>99999999999999999999<");
    row("a tag that never ends", "</ZELKO_RecordData>", "");
}

void RecordDataTest::impossibleFilesLeaveTheRecord()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QString text = streamed(fullRecord());
    QVERIFY(text.contains(before));
    text.replace(before, after);
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(text.toUtf8());
    file.seek(0);
    ZELKO_RecordData record = bornRecord();
    QXmlStreamReader reader(text);
    QVERIFY_EXCEPTION_THROWN(record.LoadXml(&file), RGException);
    QVERIFY_EXCEPTION_THROWN(record.SetXmlString(text, true), RGException);
    QVERIFY_EXCEPTION_THROWN(record.ProcessXml(reader), RGException);
    QVERIFY(record == bornRecord());
}

void RecordDataTest::finishedTellsUnsetFromFalse()
{
    ZELKO_RecordData record = bornRecord();
    record.SetFinished(false);
    QVERIFY(record.IsFinishedSet());
    QVERIFY(record != bornRecord());
    const ZELKO_RecordData back = fromString(record.GetXmlString());
    QVERIFY(back.IsFinishedSet() && !back.GetFinished());
    record.ResetFinished();
    QVERIFY(record == bornRecord());
}

void RecordDataTest::interfaceTellsUnsetFromNone()
{
    ZELKO_RecordData record = bornRecord();
    record.SetInterface(Interface::None);
    QVERIFY(fromString(record.GetXmlString()).IsInterfaceSet());
    record.ResetInterface();
    QVERIFY(!fromString(record.GetXmlString()).IsInterfaceSet());
}

void RecordDataTest::indexCanBeReset()
{
    ZELKO_RecordData record;
    record.AppendIndexEntry(anyValue<IndexEntry>());
    record.AppendIndexEntry(IndexEntry());
    QCOMPARE(record.GetIndexEntry().size(), qsizetype{2});
    QVERIFY(record.GetIndexEntry().at(0) == anyValue<IndexEntry>());
    record.ResetIndexEntry();
    QVERIFY(!record.IsIndexEntrySet());
    QVERIFY(!record.AnyData());
}

void RecordDataTest::copiesShareNothingThatCanChange()
{
    const auto shared = std::make_shared<ZELKO_RecordData>(fullRecord());
    ZELKO_RecordData copy = *shared;
    copy.SetRecordName(QStringLiteral("renamed"));
    copy.GetBookmarkEntry()[0].SetBookmark(QStringLiteral("changed"));
    QVERIFY(*shared == fullRecord());
}

void RecordDataTest::namedNumbersStand()
{
    QCOMPARE(static_cast<int>(RecordStatus::Recording), 2);
    QCOMPARE(static_cast<int>(RecordStatus::LoopRecording), 3);
    QCOMPARE(static_cast<int>(RecordStatus::Finished), 5);
    QCOMPARE(static_cast<int>(DataRate::RawStream), 9);
    QCOMPARE(static_cast<int>(DataFormat::IQ16), 1);
    QCOMPARE(static_cast<int>(DataFormat::Symbols), 6);
    QCOMPARE(static_cast<int>(DataFormat::IQ32), 21);
    QCOMPARE(static_cast<int>(Interface::None), 0);
}

void RecordDataTest::displayListsHaveTheirLengths()
{
    QCOMPARE(ZELKO_RecordData::GetGUIRecordStatuss().size(), qsizetype{9});
    QCOMPARE(ZELKO_RecordData::GetGUIDataRates().size(), qsizetype{16});
    QCOMPARE(ZELKO_RecordData::GetGUIDataFormats().size(), qsizetype{24});
    QCOMPARE(ZELKO_RecordData::GetGUIInterfaces().size(), ZELKO_RecordData::GetInterfaces().size());
    QCOMPARE(ZELKO_RecordData::GetGUIDataFormats().at(1), QStringLiteral("IQ 16 bit"));
    QCOMPARE(ZELKO_RecordData::GetGUIDataFormats().at(6), QStringLiteral("symbols"));
    for (QStringList words : {ZELKO_RecordData::GetGUIRecordStatuss(), ZELKO_RecordData::GetGUIDataRates(),
                              ZELKO_RecordData::GetGUIDataFormats(), ZELKO_RecordData::GetGUIInterfaces()}) {
        QVERIFY(!words.contains(QString()));
        QCOMPARE(words.removeDuplicates(), qsizetype{0});
    }
}

void RecordDataTest::everyInterfaceButTheFirstIsOne()
{
    const QStringList names = ZELKO_RecordData::GetInterfaces();
    for (int number = 0; number < names.size(); ++number)
        QCOMPARE(static_cast<int>(ZELKO_RecordData::NameToInterface(names.at(number))), number);
}

void RecordDataTest::namesLeadToNumbers()
{
    QCOMPARE(ZELKO_RecordData::NameToDataFormat(QStringLiteral("Symbols")), DataFormat::Symbols);
    QCOMPARE(static_cast<int>(ZELKO_RecordData::NameToDataFormat(QStringLiteral("symbols"))), -1);
    QCOMPARE(static_cast<int>(ZELKO_RecordData::NameToDataFormat(QString())), -1);
}

void RecordDataTest::statusReadsAsText()
{
    ZELKO_RecordData record;
    record.SetRecordStatus(RecordStatus::Finished);
    QCOMPARE(record.GetRecordStatusAsString(), QStringLiteral("Finished"));
}

void RecordDataTest::fileSurvivesAFailedSave()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(metaDataFileName);
    QVERIFY(bornRecord().SaveXml(path));
    QVERIFY_EXCEPTION_THROWN(ZELKO_RecordData().SaveXml(path), RGException);
    ZELKO_RecordData record;
    QVERIFY(record.LoadXml(path));
    QVERIFY(record == bornRecord());
}

void RecordDataTest::travelsInAVariant()
{
    const QVariant variant = QVariant::fromValue(fullRecord());
    QVERIFY(variant.value<ZELKO_RecordData>() == fullRecord());
}

void RecordDataTest::isSmall()
{
    QVERIFY2(sizeof(ZELKO_RecordData) <= 300, qPrintable(QString::number(sizeof(ZELKO_RecordData))));
}

QTEST_APPLESS_MAIN(RecordDataTest)
#include "tst_zelko_recorddata.moc"
