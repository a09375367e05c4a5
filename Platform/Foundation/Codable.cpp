#include "Platform/Foundation/Codable.h"

namespace Platform
{

Codable::~Codable() = default;

} // namespace Platform
