// Prints the recordings of a device, and what becomes of them until it is interrupted or the recorder goes.
//
//     recordlist HOST PORT DEVICE [--once]
//
// With --once it ends as soon as the list is complete.
#include <valuecore/tree.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/orb/orb.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

using namespace ZelkoCommon;
using ZelkoGUI::RecordItemMapModel;

namespace {

const QString subSystem = QStringLiteral("site");

void say(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

// One line for a record: what the table shows in its first columns.
QString line(const RecordItemMapModel& model, const QString& recordID)
{
    QStringList texts;
    const QModelIndex first = model.recordIndex(recordID);
    for (int column = 0; first.isValid() && column < 5; ++column) {
        texts.append(first.siblingAtColumn(column).data().toString());
    }
    return texts.join(QStringLiteral("  "));
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
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 4) {
        say(QStringLiteral("usage: recordlist HOST PORT DEVICE [--once]"));
        return 2;
    }
    auto site = std::make_shared<ZelkoConfiguration>();
    if (!site->AddSubSystem({subSystem, arguments[1], arguments[2].toUShort()})) {
        say(QStringLiteral("%1:%2 cannot be a recorder").arg(arguments[1], arguments[2]));
        return 2;
    }

    Orb orb{OrbOptions{}};
    ServerConnectionData connection(orb, Tree::Instance(), site);
    const QString records = connection.GetDeviceBasePath(arguments[3]) + QStringLiteral("/Records");
    RecordItemMapModel model(nullptr);

    QObject::connect(&connection, &ServerConnectionData::si_allTicsConnected, &model, [&] {
        if (!model.connect(records + QStringLiteral("/Map"))) {
            say(QStringLiteral("there is no device %1").arg(arguments[3]));
            application.exit(1);
        }
    });
    QObject::connect(&connection, &ServerConnectionData::si_allTicsDisconnected, &application, [&] {
        say(QStringLiteral("the recorder has gone"));
        application.exit(1);
    });
    QObject::connect(&model, &RecordItemMapModel::si_recordChanged, &application,
                     [&](const QString& recordID) { say(line(model, recordID)); });
    QObject::connect(&model, &RecordItemMapModel::si_recordDeleted, &application,
                     [](const QString& recordID) { say(QStringLiteral("deleted: %1").arg(recordID)); });

    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &application, [&] {
        if (arguments.contains(QStringLiteral("--once")) && isComplete(records, model)) {
            application.exit(0);
        }
    });
    poll.start(100);
    return application.exec();
}
