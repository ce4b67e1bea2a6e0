#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace kestrum::ffmpeg {

// Puts the packets of several streams into one file order by decoding time, as a muxer wants them.
// A packet leaves once every stream that has not ended has a packet waiting (then the oldest of all
// goes), or once the waiting packets span more than `windowUs`: a stream that stalls (an encoder that
// falls behind, a source that stops) holds the others back by at most the window, so their packets
// still reach the file. Ties go to the lower stream; a stream's own packets keep their order.
//
// Thread: one (the muxer's); not synchronised. Each stream's decoding times must not decrease.
template <class Item>
class PacketInterleaver {
  public:
    PacketInterleaver(int streamCount, std::int64_t windowUs)
        : queues_(static_cast<std::size_t>(streamCount)),
          ended_(static_cast<std::size_t>(streamCount), false),
          windowUs_(windowUs) {}

    void push(int stream, std::int64_t dtsUs, Item item) {
        queues_[static_cast<std::size_t>(stream)].push_back(Entry{dtsUs, std::move(item)});
    }
    void endStream(int stream) { ended_[static_cast<std::size_t>(stream)] = true; }
    bool allStreamsEnded() const {
        for (const bool ended : ended_) {
            if (!ended) return false;
        }
        return true;
    }
    bool empty() const {
        for (const auto& queue : queues_) {
            if (!queue.empty()) return false;
        }
        return true;
    }

    // The next packet to write now, if one may go.
    std::optional<Item> pop() {
        std::deque<Entry>* oldest = nullptr;
        bool everyLiveStreamWaits = true;
        std::optional<std::int64_t> newestUs;
        for (std::size_t stream = 0; stream < queues_.size(); ++stream) {
            std::deque<Entry>& queue = queues_[stream];
            if (queue.empty()) {
                if (!ended_[stream]) everyLiveStreamWaits = false;
                continue;
            }
            if (!newestUs || queue.back().dtsUs > *newestUs) newestUs = queue.back().dtsUs;
            if (oldest == nullptr || queue.front().dtsUs < oldest->front().dtsUs) oldest = &queue;
        }
        if (oldest == nullptr) return std::nullopt;
        const bool windowExceeded = *newestUs - oldest->front().dtsUs > windowUs_;
        if (!everyLiveStreamWaits && !windowExceeded) return std::nullopt;
        Item item = std::move(oldest->front().item);
        oldest->pop_front();
        return item;
    }

  private:
    struct Entry {
        std::int64_t dtsUs;
        Item item;
    };

    std::vector<std::deque<Entry>> queues_;
    std::vector<bool> ended_;
    std::int64_t windowUs_;
};

}  // namespace kestrum::ffmpeg
