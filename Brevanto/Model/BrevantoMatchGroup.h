#pragma once

#include "Brevanto/Model/BrevantoMatch.h"

#include <QLatin1StringView>

class BrevantoMatchGroup;
// Groups in the order that their source says; holds no null pointers.
using BrevantoMatchGroupList = QList<std::shared_ptr<BrevantoMatchGroup>>;

// The matches that share one ad image: what the ad screen shows and the recents store keeps. Shared, not copied. For
// one thread at a time.
class BREVANTO_EXPORT BrevantoMatchGroup : public Platform::Codable
{
public:
    BrevantoMatchGroup() = default;
    ~BrevantoMatchGroup() override;

    // A group of these matches, which may be none; `imageURL` may be null.
    static std::shared_ptr<BrevantoMatchGroup> initWithMatches(const BrevantoMatchList &matches,
                                                               const QString &imageURL);

    // One group for each ad image address (exact text), in order of first appearance, each with its matches in their
    // order. Matches without an ad image address belong to no group. A group made here has an address and at least one
    // match.
    static BrevantoMatchGroupList groupMatchesByAdImageUrl(const BrevantoMatchList &matches);

    // The key under which archives keep adImageUrl().
    static constexpr QLatin1StringView adImageUrlKey{"adImageUrl"};

    // Address of the ad image that the matches share, as the service sent it; a null QString is null.
    const QString &adImageUrl() const { return m_adImageUrl; }
    void setAdImageUrl(const QString &adImageUrl) { m_adImageUrl = adImageUrl; }

    // The matches, in their order. A group read from a damaged archive may have none at all, and its address may be
    // null; check before taking the first match.
    const BrevantoMatchList &listOfMatches() const { return m_listOfMatches; }
    void setListOfMatches(const BrevantoMatchList &listOfMatches) { m_listOfMatches = listOfMatches; }

    // As Platform::Codable says.
    QString className() const override;
    void encodeWithCoder(Platform::KeyedArchiver &coder) const override;
    void initWithCoder(Platform::KeyedUnarchiver &coder) override;

private:
    QString m_adImageUrl;
    BrevantoMatchList m_listOfMatches;
};
