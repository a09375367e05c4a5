#include "Brevanto/Model/BrevantoCaptionedImage.h"

#include "Brevanto/Model/BrevantoArchiveTable.h"

#include <array>

using namespace Qt::StringLiterals;

struct BrevantoCaptionedImage::Archive {
    static constexpr auto fields = std::to_array<BrevantoArchiveEntry>({
        {"imageURL"_L1, imageURLField},
        {"captionText"_L1, captionTextField},
    });
};

BrevantoCaptionedImage::~BrevantoCaptionedImage() = default;

QString BrevantoCaptionedImage::className() const
{
    return u"BrevantoCaptionedImage"_s;
}

void BrevantoCaptionedImage::encodeWithCoder(Platform::KeyedArchiver &coder) const
{
    encodeWithTable(Archive::fields, m_fields, coder);
}

void BrevantoCaptionedImage::initWithCoder(Platform::KeyedUnarchiver &coder)
{
    initWithTable(Archive::fields, m_fields, coder);
}
