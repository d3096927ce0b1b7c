#include <servicerecorder.h>

#include <recorder/store/recordchanges.h>

#include <zelkobase/service/refusaltext.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using QD_ZLK::IF_ZELKO_Admin;
using QD_ZLK::IF_ZELKO_Admin_ptr;
using QD_ZLK::IF_ZELKO_Admin_var;
using ZelkoCommon::fromCorba;
using ZelkoCommon::Role;
using ZelkoCommon::ServiceStatus;
using ZelkoCommon::toCorba;
using ZelkoCommon::toWideCorba;

Q_DECLARE_METATYPE(ZelkoCommon::ServiceStatus)

namespace {

/// A call on the administration; its status.
using Call = std::function<CORBA::ULong(IF_ZELKO_Admin_ptr, const char* device, const char* record)>;

QD_ZLK::RecordBookmarkSeq bookmarks(const QVector<QPair<qint64, QString>>& entries)
{
    QD_ZLK::RecordBookmarkSeq result;
    result.length(static_cast<CORBA::ULong>(entries.size()));
    CORBA::ULong next = 0;
    for (const auto& [position, text] : entries) {
        result[next].position = position;
        result[next++].text = toWideCorba(text);
    }
    return result;
}

QD_ZLK::TimeRangeSeq ranges(const QVector<QPair<qint64, qint64>>& entries)
{
    QD_ZLK::TimeRangeSeq result;
    result.length(static_cast<CORBA::ULong>(entries.size()));
    CORBA::ULong next = 0;
    for (const auto& [start, stop] : entries) {
        result[next].start = start;
        result[next++].stop = stop;
    }
    return result;
}

CORBA::ULong copy(IF_ZELKO_Admin_ptr admin, const char* device, const char* record, const QD_ZLK::TimeRangeSeq& parts)
{
    CORBA::String_var id;
    return admin->copyRecord(device, record, id.out(), parts, toWideCorba("copy"));
}

CORBA::ULong deviceTime(IF_ZELKO_Admin_ptr admin, const char* device)
{
    CORBA::LongLong time = 0;
    CORBA::Boolean synchronised = false;
    return admin->getDeviceTime(device, time, synchronised);
}

CORBA::ULong record(IF_ZELKO_Admin_ptr admin, const char* device, const char* id)
{
    QD_ZLK::RecordInfo_var info;
    return admin->getRecord(device, id, info.out());
}

struct NamedCall
{
    const char* name;
    Call call;
    bool viewerMay = false;
    bool isOfRecord = true;
};

// Every operation, with arguments that are good for the record r1.
const QVector<NamedCall>& allCalls()
{
    static const QVector<NamedCall> calls{
        {"removeHistoryEntry", [](auto a, auto d, auto r) { return a->removeHistoryEntry(d, r, 12'000'000); }},
        {"addHistory", [](auto a, auto d, auto r) { return a->addHistory(d, r, toWideCorba("x")); }},
        {"copyRecord",
         [](auto a, auto d, auto r) {
             return copy(a, d, r, ranges({{10'000'000, 11'000'000}}));
         }},
        {"setRecordComment", [](auto a, auto d, auto r) { return a->setRecordComment(d, r, toWideCorba("x")); }},
        {"setRecordDeletableFlag", [](auto a, auto d, auto r) { return a->setRecordDeletableFlag(d, r, true); }},
        {"addBookmarks",
         [](auto a, auto d, auto r) {
             return a->addBookmarks(d, r, bookmarks({{10'500'000, "b"}}));
         }},
        {"deleteBookmarks", [](auto a, auto d, auto r) { return a->deleteBookmarks(d, r, bookmarks({})); }},
        {"getDeviceTime", [](auto a, auto d, auto) { return deviceTime(a, d); }, true, false},
        {"setDeviceTime", [](auto a, auto d, auto) { return a->setDeviceTime(d, 1'000'000); }, false, false},
        {"getOverviewSpectrumStreamed",
         [](auto a, auto d, auto r) {
             return a->getOverviewSpectrumStreamed(d, r, 0, 0, 1, 16, QD_ZLK::WINDOW_HANN, "", 9);
         }},
        {"getRecord", [](auto a, auto d, auto r) { return record(a, d, r); }, true},
        {"requestRecordDataDetail", [](auto a, auto d, auto r) { return a->requestRecordDataDetail(d, r); }},
    };
    return calls;
}

ZELKO_XML::ZELKO_RecordData recordWithComment()
{
    ZELKO_XML::ZELKO_RecordData result = finishedRecord("r1");
    ZELKO_XML::HistoryEntry comment;
    comment.SetTimestamp(12'000'000);
    comment.SetHistoryEntry("gehört");
    result.SetHistoryEntry({comment});
    return result;
}

} // namespace

class TestAdminServant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_recorder.reset(); }
    void doesWhatIsAsked_data();
    void doesWhatIsAsked();
    void refusesADeviceThatIsNone_data() { everyCall(); }
    void refusesADeviceThatIsNone();
    void refusesARecordThatIsNone_data();
    void refusesARecordThatIsNone();
    void letsViewersLookOnly_data() { everyCall(); }
    void letsViewersLookOnly();
    void editsTheHistory();
    void renames();
    void protectsFromDeletion();
    void setsBookmarks();
    void takesAnEmptyListOfBookmarks();
    void deletesBookmarks();
    void copiesARangeOfTimes();
    void copiesARangeOfPositions();
    void copiesNoMoreAtOnceThanItMay_data();
    void copiesNoMoreAtOnceThanItMay();
    void refusesArguments_data();
    void refusesArguments();
    void setsTheTimeOfADevice();
    void givesAWholeRecord();
    void saysWhenARecordIsTooLarge();
    void showsWhatHasChangedOnDisk();
    void keepsRecordsWholeWhenClientsActAtOnce();

private:
    static void everyCall();
    IF_ZELKO_Admin_var admin() const { return m_recorder->admin(); }
    ServiceStatus ask(const Call& call, const QString& device = "D1", const QString& id = "r1") const;
    RecordPointer shown(const QString& id = "r1") const { return m_recorder->values("D1").record(id); }

    std::unique_ptr<ServiceRecorder> m_recorder;
};

void TestAdminServant::init()
{
    m_recorder = ServiceRecorder::loaded([](const QString& folder) { storeRecord(folder, recordWithComment(), 4000); });
    QVERIFY(m_recorder);
}

ServiceStatus TestAdminServant::ask(const Call& call, const QString& device, const QString& id) const
{
    return onCallerThread([&] { return static_cast<ServiceStatus>(call(admin(), toCorba(device), toCorba(id))); });
}

void TestAdminServant::everyCall()
{
    QTest::addColumn<int>("number");
    for (int number = 0; number < allCalls().size(); ++number) {
        QTest::newRow(allCalls().at(number).name) << number;
    }
}

void TestAdminServant::doesWhatIsAsked_data()
{
    everyCall();
}

void TestAdminServant::doesWhatIsAsked()
{
    QFETCH(int, number);
    QCOMPARE(ask(allCalls().at(number).call), ServiceStatus::None);
}

void TestAdminServant::refusesADeviceThatIsNone()
{
    QFETCH(int, number);
    QCOMPARE(ask(allCalls().at(number).call, "D3"), ServiceStatus::NoSuchDevice);
    QCOMPARE(ask(allCalls().at(number).call, "../D1"), ServiceStatus::NoSuchDevice);
}

void TestAdminServant::refusesARecordThatIsNone_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("record");
    for (int number = 0; number < allCalls().size(); ++number) {
        const NamedCall& call = allCalls().at(number);
        if (call.isOfRecord) {
            QTest::addRow("%s, unknown", call.name) << number << "r9";
            QTest::addRow("%s, a path", call.name) << number << "../D1/r1";
            QTest::addRow("%s, a hidden one", call.name) << number << ".new-r1";
            QTest::addRow("%s, empty", call.name) << number << "";
            QTest::addRow("%s, very long", call.name) << number << QString(100'000, QLatin1Char('r'));
        }
    }
}

void TestAdminServant::refusesARecordThatIsNone()
{
    QFETCH(int, number);
    QFETCH(QString, record);
    QCOMPARE(ask(allCalls().at(number).call, "D1", record), ServiceStatus::NoSuchRecord);
}

void TestAdminServant::letsViewersLookOnly()
{
    QFETCH(int, number);
    const auto before = contentOf(m_recorder->deviceFolder("D1"));
    m_recorder->role = Role::Viewer;
    const NamedCall& call = allCalls().at(number);
    QCOMPARE(ask(call.call), call.viewerMay ? ServiceStatus::None : ServiceStatus::NotAllowed);
    QCOMPARE(contentOf(m_recorder->deviceFolder("D1")), before);
}

void TestAdminServant::editsTheHistory()
{
    QCOMPARE(ask([](auto a, auto d, auto r) { return a->addHistory(d, r, toWideCorba("Größe")); }),
             ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(std::as_const(*shown()).GetHistoryEntry().size(), 2, 30000);
    const auto added = std::as_const(*shown()).GetHistoryEntry().constLast();
    QCOMPARE(added.GetHistoryEntry(), QStringLiteral("Größe"));
    const auto key = static_cast<CORBA::LongLong>(added.GetTimestamp());
    const Call remove = [key](auto a, auto d, auto r) { return a->removeHistoryEntry(d, r, key); };
    QCOMPARE(ask(remove), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(std::as_const(*shown()).GetHistoryEntry().size(), 1, 30000);
    QCOMPARE(ask(remove), ServiceStatus::NoSuchEntry);
}

void TestAdminServant::renames()
{
    const QString name = QStringLiteral("Größe 名 \U0001F4E1");
    QCOMPARE(ask([&](auto a, auto d, auto r) { return a->setRecordComment(d, r, toWideCorba(name)); }),
             ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(shown()->GetRecordName(), name, 30000);
}

void TestAdminServant::protectsFromDeletion()
{
    QCOMPARE(ask([](auto a, auto d, auto r) { return a->setRecordDeletableFlag(d, r, false); }), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(!shown()->GetDeletable(), 30000);
}

void TestAdminServant::setsBookmarks()
{
    QCOMPARE(ask([](auto a, auto d, auto r) {
                 return a->addBookmarks(d, r, bookmarks({{10'700'000, "b"}, {10'500'000, "ä"}}));
             }),
             ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(std::as_const(*shown()).GetBookmarkEntry().size(), 2, 30000);
    QCOMPARE(std::as_const(*shown()).GetBookmarkEntry().constLast().GetBookmark(), QStringLiteral("ä"));
}

void TestAdminServant::takesAnEmptyListOfBookmarks()
{
    const auto one = bookmarks({{10'500'000, "a"}});
    QCOMPARE(ask([&](auto a, auto d, auto r) { return a->addBookmarks(d, r, one); }), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(std::as_const(*shown()).GetBookmarkEntry().size(), 1, 30000);
    QCOMPARE(ask([](auto a, auto d, auto r) { return a->addBookmarks(d, r, bookmarks({})); }), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(std::as_const(*shown()).GetBookmarkEntry().isEmpty(), 30000);
}

void TestAdminServant::deletesBookmarks()
{
    const auto both = bookmarks({{10'500'000, "a"}, {10'700'000, "b"}});
    QCOMPARE(ask([&](auto a, auto d, auto r) { return a->addBookmarks(d, r, both); }), ServiceStatus::None);
    const Call remove = [](auto a, auto d, auto r) { return a->deleteBookmarks(d, r, bookmarks({{10'500'000, "a"}})); };
    QCOMPARE(ask(remove), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(std::as_const(*shown()).GetBookmarkEntry().size(), 1, 30000);
    QCOMPARE(ask(remove), ServiceStatus::NoSuchEntry);
}

void TestAdminServant::copiesARangeOfTimes()
{
    const auto [status, id] = onCallerThread([this] {
        CORBA::String_var newId;
        const auto code =
            admin()->copyRecord("D1", "r1", newId.out(), ranges({{10'250'000, 10'500'000}}), toWideCorba("Größe"));
        return std::pair(code, fromCorba(newId.in()));
    });
    QCOMPARE(status, statusCode(ServiceStatus::None));
    QVERIFY(!id.isEmpty() && id != "r1");
    QTRY_VERIFY_WITH_TIMEOUT(shown(id) != nullptr, 30000);
    QCOMPARE(shown(id)->GetRecordName(), QStringLiteral("Größe"));
    QCOMPARE(shown(id)->GetSize(), 1000U);
    QCOMPARE(shown(id)->GetStartTime(), 10'250'000U);
}

void TestAdminServant::copiesARangeOfPositions()
{
    const QString id = onCallerThread([this] {
        CORBA::String_var newId;
        admin()->copyRecord("D1", "r1", newId.out(), ranges({{400, 1200}}), toWideCorba("copy"));
        return fromCorba(newId.in());
    });
    QTRY_VERIFY_WITH_TIMEOUT(shown(id) != nullptr, 30000);
    QCOMPARE(shown(id)->GetSize(), 800U);
    QCOMPARE(shown(id)->GetStartTime(), 10'100'000U);
}

void TestAdminServant::copiesNoMoreAtOnceThanItMay_data()
{
    QTest::addColumn<int>("atOnce");
    QTest::addColumn<int>("atOncePerHost");
    QTest::addColumn<ServiceStatus>("status");
    QTest::newRow("one after the other") << 1 << 1 << ServiceStatus::None;
    QTest::newRow("none when there is no place") << 0 << 1 << ServiceStatus::LimitReached;
    QTest::newRow("none when there is no place for the host") << 1 << 0 << ServiceStatus::LimitReached;
}

void TestAdminServant::copiesNoMoreAtOnceThanItMay()
{
    QFETCH(int, atOnce);
    QFETCH(int, atOncePerHost);
    QFETCH(ServiceStatus, status);
    m_recorder.reset();
    ServiceHost::Options options;
    options.copies.atOnce = atOnce;
    options.copies.atOncePerHost = atOncePerHost;
    m_recorder =
        ServiceRecorder::loaded([](const QString& folder) { storeRecord(folder, recordWithComment(), 4000); }, options);
    QVERIFY(m_recorder);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(ask([](auto a, auto d, auto r) { return copy(a, d, r, ranges({{10'250'000, 10'500'000}})); }), status);
    }
}

void TestAdminServant::refusesArguments_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<ServiceStatus>("status");
    const auto row = [](const char* name, const Call& call, ServiceStatus status = ServiceStatus::BadArgument) {
        QTest::newRow(name) << call << status;
    };
    row("a copy of nothing", [](auto a, auto d, auto r) { return copy(a, d, r, ranges({})); });
    row("a range backwards", [](auto a, auto d, auto r) { return copy(a, d, r, ranges({{11'000'000, 10'000'000}})); });
    row("a range below zero", [](auto a, auto d, auto r) { return copy(a, d, r, ranges({{-5, 10'500'000}})); });
    row("more ranges than any copy has", [](auto a, auto d, auto r) {
        return copy(a, d, r, ranges(QVector<QPair<qint64, qint64>>(100'000, {10'000'000, 11'000'000})));
    });
    row("a time before all times", [](auto a, auto d, auto) { return a->setDeviceTime(d, -1); });
    row("a time behind all times",
        [](auto a, auto d, auto) { return a->setDeviceTime(d, std::numeric_limits<CORBA::LongLong>::max()); });
    row("a bookmark below zero", [](auto a, auto d, auto r) { return a->addBookmarks(d, r, bookmarks({{-1, "a"}})); });
    row(
        "more bookmarks than any record has",
        [](auto a, auto d, auto r) {
            return a->addBookmarks(d, r, bookmarks(QVector<QPair<qint64, QString>>(20'000, {10'500'000, "a"})));
        },
        ServiceStatus::LimitReached);
    row(
        "a bookmark that is not there",
        [](auto a, auto d, auto r) {
            return a->deleteBookmarks(d, r, bookmarks({{10'500'000, "no"}}));
        },
        ServiceStatus::NoSuchEntry);
    row(
        "a comment that is not there", [](auto a, auto d, auto r) { return a->removeHistoryEntry(d, r, 1); },
        ServiceStatus::NoSuchEntry);
    row(
        "a key below zero", [](auto a, auto d, auto r) { return a->removeHistoryEntry(d, r, -1); },
        ServiceStatus::NoSuchEntry);
    row("a name that is too long", [](auto a, auto d, auto r) {
        return a->setRecordComment(d, r, toWideCorba(QString(100'000, QLatin1Char('n'))));
    });
    row("a comment that is too long",
        [](auto a, auto d, auto r) { return a->addHistory(d, r, toWideCorba(QString(100'000, QLatin1Char('n')))); });
    row(
        "an overview to another host",
        [](auto a, auto d, auto r) {
            return a->getOverviewSpectrumStreamed(d, r, 0, 0, 1, 16, QD_ZLK::WINDOW_HANN, "192.0.2.9", 9);
        },
        ServiceStatus::NotAllowed);
    row("an overview to no port", [](auto a, auto d, auto r) {
        return a->getOverviewSpectrumStreamed(d, r, 0, 0, 1, 16, QD_ZLK::WINDOW_HANN, "", 0);
    });
    row("an overview of spectra that are too long", [](auto a, auto d, auto r) {
        return a->getOverviewSpectrumStreamed(d, r, 0, 0, 1, 131072, QD_ZLK::WINDOW_HANN, "", 9);
    });
}

void TestAdminServant::refusesArguments()
{
    QFETCH(Call, call);
    QFETCH(ServiceStatus, status);
    const auto before = contentOf(m_recorder->deviceFolder("D1"));
    QCOMPARE(ask(call), status);
    QCOMPARE(contentOf(m_recorder->deviceFolder("D1")), before);
}

void TestAdminServant::setsTheTimeOfADevice()
{
    const auto timeOf = [this](const char* device) {
        return onCallerThread([=, this] {
            CORBA::LongLong time = 0;
            CORBA::Boolean synchronised = false;
            admin()->getDeviceTime(device, time, synchronised);
            return std::pair(time, synchronised);
        });
    };
    QVERIFY(timeOf("D1").second);
    constexpr CORBA::LongLong year2000 = 946'684'800'000'000;
    QCOMPARE(ask([](auto a, auto d, auto) { return a->setDeviceTime(d, year2000); }), ServiceStatus::None);
    const auto [time, synchronised] = timeOf("D1");
    QVERIFY(time >= year2000 && time < year2000 + 3'600'000'000);
    QVERIFY(!synchronised);
    QVERIFY(timeOf("D2").first > year2000 + 3'600'000'000);
}

void TestAdminServant::givesAWholeRecord()
{
    const auto info = onCallerThread([this] {
        QD_ZLK::RecordInfo_var result;
        admin()->getRecord("D1", "r1", result.out());
        return result;
    });
    QCOMPARE(fromCorba(static_cast<const char*>(info->recordId)), QStringLiteral("r1"));
    QCOMPARE(info->size, 4000);
    QCOMPARE(info->indexEntries.length(), 2U);
    QCOMPARE(info->history.length(), 1U);
}

void TestAdminServant::saysWhenARecordIsTooLarge()
{
    m_recorder.reset();
    ServiceHost::Options options;
    options.largestAnswer = 100;
    m_recorder =
        ServiceRecorder::loaded([](const QString& folder) { storeRecord(folder, recordWithComment(), 4000); }, options);
    QVERIFY(m_recorder);
    const QString text = onCallerThread([this] {
        try {
            record(admin(), "D1", "r1");
        } catch (const IF_ZELKO_Admin::exAdmin& refusal) {
            return fromCorba(static_cast<const char*>(refusal.text));
        }
        return QString();
    });
    QCOMPARE(ZelkoCommon::refusalOf(text).status, ServiceStatus::AnswerTooLarge);
}

void TestAdminServant::showsWhatHasChangedOnDisk()
{
    ZELKO_XML::ZELKO_RecordData changed = recordWithComment();
    changed.SetRecordName("by hand");
    QVERIFY(DeviceStore(m_recorder->deviceFolder("D1")).save(changed));
    QCOMPARE(shown()->GetRecordName(), QStringLiteral("Name of r1"));
    QCOMPARE(ask([](auto a, auto d, auto r) { return a->requestRecordDataDetail(d, r); }), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(shown()->GetRecordName(), QStringLiteral("by hand"), 30000);
}

// Each client adds its comments; none is lost, and the record can be read whenever somebody looks.
void TestAdminServant::keepsRecordsWholeWhenClientsActAtOnce()
{
    constexpr int clients = 4;
    constexpr int changes = 25;
    std::vector<std::future<int>> done;
    for (int client = 0; client < clients; ++client) {
        done.push_back(std::async(std::launch::async, [this] {
            int accepted = 0;
            for (int i = 0; i < changes; ++i) {
                accepted += admin()->addHistory("D1", "r1", toWideCorba("x")) == 0 ? 1 : 0;
                accepted -= record(admin(), "D1", "r1") == 0 ? 0 : 1000;
            }
            return accepted;
        }));
    }
    for (auto& client : done) {
        QTRY_VERIFY_WITH_TIMEOUT(client.wait_for(std::chrono::seconds(0)) == std::future_status::ready, 60000);
        QCOMPARE(client.get(), changes);
    }
    QTRY_COMPARE_WITH_TIMEOUT(std::as_const(*shown()).GetHistoryEntry().size(), 1 + clients * changes, 30000);
}

QTEST_GUILESS_MAIN(TestAdminServant)
#include "tst_adminservant.moc"
