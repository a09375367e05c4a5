#pragma once

#include "Platform/Interface/Label.h"

#include <memory>

// A label whose text throws a soft black shadow down and to the right, which keeps it readable on pictures. For the
// main thread only.
class CustomLabel : public Platform::Label
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit CustomLabel(QQuickItem *parent = nullptr);
    explicit CustomLabel(const QRectF &frame);
    ~CustomLabel() override;

private:
    std::unique_ptr<QQuickItem> m_shadow; // follows the text item, and so goes before it
};
