#include <console/records/emptystate.h>

#include <QTest>

using namespace ZelkoConsole;

class TestEmptyState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhyThereAreNoRows_data()
    {
        QTest::addColumn<QString>("subSystem");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<QString>("device");
        QTest::addColumn<bool>("found");
        QTest::addColumn<bool>("loading");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const char* subSystem, LinkState state, const char* reason,
                            const char* device, bool found, bool loading, const char* text) {
            QTest::newRow(name) << QString::fromLatin1(subSystem) << static_cast<int>(state)
                                << QString::fromLatin1(reason) << QString::fromLatin1(device) << found << loading
                                << QString::fromUtf8(text);
        };
        row("nothing is chosen", "", LinkState::Connecting, "", "", false, false, "Select a device");
        row("the recorder is being started", "local", LinkState::Starting, "", "", false, false,
            "Starting recorder local…");
        row("nothing is known yet", "north", LinkState::Connecting, "", "A1", false, false, "Connecting to north…");
        row("not reachable for a reason", "north", LinkState::Unreachable, "connection refused", "A1", true, false,
            "Recorder north is not reachable: connection refused, trying again");
        row("not reachable, nobody knows why", "north", LinkState::Unreachable, "", "A1", false, false,
            "Recorder north is not reachable, trying again");
        row("a sub system is chosen", "north", LinkState::Connected, "", "", false, false, "Select a device of north");
        row("the list is not there yet", "north", LinkState::Connected, "", "A1", false, false,
            "Waiting for the records of A1…");
        row("the first records are on their way", "north", LinkState::Connected, "", "A1", true, true,
            "Waiting for the records of A1…");
        row("an empty device", "north", LinkState::Connected, "", "A1", true, false, "No records on this device");
    }

    void tellsWhyThereAreNoRows()
    {
        QFETCH(QString, subSystem);
        QFETCH(int, state);
        QFETCH(QString, reason);
        QFETCH(QString, device);
        QFETCH(bool, found);
        QFETCH(bool, loading);
        const SubSystemStatus status{static_cast<LinkState>(state), reason};
        QTEST(emptyState(subSystem, status, device, found, loading).text, "text");
    }

    void warnsWithASignWhenTheRecorderIsGone()
    {
        const auto state =
            emptyState(QStringLiteral("n"), {LinkState::Unreachable, {}}, QStringLiteral("d"), false, false);
        QCOMPARE(state.glyph, Glyph::Bad);
    }
};

QTEST_GUILESS_MAIN(TestEmptyState)
#include "tst_emptystate.moc"
