#include "Brevanto/Model/BrevantoMatchGroup.h"

#include "Brevanto/Model/BrevantoFields.h"
#include "Platform/Foundation/KeyedArchiver.h"
#include "Platform/Foundation/KeyedUnarchiver.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto listOfMatchesKey = "listOfMatches"_L1;

} // namespace

BrevantoMatchGroup::~BrevantoMatchGroup() = default;

std::shared_ptr<BrevantoMatchGroup> BrevantoMatchGroup::initWithMatches(const BrevantoMatchList &matches,
                                                                        const QString &imageURL)
{
    auto group = std::make_shared<BrevantoMatchGroup>();
    group->setListOfMatches(matches);
    group->setAdImageUrl(imageURL);
    return group;
}

BrevantoMatchGroupList BrevantoMatchGroup::groupMatchesByAdImageUrl(const BrevantoMatchList &matches)
{
    BrevantoMatchGroupList groups;
    QHash<QString, BrevantoMatchGroup *> groupsByAddress;
    BrevantoMatchGroup *group = nullptr;
    for (const auto &match : matches) {
        const QString address = BrevantoFields::text(match->backgroundImageUrl());
        if (address.isEmpty())
            continue;
        if (!group || group->m_adImageUrl != address) // the matches of an image mostly follow each other
            group = groupsByAddress.value(address);
        if (!group) {
            groups.append(initWithMatches({}, address));
            group = groups.constLast().get();
            groupsByAddress.insert(address, group);
        }
        group->m_listOfMatches.append(match);
    }
    return groups;
}

QString BrevantoMatchGroup::className() const
{
    return u"BrevantoMatchGroup"_s;
}

void BrevantoMatchGroup::encodeWithCoder(Platform::KeyedArchiver &coder) const
{
    QVariantList matches;
    matches.reserve(m_listOfMatches.size());
    for (const auto &match : m_listOfMatches)
        matches.append(BrevantoFields::entry(match));
    coder.encodeObject(m_adImageUrl, adImageUrlKey);
    coder.encodeObject(matches, listOfMatchesKey);
}

void BrevantoMatchGroup::initWithCoder(Platform::KeyedUnarchiver &coder)
{
    m_adImageUrl = BrevantoFields::text(coder.decodeObjectForKey(adImageUrlKey));
    const QVariantList matches = BrevantoFields::list(coder.decodeObjectForKey(listOfMatchesKey));
    m_listOfMatches.clear();
    for (const QVariant &entry : matches) {
        if (auto match = BrevantoFields::record<BrevantoMatch>(entry))
            m_listOfMatches.append(std::move(match));
    }
}
