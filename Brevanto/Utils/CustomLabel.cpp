#include "Brevanto/Utils/CustomLabel.h"

#include "Brevanto/BrevantoBundle.h"
#include "Platform/Interface/SceneEngine.h"

#include <QQmlEngine>

CustomLabel::CustomLabel(QQuickItem *parent)
    : Label(parent)
{
    const QUrl url(QStringLiteral("qrc%1/BrevantoStoryBoard/TextShadow.qml").arg(brevantoBundle().resourceRoot()));
    QQuickItem *shadow =
        Platform::SceneEngine::loadScene(url, {{QStringLiteral("source"), QVariant::fromValue(textItem())}}).release();
    shadow->setParent(this);
    shadow->setParentItem(this);
    shadow->stackBefore(textItem());
}

CustomLabel::CustomLabel(const QRectF &frame)
    : CustomLabel()
{
    setFrame(frame);
}
