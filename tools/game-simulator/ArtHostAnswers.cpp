#include "ArtHostAnswers.h"

#include "ArtTile.h"
#include "ServiceAnswers.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QUrl>

namespace kestrum::simulator {

// A newer version than the application's built-in one, so that a version refresh has something to adopt.
const QStringList ArtHostAnswers::kVersions{QStringLiteral("16.10.1"), QStringLiteral("16.9.1"),
                                            QStringLiteral("16.8.1")};

SimulatorAnswer ArtHostAnswers::answer(const QString& path) {
    if (path == QLatin1String("/api/versions.json"))
        return ServiceAnswers::json(QJsonArray::fromStringList(kVersions));
    // The identifier is one percent-encoded path segment ("Kai%27Sa").
    static const QRegularExpression image(
        QStringLiteral("^/cdn/([^/]+)/img/(champion|item|spell)/([^/]+)\\.png$"));
    const QRegularExpressionMatch match = image.match(path);
    if (!match.hasMatch()) return ServiceAnswers::notFound(path);
    const QString identifier = QUrl::fromPercentEncoding(match.captured(3).toUtf8());
    return SimulatorAnswer{200, ArtTile::png(match.captured(2), identifier), "image/png"};
}

}  // namespace kestrum::simulator
