// kestrum-ui-gallery: shows the review panels (the timeline strip and the scoreboard) on a recording's
// telemetry with a moving playhead, and the ground the windows stand on (the style of both appearances,
// every symbol icon, every art name, game art from the art host). With --screenshot it writes a PNG of the
// window once it has drawn and exits.
//
// It always runs in a private settings profile (a temporary home for the XDG folders), so that pointing
// "DataDragonBaseAddress" at the art host's stand-in never touches the user's settings or caches.
#include "GalleryCatalog.h"
#include "GalleryOptions.h"
#include "GalleryPanels.h"
#include "SyntheticGame.h"
#include "SyntheticRecordingDetail.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/UserDefaults.h"
#include "core/telemetry/SessionDocumentCodec.h"
#include "ui/KestrumUi.h"
#include "ui/WindowScreenshot.h"
#include "ui/style/KestrumStyle.h"
#include "ui/style/assets/DataDragonAssets.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

using kestrum::gallery::GalleryCatalog;
using kestrum::gallery::GalleryOptions;
using kestrum::gallery::GalleryPanels;

// A screenshot waits this long at most for game art still on its way.
constexpr int kScreenshotTimeoutMs = 15000;

void say(const QString& message) {
    std::fputs(qPrintable(QStringLiteral("kestrum-ui-gallery: ") + message + QLatin1Char('\n')), stderr);
}

int fail(const QString& message, int status) {
    say(message);
    return status;
}

// Points the XDG folders (settings, caches, state) at `home`; before anything reads them.
void usePrivateProfile(const QTemporaryDir& home) {
    const auto set = [&](const char* name, const char* sub) {
        const QString path = home.path() + QLatin1Char('/') + QLatin1String(sub);
        QDir().mkpath(path);
        setenv(name, QFile::encodeName(path).constData(), 1);
    };
    set("XDG_CONFIG_HOME", "config");
    set("XDG_CACHE_HOME", "cache");
    set("XDG_STATE_HOME", "state");
    set("XDG_DATA_HOME", "data");
}

std::optional<kestrum::RecordingSessionData> readDocument(const QString& path, QString* error) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    auto decoded = kestrum::decodeSessionData(
        std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    if (!decoded.ok()) {
        *error = QStringLiteral("%1 is no session document: %2").arg(path, decoded.error().description);
        return std::nullopt;
    }
    return std::move(decoded).value();
}

// The movie's length for a document without its movie: a few seconds past the last thing it records.
double documentDurationSeconds(const kestrum::RecordingSessionData& document) {
    constexpr double kTailSeconds = 5;
    double last = 0;
    for (const kestrum::RecordingEvent& event : document.events) last = std::max(last, event.videoTime);
    if (document.scoreboard) {
        for (const kestrum::RecordingScoreboardSnapshot& snapshot : *document.scoreboard)
            last = std::max(last, snapshot.videoTime);
    }
    return last + kTailSeconds;
}

// Grabs the window once drawn and settled, writes the PNG and ends the event loop with the status.
void takeScreenshot(QQuickWindow& window, const QString& path, const GalleryPanels& panels) {
    auto* screenshot = new kestrum::ui::WindowScreenshot(
        window,
        [&panels] {
            return panels.isSettled() && kestrum::ui::DataDragonAssets::instance().loadsInFlight() == 0;
        },
        kScreenshotTimeoutMs, &window);
    QObject::connect(
        screenshot, &kestrum::ui::WindowScreenshot::grabbed, &window,
        [path, screenshot](const QImage& picture) {
            if (screenshot->timedOut())
                say(QStringLiteral("game art was still loading; the picture shows placeholders"));
            if (!kestrum::ui::savePicture(picture, path)) {
                say(QStringLiteral("cannot write the screenshot to %1").arg(path));
                QCoreApplication::exit(1);
                return;
            }
            QCoreApplication::exit(0);
        });
}

// The program's arguments as given, before any application exists.
QStringList argumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int index = 0; index < argc; ++index) arguments.append(QString::fromLocal8Bit(argv[index]));
    return arguments;
}

}  // namespace

int main(int argc, char** argv) {
    // Bad input is refused before any window system is touched.
    const auto parsed = GalleryOptions::parse(argumentsOf(argc, argv));
    if (const QString* error = std::get_if<QString>(&parsed))
        return fail(*error + QStringLiteral(" (see --help)"), 2);
    const GalleryOptions& options = std::get<GalleryOptions>(parsed);
    if (options.help) {
        std::fputs(qPrintable(GalleryOptions::usage()), stdout);
        return 0;
    }
    std::optional<kestrum::RecordingSessionData> document;
    double durationSeconds = 0;
    kestrum::ScoreboardLocalPlayer localPlayer;
    if (options.documentPath) {
        QString error;
        document = readDocument(*options.documentPath, &error);
        if (!document) return fail(error, 2);
        durationSeconds = documentDurationSeconds(*document);
    } else {
        kestrum::synthetic::SyntheticGame game = kestrum::synthetic::makeSyntheticGame();
        durationSeconds = game.movieDurationSeconds;
        localPlayer = {game.localChampionIdentifier, game.localPosition};
        document = std::move(game.document);
    }
    const std::shared_ptr<const kestrum::RecordingDetail> recording =
        kestrum::synthetic::recordingDetailOf(*document, durationSeconds);
    QTemporaryDir home(QDir::tempPath() + QStringLiteral("/kestrum-ui-gallery-XXXXXX"));
    if (!home.isValid()) return fail(QStringLiteral("cannot make a private profile folder"), 1);
    usePrivateProfile(home);
    kestrum::ui::useOpenGlSceneGraph();
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Kestrum"));
    QCoreApplication::setApplicationName(QStringLiteral("Kestrum"));
    if (options.artHost) {
        kestrum::UserDefaults::standard().setString(options.artHost->toString(),
                                                    kestrum::SettingsKeys::dataDragonBaseAddress);
    }
    kestrum::ui::KestrumStyle::instance().setDark(options.dark);

    GalleryCatalog catalog(options, std::move(document));
    GalleryPanels panels(options, recording, localPlayer, kestrum::UserDefaults::standard());
    QQmlApplicationEngine engine;
    kestrum::ui::registerQmlModules(engine);
    GalleryCatalog::setShown(catalog);
    GalleryPanels::setShown(panels);
    engine.setInitialProperties(
        {{QStringLiteral("width"), options.size.width()}, {QStringLiteral("height"), options.size.height()}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Kestrum/Gallery/GalleryWindow.qml")));
    if (engine.rootObjects().isEmpty()) return fail(QStringLiteral("the gallery's window did not load"), 1);
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().front());
    if (!window) return fail(QStringLiteral("the gallery's root is no window"), 1);
    // Once drawn, the hover and pop-up asked for; the screenshot waits until they have been drawn too.
    QObject::connect(window, &QQuickWindow::frameSwapped, &panels, [&panels, window] {
        panels.present(*window);
        panels.frameShown();
    });
    panels.start();
    if (options.screenshotPath) takeScreenshot(*window, *options.screenshotPath, panels);
    return QGuiApplication::exec();
}
