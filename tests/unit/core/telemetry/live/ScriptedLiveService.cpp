#include "ScriptedLiveService.h"

#include <QJsonDocument>

namespace kestrum::test {

QCoro::Task<Result<LiveServiceResponse>> ScriptedLiveService::get(QString path) {
    requests_.append(path);
    if (const auto delay = delays_.find(path); delay != delays_.end()) {
        co_await delay->second.first->sleep(delay->second.second, CancellationToken());
    }
    const auto handler = handlers_.find(path);
    if (handler == handlers_.end()) co_return refused();
    co_return handler->second();
}

Result<LiveServiceResponse> ScriptedLiveService::ok(const QJsonObject& body) {
    return LiveServiceResponse{200, QJsonDocument(body).toJson(QJsonDocument::Compact)};
}

Result<LiveServiceResponse> ScriptedLiveService::ok(const QJsonArray& body) {
    return LiveServiceResponse{200, QJsonDocument(body).toJson(QJsonDocument::Compact)};
}

Result<LiveServiceResponse> ScriptedLiveService::status(int code, QByteArray body) {
    return LiveServiceResponse{code, std::move(body)};
}

Result<LiveServiceResponse> ScriptedLiveService::refused() {
    return Error::withDescription(QStringLiteral("Connection refused"));
}

}  // namespace kestrum::test
