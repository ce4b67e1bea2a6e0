#pragma once

#include "core/telemetry/live/LiveServiceTransport.h"
#include "core/telemetry/live/RiotLocalCertificatePolicy.h"

#include <QNetworkAccessManager>

#include <chrono>
#include <memory>

namespace kestrum {

// The real request layer: HTTPS GETs to the local service on the IPv4 loopback address, with Qt's
// network access manager. Every request has a 2.0-second transfer timeout, no added headers, and goes
// through the certificate rule of the service.
//
// Thread: created, used and destroyed on the main thread (the manager is a QObject of that thread).
class NetworkLiveServiceTransport final : public LiveServiceTransport {
  public:
    static constexpr std::chrono::milliseconds kTransferTimeout{2000};

    // `port` is 2999 for the game; tests point it at a simulator elsewhere. The certificate rule
    // follows the port unless a policy is given.
    explicit NetworkLiveServiceTransport(int port = RiotLocalCertificatePolicy::kServicePort,
                                         std::shared_ptr<RiotLocalCertificatePolicy> policy = nullptr);

    QCoro::Task<Result<LiveServiceResponse>> get(QString path) override;

  private:
    int port_;
    std::shared_ptr<RiotLocalCertificatePolicy> policy_;
    QNetworkAccessManager manager_;
};

}  // namespace kestrum
