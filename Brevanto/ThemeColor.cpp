#include "Brevanto/ThemeColor.h"

#include <QRegularExpression>

#include <limits>

QColor ThemeColor::parsed(const QString &text)
{
    if (text.isEmpty())
        return {0, 114, 187};
    static const QRegularExpression pattern(QStringLiteral("^\\s*(?:#|0x)*([0-9a-f]+)"),
                                            QRegularExpression::CaseInsensitiveOption);
    quint32 value = 0;
    if (const QRegularExpressionMatch match = pattern.match(text.left(64)); match.hasMatch()) {
        bool fits = false;
        value = match.captured(1).toUInt(&fits, 16);
        if (!fits)
            value = std::numeric_limits<quint32>::max();
    }
    return QColor::fromRgb(value);
}
