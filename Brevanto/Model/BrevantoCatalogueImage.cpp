#include "Brevanto/Model/BrevantoCatalogueImage.h"

#include "Brevanto/Model/BrevantoArchiveTable.h"

#include <array>

using namespace Qt::StringLiterals;

struct BrevantoCatalogueImage::Archive {
    static constexpr auto fields = std::to_array<BrevantoArchiveEntry>({
        {"imageURL"_L1, imageURLField},
        {"captionText"_L1, captionTextField},
        {"buyURL"_L1, buyURLField},
    });
};

BrevantoCatalogueImage::~BrevantoCatalogueImage() = default;

QString BrevantoCatalogueImage::className() const
{
    return u"BrevantoCatalogueImage"_s;
}

void BrevantoCatalogueImage::encodeWithCoder(Platform::KeyedArchiver &coder) const
{
    encodeWithTable(Archive::fields, m_fields, coder);
}

void BrevantoCatalogueImage::initWithCoder(Platform::KeyedUnarchiver &coder)
{
    initWithTable(Archive::fields, m_fields, coder);
}
