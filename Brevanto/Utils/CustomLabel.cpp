#include "Brevanto/Utils/CustomLabel.h"

#include "Brevanto/BrevantoBundle.h"
#include "Platform/Interface/SceneEngine.h"

CustomLabel::CustomLabel(QQuickItem *parent)
    : Label(parent)
{
    const QUrl url(QStringLiteral("qrc%1/BrevantoStoryBoard/TextShadow.qml").arg(brevantoBundle().resourceRoot()));
    m_shadow = Platform::SceneEngine::loadScene(url, {{QStringLiteral("source"), QVariant::fromValue(textItem())}});
    m_shadow->setParentItem(this);
    m_shadow->stackBefore(textItem());
}

CustomLabel::CustomLabel(const QRectF &frame)
    : CustomLabel()
{
    setFrame(frame);
}

CustomLabel::~CustomLabel() = default;
