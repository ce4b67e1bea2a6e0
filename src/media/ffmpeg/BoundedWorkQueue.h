#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace kestrum::ffmpeg {

// A FIFO between one producer that must never block (the capture thread) and one consumer thread
// that sleeps until work arrives. Each item has a cost (frames of video, PCM frames of audio) and the
// queue refuses an item once the queued cost has reached the capacity. Control items (the end of a
// stream) are always taken. `close` wakes the consumer and discards what is left. All state is guarded
// by `mutex_`.
template <class Item>
class BoundedWorkQueue {
  public:
    explicit BoundedWorkQueue(std::int64_t capacity) : capacity_(capacity) {}

    void setCapacity(std::int64_t capacity) {
        std::lock_guard lock(mutex_);
        capacity_ = capacity;
    }

    bool hasRoom() const {
        std::lock_guard lock(mutex_);
        return !closed_ && queuedCost_ < capacity_;
    }

    // False, and the item is dropped, when the queue is full or closed. Never waits.
    bool tryPush(Item item, std::int64_t cost) {
        {
            std::lock_guard lock(mutex_);
            if (closed_ || queuedCost_ >= capacity_) return false;
            queuedCost_ += cost;
            items_.push_back({std::move(item), cost});
        }
        ready_.notify_one();
        return true;
    }

    void pushControl(Item item) {
        {
            std::lock_guard lock(mutex_);
            if (closed_) return;
            items_.push_back({std::move(item), 0});
        }
        ready_.notify_one();
    }

    // Waits for the next item; absent once the queue is closed.
    std::optional<Item> pop() {
        std::unique_lock lock(mutex_);
        ready_.wait(lock, [this] { return closed_ || !items_.empty(); });
        if (closed_) return std::nullopt;
        Entry entry = std::move(items_.front());
        items_.pop_front();
        queuedCost_ -= entry.cost;
        return std::move(entry.item);
    }

    enum class Wait { item, timedOut, closed };

    // Waits at most `timeout` for the next item; `item` holds it when the answer is `item`.
    Wait popFor(std::chrono::nanoseconds timeout, std::optional<Item>& item) {
        std::unique_lock lock(mutex_);
        if (!ready_.wait_for(lock, timeout, [this] { return closed_ || !items_.empty(); }))
            return Wait::timedOut;
        if (closed_) return Wait::closed;
        Entry entry = std::move(items_.front());
        items_.pop_front();
        queuedCost_ -= entry.cost;
        item = std::move(entry.item);
        return Wait::item;
    }

    // Gives the number of items with a cost that were discarded (control items are not counted).
    std::size_t close() {
        std::size_t discarded = 0;
        {
            std::lock_guard lock(mutex_);
            closed_ = true;
            for (const Entry& entry : items_) discarded += entry.cost > 0 ? 1 : 0;
            items_.clear();
            queuedCost_ = 0;
        }
        ready_.notify_all();
        return discarded;
    }

  private:
    struct Entry {
        Item item;
        std::int64_t cost;
    };

    mutable std::mutex mutex_;
    std::condition_variable ready_;
    std::deque<Entry> items_;
    std::int64_t queuedCost_ = 0;
    std::int64_t capacity_;
    bool closed_ = false;
};

}  // namespace kestrum::ffmpeg
