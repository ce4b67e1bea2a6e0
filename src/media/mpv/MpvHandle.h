#pragma once

#include <memory>

struct mpv_handle;

namespace kestrum {

// One mpv engine (an mpv core with its threads), shared by the player that drives it and, while the
// player is shown, by the renderer that draws it. The engine is destroyed (mpv_terminate_destroy) when
// the last owner lets go, so a render context, which must be freed before its engine, never outlives it:
// the renderer frees its context first and only then drops its share.
//
// Threads: made on the main thread; the last share may be dropped on any thread.
class MpvHandle {
  public:
    // A new engine set up for the review window's playback (paused, no window, keep-open, tracks chosen
    // by the player), initialised; null when libmpv cannot make one. Sets LC_NUMERIC to "C" first, which
    // libmpv requires of the whole process.
    static std::shared_ptr<MpvHandle> create();

    ~MpvHandle();
    MpvHandle(const MpvHandle&) = delete;
    MpvHandle& operator=(const MpvHandle&) = delete;

    mpv_handle* get() const { return handle_; }

    // Drops `engine` on the main thread (its last share may destroy it, which waits for its threads): from
    // the render thread the share is queued to the main thread's event loop; on the main thread, or with
    // no application, it is dropped at once.
    static void releaseOnMainThread(std::shared_ptr<MpvHandle> engine);

  private:
    explicit MpvHandle(mpv_handle* handle) : handle_(handle) {}

    mpv_handle* handle_;
};

}  // namespace kestrum
