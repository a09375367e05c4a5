#pragma once

#include "Platform/Interface/ViewController.h"

namespace Platform
{

// How a presented controller's view comes into the window and leaves it.
class Transition
{
public:
    virtual ~Transition() = default;

    // Whether the presenter's screen is out of sight behind the presented one.
    virtual bool coversPresenter() const = 0;
    // Puts the view into the window at its final size. A presentation that ends before that is shown and hidden
    // without.
    virtual void place(ViewController *controller, Window *window) = 0;
    // Shows or hides what was placed and calls `done` once: at once when not animated.
    virtual void show(bool animated, std::function<void()> done) = 0;
    virtual void hide(bool animated, std::function<void()> done) = 0;
    // Puts the end of show() in place now and calls its `done`.
    virtual void settle() = 0;
    // Takes the view out of the window.
    virtual void remove() = 0;
    // Covered or uncovered by a presentation above.
    virtual void setCovered(bool covered) = 0;
    virtual void takeFocus() = 0;
    // The item that holds all of it; null for what shows itself above all items.
    virtual QQuickItem *container() const = 0;
};

// One controller over another: from the call that presents it until it is deleted.
class Presentation final : public QObject
{
    Q_OBJECT

public:
    Presentation(ViewController *presenter, std::unique_ptr<ViewController> presented, Window *window);
    ~Presentation() override;

    ViewController *presenter() const { return m_presenter; }
    ViewController *presented() const { return m_presented.get(); }
    bool isDismissing() const { return m_state == State::Dismissing; }
    bool isPresented() const { return m_state == State::Presented; }
    const Transition *transition() const { return m_transition.get(); }
    void takeFocus() { m_transition->takeFocus(); }
    // A screen in it appears that wants no status bar.
    void hideStatusBar() const;

    void begin(bool animated, std::function<void()> completion);
    // Takes away what `presenter` presents, with all above it.
    static void end(ViewController *presenter, bool animated, std::function<void()> completion);

private:
    enum class State { Presenting, Presented, Dismissing };

    void show(bool animated);
    void didPresent();
    // Puts the end of the way in in place now, however far it has come.
    void settle();
    std::vector<Presentation *> chain();
    void dismiss(bool animated);
    void hide(const std::vector<Presentation *> &levels, bool animated);
    void didDismiss();
    void setPresenterCovered(bool covered);

    QPointer<ViewController> m_presenter;
    std::unique_ptr<ViewController> m_presented;
    QPointer<Window> m_window;
    std::unique_ptr<Transition> m_transition;
    State m_state = State::Presenting;
    bool m_isShown = false; // or on its way in
    std::function<void()> m_completion;
    int m_hiding = 0;
};

} // namespace Platform
