#include "core/capture/RecordingCaptureSetup.h"

#include "base/log/CaptureLog.h"
#include "media/MovieOutputSettings.h"

#include <QDir>
#include <QUuid>

#include <algorithm>
#include <cmath>

namespace kestrum {

namespace {

OutputResolution outputResolution(RecordingVideoResolution resolution) {
    switch (resolution) {
        case RecordingVideoResolution::p720:
            return OutputResolution::p720;
        case RecordingVideoResolution::p1080:
            return OutputResolution::p1080;
        case RecordingVideoResolution::native:
            return OutputResolution::native;
    }
    return OutputResolution::p720;
}

int evenSide(double side) {
    const auto whole = static_cast<long long>(std::trunc(side));
    const long long even = whole - whole % 2;
    return static_cast<int>(std::max(even, 2LL));
}

// Adds the input when the writer accepts it; null otherwise. Every input is real-time: capture never
// waits for the encoder.
std::shared_ptr<MovieWriterInput> addInputIfAccepted(MovieWriter& writer,
                                                     const MovieInputSettings& settings) {
    if (!writer.canAddInput(settings)) return nullptr;
    std::shared_ptr<MovieWriterInput> input = writer.addInput(settings);
    if (input) input->setExpectsMediaDataInRealTime(true);
    return input;
}

std::shared_ptr<MovieWriterInput> addAudioInput(MovieWriter& writer) {
    std::shared_ptr<MovieWriterInput> input = addInputIfAccepted(writer, audioOutputSettings());
    if (!input)
        logCaptureError(
            QStringLiteral("An audio writer input is unavailable; continuing without that track."));
    return input;
}

}  // namespace

QSizeF fittedOutputSize(QSizeF sourcePixelSize, RecordingVideoResolution resolution) {
    const std::optional<QSize> box = limitBoxPixels(resolution);
    if (!box) return sourcePixelSize;
    const double scale =
        std::min({1.0, box->width() / sourcePixelSize.width(), box->height() / sourcePixelSize.height()});
    return sourcePixelSize * scale;
}

QSize evenPixelSize(QSizeF size) {
    return {evenSide(size.width()), evenSide(size.height())};
}

QString makeInProgressMoviePath(const QString& folder) {
    const QString uuid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    return QDir(folder).filePath(QStringLiteral("kestrum_") + uuid + QStringLiteral(".mov"));
}

Result<RecordingCaptureSetup> prepareCaptureSetup(const ShareableWindow& window,
                                                  RecordingVideoResolution resolution,
                                                  VideoFrameRate frameRate, bool systemAudio, bool microphone,
                                                  const CaptureSetupFactories& factories) {
    const QSize output =
        evenPixelSize(fittedOutputSize(factories.windowStreams.sourcePixelSize(window), resolution));
    const int framesPerSecond = frameRate == VideoFrameRate::fps60 ? 60 : 30;

    RecordingCaptureSetup setup;
    setup.window = window;
    setup.streamConfiguration =
        WindowStreamConfiguration{output.width(), output.height(), framesPerSecond, true};
    setup.width = output.width();
    setup.height = output.height();

    // A folder that cannot be made shows up as the writer's creation error below.
    QDir().mkpath(factories.inProgressFolder);
    setup.outputPath = makeInProgressMoviePath(factories.inProgressFolder);
    Result<std::unique_ptr<MovieWriter>> writer =
        factories.movieWriters.createWriter(setup.outputPath, MovieFileType::quickTimeMovie);
    if (!writer.ok()) return writer.error();
    setup.writer = std::move(writer).value();

    const OutputFrameRate outputRate =
        framesPerSecond == 60 ? OutputFrameRate::fps60 : OutputFrameRate::fps30;
    setup.videoInput = addInputIfAccepted(
        *setup.writer,
        videoOutputSettings(outputResolution(resolution), outputRate, setup.width, setup.height));
    if (systemAudio) setup.systemAudioInput = addAudioInput(*setup.writer);
    if (microphone) setup.microphoneInput = addAudioInput(*setup.writer);
    return setup;
}

}  // namespace kestrum
