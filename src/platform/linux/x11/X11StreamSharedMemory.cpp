#include "platform/linux/x11/X11StreamSharedMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

namespace kestrum {

namespace {

Error memoryError(const char* what) {
    return Error::withDescription(
        QStringLiteral("The shared picture memory could not be made: %1.").arg(QString::fromLatin1(what)));
}

}  // namespace

X11StreamSharedMemory::~X11StreamSharedMemory() {
    unmap();
}

void X11StreamSharedMemory::unmap() {
    if (data_) munmap(data_, byteCount_);
    data_ = nullptr;
    byteCount_ = 0;
    segment_ = 0;
}

Status X11StreamSharedMemory::reserve(xcb_connection_t* connection, std::size_t byteCount) {
    if (data_ && byteCount <= byteCount_) return Status::success();
    if (data_) xcb_shm_detach(connection, segment_);
    unmap();
    const int fd = memfd_create("kestrum-window-stream", MFD_CLOEXEC);
    if (fd < 0) return memoryError("memfd_create");
    if (ftruncate(fd, static_cast<off_t>(byteCount)) != 0) {
        close(fd);
        return memoryError("ftruncate");
    }
    void* mapping = mmap(nullptr, byteCount, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (mapping == MAP_FAILED) {
        close(fd);
        return memoryError("mmap");
    }
    const xcb_shm_seg_t segment = xcb_generate_id(connection);
    // The request takes the descriptor: XCB closes it once it is sent.
    xcb_generic_error_t* refused =
        xcb_request_check(connection, xcb_shm_attach_fd_checked(connection, segment, fd, 0));
    if (refused) {
        std::free(refused);
        munmap(mapping, byteCount);
        return memoryError("the X server refused the segment");
    }
    data_ = static_cast<std::uint8_t*>(mapping);
    byteCount_ = byteCount;
    segment_ = segment;
    return Status::success();
}

}  // namespace kestrum
