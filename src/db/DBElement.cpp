#include "db/DBElement.h"

namespace Planaria {

DBElement::~DBElement() = default;

} // namespace Planaria
