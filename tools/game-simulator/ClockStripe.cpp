#include "ClockStripe.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace kestrum {
namespace {

constexpr int kCellCount = 52;
constexpr int kValueBits = 32;
constexpr int kCheckBits = 16;
constexpr int kFirstValueCell = 2;
constexpr int kFirstCheckCell = kFirstValueCell + kValueBits;
constexpr int kEndMarkerCell = kCellCount - 1;
constexpr int kPanelWidthCells = 55;
constexpr int kPanelHeightCells = 6;
constexpr int kMarkerHeightCells = 4;
constexpr int kDataHeightCells = 2;

// Decoding works on 8-bit luminance. Runs are found at mid-grey; a stripe whose markers and guards differ
// by less than the contrast below is no stripe (a veiled or faded picture).
constexpr int kBrightLevel = 128;
constexpr double kMinimumContrast = 60.0;
// A marker's measured width and height may differ from the cell size that the markers' distance gives by
// this share: scaling and block compression move edges by a pixel or two.
constexpr double kMarkerSizeTolerance = 0.45;
// Below this many pixels a cell cannot be told apart from compression noise.
constexpr double kSmallestCellPx = 2.0;

std::uint16_t crc16(std::uint32_t value) {
    std::uint16_t crc = 0xFFFF;
    for (int byteIndex = 3; byteIndex >= 0; --byteIndex) {
        crc ^= static_cast<std::uint16_t>(((value >> (8 * byteIndex)) & 0xFFu) << 8);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 0x8000u) ? static_cast<std::uint16_t>((crc << 1) ^ 0x1021u)
                                  : static_cast<std::uint16_t>(crc << 1);
        }
    }
    return crc;
}

std::uint32_t wireValue(qint64 gameTimeMs) {
    const qint64 clamped = std::clamp<qint64>(gameTimeMs, std::numeric_limits<std::int32_t>::min(),
                                              std::numeric_limits<std::int32_t>::max());
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(clamped));
}

// White cells of the row for `value`.
std::array<bool, kCellCount> cellsFor(std::uint32_t value) {
    std::array<bool, kCellCount> white{};
    white[0] = true;
    white[kEndMarkerCell] = true;
    const std::uint16_t check = crc16(value);
    for (int bit = 0; bit < kValueBits; ++bit) {
        white[kFirstValueCell + bit] = ((value >> (kValueBits - 1 - bit)) & 1u) != 0;
    }
    for (int bit = 0; bit < kCheckBits; ++bit) {
        white[kFirstCheckCell + bit] = ((check >> (kCheckBits - 1 - bit)) & 1u) != 0;
    }
    return white;
}

struct Run {
    int left = 0;   // first bright pixel
    int right = 0;  // one past the last
};

std::vector<Run> brightRuns(const uchar* row, int width) {
    std::vector<Run> runs;
    for (int x = 0; x < width;) {
        if (row[x] < kBrightLevel) {
            ++x;
            continue;
        }
        Run run{x, x};
        while (x < width && row[x] >= kBrightLevel) ++x;
        run.right = x;
        runs.push_back(run);
    }
    return runs;
}

// The 8-bit luminance (qGray's weights) of the top `rows` rows of `frame`. Qt's own conversion to
// grey goes through colour management and costs several times more.
QImage luminance(const QImage& frame, int rows) {
    const QImage colour = frame.format() == QImage::Format_RGB32 || frame.format() == QImage::Format_ARGB32
                              ? frame
                              : frame.convertToFormat(QImage::Format_RGB32);
    QImage gray(colour.width(), rows, QImage::Format_Grayscale8);
    for (int y = 0; y < rows; ++y) {
        const auto* source = reinterpret_cast<const QRgb*>(colour.constScanLine(y));
        uchar* target = gray.scanLine(y);
        for (int x = 0; x < colour.width(); ++x) target[x] = static_cast<uchar>(qGray(source[x]));
    }
    return gray;
}

// Where a found stripe lies in the picture, in pixels.
struct Placement {
    double left = 0;  // left edge of the start marker
    double cell = 0;
    int top = 0;  // top edge of the markers and of the data row
};

// The extent of the bright column through (x, y): first bright row and one past the last.
std::pair<int, int> brightColumn(const QImage& gray, int x, int y) {
    int top = y;
    while (top > 0 && gray.constScanLine(top - 1)[x] >= kBrightLevel) --top;
    int bottom = y + 1;
    while (bottom < gray.height() && gray.constScanLine(bottom)[x] >= kBrightLevel) ++bottom;
    return {top, bottom};
}

bool nearCells(double measuredPx, double cells, double cell) {
    return std::abs(measuredPx - cells * cell) <= kMarkerSizeTolerance * cell;
}

// The stripe whose marker row is `y`: two neighbouring white runs, each a cell wide and four tall, whose
// outer edges are 52 cells apart.
std::optional<Placement> placementOnRow(const QImage& gray, int y) {
    const std::vector<Run> runs = brightRuns(gray.constScanLine(y), gray.width());
    for (size_t i = 0; i + 1 < runs.size(); ++i) {
        const Run& start = runs[i];
        const Run& end = runs[i + 1];
        const double cell = static_cast<double>(end.right - start.left) / kCellCount;
        if (cell < kSmallestCellPx || !nearCells(start.right - start.left, 1, cell) ||
            !nearCells(end.right - end.left, 1, cell)) {
            continue;
        }
        const auto [startTop, startBottom] = brightColumn(gray, (start.left + start.right) / 2, y);
        const auto [endTop, endBottom] = brightColumn(gray, (end.left + end.right) / 2, y);
        if (!nearCells(startBottom - startTop, kMarkerHeightCells, cell) ||
            !nearCells(endBottom - endTop, kMarkerHeightCells, cell) ||
            !nearCells(endTop - startTop, 0, cell)) {
            continue;
        }
        return Placement{static_cast<double>(start.left), cell, startTop};
    }
    return std::nullopt;
}

// Mean luminance of the middle of cell `index` of the data row.
double cellMean(const QImage& gray, const Placement& placement, int index) {
    const auto span = [](double from, double to, int limit) {
        const int first = std::clamp(static_cast<int>(std::floor(from)), 0, limit - 1);
        const int last = std::clamp(static_cast<int>(std::ceil(to)), first + 1, limit);
        return std::pair{first, last};
    };
    const auto [x0, x1] = span(placement.left + (index + 0.25) * placement.cell,
                               placement.left + (index + 0.75) * placement.cell, gray.width());
    const auto [y0, y1] = span(placement.top + 0.5 * placement.cell,
                               placement.top + (kDataHeightCells - 0.5) * placement.cell, gray.height());
    double sum = 0;
    for (int y = y0; y < y1; ++y) {
        const uchar* row = gray.constScanLine(y);
        for (int x = x0; x < x1; ++x) sum += row[x];
    }
    return sum / static_cast<double>((x1 - x0) * (y1 - y0));
}

std::optional<qint64> readCells(const QImage& gray, const Placement& placement) {
    const double white = (cellMean(gray, placement, 0) + cellMean(gray, placement, kEndMarkerCell)) / 2;
    const double black = (cellMean(gray, placement, 1) + cellMean(gray, placement, kEndMarkerCell - 1)) / 2;
    if (white - black < kMinimumContrast) return std::nullopt;
    const double threshold = (white + black) / 2;
    const auto bitsFrom = [&](int firstCell, int count) {
        std::uint32_t bits = 0;
        for (int i = 0; i < count; ++i) {
            bits = (bits << 1) | (cellMean(gray, placement, firstCell + i) >= threshold ? 1u : 0u);
        }
        return bits;
    };
    const std::uint32_t value = bitsFrom(kFirstValueCell, kValueBits);
    if (bitsFrom(kFirstCheckCell, kCheckBits) != crc16(value)) return std::nullopt;
    return static_cast<qint64>(static_cast<std::int32_t>(value));
}

}  // namespace

void paintClockStripe(QPainter& painter, int width, qint64 gameTimeMs) {
    const double cell = static_cast<double>(width) / kClockStripeCellsPerWidth;
    // Whole-pixel edges, so that neighbouring cells neither overlap nor leave a seam.
    const auto edge = [cell](int cells) { return static_cast<int>(std::lround(cells * cell)); };
    const auto area = [&](int left, int top, int right, int bottom) {
        return QRect(edge(left), edge(top), edge(right) - edge(left), edge(bottom) - edge(top));
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(area(0, 0, kPanelWidthCells, kPanelHeightCells), Qt::black);
    const std::array<bool, kCellCount> white = cellsFor(wireValue(gameTimeMs));
    for (int index = 0; index < kCellCount; ++index) {
        if (!white[index]) continue;
        const bool marker = index == 0 || index == kEndMarkerCell;
        const int height = marker ? kMarkerHeightCells : kDataHeightCells;
        painter.fillRect(area(1 + index, 1, 2 + index, 1 + height), Qt::white);
    }
    painter.restore();
}

void encodeClockStripe(QImage& image, qint64 gameTimeMs) {
    QPainter painter(&image);
    paintClockStripe(painter, image.width(), gameTimeMs);
}

std::optional<qint64> decodeClockStripe(const QImage& frame) {
    if (frame.isNull()) return std::nullopt;
    // The stripe sits at the top of the game's picture: its marker rows are looked for in the top half,
    // which leaves room for a window frame above it, and the markers end well within the top two thirds.
    const QImage gray = luminance(frame, (frame.height() * 2 + 2) / 3);
    for (int y = 0; y < frame.height() / 2; ++y) {
        const std::optional<Placement> placement = placementOnRow(gray, y);
        if (!placement) continue;
        if (const std::optional<qint64> value = readCells(gray, *placement)) return value;
    }
    return std::nullopt;
}

}  // namespace kestrum
