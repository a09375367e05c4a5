#pragma once

#include "service/Features.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

namespace MatchService
{

/// Keeps the features of ads in a folder, one file each, named after the picture's content and the way features are
/// taken. A changed picture or a changed program therefore misses; a damaged file counts as missing.
class FeatureCache
{
public:
    /// An empty folder name keeps nothing.
    explicit FeatureCache(QString folder);

    std::optional<AdFeatures> find(const QByteArray &picture) const;
    /// A folder that cannot be written to is no fault; the next start only takes longer.
    void store(const QByteArray &picture, const AdFeatures &features) const;

private:
    QString pathFor(const QByteArray &picture) const;

    QString m_folder;
};

} // namespace MatchService
