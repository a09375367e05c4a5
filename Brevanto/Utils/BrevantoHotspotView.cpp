#include "Brevanto/Utils/BrevantoHotspotView.h"

#include <QPointer>

using namespace std::chrono_literals;

namespace
{

constexpr qreal dotSize = 16;
constexpr QColor opaqueWhite(255, 255, 255);
constexpr QColor clearWhite(255, 255, 255, 0);
constexpr QColor dotColor(255, 67, 71);
constexpr Platform::AnimationOptions halfCycle{.duration = 1s};

} // namespace

// Neither disc nor dot clips: nothing reaches beyond their edges, and a clip costs each marker a draw call of its own.
BrevantoHotspotView::BrevantoHotspotView(const QRectF &frame)
    : View(frame)
    , m_redCircleView(new View)
{
    const qreal dotOrigin = (frame.width() - dotSize) / 2;
    m_redCircleView->setFrame(QRectF(dotOrigin, dotOrigin, dotSize, dotSize));
    m_redCircleView->drawBackgroundAsDisc();
    m_redCircleView->setBackgroundColor(dotColor);
    m_redCircleView->setCornerRadius(dotSize / 2);
    addSubview(m_redCircleView);
    drawBackgroundAsDisc();
    setBackgroundColor(opaqueWhite);
    setCornerRadius(frame.width() / 2);
}

void BrevantoHotspotView::startAnimating()
{
    m_shouldAnimate = true;
    doAnimation();
}

void BrevantoHotspotView::stopAnimating()
{
    removeAllAnimations();
    m_shouldAnimate = false;
    setBackgroundColor(opaqueWhite);
}

void BrevantoHotspotView::doAnimation()
{
    if (!m_shouldAnimate || m_isAnimating) {
        setBackgroundColor(opaqueWhite);
        return;
    }
    // A cycle that takes no time would follow itself without end.
    if (!areAnimationsEnabled())
        return;
    m_isAnimating = true;
    fadeOut();
}

void BrevantoHotspotView::fadeOut()
{
    animate(
        halfCycle, [this] { setBackgroundColor(clearWhite); },
        [marker = QPointer(this)](bool) {
            if (marker)
                marker->fadeIn();
        });
}

void BrevantoHotspotView::fadeIn()
{
    animate(
        halfCycle, [this] { setBackgroundColor(opaqueWhite); },
        [marker = QPointer(this)](bool) {
            if (marker)
                marker->cycleEnded();
        });
}

void BrevantoHotspotView::cycleEnded()
{
    m_isAnimating = false;
    if (m_shouldAnimate)
        doAnimation();
}
