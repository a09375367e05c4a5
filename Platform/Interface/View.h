#pragma once

#include <QColor>
#include <QQuickItem>

#include <chrono>
#include <functional>

namespace Platform {

enum class AnimationCurve { EaseInOut, EaseIn, EaseOut, Linear };

struct AnimationOptions {
    std::chrono::milliseconds duration{0};
    std::chrono::milliseconds delay{0};
    AnimationCurve curve = AnimationCurve::EaseInOut;
};

// A rectangle on the screen that other views can be put into: frame, background colour, corner radius, alpha, scale,
// tag. Coordinates are points in the superview. The setters below, called inside the changes of animate(), move what is
// shown to the new value over time, while the getters answer the new value at once. For the main thread only.
class View : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int tag READ tag WRITE setTag NOTIFY tagChanged)
    Q_PROPERTY(QColor backgroundColor READ shownBackgroundColor WRITE setBackgroundColor NOTIFY backgroundColorChanged)
    Q_PROPERTY(qreal cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)

public:
    explicit View(QQuickItem *parent = nullptr);
    explicit View(const QRectF &frame);
    ~View() override;

    int tag() const { return m_tag; }
    void setTag(int tag);

    QRectF frame() const;
    void setFrame(const QRectF &frame);
    QRectF bounds() const { return {QPointF(0, 0), frame().size()}; }
    QPointF center() const { return frame().center(); }
    void setCenter(const QPointF &center);

    // Transparent unless set.
    QColor backgroundColor() const;
    void setBackgroundColor(const QColor &color);
    // The colour on the screen now, in the midst of an animation too.
    QColor shownBackgroundColor() const;

    qreal cornerRadius() const;
    void setCornerRadius(qreal radius);

    qreal alpha() const;
    void setAlpha(qreal alpha);

    // Scale of the transform, around the centre.
    qreal transformScale() const;
    void setTransformScale(qreal scale);

    bool isHidden() const { return !isVisible(); }
    void setHidden(bool hidden) { setVisible(!hidden); }

    // Puts `subview` on top of the subviews. A subview without an owner (QObject parent) becomes this view's own.
    void addSubview(QQuickItem *subview);
    // Takes the view off the screen; its owner stays.
    void removeFromSuperview();
    void bringSubviewToFront(QQuickItem *subview);
    QQuickItem *superview() const { return parentItem(); }

    // The item under `root`, itself included, with that tag; null when there is none. Items that are no views are found
    // through a property "tag".
    static QQuickItem *viewWithTag(QQuickItem *root, int tag);
    QQuickItem *viewWithTag(int tag) { return viewWithTag(this, tag); }

    // Asks for a layout pass before the next frame; the view's size changing does so too.
    void setNeedsLayout();
    // Runs the layout pass now if one is due.
    void layoutIfNeeded();

    // Runs `changes` and moves what they set to its new values over the duration. `completion` runs later on the main
    // thread and is told whether the animation finished. Without anything to move it runs at once, finished. Time comes
    // from Clock.
    static void animate(const AnimationOptions &options, const std::function<void()> &changes,
                        std::function<void(bool finished)> completion = {});
    // Puts the view's final values in place. The completions of what was cut short run later, unfinished.
    void removeAllAnimations();
    // Off: animations show their end at once. For tests and for users who prefer reduced motion.
    static void setAnimationsEnabled(bool enabled);
    static bool areAnimationsEnabled();

Q_SIGNALS:
    void tagChanged();
    void backgroundColorChanged();
    void cornerRadiusChanged();
    // A layout pass has run: the view and its subviews have their sizes. Only while in a window.
    void didLayoutSubviews();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void updatePolish() override;

private:
    int m_tag = 0;
    bool m_needsLayout = true;
};

} // namespace Platform
