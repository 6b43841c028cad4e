// Opening the result file on Windows: denied to every other reader and
// writer while the transfer runs.
#include "internal/execution.h"

#include <share.h>

namespace kodbc {

std::FILE *OpenExclusive(const char *fileName) noexcept { return ::_fsopen(fileName, "wb", _SH_DENYRW); }

} // namespace kodbc
