#pragma once

#include "media/MovieWriter.h"
#include "platform/ports/ShareableContent.h"

#include <QString>

#include <optional>

namespace kestrum {

// The texts of the capture log and console that describe things rather than events: kept apart so that
// their exact wording is tested once.

// "Selected League capture window: id=…, title=…, owner=…, pid=…, title=(x, y, w, h), onScreen=….";
// the second "title=" carries the frame, as the log has always written it.
QString selectedCaptureWindowLine(const ShareableWindow& window);

// A rectangle as "(x, y, width, height)", each number with at least one decimal ("1280.0").
QString rectangleDebugDescription(const QRectF& rectangle);

// Seconds in the shortest form that reads back exactly, with ".0" for whole numbers.
QString secondsText(double seconds);

// One track's line at the stop: `trackText` (its name and tally, "system audio: 2950 of 2950 buffers
// written"), then what the writer input did with what it took ("writer: 0 refused with its queue full,
// 0 discarded", or "writer: no track" without an input), then the stream's own counters after
// `streamName` ("audio stream: buffers 2950, …"), or "not running" when there was no stream.
QString trackSummaryLine(const QString& trackText, const MovieWriterInput* input, const QString& streamName,
                         const std::optional<QString>& streamCounters);

// "domain code: description" with " (underlying: …)" when the error has a cause; without an error,
// "Writer ended with status N and no error details.".
QString describeWriterFailure(const MovieWriter& writer);

}  // namespace kestrum
