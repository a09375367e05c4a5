#pragma once

#include <QColor>
#include <QString>

// The colour that a match's theme text names: hexadecimal RRGGBB, behind any of "0x" and "#"; the default blue when
// there is no text. Text is read as a hexadecimal number of 32 bits: without a digit it is black, too large it is
// white.
namespace ThemeColor
{

QColor parsed(const QString &text);

} // namespace ThemeColor
