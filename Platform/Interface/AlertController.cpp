#include "Platform/Interface/AlertController.h"

#include "Platform/Interface/PopupTransition.h"
#include "Platform/Interface/SceneEngine.h"

#include <algorithm>

namespace Platform
{

AlertController::AlertController(QString title, QString message)
    : m_title(std::move(title))
    , m_message(std::move(message))
{
    setScene(SceneEngine::sceneUrl(QStringLiteral("AlertScene")));
}

AlertController::~AlertController() = default;

void AlertController::addAction(AlertAction action)
{
    m_actions.push_back(std::move(action));
}

void AlertController::choose(int index)
{
    if (m_isChosen || index < 0 || index >= static_cast<int>(m_actions.size()))
        return;
    m_isChosen = true;
    dismiss(true, m_actions[static_cast<std::size_t>(index)].handler);
}

bool AlertController::goBack()
{
    const auto cancel = std::find_if(m_actions.begin(), m_actions.end(), [](const AlertAction &action) {
        return action.style == AlertActionStyle::Cancel;
    });
    if (cancel != m_actions.end())
        choose(static_cast<int>(cancel - m_actions.begin()));
    else if (m_actions.size() == 1)
        choose(0);
    return true;
}

std::unique_ptr<Transition> AlertController::makeTransition()
{
    return std::make_unique<PopupTransition>();
}

QVariantList AlertController::buttons() const
{
    QVariantList buttons;
    for (const AlertAction &action : m_actions)
        buttons.append(QVariantMap{{QStringLiteral("text"), action.title},
                                   {QStringLiteral("isCancel"), action.style == AlertActionStyle::Cancel},
                                   {QStringLiteral("isDestructive"), action.style == AlertActionStyle::Destructive}});
    return buttons;
}

} // namespace Platform
