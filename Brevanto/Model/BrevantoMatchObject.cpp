#include "Brevanto/Model/BrevantoMatchObject.h"

// Both lists of keys are sorted, so that one walk along both finds what they share.
BrevantoMatchObject::BrevantoMatchObject(QJsonObject object)
    : m_object(std::move(object))
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
