#include "ui/style/icons/SvgPathData.h"

#include <QPointF>

#include <cmath>

namespace kestrum::ui {

namespace {

constexpr double kClosingTolerance = 0.01;

// Reads the numbers of SVG path data one at a time.
class PathScanner {
  public:
    explicit PathScanner(QStringView data) : data_(data) {}

    void skipSeparators() {
        while (at_ < data_.size() && (data_[at_].isSpace() || data_[at_] == QLatin1Char(','))) ++at_;
    }
    bool atEnd() {
        skipSeparators();
        return at_ >= data_.size();
    }
    // The next character if it is a command letter.
    std::optional<QChar> command() {
        skipSeparators();
        if (at_ < data_.size() && data_[at_].isLetter()) return data_[at_++];
        return std::nullopt;
    }
    bool nextIsNumber() {
        skipSeparators();
        if (at_ >= data_.size()) return false;
        const QChar c = data_[at_];
        return c.isDigit() || c == QLatin1Char('-') || c == QLatin1Char('+') || c == QLatin1Char('.');
    }
    // An arc flag is one character, "0" or "1", which may touch the next number.
    std::optional<double> flag() {
        skipSeparators();
        if (at_ >= data_.size()) return std::nullopt;
        const QChar c = data_[at_];
        if (c != QLatin1Char('0') && c != QLatin1Char('1')) return std::nullopt;
        ++at_;
        return c == QLatin1Char('1') ? 1.0 : 0.0;
    }
    std::optional<double> number() {
        skipSeparators();
        const qsizetype start = at_;
        if (at_ < data_.size() && (data_[at_] == QLatin1Char('-') || data_[at_] == QLatin1Char('+'))) ++at_;
        bool digits = skipDigits();
        if (at_ < data_.size() && data_[at_] == QLatin1Char('.')) {
            ++at_;
            digits = skipDigits() || digits;
        }
        if (!digits) return std::nullopt;
        if (at_ < data_.size() && (data_[at_] == QLatin1Char('e') || data_[at_] == QLatin1Char('E'))) {
            ++at_;
            if (at_ < data_.size() && (data_[at_] == QLatin1Char('-') || data_[at_] == QLatin1Char('+')))
                ++at_;
            if (!skipDigits()) return std::nullopt;
        }
        bool ok = false;
        const double value = data_.mid(start, at_ - start).toDouble(&ok);
        return ok ? std::optional<double>(value) : std::nullopt;
    }

  private:
    bool skipDigits() {
        const qsizetype start = at_;
        while (at_ < data_.size() && data_[at_].isDigit()) ++at_;
        return at_ > start;
    }

    QStringView data_;
    qsizetype at_ = 0;
};

int parameterCount(QChar command) {
    switch (command.toUpper().toLatin1()) {
        case 'M':
        case 'L':
        case 'T':
            return 2;
        case 'H':
        case 'V':
            return 1;
        case 'C':
            return 6;
        case 'S':
        case 'Q':
            return 4;
        case 'A':
            return 7;
        case 'Z':
            return 0;
        default:
            return -1;
    }
}

QString written(double value) {
    return QString::number(value, 'g', 10);
}

// The subpath being read: its text so far and where it began.
struct OpenSubpath {
    SvgSubpath subpath;
    QPointF start;
    bool drawn = false;
};

class PathSplitter {
  public:
    std::optional<std::vector<SvgSubpath>> split(QStringView data) {
        PathScanner scanner(data);
        bool first = true;
        while (!scanner.atEnd()) {
            const std::optional<QChar> command = scanner.command();
            if (!command || parameterCount(*command) < 0) return std::nullopt;
            if (first && command->toUpper() != QLatin1Char('M')) return std::nullopt;
            first = false;
            if (!readCommand(scanner, *command)) return std::nullopt;
        }
        finish();
        return std::move(done_);
    }

  private:
    bool readCommand(PathScanner& scanner, QChar command) {
        const bool relative = command.isLower();
        const QChar upper = command.toUpper();
        if (upper == QLatin1Char('Z')) {
            close();
            return true;
        }
        const int count = parameterCount(command);
        bool firstGroup = true;
        do {
            std::vector<double> values;
            for (int index = 0; index < count; ++index) {
                const bool isFlag = upper == QLatin1Char('A') && (index == 3 || index == 4);
                const std::optional<double> value = isFlag ? scanner.flag() : scanner.number();
                if (!value) return false;
                values.push_back(*value);
            }
            if (upper == QLatin1Char('M') && firstGroup) {
                moveTo(relative, values[0], values[1]);
            } else {
                // Pairs after a moveto's first are lines of the same relativity.
                const QChar segment =
                    upper == QLatin1Char('M') ? (relative ? QLatin1Char('l') : QLatin1Char('L')) : command;
                draw(segment, values);
            }
            firstGroup = false;
        } while (scanner.nextIsNumber());
        return true;
    }

    void moveTo(bool relative, double x, double y) {
        finish();
        current_ = relative ? current_ + QPointF(x, y) : QPointF(x, y);
        open_ = OpenSubpath{
            {QStringLiteral("M") + written(current_.x()) + QLatin1Char(' ') + written(current_.y()), false,
             true},
            current_};
    }

    void draw(QChar segment, const std::vector<double>& values) {
        if (!open_) {
            // A drawing command right after a closepath starts a new subpath at the closed one's start.
            moveTo(false, current_.x(), current_.y());
        }
        QString text(segment);
        for (std::size_t index = 0; index < values.size(); ++index) {
            if (index > 0) text += QLatin1Char(' ');
            text += written(values[index]);
        }
        open_->subpath.data += text;
        open_->drawn = true;
        const QChar upper = segment.toUpper();
        if (upper != QLatin1Char('L') && upper != QLatin1Char('H') && upper != QLatin1Char('V')) {
            open_->subpath.straight = false;
        }
        current_ = endPoint(segment, values);
    }

    QPointF endPoint(QChar segment, const std::vector<double>& values) const {
        const bool relative = segment.isLower();
        const QChar upper = segment.toUpper();
        if (upper == QLatin1Char('H')) return {relative ? current_.x() + values[0] : values[0], current_.y()};
        if (upper == QLatin1Char('V')) return {current_.x(), relative ? current_.y() + values[0] : values[0]};
        const QPointF last(values[values.size() - 2], values[values.size() - 1]);
        return relative ? current_ + last : last;
    }

    void close() {
        if (!open_) return;
        current_ = open_->start;
        if (!open_->drawn) {
            open_.reset();
            return;
        }
        open_->subpath.data += QLatin1Char('Z');
        open_->subpath.closed = true;
        done_.push_back(std::move(open_->subpath));
        open_.reset();
    }

    void finish() {
        if (!open_) return;
        if (open_->drawn) {
            const QPointF gap = current_ - open_->start;
            open_->subpath.closed = std::hypot(gap.x(), gap.y()) <= kClosingTolerance;
            done_.push_back(std::move(open_->subpath));
        }
        open_.reset();
    }

    QPointF current_;
    std::optional<OpenSubpath> open_;
    std::vector<SvgSubpath> done_;
};

}  // namespace

std::optional<std::vector<SvgSubpath>> splitSvgPathData(QStringView data) {
    return PathSplitter().split(data);
}

}  // namespace kestrum::ui
