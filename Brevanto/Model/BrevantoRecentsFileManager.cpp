#include "Brevanto/Model/BrevantoRecentsFileManager.h"

#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoRelatedContent.h"
#include "Platform/Foundation/KeyedArchiveList.h"
#include "Platform/Foundation/KeyedArchiver.h"
#include "Platform/Foundation/KeyedUnarchiver.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;
using Platform::KeyedArchiveList;
using Elements = std::vector<KeyedArchiveList::Element>;

namespace
{

constexpr auto recentsName = "Recents"_L1;
template <class... Records>
Platform::KeyedUnarchiver::ClassTable classTable()
{
    return {{Records().className(), [] { return std::make_shared<Records>(); }}...};
}

const Platform::KeyedUnarchiver::ClassTable &archivedClasses()
{
    static const auto classes = classTable<BrevantoMatchGroup, BrevantoMatch, BrevantoCaptionedImage,
                                           BrevantoCatalogueImage, BrevantoRelatedContent>();
    return classes;
}

// Null when there is no folder for it.
QString filePath()
{
    const QString folder = BrevantoRecentsFileManager::getPathForRecentsInDocsFolder();
    return folder.isNull() ? QString() : QDir(folder).filePath(recentsName);
}

// Nothing when there is a file that cannot be read.
std::optional<QByteArray> contentOf(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return QByteArray();
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray content = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(std::move(content)) : std::nullopt;
}

// None when the archive cannot be decoded. Only groups have an address: what a newer version keeps under it, which is
// not shown here, does not stand for a group.
Elements elementsOf(QByteArrayView archive)
{
    return KeyedArchiveList::elements(archive, BrevantoMatchGroup().className(), BrevantoMatchGroup::adImageUrlKey)
        .value_or(Elements());
}

// A process that is killed while it saves leaves the file that it was writing. What is young may be another's.
void removeLeftovers(const QString &path)
{
    const QDateTime longAgo = QDateTime::currentDateTime().addSecs(-3600);
    const QFileInfo file(path);
    for (const QFileInfo &left : file.dir().entryInfoList({file.fileName() + ".??????"_L1}, QDir::Files)) {
        if (left.lastModified() < longAgo)
            QFile::remove(left.filePath());
    }
}

// The archive of a list of that group alone; empty for a group that is too large.
QByteArray archiveOf(const std::shared_ptr<BrevantoMatchGroup> &group)
{
    constexpr qsizetype listHead = 1;
    return Platform::KeyedArchiver::archivedData(QVariantList{BrevantoFields::entry(group)},
                                                 BrevantoRecentsFileManager::largestGroup + listHead);
}

// Groups that are to be saved. A group that is too large is known by its address and has no bytes.
class NewElements
{
public:
    explicit NewElements(const BrevantoMatchGroupList &groups)
    {
        for (const auto &group : groups) {
            if (!group)
                continue;
            m_archives.push_back(archiveOf(group));
            const bool isTooLarge = m_archives.back().isEmpty();
            if (isTooLarge)
                m_archives.back() = archiveOf(BrevantoMatchGroup::initWithMatches({}, group->adImageUrl()));
            for (const KeyedArchiveList::Element &element : elementsOf(m_archives.back()))
                elements.push_back({isTooLarge ? QByteArrayView() : element.bytes, element.text});
        }
    }

    Elements elements;

private:
    std::vector<QByteArray> m_archives; // what the elements are views of
};

bool isTooLarge(const KeyedArchiveList::Element &group)
{
    return group.bytes.isEmpty();
}

// Puts `group`, unless it is too large, at the front, or in its stead the first stored one with the same ad image
// address.
void bringToFront(Elements &stored, const KeyedArchiveList::Element &group)
{
    const auto known = std::ranges::find_if(
        stored, [&group](const auto &candidate) { return group.text && candidate.text == group.text; });
    if (known != stored.end())
        std::rotate(stored.begin(), known, known + 1);
    else if (!isTooLarge(group))
        stored.insert(stored.begin(), group);
}

} // namespace

QString BrevantoRecentsFileManager::getPathForRecentsInDocsFolder()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (documents.isEmpty())
        return {};
    QString folder = QDir(documents).filePath(recentsName);
    if (!QFileInfo(folder).isDir())
        QDir().mkpath(folder);
    return folder;
}

// The stored groups are moved as bytes and never decoded, so that a save costs little more than writing the file.
void BrevantoRecentsFileManager::saveMatchGroupsToFileManager(const BrevantoMatchGroupList &groups)
{
    const QString path = filePath();
    if (path.isNull())
        return;
    const NewElements added(groups);
    Elements elements = added.elements;

    const auto oldArchive = contentOf(path);
    if (!oldArchive)
        return; // what cannot be read now may be read later
    if (QFileInfo::exists(path)) {
        Elements stored = elementsOf(*oldArchive);
        for (const KeyedArchiveList::Element &group : elements)
            bringToFront(stored, group);
        elements = std::move(stored);
    } else {
        std::erase_if(elements, isTooLarge);
    }

    removeLeftovers(path);
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && KeyedArchiveList::write(elements, file) && file.flush())
        file.commit();
}

std::optional<BrevantoMatchGroupList> BrevantoRecentsFileManager::retrieveAllSavedGroupedMatchesInFileManager()
{
    const auto elements =
        Platform::KeyedUnarchiver::unarchiveList(contentOf(filePath()).value_or(QByteArray()), archivedClasses());
    if (!elements)
        return {};
    BrevantoMatchGroupList groups;
    for (const QVariant &element : *elements) {
        if (auto group = BrevantoFields::record<BrevantoMatchGroup>(element))
            groups.append(std::move(group));
    }
    return groups;
}
