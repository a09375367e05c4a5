#pragma once

#include "Platform/Interface/View.h"

// The round marker of a hotspot: a white disc that fades out and in while the marker is told to animate, with a red dot
// in its middle that stays. Does nothing until startAnimating(). For the main thread only.
class BrevantoHotspotView : public Platform::View
{
    Q_OBJECT

public:
    explicit BrevantoHotspotView(const QRectF &frame);

    Platform::View *redCircleView() const { return m_redCircleView; }
    // Whether the marker is meant to pulse.
    bool shouldAnimate() const { return m_shouldAnimate; }
    // Whether a cycle of fading out and in is under way; for a moment still true after stopAnimating().
    bool isAnimating() const { return m_isAnimating; }

    void startAnimating();
    // Shows the disc opaque at once.
    void stopAnimating();
    // Begins a cycle if the marker is meant to pulse and none is under way, else shows the disc opaque at once.
    void doAnimation();

private:
    void fadeOut();
    void fadeIn();
    void cycleEnded();

    Platform::View *m_redCircleView;
    bool m_shouldAnimate = false;
    bool m_isAnimating = false;
};
