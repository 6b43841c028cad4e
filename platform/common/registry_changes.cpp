#include "registry_changes.h"

#include <atomic>

namespace korvel {
namespace {
std::atomic<unsigned long> changes{0};
}

void NoteRegistryChange() noexcept { changes.fetch_add(1, std::memory_order_relaxed); }

unsigned long RegistryChanges() noexcept { return changes.load(std::memory_order_relaxed); }

} // namespace korvel
