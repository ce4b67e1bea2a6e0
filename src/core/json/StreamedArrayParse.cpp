#include "core/json/StreamedArrayParse.h"

#include "core/json/ExactNumberHandler.h"
#include "core/json/JsonDocument.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestrum::json {

namespace {

// Follows the reader's events and sends each one either to the document or, inside the streamed array,
// to a document of the current element alone. Depths count the containers open around the event.
class StreamedArrayHandler {
  public:
    StreamedArrayHandler(rapidjson::Document& document, rapidjson::Document& element,
                         std::string_view streamedKey, const StreamedElementVisitor& visit)
        : element_(element),
          toDocument_(document),
          toElement_(element),
          streamedKey_(streamedKey),
          visit_(visit) {}

    bool Null() {
        return scalar([](ExactNumberHandler& to) { return to.Null(); });
    }
    bool Bool(bool value) {
        return scalar([=](ExactNumberHandler& to) { return to.Bool(value); });
    }
    bool Int(int value) {
        return scalar([=](ExactNumberHandler& to) { return to.Int(value); });
    }
    bool Uint(unsigned value) {
        return scalar([=](ExactNumberHandler& to) { return to.Uint(value); });
    }
    bool Int64(std::int64_t value) {
        return scalar([=](ExactNumberHandler& to) { return to.Int64(value); });
    }
    bool Uint64(std::uint64_t value) {
        return scalar([=](ExactNumberHandler& to) { return to.Uint64(value); });
    }
    bool Double(double value) {
        return scalar([=](ExactNumberHandler& to) { return to.Double(value); });
    }
    bool RawNumber(const char* text, rapidjson::SizeType length, bool copy) {
        return scalar([=](ExactNumberHandler& to) { return to.RawNumber(text, length, copy); });
    }
    bool String(const char* text, rapidjson::SizeType length, bool copy) {
        return scalar([=](ExactNumberHandler& to) { return to.String(text, length, copy); });
    }

    bool Key(const char* text, rapidjson::SizeType length, bool copy) {
        if (streaming_) return toElement_.Key(text, length, copy);
        if (depth_ == 1) nextIsStreamed_ = std::string_view(text, length) == streamedKey_;
        return toDocument_.Key(text, length, copy);
    }

    bool StartObject() {
        if (streaming_) {
            ++elementDepth_;
            return toElement_.StartObject();
        }
        ++depth_;
        nextIsStreamed_ = false;
        return toDocument_.StartObject();
    }

    bool EndObject(rapidjson::SizeType members) {
        if (streaming_) {
            --elementDepth_;
            return toElement_.EndObject(members) && elementEnded();
        }
        --depth_;
        return toDocument_.EndObject(members);
    }

    bool StartArray() {
        if (streaming_) {
            ++elementDepth_;
            return toElement_.StartArray();
        }
        // The streamed array opens in the document too, where it stays empty.
        streaming_ = depth_ == 1 && nextIsStreamed_;
        nextIsStreamed_ = false;
        ++depth_;
        return toDocument_.StartArray();
    }

    bool EndArray(rapidjson::SizeType elements) {
        if (streaming_ && elementDepth_ == 0) {
            streaming_ = false;
            --depth_;
            return toDocument_.EndArray(0);
        }
        if (streaming_) {
            --elementDepth_;
            return toElement_.EndArray(elements) && elementEnded();
        }
        --depth_;
        return toDocument_.EndArray(elements);
    }

    bool numberTooBig() const { return toDocument_.numberTooBig() || toElement_.numberTooBig(); }

  private:
    template <class Event>
    bool scalar(Event event) {
        if (!streaming_) {
            nextIsStreamed_ = false;
            return event(toDocument_);
        }
        return event(toElement_) && elementEnded();
    }

    // After each event inside the streamed array: once an element is whole, the element document's
    // value stack holds exactly it, which Populate moves into the document's root.
    bool elementEnded() {
        if (elementDepth_ != 0) return true;
        auto alreadyGenerated = [](rapidjson::Document&) { return true; };
        element_.Populate(alreadyGenerated);
        const bool accepted = visit_(element_);
        element_.SetNull();
        element_.GetAllocator().Clear();
        return accepted;
    }

    rapidjson::Document& element_;
    ExactNumberHandler toDocument_;
    ExactNumberHandler toElement_;
    std::string_view streamedKey_;
    const StreamedElementVisitor& visit_;
    int depth_ = 0;
    int elementDepth_ = 0;
    bool nextIsStreamed_ = false;
    bool streaming_ = false;
};

// One element of a long game's scoreboard takes some tens of kilobytes as a value; a first chunk of
// this size is reused for every element, so that most need no allocation at all.
constexpr std::size_t kElementChunkBytes = 256 * 1024;

}  // namespace

Status parseJsonStreamingArray(std::string_view bytes, std::string_view streamedKey,
                               rapidjson::Document& document, const StreamedElementVisitor& visit) {
    std::vector<char> chunk(kElementChunkBytes);
    rapidjson::MemoryPoolAllocator<> elementAllocator(chunk.data(), chunk.size());
    rapidjson::Document element(&elementAllocator);
    StreamedArrayHandler handler(document, element, streamedKey, visit);
    rapidjson::MemoryStream stream(bytes.data(), bytes.size());
    rapidjson::Reader reader;
    rapidjson::ParseResult result;
    auto generate = [&](rapidjson::Document&) {
        result = reader.Parse<kParseFlags>(stream, handler);
        return !result.IsError();
    };
    document.Populate(generate);
    return parseOutcome(result, stream.Tell(), bytes.size(), handler.numberTooBig(), document);
}

}  // namespace kestrum::json
