#pragma once

#include <QtGlobal>

#include <optional>

class QImage;
class QPainter;

namespace kestrum {

// The game clock drawn into every frame of the simulated game, so that a recorded movie can be
// compared with the clock of the game's local service frame by frame.
//
// Geometry, in cells of width/80 of the picture (16 px in a 1280-wide window): a black panel of 55 x 6
// cells at the top-left corner holds one row of 52 cells starting one cell in from the top and the left:
//   cell 0       white start marker, 4 cells tall
//   cell 1       black guard
//   cells 2-33   the game time in milliseconds, a signed 32-bit number (two's complement), most
//                significant bit first, white for 1, 2 cells tall
//   cells 34-49  CRC-16/CCITT of those 4 bytes (big-endian), same form
//   cell 50      black guard
//   cell 51      white end marker, 4 cells tall
// Below the data row, between the two markers, the panel is black, so a row there shows exactly two
// white runs 52 cells apart: the decoder finds the stripe from those alone, at any scale and offset
// (a picture that was scaled down, or that carries a window manager's frame), and the checksum rejects a
// picture that only looks like one.
//
// The time is negative while the game loads (the clock counts up to 0) and stands still at the end.

// Cells per picture width.
inline constexpr int kClockStripeCellsPerWidth = 80;

// Paints the stripe for `gameTimeMs` (clamped to the 32-bit range) over a picture `width` pixels wide.
void paintClockStripe(QPainter& painter, int width, qint64 gameTimeMs);

// Paints the stripe into `image`, sized by its width.
void encodeClockStripe(QImage& image, qint64 gameTimeMs);

// The game time shown by the stripe in `frame` (of any size: the stripe scaled with the picture), or
// absent when the frame holds no stripe whose checksum matches.
std::optional<qint64> decodeClockStripe(const QImage& frame);

}  // namespace kestrum
