// The result file's buffered writer.
#include "internal/execution.h"

#include <cerrno>
#include <new>

namespace kodbc {

bool ResultFile::create(const char *fileName) noexcept {
    close();
    error_ = 0;
    used_ = 0;
    block_.reset(new (std::nothrow) char[kBlockSize]);
    if (!block_) {
        errno = ENOMEM;
        return false;
    }
    file_ = OpenExclusive(fileName);
    if (!file_) {
        block_.reset();
        return false;
    }
    // The block is ours; the stream's own buffer would only copy twice.
    std::setvbuf(file_, nullptr, _IONBF, 0);
    return true;
}

void ResultFile::flush() noexcept {
    if (used_ && error_ == 0) {
        errno = 0;
        if (std::fwrite(block_.get(), 1, used_, file_) != used_) error_ = errno ? errno : EIO;
    }
    used_ = 0;
}

void ResultFile::write_slow(const char *data, std::size_t n) noexcept {
    while (n) {
        if (used_ == kBlockSize) flush();
        std::size_t part = kBlockSize - used_ < n ? kBlockSize - used_ : n;
        std::memcpy(block_.get() + used_, data, part);
        used_ += part;
        data += part;
        n -= part;
    }
}

bool ResultFile::close() noexcept {
    if (!file_) return error_ == 0;
    flush();
    errno = 0;
    if (std::fclose(file_) != 0 && error_ == 0) error_ = errno ? errno : EIO;
    file_ = nullptr;
    block_.reset();
    return error_ == 0;
}

} // namespace kodbc
