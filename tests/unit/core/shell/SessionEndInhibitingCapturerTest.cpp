#include "core/shell/SessionEndInhibitingCapturer.h"
#include "platform/fake/FakeSessionEndInhibitor.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoroSignal>
#include <QObject>
#include <QTemporaryDir>

namespace kestrum::test {
namespace {

// A capture pipeline whose starts and finishes end when the test says, the oldest waiting one first.
class GatedCapturer : public QObject, public RecordingCapturer {
    Q_OBJECT

  public:
    QCoro::Task<std::optional<ReferenceDate>> startCapture() override {
        const int number = startsBegun_++;
        for (;;) {
            const auto ended = co_await qCoro(this, &GatedCapturer::startEnded);
            if (std::get<0>(ended) == number) {
                if (std::get<1>(ended)) co_return ReferenceDate{1000};
                co_return std::nullopt;
            }
        }
    }
    QCoro::Task<void> finishCapture(std::optional<RecordingMetadata>, std::vector<RecordingEvent>,
                                    std::vector<RecordingScoreboardSnapshot>) override {
        const int number = finishesBegun_++;
        for (;;) {
            const int ended = co_await qCoro(this, &GatedCapturer::finishEnded);
            if (ended == number) co_return;
        }
    }

    std::shared_ptr<RecordingTelemetryJournal> telemetryJournal() const override { return journal; }

    void endStart(bool succeeded) { emit startEnded(startsEnded_++, succeeded); }
    std::shared_ptr<RecordingTelemetryJournal> journal;
    void endFinish() { emit finishEnded(finishesEnded_++); }

  signals:
    void startEnded(int number, bool succeeded);
    void finishEnded(int number);

  private:
    int startsBegun_ = 0;
    int startsEnded_ = 0;
    int finishesBegun_ = 0;
    int finishesEnded_ = 0;
};

// The coordinator reaches the recording's journal through the hold: hidden there, a crash would lose the
// events gathered so far.
TEST(SessionEndInhibitingCapturer, PassesTheRecordingsJournalThrough) {
    QTemporaryDir folder;
    GatedCapturer capturer;
    FakeSessionEndInhibitor inhibitor;
    SessionEndInhibitingCapturer guard(capturer, inhibitor);
    EXPECT_EQ(guard.telemetryJournal(), nullptr);
    capturer.journal =
        RecordingTelemetryJournal::create(folder.filePath(QStringLiteral("game.telemetry")), ReferenceDate{1})
            .value();
    EXPECT_EQ(guard.telemetryJournal(), capturer.journal);
}

// The steps of one scenario, each followed by the hold it must leave.
enum class Step { start, startSucceeds, startFails, finish, finishEnds };

TEST(SessionEndInhibitingCapturer, HoldsFromTheStartUntilTheLastMovieIsSaved) {
    struct Case {
        const char* name;
        std::vector<std::pair<Step, bool>> steps;  // a step, then whether the hold is taken
    };
    const std::vector<Case> cases = {
        {"a recording saved",
         {{Step::start, true}, {Step::startSucceeds, true}, {Step::finish, true}, {Step::finishEnds, false}}},
        {"a start that failed", {{Step::start, true}, {Step::startFails, false}}},
        {"a failed start, then the stop's finish",
         {{Step::start, true}, {Step::startFails, false}, {Step::finish, true}, {Step::finishEnds, false}}},
        {"a new game while the previous movie is finalised",
         {{Step::start, true},
          {Step::startSucceeds, true},
          {Step::finish, true},
          {Step::start, true},
          {Step::finishEnds, true},
          {Step::startSucceeds, true},
          {Step::finish, true},
          {Step::finishEnds, false}}},
        {"a failed start's finish never gives back a movie still being finalised",
         {{Step::start, true},
          {Step::startSucceeds, true},
          {Step::finish, true},
          {Step::start, true},
          {Step::startFails, true},
          {Step::finish, true},
          {Step::finishEnds, true},
          {Step::finishEnds, false}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        GatedCapturer inner;
        FakeSessionEndInhibitor inhibitor;
        SessionEndInhibitingCapturer capturer(inner, inhibitor);
        std::vector<QCoro::Task<std::optional<ReferenceDate>>> starts;
        std::vector<QCoro::Task<void>> finishes;
        for (std::size_t index = 0; index < c.steps.size(); ++index) {
            const auto [step, held] = c.steps[index];
            switch (step) {
                case Step::start:
                    starts.push_back(capturer.startCapture());
                    break;
                case Step::startSucceeds:
                case Step::startFails:
                    inner.endStart(step == Step::startSucceeds);
                    break;
                case Step::finish:
                    finishes.push_back(capturer.finishCapture(std::nullopt, {}, {}));
                    break;
                case Step::finishEnds:
                    inner.endFinish();
                    break;
            }
            processEventsFor(5);
            EXPECT_EQ(inhibitor.isHeld(), held) << "after step " << index;
        }
        EXPECT_FALSE(capturer.hasActiveCapture());
    }
}

}  // namespace
}  // namespace kestrum::test

#include "SessionEndInhibitingCapturerTest.moc"
