#include "ServiceAnswers.h"

#include <QJsonDocument>

namespace kestrum::simulator {

SimulatorAnswer ServiceAnswers::notFound(const QString& path) {
    QJsonObject body{{QStringLiteral("errorCode"), QStringLiteral("RESOURCE_NOT_FOUND")},
                     {QStringLiteral("httpStatus"), 404},
                     {QStringLiteral("implementationDetails"), QJsonObject{}},
                     {QStringLiteral("message"), QStringLiteral("No resource at ") + path}};
    return {404, QJsonDocument(body).toJson(QJsonDocument::Compact)};
}

SimulatorAnswer ServiceAnswers::json(const QJsonObject& object) {
    return {200, QJsonDocument(object).toJson(QJsonDocument::Compact)};
}

SimulatorAnswer ServiceAnswers::json(const QJsonArray& array) {
    return {200, QJsonDocument(array).toJson(QJsonDocument::Compact)};
}

SimulatorAnswer ServiceAnswers::jsonString(const QString& text) {
    // A one-element array is the simplest way to have Qt escape a string; its brackets are then cut off.
    const QByteArray wrapped = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return {200, wrapped.mid(1, wrapped.size() - 2)};
}

QString ServiceAnswers::endpointWord(const QString& path) {
    return path.section(QLatin1Char('/'), -1);
}

}  // namespace kestrum::simulator
