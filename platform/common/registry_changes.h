// The registry writes this process has made, counted. A reader that keeps a
// value for a while (the statement dump switch) reads again at once after
// one of them, and so never serves this process a value it has replaced.
#pragma once

namespace korvel {

void NoteRegistryChange() noexcept;
unsigned long RegistryChanges() noexcept;

} // namespace korvel
