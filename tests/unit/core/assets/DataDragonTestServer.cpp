#include "DataDragonTestServer.h"

#include <QBuffer>
#include <QImage>
#include <QTcpSocket>
#include <QUrl>

#include <numeric>

namespace kestrum::test {

DataDragonTestServer::DataDragonTestServer() : server_(std::make_unique<QTcpServer>()) {
    server_->listen(QHostAddress::LocalHost, 0);
    QObject::connect(server_.get(), &QTcpServer::newConnection, server_.get(), [this] {
        while (QTcpSocket* socket = server_->nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                // The whole head is small; keep what came until its blank line arrives.
                QByteArray head = socket->property("head").toByteArray() + socket->readAll();
                socket->setProperty("head", head);
                if (head.contains("\r\n\r\n")) answer(socket, head);
            });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

QString DataDragonTestServer::baseAddress() const {
    return QStringLiteral("http://127.0.0.1:%1").arg(server_->serverPort());
}

void DataDragonTestServer::serve(const QString& path, int status, QByteArray body) {
    responses_.insert(path, Response{status, std::move(body)});
}

int DataDragonTestServer::totalRequestCount() const {
    return std::accumulate(counts_.cbegin(), counts_.cend(), 0);
}

void DataDragonTestServer::shutDown() {
    server_->close();
    for (QTcpSocket* socket : server_->findChildren<QTcpSocket*>()) socket->abort();
}

void DataDragonTestServer::answer(QTcpSocket* socket, const QByteArray& request) {
    const QList<QByteArray> requestLine = request.left(request.indexOf("\r\n")).split(' ');
    const QByteArray target = requestLine.value(1);
    const QString path = QUrl::fromPercentEncoding(target);
    rawTargets_.append(QString::fromLatin1(target));
    counts_[path] += 1;
    const Response response = responses_.value(path);
    QByteArray reply = "HTTP/1.1 " + QByteArray::number(response.status) + " Test\r\n";
    reply += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
    reply += "Connection: close\r\n\r\n" + response.body;
    socket->write(reply);
    socket->disconnectFromHost();
}

QByteArray pngOfColour(QRgb colour, int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

}  // namespace kestrum::test
