// A client process of the tree link for tests that stop or kill it. It answers each line of its standard input by one
// line.

#include "linkclient.h"

#include <zelkobase/maps/itemmaptypes.h>

#include <QCoreApplication>
#include <QSocketNotifier>

#include <iostream>

#include <unistd.h>

namespace {

QString answer(const LinkClient& client, const QString& line)
{
    return line == "digest" ? client.digest() : client.log.join(',');
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    zelko::registerItemMapTypes();
    ZelkoCommon::Orb orb({});
    const LinkClient client(orb, application.arguments().value(1).toUShort());
    QByteArray line;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char byte = 0;
        if (read(STDIN_FILENO, &byte, 1) != 1) {
            QCoreApplication::quit();
        } else if (byte != '\n') {
            line.append(byte);
        } else {
            std::cout << answer(client, QString::fromUtf8(std::exchange(line, {}))).toStdString() << std::endl;
        }
    });
    std::cout << "READY port=" << orb.port() << std::endl;
    return application.exec();
}
