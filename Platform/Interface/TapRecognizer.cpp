#include "Platform/Interface/TapRecognizer.h"

#include "Platform/Interface/SceneEngine.h"

namespace Platform
{

TapRecognizer::TapRecognizer(View *view, const QString &name, Action action, qreal minimumTarget)
    : QObject(view)
    , m_view(view)
    , m_action(std::move(action))
{
    const QQuickItem *target =
        SceneEngine::makeItem(QStringLiteral("TapTarget"), view,
                              {{QStringLiteral("name"), name}, {QStringLiteral("minimumSize"), minimumTarget}});
    connect(target, SIGNAL(activated()), this, SLOT(tapped()));
}

void TapRecognizer::tapped()
{
    m_action(m_view);
}

} // namespace Platform
