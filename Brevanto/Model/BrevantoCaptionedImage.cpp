#include "Brevanto/Model/BrevantoCaptionedImage.h"

#include "Brevanto/Model/BrevantoArchiveTable.h"

#include <array>

using namespace Qt::StringLiterals;

struct BrevantoCaptionedImage::Archive {
    static constexpr auto fields = std::to_array<BrevantoArchiveEntry<BrevantoCaptionedImage>>({
        {"imageURL"_L1, &BrevantoCaptionedImage::m_imageURL},
        {"captionText"_L1, &BrevantoCaptionedImage::m_captionText},
    });
};

BrevantoCaptionedImage::~BrevantoCaptionedImage() = default;

QString BrevantoCaptionedImage::className() const
{
    return u"BrevantoCaptionedImage"_s;
}

void BrevantoCaptionedImage::encodeWithCoder(Platform::KeyedArchiver &coder) const
{
    encodeWithTable(Archive::fields, *this, coder);
}

void BrevantoCaptionedImage::initWithCoder(Platform::KeyedUnarchiver &coder)
{
    initWithTable(Archive::fields, *this, coder);
}
