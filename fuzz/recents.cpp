// Recents files. A group saved into whatever the file holds is there afterwards, in front.
#include "fuzz/Require.h"

#include "Brevanto/Model/BrevantoRecentsFileManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>

namespace
{

QString recentsFile()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
        return QDir(BrevantoRecentsFileManager::getPathForRecentsInDocsFolder()).filePath(QStringLiteral("Recents"));
    }();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QFile file(recentsFile());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return 0;
    file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size));
    file.close();
    const auto before = BrevantoRecentsFileManager::retrieveAllSavedGroupedMatchesInFileManager();

    const QString address = QStringLiteral("https://fuzz.example/ad.jpg");
    auto match = std::make_shared<BrevantoMatch>();
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager({BrevantoMatchGroup::initWithMatches({match}, address)});
    const auto after = BrevantoRecentsFileManager::retrieveAllSavedGroupedMatchesInFileManager();
    require(after.has_value(), "a saved file is readable");
    require(after->size() >= before.value_or(BrevantoMatchGroupList()).size(), "no group is lost");
    require(!after->isEmpty() && after->first()->adImageUrl() == address, "the group saved is in front");
    return 0;
}
