// A client process of the tree link for tests that stop or kill it. It answers each line of its standard input by one
// line.

#include "inputlines.h"
#include "linkclient.h"

#include <zelkobase/maps/itemmaptypes.h>

#include <QCoreApplication>

#include <iostream>

namespace {

// "digest" of the tree, "digest PATH" of one value, or what the connection told so far.
QString answer(const LinkClient& client, const QStringList& words)
{
    if (words.first() == "digest") {
        return words.size() > 1 ? client.digest(words.at(1)) : client.digest();
    }
    return client.log.join(',');
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    zelko::registerItemMapTypes();
    ZelkoCommon::Orb orb({});
    const LinkClient client(orb, application.arguments().value(1).toUShort());
    const ZelkoTest::InputLines input([&](const QStringList& words) { return answer(client, words); });
    std::cout << "READY port=" << orb.port() << std::endl;
    return application.exec();
}
