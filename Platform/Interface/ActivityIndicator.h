#pragma once

#include "Platform/Interface/View.h"

namespace Platform
{

enum class ActivityIndicatorStyle { WhiteLarge = 0, White = 1, Gray = 2 };

// A turning wheel: something is under way and it is not known for how long. For the main thread only.
class ActivityIndicator : public View
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool animating READ isAnimating NOTIFY animatingChanged)

public:
    explicit ActivityIndicator(QQuickItem *parent = nullptr);
    explicit ActivityIndicator(ActivityIndicatorStyle style);

    Q_INVOKABLE void startAnimating();
    Q_INVOKABLE void stopAnimating();
    bool isAnimating() const { return m_isAnimating; }

    // True unless set otherwise.
    bool hidesWhenStopped() const { return m_hidesWhenStopped; }
    void setHidesWhenStopped(bool hides);

Q_SIGNALS:
    void animatingChanged();

private:
    void setAnimating(bool animating);
    void showState();

    bool m_isAnimating = false;
    bool m_hidesWhenStopped = true;
    QQuickItem *m_wheel;
};

} // namespace Platform
