#include "core/dashboard/DashboardKeyMap.h"
#include "core/dashboard/DashboardTabKeyMonitor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrum {
namespace {

using Action = DashboardKeyAction;
using Focus = DashboardKeyFocus;

constexpr Qt::KeyboardModifiers kNone = Qt::NoModifier;

DashboardKeyInput press(int key, QString text = {}, Qt::KeyboardModifiers modifiers = kNone,
                        Focus focus = Focus::playbackSurface) {
    return {key, modifiers, std::move(text), false, true, focus};
}

TEST(DashboardKeyMap, PlaybackKeysActWithAPlayerAndTravelOnWithout) {
    struct Row {
        const char* name;
        DashboardKeyInput input;
        Action action;
        bool handledWithoutPlayer;
    };
    const std::vector<Row> rows = {
        {"Left", press(Qt::Key_Left), Action::skipBackward, false},
        {"Right", press(Qt::Key_Right), Action::skipForward, false},
        {"Up", press(Qt::Key_Up), Action::volumeUp, false},
        {"Down", press(Qt::Key_Down), Action::volumeDown, false},
        {"Space", press(Qt::Key_Space, " "), Action::togglePlayback, false},
        {"P", press(Qt::Key_P, "p"), Action::togglePlayback, false},
        {"P with Shift", press(Qt::Key_P, "P", Qt::ShiftModifier), Action::togglePlayback, false},
        {"M", press(Qt::Key_M, "m"), Action::toggleMute, false},
        {"0", press(Qt::Key_0, "0"), Action::resetSpeed, false},
        {"keypad 0", press(Qt::Key_0, "0", Qt::KeypadModifier), Action::resetSpeed, false},
        {"-", press(Qt::Key_Minus, "-"), Action::speedDown, false},
        {"=", press(Qt::Key_Equal, "="), Action::speedUp, false},
        {"O, with or without a player", press(Qt::Key_O, "o"), Action::toggleScoreboardPin, true},
        {"Escape", press(Qt::Key_Escape), Action::exitCommand, true},
        {"Control-R", press(Qt::Key_R, "\x12", Qt::ControlModifier), Action::refreshLibrary, true},
        {"Left from the sidebar goes to the playback keys", press(Qt::Key_Left, {}, kNone, Focus::sidebar),
         Action::skipBackward, false},
        {"Up on the sidebar moves", press(Qt::Key_Up, {}, kNone, Focus::sidebar), Action::moveSelectionUp,
         true},
        {"Down on the sidebar moves", press(Qt::Key_Down, {}, kNone, Focus::sidebar),
         Action::moveSelectionDown, true},
        {"Delete on the sidebar", press(Qt::Key_Delete, {}, kNone, Focus::sidebar), Action::deleteCommand,
         true},
        {"Backspace on the sidebar", press(Qt::Key_Backspace, {}, kNone, Focus::sidebar),
         Action::deleteCommand, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(decideDashboardKey(row.input, true), (DashboardKeyDecision{true, row.action}));
        const DashboardKeyDecision without = decideDashboardKey(row.input, false);
        EXPECT_EQ(without.handled, row.handledWithoutPlayer);
        EXPECT_EQ(without.action, row.handledWithoutPlayer ? row.action : Action::none);
    }
}

TEST(DashboardKeyMap, OtherKeysReleasesAndCommandChordsAreLeftAlone) {
    struct Row {
        const char* name;
        DashboardKeyInput input;
    };
    DashboardKeyInput release = press(Qt::Key_Space, " ");
    release.isPress = false;
    const std::vector<Row> rows = {
        {"a key without a meaning", press(Qt::Key_Q, "q")},
        {"a release", release},
        {"Control-Shift-R is not exactly Control",
         press(Qt::Key_R, "\x12", Qt::ControlModifier | Qt::ShiftModifier)},
        {"R alone", press(Qt::Key_R, "r")},
        {"Super-Left belongs to the desktop", press(Qt::Key_Left, {}, Qt::MetaModifier)},
        {"Alt-P", press(Qt::Key_P, "p", Qt::AltModifier)},
        {"Control-Space", press(Qt::Key_Space, " ", Qt::ControlModifier)},
        {"Delete on the movie", press(Qt::Key_Delete)},
        {"+ is not =", press(Qt::Key_Plus, "+", Qt::ShiftModifier)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(decideDashboardKey(row.input, true), DashboardKeyDecision{});
    }
    DashboardKeyInput repeat = press(Qt::Key_Right);
    repeat.isAutoRepeat = true;
    EXPECT_EQ(decideDashboardKey(repeat, true).action, Action::skipForward) << "holding a key keeps skipping";
}

class DashboardTabKeyMonitorTest : public testing::Test {
  protected:
    using Event = DashboardTabKeyMonitor::Event;
    static constexpr DashboardTabKeyMonitor::WindowID kWindow = 0x1000;

    DashboardTabKeyMonitor monitor{[this](bool pressed) { reports.push_back(pressed ? "down" : "up"); }};
    std::vector<std::string> reports;
};

TEST_F(DashboardTabKeyMonitorTest, TabIsTakenFromTheHostingWindowUnlessHeldWithACommandModifier) {
    struct Row {
        const char* name;
        Event event;
        bool swallowed;
        std::vector<std::string> reports;
    };
    const std::vector<Row> rows = {
        {"Tab down", {Qt::Key_Tab, kNone, true, false, kWindow}, true, {"down"}},
        {"its auto-repeat, as X11 sends it: a release", {Qt::Key_Tab, kNone, false, true, kWindow}, true, {}},
        {"and a press", {Qt::Key_Tab, kNone, true, true, kWindow}, true, {}},
        {"Tab up", {Qt::Key_Tab, kNone, false, false, kWindow}, true, {"up"}},
        {"Shift-Tab arrives as Backtab",
         {Qt::Key_Backtab, Qt::ShiftModifier, true, false, kWindow},
         true,
         {"down"}},
        {"a second press changes nothing",
         {Qt::Key_Backtab, Qt::ShiftModifier, true, false, kWindow},
         true,
         {}},
        {"Backtab up", {Qt::Key_Backtab, Qt::ShiftModifier, false, false, kWindow}, true, {"up"}},
        {"Super-Tab is the desktop's", {Qt::Key_Tab, Qt::MetaModifier, true, false, kWindow}, false, {}},
        {"Control-Tab", {Qt::Key_Tab, Qt::ControlModifier, true, false, kWindow}, false, {}},
        {"Alt-Shift-Tab",
         {Qt::Key_Backtab, Qt::AltModifier | Qt::ShiftModifier, true, false, kWindow},
         false,
         {}},
        {"another window", {Qt::Key_Tab, kNone, true, false, 0x2000}, false, {}},
        {"no window", {Qt::Key_Tab, kNone, true, false, 0}, false, {}},
        {"another key", {Qt::Key_A, kNone, true, false, kWindow}, false, {}},
    };
    monitor.install(kWindow);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        reports.clear();
        EXPECT_EQ(monitor.handle(row.event), row.swallowed);
        EXPECT_EQ(reports, row.reports);
    }
}

TEST_F(DashboardTabKeyMonitorTest, RemovingTheMonitorWhileTabIsDownReleasesIt) {
    EXPECT_FALSE(monitor.handle({Qt::Key_Tab, kNone, true, false, 0})) << "not installed: everything passes";
    monitor.install(0);  // no window on both sides counts as the same
    EXPECT_TRUE(monitor.handle({Qt::Key_Tab, kNone, true, false, 0}));
    monitor.remove();
    EXPECT_EQ(reports, (std::vector<std::string>{"down", "up"}));
    EXPECT_FALSE(monitor.isTabPressed());
    monitor.remove();
    EXPECT_EQ(reports.size(), 2u) << "a second removal reports nothing";
}

}  // namespace
}  // namespace kestrum
