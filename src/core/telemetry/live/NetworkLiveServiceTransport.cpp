#include "core/telemetry/live/NetworkLiveServiceTransport.h"

#include <QCoroNetworkReply>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

namespace kestrum {

namespace {

struct DeleteLater {
    void operator()(QNetworkReply* reply) const { reply->deleteLater(); }
};

}  // namespace

NetworkLiveServiceTransport::NetworkLiveServiceTransport(int port,
                                                         std::shared_ptr<RiotLocalCertificatePolicy> policy)
    : port_(port), policy_(std::move(policy)) {
    if (!policy_) policy_ = std::make_shared<RiotLocalCertificatePolicy>(port_);
}

QCoro::Task<Result<LiveServiceResponse>> NetworkLiveServiceTransport::get(QString path) {
    const QUrl url(QStringLiteral("https://127.0.0.1:%1%2").arg(port_).arg(path), QUrl::StrictMode);
    if (!url.isValid()) co_return Error::withDescription(QStringLiteral("invalid URL ") + path);

    QNetworkRequest request(url);
    request.setTransferTimeout(static_cast<int>(kTransferTimeout.count()));
    policy_->prepare(request);
    const std::unique_ptr<QNetworkReply, DeleteLater> reply(manager_.get(request));
    policy_->watch(reply.get());
    co_await qCoro(reply.get()).waitForFinished();

    // A status attribute means an HTTP answer arrived, whatever QNetworkReply thinks of its status.
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (status.isValid()) co_return LiveServiceResponse{status.toInt(), reply->readAll()};
    if (reply->error() != QNetworkReply::NoError) co_return Error::withDescription(reply->errorString());
    co_return LiveServiceResponse{std::nullopt, reply->readAll()};
}

}  // namespace kestrum
