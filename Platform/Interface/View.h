#pragma once

#include <QColor>
#include <QQuickItem>

#include <chrono>
#include <functional>
#include <variant>

namespace Platform
{

enum class AnimationCurve { EaseInOut, EaseIn, EaseOut, Linear };

struct AnimationOptions {
    std::chrono::milliseconds duration{0};
    std::chrono::milliseconds delay{0};
    AnimationCurve curve = AnimationCurve::EaseInOut;
};

// The shadow of a view or a bar. None while the opacity is 0.
struct LayerShadow {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QColor color MEMBER color CONSTANT)
    Q_PROPERTY(qreal opacity MEMBER opacity CONSTANT)
    Q_PROPERTY(QSizeF offset MEMBER offset CONSTANT)
    Q_PROPERTY(qreal radius MEMBER radius CONSTANT)

public:
    QColor color = Qt::black;
    qreal opacity = 0;
    QSizeF offset;
    qreal radius = 3;

    friend bool operator==(const LayerShadow &, const LayerShadow &) = default;
};

// What an animation can move.
enum class AnimatedProperty { Frame, BackgroundColor, CornerRadius, Alpha, TransformScale };
using AnimatedValue = std::variant<qreal, QColor, QRectF>;

// A rectangle on the screen that other views can be put into: frame, background colour, corner radius, alpha, scale,
// tag. Coordinates are points in the superview. The setters below, called inside the changes of animate(), move what is
// shown to the new value over time, while the getters answer the new value at once. Called outside of it they show the
// new value at once; an animation of that property goes on without it and completes at its own time. For the main
// thread only.
class View : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int tag READ tag WRITE setTag NOTIFY tagChanged)
    Q_PROPERTY(QColor backgroundColor READ shownBackgroundColor WRITE setBackgroundColor NOTIFY backgroundColorChanged)
    Q_PROPERTY(qreal cornerRadius READ shownCornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)
    Q_PROPERTY(
        bool userInteractionEnabled READ isUserInteractionEnabled WRITE setUserInteractionEnabled NOTIFY enabledChanged)

public:
    // What gives when the superview's size changes; a mask is any of them together.
    enum AutoresizingMask {
        FlexibleLeftMargin = 1,
        FlexibleWidth = 2,
        FlexibleRightMargin = 4,
        FlexibleTopMargin = 8,
        FlexibleHeight = 16,
        FlexibleBottomMargin = 32
    };

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

    // 0 unless set: the frame stays as it is.
    int autoresizingMask() const { return m_autoresizingMask; }
    void setAutoresizingMask(int mask) { m_autoresizingMask = mask; }

    // Draws the background as the disc that fills the view, which takes a fraction of what a round-cornered rectangle
    // takes: for views that stay round and fade. To be called before the view has a background.
    void drawBackgroundAsDisc() { m_isDisc = true; }

    // Thrown by the background; a view without one throws none.
    LayerShadow shadow() const { return m_shadow; }
    void setShadow(const LayerShadow &shadow);

    // The view's own wish; a view inside a hidden one is not hidden itself.
    bool isHidden() const;
    void setHidden(bool hidden);

    // Whether the view and what it holds receive touches and keys.
    bool isUserInteractionEnabled() const { return isEnabled(); }
    void setUserInteractionEnabled(bool enabled) { setEnabled(enabled); }

    // Puts `subview` on top of the subviews. A subview without an owner (QObject parent) becomes this view's own, save
    // the view of a controller, which stays the controller's.
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
    // Runs the layout pass of this view, and then of those inside it, now if one is due.
    void layoutIfNeeded();

    // Runs `changes` and moves what they set to its new values over the duration. `completion` runs later on the main
    // thread, when the views may be gone, and is told whether the animation finished: it did not when its views were
    // destroyed, their animations removed, or when another animation took over what it moved. Without anything to move
    // it runs as soon as the current event is over, finished. Time comes from Clock.
    static void animate(const AnimationOptions &options, const std::function<void()> &changes,
                        std::function<void(bool finished)> completion = {});
    // Puts the view's final values in place. The completions of what was cut short run later, unfinished.
    void removeAllAnimations();
    // Off: animations show their end at once.
    static void setAnimationsEnabled(bool enabled);
    static bool areAnimationsEnabled();

Q_SIGNALS:
    void tagChanged();
    void backgroundColorChanged();
    void cornerRadiusChanged();
    // A layout pass has run: the view and its subviews have their sizes. By itself only while in a window, and only
    // with a size that is not empty.
    void didLayoutSubviews();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void updatePolish() override;

private:
    friend class ViewAnimator;
    friend class ViewController;

    void passFocusOn();
    AnimatedValue shownValue(AnimatedProperty property) const;
    void showValue(AnimatedProperty property, const AnimatedValue &value);
    qreal shownCornerRadius() const { return m_cornerRadius; }
    void updateBackground();
    void runLayoutPass();
    void resizeWithSuperview(const QSizeF &before, const QSizeF &after);

    int m_tag = 0;
    int m_autoresizingMask = 0;
    QColor m_backgroundColor = Qt::transparent;
    qreal m_cornerRadius = 0;
    LayerShadow m_shadow;
    QQuickItem *m_background = nullptr;
    QQuickItem *m_shadowItem = nullptr;
    bool m_isDisc = false;
    bool m_hidden = false;
    bool m_needsLayout = true;
    bool m_belongsToController = false;
};

} // namespace Platform
