#include "core/library/detail/DetailCacheKeys.h"

#include "base/common/ReferenceDate.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <system_error>

namespace kestrum {

CachedDetail::FileStamp takeFileStamp(const QString& path) {
    const std::filesystem::path file(QFile::encodeName(path).toStdString());
    std::error_code error;
    const std::filesystem::file_time_type modified = std::filesystem::last_write_time(file, error);
    if (error) return {};
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error) return {};
    const auto systemTime = std::chrono::file_clock::to_sys(modified);
    return {ReferenceDate::fromSystemTime(
                std::chrono::time_point_cast<std::chrono::system_clock::duration>(systemTime))
                .secondsSince2001,
            static_cast<std::int64_t>(size)};
}

QString standardizedMoviePath(const QString& moviePath) {
    return QDir::cleanPath(QFileInfo(moviePath).absoluteFilePath());
}

QString sha256Hex(const QString& text) {
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256).toHex());
}

QString detailCacheKey(const QString& moviePath) {
    return sha256Hex(standardizedMoviePath(moviePath));
}

QString thumbnailCacheKey(const QString& detailKey, const CachedDetail::FileStamp& videoStamp) {
    std::array<char, 32> time{};
    const auto written =
        std::to_chars(time.data(), time.data() + time.size(), videoStamp.modificationTime.value_or(0));
    const QString timeText = QString::fromLatin1(time.data(), written.ptr - time.data());
    return sha256Hex(detailKey + QLatin1Char('|') + timeText + QLatin1Char('|') +
                     QString::number(videoStamp.size.value_or(0)));
}

double thumbnailRequestTime(std::optional<double> timeSeconds) {
    if (!timeSeconds) return 0;
    return std::max(0.0, *timeSeconds - 1.0);
}

}  // namespace kestrum
