#include "core/library/detail/JsonMemberSlices.h"

#include "core/json/JsonDocument.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cstddef>

namespace kestrum {

namespace {

// Follows the reader's events and cuts each listed member's value out of the bytes: from just after its
// key (whitespace and the colon are trimmed later) to just past the value's last character. The iterative
// reader (json::kParseFlags) reports a scalar or a key once it has consumed it, but the end of an object
// or an array while its closing bracket is still the next character.
class SliceHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, SliceHandler> {
  public:
    SliceHandler(std::string_view bytes, std::string_view nestedKey, const rapidjson::MemoryStream& stream)
        : bytes_(bytes), nestedKey_(nestedKey), stream_(stream) {}

    bool Default() { return valueEnded(0); }
    bool RawNumber(const char*, rapidjson::SizeType, bool) { return valueEnded(0); }

    bool StartObject() {
        if (depth_ == 0) rootIsObject_ = true;
        if (depth_ == 1 && currentKey_ == nestedKey_) inNested_ = true;
        ++depth_;
        return true;
    }
    bool EndObject(rapidjson::SizeType) {
        --depth_;
        if (depth_ == 1) inNested_ = false;
        return valueEnded(1);
    }
    bool StartArray() {
        if (depth_ == 0) return false;
        ++depth_;
        return true;
    }
    bool EndArray(rapidjson::SizeType) {
        --depth_;
        return valueEnded(1);
    }

    bool Key(const char* text, rapidjson::SizeType length, bool) {
        const std::string_view key(text, length);
        if (depth_ == 1) {
            currentKey_.assign(key);
            currentKeyEnd_ = stream_.Tell();
            return !slices_.members.contains(key) || fail(key);
        }
        if (depth_ == 2 && inNested_) {
            nestedKeyName_.assign(key);
            nestedKeyEnd_ = stream_.Tell();
            return !slices_.nestedMembers.contains(key) || fail(key);
        }
        return true;
    }

    bool rootIsObject() const { return rootIsObject_; }
    const std::string& duplicateKey() const { return duplicateKey_; }
    JsonMemberSlices take() { return std::move(slices_); }

  private:
    // Called after every complete value with `depth_` the depth of its container; `unread` is the number
    // of the value's characters the stream has not consumed yet.
    bool valueEnded(std::size_t unread) {
        if (depth_ == 0) return rootIsObject_;
        if (depth_ == 1) slices_.members.emplace(currentKey_, cut(currentKeyEnd_, unread));
        if (depth_ == 2 && inNested_)
            slices_.nestedMembers.emplace(nestedKeyName_, cut(nestedKeyEnd_, unread));
        return true;
    }

    std::string_view cut(std::size_t keyEnd, std::size_t unread) const {
        std::string_view value = bytes_.substr(keyEnd, stream_.Tell() + unread - keyEnd);
        const std::size_t start = value.find_first_not_of(" \t\r\n:");
        return start == std::string_view::npos ? std::string_view() : value.substr(start);
    }

    bool fail(std::string_view key) {
        duplicateKey_.assign(key);
        return false;
    }

    std::string_view bytes_;
    std::string_view nestedKey_;
    const rapidjson::MemoryStream& stream_;
    int depth_ = 0;
    bool rootIsObject_ = false;
    bool inNested_ = false;
    std::string currentKey_;
    std::size_t currentKeyEnd_ = 0;
    std::string nestedKeyName_;
    std::size_t nestedKeyEnd_ = 0;
    std::string duplicateKey_;
    JsonMemberSlices slices_;
};

}  // namespace

Result<JsonMemberSlices> sliceJsonMembers(std::string_view bytes, std::string_view nestedKey) {
    rapidjson::MemoryStream stream(bytes.data(), bytes.size());
    SliceHandler handler(bytes, nestedKey, stream);
    rapidjson::Reader reader;
    const rapidjson::ParseResult parsed = reader.Parse<json::kParseFlags>(stream, handler);
    if (!handler.duplicateKey().empty()) {
        return Error::withDescription(
            QStringLiteral("%1: key given twice").arg(QString::fromStdString(handler.duplicateKey())));
    }
    if (parsed.IsError() &&
        !(parsed.Code() == rapidjson::kParseErrorTermination && !handler.rootIsObject())) {
        return Error::withDescription(
            QStringLiteral("invalid JSON at byte offset %1: %2")
                .arg(parsed.Offset())
                .arg(QString::fromUtf8(rapidjson::GetParseError_En(parsed.Code()))));
    }
    if (!handler.rootIsObject()) return Error::withDescription(QStringLiteral("(root): expected an object"));
    return handler.take();
}

}  // namespace kestrum
