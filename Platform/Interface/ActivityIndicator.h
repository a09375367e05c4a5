#pragma once

#include "Platform/Interface/View.h"

namespace Platform
{

enum class ActivityIndicatorStyle { WhiteLarge = 0, White = 1, Gray = 2 };

// A turning wheel: something is under way and it is not known for how long. For the main thread only.
class ActivityIndicator : public Platform::View
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool animating READ isAnimating WRITE setAnimating NOTIFY animatingChanged)

public:
    explicit ActivityIndicator(QQuickItem *parent = nullptr);
    explicit ActivityIndicator(ActivityIndicatorStyle style);

    void startAnimating() { setAnimating(true); }
    void stopAnimating() { setAnimating(false); }
    bool isAnimating() const { return m_isAnimating; }
    void setAnimating(bool animating);

    // True unless set otherwise.
    bool hidesWhenStopped() const { return m_hidesWhenStopped; }
    void setHidesWhenStopped(bool hides);

Q_SIGNALS:
    void animatingChanged();

private:
    void showState();

    bool m_isAnimating = false;
    bool m_hidesWhenStopped = true;
    QQuickItem *m_wheel;
};

} // namespace Platform
