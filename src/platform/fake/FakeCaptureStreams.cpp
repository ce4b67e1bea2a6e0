#include "platform/fake/FakeAudioStream.h"
#include "platform/fake/FakeWindowStream.h"

#include <algorithm>
#include <cstring>

namespace kestrum {

namespace {

// Wraps a fake stream so that the factory's list of live streams forgets it when the code under test
// destroys it.
template <class Stream>
class Tracked final : public Stream {
  public:
    template <class... Args>
    Tracked(std::shared_ptr<std::vector<Stream*>> alive, Args&&... args)
        : Stream(std::forward<Args>(args)...), alive_(std::move(alive)) {
        alive_->push_back(this);
    }
    ~Tracked() override { std::erase(*alive_, static_cast<Stream*>(this)); }

  private:
    std::shared_ptr<std::vector<Stream*>> alive_;
};

template <class Stream>
Stream* newest(const std::vector<Stream*>& alive) {
    return alive.empty() ? nullptr : alive.back();
}

}  // namespace

bool FakeWindowStream::deliverFrame(HostTimeNs presentationTimeNs, std::uint32_t bgra) {
    const QSize size = windowStreamPictureSize(window_.frame.size().toSize(), configuration_);
    const int width = std::max(size.width(), 2);
    const int height = std::max(size.height(), 2);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width) * height * 4);
    for (std::size_t offset = 0; offset < bytes.size(); offset += 4) std::memcpy(&bytes[offset], &bgra, 4);
    CaptureSample sample;
    sample.presentationTimeNs = presentationTimeNs;
    sample.imageBuffer = PixelBuffer::make(width, height, width * 4, std::move(bytes));
    return core.deliver(std::move(sample), CaptureOutputType::screen);
}

bool FakeWindowStream::endByItself(const Error& reason) {
    if (!core.isStarted()) return false;
    static_cast<void>(core.stop());
    if (const EndHandler handler = endHandler_) handler(reason);
    return true;
}

std::unique_ptr<WindowStream> FakeWindowStreamFactory::makeWindowStream(
    const ShareableWindow& window, const WindowStreamConfiguration& configuration) {
    ++madeCount_;
    auto stream = std::make_unique<Tracked<FakeWindowStream>>(alive_, window, configuration);
    stream->core.startError = startError;
    return stream;
}

FakeWindowStream* FakeWindowStreamFactory::lastStream() const {
    return newest(*alive_);
}

Result<std::unique_ptr<AudioStream>> FakeAudioStreamFactory::makeAudioStream(
    const ShareableDisplay& display, const AudioStreamConfiguration& configuration) {
    if (makeError) return *makeError;
    ++madeCount_;
    auto stream = std::make_unique<Tracked<FakeAudioStream>>(alive_, display, configuration);
    stream->core.startError = startError;
    return std::unique_ptr<AudioStream>(std::move(stream));
}

FakeAudioStream* FakeAudioStreamFactory::lastStream() const {
    return newest(*alive_);
}

}  // namespace kestrum
