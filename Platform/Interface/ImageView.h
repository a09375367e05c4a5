#pragma once

#include "Platform/Graphics/Image.h"
#include "Platform/Interface/View.h"

namespace Platform
{

// A view that shows an image, decoded off the main thread at the size in which it is drawn. Its subviews receive
// touches only once userInteractionEnabled is set. For the main thread only.
class ImageView : public Platform::View
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ContentMode contentMode READ contentMode WRITE setContentMode NOTIFY contentModeChanged)

public:
    enum class ContentMode { ScaleToFill = 0, ScaleAspectFit = 1, ScaleAspectFill = 2, Center = 4 };
    Q_ENUM(ContentMode)

    explicit ImageView(QQuickItem *parent = nullptr);
    explicit ImageView(const QRectF &frame);

    // Null shows nothing.
    Image image() const { return m_image; }
    void setImage(const Image &image);

    ContentMode contentMode() const { return m_contentMode; }
    void setContentMode(ContentMode mode);

    // False lets go of the decoded pixels, for a view out of sight; the image stays. True unless set otherwise.
    bool keepsPixels() const { return m_keepsPixels; }
    void setKeepsPixels(bool keeps);
    // How many times finer than its size asks for the picture is decoded, for a view that is magnified. 1 unless set.
    void setDetail(qreal detail);

    // Whether the picture is on the screen: false while it is being decoded and when it does not decode.
    bool isShowingImage() const;

Q_SIGNALS:
    void imageChanged();
    void contentModeChanged();
    // The image that is set does not decode. Told once the picture would be seen, after the current event.
    void imageFailed();

private:
    Q_SLOT void reportFailure();

    Image m_image;
    ContentMode m_contentMode = ContentMode::ScaleToFill;
    bool m_keepsPixels = true;
    QQuickItem *m_picture;
};

using ContentMode = ImageView::ContentMode;

} // namespace Platform
