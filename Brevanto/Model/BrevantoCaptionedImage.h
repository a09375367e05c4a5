#pragma once

#include "Brevanto/BrevantoExport.h"
#include "Platform/Foundation/Codable.h"

#include <QVariant>

// A gallery image with its caption. Null fields: see BrevantoBaseEntity.
class BREVANTO_EXPORT BrevantoCaptionedImage : public Platform::Codable
{
public:
    BrevantoCaptionedImage() = default;
    ~BrevantoCaptionedImage() override;

    const QVariant &imageURL() const { return m_imageURL; }
    void setImageURL(QVariant imageURL) { m_imageURL = std::move(imageURL); }
    const QVariant &captionText() const { return m_captionText; }
    void setCaptionText(QVariant captionText) { m_captionText = std::move(captionText); }

    QString className() const override;
    void encodeWithCoder(Platform::KeyedArchiver &coder) const override;
    void initWithCoder(Platform::KeyedUnarchiver &coder) override;

private:
    struct Archive;

    QVariant m_imageURL;
    QVariant m_captionText;
};
