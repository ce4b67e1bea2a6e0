#pragma once

#include <optional>

namespace kestrum {

// What one press of the pointer on the timeline track becomes: a click (released where it was pressed,
// or nearly), or a drag that scrubs from the moment it has moved more than `kDragDistance` points in x
// and ends with the exact seek of its last position. The track's item forwards the raw pointer events;
// this decides what they mean.
//
// Threads: the main thread, as the pointer events.
class TimelineTrackGesture {
  public:
    // Points the pointer may wander in x, while pressed, and still make a click.
    static constexpr double kDragDistance = 3;

    struct Action {
        enum class Kind { none, click, scrub, finishScrub };
        Kind kind = Kind::none;
        // The track position the action is about (a click's point, the drag's x).
        double x = 0;
        double y = 0;

        friend bool operator==(const Action&, const Action&) = default;
    };

    void press(double x, double y);
    // The pointer moved with the button held: a scrub once the press became a drag.
    Action move(double x, double y);
    // The button went up: the click, or the end of the drag at `x`.
    Action release(double x, double y);
    // The pointer was taken away (another item grabbed it, the window lost it): a drag ends at its last
    // position; a press that was no drag yet ends with nothing.
    Action cancel();

    bool isPressed() const { return pressX_.has_value(); }
    bool isDragging() const { return isDragging_; }

  private:
    // Main thread. The press's x (absent when up), whether it became a drag, and the drag's last x.
    std::optional<double> pressX_;
    bool isDragging_ = false;
    double lastX_ = 0;
};

}  // namespace kestrum
