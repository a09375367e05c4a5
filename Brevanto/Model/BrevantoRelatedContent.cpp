#include "Brevanto/Model/BrevantoRelatedContent.h"

#include "Brevanto/Model/BrevantoArchiveTable.h"
#include "Brevanto/Model/BrevantoFields.h"

#include <array>

using namespace Qt::StringLiterals;

struct BrevantoRelatedContent::Archive {
    static constexpr auto fields = std::to_array<BrevantoArchiveEntry<BrevantoRelatedContent>>({
        {"title"_L1, &BrevantoRelatedContent::m_title},
        {"source"_L1, &BrevantoRelatedContent::m_source},
        {"date"_L1, &BrevantoRelatedContent::m_date},
        {"thumbnailUrl"_L1, &BrevantoRelatedContent::m_thumbnailUrl},
        {"contentUrl"_L1, &BrevantoRelatedContent::m_contentUrl},
        {"body"_L1, &BrevantoRelatedContent::m_body},
    });
    static constexpr auto imageType = "imageType"_L1;
};

namespace
{

qint32 integerValue(const QVariant &field)
{
    constexpr std::numeric_limits<qint32> limits;
    const double number = BrevantoFields::number(field).value_or(0);
    // The comparison also turns away what is not a number.
    return number >= limits.min() && number <= limits.max() ? static_cast<qint32>(number) : 0;
}

} // namespace

BrevantoRelatedContent::~BrevantoRelatedContent() = default;

QString BrevantoRelatedContent::className() const
{
    return u"BrevantoRelatedContent"_s;
}

void BrevantoRelatedContent::encodeWithCoder(Platform::KeyedArchiver &coder) const
{
    encodeWithTable(Archive::fields, *this, coder);
    coder.encodeObject(m_imageType, Archive::imageType);
}

void BrevantoRelatedContent::initWithCoder(Platform::KeyedUnarchiver &coder)
{
    initWithTable(Archive::fields, *this, coder);
    m_imageType = integerValue(coder.decodeObjectForKey(Archive::imageType));
}
