// The recents store with ten thousand groups: saving one more sighting, and reading them all.

#include "Made.h"
#include "Timing.h"

#include "Brevanto/Model/BrevantoRecentsFileManager.h"

#include <QCborValue>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>

using Recents = BrevantoRecentsFileManager;

namespace
{

constexpr int groupCount = 10'000;

QString filePath()
{
    return QDir(Recents::getPathForRecentsInDocsFolder()).filePath(QStringLiteral("Recents"));
}

QByteArray content()
{
    QFile file(filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QByteArray &bytes, const QString &path)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

// A save that decoded the matches would leave out those of a class that nobody knows.
bool keepsMatchesUnread(const BrevantoMatchGroupList &groups)
{
    const QByteArray original = content();
    QByteArray strange = original;
    strange.replace("\x6d"
                    "BrevantoMatch",
                    "\x6d"
                    "StrangerMatch");
    if (strange == original || !write(strange, filePath()))
        qFatal("The archive could not be changed");
    Recents::saveMatchGroupsToFileManager({groups.constLast()});
    const bool isKept = content().size() == original.size() && content().count("StrangerMatch") == groupCount;
    write(original, filePath());
    return isKept;
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    const BrevantoMatchGroupList groups = Made::groups(Made::reply(groupCount, 1));
    Recents::saveMatchGroupsToFileManager(groups);
    const QByteArray archive = content();
    const bool isUnread = keepsMatchesUnread(groups);

    // Each sighting is of the group that was seen longest ago.
    qsizetype next = groups.size();
    registerTimed("saving one of 10000 groups/ours", [&] {
        next = (next == 0 ? groups.size() : next) - 1;
        Recents::saveMatchGroupsToFileManager({groups.at(next)});
        return true;
    });
    registerTimed("saving one of 10000 groups/QSaveFile",
                  [&, path = home.filePath(QStringLiteral("bare"))] { return write(archive, path); });
    benchmark::RegisterBenchmark("matches decoded by a save/ours", [isUnread](benchmark::State &state) {
        for ([[maybe_unused]] auto iteration : state)
            state.counters["decoded"] = isUnread ? 0 : groupCount;
    })->Iterations(1);
    registerTimed(
        "reading 10000 groups/ours", [] { return Recents::retrieveAllSavedGroupedMatchesInFileManager(); },
        processorSeconds);
    registerTimed(
        "reading 10000 groups/QCborValue", [archive] { return QCborValue::fromCbor(archive); }, processorSeconds);

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
