#include "RecordingTestSupport.h"
#include "base/async/Job.h"
#include "base/async/ManualClock.h"
#include "core/recording/RecordingPermissions.h"
#include "platform/fake/FakeMicrophoneAccess.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeSettingsOpener.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroTask>

#include <chrono>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;
using MicStatus = MicrophoneAccess::Status;

const QUrl kScreenPane(
    QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"));
const QUrl kMicrophonePane(
    QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Microphone"));

struct PermissionsRig {
    FakeScreenCaptureAccess screen{false};
    FakeMicrophoneAccess microphone{MicStatus::notDetermined};
    FakeSettingsOpener opener;
    RecordingPermissions permissions{screen, microphone, opener};
};

TEST(RecordingPermissions, ScreenAccessPromptsOnceThenOpensTheSettingsUnlessGranted) {
    for (const bool grantedAtThePrompt : {false, true}) {
        SCOPED_TRACE(grantedAtThePrompt ? "granted at the prompt" : "not granted");
        PermissionsRig rig;
        rig.screen.setGrantsOnRequest(grantedAtThePrompt);
        EXPECT_FALSE(rig.permissions.hasScreenAccess());
        rig.permissions.requestScreenAccess();
        EXPECT_EQ(rig.screen.requestCount(), 1);
        EXPECT_EQ(rig.permissions.hasScreenAccess(), grantedAtThePrompt);
        EXPECT_TRUE(rig.permissions.hasRequestedScreenAccess());
        EXPECT_TRUE(rig.opener.openedLinks().isEmpty());

        rig.permissions.requestScreenAccess();  // the second tap
        EXPECT_EQ(rig.screen.requestCount(), 1) << "no second prompt";
        EXPECT_EQ(rig.opener.openedLinks(), grantedAtThePrompt ? QList<QUrl>{} : QList<QUrl>{kScreenPane});
        EXPECT_FALSE(rig.permissions.settingsError().has_value());
    }
    // A new run of the application prompts again.
    PermissionsRig rig;
    rig.permissions.requestScreenAccess();
    RecordingPermissions restarted(rig.screen, rig.microphone, rig.opener);
    EXPECT_FALSE(restarted.hasRequestedScreenAccess());
    restarted.requestScreenAccess();
    EXPECT_EQ(rig.screen.requestCount(), 2);
}

TEST(RecordingPermissions, MicrophoneRequestFollowsTheStatus) {
    struct Case {
        const char* name;
        MicStatus status;
        int expectedRequests;
        QList<QUrl> expectedLinks;
    };
    const std::vector<Case> cases = {
        {"restricted: nothing", MicStatus::restricted, 0, {}},
        {"authorized: nothing", MicStatus::authorized, 0, {}},
        {"denied: the settings", MicStatus::denied, 0, {kMicrophonePane}},
        {"unknown number: nothing", static_cast<MicStatus>(7), 0, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PermissionsRig rig;
        rig.microphone.setStatus(c.status);
        QCoro::waitFor(rig.permissions.requestMicrophoneAccess());
        EXPECT_EQ(rig.microphone.requestCount(), c.expectedRequests);
        EXPECT_EQ(rig.opener.openedLinks(), c.expectedLinks);
    }
}

TEST(RecordingPermissions, UndecidedMicrophoneIsAskedOnceWhileTheRequestIsOpen) {
    PermissionsRig rig;
    const Job<void> first =
        Job<void>::start([&](CancellationToken) { return rig.permissions.requestMicrophoneAccess(); });
    EXPECT_TRUE(rig.permissions.isRequestingMicrophone());
    QCoro::waitFor(rig.permissions.requestMicrophoneAccess());  // a second tap meanwhile does nothing
    EXPECT_EQ(rig.microphone.requestCount(), 1);
    rig.microphone.answer(true);
    ASSERT_TRUE(waitUntil([&] { return first.isFinished(); }));
    EXPECT_FALSE(rig.permissions.isRequestingMicrophone());
    EXPECT_EQ(rig.permissions.microphoneStatus(), MicStatus::authorized);
}

TEST(RecordingPermissions, FailedOpeningOfTheSettingsShowsTheErrorUntilOneSucceeds) {
    PermissionsRig rig;
    rig.opener.setSucceeds(false);
    rig.permissions.openSettings(QStringLiteral("Privacy_ScreenCapture"));
    EXPECT_EQ(rig.permissions.settingsError(),
              QStringLiteral("Open System Settings → Privacy & Security to manage access for Kestrum."));
    rig.opener.setSucceeds(true);
    rig.permissions.openSettings(QStringLiteral("Privacy_Microphone"));
    EXPECT_FALSE(rig.permissions.settingsError().has_value());
    EXPECT_EQ(rig.opener.openedLinks(), (QList<QUrl>{kScreenPane, kMicrophonePane}));
}

TEST(RecordingPermissions, PollingShowsAGrantWithoutAnyAction) {
    PermissionsRig rig;
    ManualClock clock;
    int changes = 0;
    QObject::connect(&rig.permissions, &RecordingPermissions::changed, [&] { ++changes; });
    const Job<void> polling = Job<void>::start(
        [&](CancellationToken token) { return rig.permissions.pollWhileShown(clock, token); });
    rig.screen.setGranted(true);
    rig.microphone.setStatus(MicStatus::authorized);
    clock.advance(1999ms);
    EXPECT_FALSE(rig.permissions.hasScreenAccess());
    clock.advance(1ms);
    EXPECT_TRUE(rig.permissions.hasScreenAccess());
    EXPECT_EQ(rig.permissions.microphoneStatus(), MicStatus::authorized);
    EXPECT_EQ(changes, 2);
    polling.cancel();
    EXPECT_TRUE(waitUntil([&] { return polling.isFinished(); }));
}

}  // namespace
}  // namespace kestrum::test
