#include <overviewdisplay/overviewsocket_p.h>

#include <QtTest>

using SPECTRUM_OVERVIEW::OverviewSocket;

class OverviewSocketTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheWayOfTheLines_data();
    void findsTheWayOfTheLines();
};

void OverviewSocketTest::findsTheWayOfTheLines_data()
{
    QTest::addColumn<QByteArray>("recorder");
    QTest::addColumn<QByteArray>("own");
    QTest::addColumn<QByteArray>("told");
    QTest::addColumn<QByteArrayList>("senders");
    const auto add = [](const char* name, const char* recorder, const char* own, const char* told,
                        const QByteArrayList& senders) {
        QTest::newRow(name) << QByteArray(recorder) << QByteArray(own) << QByteArray(told) << senders;
    };
    add("another host", "192.0.2.9", "192.0.2.7", "192.0.2.7", {"192.0.2.9"});
    add("this host", "192.0.2.7", "192.0.2.7", "", {"192.0.2.7", "127.0.0.1", "::1"});
    add("this host by IPv6", "2001:db8::7", "2001:db8::7", "", {"2001:db8::7", "127.0.0.1", "::1"});
    add("the loopback", "127.0.0.1", "127.0.0.1", "127.0.0.1", {"127.0.0.1"});
    add("another loopback", "127.0.0.2", "127.0.0.1", "127.0.0.1", {"127.0.0.2"});
    add("the loopback by IPv6", "::1", "::1", "::1", {"::1"});
    add("no way", "192.0.2.9", "", "", {"192.0.2.9"});
    add("not known", "", "", "", {});
}

void OverviewSocketTest::findsTheWayOfTheLines()
{
    QFETCH(QByteArray, recorder);
    QFETCH(QByteArray, own);
    const OverviewSocket::Way way = OverviewSocket::wayTo(recorder.toStdString(), own.toStdString());
    QTEST(QByteArray::fromStdString(way.own), "told");
    QByteArrayList senders;
    for (const std::string& sender : way.senders) {
        senders << QByteArray::fromStdString(sender);
    }
    QTEST(senders, "senders");
}

QTEST_APPLESS_MAIN(OverviewSocketTest)
#include "tst_overviewsocket.moc"
