// The last decode's outcome on this thread, for those who want to tell people why.
#pragma once

#include "media/codecs/fault.h"
#include "media/types.h"

namespace media {

void noteDecode(codecs::Fault fault) noexcept;

// The error number that an importer answers with.
ComponentResult errorFor(codecs::Fault fault) noexcept;

}  // namespace media
