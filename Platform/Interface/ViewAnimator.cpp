#include "Platform/Interface/ViewAnimator.h"

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/DispatchQueue.h"

#include <QAbstractAnimation>
#include <QCoreApplication>
#include <QEasingCurve>
#include <QScopeGuard>

#include <array>

namespace Platform
{

namespace
{

bool animationsEnabled = true;
ViewAnimator *existingAnimator = nullptr; // goes with the application object

QEasingCurve bezier(const QPointF &first, const QPointF &second)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, QPointF(1, 1));
    return curve;
}

qreal eased(AnimationCurve curve, qreal progress)
{
    static const std::array<QEasingCurve, 4> curves = {bezier({0.42, 0}, {0.58, 1}), bezier({0.42, 0}, {1, 1}),
                                                       bezier({0, 0}, {0.58, 1}), QEasingCurve()};
    return curves[static_cast<std::size_t>(curve)].valueForProgress(progress);
}

qreal between(qreal from, qreal to, qreal progress)
{
    return from + (to - from) * progress;
}

// In premultiplied components, so that a colour that fades to clear keeps its hue.
QColor between(const QColor &from, const QColor &to, qreal progress)
{
    const qreal alpha = between(from.alphaF(), to.alphaF(), progress);
    if (alpha <= 0)
        return to.alphaF() > 0 ? QColor::fromRgbF(to.redF(), to.greenF(), to.blueF(), 0)
                               : QColor::fromRgbF(from.redF(), from.greenF(), from.blueF(), 0);
    const auto component = [&](qreal first, qreal second) {
        return static_cast<float>(
            qBound(0.0, between(first * from.alphaF(), second * to.alphaF(), progress) / alpha, 1.0));
    };
    return QColor::fromRgbF(component(from.redF(), to.redF()), component(from.greenF(), to.greenF()),
                            component(from.blueF(), to.blueF()), static_cast<float>(alpha));
}

QRectF between(const QRectF &from, const QRectF &to, qreal progress)
{
    return {between(from.x(), to.x(), progress), between(from.y(), to.y(), progress),
            between(from.width(), to.width(), progress), between(from.height(), to.height(), progress)};
}

} // namespace

class ViewAnimator::Driver final : public QAbstractAnimation
{
public:
    explicit Driver(ViewAnimator *animator)
        : m_animator(animator)
    {
    }
    int duration() const override { return -1; }

protected:
    void updateCurrentTime(int) override { m_animator->showFrame(); }

private:
    ViewAnimator *m_animator;
};

ViewAnimator::ViewAnimator()
    : QObject(QCoreApplication::instance())
    , m_driver(std::make_unique<Driver>(this))
{
}

ViewAnimator::~ViewAnimator()
{
    existingAnimator = nullptr;
}

ViewAnimator &ViewAnimator::instance()
{
    if (!existingAnimator)
        existingAnimator = new ViewAnimator;
    return *existingAnimator;
}

void ViewAnimator::setEnabled(bool enabled)
{
    animationsEnabled = enabled;
}

bool ViewAnimator::isEnabled()
{
    return animationsEnabled;
}

void ViewAnimator::animate(const AnimationOptions &options, const std::function<void()> &changes,
                           std::function<void(bool)> completion)
{
    const auto length = options.delay + options.duration;
    const bool immediate = !animationsEnabled || length.count() <= 0;
    auto group = std::make_shared<Group>();
    group->options = options;
    group->start = Clock::current().now() + options.delay;
    group->completion = std::move(completion);
    {
        const std::shared_ptr<Group> outer = std::exchange(m_current, immediate ? nullptr : group);
        const auto restore = qScopeGuard([this, &outer] { m_current = outer; });
        changes();
    }
    if (group->trackCount == 0) {
        if (group->completion && !group->completed)
            DispatchQueue::mainAsync([completion = std::move(group->completion)] { completion(true); });
        return;
    }
    Clock::current().after(length, this, [this, group] { end(group); });
    updateDriver();
}

void ViewAnimator::setValue(View *view, AnimatedProperty property, const AnimatedValue &value)
{
    const auto running = m_tracks.find({view, property});
    const bool isRunning = running != m_tracks.end();
    if (!m_current) {
        // The animation goes on, from the value to the value.
        if (isRunning)
            running->second.from = running->second.to = value;
        view->showValue(property, value);
        return;
    }
    if (value == this->value(view, property))
        return;
    const AnimatedValue from = shownValue(view, property);
    if (isRunning) {
        const std::shared_ptr<Group> overtaken = running->second.group;
        m_tracks.erase(running);
        if (overtaken != m_current)
            cutShort(overtaken);
        else
            --overtaken->trackCount;
    }
    m_tracks.insert({{view, property}, {from, value, m_current}});
    ++m_current->trackCount;
}

const ViewAnimator::Track *ViewAnimator::track(const View *view, AnimatedProperty property) const
{
    const auto found = m_tracks.find({const_cast<View *>(view), property});
    return found == m_tracks.end() ? nullptr : &found->second;
}

AnimatedValue ViewAnimator::value(const View *view, AnimatedProperty property) const
{
    const Track *running = track(view, property);
    return running ? running->to : view->shownValue(property);
}

AnimatedValue ViewAnimator::shownValue(const View *view, AnimatedProperty property) const
{
    const Track *running = track(view, property);
    return running ? valueNow(*running) : view->shownValue(property);
}

void ViewAnimator::end(const std::shared_ptr<Group> &group)
{
    if (group->completed)
        return;
    std::vector<Shown> ends;
    for (auto it = m_tracks.begin(); it != m_tracks.end();) {
        if (it->second.group != group) {
            ++it;
            continue;
        }
        ends.push_back({it->first.first, it->first.second, it->second.to});
        it = m_tracks.erase(it);
    }
    group->completed = true;
    group->trackCount = 0;
    show(ends);
    updateDriver();
    if (group->completion)
        group->completion(group->finished);
}

void ViewAnimator::removeAll(View *view)
{
    dropTracks(view, true);
}

void ViewAnimator::forget(View *view)
{
    if (existingAnimator)
        existingAnimator->dropTracks(view, false);
}

void ViewAnimator::dropTracks(View *view, bool showTheirEnd)
{
    std::vector<Shown> ends;
    std::vector<std::shared_ptr<Group>> groups;
    for (auto it = m_tracks.lower_bound({view, AnimatedProperty::Frame});
         it != m_tracks.end() && it->first.first == view;) {
        if (showTheirEnd)
            ends.push_back({view, it->first.second, it->second.to});
        groups.push_back(it->second.group);
        it = m_tracks.erase(it);
    }
    show(ends);
    for (const std::shared_ptr<Group> &group : groups)
        cutShort(group);
    updateDriver();
}

// One track of the group is gone before its end.
void ViewAnimator::cutShort(const std::shared_ptr<Group> &group)
{
    group->finished = false;
    if (--group->trackCount > 0 || group->completed)
        return;
    group->completed = true;
    if (group->completion)
        DispatchQueue::mainAsync([completion = std::move(group->completion)] { completion(false); });
}

AnimatedValue ViewAnimator::valueNow(const Track &track)
{
    const Group &group = *track.group;
    const auto elapsed = Clock::current().now() - group.start;
    if (elapsed >= group.options.duration)
        return track.to;
    if (elapsed.count() <= 0)
        return track.from;
    const qreal progress = eased(
        group.options.curve, static_cast<qreal>(elapsed.count()) / static_cast<qreal>(group.options.duration.count()));
    return std::visit(
        [&](const auto &from) -> AnimatedValue {
            return between(from, std::get<std::decay_t<decltype(from)>>(track.to), progress);
        },
        track.from);
}

void ViewAnimator::showFrame()
{
    std::vector<Shown> frame;
    for (const auto &[key, track] : m_tracks) {
        if (key.first->isVisible() && key.first->window())
            frame.push_back({key.first, key.second, valueNow(track)});
    }
    if (frame.empty())
        m_driver->stop();
    show(frame);
}

// What changes with a view may destroy others.
void ViewAnimator::show(const std::vector<Shown> &values)
{
    for (const Shown &shown : values) {
        if (shown.view)
            shown.view->showValue(shown.property, shown.value);
    }
}

void ViewAnimator::wake()
{
    if (existingAnimator)
        existingAnimator->updateDriver();
}

void ViewAnimator::updateDriver()
{
    if (m_tracks.empty())
        m_driver->stop();
    else if (m_driver->state() != QAbstractAnimation::Running)
        m_driver->start();
}

} // namespace Platform
