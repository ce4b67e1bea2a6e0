#pragma once

#include <QMetaType>

#include <cstdint>

namespace kestrum {

// The two collections of the sidebar, in this order. Highlights belong to neither.
enum class RecordingLibraryCollection : std::uint8_t { fullMatches, favorites };

}  // namespace kestrum

Q_DECLARE_METATYPE(kestrum::RecordingLibraryCollection)
