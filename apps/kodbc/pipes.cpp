#include "pipes.h"
#include "terminal.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#ifndef _WIN32
#include <unistd.h>
#else
#include <fcntl.h>
#include <io.h>
#endif

namespace kodbc_cli {
namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

bool Copy(std::FILE *from, std::FILE *to) {
    char chunk[65536];
    std::size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, from)) > 0)
        if (std::fwrite(chunk, 1, n, to) != n) return false;
    return !std::ferror(from);
}

} // namespace

StreamFile::StreamFile(const std::string &fileName) : stream_(fileName == "-") {
    if (!stream_) {
        name_ = fileName;
        return;
    }
    std::error_code error;
    std::string path = (std::filesystem::temp_directory_path(error) / "kodbc-stream-XXXXXX").string();
#ifdef _WIN32
    if (_mktemp_s(path.data(), path.size() + 1) == 0) name_ = path;
#else
    const int fd = mkstemp(path.data());
    if (fd >= 0) {
        close(fd);
        name_ = path;
    }
#endif
    if (name_.empty()) Error("keine temporäre Datei");
}

StreamFile::~StreamFile() {
    if (stream_ && !name_.empty()) std::remove(name_.c_str());
}

bool StreamFile::ReadStandardInput() {
    File out(std::fopen(name_.c_str(), "wb"), std::fclose);
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    const bool ok = out && Copy(stdin, out.get()) && std::fclose(out.release()) == 0;
    if (!ok) Error("die Standardeingabe kann nicht gelesen werden");
    return ok;
}

bool StreamFile::WriteStandardOutput() {
    File in(std::fopen(name_.c_str(), "rb"), std::fclose);
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    return in && Copy(in.get(), stdout) && std::fflush(stdout) == 0;
}

} // namespace kodbc_cli
