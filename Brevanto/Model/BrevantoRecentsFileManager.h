#pragma once

#include "Brevanto/Model/BrevantoMatchGroup.h"

// The store of the ad images that the user has seen: the file "Recents" in the folder "Recents" of the host
// application's data directory (QStandardPaths::AppDataLocation), most recent first. The file is the only state. It
// grows without bound; a single group does not, lest a few answers of a bad service slow every save and reading for
// good.
//
// Runs on the caller's thread, takes no lock and reports no error: what cannot be written is left. The file is replaced
// whole, so that a reader finds the old or the new one; of two saves at the same time one may be lost.
class BREVANTO_EXPORT BrevantoRecentsFileManager
{
public:
    BrevantoRecentsFileManager() = delete;

    // The size in bytes of the largest group that is kept, as archived. Ads take a few thousand.
    static constexpr qsizetype largestGroup = 256 * 1024;

    // The folder's path; makes the folder when it is missing. Null when the system has no such directory.
    static QString getPathForRecentsInDocsFolder();

    // Puts each group in turn at the front of the stored list. When an ad image is stored already, its stored group
    // moves there as it is, with its old matches, and the new one is dropped. The first save of all keeps the order
    // given. Groups that are too large are not stored.
    static void saveMatchGroupsToFileManager(const BrevantoMatchGroupList &groups);

    // The stored groups; nothing when there is no file or it cannot be decoded. Takes time with the file's size.
    static std::optional<BrevantoMatchGroupList> retrieveAllSavedGroupedMatchesInFileManager();
};
