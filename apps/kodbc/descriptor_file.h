// Selection and assignment descriptors as the commands read them from files.
#pragma once

#include <string>

namespace kodbc_cli {

// A descriptor file holds the descriptor text as it stands: lines end with
// a line feed (code 10), groups are separated by a vertical tab (code 11),
// fields by tabs. A final line feed is the file's, not the descriptor's.
// False (and an error on stderr) when the file cannot be read.
bool ReadDescriptor(const std::string &path, std::string &descriptor);

} // namespace kodbc_cli
