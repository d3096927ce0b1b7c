#include <observerbase/trace.h>

#include <QLoggingCategory>
#include <QStringList>
#include <QTest>

#include <array>
#include <atomic>
#include <future>
#include <thread>

namespace {

// Rules of the environment stand above those that a program sets, a filter stands above both.
void switchTraces(bool on)
{
    static bool wanted;
    wanted = on;
    QLoggingCategory::installFilter([](QLoggingCategory* category) {
        category->setEnabled(QtWarningMsg, wanted || qstrcmp(category->categoryName(), "zelko.trace") != 0);
    });
}

} // namespace

class tst_Trace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void givesTextFileAndLineToTheSink();
    void givesBackTheSinkThatWasSetBefore();
    void writesToItsLoggingCategoryWithoutASink();
    void isSilentWhenItsCategoryIsOff();
    void letsASinkTraceAndReplaceItself();
    void reachesTheSinkFromManyThreads();
    void holdsNoLockWhileItCallsTheSink();
    void leavesNoThreadInASinkThatWasReplaced();
};

void tst_Trace::cleanup()
{
    SetTraceSink({});
    switchTraces(false);
}

void tst_Trace::givesTextFileAndLineToTheSink()
{
    QStringList traces;
    SetTraceSink([&](const QString& text, const char* file, int line) {
        traces << QStringLiteral("%1 (%2:%3)").arg(text, QLatin1String(file)).arg(line);
    });
    _Q_Trace("Class::invalid device path", "device.cpp", 17);
    _Q_Trace("", "other.cpp", 0);
    QCOMPARE(traces, QStringList({"Class::invalid device path (device.cpp:17)", " (other.cpp:0)"}));
}

void tst_Trace::givesBackTheSinkThatWasSetBefore()
{
    int first = 0;
    int second = 0;
    QVERIFY(!SetTraceSink([&](const QString&, const char*, int) { ++first; }));
    TraceSink before = SetTraceSink([&](const QString&, const char*, int) { ++second; });
    QVERIFY(before);
    _Q_Trace("to the second", __FILE__, __LINE__);
    SetTraceSink(std::move(before));
    _Q_Trace("to the first", __FILE__, __LINE__);
    _Q_Trace("to the first again", __FILE__, __LINE__);
    QCOMPARE(first, 2);
    QCOMPARE(second, 1);
}

void tst_Trace::writesToItsLoggingCategoryWithoutASink()
{
    switchTraces(true);
    QTest::ignoreMessage(QtWarningMsg, "Class::text with \"quotes\"");
    _Q_Trace("Class::text with \"quotes\"", __FILE__, __LINE__);
}

void tst_Trace::isSilentWhenItsCategoryIsOff()
{
    static std::atomic<int> messages = 0;
    messages = 0;
    switchTraces(false);
    const auto handler =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++messages; });
    _Q_Trace("nobody hears", __FILE__, __LINE__);
    qInstallMessageHandler(handler);
    QCOMPARE(messages.load(), 0);
}

void tst_Trace::letsASinkTraceAndReplaceItself()
{
    QStringList traces;
    SetTraceSink([&traces](const QString& text, const char*, int) {
        auto& kept = traces;
        SetTraceSink([&kept](const QString& later, const char*, int) { kept << "inner " + later; });
        _Q_Trace("from within", __FILE__, __LINE__);
        kept << "outer " + text;
    });
    _Q_Trace("from outside", __FILE__, __LINE__);
    QCOMPARE(traces, QStringList({"inner from within", "outer from outside"}));
}

void tst_Trace::reachesTheSinkFromManyThreads()
{
    std::atomic<int> count = 0;
    SetTraceSink([&](const QString&, const char*, int) { ++count; });
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([] {
            for (int i = 0; i < 1000; ++i) {
                _Q_Trace("busy", __FILE__, __LINE__);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    QCOMPARE(count.load(), 4000);
}

// A sink that waited for another thread that traced waited for ever.
void tst_Trace::holdsNoLockWhileItCallsTheSink()
{
    std::atomic<int> count = 0;
    SetTraceSink([&](const QString&, const char*, int) {
        if (++count == 1) {
            std::thread([] { _Q_Trace("from another thread", __FILE__, __LINE__); }).join();
        }
    });
    _Q_Trace("from this thread", __FILE__, __LINE__);
    QCOMPARE(count.load(), 2);
}

void tst_Trace::leavesNoThreadInASinkThatWasReplaced()
{
    for (int i = 0; i < 100; ++i) {
        std::promise<void> begun;
        std::atomic<bool> replacing = false;
        std::atomic<bool> ended = false;
        SetTraceSink([&](const QString&, const char*, int) {
            begun.set_value();
            while (!replacing) {
                std::this_thread::yield();
            }
            std::this_thread::yield(); // to be overtaken, if that can be
            ended = true;
        });
        std::thread tracing([] { _Q_Trace("slow", __FILE__, __LINE__); });
        begun.get_future().wait();
        replacing = true;
        SetTraceSink({});
        QVERIFY(ended);
        tracing.join();
    }
}

QTEST_GUILESS_MAIN(tst_Trace)
#include "tst_trace.moc"
