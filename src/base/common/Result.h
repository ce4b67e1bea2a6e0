#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <utility>
#include <variant>

namespace kestrum {

// A failure reported to a caller. `description` is the localised, user-readable text; `domain` and
// `code` identify the source (for example "AVFoundationErrorDomain"-like domains of the media layer,
// or "NSCocoaErrorDomain"-like file errors); `underlying` carries the cause where a lower layer had one.
struct Error {
    QString domain;
    int code = 0;
    QString description;
    std::shared_ptr<const Error> underlying;

    static Error withDescription(QString text) { return Error{{}, 0, std::move(text), nullptr}; }
    friend bool operator==(const Error& a, const Error& b) {
        return a.domain == b.domain && a.code == b.code && a.description == b.description;
    }
};

// The value of an operation that "reports failure": a value or the Error that stopped it.
// No exception crosses a module boundary; callers test `ok()` and read `value()` or `error()`.
template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : state_(std::move(value)) {}      // NOLINT(google-explicit-constructor)
    Result(Error error) : state_(std::move(error)) {}  // NOLINT(google-explicit-constructor)

    bool ok() const { return std::holds_alternative<T>(state_); }
    explicit operator bool() const { return ok(); }
    const T& value() const& { return std::get<T>(state_); }
    T& value() & { return std::get<T>(state_); }
    T&& value() && { return std::get<T>(std::move(state_)); }
    const Error& error() const { return std::get<Error>(state_); }
    std::optional<T> toOptional() && {
        if (!ok()) return std::nullopt;
        return std::get<T>(std::move(state_));
    }

  private:
    std::variant<T, Error> state_;
};

// Result of an operation that produces nothing but may fail.
class [[nodiscard]] Status {
  public:
    Status() = default;
    Status(Error error) : error_(std::move(error)) {}  // NOLINT(google-explicit-constructor)

    static Status success() { return {}; }
    bool ok() const { return !error_.has_value(); }
    explicit operator bool() const { return ok(); }
    const Error& error() const { return *error_; }

  private:
    std::optional<Error> error_;
};

}  // namespace kestrum
