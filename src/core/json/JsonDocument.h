#pragma once

#include "base/common/Result.h"
#include "core/json/JsonFailure.h"
#include "core/json/JsonWriter.h"
#include "core/json/ValueCodec.h"

#include <rapidjson/document.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace kestrum::json {

// The parse flags of every document this system reads. UTF-8 is validated. Numbers reach the
// document through an exact conversion of their text (std::from_chars), so that integers are exact and
// a double written in shortest form reads back as the same double; RapidJSON's own number reading is
// not used. Parsing is iterative: the call stack stays flat however deep the nesting of a hostile
// document, and the codecs only descend as deep as the records do.
inline constexpr unsigned kParseFlags = rapidjson::kParseValidateEncodingFlag |
                                        rapidjson::kParseNumbersAsStringsFlag |
                                        rapidjson::kParseIterativeFlag;

// Parses `bytes` (one JSON value, nothing after it but whitespace) into `document`. The error text says
// "invalid JSON at byte offset N: <reason>".
Status parseJson(std::string_view bytes, rapidjson::Document& document);

// The outcome of a parse of `inputBytes` bytes into `document` that stopped at offset `stoppedAt` with
// `result`; `numberTooBig` when a number's conversion stopped it. The shared ending of parseJson and
// its streaming kin: a parse that ends before the input does (at a NUL byte) fails, and so clears the
// document.
Status parseOutcome(const rapidjson::ParseResult& result, std::size_t stoppedAt, std::size_t inputBytes,
                    bool numberTooBig, rapidjson::Document& document);

// Parses and reads a whole document; any failure anywhere fails the whole value.
template <class T>
Result<T> decodeDocument(std::string_view bytes) {
    rapidjson::Document document;
    if (Status parsed = parseJson(bytes, document); !parsed) return parsed.error();
    T value{};
    JsonFailure failure;
    if (!ValueCodec<T>::read(document, value, failure)) return failure.toError();
    return value;
}

// Writes a whole document in compact form; any failure (a non-finite double, text that is not UTF-8)
// fails the whole write. `sizeHintBytes` reserves the output buffer.
template <class T>
Result<std::string> encodeDocument(const T& value, std::size_t sizeHintBytes = 4096) {
    JsonWriter writer;
    writer.reserve(sizeHintBytes);
    JsonFailure failure;
    if (!ValueCodec<T>::write(writer, value, failure)) return failure.toError();
    return std::move(writer).take();
}

}  // namespace kestrum::json
