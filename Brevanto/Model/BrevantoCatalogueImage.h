#pragma once

#include "Brevanto/Model/BrevantoFieldValues.h"
#include "Platform/Foundation/Codable.h"

// A catalogue image with its caption and a link where the product is sold. Null fields and threads: see
// BrevantoBaseEntity.
class BREVANTO_EXPORT BrevantoCatalogueImage : public Platform::Codable
{
public:
    BrevantoCatalogueImage() = default;
    ~BrevantoCatalogueImage() override;

    // The image's address; text, null when the service sent none.
    const QVariant &imageURL() const { return m_fields.value(imageURLField); }
    void setImageURL(QVariant imageURL) { m_fields.setValue(imageURLField, std::move(imageURL)); }
    // What stands below it; text, null when the service sent none.
    const QVariant &captionText() const { return m_fields.value(captionTextField); }
    void setCaptionText(QVariant captionText) { m_fields.setValue(captionTextField, std::move(captionText)); }
    // Address where the product is sold; text, null when the service sent none.
    const QVariant &buyURL() const { return m_fields.value(buyURLField); }
    void setBuyURL(QVariant buyURL) { m_fields.setValue(buyURLField, std::move(buyURL)); }

    // As Platform::Codable says.
    QString className() const override;
    void encodeWithCoder(Platform::KeyedArchiver &coder) const override;
    void initWithCoder(Platform::KeyedUnarchiver &coder) override;

private:
    struct Archive;
    enum { imageURLField, captionTextField, buyURLField, fieldCount };

    BrevantoFewFieldValues<fieldCount> m_fields;
};
