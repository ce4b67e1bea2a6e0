#include "media/MovieJournalWriter.h"

#include <algorithm>

namespace kestrum {

Status MovieJournalWriter::create(const QString& moviePath) {
    Status created = file_.create(movieJournalPath(moviePath));
    if (created.ok()) created = file_.append(encodeMovieJournalStart());
    if (!created.ok()) file_.close();
    return created;
}

Status MovieJournalWriter::addTrack(const MovieJournalTrack& track) {
    if (!file_.isOpen()) return Status::success();
    Result<std::string> encoded = encodeMovieJournalTrack(track);
    if (!encoded.ok()) return encoded.error();
    return file_.append(encoded.value());
}

void MovieJournalWriter::note(const MovieJournalPacket& packet) {
    if (file_.isOpen()) noted_.push_back(packet);
}

Status MovieJournalWriter::commit(std::int64_t fileBytesWritten) {
    if (!file_.isOpen()) return Status::success();
    // The muxer writes packets in file order, so those held by the file are a prefix of the noted ones.
    const auto held = std::find_if(noted_.begin(), noted_.end(), [&](const MovieJournalPacket& packet) {
        return packet.fileOffset + static_cast<std::int64_t>(packet.size) > fileBytesWritten;
    });
    const auto count = static_cast<std::size_t>(held - noted_.begin());
    if (count > 0) {
        const Status appended = file_.append(encodeMovieJournalPackets(std::span(noted_.data(), count)));
        if (!appended.ok()) {
            // A record cut short ends the journal for a reader; nothing appended after it would count.
            file_.close();
            return appended;
        }
        noted_.erase(noted_.begin(), held);
        committed_ += static_cast<std::int64_t>(count);
    }
    return file_.sync();
}

}  // namespace kestrum
