#include "import/ImportProgress.h"

namespace Planaria {

ImportProgress::~ImportProgress() = default;

} // namespace Planaria
