// The recordings of a device, filtered: those at rest only, by their names, and by an extended filter.
//
//     filter SITE DEVICE [FILE] [--once]
//
// SITE is a site file; zelkoconfiguration.h has what stands in it. The extended filter begins as it was saved to FILE,
// tower.xml for instance. With --once the names of what is left are printed when the list is complete, and that is all.
#include <reportcore/rgexception.h>
#include <resources/zelkoicons.h>
#include <valuecore/tree.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/data/filterconditionlist.h>
#include <zelkobase/orb/orb.h>
#include <zelkoguibase/filter/enumerationfiltercondition.h>
#include <zelkoguibase/filter/extendedfilterdialog.h>
#include <zelkoguibase/filter/multifiltersortproxymodel.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/filter/textfilterwidget.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QApplication>
#include <QPushButton>
#include <QTableView>
#include <QTextStream>
#include <QTimer>
#include <QVBoxLayout>

using namespace ZelkoCommon;
using namespace ZelkoGUI::Filter;
using ZelkoGUI::RecordItemMapModel;

namespace {

void say(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

// A condition is a test of one column; the proxy shows the rows that pass all of them. This one the user does not see:
// he has no editor for it. One that is made without a parent is the proxy's from the moment on in which it gets it.
void showOnlyRecordsAtRest(MultiFilterSortProxyModel& shown)
{
    using Record = ZELKO_XML::ZELKO_RecordData;
    const auto statusCount = static_cast<int>(Record::GetGUIRecordStatuss().size());
    auto* const atRest = new EnumerationFilterCondition<Record::RecordStatus>(
        statusCount, RecordItemMapModel::StatusColumn, RecordItemMapModel::ValueRole, nullptr);
    atRest->setValues({Record::RecordStatus::Finished});
    atRest->setEnabled(true);
    shown.addFilter(atRest);
}

// An editor shows one condition and changes it; the proxy follows the condition, and so each key.
QWidget* makeSearch(MultiFilterSortProxyModel& shown)
{
    auto* const name =
        new StringFilterCondition(RecordItemMapModel::NameColumn, RecordItemMapModel::ValueRole, nullptr);
    shown.addFilter(name);
    return new TextFilterWidget(name, nullptr);
}

void layOut(QWidget& window, MultiFilterSortProxyModel& shown, ExtendedFilterDialog& extended)
{
    auto* const button = new QPushButton(QStringLiteral("Extended Filter..."));
    QObject::connect(button, &QPushButton::clicked, &extended, &QDialog::show);
    auto* const table = new QTableView;
    table->setModel(&shown);
    table->setSortingEnabled(true);
    auto* const layout = new QVBoxLayout(&window);
    layout->addWidget(makeSearch(shown));
    layout->addWidget(button);
    layout->addWidget(table, 1);
}

// Each condition takes what the file says of it, by its column and its name. A file that makes no sense is refused
// whole.
bool restore(const ExtendedFilterDialog& extended, const QString& fileName)
{
    ZELKO_XML::FilterConditionList saved;
    try {
        if (!saved.LoadXml(fileName)) {
            say(QStringLiteral("%1 has no filter").arg(fileName));
            return false;
        }
    } catch (const RGException& wrong) {
        say(wrong.GetMessage());
        return false;
    }
    for (const auto& condition : extended.filters()) {
        condition->readFromXml(saved);
    }
    return true;
}

void sayNames(const MultiFilterSortProxyModel& shown)
{
    for (int row = 0; row < shown.rowCount(); ++row) {
        say(shown.index(row, RecordItemMapModel::NameColumn).data().toString());
    }
}

// The list is complete when the recorder has read its disk and every record of it has arrived.
bool isComplete(const QString& records, const RecordItemMapModel& model)
{
    ValuePtr<Value<bool>> loaded;
    ValuePtr<Value<int>> count;
    return model.connected() && loaded.GetFromTree(records + QStringLiteral("/LoadedCompletly")) &&
           loaded->GetValue() && count.GetFromTree(records + QStringLiteral("/LoadCount")) &&
           model.rowCount() >= count->GetValue();
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    registerZelkoIcons();
    QStringList arguments = QApplication::arguments();
    const bool once = arguments.removeAll(QStringLiteral("--once")) > 0;
    QString error;
    const auto site = ZelkoConfiguration::fromFile(arguments.value(1), &error);
    if (!site) {
        say(error);
        return 2;
    }
    Orb orb{OrbOptions{}};
    ServerConnectionData connection(orb, Tree::Instance(), std::make_shared<ZelkoConfiguration>(*site));
    const QString path = connection.GetDeviceBasePath(arguments.value(2)) + QStringLiteral("/Records");
    RecordItemMapModel records(nullptr);
    QObject::connect(&connection, &ServerConnectionData::si_allTicsConnected, &records,
                     [&] { records.connect(path + QStringLiteral("/Map")); });

    MultiFilterSortProxyModel shown(nullptr);
    shown.setSourceModel(&records);
    showOnlyRecordsAtRest(shown);
    QWidget window;
    ExtendedFilterDialog extended(&shown, ExtendedFilterDialog::NameColumn | ExtendedFilterDialog::FrequencyColumn,
                                  &window);
    layOut(window, shown, extended);
    if (arguments.size() > 3 && !restore(extended, arguments[3])) {
        return 1;
    }
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &window, [&] {
        if (once && isComplete(path, records)) {
            sayNames(shown);
            QApplication::quit();
        }
    });
    poll.start(100);
    window.show();
    return QApplication::exec();
}
