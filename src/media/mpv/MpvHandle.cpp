#include "media/mpv/MpvHandle.h"

#include <mpv/client.h>

#include <QCoreApplication>
#include <QThread>

#include <clocale>
#include <utility>

namespace kestrum {

namespace {

struct EngineOption {
    const char* name;
    const char* value;
};

// The engine draws only through the render API of the item that shows it (vo=libmpv), never opens a
// window, reads no user configuration and loads no scripts. Tracks are chosen by the player, not by the
// engine: with automatic selection a movie whose picture is not shown yet and that has no sound would
// end at once, where a prepared player must stay loaded. keep-open keeps a movie loaded at its end (and
// at `end`), paused there. Frames are handed to the renderer as soon as they are due, since Qt, not mpv,
// paces the screen. Decoding stays in software: hardware decoders are not there everywhere, and copying
// their pictures back costs what they save at 720p. Sound goes to the desktop's sound server or straight
// to ALSA, else nowhere: the engine's other defaults include SDL's output, which hangs when two engines
// (the shown player and a prepared neighbour) open it at the same moment with no server to reach.
constexpr EngineOption kOptions[] = {
    {"vo", "libmpv"},
    {"config", "no"},
    {"load-scripts", "no"},
    {"load-stats-overlay", "no"},
    {"load-auto-profiles", "no"},
    {"ytdl", "no"},
    {"osc", "no"},
    {"osd-level", "0"},
    {"terminal", "no"},
    {"input-default-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"sub-auto", "no"},
    {"audio-file-auto", "no"},
    {"cover-art-auto", "no"},
    {"resume-playback", "no"},
    {"save-position-on-quit", "no"},
    {"idle", "yes"},
    {"pause", "yes"},
    {"keep-open", "yes"},
    {"keep-open-pause", "yes"},
    {"track-auto-selection", "no"},
    {"ao", "pipewire,pulse,alsa"},
    {"audio-fallback-to-null", "yes"},
    {"audio-pitch-correction", "yes"},
    {"audio-client-name", "Kestrum"},
    {"volume-max", "100"},
    {"video-timing-offset", "0"},
    {"keepaspect", "yes"},
    {"background", "#000000"},
    {"hwdec", "no"},
};

}  // namespace

std::shared_ptr<MpvHandle> MpvHandle::create() {
    std::setlocale(LC_NUMERIC, "C");
    mpv_handle* handle = mpv_create();
    if (handle == nullptr) return nullptr;
    for (const EngineOption& option : kOptions) {
        if (mpv_set_option_string(handle, option.name, option.value) < 0) {
            mpv_terminate_destroy(handle);
            return nullptr;
        }
    }
    if (mpv_initialize(handle) < 0) {
        mpv_terminate_destroy(handle);
        return nullptr;
    }
    return std::shared_ptr<MpvHandle>(new MpvHandle(handle));
}

void MpvHandle::releaseOnMainThread(std::shared_ptr<MpvHandle> engine) {
    QCoreApplication* application = QCoreApplication::instance();
    if (application == nullptr || QThread::currentThread() == application->thread()) return;
    QMetaObject::invokeMethod(
        application, [engine = std::move(engine)] {}, Qt::QueuedConnection);
}

MpvHandle::~MpvHandle() {
    mpv_terminate_destroy(handle_);
}

}  // namespace kestrum
