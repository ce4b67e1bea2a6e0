#pragma once

#include <QByteArray>
#include <QColor>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTcpServer>

#include <memory>

namespace kestrum::test {

// A stand-in for the Data Dragon CDN: plain HTTP/1.1 on 127.0.0.1 at a free port, one request per
// connection, answering the paths it was given and 404 to all others. It counts requests by their
// percent-decoded path and keeps the request targets as they arrived. Main thread only.
class DataDragonTestServer {
  public:
    DataDragonTestServer();

    // "http://127.0.0.1:<port>".
    QString baseAddress() const;

    // Answers GET `path` (decoded, "/cdn/16.9.1/img/item/3078.png") with `status` and `body`.
    void serve(const QString& path, int status, QByteArray body);

    int requestCount(const QString& path) const { return counts_.value(path); }
    int totalRequestCount() const;
    const QStringList& rawTargets() const { return rawTargets_; }

    // Stops listening and drops every open connection: the CDN is gone.
    void shutDown();

  private:
    struct Response {
        int status = 404;
        QByteArray body;
    };

    void answer(QTcpSocket* socket, const QByteArray& request);

    std::unique_ptr<QTcpServer> server_;
    QMap<QString, Response> responses_;
    QMap<QString, int> counts_;
    QStringList rawTargets_;
};

// A small PNG of one colour, so that tests can tell images apart by a pixel.
QByteArray pngOfColour(QRgb colour, int side = 4);

}  // namespace kestrum::test
