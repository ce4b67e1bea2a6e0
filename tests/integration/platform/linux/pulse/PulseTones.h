#pragma once

// Tones played by processes of their own and read back by frequency, for the tests of the sound
// adapters against a private pulseaudio. pacat and parec inherit PULSE_SERVER from the test's server.

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryFile>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <vector>

namespace kestrum::test {

constexpr int kToneRate = 48000;

// Interleaved stereo float: a sine of `hz` at `amplitude` for `seconds`.
inline std::vector<float> sine(double hz, double seconds, float amplitude) {
    std::vector<float> samples(2 * static_cast<std::size_t>(seconds * kToneRate));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = amplitude * float(std::sin(2 * std::numbers::pi * hz * double(i / 2) / kToneRate));
    }
    return samples;
}

// The amplitude of the `hz` component of mono samples [from, to) (Goertzel).
inline double amplitudeOf(const std::vector<float>& samples, double hz, std::size_t from, std::size_t to) {
    to = std::min(to, samples.size());
    const double coefficient = 2 * std::cos(2 * std::numbers::pi * hz / kToneRate);
    double previous = 0;
    double beforePrevious = 0;
    for (std::size_t i = from; i < to; ++i) {
        const double current = samples[i] + coefficient * previous - beforePrevious;
        beforePrevious = previous;
        previous = current;
    }
    const double power =
        previous * previous + beforePrevious * beforePrevious - coefficient * previous * beforePrevious;
    return to > from ? 2 * std::sqrt(std::max(0.0, power)) / double(to - from) : 0;
}

// The median of the `hz` amplitudes of the tenths of a second in [from, to): a route that drops a block
// now and then shifts the tone's phase, which a single long window would read as a weaker tone. 440,
// 660 and 1000 Hz run whole periods in a tenth, so that none leaks into another's reading.
inline double medianAmplitudeOf(const std::vector<float>& samples, double hz, std::size_t from,
                                std::size_t to) {
    constexpr std::size_t kWindow = kToneRate / 10;
    std::vector<double> amplitudes;
    for (std::size_t start = from; start + kWindow <= std::min(to, samples.size()); start += kWindow) {
        amplitudes.push_back(amplitudeOf(samples, hz, start, start + kWindow));
    }
    if (amplitudes.empty()) return 0;
    std::nth_element(amplitudes.begin(), amplitudes.begin() + amplitudes.size() / 2, amplitudes.end());
    return amplitudes[amplitudes.size() / 2];
}

// Interleaved stereo float samples played by another process (pacat) into the default sink. With
// `delaySeconds` the process waits that long first and then becomes pacat (exec keeps its pid), so that
// its pid is known before its stream exists.
class OtherProcessTone {
  public:
    bool start(const std::vector<float>& samples, double delaySeconds = 0) {
        if (!raw_.open()) return false;
        raw_.write(reinterpret_cast<const char*>(samples.data()), qint64(samples.size() * sizeof(float)));
        raw_.flush();
        const QString pacat =
            QStringLiteral("exec pacat --raw --format=float32le --rate=48000 --channels=2 '%1'")
                .arg(raw_.fileName());
        process_.start(QStringLiteral("sh"),
                       {QStringLiteral("-c"), QStringLiteral("sleep %1; ").arg(delaySeconds) + pacat});
        return process_.waitForStarted(5000);
    }
    bool start(double hz, double seconds, double delaySeconds = 0) {
        return start(sine(hz, seconds, 0.3F), delaySeconds);
    }
    // Returns once the tone has been played out.
    bool finish() { return process_.waitForFinished(20000) && process_.exitCode() == 0; }
    qint64 processId() const { return process_.processId(); }

  private:
    QTemporaryFile raw_;
    QProcess process_;
};

// The first channel of what a source carries, recorded by parec for a while.
class SourceRecording {
  public:
    bool start(const QString& source) {
        if (!raw_.open()) return false;
        parec_.start(QStringLiteral("parec"), {QStringLiteral("--raw"), QStringLiteral("--format=float32le"),
                                               QStringLiteral("--rate=48000"), QStringLiteral("--channels=2"),
                                               QStringLiteral("--latency-msec=20"),
                                               QStringLiteral("--device=") + source, raw_.fileName()});
        return parec_.waitForStarted(5000);
    }
    // Ends the recording and returns its first channel.
    std::vector<float> finish() {
        parec_.terminate();
        parec_.waitForFinished(5000);
        raw_.seek(0);
        const QByteArray bytes = raw_.readAll();
        std::vector<float> stereo(static_cast<std::size_t>(bytes.size()) / sizeof(float));
        std::memcpy(stereo.data(), bytes.constData(), stereo.size() * sizeof(float));
        std::vector<float> first;
        for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) first.push_back(stereo[i]);
        return first;
    }

  private:
    QTemporaryFile raw_;  // parec writes there, so that nothing waits on a pipe
    QProcess parec_;
};

}  // namespace kestrum::test
