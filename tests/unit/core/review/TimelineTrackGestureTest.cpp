#include "core/review/TimelineTrackGesture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrum {
namespace {

using Kind = TimelineTrackGesture::Action::Kind;

// One pointer event on the track: 'p' press, 'm' move with the button held, 'r' release, 'c' the pointer
// taken away.
struct Step {
    char event;
    double x;
    double y;
    TimelineTrackGesture::Action expected;
};

TEST(TimelineTrackGesture, TellsClicksFromDragsAndEndsDragsAtTheirLastPosition) {
    const struct {
        const char* what;
        std::vector<Step> steps;
    } rows[] = {
        {"a press released in place is a click",
         {{'p', 100, 30, {}}, {'r', 100, 30, {Kind::click, 100, 30}}}},
        {"a wobble of 3 points is still a click",
         {{'p', 100, 30, {}}, {'m', 103, 31, {}}, {'m', 97, 29, {}}, {'r', 102, 30, {Kind::click, 102, 30}}}},
        {"more than 3 points makes a drag that scrubs at every move",
         {{'p', 100, 30, {}},
          {'m', 104, 30, {Kind::scrub, 104, 30}},
          {'m', 101, 30, {Kind::scrub, 101, 30}},
          {'m', 150, 50, {Kind::scrub, 150, 50}},
          {'r', 160, 50, {Kind::finishScrub, 160, 50}}}},
        {"a quick flick with no move in between is a drag's end",
         {{'p', 100, 30, {}}, {'r', 140, 30, {Kind::finishScrub, 140, 30}}}},
        {"only x counts: a vertical slip is a click",
         {{'p', 100, 30, {}}, {'m', 100, 70, {}}, {'r', 100, 70, {Kind::click, 100, 70}}}},
        {"moves and releases without a press do nothing",
         {{'m', 120, 30, {}}, {'r', 120, 30, {}}, {'c', 0, 0, {}}}},
        {"a drag taken away ends at its last position",
         {{'p', 100, 30, {}},
          {'m', 180, 30, {Kind::scrub, 180, 30}},
          {'c', 0, 0, {Kind::finishScrub, 180, 0}},
          {'r', 190, 30, {}}}},
        {"a press taken away before it moved ends with nothing",
         {{'p', 100, 30, {}}, {'c', 0, 0, {}}, {'r', 100, 30, {}}}},
        {"a second press starts afresh",
         {{'p', 100, 30, {}},
          {'m', 200, 30, {Kind::scrub, 200, 30}},
          {'r', 200, 30, {Kind::finishScrub, 200, 30}},
          {'p', 50, 30, {}},
          {'r', 51, 30, {Kind::click, 51, 30}}}},
    };
    for (const auto& row : rows) {
        TimelineTrackGesture gesture;
        int index = 0;
        for (const Step& step : row.steps) {
            TimelineTrackGesture::Action action;
            switch (step.event) {
                case 'p':
                    gesture.press(step.x, step.y);
                    break;
                case 'm':
                    action = gesture.move(step.x, step.y);
                    break;
                case 'r':
                    action = gesture.release(step.x, step.y);
                    break;
                default:
                    action = gesture.cancel();
                    break;
            }
            EXPECT_EQ(action, step.expected) << row.what << ", step " << index;
            ++index;
        }
        EXPECT_FALSE(gesture.isPressed()) << row.what;
    }
}

}  // namespace
}  // namespace kestrum
