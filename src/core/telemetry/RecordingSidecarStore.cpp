#include "core/telemetry/RecordingSidecarStore.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <string>
#include <string_view>
#include <utility>

namespace kestrum {

namespace {

Error fileError(const QString& path, const QString& what, const QString& reason) {
    return Error{
        QStringLiteral("KestrumSidecarErrorDomain"), 1,
        QStringLiteral("The session document \"%1\" %2: %3").arg(QFileInfo(path).fileName(), what, reason),
        nullptr};
}

Error withContext(const QString& path, const QString& what, const Error& cause) {
    Error error = fileError(path, what, cause.description);
    error.underlying = std::make_shared<const Error>(cause);
    return error;
}

// Writes `bytes` through a temporary file in the target's folder that is synced to the disk and then
// renamed over the target. The device is unbuffered and every count is checked, so a short write
// (a full disk, a file size limit) cancels the save instead of committing a truncated file.
Status writeAtomically(const QString& path, const std::string& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return fileError(path, QStringLiteral("could not be saved"), file.errorString());
    }
    const auto size = static_cast<qint64>(bytes.size());
    if (file.write(bytes.data(), size) != size) {
        const QString reason = file.error() != QFileDevice::NoError
                                   ? file.errorString()
                                   : QStringLiteral("the data was written only in part");
        file.cancelWriting();
        (void)file.commit();  // after a cancel this only removes the temporary file
        return fileError(path, QStringLiteral("could not be saved"), reason);
    }
    if (!file.commit()) return fileError(path, QStringLiteral("could not be saved"), file.errorString());
    return Status::success();
}

}  // namespace

RecordingSidecarStore& RecordingSidecarStore::shared() {
    static RecordingSidecarStore* const instance = new RecordingSidecarStore();
    return *instance;
}

std::optional<RecordingSessionData> RecordingSidecarStore::readSessionData(const QString& path) {
    const std::lock_guard hold(lock_);
    return readLocked(path).toOptional();
}

std::optional<RecordingSessionData> RecordingSidecarStore::readSessionData(
    const QString& path, const ScoreboardSnapshotVisitor& visitSnapshot) {
    const std::lock_guard hold(lock_);
    return readLocked(path, &visitSnapshot).toOptional();
}

Status RecordingSidecarStore::writeSessionData(const RecordingSessionData& session, const QString& path) {
    const std::lock_guard hold(lock_);
    return writeLocked(session, path);
}

Status RecordingSidecarStore::rewriteSessionData(
    const QString& path, const std::function<RecordingSessionData(RecordingSessionData)>& transform) {
    const std::lock_guard hold(lock_);
    Result<RecordingSessionData> current = readLocked(path);
    if (!current) return current.error();
    return writeLocked(transform(std::move(current).value()), path);
}

Result<RecordingSessionData> RecordingSidecarStore::readLocked(
    const QString& path, const ScoreboardSnapshotVisitor* visitSnapshot) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fileError(path, QStringLiteral("could not be read"), file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return fileError(path, QStringLiteral("could not be read"), file.errorString());
    }
    const std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    Result<RecordingSessionData> decoded =
        visitSnapshot ? decodeSessionData(text, *visitSnapshot) : decodeSessionData(text);
    if (!decoded) return withContext(path, QStringLiteral("could not be decoded"), decoded.error());
    return decoded;
}

Status RecordingSidecarStore::writeLocked(const RecordingSessionData& session, const QString& path) {
    const Result<std::string> encoded = encodeSessionData(session);
    if (!encoded) return withContext(path, QStringLiteral("could not be encoded"), encoded.error());
    return writeAtomically(path, encoded.value());
}

}  // namespace kestrum
