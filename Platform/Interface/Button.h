#pragma once

#include "Platform/Graphics/Image.h"
#include "Platform/Interface/View.h"

namespace Platform
{

// A button with an image or else a title, on the view's own background; shown with the stock button. For the main
// thread only.
class Button : public Platform::View
{
    Q_OBJECT
    QML_NAMED_ELEMENT(PushButton)
    Q_PROPERTY(QString accessibleName READ accessibleName WRITE setAccessibleName NOTIFY faceChanged)
    Q_PROPERTY(QPointF imageOffset READ imageOffset WRITE setImageOffset NOTIFY faceChanged)

public:
    explicit Button(QQuickItem *parent = nullptr);
    explicit Button(const QRectF &frame);

    QString title() const { return m_title; }
    // Shown in black or white, whichever reads better on the background.
    void setTitle(const QString &title);

    Image image() const { return m_image; }
    void setImage(const Image &image);
    // How far from the middle the image stands.
    QPointF imageOffset() const { return m_imageOffset; }
    void setImageOffset(const QPointF &offset);

    // What an assistive technology calls the button: its title unless set.
    QString accessibleName() const { return m_accessibleName.isEmpty() ? m_title : m_accessibleName; }
    void setAccessibleName(const QString &name);

Q_SIGNALS:
    // The finger was lifted inside, or a key pressed the button.
    void touchUpInside();
    void faceChanged();

private:
    void updateFace();

    QString m_title;
    Image m_image;
    QPointF m_imageOffset;
    QString m_accessibleName;
    QQuickItem *m_face;
};

} // namespace Platform
