#include <zelkoguibase/history/historymodel.h>

#include "commentedrecords.h"
#include "iconpicture.h"
#include "signallog.h"

#include <resources/zelkoicons.h>

#include <QAbstractItemModelTester>
#include <QIcon>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoGUI::HistoryModel;

namespace {

/// SignalLog with the signals of a model of comments: "add text", "remove 1000000" as microseconds behind the begin of
/// the records, "edit 2-1".
class HistorySignalLog : public SignalLog
{
public:
    explicit HistorySignalLog(const HistoryModel* model)
        : SignalLog(model)
    {
        QObject::connect(model, &HistoryModel::si_addHistoryEntry, &m_context,
                         [this](const QString& entry) { add(u"add "_s + entry); });
        QObject::connect(model, &HistoryModel::si_removeHistoryEntry, &m_context,
                         [this](quint64 timestamp) { add(u"remove %1"_s.arg(timestamp - recordBegin)); });
        QObject::connect(model, &HistoryModel::si_edit, &m_context, [this](const QModelIndex& index) {
            add(u"edit %1-%2"_s.arg(index.row()).arg(index.column()));
        });
    }
};

const QStringList reset{u"begin reset"_s, u"end reset"_s};

} // namespace

/// The comments on a record as a table, and what becomes of a click on the header of a row.
class HistoryModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_records.emplace(u"R"_s, twoComments);
        m_model = std::make_unique<HistoryModel>();
        m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get(),
                                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_log = std::make_unique<HistorySignalLog>(m_model.get());
    }
    void cleanup()
    {
        m_tester.reset();
        m_model.reset();
        m_log.reset();
        m_records.reset();
    }

    void withoutARecordThereAreNoRows_data();
    void withoutARecordThereAreNoRows();
    void aRecordWithoutCommentsHasTheRowForANewOne_data();
    void aRecordWithoutCommentsHasTheRowForANewOne();
    void theCommentsStandInTheOrderOfTheRecord();
    void hasRowsAtTheTopOnly();
    void aCellHasContentForRoles_data();
    void aCellHasContentForRoles();
    void textsAreShownAsTheyAre_data();
    void textsAreShownAsTheyAre();
    void onlyTheTextOfTheNewRowIsEdited();
    void whatIsNoCellHasNothing();
    void columnsHaveTitles();
    void rowsHaveAButton();
    void sectionsThatAreNoneHaveNoButton();

    void aTextWaitsForTheClick();
    void aTextIsSentAtOnceIfWanted();
    void anEmptyTextIsNotSent();
    void whatIsNoNewTextIsNotSet_data();
    void whatIsNoNewTextIsNotSet();
    void aClickOnTheEmptyNewRowOpensTheEditor();
    void aClickOnACommentAsksToDeleteIt();
    void aSecondClickAsksNothingMore();
    void aClickElsewhereDoesNothing_data();
    void aClickElsewhereDoesNothing();
    void aRecordThatChangesWhileItIsToldHasNoMarks();

    void theSameRecordIsNotSetAgain();
    void theSameIDWithAnotherModelKeepsTheModel();
    void anotherRecordBeginsAfresh();
    void theModelBeforeIsNotHeardAnyMore();
    void aResetForgetsTheRecord();
    void aChangeOfTheRecordReadsItAnew();
    void aChangeOfAnotherRecordIsPassedOver();
    void theNewTextSurvivesReloads();
    void theMarkOfDeletingLastsUntilTheReload();
    void aDeletedRecordLeavesNothing();
    void rowsStayUntilTheDeletionIsTold();
    void anotherRecordMayBeDeleted();
    void allRecordsMayGoAndComeBack();
    void theModelMayGo();

private:
    QStringList rows() const
    {
        QStringList all;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            all << rowText(*m_model, row);
        }
        return all;
    }
    void show(const QString& id = u"R"_s)
    {
        m_model->setRecord(id, &*m_records);
        m_log->take();
    }
    bool type(const QString& text)
    {
        return m_model->setData(m_model->index(m_model->rowCount() - 1, HistoryModel::TextColumn), text);
    }
    QString newText() const { return m_model->index(m_model->rowCount() - 1, 1).data(Qt::EditRole).toString(); }
    QVariant header(int section, int role) const { return m_model->headerData(section, Qt::Vertical, role); }
    QString buttonOf(int section) const { return header(section, Qt::ToolTipRole).toString(); }

    std::optional<CommentedRecords> m_records;
    std::unique_ptr<HistoryModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::unique_ptr<HistorySignalLog> m_log;
};

void HistoryModelTest::withoutARecordThereAreNoRows_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("hasModel");
    QTest::newRow("a record that the list does not have") << u"S"_s << true;
    QTest::newRow("no list") << u"R"_s << false;
    QTest::newRow("no ID") << QString() << true;
}

void HistoryModelTest::withoutARecordThereAreNoRows()
{
    QFETCH(const QString, id);
    QFETCH(const bool, hasModel);
    QCOMPARE(m_model->rowCount(), 0);
    m_model->setRecord(id, hasModel ? &*m_records : nullptr);
    QCOMPARE(m_model->rowCount(), 0);
    m_model->sl_verticalHeaderClicked(0);
    QVERIFY(!header(0, Qt::DecorationRole).isValid());
    QCOMPARE(m_log->take(), id.isEmpty() ? QStringList() : reset);
}

void HistoryModelTest::aRecordWithoutCommentsHasTheRowForANewOne_data()
{
    QTest::addColumn<CommentedRecords::RecordDataPtr>("record");
    QTest::newRow("it never had one") << makeRecord(u"N"_s);
    QTest::newRow("it has none any more") << CommentedRecords::record(u"N"_s, {});
}

void HistoryModelTest::aRecordWithoutCommentsHasTheRowForANewOne()
{
    QFETCH(const CommentedRecords::RecordDataPtr, record);
    m_records->add(record);
    show(u"N"_s);
    QCOMPARE(rows(), QStringList{u" | "_s});
}

void HistoryModelTest::theCommentsStandInTheOrderOfTheRecord()
{
    m_records->store(u"R"_s, {CommentedRecords::comment(9, u"late"_s), CommentedRecords::comment(3, u"early"_s)});
    show();
    QCOMPARE(rows(), QStringList({u"2023-11-14 23:13:29 | late"_s, u"2023-11-14 23:13:23 | early"_s, u" | "_s}));
}

void HistoryModelTest::hasRowsAtTheTopOnly()
{
    show();
    QCOMPARE(m_model->rowCount(), 3);
    QCOMPARE(m_model->columnCount(), 2);
    QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 0);
    QCOMPARE(m_model->columnCount(m_model->index(0, 0)), 0);
}

void HistoryModelTest::aCellHasContentForRoles_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("content");
    const QString time = u"2023-11-14 23:13:21"_s;
    QTest::newRow("time") << 0 << 0 << int{Qt::DisplayRole} << QVariant(time);
    QTest::newRow("time to edit") << 0 << 0 << int{Qt::EditRole} << QVariant(time);
    QTest::newRow("tool tip of a time") << 0 << 0 << int{Qt::ToolTipRole} << QVariant();
    QTest::newRow("text") << 0 << 1 << int{Qt::DisplayRole} << QVariant(u"first"_s);
    QTest::newRow("text to edit") << 0 << 1 << int{Qt::EditRole} << QVariant(u"first"_s);
    QTest::newRow("tool tip of a text") << 0 << 1 << int{Qt::ToolTipRole} << QVariant();
    QTest::newRow("icon of a text") << 0 << 1 << int{Qt::DecorationRole} << QVariant();
    QTest::newRow("new time") << 2 << 0 << int{Qt::DisplayRole} << QVariant();
    QTest::newRow("new time to edit") << 2 << 0 << int{Qt::EditRole} << QVariant();
    QTest::newRow("tool tip of the new time") << 2 << 0 << int{Qt::ToolTipRole} << QVariant();
    QTest::newRow("new text") << 2 << 1 << int{Qt::DisplayRole} << QVariant(u"new"_s);
    QTest::newRow("new text to edit") << 2 << 1 << int{Qt::EditRole} << QVariant(u"new"_s);
    QTest::newRow("tool tip of the new text")
        << 2 << 1 << int{Qt::ToolTipRole} << QVariant(u"please enter a new history comment"_s);
    QTest::newRow("icon of the new text") << 2 << 1 << int{Qt::DecorationRole} << QVariant();
}

void HistoryModelTest::aCellHasContentForRoles()
{
    QFETCH(const int, row);
    QFETCH(const int, column);
    QFETCH(const int, role);
    show();
    QVERIFY(type(u"new"_s));
    QTEST(m_model->index(row, column).data(role), "content");
}

void HistoryModelTest::textsAreShownAsTheyAre_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("of 10,000 characters") << QString(10'000, u'x');
    QTest::newRow("from right to left") << u"هذا تعليق"_s;
    QTest::newRow("an emoji") << u"heard 📡 twice"_s;
    QTest::newRow("line breaks") << u"first\nsecond\r\nthird"_s;
    QTest::newRow("control characters") << u"a\u0001b\tc\u007f"_s;
    QTest::newRow("what looks like markup") << u"<b>bold</b> &amp;"_s;
}

void HistoryModelTest::textsAreShownAsTheyAre()
{
    QFETCH(const QString, text);
    m_records->store(u"R"_s, {CommentedRecords::comment(1, text)});
    show();
    QCOMPARE(m_model->index(0, 1).data().toString(), text);
    QVERIFY(type(text));
    QCOMPARE(newText(), text);
    m_log->take();
    m_model->sl_verticalHeaderClicked(1);
    QCOMPARE(m_log->take().first(), text.isEmpty() ? u"edit 1-1"_s : u"add "_s + text);
}

void HistoryModelTest::onlyTheTextOfTheNewRowIsEdited()
{
    const Qt::ItemFlags always = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    show();
    m_model->sl_verticalHeaderClicked(1);
    for (const int column : {0, 1}) {
        QCOMPARE(m_model->index(0, column).flags(), always);
        QCOMPARE(m_model->index(1, column).flags(), Qt::ItemIsSelectable); // being deleted
    }
    QCOMPARE(m_model->index(2, 0).flags(), always);
    QCOMPARE(m_model->index(2, 1).flags(), always | Qt::ItemIsEditable);
}

void HistoryModelTest::whatIsNoCellHasNothing()
{
    show();
    QCOMPARE(m_model->flags({}), Qt::NoItemFlags);
    QVERIFY(!m_model->data({}).isValid());
}

void HistoryModelTest::columnsHaveTitles()
{
    QVERIFY(!m_model->headerData(0, Qt::Horizontal).isValid()); // of no record
    show();
    QCOMPARE(m_model->headerData(0, Qt::Horizontal).toString(), u"Date and Time"_s);
    QCOMPARE(m_model->headerData(1, Qt::Horizontal).toString(), u"Text"_s);
    QVERIFY(!m_model->headerData(2, Qt::Horizontal).isValid());
    QVERIFY(!m_model->headerData(-1, Qt::Horizontal).isValid());
    QVERIFY(!m_model->headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
}

void HistoryModelTest::rowsHaveAButton()
{
    const auto icon = [this](int section) { return header(section, Qt::DecorationRole).value<QIcon>(); };
    show();
    QCOMPARE(buttonOf(0), u"Delete the history entry"_s);
    QCOMPARE(header(1, Qt::AccessibleTextRole).toString(), u"Delete the history entry"_s);
    QCOMPARE(picture(icon(0)), picture(QIcon(u":/Zelko/History/DeleteHistory.svg"_s)));
    QCOMPARE(icon(0).cacheKey(), icon(1).cacheKey());
    QCOMPARE(buttonOf(2), u"edit the history text"_s);
    QCOMPARE(picture(icon(2)), picture(QIcon(u":/Zelko/History/EditHistory.svg"_s)));
    QVERIFY(type(u"new"_s));
    QCOMPARE(buttonOf(2), u"add the history entry"_s);
    QCOMPARE(picture(icon(2)), picture(QIcon(u":/Zelko/History/AddHistory.svg"_s)));
}

void HistoryModelTest::sectionsThatAreNoneHaveNoButton()
{
    show();
    for (const int section : {-1, 3}) {
        QVERIFY(!header(section, Qt::DecorationRole).isValid());
        QVERIFY(!header(section, Qt::ToolTipRole).isValid());
    }
    QVERIFY(!header(0, Qt::DisplayRole).isValid());
}

void HistoryModelTest::aTextWaitsForTheClick()
{
    show();
    QVERIFY(!m_model->addTextImmediately());
    QVERIFY(type(u"new"_s));
    QCOMPARE(m_log->take(), QStringList({u"changed 2 columns 1-1"_s, u"header changed"_s}));
    QCOMPARE(newText(), u"new"_s);
    m_model->sl_verticalHeaderClicked(2);
    QCOMPARE(m_log->take(), QStringList({u"add new"_s, u"changed 2"_s, u"header changed"_s}));
    QCOMPARE(newText(), QString());
    QCOMPARE(buttonOf(2), u"edit the history text"_s);
}

void HistoryModelTest::aTextIsSentAtOnceIfWanted()
{
    show();
    m_model->sl_addTextImmediately(true);
    QVERIFY(m_model->addTextImmediately());
    QVERIFY(type(u"new"_s));
    QCOMPARE(m_log->take(), QStringList({u"add new"_s, u"changed 2 columns 1-1"_s, u"header changed"_s}));
    QCOMPARE(newText(), QString());
    m_model->sl_addTextImmediately(false);
    QVERIFY(type(u"more"_s));
    QCOMPARE(newText(), u"more"_s);
}

void HistoryModelTest::anEmptyTextIsNotSent()
{
    show();
    m_model->sl_addTextImmediately(true);
    QVERIFY(type(QString()));
    QCOMPARE(m_log->take(), QStringList({u"changed 2 columns 1-1"_s, u"header changed"_s}));
}

void HistoryModelTest::whatIsNoNewTextIsNotSet_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::newRow("the text of a comment") << 0 << 1 << int{Qt::EditRole};
    QTest::newRow("the time of a comment") << 0 << 0 << int{Qt::EditRole};
    QTest::newRow("the time of the new comment") << 2 << 0 << int{Qt::EditRole};
    QTest::newRow("what is not edited of the new comment") << 2 << 1 << int{Qt::DisplayRole};
    QTest::newRow("no cell") << -1 << -1 << int{Qt::EditRole};
}

void HistoryModelTest::whatIsNoNewTextIsNotSet()
{
    QFETCH(const int, row);
    QFETCH(const int, column);
    QFETCH(const int, role);
    show();
    QVERIFY(!m_model->setData(m_model->index(row, column), u"new"_s, role));
    QCOMPARE(m_log->take(), QStringList());
    QCOMPARE(rows(), rowsOfTwo);
}

void HistoryModelTest::aClickOnTheEmptyNewRowOpensTheEditor()
{
    show();
    m_model->sl_verticalHeaderClicked(2);
    QCOMPARE(m_log->take(), QStringList{u"edit 2-1"_s});
}

void HistoryModelTest::aClickOnACommentAsksToDeleteIt()
{
    show();
    m_model->sl_verticalHeaderClicked(1);
    QCOMPARE(m_log->take(), QStringList({u"remove 2000000"_s, u"changed 1"_s, u"header changed"_s}));
    QCOMPARE(rows(), QStringList({rowsOfTwo[0], u"2023-11-14 23:13:22 | deleting..."_s, u" | "_s}));
    QCOMPARE(m_model->index(1, 1).data(Qt::EditRole).toString(), u"deleting..."_s);
    QVERIFY(!header(1, Qt::DecorationRole).isValid());
    QVERIFY(!header(1, Qt::ToolTipRole).isValid());
    QCOMPARE(buttonOf(0), u"Delete the history entry"_s);
}

void HistoryModelTest::aSecondClickAsksNothingMore()
{
    show();
    m_model->sl_verticalHeaderClicked(1);
    m_log->take();
    m_model->sl_verticalHeaderClicked(1);
    QCOMPARE(m_log->take(), QStringList({u"changed 1"_s, u"header changed"_s}));
}

void HistoryModelTest::aClickElsewhereDoesNothing_data()
{
    QTest::addColumn<int>("section");
    QTest::newRow("before the first row") << -1;
    QTest::newRow("behind the last row") << 3;
    QTest::newRow("far behind") << 1000;
}

void HistoryModelTest::aClickElsewhereDoesNothing()
{
    QFETCH(const int, section);
    show();
    type(u"new"_s);
    m_log->take();
    m_model->sl_verticalHeaderClicked(section);
    QCOMPARE(m_log->take(), QStringList());
}

// Whoever hears of it may be so quick that the record is there again, changed, before the click is over.
void HistoryModelTest::aRecordThatChangesWhileItIsToldHasNoMarks()
{
    show();
    connect(m_model.get(), &HistoryModel::si_removeHistoryEntry, &*m_records,
            [this] { m_records->store(u"R"_s, {twoComments[0]}); });
    m_model->sl_verticalHeaderClicked(1);
    QCOMPARE(m_log->take(),
             QStringList{u"remove 2000000"_s} + reset + QStringList({u"changed 1"_s, u"header changed"_s}));
    QCOMPARE(rows(), QStringList({rowsOfTwo[0], u" | "_s}));
    QCOMPARE(buttonOf(1), u"edit the history text"_s);
}

void HistoryModelTest::theSameRecordIsNotSetAgain()
{
    show();
    type(u"new"_s);
    m_log->take();
    m_model->setRecord(u"R"_s, &*m_records);
    QCOMPARE(m_log->take(), QStringList());
    QCOMPARE(newText(), u"new"_s);
}

void HistoryModelTest::theSameIDWithAnotherModelKeepsTheModel()
{
    CommentedRecords others(u"R"_s, {});
    show();
    m_model->setRecord(u"R"_s, &others);
    QCOMPARE(rows(), rowsOfTwo);
    others.store(u"R"_s, {CommentedRecords::comment(5, u"other"_s)});
    QCOMPARE(m_log->take(), QStringList());
    m_records->store(u"R"_s, {});
    QCOMPARE(rows(), QStringList{u" | "_s});
}

void HistoryModelTest::anotherRecordBeginsAfresh()
{
    m_records->add(CommentedRecords::record(u"S"_s, {CommentedRecords::comment(5, u"other"_s)}));
    show();
    type(u"new"_s);
    m_log->take();
    m_model->setRecord(u"S"_s, &*m_records);
    QCOMPARE(m_log->take(), reset);
    QCOMPARE(m_model->recordID(), u"S"_s);
    QCOMPARE(rows(), QStringList({u"2023-11-14 23:13:25 | other"_s, u" | "_s}));
}

void HistoryModelTest::theModelBeforeIsNotHeardAnyMore()
{
    CommentedRecords others(u"S"_s, {});
    show();
    m_model->setRecord(u"S"_s, &others);
    m_log->take();
    m_records->store(u"S"_s, {CommentedRecords::comment(5, u"other"_s)});
    m_records.reset();
    QCOMPARE(m_log->take(), QStringList());
    QCOMPARE(rows(), QStringList{u" | "_s});
}

void HistoryModelTest::aResetForgetsTheRecord()
{
    show();
    m_model->resetRecord();
    QCOMPARE(m_log->take(), reset);
    QCOMPARE(m_model->recordID(), QString());
    QCOMPARE(m_model->rowCount(), 0);
    m_model->resetRecord();
    m_records->store(u"R"_s, {});
    QCOMPARE(m_log->take(), QStringList());
}

void HistoryModelTest::aChangeOfTheRecordReadsItAnew()
{
    show();
    m_records->store(u"R"_s, {twoComments[1]});
    QCOMPARE(m_log->take(), reset);
    QCOMPARE(rows(), QStringList({rowsOfTwo[1], u" | "_s}));
}

void HistoryModelTest::aChangeOfAnotherRecordIsPassedOver()
{
    show();
    m_records->store(u"S"_s, {});
    QCOMPARE(m_log->take(), QStringList());
}

void HistoryModelTest::theNewTextSurvivesReloads()
{
    show();
    type(u"new"_s);
    m_records->store(u"R"_s, {});
    QCOMPARE(rows(), QStringList{u" | new"_s});
    m_records->replaceAll({u"R"_s});
    QCOMPARE(rows(), QStringList{u" | new"_s});
}

void HistoryModelTest::theMarkOfDeletingLastsUntilTheReload()
{
    show();
    m_model->sl_verticalHeaderClicked(0);
    m_records->store(u"S"_s, {});
    QCOMPARE(m_model->index(0, 1).data().toString(), u"deleting..."_s);
    m_records->store(u"R"_s, twoComments);
    QCOMPARE(rows(), rowsOfTwo);
    m_log->take();
    m_model->sl_verticalHeaderClicked(0);
    QCOMPARE(m_log->take().first(), u"remove 1000000"_s);
}

void HistoryModelTest::aDeletedRecordLeavesNothing()
{
    show();
    type(u"new"_s);
    m_log->take();
    m_records->drop(u"R"_s);
    QCOMPARE(m_log->take(), reset);
    QCOMPARE(m_model->recordID(), QString());
    QCOMPARE(m_model->rowCount(), 0);
    m_records->store(u"R"_s, twoComments);
    show();
    QCOMPARE(rows(), rowsOfTwo);
}

void HistoryModelTest::rowsStayUntilTheDeletionIsTold()
{
    show();
    m_records->remove(u"R"_s);
    QCOMPARE(rows(), rowsOfTwo);
    Q_EMIT m_records->si_recordDeleted(u"R"_s);
    QCOMPARE(m_model->rowCount(), 0);
}

void HistoryModelTest::anotherRecordMayBeDeleted()
{
    m_records->add(makeRecord(u"S"_s));
    show();
    m_records->drop(u"S"_s);
    QCOMPARE(m_log->take(), QStringList());
    QCOMPARE(rows(), rowsOfTwo);
}

void HistoryModelTest::allRecordsMayGoAndComeBack()
{
    show();
    m_records->replaceAll({});
    QCOMPARE(m_log->take(), reset);
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(m_model->recordID(), u"R"_s);
    m_records->replaceAll({u"R"_s});
    QCOMPARE(rows(), QStringList{u" | "_s});
}

void HistoryModelTest::theModelMayGo()
{
    show();
    type(u"new"_s);
    m_log->take();
    m_records.reset();
    QCOMPARE(m_log->take(), reset);
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(m_model->recordID(), u"R"_s);
}

QTEST_MAIN(HistoryModelTest)
#include "tst_historymodel.moc"
