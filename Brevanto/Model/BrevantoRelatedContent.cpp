#include "Brevanto/Model/BrevantoRelatedContent.h"

#include "Brevanto/Model/BrevantoArchiveTable.h"
#include "Brevanto/Model/BrevantoFields.h"

#include <array>

using namespace Qt::StringLiterals;

struct BrevantoRelatedContent::Archive {
    static constexpr auto fields = std::to_array<BrevantoArchiveEntry>({
        {"title"_L1, titleField},
        {"source"_L1, sourceField},
        {"date"_L1, dateField},
        {"thumbnailUrl"_L1, thumbnailUrlField},
        {"contentUrl"_L1, contentUrlField},
        {"body"_L1, bodyField},
    });
    static constexpr auto imageType = "imageType"_L1;
};

namespace
{

qint32 integerValue(const QVariant &field)
{
    constexpr std::numeric_limits<qint32> limits;
    if (field.typeId() == QMetaType::Bool)
        return field.toBool();
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
    encodeWithTable(Archive::fields, m_fields, coder);
    coder.encodeObject(m_imageType, Archive::imageType);
}

void BrevantoRelatedContent::initWithCoder(Platform::KeyedUnarchiver &coder)
{
    initWithTable(Archive::fields, m_fields, coder);
    m_imageType = integerValue(coder.decodeObjectForKey(Archive::imageType));
}
