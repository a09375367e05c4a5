#include "Brevanto/Model/BrevantoCatalogueImage.h"

#include "Brevanto/Model/BrevantoArchiveTable.h"

#include <array>

using namespace Qt::StringLiterals;

struct BrevantoCatalogueImage::Archive {
    static constexpr auto fields = std::to_array<BrevantoArchiveEntry<BrevantoCatalogueImage>>({
        {"imageURL"_L1, &BrevantoCatalogueImage::m_imageURL},
        {"captionText"_L1, &BrevantoCatalogueImage::m_captionText},
        {"buyURL"_L1, &BrevantoCatalogueImage::m_buyURL},
    });
};

BrevantoCatalogueImage::~BrevantoCatalogueImage() = default;

QString BrevantoCatalogueImage::className() const
{
    return u"BrevantoCatalogueImage"_s;
}

void BrevantoCatalogueImage::encodeWithCoder(Platform::KeyedArchiver &coder) const
{
    encodeWithTable(Archive::fields, *this, coder);
}

void BrevantoCatalogueImage::initWithCoder(Platform::KeyedUnarchiver &coder)
{
    initWithTable(Archive::fields, *this, coder);
}
