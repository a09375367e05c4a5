#include "Platform/Interface/Label.h"

#include "Platform/Interface/SceneEngine.h"

#include <limits>

namespace Platform
{

Label::Label(QQuickItem *parent)
    : View(parent)
    , m_textItem(SceneEngine::makeItem(QStringLiteral("LabelText"), this))
{
}

Label::Label(const QRectF &frame)
    : Label()
{
    setFrame(frame);
}

void Label::setText(const QString &text)
{
    m_text = text;
    show("text", text);
}

void Label::setTextColor(const QColor &color)
{
    m_textColor = color;
    show("color", color);
}

void Label::setFont(const QFont &font)
{
    m_font = font;
    show("font", font);
}

void Label::setTextAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    show("horizontalAlignment", static_cast<int>(alignment));
}

void Label::setNumberOfLines(int lines)
{
    m_numberOfLines = lines;
    show("maximumLineCount", lines > 0 ? lines : std::numeric_limits<int>::max());
}

void Label::show(const char *property, const QVariant &value)
{
    m_textItem->setProperty(property, value);
    Q_EMIT changed();
}

} // namespace Platform
