#pragma once

#include "base/async/Clock.h"
#include "core/telemetry/live/LiveServiceTransport.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>

namespace kestrum::test {

// A request layer that answers from per-path handlers at once, and records every path asked for.
// A path without a handler fails as a refused connection would.
class ScriptedLiveService final : public LiveServiceTransport {
  public:
    using Handler = std::function<Result<LiveServiceResponse>()>;

    QCoro::Task<Result<LiveServiceResponse>> get(QString path) override;

    void on(const QString& path, Handler handler) { handlers_[path] = std::move(handler); }
    // The answers of `path` come `delay` late on `clock`.
    void delay(const QString& path, Clock& clock, Clock::Duration delay) { delays_[path] = {&clock, delay}; }
    const QStringList& requests() const { return requests_; }
    int count(const QString& path) const { return static_cast<int>(requests_.count(path)); }

    static Result<LiveServiceResponse> ok(const QJsonObject& body);
    static Result<LiveServiceResponse> ok(const QJsonArray& body);
    static Result<LiveServiceResponse> status(int code, QByteArray body = "{}");
    static Result<LiveServiceResponse> refused();

  private:
    std::map<QString, Handler> handlers_;
    std::map<QString, std::pair<Clock*, Clock::Duration>> delays_;
    QStringList requests_;
};

}  // namespace kestrum::test
