// "-" as a file name: standard output for what a command writes, standard
// input for what it reads. The library writes and reads files only, so the
// data goes through a temporary file of its own.
#pragma once

#include <string>

namespace kodbc_cli {

// A temporary file that removes itself; "-" stands for standard input or
// output. name() is what the library is given.
class StreamFile {
public:
    explicit StreamFile(const std::string &fileName);
    ~StreamFile();
    StreamFile(const StreamFile &) = delete;
    StreamFile &operator=(const StreamFile &) = delete;
    bool isStream() const { return stream_; }
    // Empty when no temporary file could be made (said).
    const std::string &name() const { return name_; }
    // Standard input into the temporary file; false after a failure (said).
    bool ReadStandardInput();
    // The temporary file onto standard output; false after a failure.
    bool WriteStandardOutput();

private:
    bool stream_;
    std::string name_;
};

} // namespace kodbc_cli
