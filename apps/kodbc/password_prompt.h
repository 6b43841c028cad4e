// The password prompt of the connections: on the terminal, without echo.
#pragma once

#include <string>

namespace kodbc_cli {

// Writes "Kennwort für DSN: " to the terminal (stderr when there is none
// to open; never stdout, which may carry a command's data) and reads one
// line from stdin with the echo off. The echo comes back however the read
// ends, Ctrl+C and termination included. False at the end of input, and
// always on Windows, which has no such prompt.
bool AskPassword(const std::string &dsn, std::string &password);

} // namespace kodbc_cli
