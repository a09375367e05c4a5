#pragma once

#include "Brevanto/BrevantoExport.h"
#include "Platform/Foundation/Codable.h"

#include <QVariant>

// A catalogue image with its caption and a link where the product is sold. Null fields: see BrevantoBaseEntity.
class BREVANTO_EXPORT BrevantoCatalogueImage : public Platform::Codable
{
public:
    BrevantoCatalogueImage() = default;
    ~BrevantoCatalogueImage() override;

    const QVariant &imageURL() const { return m_imageURL; }
    void setImageURL(QVariant imageURL) { m_imageURL = std::move(imageURL); }
    const QVariant &captionText() const { return m_captionText; }
    void setCaptionText(QVariant captionText) { m_captionText = std::move(captionText); }
    const QVariant &buyURL() const { return m_buyURL; }
    void setBuyURL(QVariant buyURL) { m_buyURL = std::move(buyURL); }

    QString className() const override;
    void encodeWithCoder(Platform::KeyedArchiver &coder) const override;
    void initWithCoder(Platform::KeyedUnarchiver &coder) override;

private:
    struct Archive;

    QVariant m_imageURL;
    QVariant m_captionText;
    QVariant m_buyURL;
};
