#include "BenchLibrary.h"
#include "main/MainWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPaintEvent>
#include <QProcess>

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>

// How long the program takes from the start of its process to its first painted window, and to its
// end after that. Each run is a process of its own: this program starts itself again, and then does
// what main.cpp does.

using namespace Planaria;

namespace {

constexpr auto childVariable = "VERMIDEX_BENCH_CHILD";

/// The clock that all processes of the machine share.
qint64 nanoseconds()
{
    return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

/// Tells the time at which the window was painted and sent to the screen, and quits.
class TimedApplication final : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        ++depth;
        const bool result = QApplication::notify(receiver, event);
        painted |= event->type() == QEvent::Paint && qobject_cast<MainWindow *>(receiver);
        // Children are painted, and the window is sent, inside of the event that paints it.
        if (--depth == 0 && painted && !told) {
            told = true;
            std::printf("%lld\n", static_cast<long long>(nanoseconds()));
            QMetaObject::invokeMethod(this, &QCoreApplication::quit, Qt::QueuedConnection);
        }
        return result;
    }

private:
    int depth = 0;
    bool painted = false;
    bool told = false;
};

int runProgram(int argc, char **argv)
{
    const TimedApplication application(argc, argv);
    MainWindow window;
    window.show();
    return QApplication::exec();
}

/// Starts the program with @p arguments, once for each round of @p state.
void startProgram(benchmark::State &state, const QStringList &arguments)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(childVariable), QStringLiteral("1"));
    program.setProcessEnvironment(environment);

    double whole = 0.0;
    while (state.KeepRunning()) {
        const qint64 start = nanoseconds();
        program.start(QCoreApplication::applicationFilePath(), arguments);
        program.waitForFinished();
        const qint64 end = nanoseconds();
        const qint64 painted = program.readAllStandardOutput().trimmed().toLongLong();
        if (painted <= start || program.exitCode() != 0) {
            std::fputs(program.readAllStandardError().constData(), stderr);
            state.SkipWithError("the program did not paint its window");
            break;
        }
        state.SetIterationTime(1e-9 * static_cast<double>(painted - start));
        whole += 1e-9 * static_cast<double>(end - start);
    }
    state.counters["untilExit"] = benchmark::Counter(whole, benchmark::Counter::kAvgIterations);
}

void withoutFile(benchmark::State &state)
{
    startProgram(state, {QStringLiteral("no-such-file.edb")});
}

void withLibrary(benchmark::State &state)
{
    const BenchLibrary library(static_cast<int>(state.range(0)));
    startProgram(state, {library.fileName()});
}

BENCHMARK(withoutFile)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(withLibrary)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsSet(childVariable))
        return runProgram(argc, argv);
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
