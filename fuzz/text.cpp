// Texts of the service on their way to a label.
#include "fuzz/Require.h"

#include "Brevanto/Utils/BrevantoUtils.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString cleaned = BrevantoUtils::stringByRemovingExtraWhiteSpaces(text);
    require(!cleaned.contains(u'\n') && !cleaned.contains(u'\t'), "line ends and tabs go");
    return 0;
}
