// The recents grid with ten thousand groups beside one with twenty: how fast it opens, reading the archive apart, how
// many tiles live, and how much memory a fling to its end takes.
// "serve": serves the tiles' pictures, in a process of its own whose memory is not measured, and prints its address.

#include "Screens.h"
#include "support/FakeReachability.h"
#include "support/RawServer.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/BrevantoRecentProductsVC.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;
using Recents = BrevantoRecentsFileManager;

namespace
{

int serve(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    RawServer server;
    server.setAnswer({.body = TestImages::jpeg(TestImages::quarters({480, 640}))});
    std::puts(qPrintable(server.url(QString())));
    std::fflush(stdout);
    return QCoreApplication::exec();
}

QString filePath()
{
    return QDir(Recents::getPathForRecentsInDocsFolder()).filePath(u"Recents"_s);
}

void store(int groups, const QString &server)
{
    QFile::remove(filePath());
    BrevantoMatchGroupList list;
    for (int row = 0; row < groups; ++row) {
        const QString url = u"%1/%2.jpg"_s.arg(server).arg(row);
        auto match = std::make_shared<BrevantoMatch>();
        match->setBackgroundImageUrl(url);
        match->setTitle(u"Ad %1"_s.arg(row));
        list.append(BrevantoMatchGroup::initWithMatches({match}, url));
    }
    Recents::saveMatchGroupsToFileManager(list);
}

double readingTime()
{
    QElapsedTimer clock;
    clock.start();
    const auto groups = Recents::retrieveAllSavedGroupedMatchesInFileManager();
    return clock.nsecsElapsed() * 1e-9;
}

QList<QQuickItem *> rowsOf(const QQuickItem *grid)
{
    return grid ? grid->property("contentItem").value<QQuickItem *>()->childItems() : QList<QQuickItem *>();
}

double tilesOf(const QQuickItem *grid)
{
    double tiles = 0;
    for (const QQuickItem *row : rowsOf(grid)) {
        for (QQuickItem *item : row->childItems())
            tiles += Platform::View::viewWithTag(item, BrevantoRecentProductsVC::imageViewTag) ? 1 : 0;
    }
    return tiles;
}

double residentBytes()
{
    QFile file(u"/proc/self/statm"_s);
    return file.open(QIODevice::ReadOnly)
        ? file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE))
        : 0;
}

struct OpenGrid {
    Platform::NavigationController *stack;
    BrevantoRecentProductsVC *screen;
    double seconds;
};

OpenGrid opened(ScreenWindow &window)
{
    auto *stack = qobject_cast<Platform::NavigationController *>(window.root()->presentedViewController());
    QPointer<BrevantoRecentProductsVC> screen;
    FirstFrame frame(window.window(), [&screen] { return screen && tilesOf(screen->recentCollectionView()) > 0; });
    auto made = brevantoStoryboard().instantiate<BrevantoRecentProductsVC>(u"BrevantoRecentProductsVC"_s);
    screen = made.get();
    stack->pushViewController(std::move(made), false);
    return {stack, screen, frame.wait()};
}

void close(const OpenGrid &grid)
{
    grid.stack->popViewController(false);
    if (!QTest::qWaitFor([&] { return grid.stack->viewControllers().size() == 1; }))
        qFatal("The grid did not go");
    QTest::qWait(20);
}

void registerOpening(const std::string &name, int groups, ScreenWindow &window, const QString &server)
{
    benchmark::RegisterBenchmark(name.c_str(),
                                 [groups, &window, server](benchmark::State &state) {
                                     for ([[maybe_unused]] auto iteration : state) {
                                         store(groups, server);
                                         const double reading = readingTime();
                                         const OpenGrid grid = opened(window);
                                         state.SetIterationTime(qMax(0.0, grid.seconds - reading));
                                         close(grid);
                                     }
                                 })
        ->UseManualTime()
        ->Iterations(1);
}

// A screenful with each frame, faster than any finger.
void flingToTheEnd(benchmark::State &state, ScreenWindow &window)
{
    for ([[maybe_unused]] auto iteration : state) {
        const OpenGrid open = opened(window);
        QQuickItem *grid = open.screen->recentCollectionView();
        QTest::qWait(1000);
        const double before = residentBytes();
        double most = before;
        double tiles = tilesOf(grid);
        while (!grid->property("atYEnd").toBool()) {
            FirstFrame frame(window.window(), [] { return true; });
            grid->setProperty("contentY", grid->property("contentY").toReal() + grid->height());
            frame.wait();
            most = qMax(most, residentBytes());
            tiles = qMax(tiles, tilesOf(grid));
        }
        state.counters["growth"] = most - before;
        state.counters["tiles"] = tiles;
        const double rowHeight = BrevantoRecentProductsVC::sizeForItem(grid->width()).height()
            + BrevantoRecentProductsVC::minimumLineSpacingForSection();
        state.counters["fit"] = 2 * 2 * (std::ceil(grid->height() / rowHeight) + 1);
        close(open);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 2 && QByteArrayView(argv[1]) == "serve")
        return serve(argc, argv);

    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    QGuiApplication application(argc, argv);
    const FakeReachability network;
    QProcess server;
    server.start(QCoreApplication::applicationFilePath(), {u"serve"_s});
    if (!server.waitForReadyRead())
        qFatal("The server did not start");
    const QString address = QString::fromUtf8(server.readLine()).trimmed();

    constexpr QSize size(390, 844);
    kScreenWidth = size.width();
    kScreenHeight = size.height();
    ScreenWindow window(size);
    window.push(std::make_unique<Platform::ViewController>());
    auto *stack = qobject_cast<Platform::NavigationController *>(window.root()->presentedViewController());
    stack->popViewController(false);
    store(20, address);
    close(opened(window));

    registerOpening("opening 10000 groups/ours", 10'000, window, address);
    registerOpening("opening 20 groups/ours", 20, window, address);
    benchmark::RegisterBenchmark("fling/ours",
                                 [&window, address](benchmark::State &state) {
                                     store(10'000, address);
                                     flingToTheEnd(state, window);
                                 })
        ->Iterations(1)
        ->Repetitions(1);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    server.kill();
    server.waitForFinished();
    return 0;
}
