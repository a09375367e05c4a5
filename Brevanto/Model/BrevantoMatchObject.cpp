#include "Brevanto/Model/BrevantoMatchObject.h"

#include <QCborMap>

namespace
{

bool hasKeys(const QCborMap &map, const QList<QCborValue> &keys)
{
    if (map.size() != keys.size())
        return false;
    auto entry = map.constBegin();
    return std::ranges::all_of(keys, [&entry](const QCborValue &key) { return (entry++).key() == key; });
}

} // namespace

void BrevantoMatchObject::setObject(QJsonObject object)
{
    m_object = std::move(object);
    // The map and the object are the same data.
    const QCborMap map = QCborMap::fromJsonObject(m_object);
    if (!hasKeys(map, m_keys)) {
        m_keys = map.keys();
        findKeys();
    }
}

// Both lists of keys are sorted, so that one walk along both finds what they share.
void BrevantoMatchObject::findKeys()
{
    static_assert(std::ranges::is_sorted(names));
    m_positions.fill(-1);
    auto name = names.begin();
    qsizetype position = 0;
    for (auto entry = m_object.constBegin(); entry != m_object.constEnd(); ++entry, ++position) {
        const QString key = entry.key();
        int order = -1;
        while (name != names.end()
               && (order = QLatin1StringView(name->data(), qsizetype(name->size())).compare(key)) < 0)
            ++name;
        if (name != names.end() && order == 0)
            m_positions[std::size_t(name - names.begin())] = position;
    }
}
