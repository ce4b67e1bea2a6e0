#include "VocabularyFixtures.h"

#include "support/TestEnvironment.h"

#include <QString>

#include <utility>

namespace kestrum::test {

std::string vocabularyFixture(const char* fileName) {
    const QByteArray bytes = readFileBytes(QStringLiteral(KESTRUM_FIXTURES_DIR "/vocabulary/") + fileName);
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

LiveEvent liveEvent(std::int64_t id, std::string name, double timeSeconds) {
    LiveEvent row;
    row.id = id;
    row.name = std::move(name);
    row.time = timeSeconds;
    return row;
}

}  // namespace kestrum::test
