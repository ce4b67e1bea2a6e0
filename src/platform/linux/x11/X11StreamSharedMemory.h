#pragma once

#include "base/common/Result.h"

#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>

namespace kestrum {

// The memory the X server writes a window's pictures into (MIT-SHM 1.2): an anonymous memory file mapped
// here and handed to the server by file descriptor, so no System V segment outlives a crash and no IPC
// namespace has to be shared with the server.
//
// Capture thread only. The server's side of the segment is released with the connection, or when a
// larger segment replaces it.
class X11StreamSharedMemory {
  public:
    X11StreamSharedMemory() = default;
    ~X11StreamSharedMemory();
    X11StreamSharedMemory(const X11StreamSharedMemory&) = delete;
    X11StreamSharedMemory& operator=(const X11StreamSharedMemory&) = delete;

    // Makes sure the segment holds at least `byteCount` bytes, attaching a new one to `connection` when
    // the present one is smaller. An Error when the memory cannot be made or the server refuses it.
    Status reserve(xcb_connection_t* connection, std::size_t byteCount);
    // Forgets the mapping; the server's side goes with the connection, which the caller is closing.
    void unmap();

    xcb_shm_seg_t segment() const { return segment_; }
    std::uint8_t* data() const { return data_; }

  private:
    xcb_shm_seg_t segment_ = 0;
    std::uint8_t* data_ = nullptr;
    std::size_t byteCount_ = 0;
};

}  // namespace kestrum
