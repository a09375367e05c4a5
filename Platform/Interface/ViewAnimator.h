#pragma once

#include "Platform/Interface/View.h"

#include <QPointer>

#include <map>
#include <memory>

namespace Platform
{

// Moves the values of views over time: the engine behind View::animate. It renders nothing while nothing moves.
class ViewAnimator final : public QObject
{
    Q_OBJECT

public:
    // Lives as long as the application object.
    static ViewAnimator &instance();

    static void setEnabled(bool enabled);
    static bool isEnabled();

    void animate(const AnimationOptions &options, const std::function<void()> &changes,
                 std::function<void(bool finished)> completion);

    void setValue(View *view, AnimatedProperty property, const AnimatedValue &value);
    // The value that was set last, reached or not.
    AnimatedValue value(const View *view, AnimatedProperty property) const;
    // The value for now.
    AnimatedValue shownValue(const View *view, AnimatedProperty property) const;

    void removeAll(View *view);
    // The view is being destroyed.
    static void forget(View *view);
    // A view may have become visible: what moves on it is to be shown again.
    static void wake();

private:
    struct Group {
        AnimationOptions options;
        std::chrono::milliseconds start;
        std::function<void(bool)> completion;
        int trackCount = 0;
        bool finished = true;
        bool completed = false;
    };
    struct Track {
        AnimatedValue from;
        AnimatedValue to;
        std::shared_ptr<Group> group;
    };
    struct Shown {
        QPointer<View> view;
        AnimatedProperty property;
        AnimatedValue value;
    };
    using Key = std::pair<View *, AnimatedProperty>;
    class Driver;

    ViewAnimator();
    ~ViewAnimator() override;

    const Track *track(const View *view, AnimatedProperty property) const;
    void end(const std::shared_ptr<Group> &group);
    void dropTracks(View *view, bool showTheirEnd);
    static void cutShort(const std::shared_ptr<Group> &group);
    static AnimatedValue valueNow(const Track &track);
    void showFrame();
    static void show(const std::vector<Shown> &values);
    void updateDriver();

    std::map<Key, Track> m_tracks;
    std::shared_ptr<Group> m_current;
    std::unique_ptr<Driver> m_driver;
};

} // namespace Platform
