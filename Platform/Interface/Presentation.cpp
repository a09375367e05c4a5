#include "Platform/Interface/Presentation.h"

#include "Platform/Interface/Window.h"

#include <algorithm>
#include <array>

namespace Platform
{

Presentation::Presentation(ViewController *presenter, std::unique_ptr<ViewController> presented, Window *window)
    : m_presenter(presenter)
    , m_presented(std::move(presented))
    , m_window(window)
    , m_transition(m_presented->makeTransition())
{
    m_presented->m_presentedIn = this;
}

Presentation::~Presentation()
{
    m_transition->remove();
}

void Presentation::begin(bool animated, std::function<void()> completion)
{
    m_completion = std::move(completion);
    // Each step calls the screens, which may ask for the end of this presentation already.
    const QPointer<Presentation> self(this);
    const std::array<std::function<void()>, 6> steps = {
        [this] { m_window->presentationBegan(); },
        [this] { m_presented->view(); },
        [this] { m_transition->place(m_presented.get(), m_window); },
        [this, animated] {
            if (m_transition->coversPresenter())
                m_presenter->beginAppearance(false, animated);
        },
        [this, animated] { m_presented->beginAppearance(true, animated); },
        [this] {
            m_presented->view()->layoutIfNeeded();
            m_transition->takeFocus();
        },
    };
    for (const auto &step : steps) {
        step();
        if (!self || m_state != State::Presenting)
            return;
    }
    show(animated);
}

void Presentation::show(bool animated)
{
    m_isShown = true;
    m_transition->show(animated, [self = QPointer(this)] {
        if (self)
            self->didPresent();
    });
}

void Presentation::didPresent()
{
    const QPointer<Presentation> self(this);
    const std::function<void()> completion = std::exchange(m_completion, nullptr);
    m_state = State::Presented;
    m_presented->endAppearance();
    // Unless the screen goes away again from its viewDidAppear.
    if (self && m_state == State::Presented && m_transition->coversPresenter() && m_presenter) {
        setPresenterCovered(true);
        m_presenter->endAppearance();
    }
    if (self && completion)
        completion();
}

void Presentation::settle()
{
    const QPointer<Presentation> self(this);
    if (!m_isShown)
        show(false);
    if (self && m_state == State::Presenting)
        m_transition->settle();
}

void Presentation::hideStatusBar() const
{
    if (m_transition->coversPresenter())
        Application::setStatusBarHidden(true);
}

void Presentation::setPresenterCovered(bool covered)
{
    if (m_presenter && m_presenter->m_presentedIn)
        m_presenter->m_presentedIn->m_transition->setCovered(covered);
}

// This presentation and those above it, lowest first.
std::vector<Presentation *> Presentation::chain()
{
    std::vector<Presentation *> levels;
    for (Presentation *level = this; level; level = level->m_presented->m_presentation.get())
        levels.push_back(level);
    return levels;
}

void Presentation::end(ViewController *presenter, bool animated, std::function<void()> completion)
{
    const QPointer<ViewController> guard(presenter);
    const QPointer<Presentation> presentation(presenter->m_presentation.get());
    for (;;) {
        // What ends in here calls the screens, and they may change the chain.
        const std::vector<Presentation *> levels = presentation->chain();
        const auto unsettled = std::find_if(levels.begin(), levels.end(), [](const Presentation *level) {
            return level->m_state == State::Presenting;
        });
        if (unsettled == levels.end())
            break;
        (*unsettled)->settle();
        if (!guard || !presentation || presenter->m_presentation.get() != presentation)
            return;
    }
    presentation->m_completion = std::move(completion);
    ++presenter->m_leavingCount;
    presentation->m_window->keepUntilGone(std::move(presenter->m_presentation));
    presentation->dismiss(animated);
}

void Presentation::dismiss(bool animated)
{
    const QPointer<Presentation> self(this);
    const std::vector<Presentation *> levels = chain();
    for (Presentation *level : levels)
        level->m_state = State::Dismissing;
    std::for_each(levels.rbegin(), levels.rend(),
                  [animated](Presentation *level) { level->m_presented->beginAppearance(false, animated); });
    if (m_transition->coversPresenter() && m_presenter) {
        setPresenterCovered(false);
        m_presenter->beginAppearance(true, animated);
        if (m_presenter)
            m_presenter->view()->layoutIfNeeded();
    }
    if (self)
        hide(levels, animated);
}

// Of several full screens only the uppermost is in sight; the others go with it unseen.
void Presentation::hide(const std::vector<Presentation *> &levels, bool animated)
{
    const QPointer<Presentation> self(this);
    std::size_t firstShown = 0;
    for (std::size_t index = 0; index < levels.size(); ++index) {
        if (levels[index]->m_transition->coversPresenter())
            firstShown = index;
    }
    m_hiding = static_cast<int>(levels.size());
    for (std::size_t index = 0; index < levels.size() && self; ++index) {
        levels[index]->m_transition->hide(animated && index >= firstShown, [self] {
            if (self && --self->m_hiding == 0)
                self->didDismiss();
        });
    }
}

void Presentation::didDismiss()
{
    const QPointer<Presentation> self(this);
    const std::vector<Presentation *> levels = chain();
    // From its viewDidAppear on the presenter may go as well.
    if (m_presenter)
        --m_presenter->m_leavingCount;
    if (m_transition->coversPresenter() && m_presenter)
        m_presenter->endAppearance();
    for (auto level = levels.rbegin(); level != levels.rend() && self; ++level)
        (*level)->m_presented->endAppearance();
    if (!self)
        return;
    for (Presentation *level : levels)
        level->m_transition->remove();
    std::unique_ptr<Presentation> gone = m_window->takeGone(this);
    m_window->presentationEnded();
    if (const std::function<void()> completion = std::exchange(m_completion, nullptr))
        completion();
    // One of the screen's own controls may have asked for this and be running still.
    if (self) {
        m_presented.release()->deleteLater();
        gone.release()->deleteLater();
    }
}

} // namespace Platform
