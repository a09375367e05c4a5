#pragma once

#include "Platform/Interface/Button.h"

// The gallery's button for a product that can be bought.
class CatalogueButton : public Platform::Button
{
    Q_OBJECT

public:
    using Button::Button;

    // The link that the button opens.
    QString buyURL() const { return m_buyURL; }
    void setBuyURL(const QString &buyURL) { m_buyURL = buyURL; }

private:
    QString m_buyURL;
};
