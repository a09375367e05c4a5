#pragma once

#include "Platform/Interface/View.h"

#include <QFont>

namespace Platform
{

// A view that shows plain text; markup in it is shown as it stands. "\n" breaks the line. For the main thread only.
class Label : public Platform::View
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed)
    Q_PROPERTY(QColor textColor READ textColor WRITE setTextColor NOTIFY changed)

public:
    explicit Label(QQuickItem *parent = nullptr);
    explicit Label(const QRectF &frame);

    QString text() const { return m_text; }
    void setText(const QString &text);
    QColor textColor() const { return m_textColor; }
    void setTextColor(const QColor &color);
    QFont font() const { return m_font; }
    void setFont(const QFont &font);
    Qt::Alignment textAlignment() const { return m_alignment; }
    void setTextAlignment(Qt::Alignment alignment);
    // 0 means as many as fit; text that does not fit ends in an ellipsis.
    int numberOfLines() const { return m_numberOfLines; }
    void setNumberOfLines(int lines);

Q_SIGNALS:
    void changed();

protected:
    // The stock item that shows the text.
    QQuickItem *textItem() const { return m_textItem; }

private:
    void show(const char *property, const QVariant &value);

    QString m_text;
    QColor m_textColor = Qt::black;
    QFont m_font;
    Qt::Alignment m_alignment = Qt::AlignLeft;
    int m_numberOfLines = 1;
    QQuickItem *m_textItem;
};

} // namespace Platform
